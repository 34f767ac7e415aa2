// The string helpers on arbitrary texts and character sets: escaping, removal
// and replacement against their step-by-step versions, the template filler
// against what any template must satisfy, Pascal strings from arbitrary bytes.
#include <TarnCommon/KQCharacterSet.h>
#include <TarnCommon/KQStringExtensions.h>

#include "FuzzSupport.h"
#include "LiteralTextRules.h"

#include <vector>

using namespace FuzzSupport;
using namespace LiteralTextRules;

namespace {

KQCharacterSet anySet(FuzzedDataProvider &data)
{
    KQCharacterSet set;
    switch (data.ConsumeIntegralInRange(0, 5)) {
    case 0:
        set = KQCharacterSet::whitespaceAndNewlineCharacterSet();
        break;
    case 1:
        set = KQCharacterSet::decimalDigitCharacterSet();
        break;
    case 2:
        set = KQCharacterSet::characterSetWithRange(data.ConsumeIntegralInRange<char32_t>(0xD800, 0xDFFF),
                                                    data.ConsumeIntegralInRange<char32_t>(0xD800, 0xDFFF));
        break;
    case 3:
        set = KQCharacterSet::characterSetWithRange(data.ConsumeIntegralInRange<char32_t>(0x1F000, 0x1F700),
                                                    data.ConsumeIntegralInRange<char32_t>(0x1F000, 0x1F700));
        break;
    default:
        set = KQCharacterSet::characterSetWithCharactersInString(text(data, 4));
        break;
    }
    if (data.ConsumeBool())
        set = set.invertedSet();
    return set;
}

void escapeRemoveReplace(FuzzedDataProvider &data)
{
    const KQCharacterSet set = anySet(data);
    const QString other = text(data, 4);
    const QString input = text(data, 300);

    const QString escaped = kq_stringByEscapingCharactersInSet(input, set, other);
    check(!escaped.isNull() && escaped == literalEscape(input, set, other), "escape");
    const QString removed = kq_stringByRemovingCharactersInSet(input, set);
    check(!removed.isNull() && removed == literalRemove(input, set), "remove");

    reportCount() = 0;
    const QString replaced = kq_stringByReplacingCharactersInSet(input, set, other);
    if (set.rangeOfCharacterInString(other).isFound()) {
        check(replaced.isNull() && reportCount() == 1, "refused replacement");
        return;
    }
    // A run that ends takes fewer steps than this; one that is cut off is
    // tried again with far more room before it counts as endless.
    int steps = 4 * int(input.size()) + 8;
    std::optional<QString> expected = literalReplace(input, set, other, steps);
    if (!expected && !replaced.isNull())
        expected = literalReplace(input, set, other, 64 * steps);
    if (expected) {
        check(!replaced.isNull() && replaced == *expected && reportCount() == 0, "replace", input);
    } else {
        check(replaced.isNull() && lastReport().contains("replacement never completes a member"), "endless replace");
    }
}

void fillTemplate(FuzzedDataProvider &data)
{
    // A value the format cannot hold (text() may give any unit, so it is taken
    // out), so each one in the result is one lookup.
    const QString marker = QString(QChar(0xE000));
    const QString format = text(data, 300).remove(marker);
    std::vector<QString> names;
    const QString filled = kq_stringWithFormat(format, [&](const QString &name) {
        names.push_back(name);
        return QVariant(marker);
    });
    check(!filled.isNull() && filled.count(marker) == qsizetype(names.size()), "one value per lookup", format);
    static const KQCharacterSet skipped = KQCharacterSet::whitespaceAndNewlineCharacterSet();
    for (const QString &name : names) {
        check(!name.isEmpty() && !name.contains(u'}') && !skipped.characterIsMember(name.at(0).unicode()),
              "name read", name);
    }
    // A format without references is itself, less its leading white space.
    if (!format.contains(QStringLiteral("${"))) {
        qsizetype start = 0;
        while (start < format.size() && skipped.characterIsMember(format.at(start).unicode()))
            ++start;
        check(names.empty() && filled == format.mid(start), "plain text", format);
    }
    // Unknown names read "<nil>" through the map form too.
    const QString unknown = kq_stringWithFormat(format, QVariantMap());
    check(unknown.count(QStringLiteral("<nil>")) >= qsizetype(names.size()), "unknown names");
}

void pascalString(FuzzedDataProvider &data)
{
    const std::vector<uint8_t> rest = data.ConsumeRemainingBytes<uint8_t>();
    if (rest.empty())
        return;
    // The function reads the length byte and that many more: give exactly those.
    const size_t length = std::min<size_t>(rest[0], rest.size() - 1);
    std::vector<unsigned char> pascal(rest.begin(), rest.begin() + qsizetype(length) + 1);
    pascal[0] = static_cast<unsigned char>(length);
    const QString s = kq_stringFromPString(pascal.data());
    bool ascii = true;
    for (size_t i = 1; i <= length; ++i)
        ascii = ascii && pascal[i] < 128;
    check(s.isNull() == !ascii, "Pascal string validity");
    if (ascii) {
        check(s.size() == qsizetype(length), "Pascal string length");
        for (size_t i = 0; i < length; ++i)
            check(s.at(qsizetype(i)).unicode() == pascal[i + 1], "Pascal string unit");
    }
}

} // namespace

TARN_FUZZ_QUIET_INITIALIZE()

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    switch (data.ConsumeIntegralInRange(0, 2)) {
    case 0:
        escapeRemoveReplace(data);
        break;
    case 1:
        fillTemplate(data);
        break;
    default:
        pascalString(data);
        break;
    }
    return 0;
}
