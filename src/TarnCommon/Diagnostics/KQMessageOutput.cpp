#include "KQMessageOutput_p.h"

#include <TarnCommon/KQLog.h>

#include <cstdio>
#include <cstring>

// Unmangled like the library's other parameterless functions.
extern "C" const QLoggingCategory &TARNCOMMON_LOG()
{
    static const QLoggingCategory category("tarn.common");
    return category;
}

extern "C" const QLoggingCategory &TARNCOMMON_ASSERT_LOG()
{
    static const QLoggingCategory category("tarn.common.assert");
    return category;
}

namespace {

QtMessageHandler g_nextHandler = nullptr;

bool isCategory(const QMessageLogContext &context, const QLoggingCategory &category)
{
    return context.category && std::strcmp(context.category, category.categoryName()) == 0;
}

void write(FILE *stream, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
    std::fflush(stream);
}

// Qt's default handler would prefix the category and send everything to
// standard error. Unless the application installs a handler of its own (which
// then receives these messages) or asks for a message pattern, the library's
// messages keep their plain form: log lines on standard output, assertion
// reports on standard error between empty lines.
void tarnMessageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    static const bool patternRequested = qEnvironmentVariableIsSet("QT_MESSAGE_PATTERN");
    if (!patternRequested) {
        const KQMessageOutput::Printed printed = KQMessageOutput::printedForm(context, message);
        if (printed.stream) {
            write(printed.stream, printed.bytes);
            return;
        }
    }
    if (g_nextHandler)
        g_nextHandler(type, context, message);
}

// Installed when the library is loaded, so that any handler the application
// installs later takes precedence.
void installMessageHandler()
{
    g_nextHandler = qInstallMessageHandler(tarnMessageHandler);
}
Q_CONSTRUCTOR_FUNCTION(installMessageHandler)

QByteArray utf8(const QString &text)
{
    return text.toUtf8();
}

} // namespace

namespace KQMessageOutput {

Printed printedForm(const QMessageLogContext &context, const QString &message)
{
    if (isCategory(context, TARNCOMMON_LOG()))
        return {stdout, message.toUtf8() + '\n'};
    if (isCategory(context, TARNCOMMON_ASSERT_LOG()))
        return {stderr, '\n' + message.toUtf8() + "\n\n"};
    return {};
}

void warning(const char *file, int64_t line, const char *function, const QString &text)
{
    QMessageLogger(file, int(line), function).warning(TARNCOMMON_LOG(), "%s", utf8(text).constData());
}

void error(const char *file, int64_t line, const char *function, const QString &text)
{
    QMessageLogger(file, int(line), function).critical(TARNCOMMON_LOG(), "%s", utf8(text).constData());
}

void assertion(const char *file, int64_t line, const char *function, const QString &report)
{
    QMessageLogger(file, int(line), function).critical(TARNCOMMON_ASSERT_LOG(), "%s", utf8(report).constData());
}

} // namespace KQMessageOutput
