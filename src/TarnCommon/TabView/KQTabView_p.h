#pragma once

#include <TarnCommon/KQTabView.h>

#include "KQTabBarGeometry_p.h"

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtGui/QRegion>

#include <memory>
#include <optional>

class KQTabViewPrivate
{
public:
    explicit KQTabViewPrivate(KQTabView *q);

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
    // The tab the keyboard acts on: the selected one, else the first visible.
    qsizetype focusedIndex() const;
    bool handleNavigationKey(int key);
    void notifyAccessibilityFocus();
    QSizeF contentSizeHint(bool minimum) const;

    KQTabView *const q;
    QList<KQTab *> tabs;
    QList<KQTab *> hiddenTabs;
    QPointer<KQTab> selectedTab;
    QPointer<QObject> delegate;
    QPointer<KQAccessibility> kqAccessibilityTabView;
    // The widget setUpSelectedTab installed: the one to take down, even if
    // the tab has since been given another widget or is gone.
    QPointer<QWidget> installedView;
    // Its parent before it was installed, given it back afterwards.
    QPointer<QWidget> installedOwner;
    bool installedWasParentless = false;
    // The largest content size of the tabs constructor, until the first
    // polish sizes the tab view with a subclass's frame rule.
    std::optional<QSizeF> initialContentSize;
    QSize constructedSize;
    // The content widgets standing for the group's buttons.
    QList<QPointer<QWidget>> accessibilityStandIns;
    KQTabClickTracker tracker;
    QRegion dirtyRegion; // during paintEvent; empty means draw everything
    // Receives the tabs' and the tab view's signals. Declared last, so it goes
    // first, before the widget's children: tabs destroyed with them
    // (including ones setTabs dropped) no longer reach a half-destroyed view.
    std::unique_ptr<QObject> tabWatcher = std::make_unique<QObject>();
};
