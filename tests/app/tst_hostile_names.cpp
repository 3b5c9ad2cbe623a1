#include "app/item_model_bk.h"
#include "app/main_window.h"
#include "base/app_folders.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"
#include "support/sample_backup.h"
#include "support/web_test_main.h"
#include "views/data_view.h"

#include <QAbstractItemView>
#include <QAction>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QTest>
#include <QTextBrowser>
#include <QTextBlock>
#include <QTextDocument>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {
// Rich text wherever somebody takes it for that: it would load a file, or ask a server.
const QString hostile = u"<img src=\"file:///etc/hostname\">&amp;<b>x</b>"_s;
const QString hostileFile = u"<img src=\"x\">&amp;<b>x<b>"_s; // no "/" in the name of a file
constexpr int longName = 20'000;

struct Tampering
{
    const char *path;
    const char *statements; // ?: the name
};
const Tampering tamperings[] = {
    {"Library/AddressBook/AddressBook.sqlitedb",
     "update ABPerson set First=?, Last='', Organization=?, "
     "Note=?; update ABMultiValue set value=? where rowid%2 and property<>12"},
    {"Library/SMS/sms.db", "update chat set display_name=?; update message set text=?, subject=?;"
                           "update attachment set transfer_name=?"},
    {"Library/CallHistoryDB/CallHistory.storedata", "update ZCALLRECORD set ZADDRESS=?, ZNAME=?"},
    {"Library/Notes/notes.sqlite", "update ZNOTE set ZTITLE=?, ZSUMMARY=?"},
    {"Library/Calendar/Calendar.sqlitedb",
     "update Calendar set title=?; update CalendarItem set summary=?, description=?, url=?;"
     "update Location set title=?"},
    {"Library/Safari/Bookmarks.db", "update bookmarks set title=?, url=?"},
    {"Library/Voicemail/voicemail.db", "update voicemail set sender=?"},
};

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', u"''"_s) + u'\'';
}

void change(const QString &database, const QString &statements, const QString &name)
{
    Sqlite3DB db;
    db.openThrow(database, SqliteOpen::ReadWrite);
    QVERIFY2(db.exec(QString(statements).replace(u"?"_s, quoted(name))), qPrintable(db.lastError()));
}

void replaceIn(const QString &path, const QString &from, const QString &to)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QString text = QString::fromUtf8(file.readAll());
    QVERIFY(text.contains(from));
    file.resize(0);
    file.write(QString(text).replace(from, to).toUtf8());
}

QString storedPath(const QString &folder, const QString &domain, const QString &path)
{
    const QString id = QString::fromLatin1(
        QCryptographicHash::hash((domain + u'-' + path).toUtf8(), QCryptographicHash::Sha1).toHex());
    return folder + u'/' + id.left(2) + u'/' + id;
}

/// Puts the name before those of the pictures; where a file is stored follows from its name.
void renamePictures(const QString &backup, const QString &name)
{
    Sqlite3DB db;
    db.openThrow(backup + u"/Manifest.db"_s, SqliteOpen::ReadWrite);
    Sqlite3Cursor row =
        db.queryThrow(u"select domain, relativePath from Files where relativePath like '%/IMG_%'"_s);
    while (row.moveNext()) {
        const QString renamed = QString(row.getText(1)).replace(u"/IMG_"_s, u'/' + name + u"IMG_"_s);
        const QString from = storedPath(backup, row.getText(0), row.getText(1));
        const QString to = storedPath(backup, row.getText(0), renamed);
        if (QFile::exists(from)) // no folder
            QVERIFY(QDir().mkpath(QFileInfo(to).path()) && QFile::rename(from, to));
    }
    change(backup + u"/Manifest.db"_s,
           u"update Files set relativePath=replace(relativePath, '/IMG_', '/'||?||'IMG_')"_s, name);
}

/// Puts the name wherever a backup has room for one.
void giveNames(const SampleBackup &sample, const QString &name, const QString &fileName)
{
    for (const Tampering &each : tamperings) {
        const QString id = sample.summary().file(u"HomeDomain"_s, QLatin1String(each.path))->fileId;
        change(sample.folder() + u'/' + id.left(2) + u'/' + id, QLatin1String(each.statements), name);
    }
    renamePictures(sample.folder(), fileName);
    replaceIn(sample.folder() + u"/Info.plist"_s, u"Jördis’ iPhone"_s, name.toHtmlEscaped());
}

/// A picture that is none of the program's own.
bool loadsSomething(const QTextDocument &document)
{
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            const QTextImageFormat picture = piece.fragment().charFormat().toImageFormat();
            if (picture.isValid() && !picture.name().startsWith(u":res/"_s) &&
                !picture.name().startsWith(u"data:"_s))
                return true;
        }
    return false;
}

/// What people see of a text that its widget may take for rich; null when it would load something.
QString seen(const QString &text, Qt::TextFormat format = Qt::AutoText)
{
    if (format == Qt::PlainText || (format == Qt::AutoText && !Qt::mightBeRichText(text)))
        return text + u' ';
    QTextDocument document;
    document.setHtml(text);
    return loadsSomething(document) ? QString() : document.toPlainText() + u' ';
}

QString withoutBreaks(QString text)
{
    return text.remove(QChar(0x200b));
}
} // namespace

/// Names out of a backup are plain text wherever they are shown, whatever they look like and however long
/// they are.
class TestHostileNames : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void shownAsTheyAre_data();
    void shownAsTheyAre();

private:
    void look(const QWidget &window);
    void lookAt(const QAbstractItemModel &model, const QModelIndex &parent);
    void note(const QString &text, const QString &where);

    QString m_name;
    QString m_fileName;
    QStringList m_wrong; // places that take a name for more than a text
    int m_named = 0;     // texts that show one of the names whole
};

void TestHostileNames::initTestCase()
{
    initResources();
    installTexts();
}

// A text that holds the name's markup and does not show it has eaten it.
void TestHostileNames::note(const QString &text, const QString &where)
{
    if (text.isNull())
        m_wrong << where;
    else if (withoutBreaks(text).contains(m_name) || withoutBreaks(text).contains(m_fileName))
        ++m_named;
    else if (text.contains(u"&lt;"_s) || text.contains(u"&amp;amp;"_s))
        m_wrong << where + u": "_s + text.left(200);
}

void TestHostileNames::lookAt(const QAbstractItemModel &model, const QModelIndex &parent)
{
    for (int row = 0; row < std::min(20, model.rowCount(parent)); ++row) {
        for (int column = 0; column < model.columnCount(parent); ++column) {
            const QModelIndex index = model.index(row, column, parent);
            note(seen(index.data(Qt::ToolTipRole).toString()),
                 QLatin1String(model.metaObject()->className()));
            QVERIFY2(index.data().toString().size() < longName, model.metaObject()->className());
        }
        lookAt(model, model.index(row, 0, parent));
    }
}

void TestHostileNames::look(const QWidget &window)
{
    for (const QWidget *widget : window.findChildren<QWidget *>()) {
        const QString where = QLatin1String(widget->metaObject()->className()) + u' ' + widget->objectName();
        note(seen(widget->toolTip()), where + u" tool tip"_s);
        for (const QAction *action : widget->actions())
            note(seen(action->toolTip()), where + u" action"_s);
        if (const auto *label = qobject_cast<const QLabel *>(widget))
            note(seen(label->text(), label->textFormat()), where);
        else if (const auto *browser = qobject_cast<const QTextBrowser *>(widget))
            note(loadsSomething(*browser->document()) ? QString() : browser->toPlainText() + u' ', where);
        else if (const auto *view = qobject_cast<const QAbstractItemView *>(widget); view && view->model())
            lookAt(*view->model(), {});
    }
}

void TestHostileNames::shownAsTheyAre_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("fileName");
    QTest::newRow("markup") << hostile << hostileFile;
    QTest::newRow("very long") << QString(longName, u'W') << QString(200, u'W');
}

void TestHostileNames::shownAsTheyAre()
{
    QFETCH(QString, name);
    QFETCH(QString, fileName);
    m_name = name;
    m_fileName = fileName;
    m_named = 0;
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    forgetAppDataFolder();
    QVERIFY(QDir().mkpath(localDatabasesFolder().filePath(fileName)));
    const SampleBackup sample;
    giveNames(sample, name, fileName);
    MainWindow window({});
    window.show();
    const QSize size = window.size();
    QVERIFY(window.loadBackup(sample.folder()));
    auto *tree = window.findChild<QTreeView *>(u"treeSources"_s);
    auto *model = static_cast<ItemModelBK *>(tree->model());
    const BkNode *backup = static_cast<BkNode *>(model->backupsRoot()->children().front().get());
    for (const auto &node : backup->children()) {
        tree->setCurrentIndex(model->indexOf(node.get()));
        const QString label = static_cast<BkNode *>(node.get())->label();
        const auto views = window.findChildren<DataView *>();
        const auto shown =
            std::find_if(views.begin(), views.end(), [](DataView *view) { return view->isVisible(); });
        QVERIFY2(shown != views.end(), qPrintable(label));
        QTRY_VERIFY2(!(*shown)->status().endsWith(u"..."_s), qPrintable(label));
        look(window);
        QVERIFY2(window.size() == size, qPrintable(label + u": a name has pushed the window's borders"_s));
    }
    QVERIFY2(m_wrong.isEmpty(), qPrintable(m_wrong.join(u'\n')));
    QVERIFY2(name.size() == longName || m_named > 100, qPrintable(QString::number(m_named)));
}

QB_WEB_TEST_MAIN(TestHostileNames)
#include "tst_hostile_names.moc"
