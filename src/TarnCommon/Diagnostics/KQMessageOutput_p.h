#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

#include <cstdint>
#include <cstdio>

// The library's diagnostics leave through Qt's message system, in two
// categories; these send one message each, with the caller's location.
namespace KQMessageOutput {

void warning(const char *file, int64_t line, const char *function, const QString &text);
void error(const char *file, int64_t line, const char *function, const QString &text);
void assertion(const char *file, int64_t line, const char *function, const QString &report);

// How the default output prints one message: the stream and the bytes. The
// stream is null for a message that is not the library's.
struct Printed
{
    FILE *stream = nullptr;
    QByteArray bytes;
};
Printed printedForm(const QMessageLogContext &context, const QString &message);

} // namespace KQMessageOutput
