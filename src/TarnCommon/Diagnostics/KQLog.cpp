#include <TarnCommon/KQLog.h>

#include "KQMessageOutput_p.h"
#include "KQPathComponent_p.h"

#include <QtCore/QThread>
#include <QtWidgets/QApplication>


namespace {

QString makeFormatText(const char *format, va_list arguments)
{
    if (!format)
        return QStringLiteral("Log message was nil");
    return QString::vasprintf(format, arguments);
}

// Errors beep, but only where there is a GUI to beep with: a command-line
// program linking the library has no QApplication, and other threads must not
// touch the GUI.
void beep()
{
    auto *application = qobject_cast<QApplication *>(QCoreApplication::instance());
    if (application && QThread::currentThread() == application->thread())
        QApplication::beep();
}

void logWarning(const char *file, int64_t line, const char *function, const QString &text)
{
    KQMessageOutput::warning(file, line, function, QStringLiteral("WARNING -- ") + text);
    if (g_breakOnWarningsAndErrors)
        KQDebugBreak();
}

void logError(const char *file, int64_t line, const char *function, const QString &text)
{
    KQMessageOutput::error(file, line, function, QStringLiteral("!!! ERROR !!! -- ") + text);
    beep();
    if (g_breakOnWarningsAndErrors)
        KQDebugBreak();
}

} // namespace

// A format message carries no location: file, line and function go unused.
QString _ZLMakeLogStr(const char *, int64_t, const char *, const char *format, va_list arguments)
{
    return makeFormatText(format, arguments);
}

QString _ZLMakeLogStr(const char *file, int64_t line, const char *, const KQLogObject &object)
{
    const char *component = KQPathComponent::last(file, KQPathComponent::SlashOrBackslash);
    return QString::asprintf("%s:%ld:<%s %p>: ", component, static_cast<long>(line),
                             object.className.constData(), object.address)
           + object.description;
}

void _ZLLogWarning(const char *file, int64_t line, const char *function, const KQLogObject &object)
{
    logWarning(file, line, function, _ZLMakeLogStr(file, line, function, object));
}

void _ZLLogError(const char *file, int64_t line, const char *function, const KQLogObject &object)
{
    logError(file, line, function, _ZLMakeLogStr(file, line, function, object));
}

extern "C" {

void _ZLLogWarning(const char *file, int64_t line, const char *function, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QString text = _ZLMakeLogStr(file, line, function, format, arguments);
    va_end(arguments);
    logWarning(file, line, function, text);
}

void _ZLLogError(const char *file, int64_t line, const char *function, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const QString text = _ZLMakeLogStr(file, line, function, format, arguments);
    va_end(arguments);
    logError(file, line, function, text);
}

void _ZLLogMsg(const char *, int64_t, const char *, const char *, ...) {}

void _ZLLog(const char *, int64_t, const char *, const char *, ...) {}

} // extern "C"
