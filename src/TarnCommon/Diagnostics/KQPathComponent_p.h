#pragma once

#include <cstring>

// The one scan behind every "last path component" of the diagnostics. Two
// separator rules are kept on purpose: log texts also cut at backslashes,
// assertion reports and KQLastPathComponentOfPath only at slashes.
namespace KQPathComponent {

enum Separators { SlashOnly, SlashOrBackslash };

inline const char *last(const char *path, Separators separators)
{
    if (!path)
        return "NULL";
    const std::size_t length = std::strlen(path);
    if (length == 0)
        return path; // never step before the first character
    const char *position = path + length - 1;
    while (position > path) {
        const char before = position[-1];
        if (before == '/' || (separators == SlashOrBackslash && before == '\\'))
            break;
        --position;
    }
    return position;
}

} // namespace KQPathComponent
