#pragma once

/*!
    \file KQBindings.h
    \brief Two-way bindings between a property of a view and a key path of a
    model, with value transformers registered by name.

    A binding ties a declared property of a view (any QObject, usually a
    widget) to a key path of a model: dotted names of declared QObject
    properties, where a property holding a QVariantMap lets the remaining
    names pick keys inside that map. The view follows the model (every NOTIFY
    signal along the key path is observed, and the forward transformer
    applied); edits in the view go back to the model when the view's own
    NOTIFY signal fires, through kq_propagateValue().

    \code
    kq_bind(slider, QStringLiteral("value"), document, QStringLiteral("page.zoom"),
            {{QLatin1String(NSValueTransformerNameBindingOption), QStringLiteral("PercentTransformer")}});
    \endcode

    A binding lives as long as both its view and its model; binding the same
    view property again replaces it.
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVariantMap>

#include <functional>
#include <memory>

/*! The binding-information key of the bound model object: "NSObservedObject". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NSObservedObjectKey[];
/*! The binding-information key of the model key path: "NSObservedKeyPath". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NSObservedKeyPathKey[];
/*! The binding-information key of the options map (present only when options were given): "NSOptions". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NSOptionsKey[];
/*! The option holding a transformer object (a KQValueTransformer pointer as a QVariant): "NSValueTransformer". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NSValueTransformerBindingOption[];
/*! The option naming a registered transformer: "NSValueTransformerName". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char NSValueTransformerNameBindingOption[];

class KQValueTransformerPrivate;

/*!
    \brief Converts a model value for a view and, when allowed, back.

    Subclass it, or make one from functions with create(). Transformers can
    be registered under a name (setValueTransformer()) and named in a
    binding's options.
*/
class TARNCOMMON_EXPORT KQValueTransformer : public QObject
{
    Q_OBJECT

public:
    /*! A transformer that passes values through unchanged, owned by \a parent. */
    explicit KQValueTransformer(QObject *parent = nullptr);
    ~KQValueTransformer() override;

    /*!
        A transformer made of \a forward and \a reverse, owned by \a parent.
        Without \a reverse it does not allow reverse transformation.
    */
    static KQValueTransformer *create(std::function<QVariant(const QVariant &)> forward,
                                      std::function<QVariant(const QVariant &)> reverse = {},
                                      QObject *parent = nullptr);

    /*! The view's form of the model value \a value; the default gives \a value back. */
    virtual QVariant transformedValue(const QVariant &value) const;
    /*!
        The model's form of the view value \a value; only asked when
        allowsReverseTransformation() is true. The default gives
        transformedValue(\a value).
    */
    virtual QVariant reverseTransformedValue(const QVariant &value) const;
    /*! Whether reverseTransformedValue() may be asked; true by default. */
    virtual bool allowsReverseTransformation() const;

    /*!
        Registers \a transformer under \a name, replacing any earlier one
        (which is deleted if the registry owned it); a null \a transformer
        removes the name. A transformer without a parent becomes owned by the
        registry. An empty name is reported and ignored.
    */
    static void setValueTransformer(KQValueTransformer *transformer, const QString &name);
    /*! The transformer registered under \a name; nullptr when there is none. */
    static KQValueTransformer *valueTransformerForName(const QString &name);
    /*! The names of all registered transformers, sorted. */
    static QStringList valueTransformerNames();

private:
    std::unique_ptr<KQValueTransformerPrivate> const d;
};

/*!
    Binds \a view's property \a binding to \a keyPath of \a model, with
    \a options (NSValueTransformerBindingOption, NSValueTransformerNameBindingOption),
    and sets the view property from the model at once. An existing binding of
    the same view property is replaced. Answers false, with a report and
    nothing bound, when \a view or \a model is null, \a binding is not a
    declared writable property of \a view, or \a keyPath is empty, has an
    empty name, or names a property a reached object does not declare.
*/
TARNCOMMON_EXPORT bool kq_bind(QObject *view, const QString &binding, QObject *model, const QString &keyPath,
                               const QVariantMap &options = {});

/*! Removes the binding of \a view's property \a binding; nothing happens when there is none. */
TARNCOMMON_EXPORT void kq_unbind(QObject *view, const QString &binding);

/*!
    What \a view's property \a binding is bound to: the model under
    NSObservedObjectKey (a QObject pointer), the key path under
    NSObservedKeyPathKey and, when options were given, the options under
    NSOptionsKey. Empty when the property is not bound (or its model is gone).
*/
TARNCOMMON_EXPORT QVariantMap kq_infoForBinding(const QObject *view, const QString &binding);

/*!
    The model value behind \a view's bound property \a binding, as the model
    holds it (no transformer applied); invalid when it is not bound or the
    key path does not reach a value. A null \a binding is reported.
*/
TARNCOMMON_EXPORT QVariant kq_valueForBinding(const QObject *view, const QString &binding);

/*!
    Stores \a value, as the view would give it, into the model behind
    \a view's bound property \a binding. The transformer is the options'
    NSValueTransformerBindingOption object when it is set and not the null
    object, else the transformer registered under
    NSValueTransformerNameBindingOption; with one that does not allow
    reverse transformation the call is reported and nothing is stored,
    otherwise the value is reverse-transformed first. A null \a binding is
    reported; an unbound one does nothing. The model is written once, or not
    at all when the value cannot be stored (reported).
*/
TARNCOMMON_EXPORT void kq_propagateValue(QObject *view, const QVariant &value, const QString &binding);

/*!
    The value at \a keyPath of \a object (dotted declared property names,
    then keys inside a QVariantMap property); invalid when the path does not
    reach a value. A name that a reached object does not declare is reported.
*/
TARNCOMMON_EXPORT QVariant kq_valueForKeyPath(const QObject *object, const QString &keyPath);

/*!
    Stores \a value at \a keyPath of \a object: sets the last declared
    property, or the key inside a map property (the map is written back
    whole). Answers false, with a report and nothing changed, when the path
    does not reach a holder, a name is not declared, the property is
    read-only, or the value does not convert to its type.
*/
TARNCOMMON_EXPORT bool kq_setValueForKeyPath(QObject *object, const QVariant &value, const QString &keyPath);
