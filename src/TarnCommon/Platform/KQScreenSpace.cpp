#include <TarnCommon/KQScreenSpace.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

namespace KQScreenSpace {

QRectF primaryScreenGeometry()
{
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return QRectF();
    const QScreen *primary = QGuiApplication::primaryScreen();
    return primary ? QRectF(primary->geometry()) : QRectF();
}

QRectF fromGlobal(const QRectF &rect, const QRectF &primary)
{
    const double top = primary.y() + primary.height();
    return QRectF(rect.x(), top - (rect.y() + rect.height()), rect.width(), rect.height());
}

QRectF toGlobal(const QRectF &rect, const QRectF &primary)
{
    return fromGlobal(rect, primary); // the flip is its own inverse
}

QPointF fromGlobal(const QPointF &point, const QRectF &primary)
{
    return QPointF(point.x(), primary.y() + primary.height() - point.y());
}

QPointF toGlobal(const QPointF &point, const QRectF &primary)
{
    return fromGlobal(point, primary);
}

QRectF fromGlobal(const QRectF &rect) { return fromGlobal(rect, primaryScreenGeometry()); }
QRectF toGlobal(const QRectF &rect) { return toGlobal(rect, primaryScreenGeometry()); }
QPointF fromGlobal(const QPointF &point) { return fromGlobal(point, primaryScreenGeometry()); }
QPointF toGlobal(const QPointF &point) { return toGlobal(point, primaryScreenGeometry()); }

QList<Screen> screens()
{
    QList<Screen> result;
    if (!qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        return result;
    const QRectF primary = primaryScreenGeometry();
    QList<QScreen *> all = QGuiApplication::screens();
    // The primary screen first, as the platform lists them.
    if (QScreen *first = QGuiApplication::primaryScreen(); first && all.removeOne(first))
        all.prepend(first);
    result.reserve(all.size());
    for (const QScreen *screen : std::as_const(all))
        result.append({fromGlobal(QRectF(screen->geometry()), primary),
                       fromGlobal(QRectF(screen->availableGeometry()), primary)});
    return result;
}

} // namespace KQScreenSpace
