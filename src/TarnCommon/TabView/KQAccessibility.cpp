#include <TarnCommon/KQAccessibility.h>

#include "KQAccessibleWidget_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQSettings.h>

#include <QtWidgets/QWidget>

// ---- KQAccessibilityNode ----------------------------------------------------

class KQAccessibilityNodePrivate
{
public:
    bool rootNode = false;
    bool endNode = false;
    QString title;
    QAccessible::Role role = QAccessible::Grouping;
    QRectF frame;
    // A widget parent is kept by its object, whose interface Qt may replace.
    QPointer<QObject> parentObject;
    QAccessible::Id parent = 0;
    QList<QAccessible::Id> children;
};

KQAccessibilityNode::KQAccessibilityNode()
    : d(std::make_unique<KQAccessibilityNodePrivate>())
{
}

KQAccessibilityNode::~KQAccessibilityNode() = default;

KQAccessibilityNode *KQAccessibilityNode::create()
{
    // Owned by Qt's accessibility cache from here on.
    auto *node = new KQAccessibilityNode;
    QAccessible::registerAccessibleInterface(node);
    return node;
}

KQAccessibilityNode *KQAccessibilityNode::fromId(QAccessible::Id id)
{
    if (id == 0)
        return nullptr;
    return dynamic_cast<KQAccessibilityNode *>(QAccessible::accessibleInterface(id));
}

QAccessible::Id KQAccessibilityNode::accessibilityId() const
{
    return QAccessible::uniqueId(const_cast<KQAccessibilityNode *>(this));
}

bool KQAccessibilityNode::isRootNode() const
{
    return d->rootNode;
}

void KQAccessibilityNode::setRootNode(bool rootNode)
{
    d->rootNode = rootNode;
}

bool KQAccessibilityNode::isEndNode() const
{
    return d->endNode;
}

void KQAccessibilityNode::setEndNode(bool endNode)
{
    d->endNode = endNode;
}

QString KQAccessibilityNode::accessibilityTitle() const
{
    return d->title;
}

void KQAccessibilityNode::setAccessibilityTitle(const QString &title)
{
    d->title = title;
}

QAccessible::Role KQAccessibilityNode::accessibilityRole() const
{
    return d->role;
}

void KQAccessibilityNode::setAccessibilityRole(QAccessible::Role role)
{
    d->role = role;
}

QRectF KQAccessibilityNode::accessibilityFrame() const
{
    return d->frame;
}

void KQAccessibilityNode::setAccessibilityFrame(const QRectF &frame)
{
    d->frame = frame;
}

void KQAccessibilityNode::setAccessibilityParent(QAccessibleInterface *parent)
{
    d->parentObject = parent ? parent->object() : nullptr;
    d->parent = parent && !d->parentObject ? QAccessible::uniqueId(parent) : 0;
}

void KQAccessibilityNode::setAccessibilityChildren(const QList<QAccessibleInterface *> &children)
{
    d->children.clear();
    d->children.reserve(children.size());
    for (QAccessibleInterface *child : children) {
        if (KQVerify(child != nullptr))
            d->children.append(QAccessible::uniqueId(child));
    }
}

QList<QAccessibleInterface *> KQAccessibilityNode::accessibilityChildren() const
{
    QList<QAccessibleInterface *> children;
    children.reserve(d->children.size());
    for (QAccessible::Id id : d->children) {
        if (QAccessibleInterface *child = QAccessible::accessibleInterface(id))
            children.append(child);
    }
    return children;
}

bool KQAccessibilityNode::isValid() const
{
    return true;
}

QObject *KQAccessibilityNode::object() const
{
    // No object of its own: the cache keys interfaces by object, and the
    // node must not shadow its parent widget there.
    return nullptr;
}

QWindow *KQAccessibilityNode::window() const
{
    const QAccessibleInterface *up = parent();
    return up ? up->window() : nullptr;
}

QAccessibleInterface *KQAccessibilityNode::childAt(int x, int y) const
{
    return KQAccessibleChildren::childAt(accessibilityChildren(), x, y);
}

QAccessibleInterface *KQAccessibilityNode::parent() const
{
    if (d->parentObject)
        return QAccessible::queryAccessibleInterface(d->parentObject);
    return d->parent ? QAccessible::accessibleInterface(d->parent) : nullptr;
}

QAccessibleInterface *KQAccessibilityNode::child(int index) const
{
    return accessibilityChildren().value(index, nullptr);
}

int KQAccessibilityNode::childCount() const
{
    return int(accessibilityChildren().size());
}

int KQAccessibilityNode::indexOfChild(const QAccessibleInterface *child) const
{
    return int(accessibilityChildren().indexOf(const_cast<QAccessibleInterface *>(child)));
}

QString KQAccessibilityNode::text(QAccessible::Text t) const
{
    return t == QAccessible::Name ? d->title : QString();
}

void KQAccessibilityNode::setText(QAccessible::Text t, const QString &text)
{
    if (t == QAccessible::Name)
        d->title = text;
}

QRect KQAccessibilityNode::rect() const
{
    return d->frame.toRect();
}

QAccessible::Role KQAccessibilityNode::role() const
{
    return d->role;
}

QAccessible::State KQAccessibilityNode::state() const
{
    // On show exactly when the element it hangs under is.
    QAccessible::State state;
    if (const QAccessibleInterface *up = parent()) {
        const QAccessible::State upState = up->state();
        state.invisible = upState.invisible;
        state.offscreen = upState.offscreen;
    }
    return state;
}

// ---- KQAccessibility --------------------------------------------------------

class KQAccessibilityPrivate
{
public:
    QAccessible::Id groupAccessibility = 0;
    QPointer<QWidget> accessedObject;
    std::function<void()> setupAccessibilityHierarchy;
};

namespace {

// The child names the group as its parent, whether it is a node or a
// widget. A widget's interface may be replaced on the way: the one to keep
// is returned.
QAccessibleInterface *adoptIntoGroup(QAccessibleInterface *child, KQAccessibilityNode *group)
{
    if (auto *node = dynamic_cast<KQAccessibilityNode *>(child)) {
        node->setAccessibilityParent(group);
        return node;
    }
    if (auto *widget = qobject_cast<QWidget *>(child ? child->object() : nullptr)) {
        KQAccessibleChildren::setAccessibilityParent(widget, group);
        return QAccessible::queryAccessibleInterface(widget);
    }
    return child;
}

} // namespace

bool KQAccessibility::validForAutomateTesting()
{
    // A function-local static: initialised once, thread-safely.
    static const bool valid =
        KQSettings::userDefaults()->value(QStringLiteral("enableScriptingAutomationTesting"), false).toBool();
    return valid;
}

QList<QAccessibleInterface *>
KQAccessibility::stripeOffNSAccessibilityReparentingCellProxyObjectFromArray(
    const QList<QAccessibleInterface *> &elements)
{
    QList<QAccessibleInterface *> kept;
    kept.reserve(std::max<qsizetype>(10, elements.size()));
    for (QAccessibleInterface *element : elements) {
        const QObject *object = element ? element->object() : nullptr;
        if (object && qstrcmp(object->metaObject()->className(), "NSAccessibilityReparentingCellProxy") == 0)
            continue;
        kept.append(element);
    }
    return kept;
}

KQAccessibility::KQAccessibility(QWidget *accessedObject, const QString &groupName, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<KQAccessibilityPrivate>())
{
    d->accessedObject = accessedObject;
    KQAccessibleChildren::installFactory();
    KQAccessibilityNode *group = KQAccessibilityNode::create();
    d->groupAccessibility = group->accessibilityId();
    group->setAccessibilityTitle(groupName);
    group->setAccessibilityRole(QAccessible::Grouping);
    if (!KQVerify(accessedObject != nullptr))
        return;
    QList<QAccessibleInterface *> children =
        stripeOffNSAccessibilityReparentingCellProxyObjectFromArray(KQAccessibleChildren::children(accessedObject));
    children.append(group);
    KQAccessibleChildren::setChildren(accessedObject, children);
    group->setAccessibilityParent(QAccessible::queryAccessibleInterface(accessedObject));
}

KQAccessibility::~KQAccessibility()
{
    if (d->groupAccessibility)
        QAccessible::deleteAccessibleInterface(d->groupAccessibility);
}

void KQAccessibility::setChildrenToGroup(const QList<QAccessibleInterface *> &children)
{
    KQAccessibilityNode *group = groupAccessbility();
    KQAssert(group != nullptr);
    QList<QAccessibleInterface *> adopted;
    adopted.reserve(children.size());
    for (QAccessibleInterface *child : children)
        adopted.append(adoptIntoGroup(child, group));
    group->setAccessibilityChildren(adopted);
}

void KQAccessibility::resetGroupChildren()
{
    KQAccessibilityNode *group = groupAccessbility();
    KQAssert(group != nullptr);
    group->setAccessibilityChildren({});
}

void KQAccessibility::addChildrenToGroup(const QList<QAccessibleInterface *> &children)
{
    for (QAccessibleInterface *child : children)
        addChildToGroup(child);
}

void KQAccessibility::addChildToGroup(QAccessibleInterface *child)
{
    KQAccessibilityNode *group = groupAccessbility();
    KQAssert(group != nullptr);
    KQAssert(child != nullptr);
    QList<QAccessibleInterface *> children = group->accessibilityChildren();
    children.append(adoptIntoGroup(child, group));
    group->setAccessibilityChildren(children);
}

void KQAccessibility::setAccessibilityHierarchy(const std::function<void()> &rebuild)
{
    setSetupAccessibilityHierarchy(rebuild);
}

void KQAccessibility::startInitializeAccessibility(const std::function<void()> &procedure)
{
    KQAssert(bool(procedure));
    procedure();
}

void KQAccessibility::reloadAccessibilityHierarchy()
{
    KQAssert(bool(d->setupAccessibilityHierarchy));
    d->setupAccessibilityHierarchy();
}

std::function<void()> KQAccessibility::setupAccessibilityHierarchy() const
{
    return d->setupAccessibilityHierarchy;
}

void KQAccessibility::setSetupAccessibilityHierarchy(const std::function<void()> &rebuild)
{
    d->setupAccessibilityHierarchy = rebuild;
}

KQAccessibilityNode *KQAccessibility::groupAccessbility() const
{
    return KQAccessibilityNode::fromId(d->groupAccessibility);
}

void KQAccessibility::setGroupAccessbility(KQAccessibilityNode *group)
{
    const QAccessible::Id id = group ? group->accessibilityId() : 0;
    if (id == d->groupAccessibility)
        return;
    if (d->groupAccessibility)
        QAccessible::deleteAccessibleInterface(d->groupAccessibility);
    d->groupAccessibility = id;
}

QWidget *KQAccessibility::accessedObject() const
{
    return d->accessedObject;
}

void KQAccessibility::setAccessedObject(QWidget *object)
{
    d->accessedObject = object;
}
