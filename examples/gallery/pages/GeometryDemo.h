#pragma once

#include <QtCore/QPointF>
#include <QtWidgets/QWidget>

// Two draggable points: the rectangle between them, its centre, the distance,
// and the pointer projected onto the line through them.
class GeometryDemo : public QWidget
{
    Q_OBJECT
public:
    explicit GeometryDemo(QWidget *parent = nullptr);

    QSize sizeHint() const override { return QSize(520, 320); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    int handleAt(QPointF position) const;

    QPointF m_points[2] = {QPointF(90, 70), QPointF(380, 230)};
    QPointF m_pointer = QPointF(320, 80);
    int m_dragged = -1;
};
