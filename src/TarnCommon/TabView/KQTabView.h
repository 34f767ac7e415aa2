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

class KQAccessibility;
class KQTab;
class KQTabClickTracker;
class KQTabView;
class QPainter;

// Told about every selection change of a KQTabView, before the old tab's
// widget is taken down and after the new one is installed. Implemented by a
// QObject that lists it in Q_INTERFACES(KQTabViewDelegate).
class TARNCOMMON_EXPORT KQTabViewDelegate
{
public:
    virtual ~KQTabViewDelegate();
    virtual void tabViewWillChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) = 0;
    virtual void tabViewDidChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) = 0;
};

#define KQTabViewDelegate_iid "org.tarn.TarnCommon.KQTabViewDelegate/1.0"
Q_DECLARE_INTERFACE(KQTabViewDelegate, KQTabViewDelegate_iid)

// A widget showing one of several content widgets at a time, chosen with a
// strip of icon tabs along its top edge (the tab bar, 27 points high).
//
// Tabs can be hidden from the bar and shown again by tag; every operation
// taking a tag acts on the first tab (in list order) carrying it. Tabs
// without a parent are adopted by the tab view; a destroyed tab simply drops
// out of it.
//
// Ownership of a content widget: the tab view never owns one, it borrows the
// selected tab's. Installing the widget makes it a child of the tab view,
// filling everything below the bar; when the tab view stops showing it (the
// selection moves, the tab is dropped, or the tab view dies) the widget is
// hidden and given back to the parent it had before, or made parentless
// again if it had none — and a parentless widget belongs to its tab (see
// KQTab). A widget the caller made a child of the tab view itself stays one.
//
// The selected widget follows the tab view's size at once whenever the tab
// view's own setGeometry/resize (or the geometry and size properties) set
// it, shown or hidden. Qt tells a hidden widget nothing of a size set
// through a plain QWidget pointer, so such a change is applied when the tab
// view is shown.
//
// With the "enableScriptingAutomationTesting" setting on (see
// KQAccessibility), the bar is exposed to accessibility clients as a group
// "TabView Group" holding one button per visible tab. Each tab's content
// widget itself stands for its button: its controls are reached under it,
// pressing it selects the tab as a click does, and the selected tab's button
// is checked. The tree follows the
// selection, the visible tabs and their widgets and tooltips at once, and
// Qt's accessibility events tell clients of each change.
class TARNCOMMON_EXPORT KQTabView : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
    Q_PROPERTY(QObject *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)
    Q_PROPERTY(QList<KQTab *> tabs READ tabs NOTIFY tabsChanged)
    Q_PROPERTY(KQTab *selectedTab READ selectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(KQAccessibility *kqAccessibilityTabView READ kqAccessibilityTabView WRITE
                   setKqAccessibilityTabView NOTIFY kqAccessibilityTabViewChanged)
    // Redeclared so that setting them by name lays the content out at once.
    Q_PROPERTY(QRect geometry READ geometry WRITE setGeometry)
    Q_PROPERTY(QSize size READ size WRITE resize DESIGNABLE false STORED false)

public:
    static constexpr double kTabBarHeight = 27.0;

    // The frame a tab view needs for content of the given size: the bar's
    // height added. A subclass may change it; the tabs constructor can only
    // use this class's rule, so an override takes effect when the tab view is
    // first polished (before it is first shown or laid out), unless it has
    // been sized in between.
    virtual QSizeF frameSizeForTabViewSize(const QSizeF &size) const;

    // An empty tab view, optionally with the given frame.
    explicit KQTabView(QWidget *parent = nullptr);
    explicit KQTabView(const QRect &frame, QWidget *parent = nullptr);
    // A tab view sized for the largest content widget of the tabs (widths and
    // heights taken independently), with the first tab selected.
    explicit KQTabView(const QList<KQTab *> &tabs, QWidget *parent = nullptr);
    ~KQTabView() override;

    // As QWidget's, and the selected widget is laid out at once, even while
    // the tab view is hidden.
    void setGeometry(const QRect &rect);
    void setGeometry(int x, int y, int w, int h);
    void resize(const QSize &size);
    void resize(int w, int h);

    // Replaces the visible tabs (hidden ones stay hidden) and selects the first.
    void setTabs(const QList<KQTab *> &tabs);
    QList<KQTab *> tabs() const;
    QList<KQTab *> hiddenTabs() const;
    KQTab *selectedTab() const;

    // Installs tab's widget, telling the delegate before and after. Selecting
    // the selected tab again reinstalls it. A tab that is not visible here is
    // refused with an assertion report.
    void selectTab(KQTab *tab);

    // Moves the tab tagged newTag to position (from the bar or from the
    // hidden tabs) and hides the tab tagged oldTag; answers whether the new
    // tab was found. When the new tab already sits at position nothing
    // happens at all and the answer is false.
    bool replaceTab(qint64 oldTag, qint64 newTag, qsizetype position);
    // Hides the tab; if it was selected, the first visible tab is selected.
    void hideTab(qint64 tag);
    // Shows a hidden tab at position; the selection does not change.
    void showTab(qint64 tag, qsizetype position);
    // Hides the tab without touching the selection; answers whether it was
    // the selected one, so the caller can choose a new selection.
    bool hideTabSelection(qint64 tag);

    void setUpSelectedTab();
    void tearDownSelectedTab();

    QObject *delegate() const;
    // delegate must implement KQTabViewDelegate; it is not owned.
    void setDelegate(QObject *delegate);

    // The icon tooltip of the tab under point (a QString), or an invalid
    // QVariant. wrapText is left alone.
    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override;

    // The tab bar.
    static QRectF tabBarRectForBounds(const QRectF &bounds);
    QList<QRectF> tabRectsForTabBarRect(const QRectF &bar) const;
    KQTab *tabAtPoint(const QPointF &point) const;
    // The tab under the pointer while the mouse button is down, else null.
    KQTab *pressedDownTab() const;
    // The bar's drawing; a subclass may change either.
    virtual void drawTabBarInRect(QPainter &painter, const QRectF &bar);
    virtual void drawTab(QPainter &painter, KQTab *tab, const QRectF &cell);

    // Accessibility.
    void initializeAccessibility();
    void setupKQAccessibilityHierarchy();
    // The tab view's accessible children, the group's buttons rebuilt first.
    QList<QAccessibleInterface *> accessibilityChildren();
    KQAccessibility *kqAccessibilityTabView() const;
    void setKqAccessibilityTabView(KQAccessibility *accessibility);

Q_SIGNALS:
    void delegateChanged();
    // The visible tabs changed: set, hidden, shown, moved or destroyed.
    void tabsChanged();
    // Also sent when the selected tab is selected again (it is reinstalled).
    void selectedTabChanged(KQTab *tab);
    void kqAccessibilityTabViewChanged();

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

    // One step of click tracking; press, drag and release all come here.
    void modalClickTrackingLoop(QMouseEvent *event);

private:
    void init();
    void adopt(KQTab *tab);
    void forgetTab(QObject *tab);
    bool needsToDraw(const QRectF &rect) const;
    void layoutContent();
    void applyInitialFrameSize();
    // Gives the installed widget back to its owner; answers whether the tab
    // owned it (it had no parent when installed).
    bool giveBackInstalledView();
    void refreshAccessibility();

    QList<KQTab *> _tabs;
    QList<KQTab *> _hiddenTabs;
    QPointer<KQTab> _selectedTab;
    QPointer<QObject> _delegate;
    QPointer<KQAccessibility> _kqAccessibilityTabView;
    // The widget setUpSelectedTab installed: the one to take down, even if
    // the tab has since been given another widget or is gone.
    QPointer<QWidget> m_installedView;
    // Its parent before it was installed, given it back afterwards.
    QPointer<QWidget> m_installedOwner;
    bool m_installedWasParentless = false;
    // The largest content size of the tabs constructor, until the first
    // polish sizes the tab view with a subclass's frame rule.
    std::optional<QSizeF> m_initialContentSize;
    QSize m_constructedSize;
    // The content widgets standing for the group's buttons.
    QList<QPointer<QWidget>> m_accessibilityStandIns;
    std::unique_ptr<KQTabClickTracker> m_tracker;
    QRegion m_dirtyRegion; // during paintEvent; empty means draw everything
    // Receives the tabs' signals (destroyed, iconChanged). Declared last, so it goes first
    // when the tab view dies: tabs destroyed with the widget's children
    // (including ones setTabs dropped) no longer reach a half-destroyed view.
    std::unique_ptr<QObject> m_tabWatcher = std::make_unique<QObject>();
};
