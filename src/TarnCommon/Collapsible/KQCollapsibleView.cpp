#include <TarnCommon/KQCollapsibleView.h>

#include "KQCollapsibleStacking_p.h"
#include "KQGuardedDelegate_p.h"
#include "KQViewAnimation_p.h"
#include "KQWidgetState_p.h"

#include <TarnCommon/KQAssert.h>

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

KQCollapsibleViewDelegate::~KQCollapsibleViewDelegate() = default;

KQCollapsibleView::KQCollapsibleView(const QString &title, QWidget *contentView, bool collapsable,
                                     bool heightResizable, QWidget *parent)
    : QWidget(parent)
    , m_canCollapse(collapsable)
    , m_isHeightResizable(heightResizable)
    , m_contentView(contentView)
    , m_delegate(std::make_unique<KQGuardedDelegate<KQCollapsibleViewDelegate>>())
{
    QSize size = contentView ? contentView->size() : QSize(0, 0);
    if (!title.isNull())
        size.rheight() += int(HeaderHeight);
    setGeometry(QRect(QPoint(0, 0), size));

    if (contentView)
        kq_adoptWidget(this, contentView);
    if (!title.isNull()) {
        m_collapseButton = makeCollapseButton();
        m_titleField = makeTitleField(title);
        m_collapseButton->setAccessibleName(title);
    }
    layoutSubviews();
}

KQCollapsibleView::KQCollapsibleView(const QRect &frame, QWidget *parent)
    : QWidget(parent)
    , m_delegate(std::make_unique<KQGuardedDelegate<KQCollapsibleViewDelegate>>())
{
    KQReportInvalidInitializer();
    setGeometry(frame);
}

KQCollapsibleView::~KQCollapsibleView()
{
    // Dying mid-animation: the animation must neither call back into this
    // half-destroyed view nor move anything afterwards.
    if (m_animation) {
        m_animation->disconnect(this);
        delete m_animation.data();
    }
}

KQCollapsibleViewDelegate *KQCollapsibleView::delegate() const
{
    return m_delegate->get();
}

void KQCollapsibleView::setDelegate(KQCollapsibleViewDelegate *delegate)
{
    m_delegate->set(delegate);
}

QString KQCollapsibleView::title() const
{
    return m_titleField ? static_cast<KQTitleField *>(m_titleField)->text() : QString();
}

QWidget *KQCollapsibleView::contentView() const
{
    return m_contentView;
}

void KQCollapsibleView::setIsHeightResizable(bool resizable)
{
    if (resizable == m_isHeightResizable)
        return;
    m_isHeightResizable = resizable;
    layoutSubviews();
    Q_EMIT isHeightResizableChanged(resizable);
}

void KQCollapsibleView::setDrawTopLine(bool draw)
{
    const bool changed = draw != m_drawTopLine;
    m_drawTopLine = draw;
    update();
    if (changed)
        Q_EMIT drawTopLineChanged(draw);
}

double KQCollapsibleView::minHeight() const
{
    return viewHeightLimits(height(), m_isHeightResizable, m_isCollapsed).minHeight;
}

double KQCollapsibleView::maxHeight() const
{
    return viewHeightLimits(height(), m_isHeightResizable, m_isCollapsed).maxHeight;
}

QToolButton *KQCollapsibleView::makeCollapseButton()
{
    auto *button = new QToolButton(this);
    button->setObjectName(QStringLiteral("collapseButton"));
    button->setGeometry(0, 0, int(HeaderHeight), int(HeaderHeight));
    button->setHidden(!m_canCollapse);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    // Checked ("on") means expanded, as the arrow shows.
    button->setCheckable(true);
    button->setChecked(true);
    button->setArrowType(Qt::DownArrow);
    connect(button, &QToolButton::toggled, button,
            [button](bool on) { button->setArrowType(on ? Qt::DownArrow : Qt::RightArrow); });
    connect(button, &QToolButton::clicked, this, &KQCollapsibleView::toggleCollapsed);
    button->adjustSize();
    return button;
}

QWidget *KQCollapsibleView::makeTitleField(const QString &title)
{
    auto *field = new KQTitleField(title, this);
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
    m_laidOutSize = size();
    const int w = width();
    const int header = int(HeaderHeight);
    if (m_collapseButton)
        m_collapseButton->setGeometry(0, 0, header, header);
    if (m_titleField) {
        const int x = (!m_collapseButton || kq_isExplicitlyHidden(m_collapseButton))
                          ? 3
                          : m_collapseButton->geometry().x() + m_collapseButton->geometry().width();
        const int titleWidth = w - x > 0 ? w - x : 10;
        m_titleField->setGeometry(x, 0, titleWidth, header);
    }
    if (m_contentView) {
        const int top = m_titleField ? header : 0;
        int contentHeight = m_contentView->height();
        if (m_isHeightResizable && !m_isCollapsed && !m_isAnimating)
            contentHeight = height() - top;
        m_contentView->setGeometry(0, top, w, contentHeight);
    }
}

void KQCollapsibleView::toggleCollapsed()
{
    setCollapsed(!m_isCollapsed, true);
}

void KQCollapsibleView::setCollapsed(bool collapsed, bool animate)
{
    if (collapsed == m_isCollapsed)
        return;
    KQAssertText("_canCollapse", m_canCollapse);
    // The content's frame decides the height the view expands to again: a
    // size set while hidden (no resize event yet) must reach it first.
    if (size() != m_laidOutSize && !m_isAnimating)
        layoutSubviews();
    m_isCollapsed = collapsed;
    Q_EMIT isCollapsedChanged(collapsed);

    double target = HeaderHeight;
    if (!collapsed)
        target = m_contentView ? m_contentView->geometry().y() + m_contentView->geometry().height() : 0.0;
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
    if (m_animation) {
        m_animation->setCurrentTime(m_animation->duration());
        if (std::abs(this->height() - height) <= HeightEpsilon)
            return;
    }

    const QRect frame = geometry();

    KQViewAnimations animations;
    if (KQCollapsibleViewDelegate *delegate = m_delegate->get())
        delegate->collapsableViewWillAnimateFromHeight(this, frame.height(), height, animations);
    animations.append({this, QRectF(frame.x(), frame.y(), frame.width(), height)});

    auto *animation = new KQViewAnimation(animations, animate ? AnimationDurationMs : 0, this);
    m_animation = animation;
    connect(animation, &QAbstractAnimation::finished, this, &KQCollapsibleView::animationDidEnd);
    m_isAnimating = true;
    animation->start(QAbstractAnimation::DeleteWhenStopped);
}

void KQCollapsibleView::animationDidEnd()
{
    auto *animation = qobject_cast<KQViewAnimation *>(sender());
    const KQViewAnimations finished = animation ? animation->viewAnimations() : KQViewAnimations();
    if (m_animation == animation)
        m_animation.clear();

    m_isAnimating = false;
    if (m_collapseButton)
        m_collapseButton->setChecked(!m_isCollapsed);
    layoutSubviews();
    update(); // the line under the header goes with the end of a collapse
    // Last: the delegate may destroy this view.
    if (KQCollapsibleViewDelegate *delegate = m_delegate->get())
        delegate->collapsableViewFinishedAnimations(this, finished);
}

QVariantAnimation *KQCollapsibleView::currentAnimation() const
{
    return m_animation;
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
    if (m_titleField)
        painter.fillRect(QRect(0, 0, w, header), palette().color(QPalette::Button));
    const QColor shadow = palette().color(QPalette::Dark);
    if (m_drawTopLine)
        painter.fillRect(QRect(0, 0, w, 1), shadow);
    // A collapsed header has no line under it, but the line stays while the
    // collapse is still running.
    if (m_titleField && !(m_isCollapsed && !m_isAnimating))
        painter.fillRect(QRect(0, header - 1, w, 1), shadow);
}

void KQCollapsibleView::resizeEvent(QResizeEvent *)
{
    layoutSubviews();
}
