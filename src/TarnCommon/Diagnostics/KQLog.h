#pragma once

#include <TarnCommon/KQDebugBreak.h>

#ifdef __cplusplus
#  include <cstdarg>
#  include <cstdint>
#else
#  include <stdarg.h>
#  include <stdint.h>
#endif

/*!
    \file KQLog.h
    \brief The library's warning and error log, sent through Qt's message system.

    Warnings are printed as "WARNING -- <text>", errors as
    "!!! ERROR !!! -- <text>" followed by a beep (only in the GUI thread of a
    QApplication). Call them through ZLLogWarning() and ZLLogError(), which
    add the caller's file, line and function:
    \code
    ZLLogWarning("%d rows could not be shown", hiddenRows);
    ZLLogError(QStringLiteral("no tab at %1").arg(index));
    ZLLogWarning(someWidget); // a described object: "<file>:<line>:<<class> <address>>: <description>"
    \endcode
*/

/*!
    \def KQ_FUNCTION_NAME
    The compiler's full name of the calling function
    ("void KQTabView::selectTab(KQTab*)"), as the log and assertion macros record it.
*/
#if defined(__GNUC__) || defined(__clang__)
#  define KQ_FUNCTION_NAME __PRETTY_FUNCTION__
#elif defined(_MSC_VER)
#  define KQ_FUNCTION_NAME __FUNCSIG__
#else
#  define KQ_FUNCTION_NAME __func__
#endif

/*!
    \def KQ_PRINTF_FORMAT(formatIndex, firstArgument)
    Lets the compiler check a printf-style format (parameter \a formatIndex,
    counted from 1) against the arguments from \a firstArgument on; empty
    where the compiler cannot.
*/
#if defined(__GNUC__) || defined(__clang__)
#  define KQ_PRINTF_FORMAT(formatIndex, firstArgument) __attribute__((format(printf, formatIndex, firstArgument)))
#else
#  define KQ_PRINTF_FORMAT(formatIndex, firstArgument)
#endif

#ifdef __cplusplus
extern "C" {
#endif
/*!
    Logs a warning, "WARNING -- <text>", made from the printf-style UTF-8
    \a format and the arguments after it; a null \a format logs
    "Log message was nil". \a file, \a line and \a function are the
    caller's location (given to a message handler as its context). Then
    calls KQDebugBreak() when g_breakOnWarningsAndErrors is set.
*/
TARNCOMMON_EXPORT void _ZLLogWarning(const char *file, int64_t line, const char *function,
                                      const char *format, ...) KQ_PRINTF_FORMAT(4, 5);
/*!
    Logs an error, "!!! ERROR !!! -- <text>", and beeps; otherwise as
    _ZLLogWarning().
*/
TARNCOMMON_EXPORT void _ZLLogError(const char *file, int64_t line, const char *function,
                                    const char *format, ...) KQ_PRINTF_FORMAT(4, 5);
/*! An informational entry point: it does nothing and evaluates nothing. */
TARNCOMMON_EXPORT void _ZLLogMsg(const char *file, int64_t line, const char *function,
                                  const char *format, ...);
/*! An informational entry point: it does nothing and evaluates nothing. */
TARNCOMMON_EXPORT void _ZLLog(const char *file, int64_t line, const char *function,
                               const char *format, ...);
#ifdef __cplusplus
} // extern "C"
#endif

/*!
    \def ZLLogWarning(...)
    Logs a warning with the caller's location: a printf-style format (UTF-8
    text or, in C++, a QString) and its arguments, or one object to describe.
*/
#define ZLLogWarning(...) _ZLLogWarning(__FILE__, __LINE__, KQ_FUNCTION_NAME, __VA_ARGS__)
/*!
    \def ZLLogError(...)
    Logs an error with the caller's location, taking what ZLLogWarning() takes.
*/
#define ZLLogError(...) _ZLLogError(__FILE__, __LINE__, KQ_FUNCTION_NAME, __VA_ARGS__)
/*!
    \def ZLLogMsg(...)
    An informational message: compiled out, its arguments are not evaluated.
*/
#define ZLLogMsg(...) ((void)0)
/*!
    \def ZLLog(...)
    An informational message: compiled out, its arguments are not evaluated.
*/
#define ZLLog(...) ((void)0)

#ifdef __cplusplus

#include <QtCore/QByteArray>
#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMetaType>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <type_traits>

/*!
    \brief The logging category of the library's warnings and errors, "tarn.common".

    Warnings are sent as QtWarningMsg, errors as QtCriticalMsg, each with the
    text as printed ("WARNING -- ...", "!!! ERROR !!! -- ..."), so that an
    application's message handler receives them, QT_LOGGING_RULES can silence
    them ("tarn.common.warning=false") and tests can expect them with
    QTest::ignoreMessage(). Without a handler of the application's own they
    are written to standard output, byte for byte as printed before.
*/
extern "C" TARNCOMMON_EXPORT const QLoggingCategory &TARNCOMMON_LOG();

/*!
    \brief The logging category of assertion reports, "tarn.common.assert".

    A report is sent as one QtCriticalMsg whose text is the banner line, the
    assertion line and the location line, joined by newlines. Without a
    handler of the application's own it is written to standard error between
    two empty lines.
*/
extern "C" TARNCOMMON_EXPORT const QLoggingCategory &TARNCOMMON_ASSERT_LOG();

/*!
    \brief A message that is not a format string, described for the log.

    Logged as "<file>:<line>:<<class> <address>>: <description>".
*/
struct KQLogObject
{
    QByteArray className;        //!< the class name shown in angle brackets
    const void *address = nullptr; //!< the address shown after the class name
    QString description;         //!< the object's description
};

/*!
    The log text of a format message; a null \a format gives "Log message was nil".
    Exported under its bare name like the other log routines, though its
    result is a QString.
*/
#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" TARNCOMMON_EXPORT QString _ZLMakeLogStr(const char *file, int64_t line, const char *function,
                                                    const char *format, va_list arguments);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif
/*! The log text of a described object: "<file>:<line>:<<class> <address>>: <description>". */
TARNCOMMON_EXPORT QString _ZLMakeLogStr(const char *file, int64_t line, const char *function,
                                         const KQLogObject &object);
/*! Logs a described object as a warning. */
TARNCOMMON_EXPORT void _ZLLogWarning(const char *file, int64_t line, const char *function,
                                      const KQLogObject &object);
/*! Logs a described object as an error. */
TARNCOMMON_EXPORT void _ZLLogError(const char *file, int64_t line, const char *function,
                                    const KQLogObject &object);

/*! \cond INTERNAL */
namespace KQLogDetail {

template<typename T>
using Bare = std::remove_cv_t<std::remove_reference_t<T>>;

template<typename T>
constexpr bool isFormatLike = std::is_convertible_v<const T &, const char *>
                              || std::is_same_v<Bare<T>, QString>;

template<typename T>
constexpr bool isQObjectPointer = std::is_pointer_v<T>
                                  && std::is_base_of_v<QObject, std::remove_cv_t<std::remove_pointer_t<T>>>;

// What C varargs can carry: numbers, enumerations and pointers. A QString or
// any other class object would be undefined behaviour, so it is refused.
template<typename T>
constexpr bool isVarargSafe = std::is_arithmetic_v<T> || std::is_enum_v<T> || std::is_pointer_v<T>
                              || std::is_null_pointer_v<T>;

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
    if constexpr (isQObjectPointer<T>) {
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
/*! \endcond */

/*!
    Logs a warning whose format is a QString (the same as the UTF-8 form). Only
    numbers, enumerations and pointers may follow: anything else is refused
    at compile time. Exactly QString, so that a string literal still picks the
    C routine.
*/
template<typename String, typename... Arguments,
         std::enable_if_t<std::is_same_v<String, QString>, int> = 0>
void _ZLLogWarning(const char *file, int64_t line, const char *function, const String &format,
                   Arguments... arguments)
{
    static_assert((KQLogDetail::isVarargSafe<Arguments> && ...),
                  "log format arguments must be numbers, enumerations or pointers");
    const QByteArray utf8 = format.toUtf8();
    _ZLLogWarning(file, line, function, format.isNull() ? nullptr : utf8.constData(), arguments...);
}

/*! Logs an error whose format is a QString; the same rules as the warning form. */
template<typename String, typename... Arguments,
         std::enable_if_t<std::is_same_v<String, QString>, int> = 0>
void _ZLLogError(const char *file, int64_t line, const char *function, const String &format,
                 Arguments... arguments)
{
    static_assert((KQLogDetail::isVarargSafe<Arguments> && ...),
                  "log format arguments must be numbers, enumerations or pointers");
    const QByteArray utf8 = format.toUtf8();
    _ZLLogError(file, line, function, format.isNull() ? nullptr : utf8.constData(), arguments...);
}

/*! Logs any other message object (a QObject, a QVariant, a list...) as a warning, described. */
template<typename T, std::enable_if_t<!KQLogDetail::isFormatLike<T>, int> = 0>
void _ZLLogWarning(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (KQLogDetail::describe(message, object))
        _ZLLogWarning(file, line, function, object);
    else
        _ZLLogWarning(file, line, function, static_cast<const char *>(nullptr));
}

/*! Logs any other message object as an error, described. */
template<typename T, std::enable_if_t<!KQLogDetail::isFormatLike<T>, int> = 0>
void _ZLLogError(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (KQLogDetail::describe(message, object))
        _ZLLogError(file, line, function, object);
    else
        _ZLLogError(file, line, function, static_cast<const char *>(nullptr));
}

/*! The log text of any other message object; a null QObject gives "Log message was nil". */
template<typename T, std::enable_if_t<!KQLogDetail::isFormatLike<T>, int> = 0>
QString _ZLMakeLogStr(const char *file, int64_t line, const char *function, const T &message)
{
    KQLogObject object;
    if (!KQLogDetail::describe(message, object))
        return QStringLiteral("Log message was nil");
    return _ZLMakeLogStr(file, line, function, object);
}

#endif // __cplusplus
