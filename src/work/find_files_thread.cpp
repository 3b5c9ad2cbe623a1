#include "work/find_files_thread.h"

FindFilesThread::FindFilesThread(OpenBackupPtr backup, QString text, FileOrder order)
    : m_backup(std::move(backup)), m_text(std::move(text)), m_order(order)
{
}

QString FindFilesThread::work(Progress &progress)
{
    const FileTree &tree = m_backup->manifest().tree();
    const auto count = static_cast<FileTree::Node>(tree.nodeCount());
    for (FileTree::Node node = FileTree::root + 1; node < count; ++node) {
        progress.check();
        if (tree.name(node).contains(m_text, Qt::CaseInsensitive))
            m_found.push_back(node);
    }
    sortFiles(m_found, m_backup->manifest(), m_order);
    return {};
}
