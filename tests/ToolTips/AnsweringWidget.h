#pragma once

#include <TarnCommon/ToolTipping_ZL.h>

#include <QtWidgets/QWidget>

// A widget whose tooltip names it and the point it was asked about.
class AnsweringWidget : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    explicit AnsweringWidget(const QString &name, QWidget *parent = nullptr, bool wraps = true)
        : QWidget(parent)
        , m_wraps(wraps)
    {
        setObjectName(name);
    }

    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override
    {
        ++asked;
        if (!m_wraps)
            *wrapText = false;
        return QStringLiteral("%1 %2,%3").arg(objectName()).arg(point.x()).arg(point.y());
    }

    int asked = 0;

private:
    bool m_wraps;
};
