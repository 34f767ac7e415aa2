// Log lines and assertion reports: the streams a plain program prints them on
// (this program run again as a probe) and their way through Qt's message
// system to an application's own handler.
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQGeometry.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace {

const QByteArray kBanner = "====== Assertion failed ===================================\n";

// A whole run of the probe: exactly these bytes on stdout and on stderr.
QString exact(const QByteArray &out, const QByteArray &err)
{
    return QRegularExpression::escape(QString::fromUtf8("stdout:\n" + out + "stderr:\n" + err));
}

// One assertion report of the probe, at any line of this file.
QString probeReport(const char *condition, const char *function)
{
    return QRegularExpression::escape(QString::fromLatin1("\n" + kBanner + "  Assertion: (" + condition + ")\n"))
           + QStringLiteral("  Location:  tst_diagnostics\\.cpp:\\d+ \\(.*%1\\)\n\n")
                 .arg(QRegularExpression::escape(QLatin1String(function)));
}

int g_breaks = 0;
void countBreak() { ++g_breaks; }

int checkedHalf(int value)
{
    KQAssert(value % 2 == 0, -1);
    return value / 2;
}

void guardedStep(const char *name)
{
    KQAssertText("name != nil", name != nullptr);
    std::printf("step %s\n", name);
}

const char *unreachable() { KQAssertNeverExecuted(nullptr); }

// One scenario, named by argv[2], of a plain program: without any
// QCoreApplication unless it says so, as a command-line program linking the
// library would run. streams() reads what it writes to stdout and stderr.
int probe(int argc, char *argv[])
{
    const auto is = [&](const char *name) { return qstrcmp(argv[2], name) == 0; };
    if (is("warnings")) {
        ZLLogWarning("value %d and %s", 42, "text");
        ZLLogWarning(static_cast<const char *>(nullptr));
        ZLLogWarning("caf\xc3\xa9 %s", "\xe2\x9c\x93");
    } else if (is("objects")) { // their addresses go to stderr
        const QStringList list{QStringLiteral("alpha"), QStringLiteral("beta")};
        QObject object;
        object.setObjectName(QStringLiteral("thing"));
        _ZLLogError("src\\Kit\\Menu.mm", 77, "f", list);
        _ZLLogWarning("dir\\sub/x\\Source.mm", 12, "f", &object);
        _ZLLogWarning("V.mm", 1, "f", QVariant(42));
        _ZLLogWarning("a.m", 1, "f", static_cast<QObject *>(nullptr));
        std::fprintf(stderr, "%p %p", static_cast<const void *>(&list), static_cast<const void *>(&object));
    } else if (is("error-gui")) {
        QApplication application(argc, argv); // errors beep only here
        ZLLogError("with a GUI");
    } else if (is("invalid-edge")) {
        const QRectF r = q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 4, 9.0);
        std::printf("%g %g %g %g\n", r.x(), r.y(), r.width(), r.height());
    } else if (is("reports")) {
        KQAssertionFailed("minSize.width <= maxSize.width", "Inspector/KQInspectorWindow.mm", 178,
                          "-[KQInspectorWindow resizeWindowForNewMode:]");
        KQAssertionFailed("x", nullptr, -3, "f");
        KQAssertionFailed("x", "dir/a\\b.m", 1, "f");
    } else if (is("assert-macros")) {
        std::printf("half %d\n", checkedHalf(3));
        guardedStep(nullptr);
        std::printf("unreachable %s\n", unreachable() ? "value" : "null");
        std::printf("verify %d\n", KQVerify(1 + 1 == 3) ? 1 : 0);
    } else if (is("break-switch")) {
        KQSetDebugBreakHook(&countBreak);
        ZLLogWarning("off");
        ZLLogError("off");
        g_breakOnWarningsAndErrors = true;
        ZLLogWarning("on");
        ZLLogError("on");
        KQAssertionFailed("on", __FILE__, __LINE__, "f");
        std::fprintf(stderr, "breaks=%d\n", g_breaks);
    } else {
        return 2;
    }
    std::fflush(stdout);
    return 0;
}

QStringList g_received; // "type category line: text" of each message the application's handler got

void applicationHandler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    static const char *const types[] = {"debug", "warning", "critical", "fatal", "info"};
    g_received << QString::asprintf("%s %s %d: ", types[type], context.category, context.line) + text;
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
    void cleanup() { QLoggingCategory::setFilterRules(QString()); }

    void lastPathComponent_data()
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

    void lastPathComponent()
    {
        QFETCH(QByteArray, path);
        QFETCH(int, offset);
        QCOMPARE(KQLastPathComponentOfPath(path.constData()), path.constData() + offset);
        QCOMPARE(QByteArray(KQLastPathComponentOfPath(nullptr)), QByteArray("NULL"));
    }

    void streams_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("pattern"); // of "stdout:\n<out>stderr:\n<err>"
        QTest::newRow("warnings: format, nil, utf-8")
            << "warnings" << exact("WARNING -- value 42 and text\nWARNING -- Log message was nil\nWARNING -- caf\xc3\xa9 \xe2\x9c\x93\n", "");
        // Described by the meta-object or type, the file cut at "/" and "\\" alike; a null object is the nil message.
        QTest::newRow("objects") << "objects"
                                 << R"(stdout:\n!!! ERROR !!! -- Menu\.mm:77:<QStringList (0x[0-9a-f]+)>: QList\(alpha, beta\)\n)"
                                    R"(WARNING -- Source\.mm:12:<QObject (0x[0-9a-f]+)>: QObject\(\2, name = thing\)\n)"
                                    R"(WARNING -- V\.mm:1:<int 0x[0-9a-f]+>: QVariant\(int, 42\)\nWARNING -- Log message was nil\n)"
                                    R"(stderr:\n\1 \2)";
        // Qt may add its own platform notes on stderr when there is a GUI.
        QTest::newRow("error beeps safely in a GUI") << "error-gui" << exact("!!! ERROR !!! -- with a GUI\n", "") + "((?!Assertion).)*";
        QTest::newRow("invalid edge is logged, rectangle unchanged")
            << "invalid-edge" << exact("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n1 2 3 4\n", "");
        QTest::newRow("reports: null file, backslash kept")
            << "reports"
            << exact("", "\n" + kBanner + "  Assertion: (minSize.width <= maxSize.width)\n"
                         "  Location:  KQInspectorWindow.mm:178 (-[KQInspectorWindow resizeWindowForNewMode:])\n\n\n" + kBanner
                         + "  Assertion: (x)\n  Location:  NULL:-3 (f)\n\n\n" + kBanner + "  Assertion: (x)\n  Location:  a\\b.m:1 (f)\n\n");
        // Each failed check returns its neutral result and the program goes on.
        QTest::newRow("assertion macros")
            << "assert-macros"
            << exact("half -1\nunreachable null\nverify 0\n", "") + probeReport("value % 2 == 0", "checkedHalf(int)")
                   + probeReport("name != nil", "guardedStep(const char*)")
                   + probeReport("KQAssertNeverExecuted was executed", "unreachable()") + probeReport("1 + 1 == 3", "probe(int, char**)");
        // Off: no break. On: once per warning and per error, never for an assertion.
        QTest::newRow("break switch") << "break-switch"
                                      << exact("WARNING -- off\n!!! ERROR !!! -- off\nWARNING -- on\n!!! ERROR !!! -- on\n", "")
                                             + probeReport("on", "f") + "breaks=2\n";
    }

    void streams()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, pattern);
        QProcess probe;
        probe.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--probe"), scenario});
        QVERIFY(probe.waitForFinished(30000));
        QCOMPARE(probe.exitStatus(), QProcess::NormalExit);
        QCOMPARE(probe.exitCode(), 0);
        const QString output = QString::fromUtf8("stdout:\n" + probe.readAllStandardOutput() + "stderr:\n" + probe.readAllStandardError());
        const QRegularExpression expected(QRegularExpression::anchoredPattern(pattern), QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(expected.match(output).hasMatch(), qPrintable(output));
    }

    void applicationHandler_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("received"); // %1: the line of the call
        QTest::newRow("warning") << 0 << QStringLiteral("warning tarn.common %1: WARNING -- 3 apples");
        QTest::newRow("error") << 1 << QStringLiteral("critical tarn.common %1: !!! ERROR !!! -- no pears");
        QTest::newRow("assertion") << 2
                                   << QStringLiteral("critical tarn.common.assert %1: ") + QLatin1String(kBanner)
                                          + QStringLiteral("  Assertion: (value > 0)\n"
                                                           "  Location:  tst_diagnostics.cpp:%1 (int {anonymous}::assertPositive(int))");
        QTest::newRow("logging rules silence") << 3 << QStringLiteral("critical tarn.common %1: !!! ERROR !!! -- still heard");
    }

    void applicationHandler()
    {
        QFETCH(int, kind);
        QFETCH(QString, received);
        g_received.clear();
        const QtMessageHandler previous = qInstallMessageHandler(::applicationHandler);
        int line = 0;
        switch (kind) {
        case 0: line = __LINE__; ZLLogWarning("%d apples", 3); break;
        case 1: line = __LINE__; ZLLogError("no %s", "pears"); break;
        case 2: assertPositive(-4); line = g_assertLine; break;
        case 3:
            QLoggingCategory::setFilterRules(QStringLiteral("tarn.common.warning=false\ntarn.common.assert.critical=false"));
            ZLLogWarning("silenced");
            assertPositive(0);
            line = __LINE__; ZLLogError("still heard");
        }
        qInstallMessageHandler(previous);
        QCOMPARE(g_received, QStringList{received.arg(line)});
    }
};

int main(int argc, char *argv[])
{
    if (argc > 2 && qstrcmp(argv[1], "--probe") == 0)
        return probe(argc, argv);
    QCoreApplication application(argc, argv);
    tst_Diagnostics test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_diagnostics.moc"
