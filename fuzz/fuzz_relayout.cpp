// Random levels of frames, masks and friends through the collision sweeps:
// the guarded run always ends, never leaves a negative width, and agrees
// with an unguarded run (capped far above the guard) whenever that settles.
#include "KQRelayoutRules_p.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace KQRelayout;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t count = 2 + data[0] % 7;
    const double gap = data[1] % 16;
    std::size_t pos = 2;
    auto next = [&]() -> unsigned { return pos < size ? data[pos++] : 0; };
    std::vector<View> level;
    for (std::size_t i = 0; i < count; ++i) {
        View v;
        v.frame = Frame{double(next() % 200), double(next() % 40), double(next() % 120), double(1 + next() % 40)};
        v.mask = int(next() % 8);
        const unsigned friendBits = next();
        for (std::size_t j = 0; j < count; ++j) {
            if (friendBits & (1u << j))
                v.friends.push_back(j);
        }
        level.push_back(v);
    }
    Settings guardedSettings;
    guardedSettings.gap = gap;
    std::vector<View> guardedLevel = level;
    Outcome outcome;
    const SettleResult guarded = settle(guardedLevel, guardedSettings, &outcome);
    if (guarded.sweeps > sweepLimit(count))
        std::abort();
    for (const View &v : guardedLevel) {
        if (v.frame.width < 0)
            std::abort();
    }
    Settings unguarded = guardedSettings;
    unguarded.guarded = false;
    unguarded.unguardedLimit = 50 * sweepLimit(count);
    const SettleResult reference = settle(level, unguarded);
    if (reference.settled) {
        if (!guarded.settled || guarded.sweeps != reference.sweeps) {
            std::fprintf(stderr, "guard stopped a level that settles after %zu sweeps\n", reference.sweeps);
            std::abort();
        }
        for (std::size_t i = 0; i < count; ++i) {
            if (!(level[i].frame == guardedLevel[i].frame))
                std::abort();
        }
    }
    return 0;
}
