#include "base/error.h"
#include "base/private_folder.h"
#include "base/secret.h"
#include "support/dying_process.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestPrivateFolder : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void ofARunThatLives();
    void ofARunThatWasKilled();
    void leftToWhoMadeIt();
    void openedFiles();
    void cleanedUpBySomebody();
    void secrets();

private:
    std::unique_ptr<QTemporaryDir> m_temporary;
    void killOneThatHas(const char *content) const;
    QStringList folders() const { return QDir(m_temporary->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot); }
};

namespace {
void write(const QString &path, const QByteArray &bytes)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                        QFile::WriteOther | QFile::ExeOther;
} // namespace

void TestPrivateFolder::init()
{
    removeRunFolder();
    qunsetenv("TMPDIR");
    m_temporary = std::make_unique<QTemporaryDir>();
    qputenv("TMPDIR", m_temporary->path().toUtf8());
}

void TestPrivateFolder::killOneThatHas(const char *content) const
{
    QVERIFY(diesDoing([content] {
        write(runFolder() + QStringLiteral("/deep/file"), content);
        raise(SIGKILL);
    }));
}

void TestPrivateFolder::ofARunThatLives()
{
    const QString folder = runFolder();
    QVERIFY(folder.startsWith(m_temporary->path()));
    QCOMPARE(runFolder(), folder);
    QVERIFY(!(QFile::permissions(folder) & others));
    write(folder + QStringLiteral("/deep/file"), "plain");
    PrivateFolder::sweep(m_temporary->path());
    QVERIFY(QFile::exists(folder + QStringLiteral("/deep/file")));
    QVERIFY(PrivateFolder::isInUse(folder));
    removeRunFolder();
    QCOMPARE(folders(), QStringList());
}

void TestPrivateFolder::ofARunThatWasKilled()
{
    killOneThatHas("plain");
    QCOMPARE(folders().size(), 1);
    write(m_temporary->filePath(QStringLiteral("quillbarrow-notes/mine")), "not of these folders");
    const QString living = runFolder();
    PrivateFolder::sweep(m_temporary->path());
    QCOMPARE(folders(), (QStringList{QStringLiteral("quillbarrow-notes"), QFileInfo(living).fileName()}));
}

// A test, or a library, that copies the process must not take the folder away from the one that goes on.
void TestPrivateFolder::leftToWhoMadeIt()
{
    const QString folder = runFolder();
    QVERIFY(!diesDoing(removeRunFolder));
    PrivateFolder::sweep(m_temporary->path());
    QVERIFY(QFile::exists(folder));
}

void TestPrivateFolder::openedFiles()
{
    const QString one = openedFilesFolder(QStringLiteral("one")) + QStringLiteral("/a.jpg");
    const QString two = openedFilesFolder(QStringLiteral("two")) + QStringLiteral("/b.jpg");
    write(one, "a");
    write(two, "b");
    write(runFolder() + QStringLiteral("/index"), "c");
    removeOpenedFiles(QStringLiteral("one"));
    QVERIFY(!QFile::exists(one) && QFile::exists(two));
    removeOpenedFiles();
    QVERIFY(!QFile::exists(two) && QFile::exists(runFolder() + QStringLiteral("/index")));
}

void TestPrivateFolder::cleanedUpBySomebody()
{
    QVERIFY(QDir(runFolder()).removeRecursively());
    write(runFolder() + QStringLiteral("/file"), "again");
    QCOMPARE(folders().size(), 1);
    removeRunFolder();
    const QString file = m_temporary->filePath(QStringLiteral("no folder"));
    write(file, "in the way");
    qputenv("TMPDIR", file.toUtf8());
    QVERIFY_EXCEPTION_THROWN(runFolder(), Error);
}

void TestPrivateFolder::secrets()
{
    QByteArray key(32, 'k');
    QByteArray holder = key;
    wipe(key);
    QVERIFY2(key.isEmpty() && holder == QByteArray(32, 'k'), "somebody else still needs it");
    wipe(holder);
    QVERIFY(holder.isEmpty());
    char letters[] = "secret";
    wipe(letters, sizeof letters);
    QCOMPARE(QByteArray(letters, sizeof letters), QByteArray(sizeof letters, '\0'));
}

QTEST_GUILESS_MAIN(TestPrivateFolder)
#include "tst_private_folder.moc"
