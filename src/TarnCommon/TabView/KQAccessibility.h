#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtGui/QAccessible>
#include <QtGui/QAccessibleInterface>

#include <functional>

class QWidget;

// An accessibility element that is not a widget: a title, a role, a frame
// on screen, a parent and children, all set from outside. Qt's
// accessibility cache owns every node from its creation (create() registers
// it); others refer to it by its id, so a node that is gone resolves to null
// instead of dangling. Release one with QAccessible::deleteAccessibleInterface.
class TARNCOMMON_EXPORT KQAccessibilityNode : public QAccessibleInterface
{
public:
    static KQAccessibilityNode *create();
    // The node registered under id, or null.
    static KQAccessibilityNode *fromId(QAccessible::Id id);

    QAccessible::Id accessibilityId() const;

    // Markers for clients; the library neither sets nor reads them.
    bool isRootNode() const { return _rootNode; }
    void setRootNode(bool rootNode) { _rootNode = rootNode; }
    bool isEndNode() const { return _endNode; }
    void setEndNode(bool endNode) { _endNode = endNode; }

    QString accessibilityTitle() const { return m_title; }
    void setAccessibilityTitle(const QString &title) { m_title = title; }
    QAccessible::Role accessibilityRole() const { return m_role; }
    void setAccessibilityRole(QAccessible::Role role) { m_role = role; }
    // In Qt global coordinates.
    QRectF accessibilityFrame() const { return m_frame; }
    void setAccessibilityFrame(const QRectF &frame) { m_frame = frame; }
    void setAccessibilityParent(QAccessibleInterface *parent);
    void setAccessibilityChildren(const QList<QAccessibleInterface *> &children);
    // The children still alive, in order.
    QList<QAccessibleInterface *> accessibilityChildren() const;

    // QAccessibleInterface
    bool isValid() const override;
    QObject *object() const override;
    QWindow *window() const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *parent() const override;
    QAccessibleInterface *child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;
    QString text(QAccessible::Text t) const override;
    void setText(QAccessible::Text t, const QString &text) override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;

private:
    KQAccessibilityNode() = default;

    bool _rootNode = false;
    bool _endNode = false;
    QString m_title;
    QAccessible::Role m_role = QAccessible::Grouping;
    QRectF m_frame;
    // A widget parent is kept by its object, whose interface Qt may replace.
    QPointer<QObject> m_parentObject;
    QAccessible::Id m_parent = 0;
    QList<QAccessible::Id> m_children;
};

// Attaches a named group node as the last accessible child of a widget and
// fills the group on demand through a rebuild procedure supplied by the
// widget's owner. Used only when validForAutomateTesting() says so.
class TARNCOMMON_EXPORT KQAccessibility : public QObject
{
    Q_OBJECT

public:
    // True when the setting "enableScriptingAutomationTesting" is on. Read
    // once per process: later changes of the setting have no effect.
    static bool validForAutomateTesting();

    // elements without those whose object's class is named
    // "NSAccessibilityReparentingCellProxy", in order.
    static QList<QAccessibleInterface *>
    stripeOffNSAccessibilityReparentingCellProxyObjectFromArray(const QList<QAccessibleInterface *> &elements);

    // Creates the group titled groupName and appends it to accessedObject's
    // accessible children (which it freezes as they are now).
    KQAccessibility(QWidget *accessedObject, const QString &groupName, QObject *parent = nullptr);
    // Releases the group node.
    ~KQAccessibility() override;

    void setChildrenToGroup(const QList<QAccessibleInterface *> &children);
    void resetGroupChildren();
    void addChildrenToGroup(const QList<QAccessibleInterface *> &children);
    void addChildToGroup(QAccessibleInterface *child);

    void setAccessibilityHierarchy(const std::function<void()> &rebuild);
    // Runs procedure at once.
    void startInitializeAccessibility(const std::function<void()> &procedure);
    // Runs the stored rebuild procedure.
    void reloadAccessibilityHierarchy();

    std::function<void()> setupAccessibilityHierarchy() const;
    void setSetupAccessibilityHierarchy(const std::function<void()> &rebuild);
    KQAccessibilityNode *groupAccessbility() const;
    // Takes over group; the previous group node is released.
    void setGroupAccessbility(KQAccessibilityNode *group);
    QWidget *accessedObject() const;
    void setAccessedObject(QWidget *object);

private:
    QAccessible::Id _groupAccessibility = 0;
    QPointer<QWidget> _accessedObject;
    std::function<void()> _setupAccessibilityHierarchy;
};
