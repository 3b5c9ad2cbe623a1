#include "backup/cache_tree.h"

namespace {
using Node = FileTree::Node;

class Walk
{
public:
    Walk(BackupManifest &backup, const QString &savingText, Progress &progress)
        : m_backup(backup), m_savingText(savingText), m_progress(progress)
    {
    }

    CachedFiles cache(Node top);

private:
    BackupManifest &m_backup;
    const QString &m_savingText;
    Progress &m_progress;
    CachedFiles m_files;

    std::vector<Node> filesBelow(Node top) const;
    void cacheFile(Node file);
};

/// In the order of the tree.
std::vector<Node> Walk::filesBelow(Node top) const
{
    const FileTree &tree = m_backup.tree();
    std::vector<Node> files;
    std::vector<Node> open = {top};
    while (!open.empty()) {
        const Node node = open.back();
        open.pop_back();
        const std::vector<Node> children = tree.children(node);
        open.insert(open.end(), children.rbegin(), children.rend());
        if (!tree.isFolder(node))
            files.push_back(node);
    }
    return files;
}

void Walk::cacheFile(Node file)
{
    const auto stopWhenAsked = [this](std::uint64_t, std::uint64_t) { m_progress.check(); };
    switch (m_backup.cacheFile(m_backup.tree().record(file), stopWhenAsked)) {
    case CacheOutcome::Copied:
        ++m_files.copied;
        break;
    case CacheOutcome::Current:
        ++m_files.current;
        break;
    case CacheOutcome::LeftOut:
        ++m_files.leftOut;
        break;
    }
}

CachedFiles Walk::cache(Node top)
{
    const std::vector<Node> files = filesBelow(top);
    qint64 done = 0;
    for (const Node file : files) {
        m_progress.check();
        m_progress.report(m_savingText.arg(m_backup.tree().name(file)),
                          static_cast<int>(++done * 100 / static_cast<qint64>(files.size())), {});
        cacheFile(file);
    }
    return m_files;
}
} // namespace

CachedFiles cacheTree(BackupManifest &backup, FileTree::Node node, const QString &savingText,
                      Progress &progress)
{
    return Walk(backup, savingText, progress).cache(node);
}
