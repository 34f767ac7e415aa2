#pragma once

#include <TarnCommon/KQDebugBreak.h>

#ifdef __cplusplus
#  include <cstdarg>
#  include <cstdint>
#else
#  include <stdarg.h>
#  include <stdint.h>
#endif

// The compiler's full name of the calling function ("void KQTabView::selectTab(KQTab*)").
#if defined(__GNUC__) || defined(__clang__)
#  define KQ_FUNCTION_NAME __PRETTY_FUNCTION__
#elif defined(_MSC_VER)
#  define KQ_FUNCTION_NAME __FUNCSIG__
#else
#  define KQ_FUNCTION_NAME __func__
#endif

#if defined(__GNUC__) || defined(__clang__)
#  define KQ_PRINTF_FORMAT(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#  define KQ_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

// Warnings go to standard output as "WARNING -- <text>", errors as
// "!!! ERROR !!! -- <text>" followed by a beep. The message is a printf-style
// UTF-8 format; a null format logs "Log message was nil".
// Call them through ZLLogWarning(...) and ZLLogError(...), which add the
// caller's file, line and function.
#ifdef __cplusplus
extern "C" {
#endif
TARNCOMMON_EXPORT void _ZLLogWarning(const char *file, int64_t line, const char *function,
                                      const char *format, ...) KQ_PRINTF_FORMAT(4, 5);
TARNCOMMON_EXPORT void _ZLLogError(const char *file, int64_t line, const char *function,
                                    const char *format, ...) KQ_PRINTF_FORMAT(4, 5);
// Informational entry points: they do nothing and evaluate nothing.
TARNCOMMON_EXPORT void _ZLLogMsg(const char *file, int64_t line, const char *function,
                                  const char *format, ...);
TARNCOMMON_EXPORT void _ZLLog(const char *file, int64_t line, const char *function,
                               const char *format, ...);
#ifdef __cplusplus
} // extern "C"
#endif

#define ZLLogWarning(...) _ZLLogWarning(__FILE__, __LINE__, KQ_FUNCTION_NAME, __VA_ARGS__)
#define ZLLogError(...) _ZLLogError(__FILE__, __LINE__, KQ_FUNCTION_NAME, __VA_ARGS__)
#define ZLLogMsg(...) ((void)0)
#define ZLLog(...) ((void)0)

#ifdef __cplusplus

#include <QtCore/QByteArray>
#include <QtCore/QDebug>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <concepts>
#include <type_traits>

// A message that is not a format string: logged as
// "<file>:<line>:<<class> <address>>: <description>".
struct KQLogObject
{
    QByteArray className;
    const void *address = nullptr;
    QString description;
};

// The log text of a format message (format == nullptr: the nil message).
// Exported under its bare name like the other log routines, though its
// result is a QString.
#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" TARNCOMMON_EXPORT QString _ZLMakeLogStr(const char *file, int64_t line, const char *function,
                                                    const char *format, va_list arguments);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif
TARNCOMMON_EXPORT QString _ZLMakeLogStr(const char *file, int64_t line, const char *function,
                                         const KQLogObject &object);
TARNCOMMON_EXPORT void _ZLLogWarning(const char *file, int64_t line, const char *function,
                                      const KQLogObject &object);
TARNCOMMON_EXPORT void _ZLLogError(const char *file, int64_t line, const char *function,
                                    const KQLogObject &object);

namespace KQLogDetail {

template<typename T>
concept FormatLike = std::is_convertible_v<const T &, const char *>
                     || std::is_same_v<std::remove_cvref_t<T>, QString>;

template<typename T>
concept QObjectPointer = std::is_pointer_v<T>
                         && std::is_base_of_v<QObject, std::remove_cv_t<std::remove_pointer_t<T>>>;

template<typename T>
QString debugText(const T &value)
{
    QString text;
    QDebug(&text).noquote().nospace() << value;
    return text;
}

// Describes any value QDebug can print; a QObject by its meta-object.
// Returns false for a null QObject pointer, which is the nil message.
template<typename T>
bool describe(const T &value, KQLogObject &object)
{
    if constexpr (QObjectPointer<T>) {
        if (!value)
            return false;
        object.className = value->metaObject()->className();
        object.address = value;
        object.description = debugText(value);
    } else if constexpr (std::is_same_v<T, QVariant>) {
        object.className = value.typeName() ? QByteArray(value.typeName()) : QByteArray("QVariant");
        object.address = &value;
        object.description = debugText(value);
    } else {
        object.className = QByteArray(QMetaType::fromType<T>().name());
        object.address = &value;
        object.description = debugText(value);
    }
    return true;
}

} // namespace KQLogDetail

// QString formats: the same as the UTF-8 form (exactly QString, so that a
// string literal still picks the C routine).
template<typename String, typename... Arguments>
    requires std::same_as<String, QString>
void _ZLLogWarning(const char *file, int64_t line, const char *function, const String &format,
                   Arguments... arguments)
{
    const QByteArray utf8 = format.toUtf8();
    _ZLLogWarning(file, line, function, format.isNull() ? nullptr : utf8.constData(), arguments...);
}

template<typename String, typename... Arguments>
    requires std::same_as<String, QString>
void _ZLLogError(const char *file, int64_t line, const char *function, const String &format,
                 Arguments... arguments)
{
    const QByteArray utf8 = format.toUtf8();
    _ZLLogError(file, line, function, format.isNull() ? nullptr : utf8.constData(), arguments...);
}

// Any other message object (a QObject, a QVariant, a list...) is described.
template<typename T>
    requires(!KQLogDetail::FormatLike<T>)
void _ZLLogWarning(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (KQLogDetail::describe(message, object))
        _ZLLogWarning(file, line, function, object);
    else
        _ZLLogWarning(file, line, function, static_cast<const char *>(nullptr));
}

template<typename T>
    requires(!KQLogDetail::FormatLike<T>)
void _ZLLogError(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (KQLogDetail::describe(message, object))
        _ZLLogError(file, line, function, object);
    else
        _ZLLogError(file, line, function, static_cast<const char *>(nullptr));
}

template<typename T>
    requires(!KQLogDetail::FormatLike<T>)
QString _ZLMakeLogStr(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (!KQLogDetail::describe(message, object))
        return QStringLiteral("Log message was nil");
    return _ZLMakeLogStr(file, line, function, object);
}

#endif // __cplusplus
