#include "backup/file_tree_builder.h"

#include <QHash>
#include <QVarLengthArray>

namespace {
bool hasNoKind(const FileCatalogue &catalogue, FileCatalogue::Index record)
{
    return (catalogue.mode(record) & modeTypeMask) == 0;
}

qsizetype folderLength(QByteArrayView path)
{
    return std::max<qsizetype>(path.lastIndexOf('/'), 0);
}
} // namespace

FileTreeBuilder::FileTreeBuilder(const FileCatalogue &catalogue) : m_catalogue(catalogue) {}

void FileTreeBuilder::build()
{
    for (std::uint32_t i = 0; i < m_catalogue.domainCount(); ++i)
        prefixes.push_back(virtualPrefix(m_catalogue.domainName(i)));
    parents.assign(std::size_t{m_catalogue.size()} + 1, none);
    bool anyKindless = false;
    for (Index i = 0; i < m_catalogue.size(); ++i) {
        attach(i);
        anyKindless |= hasNoKind(m_catalogue, i);
    }
    for (Index i = 0; anyKindless && i < m_catalogue.size(); ++i)
        if (hasNoKind(m_catalogue, i))
            mergeKindless(i);
    m_folders = {};
    parents.shrink_to_fit();
    madeUp.shrink_to_fit();
}

void FileTreeBuilder::attach(Index record)
{
    m_path.set(prefixes[m_catalogue.domainNumber(record)], m_catalogue.relativePath(record));
    const QByteArrayView path = m_path.bytes();
    if (path.isEmpty())
        return;
    const Node own = record + 1;
    if (m_catalogue.isDirectory(record)) {
        const Node there = find(path);
        if (there == none) {
            m_folders.insert(SlotTable::hash(path), own);
        } else if (there != own) {
            giveRecord(there, record);
            return;
        }
    }
    const Node parent = folderOf(record, folderLength(path));
    parents[own] = parent;
}

/// The folder that the first `length` bytes of the current path name, made when it is not there yet, with
/// all that lie above it.
FileTreeBuilder::Node FileTreeBuilder::folderOf(Index record, qsizetype length)
{
    if (length == 0)
        return root;
    const QByteArrayView wanted = m_path.bytes().first(length);
    if (wanted == QByteArrayView(m_lastFolder.data(), static_cast<qsizetype>(m_lastFolder.size())))
        return m_lastFolderNode;
    QVarLengthArray<qsizetype, 16> missing;
    Node found = root;
    for (qsizetype at = length; at > 0; at = folderLength(m_path.bytes().first(at))) {
        found = find(m_path.bytes().first(at));
        if (found != none)
            break;
        missing.append(at);
        found = root;
    }
    for (; !missing.isEmpty(); missing.removeLast()) {
        const Node added = addFolder(record, missing.last());
        parents[added] = found;
        found = added;
    }
    m_lastFolder.assign(wanted.data(), static_cast<std::size_t>(wanted.size()));
    m_lastFolderNode = found;
    return found;
}

FileTreeBuilder::Node FileTreeBuilder::addFolder(Index record, qsizetype length)
{
    const Index own = recordOfFolder(record, length);
    Node added = own + 1;
    if (own == FileCatalogue::none) {
        added = static_cast<Node>(parents.size());
        parents.push_back(none);
        madeUp.push_back({record, static_cast<std::uint32_t>(length), FileCatalogue::none});
    }
    m_folders.insert(SlotTable::hash(m_path.bytes().first(length)), added);
    return added;
}

/// The record of the same domain that stands for a folder above `record`. One whose kind the catalogue does
/// not tell is a folder, since something lies below it.
FileTreeBuilder::Index FileTreeBuilder::recordOfFolder(Index record, qsizetype length) const
{
    const QByteArrayView path = m_path.bytes().first(length);
    const qsizetype start = m_path.pathStart();
    const QByteArray &prefix = prefixes[m_catalogue.domainNumber(record)];
    if (length <= start && length != prefix.size())
        return FileCatalogue::none; // above the domain, or the empty name in "domain//name"
    const QByteArrayView relative = length > start ? path.sliced(start) : QByteArrayView();
    const Index found = m_catalogue.find(m_catalogue.domain(record), relative);
    if (found == FileCatalogue::none || !(m_catalogue.isDirectory(found) || hasNoKind(m_catalogue, found)))
        return FileCatalogue::none;
    return found;
}

/// Two domains may list one folder without telling its kind: then only one of the two is part of the tree.
void FileTreeBuilder::mergeKindless(Index record)
{
    m_path.set(prefixes[m_catalogue.domainNumber(record)], m_catalogue.relativePath(record));
    const Node folder = find(m_path.bytes());
    if (folder == none || folder == record + 1)
        return;
    giveRecord(folder, record);
    parents[record + 1] = none;
}

void FileTreeBuilder::giveRecord(Node folder, Index record)
{
    const std::size_t recordNodes = std::size_t{m_catalogue.size()} + 1;
    if (folder >= recordNodes && madeUp[folder - recordNodes].record == FileCatalogue::none)
        madeUp[folder - recordNodes].record = record;
}

bool FileTreeBuilder::stands(Node node, QByteArrayView path) const
{
    const std::size_t recordNodes = std::size_t{m_catalogue.size()} + 1;
    const bool isMadeUp = node >= recordNodes;
    const Index through = isMadeUp ? madeUp[node - recordNodes].through : node - 1;
    const QByteArray &prefix = prefixes[m_catalogue.domainNumber(through)];
    const QByteArrayView relative = m_catalogue.relativePath(through);
    const qsizetype start = prefix.size() + (prefix.isEmpty() || relative.isEmpty() ? 0 : 1);
    const qsizetype length =
        isMadeUp ? qsizetype{madeUp[node - recordNodes].length} : start + relative.size();
    if (length != path.size())
        return false;
    if (length <= prefix.size())
        return QByteArrayView(prefix).first(length) == path;
    return path.startsWith(prefix) && (prefix.isEmpty() || path[prefix.size()] == '/') &&
           path.sliced(start) == relative.first(length - start);
}

FileTreeBuilder::Node FileTreeBuilder::find(QByteArrayView folder) const
{
    return m_folders.find(SlotTable::hash(folder), [&](Node node) { return stands(node, folder); });
}
