#include "backup/file_catalogue.h"

#include "backup/byte_arena.h"
#include "backup/slot_table.h"
#include "base/error.h"

#include <QHash>
#include <QVarLengthArray>
#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <mutex>
#include <vector>

namespace {
using Index = FileCatalogue::Index;

/// The numbers of one record. What has any length stands in the arena at `texts`: path, link target, digest,
/// key, then name and value of each property.
struct Row
{
    std::uint32_t texts;
    std::uint32_t domain;
    std::uint32_t inodeLow;
    std::uint32_t inodeHigh;
    std::uint32_t sizeLow;
    std::uint32_t sizeHigh;
    std::uint32_t owner;
    std::uint32_t lastModified;
    std::uint32_t lastStatusChange;
    std::uint32_t birth;
    std::uint16_t mode;
    std::uint8_t protectionClass;
    std::uint8_t propertyCount;
};

std::uint64_t joined(std::uint32_t high, std::uint32_t low)
{
    return std::uint64_t{high} << 32 | low;
}

std::uint32_t lowHalf(std::uint64_t value)
{
    return static_cast<std::uint32_t>(value);
}

std::uint32_t highHalf(std::uint64_t value)
{
    return static_cast<std::uint32_t>(value >> 32);
}

/// The first 32 bits of a file id, and the row.
struct IdEntry
{
    std::uint32_t prefix;
    Index row;

    bool operator<(const IdEntry &other) const { return prefix < other.prefix; }
};

/// "domain-path", of which a file id is the digest. Two records are the same when these bytes are.
class Key
{
public:
    Key(QByteArrayView domain, QByteArrayView path)
    {
        m_bytes.resize(domain.size() + 1 + path.size());
        std::memcpy(m_bytes.data(), domain.data(), static_cast<std::size_t>(domain.size()));
        m_bytes[domain.size()] = '-';
        if (!path.isEmpty())
            std::memcpy(m_bytes.data() + domain.size() + 1, path.data(),
                        static_cast<std::size_t>(path.size()));
    }

    std::uint32_t hash() const { return SlotTable::hash(view()); }

    bool is(QByteArrayView domain, QByteArrayView path) const
    {
        const QByteArrayView own = view();
        return own.size() == domain.size() + 1 + path.size() && own.startsWith(domain) &&
               own[domain.size()] == '-' && own.endsWith(path);
    }

private:
    QVarLengthArray<char, 512> m_bytes;

    QByteArrayView view() const { return QByteArrayView(m_bytes.constData(), m_bytes.size()); }
};

template <typename T>
std::size_t heldBy(const std::vector<T> &items)
{
    return items.capacity() * sizeof(T);
}
} // namespace

struct FileCatalogue::Data
{
    ByteArena texts;
    std::vector<Row> rows;
    SlotTable table;
    std::vector<QByteArray> domains;
    QHash<QByteArray, std::uint32_t> domainNumbers;
    std::uint32_t lastDomain = 0;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> owners; // user, group
    QHash<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> ownerNumbers;
    // Few ever ask by id, and a digest a record costs time and memory: made when the first one asks.
    std::once_flag idsSorted;
    std::vector<IdEntry> ids;

    QByteArrayView path(Index index) const
    {
        std::uint32_t offset = rows[index].texts;
        return texts.read(offset);
    }
    QByteArrayView domain(Index index) const { return domains[rows[index].domain]; }

    std::uint32_t domainNumber(QByteArrayView name);
    std::uint32_t ownerNumber(std::uint32_t user, std::uint32_t group);
    Index find(const Key &key, std::uint32_t hash) const
    {
        return table.find(hash, [&](Index row) { return key.is(domain(row), path(row)); });
    }
    Row packed(const FileRecord &record);
    void sortIds();
};

std::uint32_t FileCatalogue::Data::domainNumber(QByteArrayView name)
{
    if (!domains.empty() && domains[lastDomain] == name)
        return lastDomain;
    const auto found = domainNumbers.constFind(QByteArray::fromRawData(name.data(), name.size()));
    if (found != domainNumbers.cend())
        return lastDomain = *found;
    lastDomain = static_cast<std::uint32_t>(domains.size());
    domains.push_back(name.toByteArray());
    domainNumbers.insert(domains.back(), lastDomain);
    return lastDomain;
}

std::uint32_t FileCatalogue::Data::ownerNumber(std::uint32_t user, std::uint32_t group)
{
    const std::pair<std::uint32_t, std::uint32_t> owner(user, group);
    if (!owners.empty() && owners.front() == owner)
        return 0;
    const auto found = ownerNumbers.constFind(owner);
    if (found != ownerNumbers.cend())
        return *found;
    const auto number = static_cast<std::uint32_t>(owners.size());
    owners.push_back(owner);
    ownerNumbers.insert(owner, number);
    return number;
}

Row FileCatalogue::Data::packed(const FileRecord &record)
{
    Row row{};
    row.texts = texts.append(record.relativePath);
    texts.append(record.target);
    texts.append(record.digest);
    texts.append(record.encryptionKey);
    row.propertyCount = static_cast<std::uint8_t>(std::min<qsizetype>(record.properties.size(), UINT8_MAX));
    for (qsizetype i = 0; i < row.propertyCount; ++i) {
        texts.append(record.properties[i].first);
        texts.append(record.properties[i].second);
    }
    row.domain = domainNumber(record.domain);
    row.inodeLow = lowHalf(record.inode);
    row.inodeHigh = highHalf(record.inode);
    row.sizeLow = lowHalf(record.sizeBytes);
    row.sizeHigh = highHalf(record.sizeBytes);
    row.owner = ownerNumber(record.userId, record.groupId);
    row.lastModified = record.lastModified;
    row.lastStatusChange = record.lastStatusChange;
    row.birth = record.birth;
    row.mode = record.mode;
    row.protectionClass = record.protectionClass;
    return row;
}

void FileCatalogue::Data::sortIds()
{
    ids.reserve(rows.size());
    for (Index i = 0; i < rows.size(); ++i) {
        const QByteArray digest = fileIdDigest(domain(i), path(i));
        ids.push_back({qFromBigEndian<std::uint32_t>(digest.constData()), i});
    }
    std::sort(ids.begin(), ids.end());
}

FileCatalogue::FileCatalogue() : d(std::make_unique<Data>()) {}
FileCatalogue::FileCatalogue(FileCatalogue &&) noexcept = default;
FileCatalogue &FileCatalogue::operator=(FileCatalogue &&) noexcept = default;
FileCatalogue::~FileCatalogue() = default;

FileCatalogue::Index FileCatalogue::insert(const FileRecord &record)
{
    if (d->rows.size() >= none - 1)
        throw Error(QStringLiteral("The catalogue of the backup holds too many files."));
    const Key key(record.domain, record.relativePath);
    const std::uint32_t hash = key.hash();
    const Index earlier = d->find(key, hash);
    const Row row = d->packed(record);
    if (earlier != none) {
        d->rows[earlier] = row;
        return earlier;
    }
    const auto index = static_cast<Index>(d->rows.size());
    d->table.insert(hash, index);
    d->rows.push_back(row);
    return index;
}

void FileCatalogue::squeeze()
{
    d->table.squeeze();
    d->texts.squeeze();
    d->rows.shrink_to_fit();
    d->domains.shrink_to_fit();
}

void FileCatalogue::setMode(Index index, std::uint16_t mode)
{
    d->rows[index].mode = mode;
}

FileCatalogue::Index FileCatalogue::size() const
{
    return static_cast<Index>(d->rows.size());
}

FileCatalogue::Index FileCatalogue::find(QByteArrayView domain, QByteArrayView relativePath) const
{
    const Key key(domain, relativePath);
    return d->find(key, key.hash());
}

FileCatalogue::Index FileCatalogue::findById(QByteArrayView fileId) const
{
    const QByteArray digest = QByteArray::fromHex(fileId.toByteArray());
    if (fileId.size() != 40 || digest.size() != 20)
        return none;
    std::call_once(d->idsSorted, [this] { d->sortIds(); });
    const IdEntry wanted{qFromBigEndian<std::uint32_t>(digest.constData()), 0};
    const auto range = std::equal_range(d->ids.cbegin(), d->ids.cend(), wanted);
    const auto found = std::find_if(range.first, range.second, [&](const IdEntry &entry) {
        return fileIdDigest(domain(entry.row), relativePath(entry.row)) == digest;
    });
    return found == range.second ? none : found->row;
}

FileRecord FileCatalogue::record(Index index) const
{
    const Row &row = d->rows[index];
    FileRecord record;
    std::uint32_t offset = row.texts;
    const auto next = [&] { return d->texts.read(offset).toByteArray(); };
    record.domain = d->domains[row.domain];
    record.relativePath = next();
    record.target = next();
    record.digest = next();
    record.encryptionKey = next();
    for (int i = 0; i < row.propertyCount; ++i) {
        QByteArray name = next();
        record.properties.emplaceBack(std::move(name), next());
    }
    record.mode = row.mode;
    record.inode = joined(row.inodeHigh, row.inodeLow);
    record.userId = d->owners[row.owner].first;
    record.groupId = d->owners[row.owner].second;
    record.lastModified = row.lastModified;
    record.lastStatusChange = row.lastStatusChange;
    record.birth = row.birth;
    record.sizeBytes = joined(row.sizeHigh, row.sizeLow);
    record.protectionClass = row.protectionClass;
    return record;
}

QByteArray FileCatalogue::fileId(Index index) const
{
    return ::fileId(domain(index), relativePath(index));
}

QByteArrayView FileCatalogue::domain(Index index) const
{
    return d->domain(index);
}

std::uint32_t FileCatalogue::domainNumber(Index index) const
{
    return d->rows[index].domain;
}

std::uint32_t FileCatalogue::domainCount() const
{
    return static_cast<std::uint32_t>(d->domains.size());
}

QByteArrayView FileCatalogue::domainName(std::uint32_t number) const
{
    return d->domains[number];
}

QByteArrayView FileCatalogue::relativePath(Index index) const
{
    return d->path(index);
}

QByteArrayView FileCatalogue::encryptionKey(Index index) const
{
    std::uint32_t offset = d->rows[index].texts;
    for (int before = 0; before < 3; ++before) // path, link target, digest
        d->texts.read(offset);
    return d->texts.read(offset);
}

std::uint16_t FileCatalogue::mode(Index index) const
{
    return d->rows[index].mode;
}

std::uint64_t FileCatalogue::sizeBytes(Index index) const
{
    return joined(d->rows[index].sizeHigh, d->rows[index].sizeLow);
}

std::uint32_t FileCatalogue::lastModified(Index index) const
{
    return d->rows[index].lastModified;
}

std::uint8_t FileCatalogue::protectionClass(Index index) const
{
    return d->rows[index].protectionClass;
}

std::size_t FileCatalogue::memoryBytes() const
{
    constexpr std::size_t interned = 64; // hash node and header of the name, roughly
    std::size_t domains = heldBy(d->domains);
    for (const QByteArray &name : d->domains)
        domains += static_cast<std::size_t>(name.capacity()) + interned;
    return d->texts.memoryBytes() + heldBy(d->rows) + d->table.memoryBytes() + heldBy(d->owners) +
           heldBy(d->ids) + domains + d->owners.size() * interned;
}
