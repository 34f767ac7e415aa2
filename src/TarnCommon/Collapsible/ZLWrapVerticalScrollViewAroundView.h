#pragma once

#include <TarnCommon/TarnCommonExport.h>

/*! \file ZLWrapVerticalScrollViewAroundView.h
    \brief Puts a widget, typically a collapsible list, into a vertically scrolling area. */

class QScrollArea;
class QWidget;

/*!
    Puts \a view into a new vertically scrolling area without border or
    background, whose scroll bar shows only when needed, sized to show the
    whole view.

    The view follows the area's width (there is no horizontal scrolling) but
    keeps its own height. The area becomes the view's owner; the caller owns
    the area (give it a parent or delete it). A null \a view is reported and
    yields nullptr.
*/
TARNCOMMON_EXPORT QScrollArea *ZLWrapVerticalScrollViewAroundView(QWidget *view);
