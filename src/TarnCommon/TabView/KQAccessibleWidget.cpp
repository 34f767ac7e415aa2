#include "KQAccessibleWidget_p.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QHash>
#include <QtWidgets/QWidget>

namespace {

struct ChildrenRegistry
{
    QHash<const QObject *, QList<QAccessible::Id>> children;
};
Q_GLOBAL_STATIC(ChildrenRegistry, s_registry)

QAccessibleInterface *accessibleWidgetFactory(const QString &className, QObject *object)
{
    Q_UNUSED(className);
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return nullptr;
    const bool tabViewWithGroups =
        qobject_cast<KQTabView *>(widget) != nullptr && KQAccessibility::validForAutomateTesting();
    if (tabViewWithGroups || KQAccessibleChildren::hasChildren(widget))
        return new KQAccessibleWidget(widget);
    return nullptr;
}

} // namespace

namespace KQAccessibleChildren {

void installFactory()
{
    static const bool installed = [] {
        QAccessible::installFactory(&accessibleWidgetFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

QList<QAccessibleInterface *> children(QWidget *widget)
{
    if (!widget)
        return {};
    const auto it = s_registry->children.constFind(widget);
    if (it == s_registry->children.cend())
        return KQAccessibleWidget(widget).defaultChildren();

    QList<QAccessibleInterface *> alive;
    alive.reserve(it->size());
    for (QAccessible::Id id : *it) {
        if (QAccessibleInterface *child = QAccessible::accessibleInterface(id))
            alive.append(child);
    }
    return alive;
}

void setChildren(QWidget *widget, const QList<QAccessibleInterface *> &children)
{
    if (!widget)
        return;
    installFactory();
    QList<QAccessible::Id> ids;
    ids.reserve(children.size());
    for (QAccessibleInterface *child : children) {
        if (child)
            ids.append(QAccessible::uniqueId(child));
    }
    const bool first = !s_registry->children.contains(widget);
    s_registry->children.insert(widget, ids);
    if (!first)
        return;
    QObject::connect(widget, &QObject::destroyed, [widget] {
        if (s_registry.exists())
            s_registry->children.remove(widget);
    });
    // An interface Qt made before the widget had children of its own would
    // keep answering with the child widgets: drop it, the factory makes ours.
    QAccessibleInterface *current = QAccessible::queryAccessibleInterface(widget);
    if (current && !dynamic_cast<KQAccessibleWidget *>(current))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(current));
}

bool hasChildren(const QWidget *widget)
{
    return s_registry->children.contains(widget);
}

QAccessibleInterface *childAt(const QList<QAccessibleInterface *> &children, int x, int y)
{
    const QPointF point(x, y);
    for (QAccessibleInterface *child : children) {
        if (kq_pointInRect(point, QRectF(child->rect())))
            return child;
    }
    return nullptr;
}

} // namespace KQAccessibleChildren

KQAccessibleWidget::KQAccessibleWidget(QWidget *widget)
    : QAccessibleWidget(widget)
{
}

QList<QAccessibleInterface *> KQAccessibleWidget::currentChildren() const
{
    // A tab view rebuilds its group's buttons whenever it is asked.
    if (auto *tabView = qobject_cast<KQTabView *>(widget()))
        return tabView->accessibilityChildren();
    return KQAccessibleChildren::children(widget());
}

QList<QAccessibleInterface *> KQAccessibleWidget::defaultChildren() const
{
    QList<QAccessibleInterface *> children;
    const int count = QAccessibleWidget::childCount();
    for (int i = 0; i < count; ++i) {
        if (QAccessibleInterface *child = QAccessibleWidget::child(i))
            children.append(child);
    }
    return children;
}

int KQAccessibleWidget::childCount() const
{
    return int(currentChildren().size());
}

QAccessibleInterface *KQAccessibleWidget::child(int index) const
{
    return currentChildren().value(index, nullptr);
}

int KQAccessibleWidget::indexOfChild(const QAccessibleInterface *child) const
{
    return int(currentChildren().indexOf(const_cast<QAccessibleInterface *>(child)));
}

QAccessibleInterface *KQAccessibleWidget::childAt(int x, int y) const
{
    return KQAccessibleChildren::childAt(currentChildren(), x, y);
}
