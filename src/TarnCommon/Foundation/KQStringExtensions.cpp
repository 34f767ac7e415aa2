#include <TarnCommon/KQStringExtensions.h>

#include <TarnCommon/KQAssert.h>

#include <QtCore/QBitArray>
#include <QtCore/QLocale>
#include <QtCore/QMetaType>
#include <QtCore/QVarLengthArray>

namespace {

// A non-null empty string: an empty receiver still gives an (empty) copy.
QString emptyCopy()
{
    return QString(QLatin1String(""));
}

const char16_t *units(const QString &s)
{
    return reinterpret_cast<const char16_t *>(s.constData());
}

} // namespace

extern "C" QString kq_stringFromPString(const unsigned char *pascalString)
{
    KQAssertText("pascalString", pascalString != nullptr, QString());
    const int length = pascalString[0];
    const unsigned char *bytes = pascalString + 1;
    for (int i = 0; i < length; ++i) {
        if (bytes[i] > 127)
            return QString();
    }
    return QString::fromLatin1(reinterpret_cast<const char *>(bytes), length);
}

QString kq_stringByEscapingCharactersInSet(const QString &string, const KQCharacterSet &chars, const QString &escape)
{
    if (string.isNull())
        return QString();
    KQAssertText("chars", !chars.isNull(), QString());
    KQAssertText("escape", !escape.isNull(), QString());
    if (string.isEmpty())
        return emptyCopy();
    const qsizetype n = string.size();
    const char16_t *u = units(string);
    qsizetype members = 0;
    for (qsizetype i = 0; i < n; ++i)
        members += chars.characterIsMember(u[i]);
    if (members == 0 || escape.isEmpty())
        return string;
    QString result;
    result.reserve(n + members * escape.size());
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (chars.characterIsMember(u[i])) {
            result.append(QStringView(string).sliced(runStart, i - runStart));
            result.append(escape);
            runStart = i;
        }
    }
    result.append(QStringView(string).sliced(runStart));
    return result;
}

QString kq_stringByRemovingCharactersInSet(const QString &string, const KQCharacterSet &chars)
{
    if (string.isNull())
        return QString();
    KQAssertText("chars", !chars.isNull(), QString());
    // Deleting a member never changes what follows it, so one forward scan
    // over the original gives what repeated deletion does.
    KQCharacterRange found = chars.rangeOfCharacterInString(string);
    if (!found.isFound())
        return string.isEmpty() ? emptyCopy() : string;
    QString result;
    result.reserve(string.size());
    qsizetype runStart = 0;
    while (found.isFound()) {
        result.append(QStringView(string).sliced(runStart, found.location - runStart));
        runStart = found.location + found.length;
        found = chars.rangeOfCharacterInString(string, runStart);
    }
    result.append(QStringView(string).sliced(runStart));
    return result;
}

QString kq_stringByReplacingCharactersInSet(const QString &string, const KQCharacterSet &chars,
                                            const QString &replacement)
{
    if (string.isNull())
        return QString();
    KQAssertText("chars", !chars.isNull(), QString());
    KQAssertText("[replacement rangeOfCharacterFromSet:chars].location == NSNotFound",
                 !replacement.isNull() && !chars.rangeOfCharacterInString(replacement).isFound(), QString());

    // Repeated "replace the first member, search again from the start" in one
    // pass. Everything already in result holds no member, so the next member
    // can only begin at the unit being read, or at result's last unit when that
    // is a high surrogate that the unit being read completes into a pair. The
    // text still to read is some whole copies of the replacement (the first
    // one maybe partly read) followed by the rest of the input.
    const char16_t *in = units(string);
    const qsizetype inSize = string.size();
    const char16_t *rep = units(replacement);
    const qsizetype repSize = replacement.size();

    QString result;
    result.reserve(inSize);
    // Which units of result came from a copy of the replacement: the contract
    // keeps those from ever being members on their own, so one of them turning
    // up in a member means the rule would repeat the same step forever.
    QBitArray fromCopy;
    fromCopy.resize(inSize);
    qsizetype resultSize = 0;
    auto push = [&](char16_t unit, bool copied) {
        result.append(QChar(unit));
        if (resultSize >= fromCopy.size())
            fromCopy.resize(std::max<qsizetype>(16, fromCopy.size() * 2));
        fromCopy.setBit(resultSize, copied);
        ++resultSize;
    };
    auto pop = [&] {
        result.chop(1);
        --resultSize;
    };

    qsizetype copies = 0;   // copies of the replacement still to read
    qsizetype inCopy = 0;   // units already read of the first of them
    qsizetype next = 0;     // next unit of the input after the copies
    auto hasFront = [&] { return copies > 0 || next < inSize; };
    auto front = [&] { return copies > 0 ? rep[inCopy] : in[next]; };
    auto frontIsCopied = [&] { return copies > 0; };
    auto advance = [&] {
        if (copies > 0) {
            if (++inCopy == repSize) {
                inCopy = 0;
                --copies;
            }
        } else {
            ++next;
        }
    };
    auto queueCopy = [&] {
        // Only ever called while no copy is partly read.
        if (repSize > 0)
            ++copies;
    };
    auto neverEnds = [] {
        KQAssertionFailed("replacement never completes a member", __FILE__, __LINE__, KQ_FUNCTION_NAME);
        return QString();
    };

    for (;;) {
        if (copies == 0 && (resultSize == 0 || !QChar::isHighSurrogate(result.at(resultSize - 1).unicode()))) {
            // Fast path: a run of input units that are neither surrogates nor members.
            qsizetype end = next;
            while (end < inSize && !QChar::isSurrogate(in[end]) && !chars.characterIsMember(in[end]))
                ++end;
            if (end > next) {
                result.append(QStringView(in + next, end - next));
                if (resultSize + (end - next) > fromCopy.size())
                    fromCopy.resize(std::max<qsizetype>(2 * fromCopy.size(), resultSize + (end - next)));
                fromCopy.fill(false, resultSize, resultSize + (end - next));
                resultSize += end - next;
                next = end;
            }
        }
        const bool endIsHigh = resultSize > 0 && QChar::isHighSurrogate(result.at(resultSize - 1).unicode());
        if (!hasFront()) {
            if (endIsHigh && chars.characterIsMember(result.at(resultSize - 1).unicode())) {
                if (fromCopy.testBit(resultSize - 1))
                    return neverEnds();
                pop();
                queueCopy();
                continue;
            }
            break;
        }
        const char16_t unit = front();
        if (endIsHigh) {
            const char16_t high = result.at(resultSize - 1).unicode();
            if (QChar::isLowSurrogate(unit)) {
                if (chars.longCharacterIsMember(QChar::surrogateToUcs4(high, unit))) {
                    // The pair's first unit is replaced; its second stays to be read.
                    if (fromCopy.testBit(resultSize - 1))
                        return neverEnds();
                    pop();
                    queueCopy();
                } else {
                    push(unit, frontIsCopied());
                    advance();
                }
                continue;
            }
            if (chars.characterIsMember(high)) {
                if (fromCopy.testBit(resultSize - 1))
                    return neverEnds();
                pop();
                queueCopy();
                continue;
            }
        }
        const bool copied = frontIsCopied();
        if (!QChar::isHighSurrogate(unit) && chars.characterIsMember(unit)) {
            if (copied)
                return neverEnds();
            advance();
            queueCopy();
            continue;
        }
        // A high surrogate is tested once the unit after it is known.
        push(unit, copied);
        advance();
    }
    if (result.isNull())
        return emptyCopy();
    return result;
}

bool kq_containsString(const QString &string, const QString &other)
{
    return kq_containsString(string, other, 0);
}

bool kq_containsString(const QString &string, const QString &other, unsigned options)
{
    if (string.isEmpty() || other.isEmpty())
        return false;
    const Qt::CaseSensitivity cs = (options & KQCaseInsensitiveSearch) ? Qt::CaseInsensitive : Qt::CaseSensitive;
    if (options & KQAnchoredSearch)
        return (options & KQBackwardsSearch) ? string.endsWith(other, cs) : string.startsWith(other, cs);
    return string.contains(other, cs);
}

namespace {

bool isPlainWord(const QString &text)
{
    if (text.isEmpty())
        return false;
    for (QChar c : text) {
        const char16_t u = c.unicode();
        const bool plain = (u >= 'a' && u <= 'z') || (u >= 'A' && u <= 'Z') || (u >= '0' && u <= '9') || u == '_'
            || u == '.' || u == '$' || u == '/' || u == '-';
        if (!plain)
            return false;
    }
    return true;
}

QString quoted(const QString &text)
{
    if (isPlainWord(text))
        return text;
    QString out = QStringLiteral("\"");
    for (QChar c : text) {
        if (c == u'"' || c == u'\\')
            out += u'\\';
        if (c == u'\n')
            out += QStringLiteral("\\n");
        else
            out += c;
    }
    out += u'"';
    return out;
}

QString describe(const QVariant &value, int depth);

QString nestedItem(const QVariant &value, int depth)
{
    if (value.typeId() == QMetaType::QString)
        return quoted(value.toString());
    return describe(value, depth);
}

QString describe(const QVariant &value, int depth)
{
    if (!value.isValid())
        return QStringLiteral("<nil>");
    const QString indent(4 * depth, u' ');
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Nullptr:
        return QStringLiteral("<null>");
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::Float:
        return QString::number(value.toFloat(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        QString out = QStringLiteral("<");
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            if (i > 0 && i % 4 == 0)
                out += u' ';
            out += QString::asprintf("%02x", static_cast<unsigned char>(bytes.at(i)));
        }
        return out + u'>';
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        QString out = QStringLiteral("(\n");
        for (qsizetype i = 0; i < list.size(); ++i) {
            out += indent + QStringLiteral("    ") + nestedItem(list.at(i), depth + 1);
            out += i + 1 < list.size() ? QStringLiteral(",\n") : QStringLiteral("\n");
        }
        return out + indent + u')';
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        const QVariantMap map = value.typeId() == QMetaType::QVariantMap
            ? value.toMap()
            : [&] {
                  QVariantMap sorted;
                  const QVariantHash hash = value.toHash();
                  for (auto it = hash.cbegin(); it != hash.cend(); ++it)
                      sorted.insert(it.key(), it.value());
                  return sorted;
              }();
        QString out = QStringLiteral("{\n");
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            out += indent + QStringLiteral("    ") + quoted(it.key()) + QStringLiteral(" = ")
                + nestedItem(it.value(), depth + 1) + QStringLiteral(";\n");
        return out + indent + u'}';
    }
    default:
        break;
    }
    if (value.canConvert<QString>())
        return value.toString();
    return u'<' + QString::fromLatin1(value.metaType().name()) + u'>';
}

// What a text scanner with the default skip set does: every step first skips
// white space and newlines.
class TemplateScanner
{
public:
    explicit TemplateScanner(QStringView text)
        : m_text(text)
    {
    }

    bool isAtEnd() const { return skipped() == m_text.size(); }

    // Text up to (not including) stop or the end; false when that is empty.
    // Nothing is consumed on false.
    bool scanUpTo(QStringView stop, QStringView *scanned)
    {
        const qsizetype from = skipped();
        if (from == m_text.size())
            return false;
        qsizetype found = m_text.indexOf(stop, from);
        if (found == from)
            return false;
        if (found < 0)
            found = m_text.size();
        *scanned = m_text.sliced(from, found - from);
        m_location = found;
        return true;
    }

    bool scan(QStringView literal)
    {
        const qsizetype from = skipped();
        if (!m_text.sliced(from).startsWith(literal))
            return false;
        m_location = from + literal.size();
        return true;
    }

private:
    qsizetype skipped() const
    {
        static const KQCharacterSet skip = KQCharacterSet::whitespaceAndNewlineCharacterSet();
        qsizetype i = m_location;
        // The skip set has no member outside the basic plane nor any surrogate
        // value, so testing units is testing characters here.
        while (i < m_text.size() && skip.characterIsMember(m_text.at(i).unicode()))
            ++i;
        return i;
    }

    QStringView m_text;
    qsizetype m_location = 0;
};

} // namespace

QString kq_description(const QVariant &value)
{
    return describe(value, 0);
}

QString kq_stringWithFormat(const QString &format, const KQArgumentLookup &lookup)
{
    KQAssertText("format", !format.isNull(), QString());
    QString result = emptyCopy();
    TemplateScanner scanner(format);
    if (scanner.isAtEnd())
        return result;
    const QStringView open = u"${";
    const QStringView close = u"}";
    do {
        QStringView text;
        if (scanner.scanUpTo(open, &text))
            result += text;
        if (scanner.scan(open)) {
            QStringView name;
            if (scanner.scanUpTo(close, &name)) {
                const QVariant value = lookup ? lookup(name.toString()) : QVariant();
                result += describe(value, 0);
                scanner.scan(close);
            }
        }
    } while (!scanner.isAtEnd());
    return result;
}

QString kq_stringWithFormat(const QString &format, const QVariantMap &argsByName)
{
    return kq_stringWithFormat(format, [&argsByName](const QString &name) { return argsByName.value(name); });
}

QString kq_stringWithFormat(const QString &format, const QVariantHash &argsByName)
{
    return kq_stringWithFormat(format, [&argsByName](const QString &name) { return argsByName.value(name); });
}
