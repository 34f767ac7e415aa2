// A program outside the project, built against the installed library.
#include <TarnCommon/TarnCommon.h>

#include <cstdio>
#include <cstring>

static int failures = 0;

static void check(bool condition, const char *what)
{
    if (!condition) {
        std::printf("FAILED: %s\n", what);
        ++failures;
    }
}

static int guarded(int value)
{
    KQAssert(value > 0, -1);
    return value;
}

static_assert(TARNCOMMON_VERSION >= TARNCOMMON_VERSION_CHECK(1, 0, 0), "version macros");
static_assert(TARNCOMMON_VERSION < TARNCOMMON_VERSION_CHECK(2, 0, 0), "version macros");

int main()
{
    check(TarnCommonVersionNumber == 1.0, "version number");
    check(std::strcmp(reinterpret_cast<const char *>(TarnCommonVersionString),
                      "@(#)PROGRAM:TarnCommon  PROJECT:TarnCommon-1\n") == 0,
          "version string");
    check(std::strcmp(KQLastPathComponentOfPath("a/b/c.m"), "c.m") == 0, "path component");
    check(guarded(-5) == -1, "assertion returns the neutral result");
    ZLLogWarning("from the consumer %d", 1);
    check(std::strcmp(TARNCOMMON_VERSION_STRING, "1.0.0") == 0, "version string macro");

    const QRectF r = q_RECT_normalize(q_RECT_set_edge_to_location(QRectF(10, 10, 20, 20), 0, 40));
    check(r == QRectF(30, 10, 10, 20), "edge and normalise");
    check(KQPointConstrainToLine(false, QPointF(10, 0), QPointF(0, 0), QPointF(10, 10)) == QPointF(5, 5),
          "projection");
    check(KQError::kq_errorWithDescription(QStringLiteral("x")).domain() == QLatin1String(KQErrorDomain),
          "error domain");

    if (failures == 0)
        std::printf("consumer ok\n");
    return failures == 0 ? 0 : 1;
}
