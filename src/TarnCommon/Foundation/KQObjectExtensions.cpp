#include <TarnCommon/KQObjectExtensions.h>

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QEvent>
#include <QtCore/QMetaMethod>
#include <QtCore/QObject>
#include <QtCore/QVariantHash>
#include <QtCore/QVariantMap>

namespace {

// The name of the first type inside value that QDataStream cannot write; empty when all can.
// Containers of variants are looked into, because streaming one only fails
// at the element (and Qt then writes a truncated stream after a warning).
QByteArray unstreamableType(const QVariant &value, int depth = 0)
{
    if (depth > 256)
        return QByteArrayLiteral("(nesting deeper than 256)");
    const int id = value.metaType().id();
    if (id == QMetaType::QVariantList || id == QMetaType::QStringList) {
        if (id == QMetaType::QVariantList) {
            for (const QVariant &element : value.toList()) {
                const QByteArray inner = unstreamableType(element, depth + 1);
                if (!inner.isEmpty())
                    return inner;
            }
        }
        return {};
    }
    if (id == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            const QByteArray inner = unstreamableType(it.value(), depth + 1);
            if (!inner.isEmpty())
                return inner;
        }
        return {};
    }
    if (id == QMetaType::QVariantHash) {
        const QVariantHash hash = value.toHash();
        for (auto it = hash.cbegin(); it != hash.cend(); ++it) {
            const QByteArray inner = unstreamableType(it.value(), depth + 1);
            if (!inner.isEmpty())
                return inner;
        }
        return {};
    }
    if (!value.isValid())
        return {}; // an invalid element streams as an invalid variant
    if (value.metaType().flags() & QMetaType::PointerToQObject)
        return value.metaType().name();
    if (!value.metaType().hasRegisteredDataStreamOperators())
        return value.metaType().name();
    return {};
}

QMetaMethod methodNamed(const QObject *receiver, QByteArrayView name, int parameterCount)
{
    if (!receiver || name.isEmpty())
        return {};
    const QMetaObject *meta = receiver->metaObject();
    for (int i = meta->methodCount() - 1; i >= 0; --i) { // the most derived first
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Constructor && method.name() == name
            && method.parameterCount() == parameterCount)
            return method;
    }
    return {};
}

QVariant invoke(QObject *receiver, const QMetaMethod &method, const QVariant *argument)
{
    QVariant result;
    QGenericReturnArgument returned;
    if (method.returnMetaType().isValid() && method.returnMetaType().id() != QMetaType::Void) {
        result = QVariant(method.returnMetaType());
        returned = QGenericReturnArgument(method.typeName(), result.data());
    }
    bool called = false;
    if (!argument) {
        called = method.invoke(receiver, Qt::DirectConnection, returned);
    } else {
        const QMetaType parameterType = method.parameterMetaType(0);
        QVariant converted = *argument;
        if (parameterType.id() == QMetaType::QVariant) {
            called = method.invoke(receiver, Qt::DirectConnection, returned,
                                   QGenericArgument("QVariant", argument));
        } else {
            if (converted.metaType() != parameterType && !converted.convert(parameterType)) {
                ZLLogWarning(QStringLiteral("cannot pass a %1 to %2::%3(%4)")
                                 .arg(QString::fromLatin1(argument->typeName()),
                                      QString::fromLatin1(receiver->metaObject()->className()),
                                      QString::fromLatin1(method.name()),
                                      QString::fromLatin1(parameterType.name())));
                return {};
            }
            called = method.invoke(receiver, Qt::DirectConnection, returned,
                                   QGenericArgument(parameterType.name(), converted.constData()));
        }
    }
    return called ? result : QVariant();
}

// Runs the block one event-delivery level deeper than its caller, so that the
// deferred deletions posted inside are told apart from the caller's own.
class SubpoolEvent : public QEvent
{
public:
    explicit SubpoolEvent(const std::function<void()> &block)
        : QEvent(type())
        , block(block)
    {
    }
    static QEvent::Type type()
    {
        static const auto registered = static_cast<QEvent::Type>(QEvent::registerEventType());
        return registered;
    }
    const std::function<void()> &block;
};

class SubpoolRunner : public QObject
{
public:
    bool event(QEvent *event) override
    {
        if (event->type() != SubpoolEvent::type())
            return QObject::event(event);
        static_cast<SubpoolEvent *>(event)->block();
        // At this level only the deletions posted inside the block qualify.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return true;
    }
};

} // namespace

QVariant KQCloneUsingCoding(const QVariant &object)
{
    if (!object.isValid())
        return {};
    const QByteArray unstreamable = unstreamableType(object);
    if (!unstreamable.isEmpty()) {
        ZLLogWarning("KQCloneUsingCoding: a value of type %s cannot be archived", unstreamable.constData());
        return {};
    }
    QByteArray data;
    {
        QDataStream out(&data, QIODevice::WriteOnly);
        out << object;
        if (out.status() != QDataStream::Ok) {
            ZLLogWarning("KQCloneUsingCoding: a value of type %s could not be archived", object.typeName());
            return {};
        }
    }
    QDataStream in(data);
    QVariant copy;
    in >> copy;
    if (in.status() != QDataStream::Ok) {
        ZLLogWarning("KQCloneUsingCoding: a value of type %s could not be read back", object.typeName());
        return {};
    }
    return copy;
}

QVariant kq_performSelectorIfResponds(QObject *receiver, QByteArrayView selector)
{
    const QMetaMethod method = methodNamed(receiver, selector, 0);
    return method.isValid() ? invoke(receiver, method, nullptr) : QVariant();
}

QVariant kq_performSelectorIfResponds(QObject *receiver, QByteArrayView selector, const QVariant &object)
{
    const QMetaMethod method = methodNamed(receiver, selector, 1);
    return method.isValid() ? invoke(receiver, method, &object) : QVariant();
}

namespace {

void reportInvalidMapResult()
{
    // The block must give a value; the null object keeps the result's length.
    KQAssertNeverExecuted();
}

} // namespace

QVariantList kq_map(const QVariantList &list, const KQListBlock<QVariant> &block)
{
    QVariantList result;
    KQAssert(block != nullptr, result);
    result.reserve(list.size());
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i) {
        QVariant value = block(list.at(i), i, &stop);
        if (!value.isValid()) {
            reportInvalidMapResult();
            value = QVariant::fromValue(nullptr);
        }
        result.append(std::move(value));
    }
    return result;
}

QVariantList kq_filter(const QVariantList &list, const KQListBlock<bool> &block)
{
    QVariantList result;
    KQAssert(block != nullptr, result);
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i) {
        if (block(list.at(i), i, &stop))
            result.append(list.at(i));
    }
    return result;
}

QVariantList kq_mapAndFilter(const QVariantList &list, const KQListBlock<QVariant> &block)
{
    QVariantList result;
    KQAssert(block != nullptr, result);
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i) {
        QVariant value = block(list.at(i), i, &stop);
        if (value.isValid())
            result.append(std::move(value));
    }
    return result;
}

void kq_subpool(const std::function<void()> &block)
{
    KQAssert(block != nullptr);
    if (!QCoreApplication::instance()) {
        block();
        return;
    }
    SubpoolRunner runner;
    SubpoolEvent event(block);
    QCoreApplication::sendEvent(&runner, &event);
}
