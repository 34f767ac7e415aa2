#include "GalleryPage.h"

#include <algorithm>

namespace {
QList<GalleryPage> &registry()
{
    static QList<GalleryPage> pages;
    return pages;
}
} // namespace

bool GalleryPages::add(GalleryPage page)
{
    registry().append(std::move(page));
    return true;
}

QList<GalleryPage> GalleryPages::all()
{
    QList<GalleryPage> pages = registry();
    std::stable_sort(pages.begin(), pages.end(),
                     [](const GalleryPage &a, const GalleryPage &b) { return a.order < b.order; });
    return pages;
}
