#include "GeometryDemo.h"

#include <TarnCommon/KQGeometry.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

namespace {
constexpr double kHandleRadius = 7;
}

GeometryDemo::GeometryDemo(QWidget *parent)
    : QWidget(parent)
{
    setMouseTracking(true);
    setMinimumSize(360, 240);
    setCursor(Qt::CrossCursor);
}

int GeometryDemo::handleAt(QPointF position) const
{
    for (int i = 0; i < 2; ++i) {
        if (q_POINT_distance_between_points(position, m_points[i]) <= kHandleRadius + 3)
            return i;
    }
    return -1;
}

void GeometryDemo::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().base());

    const QRectF between = q_RECT_rect_between_points(m_points[0], m_points[1]);
    const QPointF centre = q_RECT__Get_Centre(between);
    const QPointF projected = KQPointConstrainToLine(true, m_pointer, m_points[0], m_points[1]);

    QColor fill = palette().highlight().color();
    fill.setAlpha(40);
    painter.setPen(QPen(palette().highlight().color(), 1, Qt::DashLine));
    painter.setBrush(fill);
    painter.drawRect(between);

    painter.setPen(QPen(palette().text().color(), 2));
    painter.drawLine(m_points[0], m_points[1]);

    painter.setPen(QPen(Qt::darkGreen, 1, Qt::DotLine));
    painter.drawLine(m_pointer, projected);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::darkGreen);
    painter.drawEllipse(projected, 4, 4);

    painter.setPen(QPen(Qt::red, 2));
    painter.drawLine(centre - QPointF(6, 0), centre + QPointF(6, 0));
    painter.drawLine(centre - QPointF(0, 6), centre + QPointF(0, 6));

    for (const QPointF &point : m_points) {
        painter.setPen(QPen(palette().text().color(), 1.5));
        painter.setBrush(palette().button());
        painter.drawEllipse(point, kHandleRadius, kHandleRadius);
    }

    painter.setPen(palette().text().color());
    const QString legend =
        tr("Drag the two handles. Rectangle (%1, %2, %3 x %4), centre (%5, %6), distance %7.\n"
           "Green: the pointer projected onto the segment.")
            .arg(between.x()).arg(between.y()).arg(between.width()).arg(between.height())
            .arg(centre.x()).arg(centre.y())
            .arg(q_POINT_distance_between_points(m_points[0], m_points[1]), 0, 'f', 1);
    painter.drawText(rect().adjusted(8, 0, -8, -6), Qt::AlignBottom | Qt::AlignLeft, legend);
}

void GeometryDemo::mousePressEvent(QMouseEvent *event)
{
    m_dragged = handleAt(event->position());
}

void GeometryDemo::mouseMoveEvent(QMouseEvent *event)
{
    if (m_dragged >= 0)
        m_points[m_dragged] = event->position();
    else
        m_pointer = event->position();
    update();
}

void GeometryDemo::mouseReleaseEvent(QMouseEvent *)
{
    m_dragged = -1;
}
