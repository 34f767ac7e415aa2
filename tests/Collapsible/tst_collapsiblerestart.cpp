#include <TarnCommon/KQSettings.h>

#include <QtCore/QProcess>
#include <QtTest/QTest>

namespace {

// Runs the helper once and returns what it printed.
QByteArray runHelper(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(RESTART_HELPER), arguments);
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        qWarning() << "helper failed:" << arguments << process.readAllStandardError();
        return QByteArray("helper failed");
    }
    return process.readAllStandardOutput();
}

} // namespace

class TestCollapsibleRestart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void collapsedViewsComeBack_data()
    {
        QTest::addColumn<QString>("collapse");
        QTest::newRow("second and third") << QStringLiteral("B,C");
        QTest::newRow("one title, which the settings file keeps as a plain string") << QStringLiteral("A");
    }

    void collapsedViewsComeBack()
    {
        QFETCH(QString, collapse);
        QCOMPARE(runHelper({QStringLiteral("--clear"), QStringLiteral("--print")}), QByteArray("collapsed: \n"));
        QCOMPARE(runHelper({QStringLiteral("--collapse"), collapse}), QByteArray());
        QCOMPARE(runHelper({QStringLiteral("--print")}), QByteArray("collapsed: ") + collapse.toUtf8() + '\n');
    }
};

QTEST_GUILESS_MAIN(TestCollapsibleRestart)
#include "tst_collapsiblerestart.moc"
