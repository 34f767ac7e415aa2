#pragma once

#include <TarnCommon/TarnCommonExport.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtGui/QAccessible>
#include <QtGui/QRegion>
#include <QtWidgets/QWidget>

#include <memory>
#include <optional>

/*! \file KQTabView.h
    \brief KQTabView, a widget switching between content widgets with a bar of
           icon tabs, and KQTabViewDelegate, told of its selection changes. */

class KQAccessibility;
class KQTab;
class KQTabView;
class KQTabViewPrivate;
class QPainter;

/*!
    \brief Told about every selection change of a KQTabView.

    Implemented by a QObject that lists it with
    Q_INTERFACES(KQTabViewDelegate) and is given to KQTabView::setDelegate().
    Both messages come for every selection, including one that selects the
    selected tab again; either may destroy the tab view or the tabs.

    \code
    class Panel : public QObject, public KQTabViewDelegate
    {
        Q_OBJECT
        Q_INTERFACES(KQTabViewDelegate)
    public:
        void tabViewWillChangeToTab(KQTabView *, KQTab *, KQTab *) override {}
        void tabViewDidChangeToTab(KQTabView *, KQTab *toTab, KQTab *) override;
    };
    \endcode
*/
class TARNCOMMON_EXPORT KQTabViewDelegate
{
public:
    /*! Destroys the delegate; a tab view holding it stops calling it. */
    virtual ~KQTabViewDelegate();
    /*! Sent before \a fromTab's widget is taken down; \a toTab is the tab
        about to be selected. Either tab may be null. */
    virtual void tabViewWillChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) = 0;
    /*! Sent after \a toTab's widget has been installed (and focused); \a
        fromTab was the selected tab before. Either tab may be null. */
    virtual void tabViewDidChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) = 0;
};

/*! The interface identifier of KQTabViewDelegate, for Qt's Q_DECLARE_INTERFACE. */
#define KQTabViewDelegate_iid "org.tarn.TarnCommon.KQTabViewDelegate/1.0"
/*! \cond INTERNAL */
Q_DECLARE_INTERFACE(KQTabViewDelegate, KQTabViewDelegate_iid)
/*! \endcond */

/*!
    \brief A widget showing one of several content widgets at a time, chosen
           with a strip of icon tabs along its top edge.

    The tab bar is kTabBarHeight points high; the selected tab's content
    widget fills everything below it. Tabs can be hidden from the bar and shown
    again by tag; every operation taking a tag acts on the first tab (in list
    order) carrying it. Tabs without a parent are adopted by the tab view; a
    destroyed tab simply drops out of it.

    Ownership of a content widget: the tab view never owns one, it borrows the
    selected tab's. Installing the widget makes it a child of the tab view;
    when the tab view stops showing it (the selection moves, the tab is
    dropped, or the tab view dies) the widget is hidden and given back to the
    parent it had before, or made parentless again if it had none (and a
    parentless widget belongs to its tab, see KQTab). A widget the caller made
    a child of the tab view itself stays one.

    The selected widget follows the tab view's size at once whenever the tab
    view's own setGeometry()/resize() (or the geometry and size properties)
    set it, shown or hidden. Qt tells a hidden widget nothing of a size set
    through a plain QWidget pointer, so such a change is applied when the tab
    view is shown.

    In a layout the tab view asks for its tabs' widgets at their size hints
    below the bar and grows with its container (QSizePolicy::Expanding). It
    takes the keyboard focus with Tab: the selected tab then shows the style's
    focus frame, and the arrow, Home and End keys select other tabs.

    With the "enableScriptingAutomationTesting" setting on (see
    KQAccessibility), the bar is exposed to accessibility clients as a group
    "TabView Group" holding one button per visible tab. Each tab's content
    widget itself stands for its button: its controls are reached under it,
    pressing it selects the tab as a click does, and the selected tab's button
    is checked. The tree follows the selection, the visible tabs and their
    widgets and tooltips at once, and Qt's accessibility events tell clients
    of each change.

    \code
    auto *general = new KQTab;
    general->setView(new GeneralPane);  // the tab owns the parentless pane
    general->setIcon(QIcon(QStringLiteral(":/icons/general.png")));
    const QList<KQTab *> tabs{general, advanced};
    auto *tabView = new KQTabView(tabs, window);  // adopts the tabs, sized for the largest pane
    tabView->setDelegate(panelController);       // not owned
    \endcode
*/
class TARNCOMMON_EXPORT KQTabView : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
    /*! The object told of selection changes; it must implement
        KQTabViewDelegate. Not owned, held weakly; null by default. */
    Q_PROPERTY(QObject *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)
    /*! The visible tabs, in bar order (read-only; see setTabs()). */
    Q_PROPERTY(QList<KQTab *> tabs READ tabs NOTIFY tabsChanged)
    /*! The selected tab, or null (read-only; see selectTab()). */
    Q_PROPERTY(KQTab *selectedTab READ selectedTab NOTIFY selectedTabChanged)
    /*! The accessibility group of the bar, made by initializeAccessibility();
        null until then. Owned by the tab view once made there. */
    Q_PROPERTY(KQAccessibility *kqAccessibilityTabView READ kqAccessibilityTabView WRITE
                   setKqAccessibilityTabView NOTIFY kqAccessibilityTabViewChanged)
    /*! QWidget's geometry; setting it by name lays the content out at once. */
    Q_PROPERTY(QRect geometry READ geometry WRITE setGeometry)
    /*! QWidget's size; setting it by name lays the content out at once. */
    Q_PROPERTY(QSize size READ size WRITE resize DESIGNABLE false STORED false)

public:
    /*! The height of the tab bar, in points. */
    static constexpr double kTabBarHeight = 27.0;

    /*!
        The frame a tab view needs for content of \a size: the bar's height
        added. A subclass may change the rule; the tabs constructor can only
        use this class's, so an override takes effect when the tab view is
        first polished (before it is first shown or laid out), unless it has
        been sized in between.
    */
    virtual QSizeF frameSizeForTabViewSize(const QSizeF &size) const;

    /*! An empty tab view, a child of \a parent if given. */
    explicit KQTabView(QWidget *parent = nullptr);
    /*! An empty tab view with the geometry \a frame, a child of \a parent if given. */
    explicit KQTabView(const QRect &frame, QWidget *parent = nullptr);
    /*! A tab view holding \a tabs, sized for their largest content widget
        (widths and heights taken independently), with the first tab
        selected. Null entries are refused with an assertion report. */
    explicit KQTabView(const QList<KQTab *> &tabs, QWidget *parent = nullptr);
    /*! Gives the selected content widget back to its owner (it does not die
        with the tab view); the tabs the tab view adopted die with it. */
    ~KQTabView() override;

    /*! As QWidget::setGeometry(), and the selected widget is laid out at
        once, even while the tab view is hidden. */
    void setGeometry(const QRect &rect);
    /*! As setGeometry(const QRect &) with QRect(\a x, \a y, \a w, \a h). */
    void setGeometry(int x, int y, int w, int h);
    /*! As QWidget::resize(), and the selected widget is laid out at once,
        even while the tab view is hidden. */
    void resize(const QSize &size);
    /*! As resize(const QSize &) with QSize(\a w, \a h). */
    void resize(int w, int h);

    /*! Replaces the visible tabs with \a tabs (hidden ones stay hidden),
        adopts the parentless ones and selects the first (none for an empty
        list). Null entries are refused with an assertion report and skipped.
        Emits tabsChanged(). */
    void setTabs(const QList<KQTab *> &tabs);
    /*! The visible tabs, in bar order. */
    QList<KQTab *> tabs() const;
    /*! The hidden tabs, in the order they were hidden. */
    QList<KQTab *> hiddenTabs() const;
    /*! The selected tab, or null. */
    KQTab *selectedTab() const;

    /*! Installs \a tab's widget in place of the selected one, telling the
        delegate before and after, then emits selectedTabChanged(). Selecting
        the selected tab again reinstalls it; null selects nothing. A tab that
        is not visible here is refused with an assertion report. */
    void selectTab(KQTab *tab);

    /*!
        Moves the tab tagged \a newTag to \a position (from the bar or from
        the hidden tabs) and hides the tab tagged \a oldTag; if that one was
        selected, the moved tab is selected. Answers whether the new tab was
        found. When the new tab already sits at \a position nothing happens at
        all and the answer is false; a position out of range is refused with
        an assertion report, answering false.
    */
    bool replaceTab(qint64 oldTag, qint64 newTag, qsizetype position);
    /*! Hides the tab tagged \a tag; if it was selected, the first visible
        tab is selected. No such visible tab: nothing happens. */
    void hideTab(qint64 tag);
    /*! Shows the hidden tab tagged \a tag at \a position; the selection does
        not change. A position out of range is refused with an assertion
        report and the tab stays hidden. */
    void showTab(qint64 tag, qsizetype position);
    /*! Hides the tab tagged \a tag without touching the selection; answers
        whether it was the selected one, so the caller can choose a new
        selection. False when no visible tab carries the tag. */
    bool hideTabSelection(qint64 tag);

    /*! Installs the selected tab's widget below the bar, shows it and focuses
        the tab's initialFirstResponder. Nothing happens without a selected
        tab or widget. */
    void setUpSelectedTab();
    /*! Hides the installed widget and gives it back to its owner. */
    void tearDownSelectedTab();

    /*! The delegate, or null. */
    QObject *delegate() const;
    /*! Sets the delegate (null for none); it must implement
        KQTabViewDelegate, and another object is refused with an assertion
        report. It is not owned. Emits delegateChanged() when it changes. */
    void setDelegate(QObject *delegate);

    /*! The icon tooltip of the tab under \a point (a QString), or an invalid
        QVariant when there is none. \a wrapText is left alone. */
    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override;

    /*! The tab bar's strip along the top of \a bounds. */
    static QRectF tabBarRectForBounds(const QRectF &bounds);
    /*! One cell per visible tab in \a bar, abutting and centred as a group;
        too many tabs spill over both ends. */
    QList<QRectF> tabRectsForTabBarRect(const QRectF &bar) const;
    /*! The visible tab whose cell holds \a point (in the tab view's
        coordinates), or null. */
    KQTab *tabAtPoint(const QPointF &point) const;
    /*! The tab under the pointer while the mouse button is down, else null. */
    KQTab *pressedDownTab() const;
    /*! Draws the bar's background, its cells (through drawTab()) and its
        bottom separator into \a bar. A subclass may change it. */
    virtual void drawTabBarInRect(QPainter &painter, const QRectF &bar);
    /*! Draws \a tab in \a cell: the selected tab's shading, its icon, and the
        icon darkened while pressed. A subclass may change it. A null tab is
        refused with an assertion report. */
    virtual void drawTab(QPainter &painter, KQTab *tab, const QRectF &cell);

    /*! Attaches a new accessibility group "TabView Group" to the tab view,
        filled with the visible tabs' buttons; a previous group is released.
        setTabs() calls it while the automation setting is on. */
    void initializeAccessibility();
    /*! Rebuilds the group's buttons from the visible tabs; nothing happens
        without a group or with no visible tab. */
    void setupKQAccessibilityHierarchy();
    /*! The tab view's accessible children, the group's buttons rebuilt first. */
    QList<QAccessibleInterface *> accessibilityChildren();
    /*! The accessibility group, or null. */
    KQAccessibility *kqAccessibilityTabView() const;
    /*! Sets the accessibility group (not taken over); emits
        kqAccessibilityTabViewChanged() when it changes. */
    void setKqAccessibilityTabView(KQAccessibility *accessibility);

    /*! The size showing every tab's widget (hidden tabs included) at its
        size hint below the bar, passed through frameSizeForTabViewSize(), and
        never narrower than the bar's cells. A widget without a size hint
        counts with its current size. */
    QSize sizeHint() const override;
    /*! As sizeHint(), from the widgets' minimum size hints. */
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /*! The delegate was replaced. */
    void delegateChanged();
    /*! The visible tabs changed: set, hidden, shown, moved or destroyed. */
    void tabsChanged();
    /*! \a tab (possibly null) was installed; also sent when the selected tab
        is selected again (it is reinstalled), and with null when the
        selected tab is destroyed. */
    void selectedTabChanged(KQTab *tab);
    /*! The accessibility group was replaced. */
    void kqAccessibilityTabViewChanged();

protected:
    /*! Left and Right select the neighbouring visible tab, Home and End the
        first and last, Space and Enter select the focused tab again; the
        keyboard focus stays on the bar and accessibility clients are told
        which tab has it. */
    void keyPressEvent(QKeyEvent *event) override;
    /*! Shows the focus frame on the selected tab and tells accessibility
        clients which tab has the focus. */
    void focusInEvent(QFocusEvent *event) override;
    /*! Removes the focus frame. */
    void focusOutEvent(QFocusEvent *event) override;
    /*! Sizes a tab view made by the tabs constructor with a subclass's
        frameSizeForTabViewSize() when it is first polished. */
    bool event(QEvent *event) override;
    /*! Draws the bar through drawTabBarInRect() when the damaged region
        reaches it. */
    void paintEvent(QPaintEvent *event) override;
    /*! Starts click tracking on a left-button press. */
    void mousePressEvent(QMouseEvent *event) override;
    /*! Follows the pointer with the pressed look while the left button is down. */
    void mouseMoveEvent(QMouseEvent *event) override;
    /*! Ends click tracking, selecting the tab released on. */
    void mouseReleaseEvent(QMouseEvent *event) override;
    /*! Lays the selected widget out for the new size. */
    void resizeEvent(QResizeEvent *event) override;
    /*! Forgets a press in progress, so the pressed look does not come back
        when the tab view is shown again. */
    void hideEvent(QHideEvent *event) override;

    /*! One step of click tracking: press, drag and release all come here.
        The tab under the pointer is pressed; a release selects the pressed
        tab, if any. */
    void modalClickTrackingLoop(QMouseEvent *event);

private:
    std::unique_ptr<KQTabViewPrivate> const d;
};
