#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtWidgets/QAccessibleWidget>

#include <functional>

class QWidget;

// Accessible children set from outside for a widget, in place of its child
// widgets, and the element attributes (parent, title, role, frame, press
// action) of a widget that stands for another element in the tree. A widget
// given either (and every KQTabView while the automation switch is on) gets
// a KQAccessibleWidget as its interface.
namespace KQAccessibleChildren {

// Makes Qt ask the library first for the interfaces of its widgets. Idempotent.
void installFactory();

// The widget's accessible children: those set with setChildren() that are
// still alive and still name the widget as their parent (an element moved
// under another one is listed there only), else Qt's default (its child
// widgets).
QList<QAccessibleInterface *> children(QWidget *widget);
void setChildren(QWidget *widget, const QList<QAccessibleInterface *> &children);
bool hasChildren(const QWidget *widget);

// Element attributes; each replaces Qt's own answer for the widget.
void setAccessibilityParent(QWidget *widget, QAccessibleInterface *parent);
void setAccessibilityTitle(QWidget *widget, const QString &title);
void setAccessibilityRole(QWidget *widget, QAccessible::Role role);
// In Qt global coordinates.
void setAccessibilityFrame(QWidget *widget, const QRectF &frame);
// Checkable, and checked or not.
void setAccessibilityChecked(QWidget *widget, bool checked);
// Offered to clients as QAccessibleActionInterface::pressAction().
void setPressAction(QWidget *widget, const std::function<void()> &press);
// Back to Qt's own answers for everything but children set from outside.
void clearAttributes(QWidget *widget);
bool hasAttributes(const QWidget *widget);

// The first of children whose screen rectangle holds (x, y), or null.
QAccessibleInterface *childAt(const QList<QAccessibleInterface *> &children, int x, int y);

// Sends event type about iface to Qt's accessibility clients.
void notify(QAccessibleInterface *iface, QAccessible::Event type);
// Tells clients that iface's checked state changed.
void notifyCheckedChanged(QAccessibleInterface *iface);

} // namespace KQAccessibleChildren

class KQAccessibleWidget : public QAccessibleWidget
{
public:
    explicit KQAccessibleWidget(QWidget *widget);

    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QAccessibleInterface *childAt(int x, int y) const override;

    QAccessibleInterface *parent() const override;
    QString text(QAccessible::Text t) const override;
    QAccessible::Role role() const override;
    QRect rect() const override;
    QAccessible::State state() const override;

    QStringList actionNames() const override;
    void doAction(const QString &actionName) override;
    QStringList keyBindingsForAction(const QString &actionName) const override;

    // Qt's own answer for the widget, ignoring any children set from outside.
    QList<QAccessibleInterface *> defaultChildren() const;

private:
    QList<QAccessibleInterface *> currentChildren() const;
};
