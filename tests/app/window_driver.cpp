// The program with somebody at it: opens a backup, looks at its messages, exports and prints them, opens a
// photo, and closes the window; or unlists the backup that is listed. Says "done" when all of it was done.
//
// window_driver use BACKUP TARGET    with the password in QUILLBARROW_PASSWORD
// window_driver unlist

#include "app/main_window.h"
#include "app/run_application.h"
#include "support/modal.h"
#include "views/message_export_dlg.h"
#include "views/passcode_dlg.h"
#include "views/sms_main_form.h"

#include <QAbstractItemView>
#include <QAction>
#include <QEventLoop>
#include <QFile>
#include <QLineEdit>
#include <QPrinter>
#include <QTreeView>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {
QStringList words; // of the command line

constexpr int pollMs = 1;

/// False when the program ends before it comes true.
bool waitFor(const std::function<bool()> &condition)
{
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (condition())
            loop.quit();
    });
    poll.start(pollMs);
    return loop.exec() == 0 && condition();
}

class Person : public QObject
{
public:
    Person(MainWindow &window, QStringList arguments) : m_window(window), m_arguments(std::move(arguments))
    {
        connect(&m_boxes, &QTimer::timeout, this, [] {
            auto *box = qobject_cast<MessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            std::fprintf(stderr, "box: %s\n", qUtf8Printable(box->text()));
            box->buttons().constFirst()->click(); // OK, or Yes
        });
        m_boxes.start(pollMs);
    }

    void act()
    {
        if (m_arguments.at(1) == u"use"_s ? use() : unlist())
            std::puts("done");
        std::fflush(stdout);
        m_window.close();
    }

private:
    bool use()
    {
        const OnModal<PasscodeDlg> password([](PasscodeDlg &dialog) {
            dialog.findChild<QLineEdit *>(u"edPassword"_s)
                ->setText(qEnvironmentVariable("QUILLBARROW_PASSWORD"));
            dialog.btnOKPressed();
        });
        return m_window.loadBackup(m_arguments.at(2)) && look() && exportMessages() && print() && openPhoto();
    }

    bool look()
    {
        return select(u"SMS"_s) && waitFor([this] {
                   m_messages = m_window.findChild<SMSMainForm *>();
                   return m_messages && action("IDS_EXPORT")->isEnabled();
               });
    }

    bool exportMessages() { return m_messages->exportTo({MessageFormat::Html, m_arguments.at(3)}); }

    bool print()
    {
        auto printer = std::make_shared<QPrinter>(QPrinter::ScreenResolution);
        printer->setOutputFileName(m_arguments.at(3) + u"/printed.pdf"_s);
        return m_messages->actions().printOn(printer);
    }

    /// The desktop of the test makes a file "opened" beside the target of what it is asked to open.
    bool openPhoto()
    {
        QAbstractItemView *photos = nullptr;
        if (!select(u"Photos"_s) || !waitFor([&] {
                photos = m_window.findChild<QAbstractItemView *>(u"gridPhotos"_s);
                return photos && photos->model() && photos->model()->rowCount() > 0;
            }))
            return false;
        photos->setCurrentIndex(photos->model()->index(0, 0));
        emit photos->activated(photos->currentIndex());
        return waitFor([this] { return QFile::exists(m_arguments.at(3) + u"/../opened"_s); });
    }

    bool unlist()
    {
        action("IDS_MI_UNMOUNT_BACKUP")->trigger();
        return true;
    }

    QAction *action(const char *name) const { return m_window.findChild<QAction *>(QLatin1String(name)); }

    bool select(const QString &beginning)
    {
        auto *tree = m_window.findChild<QTreeView *>(u"treeSources"_s);
        const QAbstractItemModel *model = tree->model();
        const QModelIndex backup = model->index(0, 0, model->index(0, 0));
        for (int row = 0; row < model->rowCount(backup); ++row) {
            if (!model->index(row, 0, backup).data().toString().startsWith(beginning))
                continue;
            tree->setCurrentIndex(model->index(row, 0, backup));
            return true;
        }
        return false;
    }

    MainWindow &m_window;
    QStringList m_arguments;
    QTimer m_boxes;
    SMSMainForm *m_messages = nullptr;
};

void sitDown()
{
    auto *arrival = new QTimer(QCoreApplication::instance());
    QObject::connect(arrival, &QTimer::timeout, arrival, [arrival] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *window = qobject_cast<MainWindow *>(widget);
            if (!window || !window->isVisible())
                continue;
            arrival->stop();
            Person(*window, words).act();
            return;
        }
    });
    arrival->start(pollMs);
}

Q_COREAPP_STARTUP_FUNCTION(sitDown)
} // namespace

int main(int argc, char **argv)
{
    for (int i = 0; i < argc; ++i)
        words.append(QString::fromLocal8Bit(argv[i]));
    int none = 1; // they are no arguments of the program
    return runApplication(none, argv);
}
