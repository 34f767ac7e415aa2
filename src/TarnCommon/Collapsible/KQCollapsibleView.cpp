#include <TarnCommon/KQCollapsibleView.h>

#include "KQCollapsibleStacking_p.h"
#include "KQGuardedDelegate_p.h"
#include "KQViewAnimation_p.h"
#include "KQWidgetState_p.h"

#include <TarnCommon/KQAssert.h>

#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QToolButton>

#include <cmath>

using namespace KQCollapsibleStacking;

static_assert(KQCollapsibleView::HeaderHeight == KQCollapsibleStacking::HeaderHeight,
              "the view and the stacking rules share one header height");

namespace {

// A one-line label that elides its text at the tail when too narrow.
class KQTitleField : public QWidget
{
public:
    KQTitleField(const QString &text, QWidget *parent)
        : QWidget(parent)
        , m_text(text)
    {
    }

    QString text() const { return m_text; }

    QSize sizeHint() const override
    {
        return QSize(fontMetrics().horizontalAdvance(m_text), int(HeaderHeight));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setPen(palette().color(QPalette::WindowText));
        const QString shown = fontMetrics().elidedText(m_text, Qt::ElideRight, width());
        painter.drawText(rect(), int(Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine), shown);
    }

private:
    QString m_text;
};

} // namespace

class KQCollapsibleViewPrivate
{
public:
    KQCollapsibleViewPrivate(KQCollapsibleView *q, QWidget *contentView, bool canCollapse, bool heightResizable)
        : q(q)
        , canCollapse(canCollapse)
        , heightResizable(heightResizable)
        , contentView(contentView)
    {
    }

    QToolButton *makeCollapseButton();
    KQTitleField *makeTitleField(const QString &title);
    void animationDidEnd(KQViewAnimation *animation);

    KQCollapsibleView *const q;
    bool collapsed = false;
    const bool canCollapse = false;
    bool heightResizable = false;
    bool animating = false;
    bool drawTopLine = false;
    QSize laidOutSize; // the size the last layout was made for
    QToolButton *collapseButton = nullptr; // children: owned by the view
    KQTitleField *titleField = nullptr;
    QPointer<QWidget> contentView; // a child too, but its owner may delete it
    QPointer<KQViewAnimation> animation;
    KQGuardedDelegate<KQCollapsibleViewDelegate> delegate;
};

KQCollapsibleViewDelegate::~KQCollapsibleViewDelegate() = default;

KQCollapsibleView::KQCollapsibleView(const QString &title, QWidget *contentView, bool collapsable,
                                     bool heightResizable, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQCollapsibleViewPrivate>(this, contentView, collapsable, heightResizable))
{
    QSize size = contentView ? contentView->size() : QSize(0, 0);
    if (!title.isNull())
        size.rheight() += int(HeaderHeight);
    setGeometry(QRect(QPoint(0, 0), size));

    if (contentView)
        kq_adoptWidget(this, contentView);
    if (!title.isNull()) {
        d->collapseButton = d->makeCollapseButton();
        d->titleField = d->makeTitleField(title);
        d->collapseButton->setAccessibleName(title);
    }
    layoutSubviews();
}

KQCollapsibleView::KQCollapsibleView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<KQCollapsibleViewPrivate>(this, nullptr, false, false))
{
    KQReportInvalidInitializer();
    setGeometry(frame);
}

KQCollapsibleView::~KQCollapsibleView()
{
    // Dying mid-animation: the animation must neither call back into this
    // half-destroyed view nor move anything afterwards.
    if (d->animation) {
        d->animation->disconnect(this);
        delete d->animation.data();
    }
}

KQCollapsibleViewDelegate *KQCollapsibleView::delegate() const
{
    return d->delegate.get();
}

void KQCollapsibleView::setDelegate(KQCollapsibleViewDelegate *delegate)
{
    d->delegate.set(delegate);
}

QString KQCollapsibleView::title() const
{
    return d->titleField ? d->titleField->text() : QString();
}

QWidget *KQCollapsibleView::contentView() const
{
    return d->contentView;
}

bool KQCollapsibleView::canCollapse() const
{
    return d->canCollapse;
}

bool KQCollapsibleView::isHeightResizable() const
{
    return d->heightResizable;
}

void KQCollapsibleView::setIsHeightResizable(bool resizable)
{
    if (resizable == d->heightResizable)
        return;
    d->heightResizable = resizable;
    layoutSubviews();
    Q_EMIT isHeightResizableChanged(resizable);
}

bool KQCollapsibleView::drawTopLine() const
{
    return d->drawTopLine;
}

void KQCollapsibleView::setDrawTopLine(bool draw)
{
    const bool changed = draw != d->drawTopLine;
    d->drawTopLine = draw;
    update();
    if (changed)
        Q_EMIT drawTopLineChanged(draw);
}

bool KQCollapsibleView::isCollapsed() const
{
    return d->collapsed;
}

bool KQCollapsibleView::isAnimating() const
{
    return d->animating;
}

double KQCollapsibleView::minHeight() const
{
    return viewHeightLimits(height(), d->heightResizable, d->collapsed).minHeight;
}

double KQCollapsibleView::maxHeight() const
{
    return viewHeightLimits(height(), d->heightResizable, d->collapsed).maxHeight;
}

QToolButton *KQCollapsibleViewPrivate::makeCollapseButton()
{
    auto *button = new QToolButton(q);
    button->setObjectName(QStringLiteral("collapseButton"));
    button->setGeometry(0, 0, int(HeaderHeight), int(HeaderHeight));
    button->setHidden(!canCollapse);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    // Checked ("on") means expanded, as the arrow shows.
    button->setCheckable(true);
    button->setChecked(true);
    button->setArrowType(Qt::DownArrow);
    QObject::connect(button, &QToolButton::toggled, button,
                     [button](bool on) { button->setArrowType(on ? Qt::DownArrow : Qt::RightArrow); });
    QObject::connect(button, &QToolButton::clicked, q, &KQCollapsibleView::toggleCollapsed);
    button->adjustSize();
    return button;
}

KQTitleField *KQCollapsibleViewPrivate::makeTitleField(const QString &title)
{
    auto *field = new KQTitleField(title, q);
    field->setObjectName(QStringLiteral("titleField"));
    field->setGeometry(0, 0, 100, int(HeaderHeight));
    return field;
}

void KQCollapsibleView::setFrame(const QRect &frame)
{
    setGeometry(frame);
    layoutSubviews();
}

void KQCollapsibleView::layoutSubviews()
{
    d->laidOutSize = size();
    const int w = width();
    const int header = int(HeaderHeight);
    if (d->collapseButton)
        d->collapseButton->setGeometry(0, 0, header, header);
    if (d->titleField) {
        const int x = (!d->collapseButton || kq_isExplicitlyHidden(d->collapseButton))
                          ? 3
                          : d->collapseButton->geometry().x() + d->collapseButton->geometry().width();
        const int titleWidth = w - x > 0 ? w - x : 10;
        d->titleField->setGeometry(x, 0, titleWidth, header);
    }
    if (d->contentView) {
        const int top = d->titleField ? header : 0;
        int contentHeight = d->contentView->height();
        if (d->heightResizable && !d->collapsed && !d->animating)
            contentHeight = height() - top;
        d->contentView->setGeometry(0, top, w, contentHeight);
    }
}

void KQCollapsibleView::toggleCollapsed()
{
    setCollapsed(!d->collapsed, true);
}

void KQCollapsibleView::setCollapsed(bool collapsed, bool animate)
{
    if (collapsed == d->collapsed)
        return;
    KQAssertText("_canCollapse", d->canCollapse);
    // The content's frame decides the height the view expands to again: a
    // size set while hidden (no resize event yet) must reach it first.
    if (size() != d->laidOutSize && !d->animating)
        layoutSubviews();
    d->collapsed = collapsed;
    Q_EMIT isCollapsedChanged(collapsed);

    double target = HeaderHeight;
    if (!collapsed)
        target = d->contentView ? d->contentView->geometry().y() + d->contentView->geometry().height() : 0.0;
    setHeight(target, animate);
}

void KQCollapsibleView::setHeight(double height, bool animate)
{
    // A change below the epsilon neither starts nor ends anything, not even
    // a running animation.
    if (std::abs(this->height() - height) <= HeightEpsilon)
        return;
    // One animation at a time: a running one is taken to its end first, so
    // its delegate messages stay paired and the new one starts from there.
    if (d->animation) {
        d->animation->setCurrentTime(d->animation->duration());
        if (std::abs(this->height() - height) <= HeightEpsilon)
            return;
    }

    const QRect frame = geometry();

    KQViewAnimations animations;
    if (KQCollapsibleViewDelegate *delegate = d->delegate.get()) {
        // The delegate (or one it tells) may destroy this view.
        const QPointer<KQCollapsibleView> self(this);
        delegate->collapsableViewWillAnimateFromHeight(this, frame.height(), height, animations);
        if (!self)
            return;
    }
    animations.append({this, QRectF(frame.x(), frame.y(), frame.width(), height)});

    auto *animation = new KQViewAnimation(animations, animate ? AnimationDurationMs : 0, this);
    d->animation = animation;
    connect(animation, &QAbstractAnimation::finished, this, [this, animation] { d->animationDidEnd(animation); });
    d->animating = true;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void KQCollapsibleViewPrivate::animationDidEnd(KQViewAnimation *ended)
{
    const KQViewAnimations finished = ended->viewAnimations();
    if (animation == ended)
        animation.clear();

    animating = false;
    if (collapseButton)
        collapseButton->setChecked(!collapsed);
    q->layoutSubviews();
    q->update(); // the line under the header goes with the end of a collapse
    // Last: the delegate may destroy this view.
    if (KQCollapsibleViewDelegate *listener = delegate.get())
        listener->collapsableViewFinishedAnimations(q, finished);
}

QVariantAnimation *KQCollapsibleView::currentAnimation() const
{
    return d->animation;
}

QSize KQCollapsibleView::sizeHint() const
{
    return size();
}

void KQCollapsibleView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int w = width();
    const int header = int(HeaderHeight);
    if (d->titleField)
        painter.fillRect(QRect(0, 0, w, header), palette().color(QPalette::Button));
    const QColor shadow = palette().color(QPalette::Dark);
    if (d->drawTopLine)
        painter.fillRect(QRect(0, 0, w, 1), shadow);
    // A collapsed header has no line under it, but the line stays while the
    // collapse is still running.
    if (d->titleField && !(d->collapsed && !d->animating))
        painter.fillRect(QRect(0, header - 1, w, 1), shadow);
}

void KQCollapsibleView::resizeEvent(QResizeEvent *)
{
    layoutSubviews();
}
