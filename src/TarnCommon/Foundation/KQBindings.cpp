#include "KQBindings_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>

const char NSObservedObjectKey[] = "NSObservedObject";
const char NSObservedKeyPathKey[] = "NSObservedKeyPath";
const char NSOptionsKey[] = "NSOptions";
const char NSValueTransformerBindingOption[] = "NSValueTransformer";
const char NSValueTransformerNameBindingOption[] = "NSValueTransformerName";

// ---------------------------------------------------------------------------
// Value transformers

class KQValueTransformerPrivate
{
};

namespace {

class FunctionTransformer : public KQValueTransformer
{
public:
    FunctionTransformer(std::function<QVariant(const QVariant &)> forward,
                        std::function<QVariant(const QVariant &)> reverse, QObject *parent)
        : KQValueTransformer(parent)
        , m_forward(std::move(forward))
        , m_reverse(std::move(reverse))
    {
    }
    QVariant transformedValue(const QVariant &value) const override
    {
        return m_forward ? m_forward(value) : value;
    }
    QVariant reverseTransformedValue(const QVariant &value) const override
    {
        return m_reverse ? m_reverse(value) : QVariant();
    }
    bool allowsReverseTransformation() const override { return bool(m_reverse); }

private:
    std::function<QVariant(const QVariant &)> m_forward;
    std::function<QVariant(const QVariant &)> m_reverse;
};

struct Registry
{
    QObject owner; // parent of the transformers registered without one
    QHash<QString, QPointer<KQValueTransformer>> byName;
};

Registry &registry()
{
    static Registry instance;
    return instance;
}

constexpr int MaximumNesting = 32; // bindings updating bindings, beyond which a cycle is assumed
int g_nesting = 0;

struct NestingGuard
{
    NestingGuard() { ++g_nesting; }
    ~NestingGuard() { --g_nesting; }
    NestingGuard(const NestingGuard &) = delete;
    NestingGuard &operator=(const NestingGuard &) = delete;
};

bool isNullObject(const QVariant &value)
{
    return value.metaType().id() == QMetaType::Nullptr;
}

bool isNil(const QVariant &value)
{
    if (!value.isValid())
        return true;
    return (value.metaType().flags() & QMetaType::PointerToQObject) && !value.value<QObject *>();
}

QVariant readPath(const KQKeyPathTarget &target)
{
    if (!target.object)
        return {};
    QVariant value = target.object->property(target.property.constData());
    for (const QString &key : target.mapKeys) {
        if (value.metaType().id() != QMetaType::QVariantMap)
            return {};
        value = value.toMap().value(key);
    }
    return value;
}

// map with value stored under keys[index...], nested maps made as needed.
bool storeInMap(QVariantMap &map, const QStringList &keys, qsizetype index, const QVariant &value, QString *error)
{
    const QString &key = keys.at(index);
    if (index == keys.size() - 1) {
        map.insert(key, value);
        return true;
    }
    QVariant inner = map.value(key);
    if (inner.isValid() && inner.metaType().id() != QMetaType::QVariantMap) {
        *error = QStringLiteral("'%1' does not hold a map").arg(key);
        return false;
    }
    QVariantMap innerMap = inner.toMap();
    if (!storeInMap(innerMap, keys, index + 1, value, error))
        return false;
    map.insert(key, innerMap);
    return true;
}

} // namespace

KQValueTransformer::KQValueTransformer(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<KQValueTransformerPrivate>())
{
}

KQValueTransformer::~KQValueTransformer() = default;

KQValueTransformer *KQValueTransformer::create(std::function<QVariant(const QVariant &)> forward,
                                               std::function<QVariant(const QVariant &)> reverse,
                                               QObject *parent)
{
    return new FunctionTransformer(std::move(forward), std::move(reverse), parent);
}

QVariant KQValueTransformer::transformedValue(const QVariant &value) const
{
    return value;
}

QVariant KQValueTransformer::reverseTransformedValue(const QVariant &value) const
{
    return transformedValue(value);
}

bool KQValueTransformer::allowsReverseTransformation() const
{
    return true;
}

void KQValueTransformer::setValueTransformer(KQValueTransformer *transformer, const QString &name)
{
    KQAssert(!name.isEmpty());
    Registry &r = registry();
    QPointer<KQValueTransformer> previous = r.byName.take(name);
    if (transformer) {
        if (!transformer->parent())
            transformer->setParent(&r.owner);
        r.byName.insert(name, transformer);
    }
    if (previous && previous != transformer && previous->parent() == &r.owner
        && !r.byName.values().contains(previous))
        delete previous.data();
}

KQValueTransformer *KQValueTransformer::valueTransformerForName(const QString &name)
{
    return registry().byName.value(name).data();
}

QStringList KQValueTransformer::valueTransformerNames()
{
    QStringList names;
    const Registry &r = registry();
    for (auto it = r.byName.cbegin(); it != r.byName.cend(); ++it) {
        if (it.value())
            names.append(it.key());
    }
    names.sort();
    return names;
}

// ---------------------------------------------------------------------------
// Key paths

KQKeyPathTarget kq_resolveKeyPath(const QObject *root, const QString &keyPath)
{
    KQKeyPathTarget target;
    if (!root)
        return target;
    const QStringList names = keyPath.split(u'.');
    if (keyPath.isEmpty() || names.contains(QString())) {
        target.error = QStringLiteral("the key path '%1' has an empty name").arg(keyPath);
        return target;
    }
    QObject *object = const_cast<QObject *>(root);
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QByteArray name = names.at(i).toUtf8();
        const QMetaObject *meta = object->metaObject();
        const int index = meta->indexOfProperty(name.constData());
        if (index < 0) {
            target.error = QStringLiteral("%1 declares no property '%2' (key path '%3')")
                               .arg(QString::fromLatin1(meta->className()), names.at(i), keyPath);
            return target;
        }
        target.objectsAlongPath.append(object);
        const QMetaProperty property = meta->property(index);
        if (i == names.size() - 1) {
            target.object = object;
            target.property = name;
            return target;
        }
        if (property.metaType().id() == QMetaType::QVariantMap) {
            target.object = object;
            target.property = name;
            target.mapKeys = names.mid(i + 1);
            return target;
        }
        if (!(property.metaType().flags() & QMetaType::PointerToQObject)) {
            target.error = QStringLiteral("%1's property '%2' holds neither an object nor a map (key path '%3')")
                               .arg(QString::fromLatin1(meta->className()), names.at(i), keyPath);
            return target;
        }
        object = property.read(object).value<QObject *>();
        if (!object)
            return target; // nothing there now: no value, and no error
    }
    return target;
}

QVariant kq_valueForKeyPath(const QObject *object, const QString &keyPath)
{
    KQAssert(object != nullptr, QVariant());
    const KQKeyPathTarget target = kq_resolveKeyPath(object, keyPath);
    if (!target.error.isEmpty()) {
        ZLLogError(target.error);
        return {};
    }
    return readPath(target);
}

bool kq_setValueForKeyPath(QObject *object, const QVariant &value, const QString &keyPath)
{
    KQAssert(object != nullptr, false);
    const KQKeyPathTarget target = kq_resolveKeyPath(object, keyPath);
    QString error = target.error;
    if (error.isEmpty() && !target.object)
        error = QStringLiteral("the key path '%1' does not reach an object").arg(keyPath);
    QMetaProperty property;
    QVariant stored = value;
    if (error.isEmpty()) {
        const QMetaObject *meta = target.object->metaObject();
        property = meta->property(meta->indexOfProperty(target.property.constData()));
        if (!property.isWritable())
            error = QStringLiteral("%1's property '%2' is read-only")
                        .arg(QString::fromLatin1(meta->className()), QString::fromLatin1(target.property));
    }
    if (error.isEmpty() && !target.mapKeys.isEmpty()) {
        QVariantMap map = target.object->property(target.property.constData()).toMap();
        if (storeInMap(map, target.mapKeys, 0, value, &error))
            stored = map;
    } else if (error.isEmpty() && property.metaType().id() != QMetaType::QVariant
               && stored.metaType() != property.metaType()) {
        // Checked before writing, so a refused value leaves the model as it was.
        if (!stored.isValid() || !stored.convert(property.metaType()))
            error = QStringLiteral("a %1 cannot be stored in %2's property '%3' of type %4")
                        .arg(QString::fromLatin1(value.isValid() ? value.typeName() : "invalid value"),
                             QString::fromLatin1(target.object->metaObject()->className()),
                             QString::fromLatin1(target.property), QString::fromLatin1(property.typeName()));
    }
    if (error.isEmpty() && !property.write(target.object, stored))
        error = QStringLiteral("%1 refused the value for '%2'")
                    .arg(QString::fromLatin1(target.object->metaObject()->className()), keyPath);
    if (!error.isEmpty()) {
        ZLLogError(error);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------
// Bindings

KQValueTransformer *kq_transformerForOptions(const QVariantMap &options, bool *refused)
{
    if (refused)
        *refused = false;
    const QVariant object = options.value(QLatin1String(NSValueTransformerBindingOption));
    if (!isNil(object) && !isNullObject(object)) {
        auto *transformer = qobject_cast<KQValueTransformer *>(object.value<QObject *>());
        if (!transformer && refused)
            *refused = true;
        return transformer;
    }
    const QVariant name = options.value(QLatin1String(NSValueTransformerNameBindingOption));
    if (isNil(name) || isNullObject(name))
        return nullptr;
    return KQValueTransformer::valueTransformerForName(name.toString());
}

KQBindingRecord::KQBindingRecord(QObject *view, const QString &binding, QObject *model, const QString &keyPath,
                                 const QVariantMap &options)
    : QObject(view)
    , binding(binding)
    , model(model)
    , keyPath(keyPath)
    , options(options)
{
    setObjectName(QStringLiteral("_kq_binding:") + binding);
    const QVariant object = options.value(QLatin1String(NSValueTransformerBindingOption));
    if (object.metaType().flags() & QMetaType::PointerToQObject) {
        hadTransformerObject = true;
        transformerObject = object.value<QObject *>();
    }
    connect(model, &QObject::destroyed, this, &QObject::deleteLater);
    const QMetaObject *meta = view->metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(binding.toUtf8().constData()));
    if (property.hasNotifySignal()) {
        const QMetaMethod slot = staticMetaObject.method(staticMetaObject.indexOfSlot("viewChanged()"));
        connect(view, property.notifySignal(), this, slot);
    }
}

KQBindingRecord *KQBindingRecord::find(const QObject *view, const QString &binding)
{
    if (!view)
        return nullptr;
    const QString name = QStringLiteral("_kq_binding:") + binding;
    const auto records = view->findChildren<KQBindingRecord *>(name, Qt::FindDirectChildrenOnly);
    for (KQBindingRecord *record : records) {
        if (record->binding == binding && record->alive())
            return record;
    }
    return nullptr;
}

QVariantMap KQBindingRecord::info() const
{
    QVariantMap info;
    if (!model)
        return info;
    info.insert(QLatin1String(NSObservedObjectKey), QVariant::fromValue<QObject *>(model.data()));
    info.insert(QLatin1String(NSObservedKeyPathKey), keyPath);
    if (!options.isEmpty()) {
        QVariantMap current = options;
        // A transformer object that has gone reads as nil, never as a dangling pointer.
        if (hadTransformerObject && !transformerObject)
            current.insert(QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue<QObject *>(nullptr));
        info.insert(QLatin1String(NSOptionsKey), current);
    }
    return info;
}

void KQBindingRecord::rewire()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_modelConnections))
        disconnect(connection);
    m_modelConnections.clear();
    if (!model)
        return;
    const KQKeyPathTarget target = kq_resolveKeyPath(model, keyPath);
    const QMetaMethod changed = staticMetaObject.method(staticMetaObject.indexOfSlot("modelChanged()"));
    const QMetaMethod destroyedSlot = staticMetaObject.method(staticMetaObject.indexOfSlot("pathObjectDestroyed()"));
    const QStringList names = keyPath.split(u'.');
    for (qsizetype i = 0; i < target.objectsAlongPath.size() && i < names.size(); ++i) {
        QObject *object = target.objectsAlongPath.at(i);
        const QMetaObject *meta = object->metaObject();
        const QMetaProperty property = meta->property(meta->indexOfProperty(names.at(i).toUtf8().constData()));
        if (property.hasNotifySignal())
            m_modelConnections.append(connect(object, property.notifySignal(), this, changed));
        if (object != model.data()) {
            const QMetaMethod destroyedSignal = QMetaMethod::fromSignal(&QObject::destroyed);
            m_modelConnections.append(connect(object, destroyedSignal, this, destroyedSlot, Qt::QueuedConnection));
        }
    }
}

void KQBindingRecord::pathObjectDestroyed()
{
    modelChanged();
}

void KQBindingRecord::modelChanged()
{
    QObject *view = parent();
    if (busy || !model || !view)
        return;
    if (g_nesting >= MaximumNesting) {
        ZLLogError(QStringLiteral("bindings update each other in a cycle; '%1' is not updated").arg(binding));
        return;
    }
    NestingGuard nesting;
    busy = true;
    rewire(); // an object along the path may have been replaced
    const QVariant raw = readPath(kq_resolveKeyPath(model, keyPath));
    const QMetaObject *meta = view->metaObject();
    const QMetaProperty property = meta->property(meta->indexOfProperty(binding.toUtf8().constData()));
    QVariant value;
    if (!raw.isValid()) {
        // Nothing at the key path: the property type's empty value.
        if (property.metaType().id() != QMetaType::QVariant)
            value = QVariant(property.metaType());
    } else if (KQValueTransformer *transformer = kq_transformerForOptions(options)) {
        value = transformer->transformedValue(raw);
        if (!value.isValid())
            ZLLogWarning(QStringLiteral("the transformer of '%1' gave no value; the view keeps its own").arg(binding));
    } else {
        value = raw;
    }
    const bool clears = !raw.isValid() && property.metaType().id() == QMetaType::QVariant;
    if ((value.isValid() || clears) && view->property(binding.toUtf8().constData()) != value
        && !property.write(view, value))
        ZLLogWarning(QStringLiteral("%1's property '%2' refused a %3")
                         .arg(QString::fromLatin1(meta->className()), binding, QString::fromLatin1(value.typeName())));
    busy = false;
}

void KQBindingRecord::viewChanged()
{
    QObject *view = parent();
    if (busy || !model || !view)
        return;
    kq_propagateValue(view, view->property(binding.toUtf8().constData()), binding);
}

bool kq_bind(QObject *view, const QString &binding, QObject *model, const QString &keyPath,
             const QVariantMap &options)
{
    KQAssert(view != nullptr, false);
    KQAssert(model != nullptr, false);
    const QMetaObject *meta = view->metaObject();
    const int index = binding.isEmpty() ? -1 : meta->indexOfProperty(binding.toUtf8().constData());
    if (index < 0 || !meta->property(index).isWritable()) {
        ZLLogError(QStringLiteral("%1 declares no writable property '%2' to bind")
                       .arg(QString::fromLatin1(meta->className()), binding));
        return false;
    }
    const KQKeyPathTarget target = kq_resolveKeyPath(model, keyPath);
    if (!target.error.isEmpty()) {
        ZLLogError(target.error);
        return false;
    }
    kq_unbind(view, binding);
    auto *record = new KQBindingRecord(view, binding, model, keyPath, options);
    record->modelChanged(); // observing includes the initial value
    return true;
}

void kq_unbind(QObject *view, const QString &binding)
{
    if (!view)
        return;
    const QString name = QStringLiteral("_kq_binding:") + binding;
    const auto records = view->findChildren<KQBindingRecord *>(name, Qt::FindDirectChildrenOnly);
    for (KQBindingRecord *record : records) {
        // Not deleted at once: unbinding may happen inside one of its own updates.
        record->model = nullptr;
        record->rewire();
        record->setParent(nullptr);
        record->deleteLater();
    }
}

QVariantMap kq_infoForBinding(const QObject *view, const QString &binding)
{
    const KQBindingRecord *record = KQBindingRecord::find(view, binding);
    return record ? record->info() : QVariantMap();
}

QVariant kq_valueForBinding(const QObject *view, const QString &binding)
{
    KQAssertText("binding", !binding.isNull(), QVariant());
    const QVariantMap info = kq_infoForBinding(view, binding);
    if (info.isEmpty())
        return {};
    const auto *model = info.value(QLatin1String(NSObservedObjectKey)).value<QObject *>();
    const KQKeyPathTarget target = kq_resolveKeyPath(model, info.value(QLatin1String(NSObservedKeyPathKey)).toString());
    return readPath(target);
}

void kq_propagateValue(QObject *view, const QVariant &value, const QString &binding)
{
    KQAssertText("binding", !binding.isNull());
    const QVariantMap info = kq_infoForBinding(view, binding);
    if (info.isEmpty())
        return;
    KQBindingRecord *record = KQBindingRecord::find(view, binding);
    if (g_nesting >= MaximumNesting) {
        ZLLogError(QStringLiteral("bindings update each other in a cycle; the model of '%1' is not updated").arg(binding));
        return;
    }
    QVariant stored = value;
    const auto optionsEntry = info.constFind(QLatin1String(NSOptionsKey));
    if (optionsEntry != info.cend()) {
        bool refused = false;
        KQValueTransformer *transformer = kq_transformerForOptions(optionsEntry->toMap(), &refused);
        KQAssertText("transformer is a KQValueTransformer", !refused);
        if (transformer) {
            KQAssertText("[[transformer class] allowsReverseTransformation]",
                         transformer->allowsReverseTransformation());
            stored = transformer->reverseTransformedValue(value);
            if (!stored.isValid() && value.isValid()) {
                ZLLogWarning(QStringLiteral("the transformer of '%1' gave no value back; the model is not changed")
                                 .arg(binding));
                return;
            }
        }
    }
    auto *model = info.value(QLatin1String(NSObservedObjectKey)).value<QObject *>();
    NestingGuard nesting;
    const bool wasBusy = record && record->busy;
    if (record)
        record->busy = true; // the model's own change notice is not sent back to this view
    kq_setValueForKeyPath(model, stored, info.value(QLatin1String(NSObservedKeyPathKey)).toString());
    if (record)
        record->busy = wasBusy;
}
