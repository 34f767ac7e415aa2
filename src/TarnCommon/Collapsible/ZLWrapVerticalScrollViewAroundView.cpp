#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <TarnCommon/KQAssert.h>

#include <QtWidgets/QScrollArea>

QScrollArea *ZLWrapVerticalScrollViewAroundView(QWidget *view)
{
    KQAssert(view != nullptr, nullptr);
    auto *scrollArea = new QScrollArea;
    scrollArea->setGeometry(0, 0, 200, 100);
    scrollArea->setBackgroundRole(QPalette::NoRole);
    scrollArea->viewport()->setAutoFillBackground(false);
    scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    scrollArea->setWidgetResizable(false);
    // Overlay-style scroll bars take no room: the frame is the view plus the
    // area's border.
    const int border = scrollArea->frameWidth();
    scrollArea->resize(view->width() + 2 * border, view->height() + 2 * border);
    scrollArea->setWidget(view);
    return scrollArea;
}
