#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QVariant>

#include <functional>

/*! \file ToolTipHitTesting_ZL.h
    \brief Finding the widget under a point and asking it for its tooltip.

    These are what the tooltip controller does at every poll. The walk goes
    by frames, front-most child first, so a widget answers for every point
    inside its frame whatever its own mouse handling does; hidden children
    are walked like any other, and a walk never backs out of the child it
    chose. No function reports an error: every failure ends as nullptr or an
    invalid QVariant, which means no tooltip there.
*/

class QMainWindow;
class QWidget;

/*!
    Answers the application's own top-level window at a point (Qt global
    coordinates), or nullptr over the desktop or another application's window.
*/
using ToolTipWindowFinder_ZL = std::function<QWidget *(QPointF globalPoint)>;

/*!
    The tooltip of the deepest widget at \a p (Qt global coordinates), if that
    widget implements ToolTipping_ZL; an invalid QVariant otherwise. Its
    parents are not asked. \a wrap is handed to the widget (nullptr is
    allowed: the widget then writes to a flag of its own). Without
    \a findWindow, the window system says which window is at \a p.

    \code
    bool wrap = true;
    const QVariant tip = ToolTipAtScreenPoint(&wrap, QPointF(QCursor::pos()));
    \endcode
*/
TARNCOMMON_EXPORT QVariant ToolTipAtScreenPoint(bool *wrap, QPointF p,
                                                const ToolTipWindowFinder_ZL &findWindow = {});

/*!
    The deepest widget of \a window at \a wp, in the window's coordinates:
    the content comes first (the window, but for a QMainWindow not its docked
    tool bars), then the tool bars. nullptr without a window or a match.
*/
TARNCOMMON_EXPORT QWidget *GetViewAtPointInWindow(QWidget *window, QPointF wp);

/*!
    The deepest descendant of \a view at \a pt (in view's own coordinates),
    or \a view itself when no child covers the point; nullptr without a view
    or when \a pt is outside it. Separate top-level windows among the
    children are skipped.
*/
TARNCOMMON_EXPORT QWidget *GetViewAtPointInView(QWidget *view, QPointF pt);

/*!
    The deepest widget of a tool bar item at \a wp (window coordinates), the
    visible docked tool bars of \a window taken in order; nullptr without a
    window or a match.
*/
TARNCOMMON_EXPORT QWidget *GetViewAtPointInToolbar(QMainWindow *window, QPointF wp);
