#include <TarnCommon/KQAssert.h>

#include "KQPathComponent_p.h"

#include <cstdio>

extern "C" void KQAssertionFailed(const char *condition, const char *file, int64_t line,
                                  const char *function)
{
    const char *component = KQPathComponent::last(file, KQPathComponent::SlashOnly);
    std::fputc('\n', stderr);
    std::fputs("====== Assertion failed ===================================\n", stderr);
    std::fprintf(stderr, "  Assertion: (%s)\n", condition ? condition : "NULL");
    std::fprintf(stderr, "  Location:  %s:%li (%s)\n", component, static_cast<long>(line),
                 function ? function : "NULL");
    std::fputc('\n', stderr);
}
