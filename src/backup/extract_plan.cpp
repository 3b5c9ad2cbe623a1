#include "backup/extract_plan.h"

#include <algorithm>

namespace {
QByteArrayView withoutTrailingSlashes(QByteArrayView path)
{
    while (path.endsWith('/'))
        path.chop(1);
    return path;
}
} // namespace

ExtractPlan::ExtractPlan(const BackupManifest &backup) : m_backup(backup), m_catalogue(backup.catalogue()) {}

std::uint32_t ExtractPlan::addRoot(QByteArrayView path, bool isVirtual)
{
    const QByteArrayView lastName = path.sliced(path.lastIndexOf('/') + 1);
    m_roots.push_back({lastName.toByteArray(), path.size(), isVirtual});
    return static_cast<std::uint32_t>(m_roots.size() - 1);
}

const std::vector<ExtractPlan::Index> &ExtractPlan::sorted(const QByteArray &domain)
{
    const auto known = m_byPath.constFind(domain);
    if (known != m_byPath.cend())
        return *known;
    std::vector<Index> &records = m_byPath[domain];
    for (Index i = 0; i < m_catalogue.size(); ++i)
        if (m_catalogue.domain(i) == domain)
            records.push_back(i);
    std::sort(records.begin(), records.end(), [this](Index a, Index b) {
        return m_catalogue.relativePath(a).compare(m_catalogue.relativePath(b)) < 0;
    });
    return records;
}

bool ExtractPlan::add(const ExtractRequest &request)
{
    const QByteArray path = withoutTrailingSlashes(request.relativePath).toByteArray();
    const Index own = m_catalogue.find(request.domain, path);
    const std::size_t before = m_items.size();
    const std::uint32_t root = addRoot(path, false);
    if (own != FileCatalogue::none)
        m_items.push_back({own, root});
    if (own != FileCatalogue::none && !m_catalogue.isDirectory(own))
        return true;

    const auto comesBefore = [this](Index record, const QByteArray &text) {
        return m_catalogue.relativePath(record).compare(text) < 0;
    };
    const std::vector<Index> &all = sorted(request.domain);
    auto from = all.begin();
    auto to = all.end();
    if (!path.isEmpty()) {
        from = std::lower_bound(all.begin(), all.end(), path + '/', comesBefore);
        to = std::lower_bound(from, all.end(), path + char('/' + 1), comesBefore);
    }
    for (; from != to; ++from)
        if (*from != own)
            m_items.push_back({*from, root});
    return m_items.size() > before;
}

void ExtractPlan::add(FileTree::Node node)
{
    const FileTree &tree = m_backup.tree();
    const std::uint32_t root = addRoot(tree.pathUtf8(node), true);
    std::vector<FileTree::Node> open = {node};
    while (!open.empty()) {
        const FileTree::Node next = open.back();
        open.pop_back();
        if (tree.record(next) != FileCatalogue::none)
            m_items.push_back({tree.record(next), root});
        const std::vector<FileTree::Node> children = tree.children(next);
        open.insert(open.end(), children.rbegin(), children.rend());
    }
}

void ExtractPlan::add(const NamedExtract &file)
{
    m_roots.push_back({file.name.toUtf8(), m_catalogue.relativePath(file.record).size(), false});
    m_items.push_back({file.record, static_cast<std::uint32_t>(m_roots.size() - 1)});
}

QByteArray ExtractPlan::landing(const Item &item) const
{
    const Root &root = m_roots[item.root];
    const QByteArrayView path = m_catalogue.relativePath(item.record);
    QByteArray landing = root.base;
    if (root.isVirtual)
        landing += FileTree::virtualPath(m_catalogue.domain(item.record), path).sliced(root.cut);
    else
        landing += path.sliced(root.cut);
    return landing;
}
