#pragma once

// Benchmarks measured side by side with Qt's own way of doing the same step.
// A pair names two benchmarks registered with the same variants and
// arguments ("BM_Ours/dpr:2" with "tabs:10" beside "BM_Peer/dpr:2" with
// "tabs:10"); the run's reporter matches them instance by instance and prints
// the ratio (ours / peer) of their median CPU times at the end.

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

namespace TarnBench {

// What follows a step before the next frame, ours and the peer's alike:
// the posted events it left, painting itself excepted (the one pending
// paint request of each window stays queued, for both sides the same).
inline void settle()
{
    for (QEvent::Type type : {QEvent::LayoutRequest, QEvent::UpdateLater, QEvent::PolishRequest, QEvent::MetaCall,
                              QEvent::DeferredDelete})
        QCoreApplication::sendPostedEvents(nullptr, type);
}

// Registers function as name (for instance "BM_Foo/visible:1") over the
// given sizes, with its complexity fitted: one family per variant, so that
// the fit sees only the size change.
inline benchmark::internal::Benchmark *registerSized(const std::string &name, const char *sizeName,
                                                     const std::vector<int64_t> &sizes,
                                                     std::function<void(benchmark::State &)> function)
{
    benchmark::internal::Benchmark *benchmark = benchmark::RegisterBenchmark(name.c_str(), std::move(function));
    for (int64_t size : sizes)
        benchmark->Arg(size);
    return benchmark->ArgName(sizeName)->Complexity();
}

struct Pair
{
    std::string step;  // what the user does, as the table shows it
    std::string ours;  // benchmark function names
    std::string peer;
    // When set, the peer's cost is peer minus this benchmark: for a peer that
    // can only be measured together with work ours leaves out (a bare
    // QCoreApplication::sendEvent under an application event filter).
    std::string peerBaseline;
};

// Registers a pair; returns its position so it can initialise a static.
int addPair(Pair pair);
const std::vector<Pair> &pairs();

} // namespace TarnBench

#define TARN_BENCH_PAIR_JOIN2(a, b) a##b
#define TARN_BENCH_PAIR_JOIN(a, b) TARN_BENCH_PAIR_JOIN2(a, b)
// TARN_BENCH_PAIR("tab switch", BM_TabViewSwitch, BM_QTabWidgetSwitch);
// TARN_BENCH_PAIR("event hook", BM_Hook, BM_Filtered, BM_Unfiltered);  // with a baseline
#define TARN_BENCH_PAIR(step, ours, peer, ...)                                                            \
    [[maybe_unused]] static const int TARN_BENCH_PAIR_JOIN(tarnBenchPair_, __LINE__) =                   \
        ::TarnBench::addPair({step, #ours, #peer, #__VA_ARGS__})
