#include <TarnCommon/KQAccessibility.h>

#include "KQAccessibleWidget_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQSettings.h>

#include <QtWidgets/QWidget>

// ---- KQAccessibilityNode ----------------------------------------------------

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

void KQAccessibilityNode::setAccessibilityParent(QAccessibleInterface *parent)
{
    m_parentObject = parent ? parent->object() : nullptr;
    m_parent = parent && !m_parentObject ? QAccessible::uniqueId(parent) : 0;
}

void KQAccessibilityNode::setAccessibilityChildren(const QList<QAccessibleInterface *> &children)
{
    m_children.clear();
    m_children.reserve(children.size());
    for (QAccessibleInterface *child : children) {
        if (KQVerify(child != nullptr))
            m_children.append(QAccessible::uniqueId(child));
    }
}

QList<QAccessibleInterface *> KQAccessibilityNode::accessibilityChildren() const
{
    QList<QAccessibleInterface *> children;
    children.reserve(m_children.size());
    for (QAccessible::Id id : m_children) {
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
    if (m_parentObject)
        return QAccessible::queryAccessibleInterface(m_parentObject);
    return m_parent ? QAccessible::accessibleInterface(m_parent) : nullptr;
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
    return t == QAccessible::Name ? m_title : QString();
}

void KQAccessibilityNode::setText(QAccessible::Text t, const QString &text)
{
    if (t == QAccessible::Name)
        m_title = text;
}

QRect KQAccessibilityNode::rect() const
{
    return m_frame.toRect();
}

QAccessible::Role KQAccessibilityNode::role() const
{
    return m_role;
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
    , _accessedObject(accessedObject)
{
    KQAccessibleChildren::installFactory();
    KQAccessibilityNode *group = KQAccessibilityNode::create();
    _groupAccessibility = group->accessibilityId();
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
    if (_groupAccessibility)
        QAccessible::deleteAccessibleInterface(_groupAccessibility);
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
    KQAssert(bool(_setupAccessibilityHierarchy));
    _setupAccessibilityHierarchy();
}

std::function<void()> KQAccessibility::setupAccessibilityHierarchy() const
{
    return _setupAccessibilityHierarchy;
}

void KQAccessibility::setSetupAccessibilityHierarchy(const std::function<void()> &rebuild)
{
    _setupAccessibilityHierarchy = rebuild;
}

KQAccessibilityNode *KQAccessibility::groupAccessbility() const
{
    return KQAccessibilityNode::fromId(_groupAccessibility);
}

void KQAccessibility::setGroupAccessbility(KQAccessibilityNode *group)
{
    const QAccessible::Id id = group ? group->accessibilityId() : 0;
    if (id == _groupAccessibility)
        return;
    if (_groupAccessibility)
        QAccessible::deleteAccessibleInterface(_groupAccessibility);
    _groupAccessibility = id;
}

QWidget *KQAccessibility::accessedObject() const
{
    return _accessedObject;
}

void KQAccessibility::setAccessedObject(QWidget *object)
{
    _accessedObject = object;
}
