#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

/// The window program as a shell starts it: what needs no window is answered without a screen.
class TestStartArguments : public QObject
{
    Q_OBJECT

private slots:
    void endsAtOnce_data();
    void endsAtOnce();
};

void TestStartArguments::endsAtOnce_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("said"); // the beginning of its line
    QTest::newRow("help") << QStringList{u"--help"_s} << 0 << u"Usage: quillbarrow"_s;
    QTest::newRow("help by its letter") << QStringList{u"-h"_s} << 0 << u"Usage: quillbarrow"_s;
    QTest::newRow("version") << QStringList{u"--version"_s} << 0 << QStringLiteral(QB_VERSION);
    QTest::newRow("unknown option") << QStringList{u"--frobnicate"_s} << 2 << u"quillbarrow: --frobnicate"_s;
    QTest::newRow("unknown behind one of the toolkit")
        << QStringList{u"-platform"_s, u"offscreen"_s, u"--frobnicate"_s} << 2
        << u"quillbarrow: --frobnicate"_s;
    QTest::newRow("no option at all") << QStringList{u"backup"_s} << 2 << u"quillbarrow: backup"_s;
}

void TestStartArguments::endsAtOnce()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    QFETCH(QString, said);
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"there is no screen"_s);
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("QUILLBARROW"), arguments);
    QVERIFY2(program.waitForFinished(), qPrintable(program.errorString()));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), status);
    const QString output = QString::fromUtf8(program.readAllStandardOutput());
    const QString complaint = QString::fromUtf8(program.readAllStandardError());
    QVERIFY2((status == 0 ? output : complaint).startsWith(said), qPrintable(output + complaint));
    QVERIFY((status == 0 ? complaint : output).isEmpty());
}

QTEST_GUILESS_MAIN(TestStartArguments)
#include "tst_start_arguments.moc"
