// Runs every registered benchmark inside a headless QApplication, so widget
// benchmarks have the same platform as the tests.
#include <TarnCommon/KQSettings.h>

#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    KQSettings::enableTestMode();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
