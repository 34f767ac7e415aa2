// Log lines and assertion reports: the streams a plain program prints them on
// (this program run again as a probe) and their way to an application's own handler.
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

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

int g_breaks = 0;
void countBreak() { ++g_breaks; }

int checkedHalf(int value)
{
    KQAssert(value % 2 == 0, -1);
    return value / 2;
}

// One scenario, named by argv[2], of a plain program without a QCoreApplication
// unless it says so, as a command-line program linking the library would run.
int probe(int argc, char *argv[])
{
    const auto is = [&](const char *name) { return qstrcmp(argv[2], name) == 0; };
    if (is("plain")) {
        KQSetDebugBreakHook(&countBreak);
        ZLLogWarning("value %d and %s", 42, "text");
        ZLLogWarning(static_cast<const char *>(nullptr));
        ZLLogError("caf\xc3\xa9 %s", "\xe2\x9c\x93");
        g_breakOnWarningsAndErrors = true;
        ZLLogWarning("on");
        ZLLogError("on");
        KQAssertionFailed("x", nullptr, -3, "f");
        KQAssertionFailed("x", "dir/a\\b.m", 1, "f");
        std::printf("half %d\n", checkedHalf(3));
        std::fprintf(stderr, "breaks=%d\n", g_breaks);
    } else if (is("objects")) { // their addresses go to stderr
        const QStringList list{QStringLiteral("alpha"), QStringLiteral("beta")};
        QObject object;
        object.setObjectName(QStringLiteral("thing"));
        _ZLLogError("src\\Kit\\Menu.mm", 77, "f", list);
        _ZLLogWarning("dir\\sub/x\\Source.mm", 12, "f", &object);
        _ZLLogWarning("a.m", 1, "f", static_cast<QObject *>(nullptr));
        std::fprintf(stderr, "%p %p", static_cast<const void *>(&list), static_cast<const void *>(&object));
    } else if (is("error-gui")) {
        QApplication application(argc, argv); // errors beep only here
        ZLLogError("with a GUI");
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

} // namespace

class tst_Diagnostics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void streams_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("pattern"); // of "stdout:\n<out>stderr:\n<err>"
        // Breaks off, then on: once per warning and per error, never for an assertion. A failed
        // check returns its neutral result and the program goes on; only "/" cuts a file's path.
        QTest::newRow("formats, nil, UTF-8, assertions, the break switch")
            << "plain"
            << exact("WARNING -- value 42 and text\nWARNING -- Log message was nil\n!!! ERROR !!! -- caf\xc3\xa9 \xe2\x9c\x93\n"
                     "WARNING -- on\n!!! ERROR !!! -- on\nhalf -1\n",
                     "\n" + kBanner + "  Assertion: (x)\n  Location:  NULL:-3 (f)\n\n\n" + kBanner
                         + "  Assertion: (x)\n  Location:  a\\b.m:1 (f)\n\n\n" + kBanner + "  Assertion: (value % 2 == 0)\n")
                   + R"(  Location:  tst_diagnostics\.cpp:\d+ \(.*checkedHalf\(int\)\)\n\nbreaks=2\n)";
        // Described by the type or meta-object, the file cut at "/" and "\\" alike.
        QTest::newRow("objects") << "objects"
                                 << R"(stdout:\n!!! ERROR !!! -- Menu\.mm:77:<QStringList (0x[0-9a-f]+)>: QList\(alpha, beta\)\n)"
                                    R"(WARNING -- Source\.mm:12:<QObject (0x[0-9a-f]+)>: QObject\(\2, name = thing\)\n)"
                                    R"(WARNING -- Log message was nil\nstderr:\n\1 \2)";
        // Qt may add its own platform notes on stderr when there is a GUI.
        QTest::newRow("error beeps safely in a GUI") << "error-gui" << exact("!!! ERROR !!! -- with a GUI\n", "") + "((?!Assertion).)*";
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

    // An application's own handler gets the library's messages by category and
    // level, and logging rules silence them.
    void applicationHandler()
    {
        g_received.clear();
        const QtMessageHandler previous = qInstallMessageHandler(::applicationHandler);
        const int warned = __LINE__ + 1;
        ZLLogWarning("%d apples", 3);
        const int asserted = __LINE__ + 1;
        KQVerify(1 + 1 == 3);
        QLoggingCategory::setFilterRules(QStringLiteral("tarn.common.warning=false"));
        ZLLogWarning("silenced");
        const int failed = __LINE__ + 1;
        ZLLogError("no %s", "pears");
        QLoggingCategory::setFilterRules(QString());
        qInstallMessageHandler(previous);
        const QString assertion = QStringLiteral("critical tarn.common.assert %1: ").arg(asserted) + QLatin1String(kBanner)
                                  + QStringLiteral("  Assertion: (1 + 1 == 3)\n  Location:  tst_diagnostics.cpp:%1 "
                                                   "(void tst_Diagnostics::applicationHandler())").arg(asserted);
        QCOMPARE(g_received, (QStringList{QStringLiteral("warning tarn.common %1: WARNING -- 3 apples").arg(warned), assertion,
                                          QStringLiteral("critical tarn.common %1: !!! ERROR !!! -- no pears").arg(failed)}));
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
