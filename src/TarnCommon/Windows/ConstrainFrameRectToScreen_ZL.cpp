#include "ConstrainFrameRect_p.h"

#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQScreenSpace.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <algorithm>

namespace KQWindowRules {

QRectF constrainFrameToVisibleFrame(const QRectF &visibleFrame, bool constrainFully, QRectF frame)
{
    const QRectF &v = visibleFrame;
    // The top edge first, always: the height is kept and the frame slides down.
    if (kq_maxY(frame) > kq_maxY(v))
        frame.moveTop(kq_maxY(v) - frame.height());
    if (!constrainFully)
        return frame;
    if (kq_minY(frame) < kq_minY(v)) {
        frame.setHeight(std::min(frame.height(), v.height()));
        frame.moveTop(kq_minY(v));
    }
    frame.moveLeft(std::max(kq_minX(frame), kq_minX(v)));
    // A frame wider than the visible area ends right-aligned and sticks out
    // on the left: the width is never cut.
    if (kq_maxX(frame) > kq_maxX(v))
        frame.moveLeft(kq_maxX(v) - frame.width());
    return frame;
}

} // namespace KQWindowRules

QRectF ConstrainFrameRectToScreen_ZL(const QScreen *screen, bool constrainFully, const QRectF &frame)
{
    if (!screen && qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return frame;
    const QRectF primary = KQScreenSpace::primaryScreenGeometry();
    const QRectF visible = KQScreenSpace::fromGlobal(QRectF(screen->availableGeometry()), primary);
    const QRectF constrained = KQWindowRules::constrainFrameToVisibleFrame(
        visible, constrainFully, KQScreenSpace::fromGlobal(frame, primary));
    return KQScreenSpace::toGlobal(constrained, primary);
}
