#include "sample/data_classes.h"
#include "sample/text_maker.h"

namespace sample {

namespace {

struct Home
{
    const char *domain;
    const char *folder;
};

constexpr Home homes[] = {
    {"AppDomain-com.example.notebook", "Documents/notebooks"},
    {"AppDomain-com.example.weather", "Library/Preferences"},
    {"AppDomainGroup-group.com.example.shared", "Library/Application Support"},
    {"AppDomainPlugin-com.example.notebook.widget", "Documents"},
    {"HomeDomain", "Library/Preferences"},
    {"RootDomain", "Library/Preferences"},
    {"SystemPreferencesDomain", "SystemConfiguration"},
    {"WirelessDomain", "Library/Preferences"},
    {"KeychainDomain", "backup"},
    {"UnheardOfDomain", "some/deep/folder/of/its/own"},
};

constexpr const char *endings[] = {".plist", ".dat", ".json", ".txt", "", ".tar.gz"};

/// Most files are small, a few are large, and the lengths about a block and a buffer are all there.
int lengthOf(int index, SeededGenerator &chance)
{
    static constexpr int edges[] = {0, 1, 15, 16, 17, 8191, 8192, 8193, 0, 65536};
    if (index < static_cast<int>(std::size(edges)))
        return edges[index];
    // A sample of very many files is about their number.
    if (index >= 1000)
        return chance.below(1000);
    return chance.oneIn(20) ? chance.below(1 << 20) : chance.below(6000);
}

void addOddRows(Making &making)
{
    const FilePlace link = making.place("HomeDomain", QStringLiteral("Library/Caches/current"));
    making.container.putLink(link, QStringLiteral("/private/var/mobile/Library/Caches/2024"));
    making.container.putFolder(QStringLiteral("AppDomain-com.example.empty"), QString(), link.modified);
    making.container.putFolder(QStringLiteral("AppDomain-com.example.empty"), QStringLiteral("Documents"),
                               link.modified);
    making.container.putRowAlone(
        making.place("AppDomain-com.example.weather", QStringLiteral("Documents/gone.bin")), 12345);
    making.container.put(making.place("AppDomain-com.example.notebook",
                                      QStringLiteral("Documents/Übersicht – 概要 (v2) 'final'.txt")),
                         "a name of many letters");
    FilePlace odd = making.place("HomeDomain", QStringLiteral("Library/Preferences/com.example.odd.plist"));
    odd.odd = true;
    making.container.put(odd, "a row that differs from the others");
    FilePlace locked = making.place("HomeDomain", QStringLiteral("Library/Locked/only-on-this-device.bin"));
    locked.protectionClass = KeybagWriter::deviceOnlyClass;
    making.container.put(locked, "sealed by the device");
}

} // namespace

void addExtraFiles(Making &making)
{
    SeededGenerator chance = making.chance.fork("files");
    static constexpr int classes[] = {1, 2, 3, 3, 3, 4, 4};
    addOddRows(making);
    for (int i = 0; i < making.options.files; ++i) {
        const Home &home = homes[static_cast<std::size_t>(i) % std::size(homes)];
        const QString name = QStringLiteral("%1/%2-%3%4")
                                 .arg(QLatin1String(home.folder), QString::fromUtf8(makeTitle(chance)))
                                 .arg(i, 5, 10, QLatin1Char('0'))
                                 .arg(QLatin1String(chance.pick(endings)));
        FilePlace place = making.place(home.domain, name, chance.below(900));
        place.protectionClass = chance.pick(classes);
        making.container.put(place, chance.bytes(lengthOf(i, chance)));
    }
    for (const SampleRow &row : making.options.extraRows)
        making.container.put({row.domain, row.relativePath, making.generation.backupDate}, row.content);
}

} // namespace sample
