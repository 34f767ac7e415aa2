// The library's messages travel through Qt's message system, so that an
// application can take them over, filter them and expect them in tests.
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

namespace {

struct Received
{
    QtMsgType type;
    QByteArray category;
    QString text;
    int line;
};
QList<Received> g_received;

void applicationHandler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    g_received.append({type, QByteArray(context.category), text, context.line});
}

int g_assertLine = 0;

int assertPositive(int value)
{
    g_assertLine = __LINE__ + 1;
    KQAssert(value > 0, -1);
    return value;
}

} // namespace

class tst_MessageRouting : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init() { g_received.clear(); }
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }

    void applicationHandlerReceivesEveryKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("category");
        QTest::addColumn<QString>("text");
        QTest::newRow("warning") << 0 << int(QtWarningMsg) << QByteArray("tarn.common")
                                 << QStringLiteral("WARNING -- 3 apples");
        QTest::newRow("error") << 1 << int(QtCriticalMsg) << QByteArray("tarn.common")
                               << QStringLiteral("!!! ERROR !!! -- no pears");
        QTest::newRow("assertion")
            << 2 << int(QtCriticalMsg) << QByteArray("tarn.common.assert")
            << QStringLiteral("====== Assertion failed ===================================\n"
                              "  Assertion: (value > 0)\n"
                              "  Location:  tst_messagerouting.cpp:%1 (int {anonymous}::assertPositive(int))");
    }

    void applicationHandlerReceivesEveryKind()
    {
        QFETCH(int, kind);
        QFETCH(int, type);
        QFETCH(QByteArray, category);
        QFETCH(QString, text);
        const QtMessageHandler previous = qInstallMessageHandler(applicationHandler);
        int line = 0;
        switch (kind) {
        case 0: line = __LINE__; ZLLogWarning("%d apples", 3); break;
        case 1: line = __LINE__; ZLLogError("no %s", "pears"); break;
        case 2: QCOMPARE(assertPositive(-4), -1); line = g_assertLine; break;
        }
        qInstallMessageHandler(previous);
        QCOMPARE(g_received.size(), 1);
        QCOMPARE(int(g_received[0].type), type);
        QCOMPARE(g_received[0].category, category);
        QCOMPARE(g_received[0].text, text.contains(QLatin1String("%1")) ? text.arg(line) : text);
        QCOMPARE(g_received[0].line, line);
    }

    void loggingRulesSilence()
    {
        QLoggingCategory::setFilterRules(QStringLiteral("tarn.common.warning=false\ntarn.common.assert.critical=false"));
        const QtMessageHandler previous = qInstallMessageHandler(applicationHandler);
        ZLLogWarning("silenced");
        assertPositive(0);
        ZLLogError("still heard");
        qInstallMessageHandler(previous);
        QCOMPARE(g_received.size(), 1);
        QCOMPARE(g_received[0].text, QStringLiteral("!!! ERROR !!! -- still heard"));
    }

    void testsExpectThemWithIgnoreMessage()
    {
        QTest::ignoreMessage(QtWarningMsg, "WARNING -- expected 7");
        ZLLogWarning("expected %d", 7);
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(QStringLiteral("Assertion: \\(value > 0\\)")));
        assertPositive(-1);
    }
};

QTEST_GUILESS_MAIN(tst_MessageRouting)
#include "tst_messagerouting.moc"
