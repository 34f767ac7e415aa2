#include <TarnCommon/ToolTipHitTesting_ZL.h>

#include "ToolTipHitTesting_ZL_p.h"

#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLayout>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QWidget>

#include <algorithm>
#include <cmath>

QWidget *KQToolTipRules::ToolTipApplicationWindowAt(QPointF globalPoint)
{
    // Asks the window system, which knows the stacking of every
    // application's windows: another application's window in front answers
    // nothing.
    const QPoint pixel(int(std::floor(globalPoint.x())), int(std::floor(globalPoint.y())));
    return QApplication::topLevelAt(pixel);
}

QVariant ToolTipAtScreenPoint(bool *wrap, QPointF p, const ToolTipWindowFinder_ZL &findWindow)
{
    QWidget *window = findWindow ? findWindow(p) : KQToolTipRules::ToolTipApplicationWindowAt(p);
    if (window == nullptr)
        return QVariant();
    const QPointF wp = p - QPointF(window->mapToGlobal(QPoint(0, 0)));
    QWidget *view = GetViewAtPointInWindow(window, wp);
    if (view == nullptr)
        return QVariant();
    auto *answering = qobject_cast<ToolTipping_ZL *>(view);
    if (answering == nullptr)
        return QVariant();
    const QPointF vp = wp - QPointF(view->mapTo(window, QPoint(0, 0)));
    bool ignored = true;
    return answering->toolTipAtPoint(vp, wrap ? wrap : &ignored);
}

namespace {

// The tool bars docked in window, in order; floating ones are windows of
// their own.
QList<QToolBar *> dockedToolBars(QMainWindow *window)
{
    QList<QToolBar *> toolBars = window->findChildren<QToolBar *>(QString(), Qt::FindDirectChildrenOnly);
    toolBars.removeIf([](const QToolBar *toolBar) { return toolBar->isHidden() || toolBar->isWindow(); });
    return toolBars;
}

bool isOverToolBar(QMainWindow *window, QPointF wp)
{
    if (window == nullptr)
        return false;
    const QList<QToolBar *> toolBars = dockedToolBars(window);
    return std::any_of(toolBars.cbegin(), toolBars.cend(),
                       [wp](const QToolBar *toolBar) { return kq_pointInRect(wp, QRectF(toolBar->geometry())); });
}

} // namespace

QWidget *GetViewAtPointInWindow(QWidget *window, QPointF wp)
{
    if (window == nullptr)
        return nullptr;
    // A main window's content is all of it but its tool bars (central
    // widget, docks, menu and status bars); the tool bars come after it.
    auto *mainWindow = qobject_cast<QMainWindow *>(window);
    if (!isOverToolBar(mainWindow, wp)) {
        if (QWidget *view = GetViewAtPointInView(window, wp))
            return view;
    }
    return GetViewAtPointInToolbar(mainWindow, wp);
}

QWidget *GetViewAtPointInView(QWidget *view, QPointF pt)
{
    if (view == nullptr || !kq_pointInRect(pt, QRectF(QPointF(0, 0), QSizeF(view->size()))))
        return nullptr;
    QWidget *current = view;
    for (;;) {
        const QObjectList &children = current->children();
        QWidget *chosen = nullptr;
        // The last child is the front-most.
        for (auto it = children.crbegin(); it != children.crend(); ++it) {
            if (!(*it)->isWidgetType())
                continue;
            auto *child = static_cast<QWidget *>(*it);
            if (child->isWindow())
                continue; // its own top-level window, not part of this one
            if (kq_pointInRect(pt, QRectF(child->geometry()))) {
                chosen = child;
                break;
            }
        }
        if (chosen == nullptr)
            return current;
        pt -= QPointF(chosen->pos());
        current = chosen;
    }
}

QWidget *GetViewAtPointInToolbar(QMainWindow *window, QPointF wp)
{
    if (window == nullptr)
        return nullptr;
    const QList<QToolBar *> toolBars = dockedToolBars(window);
    for (QToolBar *toolBar : toolBars) {
        // The layout's items in order, each with its widget: one pass (asking
        // widgetForAction() for every action would search the layout each
        // time). The tool bar hides the widgets of invisible actions and of
        // items that do not fit.
        const QLayout *layout = toolBar->layout();
        for (int i = 0, count = layout ? layout->count() : 0; i < count; ++i) {
            QWidget *itemView = layout->itemAt(i)->widget();
            if (itemView == nullptr || itemView->isHidden())
                continue;
            const QPointF ip = wp - QPointF(itemView->mapTo(window, QPoint(0, 0)));
            if (QWidget *found = GetViewAtPointInView(itemView, ip))
                return found;
        }
    }
    return nullptr;
}
