#include "backup/well_known_files.h"

#include <QTest>

class TestWellKnownFiles : public QObject
{
    Q_OBJECT

private slots:
    void single_data();
    void single();
    void firstMatchIsKept();
    void groups_data();
    void groups();
    void equalKeysKeepTheFirst();
};

namespace {
FileCatalogue::Index add(FileCatalogue &catalogue, const char *domain, const char *path,
                         std::uint16_t mode = modeRegular)
{
    FileRecord record;
    record.domain = domain;
    record.relativePath = path;
    record.mode = mode;
    return catalogue.insert(record);
}
} // namespace

void TestWellKnownFiles::single_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("kind");
    const auto row = [](const char *domain, const char *path, WellKnown kind) {
        QTest::newRow(path) << QByteArray(domain) << QByteArray(path) << int(kind);
    };
    row("HomeDomain", "Library/SMS/sms.db", WellKnown::MessageDatabase);
    row("HomeDomain", "Library/AddressBook/AddressBook.sqlitedb", WellKnown::Contacts);
    row("HomeDomain", "Library/AddressBook/AddressBookImages.sqlitedb", WellKnown::ContactImages);
    row("HomeDomain", "Library/Notes/notes.sqlite", WellKnown::Notes);
    row("HomeDomain", "Library/Calendar/Calendar.sqlitedb", WellKnown::Calendar);
    row("HomeDomain", "Library/Calendar/Extras.db", WellKnown::CalendarExtras);
    row("HomeDomain", "Library/Voicemail/voicemail.db", WellKnown::VoicemailDatabase);
    row("HomeDomain", "Library/Safari/Bookmarks.db", WellKnown::Bookmarks);
    row("HomeDomain", "Library/CallHistoryDB/CallHistory.storedata", WellKnown::CallHistoryNewer);
    row("WirelessDomain", "Library/CallHistory/call_history.db", WellKnown::CallHistoryOlder);
    row("MediaDomain", "Media/Recordings/Recordings.db", WellKnown::RecordingsDatabase);
}

void TestWellKnownFiles::single()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, path);
    QFETCH(int, kind);
    FileCatalogue catalogue;
    add(catalogue, "OtherDomain", path);
    add(catalogue, domain.toUpper(), path, modeDirectory);
    const auto wanted = add(catalogue, domain, path);
    const WellKnownFiles files(catalogue);
    for (int other = 0; other < int(WellKnown::Count); ++other)
        QCOMPARE(files.file(WellKnown(other)), other == kind ? wanted : FileCatalogue::none);
}

void TestWellKnownFiles::firstMatchIsKept()
{
    FileCatalogue catalogue;
    add(catalogue, "homedomain", "something else");
    const auto first = add(catalogue, "HomeDomain", "Library/SMS/sms.db");
    add(catalogue, "homedomain", "Library/SMS/sms.db");
    QCOMPARE(WellKnownFiles(catalogue).file(WellKnown::MessageDatabase), first);
}

void TestWellKnownFiles::groups_data()
{
    QTest::addColumn<QByteArray>("domain");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("group");
    QTest::addColumn<QByteArrayList>("keys");
    using Group = WellKnownGroup;
    const auto row = [](const char *domain, const char *path, Group group = Group::Count,
                        const QByteArrayList &keys = {}) {
        QTest::addRow("%s %s", domain, path) << QByteArray(domain) << QByteArray(path) << int(group) << keys;
    };
    row("HomeDomain", "Library/Voicemail/17.amr", Group::VoicemailAudio, {"17"});
    row("HomeDomain", "Library/Voicemail/x17.amr");
    row("HomeDomain", "Library/Voicemail/.amr");
    row("HomeDomain", "Library/Voicemail/account/17.amr");
    row("MediaDomain", "Library/Voicemail/17.amr");
    row("mediadomain", "Media/Recordings/20120101 1200.m4a", Group::RecordingAudio, {"20120101 1200.m4a"});
    row("MediaDomain", "Media/Recordings/a.b.m4a");
    row("MediaDomain", "Media/Recordings/.m4a");
    row("MediaDomain", "Media/Recordings/below/a.m4a");
    row("MediaDomain", "Library/SMS/Parts/1/2/part.jpg", Group::MessagePart, {"part.jpg"});
    row("MediaDomain", "Library/SMS/Parts/1/part.jpg", Group::MessageAttachment,
        {"/var/mobile/Library/SMS/Parts/1/part.jpg"});
    row("MediaDomain", "Library/SMS/Attachments/GUID/photo.big.jpg", Group::MessageAttachment,
        {"/var/mobile/Library/SMS/Attachments/GUID/photo.big.jpg", "GUID/photo"});
    row("MediaDomain", "Library/SMS/Attachments/GUID/plain", Group::MessageAttachment,
        {"/var/mobile/Library/SMS/Attachments/GUID/plain", "GUID/plain"});
    row("MediaDomain", "Library/SMS/Attachments/ab/11/GUID/x.mov-preview-left", Group::MessageAttachment,
        {"/var/mobile/Library/SMS/Attachments/ab/11/GUID/x.mov-preview-left"});
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.HEIC", Group::CameraRoll,
        {"Media/DCIM/100APPLE/IMG_0001.HEIC"});
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.jpg", Group::CameraRoll,
        {"Media/DCIM/100APPLE/IMG_0001.jpg"});
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.edited.JPG", Group::CameraRoll,
        {"Media/DCIM/100APPLE/IMG_0001.edited.JPG"});
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.desktop");
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.exe");
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG.");
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.JPG/run.JPG");
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001.AAE");
    row("CameraRollDomain", "Media/DCIM/APPLE/IMG_0001.JPG");
    row("CameraRollDomain", "Media/DCIM/x100APPLE/IMG_0001.JPG");
    row("CameraRollDomain", "Media/DCIM/100APPLE/.JPG");
    row("CameraRollDomain", "Media/DCIM/100APPLE/IMG_0001");
    row("CameraRollDomain", "Media/DCIM/");
    row("HomeDomain", "Media/DCIM/100APPLE/IMG_0001.JPG");
    row("CameraRollDomain", "Media/PhotoData/MetaData/DCIM/100APPLE/IMG_0001.JPG", Group::CameraRollThumbnail,
        {"IMG_0001"});
    row("CameraRollDomain", "Media/PhotoData/MetaData/DCIM/100APPLE/IMG_0001.THM");
    row("CameraRollDomain", "Media/DCIM/.THMB/158x158/100APPLE___IMG_0002.THM", Group::CameraRollThumbnail,
        {"IMG_0002"});
    row("CameraRollDomain", "Media/DCIM/.THMB/100APPLE___IMG_0002.THM");
    row("CameraRollDomain", "Media/DCIM/.THMB/158x158/100APPLE___IMG_0002.THM.exe");
}

void TestWellKnownFiles::groups()
{
    QFETCH(QByteArray, domain);
    QFETCH(QByteArray, path);
    QFETCH(int, group);
    QFETCH(QByteArrayList, keys);
    FileCatalogue catalogue;
    const auto index = add(catalogue, domain, path);
    add(catalogue, domain.toUpper(), path, modeDirectory);
    const WellKnownFiles files(catalogue);
    for (int other = 0; other < int(WellKnownGroup::Count); ++other) {
        const auto &found = files.group(WellKnownGroup(other));
        QCOMPARE(found.size(), other == group ? keys.size() : 0);
        for (const QByteArray &key : found.keys()) {
            QVERIFY2(keys.contains(key), key);
            QCOMPARE(found.value(key), index);
        }
    }
}

void TestWellKnownFiles::equalKeysKeepTheFirst()
{
    FileCatalogue catalogue;
    const auto first = add(catalogue, "CameraRollDomain", "Media/DCIM/.THMB/a/100APPLE___IMG_1.THM");
    add(catalogue, "CameraRollDomain", "Media/DCIM/.THMB/b/100APPLE___IMG_1.THM");
    const WellKnownFiles files(catalogue);
    QCOMPARE(files.group(WellKnownGroup::CameraRollThumbnail).value("IMG_1"), first);
}

QTEST_APPLESS_MAIN(TestWellKnownFiles)
#include "tst_well_known_files.moc"
