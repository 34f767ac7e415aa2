#pragma once

#include <QtWidgets/QWidget>

// Hidden by an explicit hide() or setHidden(true). QWidget::isHidden() also
// answers true for children of a window that was never shown, which is not
// what the collapsible views mean by a hidden view.
inline bool kq_isExplicitlyHidden(const QWidget *widget)
{
    return widget->testAttribute(Qt::WA_WState_ExplicitShowHide) && widget->testAttribute(Qt::WA_WState_Hidden);
}

// Makes widget a child of parent without changing whether it shows:
// reparenting alone would hide it.
inline void kq_adoptWidget(QWidget *parent, QWidget *widget)
{
    const bool hidden = kq_isExplicitlyHidden(widget);
    widget->setParent(parent);
    widget->setHidden(hidden);
}
