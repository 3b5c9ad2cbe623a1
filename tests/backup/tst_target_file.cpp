#include "backup/target_file.h"
#include "support/dying_process.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

/// Files in the making: what a run leaves that is killed, and what it loses to another.
class TestTargetFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void leftoverOfAKilledRun();
    void leftoverInAnotherFolder();
    void oneThatIsBeingWritten();
    void namesOfOthers();

private:
    std::unique_ptr<QTemporaryDir> m_folder;

    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList names() const
    {
        return QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    void leaveAPart() const
    {
        QVERIFY(diesDoing([this] {
            TargetFile half(path(QStringLiteral("half")));
            half.write("secret", 6);
            raise(SIGKILL);
        }));
    }
};

void TestTargetFile::leftoverOfAKilledRun()
{
    leaveAPart();
    QCOMPARE(names().size(), 1);
    QVERIFY(isPartName(names().first()));
    TargetFile whole(path(QStringLiteral("whole")));
    whole.commit();
    QCOMPARE(names(), QStringList(QStringLiteral("whole")));
}

void TestTargetFile::leftoverInAnotherFolder()
{
    leaveAPart();
    TargetFile whole(path(QStringLiteral("below/whole")));
    QCOMPARE(names().size(), 1);
    TargetFile beside(path(QStringLiteral("beside")));
    QCOMPARE(names().size(), 1);
}

void TestTargetFile::oneThatIsBeingWritten()
{
    TargetFile file(path(QStringLiteral("mine")));
    QVERIFY(!diesDoing([this] { removePartOfADeadRun(path(names().first())); }));
    file.write("x", 1);
    file.commit();
    QCOMPARE(names(), QStringList(QStringLiteral("mine")));
}

void TestTargetFile::namesOfOthers()
{
    for (const char *name : {".quillbarrow-.part", ".quillbarrow-a b.part", ".1x2y.part", "quillbarrow-1.part"}) {
        QVERIFY(!isPartName(QLatin1String(name)));
        QFile file(path(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QFile::link(path(QStringLiteral(".1x2y.part")), path(QStringLiteral(".quillbarrow-1.part"))));
    const QStringList before = names();
    sweepParts(m_folder->path());
    QCOMPARE(names(), before);
    QVERIFY(isPartName(QFileInfo(partPath(m_folder->path())).fileName()));
}

QTEST_GUILESS_MAIN(TestTargetFile)
#include "tst_target_file.moc"
