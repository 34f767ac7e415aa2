#pragma once

#include <TarnCommon/KQViewAnimationEntry.h>
#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

class KQCollapsibleView;
class QToolButton;
class QVariantAnimation;
template<typename Interface>
class KQGuardedDelegate;

// Told about every height animation of a collapsible view. The delegate must
// be a QObject as well (it is held by a guarded pointer, never owned).
class TARNCOMMON_EXPORT KQCollapsibleViewDelegate
{
public:
    virtual ~KQCollapsibleViewDelegate();

    // Sent before the view builds its animation. The delegate may append
    // entries for other widgets that are to move in the same animation; the
    // view's own entry comes after them.
    virtual void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight, double toHeight,
                                                      KQViewAnimations &animations) = 0;
    // Sent once the animation has ended and the view has laid itself out.
    virtual void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) = 0;
};

// One content widget under an optional 18-pixel title header with a
// disclosure button. Collapsing shrinks the view to its header with a short
// animation; a container (normally KQCollapsibleListView) stacks several of
// them using their height limits.
class TARNCOMMON_EXPORT KQCollapsibleView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(bool isHeightResizable READ isHeightResizable WRITE setIsHeightResizable NOTIFY isHeightResizableChanged)
    Q_PROPERTY(bool drawTopLine READ drawTopLine WRITE setDrawTopLine NOTIFY drawTopLineChanged)
    Q_PROPERTY(bool isCollapsed READ isCollapsed NOTIFY isCollapsedChanged)
    // Computed from the height and the state whenever asked: no change signal.
    Q_PROPERTY(double minHeight READ minHeight)
    Q_PROPERTY(double maxHeight READ maxHeight)

public:
    // The height of the header band, of the button and of a collapsed view.
    static constexpr double HeaderHeight = 18.0;
    // The length of an animated collapse or expansion.
    static constexpr int AnimationDurationMs = 200;

    // A null title makes a view without header. The view takes the content
    // widget's size (plus the header) and becomes its parent. A view that is
    // not collapsable shows no button and refuses to collapse.
    KQCollapsibleView(const QString &title, QWidget *contentView, bool collapsable, bool heightResizable,
                      QWidget *parent = nullptr);
    // Not a valid way to make the view: reports "Invalid initializer method
    // called" and leaves an empty view without header or content.
    explicit KQCollapsibleView(const QRect &frame, QWidget *parent = nullptr);
    ~KQCollapsibleView() override;

    KQCollapsibleViewDelegate *delegate() const;
    void setDelegate(KQCollapsibleViewDelegate *delegate);

    QString title() const; // null without a header
    QWidget *contentView() const;
    bool canCollapse() const { return m_canCollapse; }

    bool isHeightResizable() const { return m_isHeightResizable; }
    void setIsHeightResizable(bool resizable);
    bool drawTopLine() const { return m_drawTopLine; }
    void setDrawTopLine(bool draw);
    bool isCollapsed() const { return m_isCollapsed; }
    bool isAnimating() const { return m_isAnimating; }

    // A resizable view may shrink to its header; while expanded it may grow
    // without end (the largest finite double). Otherwise both limits are the
    // current height. A subclass may narrow them, for example give a
    // resizable view a finite maximum: a list stacking it then passes the
    // spare height it cannot take on to the next resizable view.
    virtual double minHeight() const;
    virtual double maxHeight() const;

    // The state changes at once (so limits and layout see it); the height
    // follows through an animation, of 0 ms when animate is false.
    void setCollapsed(bool collapsed, bool animate);
    // Animates the view's height, the top edge staying put. A change below
    // the single-precision epsilon does nothing at all.
    void setHeight(double height, bool animate);
    // Places the button, the title and the content; a resizable content
    // follows the view's height only while expanded and idle.
    void layoutSubviews();
    // Sets the geometry and lays the view out at once, shown or not. Qt
    // holds back the resize events of hidden widgets, so a frame set with
    // QWidget::setGeometry() or resize() while the view is hidden is laid out
    // only when it shows, or before the view next collapses.
    void setFrame(const QRect &frame);

    // The running height animation, or nullptr. Lets callers (and tests)
    // drive or observe it.
    QVariantAnimation *currentAnimation() const;

    QSize sizeHint() const override;

public Q_SLOTS:
    // The button's action: collapses or expands with animation.
    void toggleCollapsed();

Q_SIGNALS:
    void isHeightResizableChanged(bool resizable);
    void drawTopLineChanged(bool draw);
    void isCollapsedChanged(bool collapsed);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QToolButton *makeCollapseButton();
    QWidget *makeTitleField(const QString &title);
    void animationDidEnd();

    bool m_isCollapsed = false;
    bool m_canCollapse = false;
    bool m_isHeightResizable = false;
    bool m_isAnimating = false;
    bool m_drawTopLine = false;
    QSize m_laidOutSize; // the size the last layout was made for
    QToolButton *m_collapseButton = nullptr; // children: owned by the view
    QWidget *m_titleField = nullptr;
    QPointer<QWidget> m_contentView; // a child too, but its owner may delete it
    QPointer<QVariantAnimation> m_animation;
    std::unique_ptr<KQGuardedDelegate<KQCollapsibleViewDelegate>> m_delegate;
};
