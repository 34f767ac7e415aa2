#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>

#include <cstring>

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

QString address(const void *p)
{
    return QString::asprintf("%p", p);
}

const QByteArray kBanner = "====== Assertion failed ===================================\n";

} // namespace

class tst_Diagnostics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastPathComponent_data();
    void lastPathComponent();
    void lastPathComponentPointsIntoPath();

    void formatText_data();
    void formatText();
    void objectText();

    void streams_data();
    void streams();
    void objectErrorOnStdout();
    void assertionMacrosReturnNeutralResults();
    void breakSwitch();
};

void tst_Diagnostics::lastPathComponent_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("component");
    QTest::newRow("nested") << QByteArray("a/b/File.m") << QByteArray("File.m");
    QTest::newRow("bare") << QByteArray("File.m") << QByteArray("File.m");
    QTest::newRow("trailing separator stays") << QByteArray("a/dir/") << QByteArray("dir/");
    QTest::newRow("lone slash") << QByteArray("/") << QByteArray("/");
    QTest::newRow("absolute") << QByteArray("/usr/src/x.c") << QByteArray("x.c");
    QTest::newRow("empty") << QByteArray("") << QByteArray("");
    QTest::newRow("backslashes do not separate") << QByteArray("a\\b.m") << QByteArray("a\\b.m");
    QTest::newRow("double slash") << QByteArray("a//b") << QByteArray("b");
}

void tst_Diagnostics::lastPathComponent()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, component);
    QCOMPARE(QByteArray(KQLastPathComponentOfPath(path.constData())), component);
}

void tst_Diagnostics::lastPathComponentPointsIntoPath()
{
    const char path[] = "a/b/File.m";
    QCOMPARE(KQLastPathComponentOfPath(path), path + 4);
    const char empty[] = "";
    QCOMPARE(KQLastPathComponentOfPath(empty), empty);
    QCOMPARE(QByteArray(KQLastPathComponentOfPath(nullptr)), QByteArray("NULL"));
}

void tst_Diagnostics::formatText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("format without location") << makeLogText("a/b.m", "%d-%s", 7, "x") << QStringLiteral("7-x");
    QTest::newRow("nil message") << makeLogText("a/b.m", nullptr) << QStringLiteral("Log message was nil");
    QTest::newRow("utf-8 arguments") << makeLogText("b.m", "%s", "\xc3\xa9") << QStringLiteral("\u00e9");
    QTest::newRow("null file survives") << makeLogText(nullptr, "ok") << QStringLiteral("ok");
}

void tst_Diagnostics::formatText()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(text, expected);
}

void tst_Diagnostics::objectText()
{
    // Object messages carry file, line, class, address and description; the
    // file is cut at "/" and "\\" alike.
    QObject object;
    object.setObjectName(QStringLiteral("thing"));
    const QString forObject = _ZLMakeLogStr("dir\\sub/x\\Source.mm", 12, "f", &object);
    QVERIFY2(forObject.startsWith(QStringLiteral("Source.mm:12:<QObject ") + address(&object) + QStringLiteral(">: ")),
             qPrintable(forObject));
    QVERIFY2(forObject.contains(QStringLiteral("thing")), qPrintable(forObject));

    const QStringList list{QStringLiteral("alpha"), QStringLiteral("beta")};
    const QString forList = _ZLMakeLogStr("a/List.mm", 3, "f", list);
    QVERIFY2(forList.startsWith(QStringLiteral("List.mm:3:<QStringList ") + address(&list) + QStringLiteral(">: ")),
             qPrintable(forList));
    QVERIFY(forList.contains(QStringLiteral("alpha")) && forList.contains(QStringLiteral("beta")));

    const QVariant variant(42);
    const QString forVariant = _ZLMakeLogStr("V.mm", 1, "f", variant);
    QVERIFY2(forVariant.startsWith(QStringLiteral("V.mm:1:<int ")), qPrintable(forVariant));
    QVERIFY(forVariant.endsWith(QStringLiteral("42)")));

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
    QTest::newRow("utf-8 warning") << "warning-utf8" << QByteArray("WARNING -- caf\xc3\xa9 \xe2\x9c\x93\n")
                                   << QByteArray();
    QTest::newRow("error") << "error-format" << QByteArray("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n")
                           << QByteArray();
    QTest::newRow("error beeps safely in a GUI")
        << "error-gui" << QByteArray("!!! ERROR !!! -- with a GUI\n") << QByteArray();
    QTest::newRow("invalid edge is logged, rectangle unchanged")
        << "invalid-edge" << QByteArray("!!! ERROR !!! -- 4 is not a valid NSRectEdge value\n1 2 3 4\n")
        << QByteArray();
    QTest::newRow("assertion report")
        << "assert-report" << QByteArray()
        << QByteArray("\n" + kBanner + "  Assertion: (minSize.width <= maxSize.width)\n"
                      "  Location:  KQInspectorWindow.mm:178 (-[KQInspectorWindow resizeWindowForNewMode:])\n\n");
    QTest::newRow("null file") << "assert-null-file" << QByteArray()
                               << QByteArray("\n" + kBanner + "  Assertion: (x)\n  Location:  NULL:-3 (f)\n\n");
    QTest::newRow("backslash stays in reports")
        << "assert-backslash" << QByteArray()
        << QByteArray("\n" + kBanner + "  Assertion: (x)\n  Location:  a\\b.m:1 (f)\n\n");
}

void tst_Diagnostics::streams()
{
    QFETCH(QString, scenario);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const ProbeOutput output = runProbe(scenario);
    QCOMPARE(output.exitCode, 0);
    QCOMPARE(output.out, out);
    // Qt may add its own platform notes on stderr in the GUI scenario.
    if (scenario == QLatin1String("error-gui"))
        QVERIFY(!output.err.contains("Assertion"));
    else
        QCOMPARE(output.err, err);
}

void tst_Diagnostics::objectErrorOnStdout()
{
    const ProbeOutput output = runProbe(QStringLiteral("error-object"));
    QCOMPARE(output.exitCode, 0);
    // The probe reports the list's address on stderr.
    const QByteArray expectedStart = "!!! ERROR !!! -- Menu.mm:77:<QStringList " + output.err + ">: ";
    QVERIFY2(output.out.startsWith(expectedStart), output.out.constData());
    QVERIFY(output.out.endsWith("\n"));
    QVERIFY(output.out.contains("alpha") && output.out.contains("beta"));
}

void tst_Diagnostics::assertionMacrosReturnNeutralResults()
{
    const ProbeOutput output = runProbe(QStringLiteral("assert-macros"));
    QCOMPARE(output.exitCode, 0);
    // Each failed check returned its neutral result and the program went on.
    QCOMPARE(output.out, QByteArray("half -1\nunreachable null\nverify 0\n"));

    const QList<QByteArray> reports = output.err.split('\n');
    const QByteArrayList expectedConditions = {"(value % 2 == 0)", "(name != nil)",
                                               "(KQAssertNeverExecuted was executed)", "(1 + 1 == 3)"};
    QByteArrayList conditions;
    QByteArrayList locations;
    for (const QByteArray &line : reports) {
        if (line.startsWith("  Assertion: "))
            conditions.append(line.mid(13));
        if (line.startsWith("  Location:  "))
            locations.append(line.mid(13));
    }
    QCOMPARE(conditions, expectedConditions);
    QCOMPARE(output.err.count(kBanner), 4);
    // Reports carry the probe's own file, a real line and the full function name.
    static const QRegularExpression location(
        QStringLiteral(R"(^diagnostics_probe\.cpp:\d+ \((.*)\)$)"));
    QStringList functions;
    for (const QByteArray &line : locations) {
        const QRegularExpressionMatch match = location.match(QString::fromUtf8(line));
        QVERIFY2(match.hasMatch(), line.constData());
        functions.append(match.captured(1));
    }
    QVERIFY(functions.at(0).contains(QLatin1String("checkedHalf(int)")));
    QVERIFY(functions.at(1).contains(QLatin1String("guardedStep(const char*)")));
    QVERIFY(functions.at(2).contains(QLatin1String("unreachable()")));
    QVERIFY(functions.at(3).contains(QLatin1String("main(int, char**)")));
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

QTEST_GUILESS_MAIN(tst_Diagnostics)
#include "tst_diagnostics.moc"
