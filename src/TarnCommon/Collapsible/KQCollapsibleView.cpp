#include <TarnCommon/KQCollapsibleView.h>

#include "KQCollapsibleStacking_p.h"
#include "KQGuardedDelegate_p.h"
#include "KQViewAnimation_p.h"
#include "KQWidgetState_p.h"

#include <TarnCommon/KQAssert.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QToolButton>

#include <cmath>

using namespace KQCollapsibleStacking;

static_assert(KQCollapsibleView::HeaderHeight == KQCollapsibleStacking::HeaderHeight,
              "the view and the stacking rules share one header height");

namespace {

// QWidget::setGeometry() works (attributes, dirty regions, the checks of a
// move) even when the widget already has that frame, and a relayout of a
// long list sets every view and its parts again; only a change, or a
// widget never placed, goes through.
void placeWidget(QWidget *widget, const QRect &frame)
{
    if (widget->geometry() != frame || !widget->testAttribute(Qt::WA_Resized)
        || !widget->testAttribute(Qt::WA_Moved))
        widget->setGeometry(frame);
}

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
    void setText(const QString &text)
    {
        m_text = text;
        updateGeometry();
        update();
    }

    QSize sizeHint() const override
    {
        return QSize(fontMetrics().horizontalAdvance(m_text), int(HeaderHeight));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        // The header is drawn in the button face: its text colour goes with it.
        painter.setPen(palette().color(QPalette::ButtonText));
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
    void updateSizePolicy();
    void describeButton();

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
    d->updateSizePolicy();
    d->describeButton();
    layoutSubviews();
}

KQCollapsibleView::KQCollapsibleView(QWidget *parent)
    : KQCollapsibleView(QString(QLatin1String("")), nullptr, true, false, parent)
{
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

void KQCollapsibleView::setTitle(const QString &title)
{
    KQAssert(d->titleField != nullptr);
    const QString text = title.isNull() ? QString(QLatin1String("")) : title;
    if (text == d->titleField->text())
        return;
    d->titleField->setText(text);
    if (d->collapseButton)
        d->collapseButton->setAccessibleName(text);
    updateGeometry();
    Q_EMIT titleChanged(text);
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
    d->updateSizePolicy();
    layoutSubviews();
    Q_EMIT isHeightResizableChanged(resizable);
}

bool KQCollapsibleView::drawTopLine() const
{
    return d->drawTopLine;
}

void KQCollapsibleView::setDrawTopLine(bool draw)
{
    // The list sets it on every view at each relayout: a repaint only for a change.
    if (draw == d->drawTopLine)
        return;
    d->drawTopLine = draw;
    update();
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
    placeWidget(this, frame);
    layoutSubviews();
}

void KQCollapsibleView::layoutSubviews()
{
    d->laidOutSize = size();
    const int w = width();
    const int header = int(HeaderHeight);
    if (d->collapseButton)
        placeWidget(d->collapseButton, QRect(0, 0, header, header));
    if (d->titleField) {
        const int x = (!d->collapseButton || kq_isExplicitlyHidden(d->collapseButton))
                          ? 3
                          : d->collapseButton->geometry().x() + d->collapseButton->geometry().width();
        const int titleWidth = w - x > 0 ? w - x : 10;
        placeWidget(d->titleField, QRect(x, 0, titleWidth, header));
    }
    if (d->contentView) {
        const int top = d->titleField ? header : 0;
        int contentHeight = d->contentView->height();
        if (d->heightResizable && !d->collapsed && !d->animating)
            contentHeight = height() - top;
        placeWidget(d->contentView, QRect(0, top, w, contentHeight));
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
    d->updateSizePolicy();
    d->describeButton();
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
    // A layout holding the view follows the height as it animates.
    connect(animation, &QVariantAnimation::valueChanged, this, [this] { updateGeometry(); });
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
    q->updateGeometry();
    q->update(); // the line under the header goes with the end of a collapse
    // Last: the delegate may destroy this view.
    if (KQCollapsibleViewDelegate *listener = delegate.get())
        listener->collapsableViewFinishedAnimations(q, finished);
}

QVariantAnimation *KQCollapsibleView::currentAnimation() const
{
    return d->animation;
}

void KQCollapsibleViewPrivate::updateSizePolicy()
{
    // An expanded resizable view takes the spare height; any other view is
    // exactly as high as its header and content.
    const QSizePolicy::Policy vertical =
        heightResizable && !collapsed ? QSizePolicy::Expanding : QSizePolicy::Fixed;
    if (q->sizePolicy().verticalPolicy() == vertical)
        return;
    QSizePolicy policy = q->sizePolicy();
    policy.setVerticalPolicy(vertical);
    q->setSizePolicy(policy);
}

void KQCollapsibleViewPrivate::describeButton()
{
    if (!collapseButton)
        return;
    collapseButton->setAccessibleDescription(
        collapsed ? QCoreApplication::translate("TarnCommon", "Collapsed; press to show the section")
                  : QCoreApplication::translate("TarnCommon", "Expanded; press to hide the section"));
}

QSize KQCollapsibleView::sizeHint() const
{
    const int header = d->titleField ? int(HeaderHeight) : 0;
    int width = 0;
    if (d->titleField) {
        const bool buttonShown = d->collapseButton && !kq_isExplicitlyHidden(d->collapseButton);
        width = (buttonShown ? int(HeaderHeight) : 3) + d->titleField->sizeHint().width();
    }
    int contentHeight = 0;
    if (d->contentView) {
        const QSize hint = d->contentView->sizeHint();
        width = std::max(width, hint.isValid() ? hint.width() : d->contentView->width());
        // A fixed content keeps its own height; a resizable one asks for its hint.
        contentHeight = d->heightResizable && hint.isValid() ? hint.height() : d->contentView->height();
    }
    // While animating, the height the animation has reached.
    if (d->animating)
        return QSize(width, height());
    return QSize(width, header + (d->collapsed ? 0 : contentHeight));
}

QSize KQCollapsibleView::minimumSizeHint() const
{
    int width = d->titleField ? int(HeaderHeight) + 3 : 0;
    if (d->contentView) {
        const QSize hint = d->contentView->minimumSizeHint();
        if (hint.isValid())
            width = std::max(width, hint.width());
    }
    const bool shrinks = d->heightResizable && !d->collapsed && !d->animating;
    return QSize(width, shrinks ? int(HeaderHeight) : sizeHint().height());
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

void KQCollapsibleView::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        d->describeButton();
}
