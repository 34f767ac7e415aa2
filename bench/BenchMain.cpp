// Runs every registered benchmark inside a headless QApplication, so widget
// benchmarks have the same platform as the tests, and ends with the table of
// ratios of every pair (see BenchPairs.h).
#include "BenchPairs.h"

#include <TarnCommon/KQSettings.h>

#include <QtWidgets/QApplication>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace TarnBench {

namespace {

std::vector<Pair> &pairList()
{
    static std::vector<Pair> list;
    return list;
}

double nanoseconds(double value, benchmark::TimeUnit unit)
{
    switch (unit) {
    case benchmark::kSecond:
        return value * 1e9;
    case benchmark::kMillisecond:
        return value * 1e6;
    case benchmark::kMicrosecond:
        return value * 1e3;
    case benchmark::kNanosecond:
        break;
    }
    return value;
}

double median(std::vector<double> values)
{
    if (values.empty())
        return -1;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string formatTime(double ns)
{
    char text[32];
    if (ns < 0)
        return "-";
    if (ns < 1e3)
        std::snprintf(text, sizeof text, "%.1f ns", ns);
    else if (ns < 1e6)
        std::snprintf(text, sizeof text, "%.2f us", ns / 1e3);
    else
        std::snprintf(text, sizeof text, "%.2f ms", ns / 1e6);
    return text;
}

// The console output as usual, plus every instance's median CPU time (the
// "median" aggregate when repetitions ran, else the median of the runs).
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.error_occurred || run.report_big_o || run.report_rms)
                continue;
            const bool aggregate = run.run_type == Run::RT_Aggregate;
            if (aggregate && run.aggregate_name != "median")
                continue;
            // "BM_Foo/visible:1" with "rows:6": family "BM_Foo", instance "visible:1/rows:6".
            const std::string &name = run.run_name.function_name;
            const size_t slash = name.find('/');
            std::string instance = slash == std::string::npos ? std::string() : name.substr(slash + 1);
            if (!run.run_name.args.empty())
                instance += (instance.empty() ? "" : "/") + run.run_name.args;
            Sample &sample = m_samples[name.substr(0, slash)][instance];
            const double ns = nanoseconds(run.GetAdjustedCPUTime(), run.time_unit);
            if (aggregate)
                sample.median = ns;
            else
                sample.runs.push_back(ns);
        }
    }

    void Finalize() override
    {
        ConsoleReporter::Finalize();
        printRatios();
    }

private:
    struct Sample
    {
        double median = -1;
        std::vector<double> runs;
        double value() const { return median >= 0 ? median : TarnBench::median(runs); }
    };

    // Median CPU time of one instance of a family; -1 when it did not run.
    double time(const std::string &family, const std::string &instance) const
    {
        const auto found = m_samples.find(family);
        if (found == m_samples.end())
            return -1;
        const auto sample = found->second.find(instance);
        return sample == found->second.end() ? -1 : sample->second.value();
    }

    void printRatios() const
    {
        std::FILE *out = stdout;
        std::fflush(out);
        std::fprintf(out, "\nRatios, ours / Qt's peer (median CPU time per step, same run)\n");
        std::fprintf(out, "%-34s %-28s %-30s %11s %11s %7s\n", "step", "peer", "arguments", "ours", "peer",
                     "ratio");
        int rows = 0;
        for (const Pair &pair : pairs()) {
            const auto family = m_samples.find(pair.ours);
            if (family == m_samples.end())
                continue;
            for (const auto &[args, sample] : family->second) {
                const double ours = sample.value();
                double peer = time(pair.peer, args);
                if (peer >= 0 && !pair.peerBaseline.empty()) {
                    const double baseline = time(pair.peerBaseline, args);
                    // A difference within a twentieth of the baseline is the
                    // run's noise, not a cost: no ratio rather than a wild one.
                    peer = baseline >= 0 && peer - baseline > baseline / 20 ? peer - baseline : -1;
                }
                std::string ratio = "-";
                if (ours >= 0 && peer > 0) {
                    char text[32];
                    std::snprintf(text, sizeof text, "%.2f", ours / peer);
                    ratio = text;
                }
                const std::string peerName = pair.peer + (pair.peerBaseline.empty() ? "" : " - baseline");
                std::fprintf(out, "%-34s %-28s %-30s %11s %11s %7s\n", pair.step.c_str(), peerName.c_str(),
                             args.empty() ? "-" : args.c_str(), formatTime(ours).c_str(), formatTime(peer).c_str(),
                             ratio.c_str());
                ++rows;
            }
        }
        if (rows == 0)
            std::fprintf(out, "(no pair ran)\n");
        std::fflush(out);
    }

    std::map<std::string, std::map<std::string, Sample>> m_samples;
};

// The offscreen platform warns about every window-manager hint it cannot
// pass on; those lines would drown the table and cost a write each time.
QtMessageHandler g_previousHandler = nullptr;

void quietHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.startsWith(QLatin1String("This plugin does not support")))
        return;
    g_previousHandler(type, context, message);
}

bool hasFlag(int argc, char *argv[], const char *name)
{
    const size_t length = std::strlen(name);
    for (int i = 1; i < argc; ++i) {
        if (std::strncmp(argv[i], name, length) == 0)
            return true;
    }
    return false;
}

} // namespace

int addPair(Pair pair)
{
    pairList().push_back(std::move(pair));
    return int(pairList().size()) - 1;
}

const std::vector<Pair> &pairs()
{
    return pairList();
}

} // namespace TarnBench

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    KQSettings::enableTestMode();
    TarnBench::g_previousHandler = qInstallMessageHandler(&TarnBench::quietHandler);

    // The machine is shared: repetitions in a shuffled order put ours and the
    // peer under the same load, and the ratios use their medians. Any of these
    // given on the command line wins.
    std::vector<char *> arguments(argv, argv + argc);
    static char repetitions[] = "--benchmark_repetitions=5";
    static char interleaving[] = "--benchmark_enable_random_interleaving=true";
    static char minTime[] = "--benchmark_min_time=0.05";
    static char aggregates[] = "--benchmark_display_aggregates_only=true";
    if (!TarnBench::hasFlag(argc, argv, "--benchmark_repetitions"))
        arguments.push_back(repetitions);
    if (!TarnBench::hasFlag(argc, argv, "--benchmark_enable_random_interleaving"))
        arguments.push_back(interleaving);
    if (!TarnBench::hasFlag(argc, argv, "--benchmark_min_time"))
        arguments.push_back(minTime);
    // Only with our own repetitions: with a single one, this library version
    // hides all but the last size of a family whose complexity is fitted.
    if (!TarnBench::hasFlag(argc, argv, "--benchmark_repetitions")
        && !TarnBench::hasFlag(argc, argv, "--benchmark_display_aggregates_only")
        && !TarnBench::hasFlag(argc, argv, "--benchmark_report_aggregates_only"))
        arguments.push_back(aggregates);
    int count = int(arguments.size());
    arguments.push_back(nullptr);

    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    TarnBench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
