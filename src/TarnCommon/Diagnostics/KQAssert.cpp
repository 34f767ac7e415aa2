#include <TarnCommon/KQAssert.h>

#include "KQMessageOutput_p.h"
#include "KQPathComponent_p.h"

extern "C" void KQAssertionFailed(const char *condition, const char *file, int64_t line,
                                  const char *function)
{
    const char *component = KQPathComponent::last(file, KQPathComponent::SlashOnly);
    const QString report = QString::asprintf("====== Assertion failed ===================================\n"
                                             "  Assertion: (%s)\n"
                                             "  Location:  %s:%li (%s)",
                                             condition ? condition : "NULL", component,
                                             static_cast<long>(line), function ? function : "NULL");
    KQMessageOutput::assertion(file, line, function, report);
}
