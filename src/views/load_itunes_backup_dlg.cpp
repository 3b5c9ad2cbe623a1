#include "views/load_itunes_backup_dlg.h"

#include "base/error.h"
#include "base/file_names.h"
#include "base/texts.h"
#include "views/fonts.h"
#include "views/item_model_backups.h"
#include "views/notice_bar.h"
#include "views/state_stack.h"
#include "views/two_line_delegate.h"
#include "work/make_sample_thread.h"
#include "work/message_boxes.h"
#include "work/run_job.h"
#include "work/win_movable.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr QSize dialogSize(560, 440);
constexpr QSize noticeRoom(0, 80);

QLabel *linkLabel(const char *text, const char *name)
{
    auto *label = new QLabel(textFor(text));
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    label->setWordWrap(true);
    return label;
}
} // namespace

LoadItunesBackupDlg::LoadItunesBackupDlg(const QStringList &roots, const QSet<QString> &loaded,
                                         QWidget *parent)
    : QDialog(parent, Qt::Dialog | Qt::FramelessWindowHint),
      m_roots(roots),
      m_loaded(loaded),
      m_model(new ItemModelBackups(this))
{
    setWindowTitle(textFor("IDS_MI_LOAD_BACKUP"));
    buildWidgets();
    new WinMovable(this);
    Report unreadable;
    m_model->setBackups(listBackups(m_roots, unreadable));
    m_notices->setReport(unreadable);
    refreshState();
    select(0);
    resize(unreadable.isEmpty() ? dialogSize : dialogSize + noticeRoom);
}

void LoadItunesBackupDlg::buildWidgets()
{
    auto *title = new QLabel(textFor("IDS_SELECT_BACKUP"));
    title->setFont(titleFont(title->font()));
    title->setWordWrap(true);
    m_list = new QListView;
    m_list->setObjectName(QStringLiteral("listBackups"));
    m_list->setAccessibleName(textFor("IDS_ROOT_BK"));
    m_list->setModel(m_model);
    m_list->setItemDelegate(
        new TwoLineDelegate(ItemModelBackups::DescriptionRole, SecondLine::Quiet, m_list));
    m_list->setIconSize({24, 24});
    m_list->setUniformItemSizes(true);
    m_notices = new NoticeBar;
    m_states = new StateStack(m_list);
    m_addOther = linkLabel("IDS_ADD_OTHER_BACKUP", "lbAddOther");
    QLabel *messageFile = linkLabel("IDS_OPEN_MESSAGE_FILE", "lbMessageFile");
    m_load = new QPushButton(textFor("IDS_LOAD"));
    m_load->setObjectName(QStringLiteral("btnLoad"));
    m_load->setDefault(true);
    m_cancel = new QPushButton(textFor("IDS_CANCEL"));
    m_cancel->setObjectName(QStringLiteral("btnCancel"));

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addStretch();
    buttons->addWidget(m_load);
    buttons->addWidget(m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 24, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(title);
    layout->addSpacing(8);
    layout->addWidget(m_notices);
    layout->addWidget(m_states, 1);
    layout->addWidget(m_addOther);
    layout->addWidget(messageFile);
    layout->addSpacing(8);
    layout->addLayout(buttons);

    connect(m_load, &QPushButton::clicked, this, &LoadItunesBackupDlg::btnLoadClicked);
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_list, &QListView::doubleClicked, this, &LoadItunesBackupDlg::btnLoadClicked);
    connect(m_addOther, &QLabel::linkActivated, this, &LoadItunesBackupDlg::btnAddOtherClicked);
    connect(messageFile, &QLabel::linkActivated, this, &LoadItunesBackupDlg::chooseMessageFile);
    connect(m_states, &StateStack::actionRequested, this, &LoadItunesBackupDlg::makeSample);
}

void LoadItunesBackupDlg::refreshState()
{
    if (m_model->rowCount() > 0)
        m_states->showContent();
    else
        m_states->showEmpty(textFor(m_loaded.isEmpty() ? "IDS_NO_BACKUP_FOUND" : "IDS_NO_OTHER_BACKUP_FOUND"),
                            textFor("IDS_NO_BACKUP_FOUND_HINT"), textFor("IDS_MAKE_SAMPLE"));
}

void LoadItunesBackupDlg::select(int row)
{
    m_list->setCurrentIndex(m_model->index(row, 0));
}

bool LoadItunesBackupDlg::isLoaded(const QString &folder) const
{
    return m_loaded.contains(backupUid(folder));
}

void LoadItunesBackupDlg::btnLoadClicked()
{
    const QModelIndex current = m_list->currentIndex();
    if (!current.isValid()) {
        showWarningBox(textFor("IDS_NEED_SELECT_BACKUP"));
        return;
    }
    const QString folder = m_model->backup(current.row()).folder;
    if (isLoaded(folder)) {
        showWarningBox(textFor("IDS_BACKUP_ALREADY_LISTED"));
        return;
    }
    m_selected = folder;
    accept();
}

void LoadItunesBackupDlg::btnAddOtherClicked(QString)
{
    const QString folder =
        QFileDialog::getExistingDirectory(this, textFor("IDS_CHOOSE_BACKUP_FOLDER"), QDir::homePath());
    if (!folder.isEmpty())
        addFolder(folder);
}

void LoadItunesBackupDlg::chooseMessageFile()
{
    m_messageFile = QFileDialog::getOpenFileName(this, textFor("IDS_CHOOSE_MESSAGE_FILE"), QDir::homePath(),
                                                 textFor("IDS_FILTER_MESSAGE_FILES"));
    if (!m_messageFile.isEmpty())
        accept();
}

void LoadItunesBackupDlg::addFolder(const QString &folder)
{
    if (isLoaded(folder)) {
        showWarningBox(textFor("IDS_BACKUP_ALREADY_LISTED"));
        return;
    }
    // The Messages folder of a Mac.
    const QString macMessages = QDir(folder).filePath(QStringLiteral("chat.db"));
    if (!isBackupFolder(folder) && QFileInfo(macMessages).isFile()) {
        m_messageFile = macMessages;
        accept();
        return;
    }
    QList<BackupInfo> found;
    Report report;
    // People choose the folder that holds the backups as readily as one of them.
    if (!isBackupFolder(folder))
        found = listBackups({folder}, report);
    if (!report.isEmpty())
        showWarningBox(problemsOf(report).join(QStringLiteral("\n\n")));
    try {
        if (found.isEmpty() && report.isEmpty())
            found << readBackupInfo(folder);
    } catch (const Error &error) {
        showWarningBox(textFor("IDS_NO_BACKUP_IN_FOLDER") + QStringLiteral("\n\n") + error.sentence());
        return;
    }
    for (const BackupInfo &backup : std::as_const(found)) {
        if (m_model->rowOf(backup.folder) < 0)
            m_model->append(backup);
    }
    refreshState();
    if (!found.isEmpty())
        select(m_model->rowOf(found.constLast().folder));
}

void LoadItunesBackupDlg::makeSample()
{
    const QString folder =
        freeFileName(QDir(sampleBackupsFolder()).filePath(textFor("IDS_SAMPLE_FOLDER_NAME")));
    auto worker = std::make_unique<MakeSampleThread>(folder);
    if (runJob(textFor("IDS_MAKING_SAMPLE"), worker, this))
        addFolder(folder);
}
