#pragma once

#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <functional>
#include <utility>

class QWidget;

// A page of the gallery. Each page file registers itself at start-up:
//
//     namespace {
//     const bool registered = GalleryPages::add({20, "inspector", "Inspector", &createPage});
//     }
struct GalleryPage
{
    using NamedImages = QList<std::pair<QString, QImage>>;

    int order = 0; // position in the page list
    QString id;    // file-name friendly
    QString title;
    std::function<QWidget *()> create;
    // Extra pictures for --screenshots, for pages whose demonstration lives
    // in windows of their own. Called with the page shown.
    std::function<NamedImages(QWidget *page)> screenshots = {};
};

namespace GalleryPages {
bool add(GalleryPage page);
QList<GalleryPage> all(); // sorted by order
} // namespace GalleryPages
