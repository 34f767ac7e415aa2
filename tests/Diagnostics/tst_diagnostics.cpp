// Log lines and assertion reports: their text, the streams a plain program
// prints them on (checked byte for byte in a child process), and their way
// through Qt's message system to an application's own handler.
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

namespace {

struct ProbeOutput
{
    QByteArray out;
    QByteArray err;
    int exitCode = -1;
};

ProbeOutput runProbe(const QString &scenario)
{
    QProcess process;
    process.start(QStringLiteral(DIAGNOSTICS_PROBE), {scenario});
    ProbeOutput result;
    if (!process.waitForFinished(30000))
        return result;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return result;
}

QString makeLogText(const char *file, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    QString text = _ZLMakeLogStr(file, 9, "f", format, arguments);
    va_end(arguments);
    return text;
}

const QByteArray kBanner = "====== Assertion failed ===================================\n";

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

class tst_Diagnostics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { g_received.clear(); }
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }
    void lastPathComponent_data();
    void lastPathComponent();
    void logText();
    void streams_data();
    void streams();
    void assertionMacrosReturnNeutralResults();
    void breakSwitch();
    void applicationHandlerReceivesEveryKind_data();
    void applicationHandlerReceivesEveryKind();
    void loggingRulesSilence();
};

void tst_Diagnostics::lastPathComponent_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("offset"); // where the component starts in path
    QTest::newRow("nested") << QByteArray("a/b/File.m") << 4;
    QTest::newRow("bare") << QByteArray("File.m") << 0;
    QTest::newRow("trailing separator stays") << QByteArray("a/dir/") << 2;
    QTest::newRow("lone slash") << QByteArray("/") << 0;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("backslashes do not separate") << QByteArray("a\\b.m") << 0;
    QTest::newRow("double slash") << QByteArray("a//b") << 3;
}

void tst_Diagnostics::lastPathComponent()
{
    QFETCH(QByteArray, path);
    QFETCH(int, offset);
    QCOMPARE(KQLastPathComponentOfPath(path.constData()), path.constData() + offset);
    QCOMPARE(QByteArray(KQLastPathComponentOfPath(nullptr)), QByteArray("NULL"));
}

void tst_Diagnostics::logText()
{
    QCOMPARE(makeLogText("a/b.m", "%d-%s", 7, "x"), QStringLiteral("7-x")); // no location for formats
    QCOMPARE(makeLogText("a/b.m", nullptr), QStringLiteral("Log message was nil"));
    QCOMPARE(makeLogText("b.m", "%s", "\xc3\xa9"), QStringLiteral("\u00e9"));
    QCOMPARE(makeLogText(nullptr, "ok"), QStringLiteral("ok"));

    // Object messages carry file, line, class, address and description; the
    // file is cut at "/" and "\\" alike.
    QObject object;
    object.setObjectName(QStringLiteral("thing"));
    const QString forObject = _ZLMakeLogStr("dir\\sub/x\\Source.mm", 12, "f", &object);
    QVERIFY2(forObject.startsWith(QStringLiteral("Source.mm:12:<QObject ") + QString::asprintf("%p", static_cast<const void *>(&object)) + QStringLiteral(">: ")),
             qPrintable(forObject));
    QVERIFY2(forObject.contains(QStringLiteral("thing")), qPrintable(forObject));
    const QString forVariant = _ZLMakeLogStr("V.mm", 1, "f", QVariant(42));
    QVERIFY2(forVariant.startsWith(QStringLiteral("V.mm:1:<int ")) && forVariant.endsWith(QStringLiteral("42)")),
             qPrintable(forVariant));
    QObject *nil = nullptr;
    QCOMPARE(_ZLMakeLogStr("a.m", 1, "f", nil), QStringLiteral("Log message was nil"));
}

void tst_Diagnostics::streams_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");

    QTest::newRow("warning") << "warning-format" << QByteArray("WARNING -- value 42 and text\n") << QByteArray();
    QTest::newRow("nil warning") << "warning-nil" << QByteArray("WARNING -- Log message was nil\n") << QByteArray();
    QTest::newRow("utf-8 warning") << "warning-utf8" << QByteArray("WARNING -- caf\xc3\xa9 \xe2\x9c\x93\n") << QByteArray();
    QTest::newRow("error beeps safely in a GUI") << "error-gui" << QByteArray("!!! ERROR !!! -- with a GUI\n") << QByteArray();
    QTest::newRow("invalid edge is logged, rectangle unchanged")
        << "invalid-edge" << QByteArray("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n1 2 3 4\n") << QByteArray();
    QTest::newRow("assertion report")
        << "assert-report" << QByteArray()
        << QByteArray("\n" + kBanner + "  Assertion: (minSize.width <= maxSize.width)\n"
                      "  Location:  KQInspectorWindow.mm:178 (-[KQInspectorWindow resizeWindowForNewMode:])\n\n");
    QTest::newRow("null file") << "assert-null-file" << QByteArray()
                               << QByteArray("\n" + kBanner + "  Assertion: (x)\n  Location:  NULL:-3 (f)\n\n");
    QTest::newRow("backslash stays in reports") << "assert-backslash" << QByteArray()
                                                << QByteArray("\n" + kBanner + "  Assertion: (x)\n  Location:  a\\b.m:1 (f)\n\n");
    // The probe reports the list's address on stderr: "@" stands for it.
    QTest::newRow("object error") << "error-object" << QByteArray("!!! ERROR !!! -- Menu.mm:77:<QStringList @>: ") << QByteArray();
}

void tst_Diagnostics::streams()
{
    QFETCH(QString, scenario);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const ProbeOutput output = runProbe(scenario);
    QCOMPARE(output.exitCode, 0);
    if (scenario == QLatin1String("error-object")) {
        QVERIFY2(output.out.startsWith(out.replace("@", output.err)), output.out.constData());
        QVERIFY(output.out.endsWith("\n") && output.out.contains("alpha") && output.out.contains("beta"));
        return;
    }
    QCOMPARE(output.out, out);
    // Qt may add its own platform notes on stderr in the GUI scenario.
    if (scenario == QLatin1String("error-gui"))
        QVERIFY(!output.err.contains("Assertion"));
    else
        QCOMPARE(output.err, err);
}

void tst_Diagnostics::assertionMacrosReturnNeutralResults()
{
    const ProbeOutput output = runProbe(QStringLiteral("assert-macros"));
    QCOMPARE(output.exitCode, 0);
    // Each failed check returned its neutral result and the program went on.
    QCOMPARE(output.out, QByteArray("half -1\nunreachable null\nverify 0\n"));
    QCOMPARE(output.err.count(kBanner), 4);
    // Reports carry the condition, the probe's own file, a real line and the
    // full function name.
    static const QRegularExpression report(QStringLiteral(
        R"(  Assertion: \((.*)\)\n  Location:  diagnostics_probe\.cpp:\d+ \((.*)\)\n)"));
    QStringList found;
    for (auto it = report.globalMatch(QString::fromUtf8(output.err)); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        found << match.captured(1) + QLatin1String(" in ") + match.captured(2);
    }
    QCOMPARE(found.size(), 4);
    QVERIFY2(found.at(0).startsWith(QLatin1String("value % 2 == 0 in ")) && found.at(0).contains(QLatin1String("checkedHalf(int)")),
             qPrintable(found.at(0)));
    QVERIFY2(found.at(1).startsWith(QLatin1String("name != nil in ")) && found.at(1).contains(QLatin1String("guardedStep(const char*)")),
             qPrintable(found.at(1)));
    QVERIFY2(found.at(2).startsWith(QLatin1String("KQAssertNeverExecuted was executed in "))
                 && found.at(2).contains(QLatin1String("unreachable()")),
             qPrintable(found.at(2)));
    QVERIFY2(found.at(3).startsWith(QLatin1String("1 + 1 == 3 in ")) && found.at(3).contains(QLatin1String("main(int, char**)")),
             qPrintable(found.at(3)));
}

void tst_Diagnostics::breakSwitch()
{
    const ProbeOutput output = runProbe(QStringLiteral("break-switch"));
    QCOMPARE(output.exitCode, 0);
    // Off: no break. On: once per warning and per error, never for an assertion.
    QVERIFY2(output.err.endsWith("breaks=2\n"), output.err.constData());
    QCOMPARE(output.out.count("WARNING -- "), 2);
    QCOMPARE(output.out.count("!!! ERROR !!! -- "), 2);
}

void tst_Diagnostics::applicationHandlerReceivesEveryKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("category");
    QTest::addColumn<QString>("text");
    QTest::newRow("warning") << 0 << int(QtWarningMsg) << QByteArray("tarn.common") << QStringLiteral("WARNING -- 3 apples");
    QTest::newRow("error") << 1 << int(QtCriticalMsg) << QByteArray("tarn.common") << QStringLiteral("!!! ERROR !!! -- no pears");
    QTest::newRow("assertion") << 2 << int(QtCriticalMsg) << QByteArray("tarn.common.assert")
                               << QString::fromLatin1(kBanner) + QStringLiteral(
                                      "  Assertion: (value > 0)\n"
                                      "  Location:  tst_diagnostics.cpp:%1 (int {anonymous}::assertPositive(int))");
}

void tst_Diagnostics::applicationHandlerReceivesEveryKind()
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

void tst_Diagnostics::loggingRulesSilence()
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

QTEST_GUILESS_MAIN(tst_Diagnostics)
#include "tst_diagnostics.moc"
