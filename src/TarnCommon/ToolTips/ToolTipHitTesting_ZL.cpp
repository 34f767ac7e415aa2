#include "ToolTipHitTesting_ZL_p.h"

#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QWidget>

#include <cmath>

QWidget *ToolTipApplicationWindowAt(QPointF globalPoint)
{
    // Asks the window system, which knows the stacking of every
    // application's windows: another application's window in front answers
    // nothing.
    const QPoint pixel(int(std::floor(globalPoint.x())), int(std::floor(globalPoint.y())));
    return QApplication::topLevelAt(pixel);
}

QVariant ToolTipAtScreenPoint(bool *wrap, QPointF p, const ToolTipWindowFinder_ZL &findWindow)
{
    QWidget *window = findWindow ? findWindow(p) : ToolTipApplicationWindowAt(p);
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

QWidget *GetViewAtPointInWindow(QWidget *window, QPointF wp)
{
    if (window == nullptr)
        return nullptr;
    auto *mainWindow = qobject_cast<QMainWindow *>(window);
    QWidget *content = mainWindow && mainWindow->centralWidget() ? mainWindow->centralWidget() : window;
    const QPointF cp = content == window ? wp : wp - QPointF(content->mapTo(window, QPoint(0, 0)));
    if (QWidget *view = GetViewAtPointInView(content, cp))
        return view;
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
    const QList<QToolBar *> toolBars = window->findChildren<QToolBar *>(QString(), Qt::FindDirectChildrenOnly);
    for (QToolBar *toolBar : toolBars) {
        if (toolBar->isHidden())
            continue;
        const QList<QAction *> actions = toolBar->actions();
        for (QAction *action : actions) {
            QWidget *itemView = action->isVisible() ? toolBar->widgetForAction(action) : nullptr;
            if (itemView == nullptr)
                continue;
            const QPointF ip = wp - QPointF(itemView->mapTo(window, QPoint(0, 0)));
            if (QWidget *found = GetViewAtPointInView(itemView, ip))
                return found;
        }
    }
    return nullptr;
}
