#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtGui/QAccessible>
#include <QtGui/QAccessibleInterface>

#include <functional>
#include <memory>

/*! \file KQAccessibility.h
    \brief Accessibility groups: KQAccessibilityNode, an element that is not a
           widget, and KQAccessibility, which hangs a group of them under a widget. */

class KQAccessibilityNodePrivate;
class KQAccessibilityPrivate;
class QWidget;

/*!
    \brief An accessibility element that is not a widget.

    A node has a title, a role, a frame on screen, a parent and children, all
    set from outside. Qt's accessibility cache owns every node from its
    creation (create() registers it); others refer to it by its id, so a node
    that is gone resolves to null instead of dangling. Release one with
    QAccessible::deleteAccessibleInterface().

    \code
    KQAccessibilityNode *node = KQAccessibilityNode::create();
    node->setAccessibilityTitle(QStringLiteral("Ruler"));
    node->setAccessibilityRole(QAccessible::Graphic);
    node->setAccessibilityParent(QAccessible::queryAccessibleInterface(canvas));
    const QAccessible::Id id = node->accessibilityId();  // keep this, not the pointer
    \endcode
*/
class TARNCOMMON_EXPORT KQAccessibilityNode : public QAccessibleInterface
{
public:
    /*! A new node (titled "", role QAccessible::Grouping, no parent, no
        children, empty frame), registered with and owned by Qt's
        accessibility cache. */
    static KQAccessibilityNode *create();
    /*! The node registered under \a id, or null (for 0, a released node, or
        another kind of interface). */
    static KQAccessibilityNode *fromId(QAccessible::Id id);

    /*! Releases the node's state; call QAccessible::deleteAccessibleInterface()
        rather than deleting a node directly. */
    ~KQAccessibilityNode() override;

    /*! The id under which Qt's accessibility cache knows the node. */
    QAccessible::Id accessibilityId() const;

    /*! A marker for clients, false by default; the library neither sets nor reads it. */
    bool isRootNode() const;
    /*! Sets the root marker (see isRootNode()). */
    void setRootNode(bool rootNode);
    /*! A marker for clients, false by default; the library neither sets nor reads it. */
    bool isEndNode() const;
    /*! Sets the end marker (see isEndNode()). */
    void setEndNode(bool endNode);

    /*! The title, answered as the node's accessible name. */
    QString accessibilityTitle() const;
    /*! Sets the title. */
    void setAccessibilityTitle(const QString &title);
    /*! The role; QAccessible::Grouping by default. */
    QAccessible::Role accessibilityRole() const;
    /*! Sets the role. */
    void setAccessibilityRole(QAccessible::Role role);
    /*! The frame, in Qt global coordinates; empty by default. */
    QRectF accessibilityFrame() const;
    /*! Sets the frame, in Qt global coordinates. */
    void setAccessibilityFrame(const QRectF &frame);
    /*! Sets the parent element (null for none). An interface with an object
        (a widget's) is remembered by that object, since Qt may replace the
        interface; any other one by its id. The parent is not told: add the
        node to its children separately. */
    void setAccessibilityParent(QAccessibleInterface *parent);
    /*! Replaces the children, in order; null entries are refused with an
        assertion report and skipped. The children are not told: set their
        parent separately. */
    void setAccessibilityChildren(const QList<QAccessibleInterface *> &children);
    /*! The children still alive, in order. */
    QList<QAccessibleInterface *> accessibilityChildren() const;

    /*! Always true: a node is valid for as long as it is registered. */
    bool isValid() const override;
    /*! Always null: a node has no object of its own. */
    QObject *object() const override;
    /*! The parent's window, or null without a parent. */
    QWindow *window() const override;
    /*! The first child whose screen rectangle holds (\a x, \a y), in Qt
        global coordinates, or null. */
    QAccessibleInterface *childAt(int x, int y) const override;
    /*! The parent element, or null. */
    QAccessibleInterface *parent() const override;
    /*! The living child at \a index, or null when out of range. */
    QAccessibleInterface *child(int index) const override;
    /*! The number of living children. */
    int childCount() const override;
    /*! The index of \a child among the living children, or -1. */
    int indexOfChild(const QAccessibleInterface *child) const override;
    /*! The title for QAccessible::Name, a null string for any other \a t. */
    QString text(QAccessible::Text t) const override;
    /*! Sets the title for QAccessible::Name; other kinds of text are ignored. */
    void setText(QAccessible::Text t, const QString &text) override;
    /*! The frame, rounded to whole pixels. */
    QRect rect() const override;
    /*! The role (see accessibilityRole()). */
    QAccessible::Role role() const override;
    /*! Invisible or off-screen exactly when the parent is; otherwise no
        state flags. */
    QAccessible::State state() const override;

private:
    KQAccessibilityNode();

    std::unique_ptr<KQAccessibilityNodePrivate> const d;
};

/*!
    \brief Hangs a named group node under a widget and fills it on demand.

    The group becomes the last accessible child of the accessed widget; its
    children are rebuilt by a procedure the widget's owner supplies. Used only
    when validForAutomateTesting() says so.

    \code
    if (KQAccessibility::validForAutomateTesting()) {
        auto *accessibility = new KQAccessibility(panel, QStringLiteral("Swatches"), panel);
        accessibility->setAccessibilityHierarchy([=] { accessibility->setChildrenToGroup(swatchNodes()); });
        accessibility->reloadAccessibilityHierarchy();
    }
    \endcode
*/
class TARNCOMMON_EXPORT KQAccessibility : public QObject
{
    Q_OBJECT

public:
    /*! True when the setting "enableScriptingAutomationTesting" is on. Read
        once per process: later changes of the setting have no effect. */
    static bool validForAutomateTesting();

    /*! \a elements without those whose object's class is named
        "NSAccessibilityReparentingCellProxy", in order. */
    static QList<QAccessibleInterface *>
    stripeOffNSAccessibilityReparentingCellProxyObjectFromArray(const QList<QAccessibleInterface *> &elements);

    /*! Creates the group titled \a groupName and appends it to \a
        accessedObject's accessible children (which it freezes as they are
        now). A null \a accessedObject is refused with an assertion report;
        the group is made but hangs nowhere. */
    KQAccessibility(QWidget *accessedObject, const QString &groupName, QObject *parent = nullptr);
    /*! Releases the group node. */
    ~KQAccessibility() override;

    /*! Replaces the group's children with \a children, each told that the
        group is its parent. Without a group: an assertion report. */
    void setChildrenToGroup(const QList<QAccessibleInterface *> &children);
    /*! Empties the group. Without a group: an assertion report. */
    void resetGroupChildren();
    /*! Appends each of \a children to the group, as addChildToGroup(). */
    void addChildrenToGroup(const QList<QAccessibleInterface *> &children);
    /*! Appends \a child to the group and tells it that the group is its
        parent. Without a group or with a null child: an assertion report. */
    void addChildToGroup(QAccessibleInterface *child);

    /*! Stores \a rebuild as the procedure that fills the group (as
        setSetupAccessibilityHierarchy()). */
    void setAccessibilityHierarchy(const std::function<void()> &rebuild);
    /*! Runs \a procedure at once; an empty one is refused with an assertion report. */
    void startInitializeAccessibility(const std::function<void()> &procedure);
    /*! Runs the stored rebuild procedure; without one, an assertion report. */
    void reloadAccessibilityHierarchy();

    /*! The stored rebuild procedure; empty by default. */
    std::function<void()> setupAccessibilityHierarchy() const;
    /*! Stores \a rebuild as the procedure that fills the group. */
    void setSetupAccessibilityHierarchy(const std::function<void()> &rebuild);
    /*! The group node, or null once it has been released. */
    KQAccessibilityNode *groupAccessbility() const;
    /*! Takes over \a group (null for none); the previous group node is released. */
    void setGroupAccessbility(KQAccessibilityNode *group);
    /*! The widget the group hangs under, or null once it is destroyed. */
    QWidget *accessedObject() const;
    /*! Sets the widget the group is said to hang under; the group is not
        moved. Held weakly. */
    void setAccessedObject(QWidget *object);

private:
    std::unique_ptr<KQAccessibilityPrivate> const d;
};
