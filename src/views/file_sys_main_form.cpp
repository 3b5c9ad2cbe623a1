#include "views/file_sys_main_form.h"

#include "base/texts.h"
#include "views/item_model_file_sys.h"
#include "views/local_number.h"
#include "views/notice_bar.h"
#include "views/roomy_delegate.h"
#include "views/state_stack.h"
#include "views/view_header.h"
#include "work/export_bk_file_thread.h"
#include "work/run_job.h"

#include <QAction>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QStandardPaths>
#include <QTimer>
#include <QTreeView>
#include <QVBoxLayout>

namespace {
constexpr int nameWidth = 420;
constexpr int sizeWidth = 100;
constexpr int dateWidth = 160;
// Long enough that typing a word looks through a million names once, not for every letter.
constexpr int filterDelayMs = 200;

QString exportText(qint64 count)
{
    return count == 0 ? textFor("IDS_EXPORT") : textFor("IDS_EXPORT_ITEMS", count);
}
} // namespace

FileSysMainForm::FileSysMainForm(OpenBackupPtr backup, QWidget *parent)
    : DataView(parent),
      m_backup(std::move(backup)),
      m_model(new ItemModelFileSys(m_backup, this)),
      m_header(new ViewHeader(textFor("IDS_FILE_SYSTEM"))),
      m_filter(m_header->addFilter(textFor("IDS_FILTER_FILES"))),
      m_tree(new QTreeView),
      m_states(new StateStack(m_tree)),
      m_filterDelay(new QTimer(this))
{
    m_header->addAction(exportAction());
    buildTree();
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    auto *notices = new NoticeBar;
    notices->setReport(m_backup->manifest().report());
    layout->addWidget(notices);
    layout->addWidget(m_states, 1);

    m_filterDelay->setSingleShot(true);
    m_filterDelay->setInterval(filterDelayMs);
    connect(m_model, &ItemModelFileSys::filterApplied, this, &FileSysMainForm::onFilterApplied);
    connect(m_filterDelay, &QTimer::timeout, this, &FileSysMainForm::applyFilter);
    connect(m_filter, &QLineEdit::textChanged, m_filterDelay, qOverload<>(&QTimer::start));
    connect(m_header, &ViewHeader::filterLeft, m_tree, [this] { m_tree->setFocus(); });
    connect(m_states, &StateStack::actionRequested, m_filter, &QLineEdit::clear);
    applyFilter();
}

void FileSysMainForm::buildTree()
{
    m_tree->setObjectName(QStringLiteral("treeFiles"));
    m_tree->setAccessibleName(textFor("IDS_FILE_SYSTEM"));
    m_tree->setModel(m_model);
    m_tree->setUniformRowHeights(true);
    m_tree->setItemDelegate(new RoomyDelegate(m_tree));
    m_tree->setAllColumnsShowFocus(true);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_tree->setTextElideMode(Qt::ElideMiddle);
    m_tree->setFrameShape(QFrame::NoFrame);
    m_tree->setSortingEnabled(true);
    m_tree->sortByColumn(ItemModelFileSys::Name, Qt::AscendingOrder);
    m_tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tree->QWidget::addAction(exportAction());
    m_tree->header()->resizeSection(ItemModelFileSys::Name, nameWidth);
    m_tree->header()->resizeSection(ItemModelFileSys::Size, sizeWidth);
    m_tree->header()->resizeSection(ItemModelFileSys::Modified, dateWidth);
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &FileSysMainForm::refresh);
    connect(m_model, &QAbstractItemModel::modelReset, this, &FileSysMainForm::refresh);
}

// The index of an opened backup does not change; only what was typed is taken back.
void FileSysMainForm::reload()
{
    m_filter->clear();
    applyFilter();
}

void FileSysMainForm::applyFilter()
{
    m_filterDelay->stop();
    m_model->setFilter(m_filter->text());
    if (m_model->isSearching())
        setStatus(textFor("IDS_SEARCHING"));
}

void FileSysMainForm::onFilterApplied()
{
    m_tree->setRootIsDecorated(!m_model->isFiltered());
    m_tree->setColumnHidden(ItemModelFileSys::Folder, !m_model->isFiltered());
    m_tree->header()->setStretchLastSection(m_model->isFiltered());
    if (m_model->rowCount() > 0)
        m_states->showContent();
    else if (m_model->isFiltered())
        m_states->showEmpty(textFor("IDS_NOTHING_MATCHES"),
                            textFor("IDS_NO_FILE_NAMED_%1").arg(m_filter->text().trimmed()),
                            textFor("IDS_SHOW_ALL_FILES"));
    else
        m_states->showEmpty(textFor("IDS_NO_FILES"), textFor("IDS_NO_FILES_HINT"));
    m_header->setCount(m_model->isFiltered() ? textFor("IDS_%1_MATCHES").arg(localNumber(m_model->rowCount()))
                                             : textFor("IDS_FILE_COUNT", m_model->fileCount()));
    refresh();
}

std::vector<FileTree::Node> FileSysMainForm::selectedNodes() const
{
    std::vector<FileTree::Node> nodes;
    const QModelIndexList rows = m_tree->selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        nodes.push_back(m_model->node(row));
    return nodes;
}

void FileSysMainForm::refresh()
{
    const qsizetype selected = m_tree->selectionModel()->selectedRows().size();
    setExportState(exportText(selected), selected == 0 ? textFor("IDS_WHY_SELECT_FILES") : QString());
    setStatus(textFor("IDS_%1_SELECTED_%2")
                  .arg(textFor("IDS_FILE_COUNT", m_model->fileCount()), localNumber(selected)));
}

void FileSysMainForm::exportSelection()
{
    const QString start = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const QString folder = QFileDialog::getExistingDirectory(this, textFor("IDS_EXPORT_INTO_FOLDER"), start);
    if (!folder.isEmpty())
        exportTo(folder);
}

bool FileSysMainForm::exportTo(const QString &folder)
{
    std::vector<FileTree::Node> nodes = selectedNodes();
    if (nodes.empty())
        return false;
    auto worker = std::make_unique<ExportBKFileThread>(m_backup, std::move(nodes), folder);
    return runJob(textFor("IDS_EXTRACTING_FILES"), worker, this, folder);
}
