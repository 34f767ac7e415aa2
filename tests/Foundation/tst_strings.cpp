#include <TarnCommon/KQCharacterSet.h>
#include <TarnCommon/KQStringExtensions.h>

#include "LiteralTextRules.h"
#include "MessageCapture.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

using namespace LiteralTextRules;

namespace {

const QString Emoji = QStringLiteral("\U0001F600"); // D83D DE00
const QChar LoneHigh(char16_t(0xD83D));
const QChar LoneLow(char16_t(0xDE00));

KQCharacterSet chars(const QString &s)
{
    return KQCharacterSet::characterSetWithCharactersInString(s);
}

QString randomText(QRandomGenerator &random, const QList<QString> &alphabet, int maxLength)
{
    QString s = QStringLiteral("");
    const int length = random.bounded(maxLength + 1);
    for (int i = 0; i < length; ++i)
        s += alphabet.at(random.bounded(int(alphabet.size())));
    return s;
}

} // namespace

class tst_Strings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void characterSearch_data();
    void characterSearch();
    void namedSets_data();
    void namedSets();
    void stringWithFormat_data();
    void stringWithFormat();
    void setOperations_data();
    void setOperations();
    void operationsMatchTheStatedRules();
    void pascalString_data();
    void pascalString();
    void containsString_data();
    void containsString();
};

void tst_Strings::characterSearch_data()
{
    QTest::addColumn<KQCharacterSet>("set");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("location");
    QTest::addColumn<qsizetype>("length");

    QTest::newRow("plain unit") << chars(QStringLiteral("-")) << QStringLiteral("ab-c") << qsizetype(2) << qsizetype(1);
    QTest::newRow("absent") << chars(QStringLiteral("-")) << QStringLiteral("abc") << qsizetype(-1) << qsizetype(0);
    QTest::newRow("pair found whole") << chars(Emoji) << (QStringLiteral("a") + Emoji) << qsizetype(1) << qsizetype(2);
    QTest::newRow("pair's units are not members") << chars(Emoji) << (QStringLiteral("a") + LoneHigh + u'b')
                                                  << qsizetype(-1) << qsizetype(0);
    QTest::newRow("lone surrogate by unit") << chars(QString(LoneLow)) << (Emoji + LoneLow) << qsizetype(2)
                                            << qsizetype(1);
    QTest::newRow("range of code points") << KQCharacterSet::characterSetWithRange(0x1F600, 0x1F64F)
                                          << (QStringLiteral("xy") + Emoji) << qsizetype(2) << qsizetype(2);
    QTest::newRow("inverted") << chars(QStringLiteral("ab")).invertedSet() << (QStringLiteral("ab") + Emoji)
                              << qsizetype(2) << qsizetype(2);
    QTest::newRow("null set finds nothing") << KQCharacterSet() << QStringLiteral("abc") << qsizetype(-1)
                                            << qsizetype(0);
}

void tst_Strings::characterSearch()
{
    QFETCH(KQCharacterSet, set);
    QFETCH(QString, text);
    QFETCH(qsizetype, location);
    QFETCH(qsizetype, length);
    const KQCharacterRange found = set.rangeOfCharacterInString(text);
    QCOMPARE(found.location, location);
    QCOMPARE(found.length, length);
}

void tst_Strings::namedSets_data()
{
    QTest::addColumn<KQCharacterSet>("set");
    QTest::addColumn<QString>("members");
    QTest::addColumn<QString>("nonMembers");

    QTest::newRow("decimal digits") << KQCharacterSet::decimalDigitCharacterSet()
                                    << QStringLiteral("09\u0663\U0001D7CE") << QStringLiteral("a\u00BD\u2460 ");
    QTest::newRow("white space") << KQCharacterSet::whitespaceCharacterSet() << QStringLiteral(" \t\u00A0\u3000")
                                 << QStringLiteral("\n\r\u2028x");
    QTest::newRow("white space and newlines") << KQCharacterSet::whitespaceAndNewlineCharacterSet()
                                              << QStringLiteral(" \t\n\v\f\r\u0085\u2028\u2029\u00A0")
                                              << QStringLiteral("x\u200B");
    QTest::newRow("newlines") << KQCharacterSet::newlineCharacterSet() << QStringLiteral("\n\r\u2029")
                              << QStringLiteral(" \t");
}

void tst_Strings::namedSets()
{
    QFETCH(KQCharacterSet, set);
    QFETCH(QString, members);
    QFETCH(QString, nonMembers);
    for (char32_t c : members.toUcs4())
        QVERIFY2(set.longCharacterIsMember(c), qPrintable(QString::number(c, 16)));
    for (char32_t c : nonMembers.toUcs4())
        QVERIFY2(!set.longCharacterIsMember(c), qPrintable(QString::number(c, 16)));
}

void tst_Strings::stringWithFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QVariantMap>("args");
    QTest::addColumn<QString>("expected");

    const QVariantMap ab{{QStringLiteral("a"), QStringLiteral("A")}, {QStringLiteral("b"), QStringLiteral("B")}};
    QTest::newRow("hello") << QStringLiteral("Hello ${who}!") << QVariantMap{{QStringLiteral("who"), QStringLiteral("World")}}
                           << QStringLiteral("Hello World!");
    QTest::newRow("adjacent") << QStringLiteral("${a}${b}") << ab << QStringLiteral("AB");
    QTest::newRow("white space after a reference dropped") << QStringLiteral("${a} and ${b}") << ab << QStringLiteral("Aand B");
    QTest::newRow("newlines after a reference dropped") << QStringLiteral("${a}\n\t x") << ab << QStringLiteral("Ax");
    QTest::newRow("leading white space dropped, trailing kept") << QStringLiteral("  \n x ${a} y  ") << ab
                                                                << QStringLiteral("x Ay  ");
    QTest::newRow("only white space") << QStringLiteral(" \n\t ") << ab << QStringLiteral("");
    QTest::newRow("empty") << QStringLiteral("") << ab << QStringLiteral("");
    QTest::newRow("space before the name skipped") << QStringLiteral("${ \na}") << ab << QStringLiteral("A");
    QTest::newRow("space before } is the name") << QStringLiteral("${a }") << ab << QStringLiteral("<nil>");
    QTest::newRow("missing key") << QStringLiteral("[${zz}]") << ab << QStringLiteral("[<nil>]");
    QTest::newRow("unterminated") << QStringLiteral("x${a") << ab << QStringLiteral("xA");
    QTest::newRow("empty reference") << QStringLiteral("${}") << ab << QStringLiteral("}");
    QTest::newRow("trailing opener dropped") << QStringLiteral("ab${") << ab << QStringLiteral("ab");
    QTest::newRow("name holding ${") << QStringLiteral("${a${b}") << QVariantMap{{QStringLiteral("a${b"), 7}}
                                     << QStringLiteral("7");
    QTest::newRow("surrogates pass through") << (QStringLiteral("${") + Emoji + QStringLiteral("}") + LoneHigh)
                                             << QVariantMap{{Emoji, Emoji}} << (Emoji + LoneHigh);
    QTest::newRow("descriptions") << QStringLiteral("${i},${d},${t},${n},${l},${m}")
                                  << QVariantMap{{QStringLiteral("i"), -42},
                                                 {QStringLiteral("d"), 0.1},
                                                 {QStringLiteral("t"), true},
                                                 {QStringLiteral("n"), QVariant::fromValue(nullptr)},
                                                 {QStringLiteral("l"), QVariantList{1, QStringLiteral("a b")}},
                                                 {QStringLiteral("m"), QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}}}}
                                  << QStringLiteral("-42,0.1,1,<null>,(\n    1,\n    \"a b\"\n),{\n    k = v;\n}");
}

void tst_Strings::stringWithFormat()
{
    QFETCH(QString, format);
    QFETCH(QVariantMap, args);
    QFETCH(QString, expected);
    const QString filled = kq_stringWithFormat(format, args);
    QCOMPARE(filled, expected);
    QVERIFY(!filled.isNull());
    QVariantHash hash;
    for (auto it = args.cbegin(); it != args.cend(); ++it)
        hash.insert(it.key(), it.value());
    QCOMPARE(kq_stringWithFormat(format, hash), expected);
}

void tst_Strings::setOperations_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("text");
    QTest::addColumn<KQCharacterSet>("set");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected"); // null: a null result
    QTest::addColumn<QString>("report");   // condition reported, if any

    const KQCharacterSet quote = chars(QStringLiteral("'"));
    const KQCharacterSet digits = KQCharacterSet::decimalDigitCharacterSet();
    const KQCharacterSet dash = chars(QStringLiteral("-"));
    const QString contract = QStringLiteral("[replacement rangeOfCharacterFromSet:chars].location == NSNotFound");

    QTest::newRow("escape") << "escape" << QStringLiteral("a'b") << quote << QStringLiteral("^") << QStringLiteral("a^'b") << QString();
    QTest::newRow("escape: escape holding a member") << "escape" << QStringLiteral("''") << quote << QStringLiteral("'")
                                                     << QStringLiteral("''''") << QString();
    QTest::newRow("escape: empty text") << "escape" << QStringLiteral("") << quote << QStringLiteral("^") << QStringLiteral("") << QString();
    QTest::newRow("escape: per unit") << "escape" << Emoji << chars(QString(LoneHigh)) << QStringLiteral("\\")
                                      << (QStringLiteral("\\") + Emoji) << QString();
    QTest::newRow("escape: null text") << "escape" << QString() << quote << QStringLiteral("^") << QString() << QString();
    QTest::newRow("escape: null set") << "escape" << QStringLiteral("a") << KQCharacterSet() << QStringLiteral("^") << QString()
                                      << QStringLiteral("chars");
    QTest::newRow("escape: null escape") << "escape" << QStringLiteral("a") << quote << QString() << QString()
                                         << QStringLiteral("escape");
    QTest::newRow("remove") << "remove" << QStringLiteral("a1b22c") << digits << QString() << QStringLiteral("abc") << QString();
    QTest::newRow("remove: nothing to remove") << "remove" << QStringLiteral("abc") << digits << QString() << QStringLiteral("abc")
                                               << QString();
    QTest::newRow("remove: pair whole, lone unit kept") << "remove" << (Emoji + LoneHigh + u'x') << chars(Emoji) << QString()
                                                        << (QString(LoneHigh) + u'x') << QString();
    QTest::newRow("remove: embedded NUL") << "remove" << QString::fromUtf16(u"a\0b", 3) << chars(QString(QChar(0)))
                                          << QString() << QStringLiteral("ab") << QString();
    QTest::newRow("replace") << "replace" << QStringLiteral("a-b-c") << dash << QStringLiteral("+") << QStringLiteral("a+b+c") << QString();
    QTest::newRow("replace: by nothing") << "replace" << QStringLiteral("-a--") << dash << QStringLiteral("") << QStringLiteral("a")
                                         << QString();
    QTest::newRow("replace: replacement holds a member") << "replace" << QStringLiteral("a-b") << dash << QStringLiteral("--")
                                                         << QString() << contract;
    QTest::newRow("replace: null replacement") << "replace" << QStringLiteral("a-b") << dash << QString() << QString() << contract;
    QTest::newRow("replace: pair leaves its second unit") << "replace" << (QStringLiteral("a") + Emoji) << chars(Emoji)
                                                          << QStringLiteral("_") << (QStringLiteral("a_") + LoneLow) << QString();
    QTest::newRow("replace: pair completed forever") << "replace" << (QStringLiteral("x") + LoneLow)
                                                     << chars(QStringLiteral("x") + Emoji) << QString(LoneHigh) << QString()
                                                     << QStringLiteral("replacement never completes a member");
}

void tst_Strings::setOperations()
{
    QFETCH(QString, operation);
    QFETCH(QString, text);
    QFETCH(KQCharacterSet, set);
    QFETCH(QString, argument);
    QFETCH(QString, expected);
    QFETCH(QString, report);

    MessageCapture capture;
    QString result;
    if (operation == QLatin1String("escape"))
        result = kq_stringByEscapingCharactersInSet(text, set, argument);
    else if (operation == QLatin1String("remove"))
        result = kq_stringByRemovingCharactersInSet(text, set);
    else
        result = kq_stringByReplacingCharactersInSet(text, set, argument);
    const QByteArray messages = capture.text();
    QCOMPARE(result, expected);
    QCOMPARE(result.isNull(), expected.isNull());
    if (report.isEmpty())
        QCOMPARE(messages, QByteArray());
    else
        QVERIFY2(messages.contains("Assertion: (" + report.toUtf8() + ")"), messages.constData());
}

void tst_Strings::operationsMatchTheStatedRules()
{
    // Random texts over an alphabet rich in surrogate trouble; every result of
    // the one-pass operations must equal the rule followed step by step.
    const QList<QString> alphabet{QStringLiteral("a"), QStringLiteral("-"), QStringLiteral(" "), Emoji,
                                  QString(LoneHigh), QString(LoneLow), QString(QChar(0xD83C)), QString(QChar(0xDF00))};
    const QList<KQCharacterSet> sets{
        chars(QStringLiteral("-")),
        chars(QStringLiteral("-") + Emoji),
        chars(QString(LoneHigh) + QChar(0xDF00)),
        chars(QStringLiteral("- ") + QChar(0xD83C) + QChar(0xDF00) + QStringLiteral("\U0001F300")),
        KQCharacterSet::characterSetWithRange(0xD800, 0xDBFF),
        KQCharacterSet::characterSetWithRange(0x1F300, 0x1F600),
    };
    QRandomGenerator random(20261123);
    int compared = 0, endless = 0;
    for (int round = 0; round < 6000; ++round) {
        const KQCharacterSet &set = sets.at(round % sets.size());
        const QString text = randomText(random, alphabet, 12);
        const QString other = randomText(random, alphabet, 3);

        QCOMPARE(kq_stringByEscapingCharactersInSet(text, set, other), literalEscape(text, set, other));
        QCOMPARE(kq_stringByRemovingCharactersInSet(text, set), literalRemove(text, set));

        if (set.rangeOfCharacterInString(other).isFound())
            continue;
        // Without end the rule replaces more often than the text has units;
        // every finite run stays within that.
        const std::optional<QString> expected = literalReplace(text, set, other, 4 * int(text.size()) + 8);
        MessageCapture capture;
        const QString actual = kq_stringByReplacingCharactersInSet(text, set, other);
        const QByteArray messages = capture.text();
        if (expected) {
            QCOMPARE(actual, *expected);
            QCOMPARE(messages, QByteArray());
            ++compared;
        } else {
            QVERIFY(actual.isNull());
            QVERIFY(messages.contains("replacement never completes a member"));
            ++endless;
        }
    }
    QVERIFY(compared > 3000);
    QVERIFY(endless > 0);
}

void tst_Strings::pascalString_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");

    QTest::newRow("abc") << QByteArray("\3abc") << QStringLiteral("abc");
    QTest::newRow("empty") << QByteArray("\0", 1) << QStringLiteral("");
    QTest::newRow("length byte limits") << QByteArray("\2abc") << QStringLiteral("ab");
    QTest::newRow("NUL kept") << QByteArray("\3a\0b", 4) << QString::fromUtf16(u"a\0b", 3);
    QTest::newRow("byte above 127") << QByteArray("\2a\xE9") << QString();
    QByteArray longest(256, 'x');
    longest[0] = char(255);
    QTest::newRow("255 bytes") << longest << QString(255, u'x');
}

void tst_Strings::pascalString()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    const QString s = kq_stringFromPString(reinterpret_cast<const unsigned char *>(bytes.constData()));
    QCOMPARE(s, expected);
    QCOMPARE(s.isNull(), expected.isNull());
}

void tst_Strings::containsString_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("other");
    QTest::addColumn<unsigned>("options");
    QTest::addColumn<bool>("expected");

    QTest::newRow("contains") << QStringLiteral("Hello") << QStringLiteral("ell") << 0u << true;
    QTest::newRow("case matters") << QStringLiteral("Hello") << QStringLiteral("ELL") << 0u << false;
    QTest::newRow("case insensitive") << QStringLiteral("Hello") << QStringLiteral("ELL") << unsigned(KQCaseInsensitiveSearch) << true;
    QTest::newRow("anchored") << QStringLiteral("Hello") << QStringLiteral("ell") << unsigned(KQAnchoredSearch) << false;
    QTest::newRow("anchored backwards") << QStringLiteral("Hello") << QStringLiteral("LO")
                                        << unsigned(KQAnchoredSearch | KQBackwardsSearch | KQCaseInsensitiveSearch) << true;
    QTest::newRow("empty is never contained") << QStringLiteral("Hello") << QStringLiteral("") << 0u << false;
    QTest::newRow("null text") << QString() << QStringLiteral("a") << 0u << false;
}

void tst_Strings::containsString()
{
    QFETCH(QString, text);
    QFETCH(QString, other);
    QFETCH(unsigned, options);
    QFETCH(bool, expected);
    QCOMPARE(kq_containsString(text, other, options), expected);
    if (options == 0)
        QCOMPARE(kq_containsString(text, other), expected);
}

QTEST_GUILESS_MAIN(tst_Strings)
#include "tst_strings.moc"
