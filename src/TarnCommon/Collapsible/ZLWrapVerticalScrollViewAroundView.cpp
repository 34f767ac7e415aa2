#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <TarnCommon/KQAssert.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QScrollArea>

namespace {

// Scrolling is vertical only, so the wrapped view follows the viewport's
// width (a wider view would be cut off with no way to reach the rest); its
// height stays its own. The view is watched too: something resizing it (an
// animation ending at an older width) must not leave it narrower or wider.
class KQFollowViewportWidth : public QObject
{
public:
    KQFollowViewportWidth(QScrollArea *area, QWidget *view)
        : QObject(area)
        , m_area(area)
        , m_view(view)
    {
        area->viewport()->installEventFilter(this);
        view->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize && m_area && m_view && m_area->widget() == m_view) {
            const int width = m_area->viewport()->width();
            if (m_view->width() != width)
                m_view->resize(width, m_view->height());
        }
        return false;
    }

private:
    QPointer<QScrollArea> m_area;
    QPointer<QWidget> m_view;
};

} // namespace

QScrollArea *ZLWrapVerticalScrollViewAroundView(QWidget *view)
{
    KQAssert(view != nullptr, nullptr);
    auto *scrollArea = new QScrollArea;
    scrollArea->setGeometry(0, 0, 200, 100);
    // No border and no background of its own: the view shows through.
    scrollArea->setFrameShape(QFrame::NoFrame);
    scrollArea->setBackgroundRole(QPalette::NoRole);
    scrollArea->viewport()->setAutoFillBackground(false);
    scrollArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    scrollArea->setWidgetResizable(false);
    // Overlay-style scroll bars take no room and there is no border: the
    // area starts at the view's size.
    scrollArea->resize(view->size());
    scrollArea->setWidget(view);
    new KQFollowViewportWidth(scrollArea, view);
    return scrollArea;
}
