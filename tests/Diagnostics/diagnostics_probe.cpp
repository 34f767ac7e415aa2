// Runs one diagnostics scenario, named by argv[1], and exits; the test reads
// what it wrote to stdout and stderr. Most scenarios run without any
// QCoreApplication, as a command-line program linking the library would.
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQGeometry.h>

#include <QtCore/QStringList>
#include <QtWidgets/QApplication>

#include <cstdio>
#include <cstring>

namespace {

int g_breaks = 0;
void countBreak() { ++g_breaks; }

int checkedHalf(int value)
{
    KQAssert(value % 2 == 0, -1);
    return value / 2;
}

void guardedStep(const char *name)
{
    KQAssertText("name != nil", name != nullptr);
    std::printf("step %s\n", name);
}

const char *unreachable()
{
    KQAssertNeverExecuted(nullptr);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 2)
        return 2;
    const char *scenario = argv[1];
    auto is = [scenario](const char *name) { return std::strcmp(scenario, name) == 0; };

    if (is("warning-format")) {
        ZLLogWarning("value %d and %s", 42, "text");
    } else if (is("warning-nil")) {
        const char *nilMessage = nullptr;
        ZLLogWarning(nilMessage);
    } else if (is("warning-utf8")) {
        ZLLogWarning("caf\xc3\xa9 %s", "\xe2\x9c\x93");
    } else if (is("error-object")) {
        const QStringList list{QStringLiteral("alpha"), QStringLiteral("beta")};
        _ZLLogError("src\\Kit\\Menu.mm", 77, "f", list);
        std::fprintf(stderr, "%p", static_cast<const void *>(&list));
    } else if (is("error-gui")) {
        QApplication application(argc, argv); // errors beep only here
        ZLLogError("with a GUI");
    } else if (is("invalid-edge")) {
        const QRectF r = q_RECT_set_edge_to_location(QRectF(1, 2, 3, 4), 4, 9.0);
        std::printf("%g %g %g %g\n", r.x(), r.y(), r.width(), r.height());
    } else if (is("assert-report")) {
        KQAssertionFailed("minSize.width <= maxSize.width", "Inspector/KQInspectorWindow.mm", 178,
                          "-[KQInspectorWindow resizeWindowForNewMode:]");
    } else if (is("assert-null-file")) {
        KQAssertionFailed("x", nullptr, -3, "f");
    } else if (is("assert-backslash")) {
        KQAssertionFailed("x", "dir/a\\b.m", 1, "f");
    } else if (is("assert-macros")) {
        std::printf("half %d\n", checkedHalf(3));
        guardedStep(nullptr);
        std::printf("unreachable %s\n", unreachable() ? "value" : "null");
        std::printf("verify %d\n", KQVerify(1 + 1 == 3) ? 1 : 0);
    } else if (is("break-switch")) {
        KQSetDebugBreakHook(&countBreak);
        ZLLogWarning("off");
        ZLLogError("off");
        g_breakOnWarningsAndErrors = true;
        ZLLogWarning("on");
        ZLLogError("on");
        KQAssertionFailed("on", __FILE__, __LINE__, "f");
        std::fprintf(stderr, "breaks=%d\n", g_breaks);
    } else {
        return 2;
    }
    std::fflush(stdout);
    return 0;
}
