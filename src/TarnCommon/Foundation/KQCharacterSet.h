/*! \file KQCharacterSet.h
    \brief A set of Unicode code points, tested by UTF-16 unit or by whole character. */
#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QSharedDataPointer>
#include <QtCore/QString>
#include <QtCore/QStringView>
#include <QtCore/QMetaType>

class KQCharacterSetData;

/*! \brief Where a character was found in a string, in UTF-16 units.

    A not-found result has the location -1 and the length 0. */
struct KQCharacterRange
{
    qsizetype location = -1; //!< Index of the found character's first unit, or -1.
    qsizetype length = 0;    //!< 2 for a surrogate pair, 1 for any other unit, 0 when not found.

    /*! True when a character was found. */
    bool isFound() const { return location >= 0; }
};

/*! \brief A set of Unicode code points, a small implicitly shared value.

    Membership of the basic plane (including the surrogate values themselves) is
    a bitmap; the supplementary planes are kept as sorted ranges. A
    default-constructed set is null: it has no members and the string
    operations refuse it. Every factory below gives a non-null set. */
class TARNCOMMON_EXPORT KQCharacterSet
{
public:
    /*! A null set. */
    KQCharacterSet();
    /*! Copies share their data until one is changed. */
    KQCharacterSet(const KQCharacterSet &other);
    /*! Assigns a shared copy. */
    KQCharacterSet &operator=(const KQCharacterSet &other);
    ~KQCharacterSet();

    /*! True for a default-constructed set. */
    bool isNull() const;

    /*! Unicode decimal digits (general category Nd), in every plane. */
    static KQCharacterSet decimalDigitCharacterSet();
    /*! Space separators (general category Zs) and the tab, U+0009. */
    static KQCharacterSet whitespaceCharacterSet();
    /*! U+000A to U+000D, U+0085, U+2028 and U+2029. */
    static KQCharacterSet newlineCharacterSet();
    /*! Separators (categories Zs, Zl, Zp), U+0009 to U+000D and U+0085:
        what a template skips between its parts. */
    static KQCharacterSet whitespaceAndNewlineCharacterSet();
    /*! Letters and marks (categories L* and M*). */
    static KQCharacterSet letterCharacterSet();
    /*! Letters, marks and numbers (categories L*, M* and N*). */
    static KQCharacterSet alphanumericCharacterSet();
    /*! Punctuation (categories P*). */
    static KQCharacterSet punctuationCharacterSet();
    /*! Control and format characters (categories Cc and Cf). */
    static KQCharacterSet controlCharacterSet();

    /*! The characters of \a characters, a surrogate pair counting as its code
        point and a lone surrogate as its own unit value. A null string gives an
        empty (not null) set. */
    static KQCharacterSet characterSetWithCharactersInString(const QString &characters);
    /*! The code points \a first to \a last, both included. Values above U+10FFFF
        are ignored; a range with \a last < \a first is empty. */
    static KQCharacterSet characterSetWithRange(char32_t first, char32_t last);

    /*! Every code point up to U+10FFFF that this set lacks (a null set stays null). */
    KQCharacterSet invertedSet() const;
    /*! Adds the members of \a other. */
    void formUnionWithCharacterSet(const KQCharacterSet &other);
    /*! Adds the code points \a first to \a last. */
    void addCharactersInRange(char32_t first, char32_t last);
    /*! Adds the characters of \a characters, read as characterSetWithCharactersInString() does. */
    void addCharactersInString(const QString &characters);

    /*! Membership of one UTF-16 unit, taken as the code point of its value. */
    bool characterIsMember(char16_t unit) const;
    /*! Membership of one code point. */
    bool longCharacterIsMember(char32_t codePoint) const;

    /*! The first member of \a string in [\a from, \a from + \a length) (the rest of
        the string when \a length is negative). A surrogate pair inside the range
        is tested as its code point and found as one character of length 2; a
        lone surrogate is tested as its unit. */
    KQCharacterRange rangeOfCharacterInString(QStringView string, qsizetype from = 0,
                                              qsizetype length = -1) const;

    /*! Equal members (null sets equal only each other). */
    bool operator==(const KQCharacterSet &other) const;
    /*! Not operator==(). */
    bool operator!=(const KQCharacterSet &other) const { return !(*this == other); }

private:
    explicit KQCharacterSet(KQCharacterSetData *data);
    QSharedDataPointer<KQCharacterSetData> d;
};

Q_DECLARE_METATYPE(KQCharacterSet)
