#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QVariant>

#include <functional>

class QMainWindow;
class QWidget;

// Finding the widget under a point and asking it for its tooltip, as the
// tooltip controller does at every poll. The walk goes by frames, front-most
// child first, so a widget answers for every point inside its frame whatever
// its own mouse handling does; hidden children are walked like any other,
// and a walk never backs out of the child it chose.

// Answers the application's own top-level window at a point (Qt global
// coordinates), or nullptr over the desktop or another application's window.
using ToolTipWindowFinder_ZL = std::function<QWidget *(QPointF globalPoint)>;

// The tooltip of the deepest widget at p (Qt global coordinates), if that
// widget answers ToolTipping_ZL; an invalid QVariant otherwise. Its parents
// are not asked. wrap is handed to the widget. Without findWindow, the window
// system says which window is at p.
TARNCOMMON_EXPORT QVariant ToolTipAtScreenPoint(bool *wrap, QPointF p,
                                                const ToolTipWindowFinder_ZL &findWindow = {});

// wp: in the window's coordinates. The content comes first (the window, but
// for a main window not its tool bars), then the tool bars.
TARNCOMMON_EXPORT QWidget *GetViewAtPointInWindow(QWidget *window, QPointF wp);

// pt: in view's own coordinates. nullptr when pt is outside view.
TARNCOMMON_EXPORT QWidget *GetViewAtPointInView(QWidget *view, QPointF pt);

// The deepest widget of a tool bar item at wp (window coordinates), the tool
// bars of window taken in order; nullptr without a window or a match.
TARNCOMMON_EXPORT QWidget *GetViewAtPointInToolbar(QMainWindow *window, QPointF wp);
