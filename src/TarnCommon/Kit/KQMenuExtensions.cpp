#include <TarnCommon/KQMenuExtensions.h>

#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QJsonObject>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QPointer>
#include <QtGui/QAction>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QKeySequence>
#include <QtGui/QPixmap>
#include <QtWidgets/QMenu>
#include <QtWidgets/QWidget>

namespace {

const char kBindingName[] = "_kq_menuItemBinding";

QByteArray typeName(const QVariant &value)
{
    return value.isValid() ? QByteArray(value.typeName()) : QByteArray("an invalid QVariant");
}

// What an item sends and to whom; a child of the item, so it goes with it.
class MenuItemBinding : public QObject
{
public:
    explicit MenuItemBinding(QAction *item)
        : QObject(item)
    {
        setObjectName(QLatin1String(kBindingName));
        connect(item, &QAction::triggered, this, [this, item] { send(item); });
    }

    QByteArray action;
    QPointer<QObject> target;

private:
    void send(QAction *item);
};

MenuItemBinding *binding(const QAction *item, bool create)
{
    if (!item)
        return nullptr;
    auto *found = item->findChild<MenuItemBinding *>(QLatin1String(kBindingName), Qt::FindDirectChildrenOnly);
    if (!found && create)
        found = new MenuItemBinding(const_cast<QAction *>(item));
    return found;
}

// The widget whose responder chain a menu's item belongs to: the menu's
// parent widget, or for a submenu the widget its menu action sits in.
QWidget *ownerWidget(QObject *object, int depth = 0)
{
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget || depth > 16)
        return nullptr;
    auto *menu = qobject_cast<QMenu *>(widget);
    if (!menu)
        return widget;
    if (QWidget *parent = menu->parentWidget())
        return parent;
    const QList<QObject *> holders = menu->menuAction()->associatedObjects();
    for (QObject *holder : holders) {
        if (QWidget *owner = ownerWidget(holder, depth + 1))
            return owner;
    }
    return nullptr;
}

// Calls the method named name on receiver, giving it the item when it takes
// one QAction or QObject pointer. The most derived class's method wins.
bool invoke(QObject *receiver, const QByteArray &name, QAction *item)
{
    const QMetaObject *meta = receiver->metaObject();
    for (int i = meta->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Constructor || method.name() != name)
            continue;
        if (method.parameterCount() == 0)
            return method.invoke(receiver, Qt::DirectConnection);
        if (method.parameterCount() == 1) {
            const QByteArray type = method.parameterTypes().constFirst();
            if (type == "QAction*")
                return method.invoke(receiver, Qt::DirectConnection, Q_ARG(QAction *, item));
            if (type == "QObject*")
                return method.invoke(receiver, Qt::DirectConnection, Q_ARG(QObject *, item));
        }
    }
    ZLLogError("%s::%s must take nothing, a QAction* or a QObject* to be sent by a menu item",
               receiver->metaObject()->className(), name.constData());
    return false;
}

void MenuItemBinding::send(QAction *item)
{
    if (action.isEmpty())
        return;
    QObject *receiver = target.data();
    if (!receiver)
        receiver = kq_targetForMethod(action);
    if (!receiver) {
        const QList<QObject *> holders = item->associatedObjects();
        for (QObject *holder : holders) {
            if (QWidget *owner = ownerWidget(holder)) {
                if ((receiver = kq_targetForMethod(action, owner)))
                    break;
            }
        }
    }
    if (!receiver) {
        ZLLogWarning("No object along the responder chain answers the menu action \"%s\"", action.constData());
        return;
    }
    invoke(receiver, action, item);
}

// A platform-style key equivalent of one character: the command key (Ctrl
// in Qt's portable terms) with the key, Shift for an upper-case letter.
bool keySequenceFrom(const QVariant &value, QKeySequence &sequence)
{
    if (value.metaType() == QMetaType::fromType<QKeySequence>()) {
        sequence = value.value<QKeySequence>();
        return true;
    }
    if (!value.isNull() && value.metaType() != QMetaType::fromType<QString>())
        return false;
    const QString text = value.toString();
    if (text.size() == 1) {
        const QChar c = text.at(0);
        const bool shifted = c.isLetter() && c.isUpper();
        const QKeySequence key = QKeySequence::fromString(QString(c.toUpper()), QKeySequence::PortableText);
        if (key.isEmpty())
            return false;
        const Qt::KeyboardModifiers modifiers = Qt::ControlModifier | (shifted ? Qt::ShiftModifier : Qt::NoModifier);
        sequence = QKeySequence(QKeyCombination(modifiers, key[0].key()));
        return true;
    }
    sequence = QKeySequence::fromString(text, QKeySequence::PortableText);
    return text.isEmpty() || !sequence.isEmpty();
}

bool iconFrom(const QVariant &value, QIcon &icon)
{
    switch (value.typeId()) {
    case QMetaType::QIcon:
        icon = value.value<QIcon>();
        return true;
    case QMetaType::QPixmap:
        icon = QIcon(value.value<QPixmap>());
        return true;
    case QMetaType::QImage:
        icon = QIcon(QPixmap::fromImage(value.value<QImage>()));
        return true;
    case QMetaType::QString: {
        // A file or resource path, else a name from the icon theme.
        const QString name = value.toString();
        icon = QIcon(name);
        if (icon.isNull())
            icon = QIcon::fromTheme(name);
        return true;
    }
    default:
        return !value.isValid() && (icon = QIcon(), true);
    }
}

QObject *objectFrom(const QVariant &value)
{
    return value.metaType().flags().testFlag(QMetaType::PointerToQObject) ? value.value<QObject *>() : nullptr;
}

void reportWrongType(const QString &key, const QVariant &value)
{
    ZLLogError("The menu item property \"%s\" cannot take a value of type %s; it is left unset",
               qUtf8Printable(key), typeName(value).constData());
}

// Applies one entry; a refused one is reported and left out.
void apply(QAction *item, const QString &key, const QVariant &value)
{
    if (key == QLatin1String("action")) {
        if (!value.isValid() || value.isNull())
            kq_setAction(item, {});
        else if (value.typeId() == QMetaType::QString || value.typeId() == QMetaType::QByteArray)
            kq_setAction(item, value.toByteArray());
        else
            reportWrongType(key, value);
        return;
    }
    if (key == QLatin1String("target")) {
        QObject *target = objectFrom(value);
        if (target || !value.isValid() || value.isNull())
            kq_setTarget(item, target);
        else
            reportWrongType(key, value);
        return;
    }
    if (key == QLatin1String("title")) {
        apply(item, QStringLiteral("text"), value);
        return;
    }
    if (key == QLatin1String("keyEquivalent")) {
        QKeySequence sequence;
        if (keySequenceFrom(value, sequence))
            item->setShortcut(sequence);
        else
            reportWrongType(key, value);
        return;
    }
    if (key == QLatin1String("state")) {
        if (value.typeId() == QMetaType::Bool || value.canConvert<int>()) {
            item->setCheckable(true);
            item->setChecked(value.typeId() == QMetaType::Bool ? value.toBool() : value.toInt() == 1);
        } else {
            reportWrongType(key, value);
        }
        return;
    }
    if (key == QLatin1String("image")) {
        QIcon icon;
        if (iconFrom(value, icon))
            item->setIcon(icon);
        else
            reportWrongType(key, value);
        return;
    }
    if (key == QLatin1String("tag") || key == QLatin1String("data")) {
        item->setData(value);
        return;
    }
    if (key == QLatin1String("separator")) {
        if (value.typeId() == QMetaType::Bool)
            item->setSeparator(value.toBool());
        else
            reportWrongType(key, value);
        return;
    }
    if (key == QLatin1String("submenu")) {
        QMenu *submenu = qobject_cast<QMenu *>(objectFrom(value));
        if (!submenu && value.canConvert<QVariantList>() && value.typeId() != QMetaType::QString) {
            submenu = kq_menuWithItemProperties(value.toList());
            submenu->setTitle(item->text());
            // No widget can own it: it goes with the item.
            QObject::connect(item, &QObject::destroyed, submenu, &QObject::deleteLater);
        }
        if (submenu)
            item->setMenu(submenu);
        else
            reportWrongType(key, value);
        return;
    }

    const QMetaObject *meta = item->metaObject();
    const QByteArray name = key.toUtf8();
    const int index = meta->indexOfProperty(name.constData());
    if (index < 0) {
        ZLLogError("QAction has no property \"%s\": the menu item key is refused", name.constData());
        return;
    }
    const QMetaProperty property = meta->property(index);
    if (!property.isWritable()) {
        ZLLogError("The QAction property \"%s\" is read-only: the menu item key is refused", name.constData());
        return;
    }
    QVariant converted = value;
    if (!converted.convert(property.metaType()) || !property.write(item, converted))
        reportWrongType(key, value);
}

} // namespace

QAction *kq_menuItemWithProperties(const QVariantMap &properties, QObject *parent)
{
    auto *item = new QAction(parent);
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        apply(item, it.key(), it.value());
    return item;
}

void kq_addItemsWithProperties(QWidget *widget, const QVariantList &items)
{
    if (!widget) {
        ZLLogError("kq_addItemsWithProperties needs a widget to add the items to");
        return;
    }
    int position = 0;
    for (const QVariant &element : items) {
        if (auto *ready = qobject_cast<QAction *>(objectFrom(element))) {
            if (!ready->parent())
                ready->setParent(widget);
            widget->addAction(ready);
        } else if (element.typeId() == QMetaType::QVariantMap || element.typeId() == QMetaType::QVariantHash
                   || element.typeId() == QMetaType::QJsonObject) {
            widget->addAction(kq_menuItemWithProperties(element.toMap(), widget));
        } else {
            ZLLogError("Menu element %d is neither a property map nor a QAction (it holds %s); it is skipped",
                       position, typeName(element).constData());
        }
        ++position;
    }
}

QAction *kq_addItemWithProperties(QMenu *menu, const QVariantMap &properties)
{
    if (!menu) {
        ZLLogError("kq_addItemWithProperties needs a menu");
        return nullptr;
    }
    QAction *item = kq_menuItemWithProperties(properties, menu);
    menu->addAction(item);
    return item;
}

QAction *kq_addItemWithTitle(QMenu *menu, const QString &title, QByteArrayView action, QObject *target,
                             const QString &keyEquivalent)
{
    if (!menu) {
        ZLLogError("kq_addItemWithTitle needs a menu");
        return nullptr;
    }
    auto *item = new QAction(title, menu);
    kq_setAction(item, action);
    kq_setTarget(item, target);
    if (!keyEquivalent.isEmpty())
        apply(item, QStringLiteral("keyEquivalent"), keyEquivalent);
    menu->addAction(item);
    return item;
}

void kq_setAction(QAction *item, QByteArrayView action)
{
    if (MenuItemBinding *b = binding(item, !action.isEmpty()))
        b->action = action.toByteArray();
}

QByteArray kq_action(const QAction *item)
{
    const MenuItemBinding *b = binding(item, false);
    return b ? b->action : QByteArray();
}

void kq_setTarget(QAction *item, QObject *target)
{
    if (MenuItemBinding *b = binding(item, target != nullptr))
        b->target = target;
}

QObject *kq_target(const QAction *item)
{
    const MenuItemBinding *b = binding(item, false);
    return b ? b->target.data() : nullptr;
}
