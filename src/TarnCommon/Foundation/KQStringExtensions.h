/*! \file KQStringExtensions.h
    \brief String templates with named arguments, character-set escaping, removal
    and replacement, containment and Pascal strings. */
#pragma once

#include <TarnCommon/KQCharacterSet.h>

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVariantHash>
#include <QtCore/QVariantMap>

#include <functional>

#if defined(__clang__)
#  pragma clang diagnostic push
#  pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
/*! \brief The text of a Pascal string: a length byte, then that many bytes.

    The bytes must be ASCII: a byte above 127 gives a null string, as does a
    null \a pascalString (reported "pascalString"). NUL bytes are kept, so the
    result may hold U+0000. At most 255 characters. */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QString kq_stringFromPString(const unsigned char *pascalString);
#if defined(__clang__)
#  pragma clang diagnostic pop
#endif

/*! \brief A copy of \a string with \a escape inserted before every UTF-16 unit
    that is a member of \a chars.

    The test is per unit: a surrogate pair is two units, each tested on its own.
    The inserted escape is never examined. A null \a string gives a null string;
    a null set (reported "chars") or a null escape (reported "escape") gives a
    null string. */
TARNCOMMON_EXPORT QString kq_stringByEscapingCharactersInSet(const QString &string, const KQCharacterSet &chars,
                                                             const QString &escape);

/*! \brief A copy of \a string without the members of \a chars, by character.

    A surrogate pair is tested and removed as one character (its code point); a
    lone surrogate is tested as its unit. A null \a string gives a null string;
    a null set is reported ("chars") and gives a null string. */
TARNCOMMON_EXPORT QString kq_stringByRemovingCharactersInSet(const QString &string, const KQCharacterSet &chars);

/*! \brief A copy of \a string in which each member of \a chars is replaced by \a replacement.

    The result is the one of this rule: find the first member (by character, as
    kq_stringByRemovingCharactersInSet() does), replace its first UTF-16 unit by
    \a replacement, and start again from the beginning until no member is left.
    So a member that is a surrogate pair leaves its second unit behind. The work
    is linear in the result's length.

    \a replacement must hold no member of \a chars: otherwise (and for a null
    replacement) the contract failure
    "[replacement rangeOfCharacterFromSet:chars].location == NSNotFound" is
    reported and the result is a null string. Surrogate halves can still join
    the text around the replacement into members; where that would make the rule
    above go on forever, "replacement never completes a member" is reported and
    the result is a null string. A null \a string gives a null string; a null set
    is reported ("chars"). */
TARNCOMMON_EXPORT QString kq_stringByReplacingCharactersInSet(const QString &string, const KQCharacterSet &chars,
                                                              const QString &replacement);

/*! \brief Compare options of kq_containsString(), as bits. */
enum KQStringCompareOption : unsigned {
    KQCaseInsensitiveSearch = 1, //!< Letters match regardless of case (Qt::CaseInsensitive).
    KQLiteralSearch = 2,         //!< Units compared as they are; always so here, accepted for completeness.
    KQBackwardsSearch = 4,       //!< Searched from the end; the answer of a containment test is the same.
    KQAnchoredSearch = 8,        //!< Only at the start (at the end with KQBackwardsSearch).
};

/*! \brief True when \a string contains \a other (case sensitive).

    An empty or null \a other is never contained, nor is anything in a null string. */
TARNCOMMON_EXPORT bool kq_containsString(const QString &string, const QString &other);
/*! \brief True when \a string contains \a other under \a options (KQStringCompareOption bits).

    Unknown bits are ignored. An empty or null \a other is never contained. */
TARNCOMMON_EXPORT bool kq_containsString(const QString &string, const QString &other, unsigned options);

/*! \brief Looks a template argument up by name; an invalid QVariant means "no such argument". */
using KQArgumentLookup = std::function<QVariant(const QString &name)>;

/*! \brief The text a template inserts for an argument value.

    A string as it is; an invalid QVariant (no argument) "<nil>"; a QVariant
    holding \c nullptr "<null>"; a boolean "1" or "0"; integers in decimal;
    floating-point numbers in their shortest exact form ("0.1", "1e+20"); a list
    "(\n    a,\n    b\n)" and a map "{\n    key = value;\n}" with nested values
    indented and texts quoted unless they are letters, digits and "_.$/-";
    byte arrays as "<hex bytes>"; anything else as its QVariant string form or,
    without one, "<TypeName>". */
TARNCOMMON_EXPORT QString kq_description(const QVariant &value);

/*! \brief Fills the template \a format, replacing each "${name}" by the
    argument \a lookup gives for name (through kq_description()).

    White space and newlines are skipped before each step of the scan, as a text
    scanner does by default: white space after a reference, at the start of the
    format and between "${" and the name is dropped, white space inside and at
    the end of literal text and before "}" (part of the name) is kept. "${}" is
    dropped and leaves its "}" as text; an unterminated reference runs to the end
    of the format; a trailing "${" is dropped. A null \a format is reported
    ("format") and gives a null string. */
TARNCOMMON_EXPORT QString kq_stringWithFormat(const QString &format, const KQArgumentLookup &lookup);
/*! \brief Fills \a format from a map of arguments by name. */
TARNCOMMON_EXPORT QString kq_stringWithFormat(const QString &format, const QVariantMap &argsByName);
/*! \brief Fills \a format from a hash of arguments by name. */
TARNCOMMON_EXPORT QString kq_stringWithFormat(const QString &format, const QVariantHash &argsByName);
