#pragma once

#include <TarnCommon/KQBindings.h>

#include <QtCore/QList>
#include <QtCore/QMetaObject>
#include <QtCore/QPointer>

// Where a key path ends: a declared property of an object, and the keys
// below it when that property holds a map.
struct KQKeyPathTarget
{
    QObject *object = nullptr; // null when an object along the path is null
    QByteArray property;
    QStringList mapKeys;
    QList<QObject *> objectsAlongPath; // every object whose property was read, root first
    QString error; // set when the path names something undeclared
};

// Walks keyPath from root; reports nothing itself.
KQKeyPathTarget kq_resolveKeyPath(const QObject *root, const QString &keyPath);

// The transformer the options choose: the object first, then the name.
// *refused is set when the object option holds something that is not a transformer.
KQValueTransformer *kq_transformerForOptions(const QVariantMap &options, bool *refused = nullptr);

// One binding: a child of its view, so it goes with it; watches its model.
class KQBindingRecord : public QObject
{
    Q_OBJECT

public:
    KQBindingRecord(QObject *view, const QString &binding, QObject *model, const QString &keyPath,
                    const QVariantMap &options);

    static KQBindingRecord *find(const QObject *view, const QString &binding);

    QVariantMap info() const;
    bool alive() const { return !model.isNull(); }
    void rewire();

    QString binding;
    QPointer<QObject> model;
    QString keyPath;
    QVariantMap options;
    bool hadTransformerObject = false;
    QPointer<QObject> transformerObject;
    bool busy = false; // breaks update cycles through this binding

public Q_SLOTS:
    void modelChanged();
    void viewChanged();
    void pathObjectDestroyed();

private:
    QList<QMetaObject::Connection> m_modelConnections;
};
