#include "KQAccessibleWidget_p.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtWidgets/QWidget>

#include <optional>

namespace {

struct Attributes
{
    std::optional<QString> title;
    std::optional<QAccessible::Role> role;
    std::optional<QRectF> frame;
    std::optional<bool> checked;
    // A widget parent is kept by its object, whose interface Qt may replace;
    // any other element by its id, so one that is gone resolves to null.
    bool hasParent = false;
    QPointer<QObject> parentObject;
    QAccessible::Id parentId = 0;
    std::function<void()> press;
};

struct ChildrenRegistry
{
    QHash<const QObject *, QList<QAccessible::Id>> children;
    QHash<const QObject *, Attributes> attributes;
    QSet<const QObject *> watched;
};
Q_GLOBAL_STATIC(ChildrenRegistry, s_registry)

bool hasTabViewGroups(QWidget *widget)
{
    return qobject_cast<KQTabView *>(widget) != nullptr && KQAccessibility::validForAutomateTesting();
}

QAccessibleInterface *accessibleWidgetFactory(const QString &className, QObject *object)
{
    Q_UNUSED(className);
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return nullptr;
    if (hasTabViewGroups(widget) || KQAccessibleChildren::hasChildren(widget)
        || KQAccessibleChildren::hasAttributes(widget))
        return new KQAccessibleWidget(widget);
    return nullptr;
}

// Forgets what was set for widget when it goes.
void watch(QWidget *widget)
{
    if (s_registry->watched.contains(widget))
        return;
    s_registry->watched.insert(widget);
    QObject::connect(widget, &QObject::destroyed, [widget] {
        if (!s_registry.exists())
            return;
        s_registry->children.remove(widget);
        s_registry->attributes.remove(widget);
        s_registry->watched.remove(widget);
    });
}

// An interface Qt made before the widget had anything set from outside
// would keep giving Qt's answers: drop it, the factory makes ours.
void replaceDefaultInterface(QWidget *widget)
{
    QAccessibleInterface *current = QAccessible::queryAccessibleInterface(widget);
    if (current && !dynamic_cast<KQAccessibleWidget *>(current))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(current));
}

Attributes *attributesFor(QWidget *widget)
{
    if (!widget)
        return nullptr;
    KQAccessibleChildren::installFactory();
    watch(widget);
    const bool first = !s_registry->attributes.contains(widget);
    Attributes *attributes = &s_registry->attributes[widget];
    if (first)
        replaceDefaultInterface(widget);
    return attributes;
}

const Attributes *findAttributes(const QObject *widget)
{
    const auto it = s_registry->attributes.constFind(widget);
    return it == s_registry->attributes.cend() ? nullptr : &it.value();
}

QAccessibleInterface *resolvedParent(const Attributes &attributes)
{
    if (attributes.parentObject)
        return QAccessible::queryAccessibleInterface(attributes.parentObject);
    return attributes.parentId ? QAccessible::accessibleInterface(attributes.parentId) : nullptr;
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
        QAccessibleInterface *child = QAccessible::accessibleInterface(id);
        const QAccessibleInterface *up = child ? child->parent() : nullptr;
        if (up && up->object() == widget)
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
    watch(widget);
    const bool first = !s_registry->children.contains(widget);
    s_registry->children.insert(widget, ids);
    if (first)
        replaceDefaultInterface(widget);
}

bool hasChildren(const QWidget *widget)
{
    return s_registry->children.contains(widget);
}

void setAccessibilityParent(QWidget *widget, QAccessibleInterface *parent)
{
    if (Attributes *attributes = attributesFor(widget)) {
        attributes->hasParent = parent != nullptr;
        attributes->parentObject = parent ? parent->object() : nullptr;
        attributes->parentId = parent && !parent->object() ? QAccessible::uniqueId(parent) : 0;
    }
}

void setAccessibilityTitle(QWidget *widget, const QString &title)
{
    if (Attributes *attributes = attributesFor(widget))
        attributes->title = title;
}

void setAccessibilityRole(QWidget *widget, QAccessible::Role role)
{
    if (Attributes *attributes = attributesFor(widget))
        attributes->role = role;
}

void setAccessibilityFrame(QWidget *widget, const QRectF &frame)
{
    if (Attributes *attributes = attributesFor(widget))
        attributes->frame = frame;
}

void setAccessibilityChecked(QWidget *widget, bool checked)
{
    if (Attributes *attributes = attributesFor(widget))
        attributes->checked = checked;
}

void setPressAction(QWidget *widget, const std::function<void()> &press)
{
    if (Attributes *attributes = attributesFor(widget))
        attributes->press = press;
}

void clearAttributes(QWidget *widget)
{
    if (!widget || !s_registry->attributes.remove(widget))
        return;
    if (hasChildren(widget) || hasTabViewGroups(widget))
        return;
    // Nothing of ours is left: Qt's own interface answers again.
    QAccessibleInterface *current = QAccessible::queryAccessibleInterface(widget);
    if (dynamic_cast<KQAccessibleWidget *>(current))
        QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(current));
}

bool hasAttributes(const QWidget *widget)
{
    return s_registry->attributes.contains(widget);
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

void notify(QAccessibleInterface *iface, QAccessible::Event type)
{
    if (!iface)
        return;
    QAccessibleEvent event(iface, type);
    QAccessible::updateAccessibility(&event);
}

void notifyCheckedChanged(QAccessibleInterface *iface)
{
    if (!iface)
        return;
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(iface, changed);
    QAccessible::updateAccessibility(&event);
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

QAccessibleInterface *KQAccessibleWidget::parent() const
{
    const Attributes *attributes = findAttributes(object());
    if (attributes && attributes->hasParent) {
        if (QAccessibleInterface *up = resolvedParent(*attributes))
            return up;
    }
    return QAccessibleWidget::parent();
}

QString KQAccessibleWidget::text(QAccessible::Text t) const
{
    const Attributes *attributes = findAttributes(object());
    if (t == QAccessible::Name && attributes && attributes->title)
        return *attributes->title;
    return QAccessibleWidget::text(t);
}

QAccessible::Role KQAccessibleWidget::role() const
{
    const Attributes *attributes = findAttributes(object());
    return attributes && attributes->role ? *attributes->role : QAccessibleWidget::role();
}

QRect KQAccessibleWidget::rect() const
{
    const Attributes *attributes = findAttributes(object());
    return attributes && attributes->frame ? attributes->frame->toRect() : QAccessibleWidget::rect();
}

QAccessible::State KQAccessibleWidget::state() const
{
    QAccessible::State state = QAccessibleWidget::state();
    const Attributes *attributes = findAttributes(object());
    if (!attributes)
        return state;
    if (attributes->checked) {
        state.checkable = true;
        state.checked = *attributes->checked;
    }
    if (!attributes->hasParent)
        return state;
    // Standing for an element of another place in the tree (a tab's button
    // on the bar), the widget is on show when that place is.
    if (const QAccessibleInterface *up = resolvedParent(*attributes)) {
        const QAccessible::State upState = up->state();
        state.invisible = upState.invisible;
        state.offscreen = upState.offscreen;
    }
    return state;
}

QStringList KQAccessibleWidget::actionNames() const
{
    QStringList names = QAccessibleWidget::actionNames();
    const Attributes *attributes = findAttributes(object());
    if (attributes && attributes->press)
        names.prepend(QAccessibleActionInterface::pressAction());
    return names;
}

void KQAccessibleWidget::doAction(const QString &actionName)
{
    const Attributes *attributes = findAttributes(object());
    if (actionName == QAccessibleActionInterface::pressAction() && attributes && attributes->press) {
        // A copy: pressing may replace the attributes or delete this interface.
        const std::function<void()> press = attributes->press;
        press();
        return;
    }
    QAccessibleWidget::doAction(actionName);
}

QStringList KQAccessibleWidget::keyBindingsForAction(const QString &actionName) const
{
    if (actionName == QAccessibleActionInterface::pressAction())
        return {};
    return QAccessibleWidget::keyBindingsForAction(actionName);
}
