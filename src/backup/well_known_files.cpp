#include "backup/well_known_files.h"

#include "backup/well_known_patterns.h"

namespace {
struct KnownPath
{
    QByteArrayView domain;
    QByteArrayView path;
    WellKnown kind;
};

constexpr KnownPath knownPaths[] = {
    {"HomeDomain", "Library/SMS/sms.db", WellKnown::MessageDatabase},
    {"HomeDomain", "Library/AddressBook/AddressBook.sqlitedb", WellKnown::Contacts},
    {"HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb", WellKnown::ContactImages},
    {"HomeDomain", "Library/Notes/notes.sqlite", WellKnown::Notes},
    {"HomeDomain", "Library/Calendar/Calendar.sqlitedb", WellKnown::Calendar},
    {"HomeDomain", "Library/Calendar/Extras.db", WellKnown::CalendarExtras},
    {"HomeDomain", "Library/Voicemail/voicemail.db", WellKnown::VoicemailDatabase},
    {"HomeDomain", "Library/Safari/Bookmarks.db", WellKnown::Bookmarks},
    {"HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", WellKnown::CallHistoryNewer},
    {"WirelessDomain", "Library/CallHistory/call_history.db", WellKnown::CallHistoryOlder},
    {"MediaDomain", "Media/Recordings/Recordings.db", WellKnown::RecordingsDatabase},
};

bool sameDomain(QByteArrayView a, QByteArrayView b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

PatternDomain patternDomain(QByteArrayView domain)
{
    if (sameDomain(domain, "HomeDomain"))
        return PatternDomain::Home;
    if (sameDomain(domain, "MediaDomain"))
        return PatternDomain::Media;
    return sameDomain(domain, "CameraRollDomain") ? PatternDomain::CameraRoll : PatternDomain::Other;
}
} // namespace

WellKnownFiles::WellKnownFiles(const FileCatalogue &catalogue) : m_catalogue(catalogue)
{
    considerFiles();
    considerGroups();
}

/// The first record of the catalogue that matches, in whatever case its domain is written.
void WellKnownFiles::considerFiles()
{
    m_files.fill(FileCatalogue::none);
    for (std::uint32_t domain = 0; domain < m_catalogue.domainCount(); ++domain) {
        for (const KnownPath &known : knownPaths) {
            if (!sameDomain(m_catalogue.domainName(domain), known.domain))
                continue;
            const Index found = m_catalogue.find(m_catalogue.domainName(domain), known.path);
            Index &kept = m_files[static_cast<std::size_t>(known.kind)];
            if (found != FileCatalogue::none && found < kept && !m_catalogue.isDirectory(found))
                kept = found;
        }
    }
}

void WellKnownFiles::considerGroups()
{
    std::vector<PatternDomain> domains;
    for (std::uint32_t domain = 0; domain < m_catalogue.domainCount(); ++domain)
        domains.push_back(patternDomain(m_catalogue.domainName(domain)));
    for (Index i = 0; i < m_catalogue.size(); ++i) {
        const PatternDomain domain = domains[m_catalogue.domainNumber(i)];
        if (domain == PatternDomain::Other || m_catalogue.isDirectory(i) || m_catalogue.isLink(i))
            continue;
        const WellKnownGroup group = groupOf(domain, m_catalogue.relativePath(i));
        if (group != WellKnownGroup::Count)
            m_groups[static_cast<std::size_t>(group)].members.push_back(i);
    }
    for (Group &group : m_groups)
        group.members.shrink_to_fit();
}

const QHash<QByteArray, WellKnownFiles::Index> &WellKnownFiles::group(WellKnownGroup wanted) const
{
    const Group &group = m_groups[static_cast<std::size_t>(wanted)];
    std::call_once(group.keysMade, [&] {
        for (const Index member : group.members) {
            const auto keys = groupKeys(wanted, m_catalogue.relativePath(member));
            for (const QByteArray &key : keys)
                if (!group.byKey.contains(key))
                    group.byKey.insert(key, member);
        }
    });
    return group.byKey;
}

std::size_t WellKnownFiles::memoryBytes() const
{
    std::size_t bytes = sizeof *this;
    for (const Group &group : m_groups)
        bytes += group.members.capacity() * sizeof(Index);
    return bytes;
}
