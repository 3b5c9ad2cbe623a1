#include "base/error.h"
#include "base/private_folder.h"
#include "base/report.h"
#include "base/texts.h"
#include "resources/resources.h"
#include "sqlite/sqlite3_db.h"
#include "support/fake_desktop.h"
#include "support/modal.h"
#include "support/sample_backup.h"
#include "views/item_model_recording.h"
#include "views/item_model_voicemail.h"
#include "views/record_roles.h"
#include "views/recording_main_form.h"
#include "views/sound_player.h"
#include "views/voicemail_main_form.h"
#include "work/clear_cache_thread.h"
#include "work/fetch_file_thread.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSortFilterProxyModel>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {
Report heard; // what the readers tell, in tests that do not ask for it

enum Kind { Voicemail, Recordings };

std::unique_ptr<SoundMainForm> makeForm(int kind, const OpenBackupPtr &backup)
{
    if (kind == Voicemail)
        return std::make_unique<VoicemailMainForm>(backup);
    return std::make_unique<RecordingMainForm>(backup);
}

QTreeView *listOf(const SoundMainForm &form)
{
    return form.findChild<QTreeView *>(u"listSounds"_s);
}

QByteArray sha1Of(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}
} // namespace

/// The views of voicemail and recordings.
class TestSoundForms : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void models();
    void exportsAllThatHaveAFile_data();
    void exportsAllThatHaveAFile();
    void newestFirstAndWhatIsChosenIsExported_data() { kinds(); }
    void newestFirstAndWhatIsChosenIsExported();
    void opensWithTheDesktop_data();
    void opensWithTheDesktop();
    void sizeLimitOfOpening_data();
    void sizeLimitOfOpening();
    void withoutDatabase_data();
    void withoutDatabase();
    void damagedDatabaseCanBeTriedAgain();
    void namesThatAreLostAreTold();
    void playerSaysWhyNot();

private:
    static void kinds();
};

void TestSoundForms::initTestCase()
{
    initResources();
    installTexts();
}

void TestSoundForms::kinds()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("voicemail") << int(Voicemail);
    QTest::newRow("recordings") << int(Recordings);
}

void TestSoundForms::models()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    ItemModelVoicemail voicemail(backup, readNamedVoicemail(backup->manifest(), heard));
    ItemModelRecording recordings(backup, readRecordings(backup->manifest(), heard));
    const QAbstractItemModelTester one(&voicemail, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QAbstractItemModelTester two(&recordings, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(voicemail.rowCount(), sample.summary().counts.voicemails);
    QCOMPARE(recordings.rowCount(), sample.summary().counts.recordings);
    QStringList callers;
    for (int row = 0; row < voicemail.rowCount(); ++row)
        callers.append(voicemail.index(row, AbsSoundModel::Title).data().toString());
    QVERIFY(callers.contains(u"Unknown caller"_s));
    const QRegularExpression number(u"^\\+?[0-9 ()-]+$"_s);
    const auto isName = [&](const QString &caller) { return !number.match(caller).hasMatch(); };
    QVERIFY2(std::count_if(callers.begin(), callers.end(), isName) > 2, "the address book names some");
    QVERIFY2(std::count_if(callers.begin(), callers.end(), isName) < callers.size(), "but no strangers");
    QVERIFY(recordings.description(0).startsWith(u"'date:20"_s));
    QVERIFY(voicemail.description(0).contains(u", sender:"_s));
}

void TestSoundForms::exportsAllThatHaveAFile_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("said");
    QTest::newRow("voicemail") << int(Voicemail) << QString() << u"Successfully extracted 11 Voicemail."_s;
    QTest::newRow("encrypted voicemail")
        << int(Voicemail) << u"pw"_s << u"Successfully extracted 11 Voicemail."_s;
    QTest::newRow("recordings") << int(Recordings) << QString() << u"Successfully extracted 11 Recordings."_s;
}

void TestSoundForms::exportsAllThatHaveAFile()
{
    QFETCH(int, kind);
    QFETCH(QString, password);
    SampleOptions options;
    options.password = password;
    const SampleBackup sample(options);
    const auto form = makeForm(kind, sample.opened(password));
    form->show();
    QVERIFY2(!form->exportAction()->isEnabled(), "nothing to export while it loads");
    QTRY_VERIFY(listOf(*form)->isVisible());
    listOf(*form)->clearSelection(); // nothing selected means all
    QTemporaryDir target;
    const AnswerBox done;
    QVERIFY(form->exportTo(target.path()));
    QTEST(done.text().section(u'\n', 0, 0), "said");
    QVERIFY2(done.text().contains(u"Can't find 'date:"_s), qPrintable(done.text()));

    QSet<QByteArray> expected;
    for (const SampleFile &file : sample.summary().files)
        if (file.relativePath.endsWith(kind == Voicemail ? u".amr"_s : u".m4a"_s) && file.stored)
            expected.insert(file.sha1);
    QSet<QByteArray> written;
    const QRegularExpression name(u"^20\\d{6}-\\d{6}(-.+)?\\.(amr|m4a)$"_s);
    const QFileInfoList files = QDir(target.path()).entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files) {
        QVERIFY2(name.match(file.fileName()).hasMatch(), qPrintable(file.fileName()));
        written.insert(sha1Of(file.filePath()));
    }
    QCOMPARE(files.size(), 11);
    QVERIFY(expected.contains(written));
}

void TestSoundForms::newestFirstAndWhatIsChosenIsExported()
{
    QFETCH(int, kind);
    const SampleBackup sample;
    const auto form = makeForm(kind, sample.opened());
    form->show();
    QTRY_VERIFY(listOf(*form)->isVisible());
    const QAbstractItemModel *model = listOf(*form)->model();
    const auto dateOf = [model](int row) {
        return model->index(row, AbsSoundModel::Date).data(RecordRole::Sort).toDateTime();
    };
    for (int row = 1; row < model->rowCount(); ++row)
        QVERIFY(dateOf(row - 1) >= dateOf(row));
    const int all = model->rowCount();
    QCOMPARE(form->findChild<QLabel *>(u"lbCount"_s)->text(), QString::number(all));
    const auto exported = [&form] {
        const QTemporaryDir target;
        const AnswerBox done;
        form->exportTo(target.path());
        return QDir(target.path()).entryList(QDir::Files, QDir::Name);
    };
    const auto nameOf = [&dateOf](int row) { return dateOf(row).toLocalTime().toString(u"yyyyMMdd-hhmmss"_s); };
    int row = 1;
    while (model->index(row, 0).data(Qt::ForegroundRole).isValid()) // it has no file
        ++row;
    listOf(*form)->setCurrentIndex(model->index(row, 0));
    QVERIFY(form->findChild<QLabel *>(u"lbTime"_s)->text().endsWith(
        model->index(row, AbsSoundModel::Duration).data().toString()));
    const QStringList chosen = exported();
    QVERIFY2(chosen.size() == 1 && chosen.first().startsWith(nameOf(row)), qPrintable(chosen.join(u'|')));

    const QString name = nameOf(row);
    form->filterEdit()->setText(model->index(row, AbsSoundModel::Date).data().toString());
    listOf(*form)->clearSelection();
    QVERIFY(model->rowCount() < all);
    QCOMPARE(form->findChild<QLabel *>(u"lbCount"_s)->text(), QString::number(model->rowCount()));
    const QStringList shown = exported();
    QVERIFY2(!shown.isEmpty() && shown.size() <= model->rowCount() && shown.filter(name).size() == 1,
             qPrintable(shown.join(u'|')));
}

void TestSoundForms::opensWithTheDesktop_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("refusal");
    QTest::newRow("voicemail") << int(Voicemail) << u"This Voicemail does not exist."_s;
    QTest::newRow("recordings") << int(Recordings) << u"The recording file is not existed."_s;
}

void TestSoundForms::opensWithTheDesktop()
{
    QFETCH(int, kind);
    QFETCH(QString, refusal);
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    const auto form = makeForm(kind, backup);
    form->show();
    QTRY_VERIFY(listOf(*form)->isVisible());
    listOf(*form)->sortByColumn(AbsSoundModel::Duration, Qt::DescendingOrder); // not the order of the database
    const auto *sounds = static_cast<const AbsSoundModel *>(
        static_cast<const QSortFilterProxyModel *>(listOf(*form)->model())->sourceModel());
    bool opened = false;
    bool refused = false;
    for (int row = 0; row < listOf(*form)->model()->rowCount() && !(opened && refused); ++row) {
        const QModelIndex index = listOf(*form)->model()->index(row, 0);
        listOf(*form)->setCurrentIndex(index);
        if (index.data(Qt::ToolTipRole).toString().contains(refusal)) {
            const AnswerBox box;
            QTest::keyClick(listOf(*form), Qt::Key_Return);
            QCOMPARE(box.text(), refusal);
            refused = true;
        } else if (!opened && row != index.data(RecordRole::Number).toInt()) {
            const FakeDesktop desktop;
            QTest::keyClick(listOf(*form), Qt::Key_Return);
            QTRY_VERIFY(!desktop.asked().isEmpty());
            const QFileInfo copy(desktop.asked());
            QCOMPARE(copy.filePath(),
                     openedCopyPath(backup->manifest(), sounds->file(index.data(RecordRole::Number).toInt())));
            QVERIFY2(copy.fileName().startsWith(backup->info().deviceId + u'-'), qPrintable(copy.filePath()));
            QVERIFY(copy.isFile() && !copy.isExecutable());
            QVERIFY(copy.filePath().startsWith(runFolder() + u'/'));
            NoProgress nobody;
            clearCacheFiles(backupUid(backup->info().folder), {}, nobody);
            QVERIFY(!QFileInfo::exists(copy.filePath()));
            opened = true;
        }
    }
    QVERIFY(opened && refused);
}

void TestSoundForms::sizeLimitOfOpening_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isTooLarge");
    QTest::newRow("empty") << 0 << false;
    QTest::newRow("10485760") << 10485760 << false;
    QTest::newRow("10485761") << 10485761 << true;
}

void TestSoundForms::sizeLimitOfOpening()
{
    QFETCH(int, size);
    QFETCH(bool, isTooLarge);
    for (const QString &password : {QString(), u"pw"_s}) {
        SampleOptions options;
        options.password = password;
        options.messages = 0;
        options.files = 0;
        options.extraRows = {{u"Odd"_s, u"sound.amr"_s, QByteArray(size, 's')}};
        const SampleBackup sample(options);
        const OpenBackupPtr backup = sample.opened(password);
        const auto file = backup->manifest().catalogue().find("Odd", "sound.amr");
        QCOMPARE(isTooLargeToOpen(backup->manifest(), file), isTooLarge);
    }
}

void TestSoundForms::withoutDatabase_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("isLost");
    QTest::newRow("voicemail") << int(Voicemail) << false;
    QTest::newRow("recordings") << int(Recordings) << false;
    QTest::newRow("voicemail, not in what is left of the catalogue") << int(Voicemail) << true;
}

void TestSoundForms::withoutDatabase()
{
    QFETCH(int, kind);
    QFETCH(bool, isLost);
    const SampleBackup sample;
    {
        Sqlite3DB catalogue;
        catalogue.openThrow(sample.folder() + u"/Manifest.db"_s, SqliteOpen::ReadWrite);
        catalogue.executeThrow(u"delete from Files where relativePath like '%/voicemail.db' or relativePath "
                               "like '%Recordings.db'"_s);
        if (isLost)
            catalogue.executeThrow(u"update Files set file=x'00' where relativePath like '%.plist'"_s);
    }
    const auto form = makeForm(kind, sample.opened());
    form->show();
    QTRY_COMPARE(form->findChild<QLabel *>(u"lbStateText"_s)->text(),
                 kind == Voicemail ? u"Cannot find voicemail.db."_s : u"Cannot find Recordings.db."_s);
    QCOMPARE(form->findChild<QLabel *>(u"lbStateTitle"_s)->text() == u"The list could not be loaded."_s,
             isLost);
    QCOMPARE(form->findChild<QLabel *>(u"lbNotice"_s)->text().contains(u"Manifest.db"_s), isLost);
    QVERIFY(!form->exportAction()->isEnabled());
}

void TestSoundForms::damagedDatabaseCanBeTriedAgain()
{
    const SampleBackup sample;
    const OpenBackupPtr backup = sample.opened();
    const auto file = backup->manifest().wellKnown(WellKnown::VoicemailDatabase);
    const QString path = backup->manifest().filePath(file);
    QVERIFY(QFile::rename(path, path + u'x'));
    VoicemailMainForm form(backup);
    form.show();
    QTRY_COMPARE(form.findChild<QLabel *>(u"lbStateTitle"_s)->text(), u"The list could not be loaded."_s);
    QVERIFY(!form.findChild<QLabel *>(u"lbStateText"_s)->text().isEmpty());
    QVERIFY(QFile::rename(path + u'x', path));
    form.reload();
    QTRY_VERIFY(listOf(form)->isVisible());
}

void TestSoundForms::namesThatAreLostAreTold()
{
    const SampleBackup sample;
    const QString id =
        sample.summary().file(u"HomeDomain"_s, u"Library/AddressBook/AddressBook.sqlitedb"_s)->fileId;
    QFile book(u"%1/%2/%3"_s.arg(sample.folder(), id.left(2), id));
    QVERIFY(book.open(QIODevice::WriteOnly) && book.write(QByteArray(9000, 'x')) > 0);
    book.close();
    VoicemailMainForm form(sample.opened());
    form.show();
    QTRY_VERIFY(listOf(form)->isVisible());
    const auto *notice = form.findChild<QLabel *>(u"lbNotice"_s);
    QVERIFY2(notice->isVisible() && notice->text().remove(QChar(0x200b)).contains(u"AddressBook.sqlitedb"_s),
             qPrintable(notice->text()));
}

void TestSoundForms::playerSaysWhyNot()
{
    SoundPlayer player;
    player.show();
    player.setSound(75, u"gone"_s);
    auto *button = player.findChild<QToolButton *>(u"btnPlay"_s);
    auto *problem = player.findChild<QLabel *>(u"lbCantPlay"_s);
    QVERIFY(!button->isEnabled());
    QCOMPARE(problem->text(), u"gone"_s);
    QCOMPARE(player.findChild<QLabel *>(u"lbTime"_s)->text(), u"0:00 / 1:15"_s);
    player.setSound(75, {});
    QVERIFY(button->isEnabled() && !problem->isVisible());
    QTemporaryDir folder;
    QFile noise(folder.filePath(u"noise.amr"_s));
    QVERIFY(noise.open(QIODevice::WriteOnly));
    noise.write("this is no sound at all");
    noise.close();
    player.play(noise.fileName());
    QTRY_VERIFY_WITH_TIMEOUT(problem->isVisible(), 20000);
    QVERIFY(problem->text().contains(u"cannot be played here"_s));
}

QTEST_MAIN(TestSoundForms)
#include "tst_sound_forms.moc"
