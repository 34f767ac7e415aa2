#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>

/*!
    \file ConstrainFrameRectToScreen_ZL.h
    \brief Keeps a window frame within a screen's visible area.
*/

class QScreen;

/*!
    Keeps a window \a frame under the top of \a screen's visible area (its
    available geometry) and answers the result. The title bar is what the
    user drags a window by, so it must never end up above the visible area.
    With \a constrainFully the frame is also pushed inside the bottom, left
    and right edges; its width is never changed, and its height only when it
    is taller than the visible area (a frame wider than the area ends
    right-aligned).

    Without a \a screen the primary screen is used; with no screen at all the
    frame comes back unchanged. Frames are in Qt global coordinates.
*/
TARNCOMMON_EXPORT QRectF ConstrainFrameRectToScreen_ZL(const QScreen *screen, bool constrainFully,
                                                       const QRectF &frame);
