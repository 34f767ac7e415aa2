#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

#include <functional>

// A 16 x 16 icon drawn at 1x and 2x, so bars stay sharp on high-density
// screens; draw paints in 16 x 16 logical units on an antialiased painter.
inline QIcon drawnIcon(const std::function<void(QPainter &)> &draw)
{
    QIcon icon;
    for (const qreal scale : {1.0, 2.0}) {
        QPixmap pixmap(QSize(16, 16) * scale);
        pixmap.setDevicePixelRatio(scale);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        draw(painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}
