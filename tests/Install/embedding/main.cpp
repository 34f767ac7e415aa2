// Built by a parent project that embeds the library's sources.
#include <TarnCommon/TarnCommon.h>

#include <cstdio>

#if !defined(EMBEDDER_FLAG) || __cplusplus != 201703L
#  error "the parent's own flags and standard must hold for its targets"
#endif

int main()
{
    const QRectF r = q_RECT_normalize(QRectF(10, 10, -4, 6));
    if (r != QRectF(6, 10, 4, 6)) {
        std::printf("unexpected rectangle\n");
        return 1;
    }
    std::printf("embedder ok %s\n", TARNCOMMON_VERSION_STRING);
    return 0;
}
