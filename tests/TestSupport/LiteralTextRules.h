#pragma once

// The character-set string operations done step by step as their rules are
// worded: slow (the replacement is quadratic) but plainly right. The tests and
// the fuzz targets compare the library's one-pass versions against these.
#include <TarnCommon/KQCharacterSet.h>

#include <QtCore/QString>

#include <optional>

namespace LiteralTextRules {

// Find the first member from the start, replace its first unit, again and
// again. Gives up (nullopt) after maxSteps replacements.
inline std::optional<QString> literalReplace(QString s, const KQCharacterSet &set, const QString &replacement,
                                             int maxSteps)
{
    for (int step = 0;; ++step) {
        const KQCharacterRange found = set.rangeOfCharacterInString(s);
        if (!found.isFound())
            return s;
        if (step == maxSteps)
            return std::nullopt;
        s.replace(found.location, 1, replacement);
    }
}

// Delete the member found, search again from where it was.
inline QString literalRemove(QString s, const KQCharacterSet &set)
{
    KQCharacterRange found = set.rangeOfCharacterInString(s);
    while (found.isFound()) {
        s.remove(found.location, found.length);
        found = set.rangeOfCharacterInString(s, found.location);
    }
    return s;
}

// Insert the escape before each member unit, stepping over what was inserted.
inline QString literalEscape(QString s, const KQCharacterSet &set, const QString &escape)
{
    for (qsizetype i = 0; i < s.size(); ++i) {
        if (set.characterIsMember(s.at(i).unicode())) {
            s.insert(i, escape);
            i += escape.size();
        }
    }
    return s;
}

} // namespace LiteralTextRules
