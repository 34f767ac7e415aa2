#include <TarnCommon/KQCharacterSet.h>

#include <QtCore/QChar>
#include <QtCore/QList>
#include <QtCore/QSharedData>

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr char32_t LastCodePoint = 0x10FFFF;
constexpr char32_t FirstSupplementary = 0x10000;

struct CodePointRange
{
    char32_t first;
    char32_t last;
    bool operator==(const CodePointRange &other) const = default;
};

} // namespace

class KQCharacterSetData : public QSharedData
{
public:
    std::array<quint64, 0x10000 / 64> basic{};
    // Sorted, disjoint, not adjacent.
    QList<CodePointRange> supplementary;

    bool hasBasic(char16_t unit) const { return (basic[unit >> 6] >> (unit & 63)) & 1; }
    void setBasic(char16_t unit) { basic[unit >> 6] |= quint64(1) << (unit & 63); }

    void addRange(char32_t first, char32_t last)
    {
        if (last > LastCodePoint)
            last = LastCodePoint;
        if (first > last)
            return;
        for (char32_t c = first; c <= last && c < FirstSupplementary; ++c)
            setBasic(char16_t(c));
        if (last < FirstSupplementary)
            return;
        addSupplementary({std::max(first, FirstSupplementary), last});
    }

    void addSupplementary(CodePointRange range)
    {
        QList<CodePointRange> merged;
        merged.reserve(supplementary.size() + 1);
        bool placed = false;
        for (const CodePointRange &r : std::as_const(supplementary)) {
            if (r.last + 1 < range.first) {
                merged.append(r);
            } else if (range.last + 1 < r.first) {
                if (!placed) {
                    merged.append(range);
                    placed = true;
                }
                merged.append(r);
            } else {
                range.first = std::min(range.first, r.first);
                range.last = std::max(range.last, r.last);
            }
        }
        if (!placed)
            merged.append(range);
        supplementary = std::move(merged);
    }

    bool hasSupplementary(char32_t c) const
    {
        auto it = std::upper_bound(supplementary.cbegin(), supplementary.cend(), c,
                                   [](char32_t v, const CodePointRange &r) { return v < r.first; });
        return it != supplementary.cbegin() && c <= (it - 1)->last;
    }
};

namespace {

// Builds a set once from a predicate over every code point.
template <typename Predicate>
KQCharacterSetData *buildFrom(Predicate member)
{
    auto *data = new KQCharacterSetData;
    for (char32_t c = 0; c < FirstSupplementary; ++c) {
        if (member(c))
            data->setBasic(char16_t(c));
    }
    char32_t start = 0;
    bool open = false;
    for (char32_t c = FirstSupplementary; c <= LastCodePoint + 1; ++c) {
        const bool in = c <= LastCodePoint && member(c);
        if (in && !open) {
            start = c;
            open = true;
        } else if (!in && open) {
            data->supplementary.append({start, c - 1});
            open = false;
        }
    }
    return data;
}

bool inCategories(char32_t c, std::initializer_list<QChar::Category> categories)
{
    const QChar::Category category = QChar::category(c);
    return std::find(categories.begin(), categories.end(), category) != categories.end();
}

bool isLetterOrMark(char32_t c)
{
    return QChar::isLetter(c) || QChar::isMark(c);
}

} // namespace

KQCharacterSet::KQCharacterSet() = default;
KQCharacterSet::KQCharacterSet(KQCharacterSetData *data)
    : d(data)
{
}
KQCharacterSet::KQCharacterSet(const KQCharacterSet &other) = default;
KQCharacterSet &KQCharacterSet::operator=(const KQCharacterSet &other) = default;
KQCharacterSet::~KQCharacterSet() = default;

bool KQCharacterSet::isNull() const
{
    return !d;
}

KQCharacterSet KQCharacterSet::decimalDigitCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) { return QChar::category(c) == QChar::Number_DecimalDigit; }));
    return set;
}

KQCharacterSet KQCharacterSet::whitespaceCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) {
        return c == 0x09 || QChar::category(c) == QChar::Separator_Space;
    }));
    return set;
}

KQCharacterSet KQCharacterSet::newlineCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) {
        return (c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029;
    }));
    return set;
}

KQCharacterSet KQCharacterSet::whitespaceAndNewlineCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) {
        return (c >= 0x09 && c <= 0x0D) || c == 0x85
            || inCategories(c, {QChar::Separator_Space, QChar::Separator_Line, QChar::Separator_Paragraph});
    }));
    return set;
}

KQCharacterSet KQCharacterSet::letterCharacterSet()
{
    static const KQCharacterSet set(buildFrom(isLetterOrMark));
    return set;
}

KQCharacterSet KQCharacterSet::alphanumericCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) { return isLetterOrMark(c) || QChar::isNumber(c); }));
    return set;
}

KQCharacterSet KQCharacterSet::punctuationCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) { return QChar::isPunct(c); }));
    return set;
}

KQCharacterSet KQCharacterSet::controlCharacterSet()
{
    static const KQCharacterSet set(buildFrom([](char32_t c) {
        return inCategories(c, {QChar::Other_Control, QChar::Other_Format});
    }));
    return set;
}

KQCharacterSet KQCharacterSet::characterSetWithCharactersInString(const QString &characters)
{
    KQCharacterSet set(new KQCharacterSetData);
    set.addCharactersInString(characters);
    return set;
}

KQCharacterSet KQCharacterSet::characterSetWithRange(char32_t first, char32_t last)
{
    KQCharacterSet set(new KQCharacterSetData);
    set.d->addRange(first, last);
    return set;
}

KQCharacterSet KQCharacterSet::invertedSet() const
{
    if (!d)
        return {};
    auto *data = new KQCharacterSetData;
    for (size_t i = 0; i < data->basic.size(); ++i)
        data->basic[i] = ~d->basic[i];
    char32_t next = FirstSupplementary;
    for (const CodePointRange &r : std::as_const(d->supplementary)) {
        if (r.first > next)
            data->supplementary.append({next, r.first - 1});
        next = r.last + 1;
    }
    if (next <= LastCodePoint)
        data->supplementary.append({next, LastCodePoint});
    return KQCharacterSet(data);
}

void KQCharacterSet::formUnionWithCharacterSet(const KQCharacterSet &other)
{
    if (!other.d)
        return;
    if (!d)
        d = new KQCharacterSetData;
    for (size_t i = 0; i < d->basic.size(); ++i)
        d->basic[i] |= other.d->basic[i];
    for (const CodePointRange &r : std::as_const(other.d->supplementary))
        d->addSupplementary(r);
}

void KQCharacterSet::addCharactersInRange(char32_t first, char32_t last)
{
    if (!d)
        d = new KQCharacterSetData;
    d->addRange(first, last);
}

void KQCharacterSet::addCharactersInString(const QString &characters)
{
    if (!d)
        d = new KQCharacterSetData;
    const qsizetype n = characters.size();
    const char16_t *u = reinterpret_cast<const char16_t *>(characters.constData());
    for (qsizetype i = 0; i < n; ++i) {
        if (QChar::isHighSurrogate(u[i]) && i + 1 < n && QChar::isLowSurrogate(u[i + 1])) {
            const char32_t c = QChar::surrogateToUcs4(u[i], u[i + 1]);
            d->addRange(c, c);
            ++i;
        } else {
            d->setBasic(u[i]);
        }
    }
}

bool KQCharacterSet::characterIsMember(char16_t unit) const
{
    return d && d->hasBasic(unit);
}

bool KQCharacterSet::longCharacterIsMember(char32_t codePoint) const
{
    if (!d || codePoint > LastCodePoint)
        return false;
    if (codePoint < FirstSupplementary)
        return d->hasBasic(char16_t(codePoint));
    return d->hasSupplementary(codePoint);
}

KQCharacterRange KQCharacterSet::rangeOfCharacterInString(QStringView string, qsizetype from,
                                                          qsizetype length) const
{
    const qsizetype size = string.size();
    if (!d || from < 0 || from >= size)
        return {};
    const qsizetype end = (length < 0 || length > size - from) ? size : from + length;
    const char16_t *u = string.utf16();
    for (qsizetype i = from; i < end; ++i) {
        if (QChar::isHighSurrogate(u[i]) && i + 1 < end && QChar::isLowSurrogate(u[i + 1])) {
            if (d->hasSupplementary(QChar::surrogateToUcs4(u[i], u[i + 1])))
                return {i, 2};
            ++i;
        } else if (d->hasBasic(u[i])) {
            return {i, 1};
        }
    }
    return {};
}

bool KQCharacterSet::operator==(const KQCharacterSet &other) const
{
    if (!d || !other.d)
        return !d && !other.d;
    return d == other.d || (d->basic == other.d->basic && d->supplementary == other.d->supplementary);
}
