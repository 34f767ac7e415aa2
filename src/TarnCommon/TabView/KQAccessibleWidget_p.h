#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtWidgets/QAccessibleWidget>

class QWidget;

// Accessible children set from outside for a widget, in place of its child
// widgets. A widget given such children (and every KQTabView while the
// automation switch is on) gets a KQAccessibleWidget as its interface.
namespace KQAccessibleChildren {

// Makes Qt ask the library first for the interfaces of its widgets. Idempotent.
TARNCOMMON_EXPORT void installFactory();

// The widget's accessible children: those set with setChildren() that are
// still alive, else Qt's default (its child widgets).
TARNCOMMON_EXPORT QList<QAccessibleInterface *> children(QWidget *widget);
TARNCOMMON_EXPORT void setChildren(QWidget *widget, const QList<QAccessibleInterface *> &children);
TARNCOMMON_EXPORT bool hasChildren(const QWidget *widget);

// The first of children whose screen rectangle holds (x, y), or null.
TARNCOMMON_EXPORT QAccessibleInterface *childAt(const QList<QAccessibleInterface *> &children, int x, int y);

} // namespace KQAccessibleChildren

class TARNCOMMON_EXPORT KQAccessibleWidget : public QAccessibleWidget
{
public:
    explicit KQAccessibleWidget(QWidget *widget);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;

    // Qt's own answer for the widget, ignoring any children set from outside.
    QList<QAccessibleInterface *> defaultChildren() const;

private:
    QList<QAccessibleInterface *> currentChildren() const;
};
