#pragma once

/*!
    \file KQMenuExtensions.h
    \brief Menus and menu items built from data: property maps, ready actions,
    and actions sent to a target or along the responder chain.
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVariantList>
#include <QtCore/QVariantMap>
#include <QtWidgets/QMenu>

#include <type_traits>

class QAction;
class QWidget;

/*!
    A new QAction (always of that exact class) with every entry of
    \a properties applied in the map's order, owned by \a parent.

    A key names a property of QAction ("text", "checkable", "enabled",
    "shortcut", "toolTip", ...), set as QObject::setProperty would, or one of
    these:
    <ul>
    <li>"title", "keyEquivalent", "state", "image" and "tag": the classic
        names of "text", "shortcut", "checked", "icon" and the action's data.
        A key equivalent of one character is a platform-style one: Ctrl with
        the key, plus Shift for an upper-case letter ("s" is Ctrl+S, "S" is
        Ctrl+Shift+S); a longer text is read as a QKeySequence. A state makes
        the action checkable and checks it when it is 1 or true.</li>
    <li>"action": the name of a slot or Q_INVOKABLE method (see kq_setAction()).</li>
    <li>"target": the QObject that receives the action (see kq_setTarget()).</li>
    <li>"data": the action's data; "separator": true makes it a separator.</li>
    <li>"submenu": a list of items (built as kq_menuWithItemProperties()
        builds one) or a QMenu, shown as the action's menu.</li>
    </ul>

    A key QAction does not know, or a value of a type the property cannot
    take, is reported as an error naming the key and left out; the other
    keys are still applied. The caller owns the action when \a parent is null.
*/
TARNCOMMON_EXPORT QAction *kq_menuItemWithProperties(const QVariantMap &properties, QObject *parent = nullptr);

/*!
    Appends one action per element of \a items to \a widget (a QMenu, a
    QMenuBar, a QToolBar or any widget that takes actions), in order: a
    ready QAction (a separator included) as it is, a property map (QVariantMap,
    QVariantHash or QJsonObject) through kq_menuItemWithProperties(). Made
    actions, and ready ones without a parent, are owned by \a widget. An
    element that is neither is reported and skipped.
*/
TARNCOMMON_EXPORT void kq_addItemsWithProperties(QWidget *widget, const QVariantList &items);

/*!
    A new menu of class \a Menu (QMenu or a subclass constructible from a
    parent widget) holding one action per element of \a items, in order; see
    kq_addItemsWithProperties(). An empty list gives an empty menu.

    \code
    auto *menu = kq_menuWithItemProperties<MyMenu>({
        QVariantMap{{"title", "Open"}, {"action", "open"}, {"keyEquivalent", "o"}},
        QVariant::fromValue(separator),
    }, window);
    \endcode
*/
template<typename Menu = QMenu>
Menu *kq_menuWithItemProperties(const QVariantList &items, QWidget *parent = nullptr)
{
    static_assert(std::is_base_of_v<QMenu, Menu>, "kq_menuWithItemProperties makes menus");
    Menu *menu = new Menu(parent);
    kq_addItemsWithProperties(menu, items);
    return menu;
}

/*!
    Appends the action made by kq_menuItemWithProperties() of \a properties
    to \a menu, which owns it, and returns it; nullptr without a menu.
*/
TARNCOMMON_EXPORT QAction *kq_addItemWithProperties(QMenu *menu, const QVariantMap &properties);

/*!
    Appends an action titled \a title that sends \a action to \a target (or,
    without one, along the responder chain), with the key equivalent
    \a keyEquivalent (see kq_menuItemWithProperties()), and returns it;
    nullptr without a menu. The shorter forms leave out the target and the
    key equivalent.
*/
TARNCOMMON_EXPORT QAction *kq_addItemWithTitle(QMenu *menu, const QString &title, QByteArrayView action,
                                               QObject *target = nullptr, const QString &keyEquivalent = {});

/*!
    Makes \a item send \a action when it triggers: the slot or Q_INVOKABLE
    method of that name (taking nothing, or the triggering QAction or
    QObject) is called on the item's target or, without one, on the first
    object of the responder chain that answers it (kq_targetForMethod() from
    the focus widget, then from the widget the item's menu belongs to). An
    empty name clears the action. A name no object answers is reported when
    the item triggers.
*/
TARNCOMMON_EXPORT void kq_setAction(QAction *item, QByteArrayView action);

/*! The name of the method \a item sends when it triggers; empty without one. */
TARNCOMMON_EXPORT QByteArray kq_action(const QAction *item);

/*!
    Sets the object that receives \a item's action, held as a QPointer (it is
    owned elsewhere); nullptr sends the action along the responder chain.
*/
TARNCOMMON_EXPORT void kq_setTarget(QAction *item, QObject *target);

/*! The object that receives \a item's action; nullptr when it goes along the responder chain. */
TARNCOMMON_EXPORT QObject *kq_target(const QAction *item);
