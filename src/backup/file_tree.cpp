#include "backup/file_tree.h"

#include "backup/file_tree_builder.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <span>

struct FileTree::Data
{
    const FileCatalogue *catalogue = nullptr;
    std::vector<Node> parents;
    std::vector<FileTreeBuilder::MadeUp> madeUp;
    std::vector<QByteArray> prefixes;
    // The children of node n stand at children[firstChild[n]] up to children[firstChild[n + 1]], by name.
    std::vector<std::uint32_t> firstChild;
    std::vector<Node> children;

    std::size_t recordNodes() const { return parents.size() - madeUp.size(); }
    bool isMadeUp(Node node) const { return node >= recordNodes(); }
    bool isPart(Node node) const { return node == root || (node < parents.size() && parents[node] != none); }
    std::span<const Node> childrenOf(Node node) const
    {
        if (node >= parents.size())
            return {};
        return std::span(children).subspan(firstChild[node], firstChild[node + 1] - firstChild[node]);
    }
    QByteArrayView name(Node node) const;
    void groupChildren();
    void sortChildren();
    Node childNamed(Node folder, QByteArrayView name, bool mustBeFolder) const;
    bool isFolder(Node node) const;
};

namespace {
QByteArrayView lastComponent(QByteArrayView path)
{
    return path.sliced(path.lastIndexOf('/') + 1);
}

/// The first eight bytes of a name as a number that sorts as they do: saves most comparisons of names.
std::uint64_t sortKey(QByteArrayView name)
{
    char bytes[8] = {};
    std::memcpy(bytes, name.data(), static_cast<std::size_t>(std::min<qsizetype>(name.size(), 8)));
    return qFromBigEndian<std::uint64_t>(bytes);
}

struct Named
{
    std::uint64_t key;
    FileTree::Node node;
};
} // namespace

QByteArrayView FileTree::Data::name(Node node) const
{
    if (!isPart(node) || node == root)
        return {};
    const FileTreeBuilder::MadeUp *folder = isMadeUp(node) ? &madeUp[node - recordNodes()] : nullptr;
    const FileCatalogue::Index record = folder ? folder->through : node - 1;
    const QByteArray &prefix = prefixes[catalogue->domainNumber(record)];
    const QByteArrayView path = catalogue->relativePath(record);
    const qsizetype start = prefix.size() + (prefix.isEmpty() || path.isEmpty() ? 0 : 1);
    const qsizetype length = folder ? qsizetype{folder->length} : start + path.size();
    if (length <= prefix.size())
        return lastComponent(QByteArrayView(prefix).first(length));
    return lastComponent(path.first(length - start));
}

void FileTree::Data::groupChildren()
{
    firstChild.assign(parents.size() + 1, 0);
    for (const Node parent : parents)
        if (parent != none)
            ++firstChild[parent + 1];
    for (std::size_t i = 1; i < firstChild.size(); ++i)
        firstChild[i] += firstChild[i - 1];
    children.resize(firstChild.back());
    std::vector<std::uint32_t> next(firstChild);
    for (Node node = 0; node < parents.size(); ++node)
        if (parents[node] != none)
            children[next[parents[node]]++] = node;
}

void FileTree::Data::sortChildren()
{
    std::vector<Named> named;
    for (Node folder = 0; folder < parents.size(); ++folder) {
        const auto begin = children.begin() + firstChild[folder];
        const auto end = children.begin() + firstChild[folder + 1];
        if (end - begin < 2)
            continue;
        named.clear();
        for (auto child = begin; child != end; ++child)
            named.push_back({sortKey(name(*child)), *child});
        std::sort(named.begin(), named.end(), [this](const Named &a, const Named &b) {
            if (a.key != b.key)
                return a.key < b.key;
            const int order = name(a.node).compare(name(b.node));
            return order != 0 ? order < 0 : a.node < b.node;
        });
        std::transform(named.cbegin(), named.cend(), begin, [](const Named &item) { return item.node; });
    }
}

bool FileTree::Data::isFolder(Node node) const
{
    return node == root || isMadeUp(node) || catalogue->isDirectory(node - 1) || !childrenOf(node).empty();
}

FileTree::Node FileTree::Data::childNamed(Node folder, QByteArrayView wanted, bool mustBeFolder) const
{
    const std::span<const Node> all = childrenOf(folder);
    auto at = std::lower_bound(all.begin(), all.end(), wanted, [this](Node child, QByteArrayView text) {
        return name(child).compare(text) < 0;
    });
    for (; at != all.end() && name(*at) == wanted; ++at)
        if (!mustBeFolder || isFolder(*at))
            return *at;
    return none;
}

FileTree::FileTree() : d(std::make_unique<Data>())
{
    d->parents.assign(1, none);
    d->firstChild.assign(2, 0);
}
FileTree::FileTree(FileTree &&) noexcept = default;
FileTree &FileTree::operator=(FileTree &&) noexcept = default;
FileTree::~FileTree() = default;

FileTree FileTree::build(const FileCatalogue &catalogue)
{
    FileTreeBuilder builder(catalogue);
    builder.build();
    FileTree tree;
    tree.d->catalogue = &catalogue;
    tree.d->parents = std::move(builder.parents);
    tree.d->madeUp = std::move(builder.madeUp);
    tree.d->prefixes = std::move(builder.prefixes);
    tree.d->groupChildren();
    tree.d->sortChildren();
    return tree;
}

QString FileTree::name(Node node) const
{
    return QString::fromUtf8(d->name(node));
}

FileTree::Node FileTree::parent(Node node) const
{
    return node < d->parents.size() ? d->parents[node] : none;
}

std::vector<FileTree::Node> FileTree::children(Node node) const
{
    const std::span<const Node> all = d->childrenOf(node);
    return {all.begin(), all.end()};
}

std::size_t FileTree::childCount(Node node) const
{
    return d->childrenOf(node).size();
}

bool FileTree::isFolder(Node node) const
{
    return d->isPart(node) && d->isFolder(node);
}

FileCatalogue::Index FileTree::record(Node node) const
{
    if (!d->isPart(node) || node == root)
        return FileCatalogue::none;
    return d->isMadeUp(node) ? d->madeUp[node - d->recordNodes()].record : node - 1;
}

QString FileTree::path(Node node) const
{
    QByteArray path;
    for (; d->isPart(node) && node != root; node = d->parents[node])
        path.prepend(path.isEmpty() ? "" : "/").prepend(d->name(node));
    return QString::fromUtf8(path);
}

QByteArray FileTree::pathUtf8(Node node) const
{
    if (!d->isPart(node) || node == root)
        return {};
    const FileTreeBuilder::MadeUp *folder = d->isMadeUp(node) ? &d->madeUp[node - d->recordNodes()] : nullptr;
    const FileCatalogue::Index record = folder ? folder->through : node - 1;
    VirtualPath path;
    path.set(d->prefixes[d->catalogue->domainNumber(record)], d->catalogue->relativePath(record));
    return (folder ? path.bytes().first(folder->length) : path.bytes()).toByteArray();
}

FileTree::Node FileTree::find(const QString &virtualPath) const
{
    return findUtf8(virtualPath.toUtf8());
}

FileTree::Node FileTree::findUtf8(QByteArrayView virtualPath) const
{
    Node node = root;
    while (!virtualPath.isEmpty() && node != none) {
        const qsizetype slash = virtualPath.indexOf('/');
        const QByteArrayView name = slash < 0 ? virtualPath : virtualPath.first(slash);
        node = d->childNamed(node, name, slash >= 0);
        virtualPath = slash < 0 ? QByteArrayView() : virtualPath.sliced(slash + 1);
    }
    return node;
}

std::size_t FileTree::nodeCount() const
{
    return d->children.size() + 1;
}

std::size_t FileTree::memoryBytes() const
{
    std::size_t bytes = d->parents.capacity() * sizeof(Node) + d->children.capacity() * sizeof(Node) +
                        d->firstChild.capacity() * sizeof(std::uint32_t) +
                        d->madeUp.capacity() * sizeof(FileTreeBuilder::MadeUp) +
                        d->prefixes.capacity() * sizeof(QByteArray);
    for (const QByteArray &prefix : d->prefixes)
        bytes += static_cast<std::size_t>(prefix.capacity());
    return bytes;
}

QByteArray FileTree::virtualPath(QByteArrayView domain, QByteArrayView relativePath)
{
    const QByteArray prefix = virtualPrefix(domain);
    VirtualPath path;
    path.set(prefix, relativePath);
    return path.bytes().toByteArray();
}
