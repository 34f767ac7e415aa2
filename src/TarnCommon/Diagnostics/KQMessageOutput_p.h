#pragma once

#include <QtCore/QString>

#include <cstdint>

// The library's diagnostics leave through Qt's message system, in two
// categories; these send one message each, with the caller's location.
namespace KQMessageOutput {

void warning(const char *file, int64_t line, const char *function, const QString &text);
void error(const char *file, int64_t line, const char *function, const QString &text);
void assertion(const char *file, int64_t line, const char *function, const QString &report);

} // namespace KQMessageOutput
