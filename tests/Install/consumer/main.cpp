// Built against the installed library, or by a parent project that embeds the library's sources (EMBEDDED).
#include <TarnCommon/TarnCommon.h>

#include <cstdio>
#include <cstring>

#if defined(EMBEDDED) && (!defined(EMBEDDER_FLAG) || __cplusplus != 201703L)
#  error "the parent's own flags and standard must hold for its targets"
#endif

static_assert(TARNCOMMON_VERSION == TARNCOMMON_VERSION_CHECK(1, 0, 0), "version macros");

int main()
{
    const auto guarded = [](int value) {
        KQAssert(value > 0, -1);
        return value;
    };
    int failures = 0;
    const auto check = [&failures](bool holds, const char *what) {
        if (holds)
            return;
        std::printf("FAILED: %s\n", what);
        ++failures;
    };
    check(TarnCommonVersionNumber == 1.0, "version number");
    check(std::strcmp(reinterpret_cast<const char *>(TarnCommonVersionString),
                      "@(#)PROGRAM:TarnCommon  PROJECT:TarnCommon-1\n") == 0,
          "version string");
    check(std::strcmp(KQLastPathComponentOfPath("a/b/c.m"), "c.m") == 0, "path component");
    check(guarded(-5) == -1, "assertion returns the neutral result");
    check(q_RECT_normalize(q_RECT_set_edge_to_location(QRectF(10, 10, 20, 20), 0, 40)) == QRectF(30, 10, 10, 20), "edge and normalise");
    check(KQPointConstrainToLine(false, QPointF(10, 0), QPointF(0, 0), QPointF(10, 10)) == QPointF(5, 5), "projection");
    check(KQError::kq_errorWithDescription(QStringLiteral("x")).domain() == QLatin1String(KQErrorDomain), "error domain");
    ZLLogWarning("from the consumer %d", 1);
    if (failures == 0)
        std::printf("consumer ok %s\n", TARNCOMMON_VERSION_STRING); // the callers expect the version macro's "1.0.0"
    return failures == 0 ? 0 : 1;
}
