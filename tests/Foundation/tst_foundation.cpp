// Strings and character sets, colours, files and encodings, bindings and the
// object helpers, checked through what a caller sees.
#include <TarnCommon/KQBindings.h>
#include <TarnCommon/KQCharacterSet.h>
#include <TarnCommon/KQColorExtensions.h>
#include <TarnCommon/KQFilesAndEncodings.h>
#include <TarnCommon/KQObjectExtensions.h>
#include <TarnCommon/KQStringExtensions.h>

#include "KQColorComponents_p.h"
#include "LiteralTextRules.h"
#include "MessageCapture.h"

#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QSlider>

#include <sys/stat.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <thread>
#include <utility>

Q_DECLARE_METATYPE(RGBColor)

// A model node: a number, a name, a child node and a map of settings.
class Node : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int number READ number WRITE setNumber NOTIFY numberChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(Node *child READ child WRITE setChild NOTIFY childChanged)
    Q_PROPERTY(QVariantMap settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(int fixed READ fixed CONSTANT)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    using QObject::QObject;
    int number() const { return m_number; }
    void setNumber(int n) { if (n != m_number) { m_number = n; Q_EMIT numberChanged(); } }
    QString name() const { return m_name; }
    void setName(const QString &n) { if (n != m_name) { m_name = n; Q_EMIT nameChanged(); } }
    Node *child() const { return m_child; }
    void setChild(Node *c) { if (c != m_child) { m_child = c; Q_EMIT childChanged(); } }
    QVariantMap settings() const { return m_settings; }
    void setSettings(const QVariantMap &s) { if (s != m_settings) { m_settings = s; Q_EMIT settingsChanged(); } }
    int fixed() const { return 1; }
    QVariant value() const { return m_value; }
    void setValue(const QVariant &v) { if (v != m_value) { m_value = v; Q_EMIT valueChanged(); } }
    Q_INVOKABLE QString greeting() { ++calls; return QStringLiteral("hi ") + m_name; }
    Q_INVOKABLE int twice(int n) { ++calls; return 2 * n; }
    int calls = 0;

Q_SIGNALS:
    void numberChanged();
    void nameChanged();
    void childChanged();
    void settingsChanged();
    void valueChanged();

private:
    int m_number = 0;
    QString m_name;
    QPointer<Node> m_child;
    QVariantMap m_settings;
    QVariant m_value;
};

namespace {

using namespace LiteralTextRules;

const QString Emoji = QStringLiteral("\U0001F600"); // D83D DE00
const QChar LoneHigh(char16_t(0xD83D));
const QChar LoneLow(char16_t(0xDE00));
const QString Value = QStringLiteral("value");

KQCharacterSet chars(const QString &s)
{
    return KQCharacterSet::characterSetWithCharactersInString(s);
}

QString randomText(QRandomGenerator &random, const QList<QString> &alphabet, int maxLength)
{
    QString s = QStringLiteral("");
    for (int i = random.bounded(maxLength + 1); i > 0; --i)
        s += alphabet.at(random.bounded(int(alphabet.size())));
    return s;
}

// root (7) -> middle (3) -> leaf (1, "leaf"); settings {zoom: 2, page: {width: 10}}
struct Tree
{
    Node root, middle, leaf;
    Tree()
    {
        root.setNumber(7);
        middle.setNumber(3);
        leaf.setNumber(1);
        leaf.setName(QStringLiteral("leaf"));
        root.setChild(&middle);
        middle.setChild(&leaf);
        root.setSettings({{QStringLiteral("zoom"), 2}, {QStringLiteral("page"), QVariantMap{{QStringLiteral("width"), 10}}}});
    }
};

// Points the library's temporary directory at a fresh folder.
struct ScopedTempDir
{
    QTemporaryDir dir;
    QByteArray saved = qgetenv("TMPDIR");
    ScopedTempDir() { qputenv("TMPDIR", QFile::encodeName(dir.path())); }
    ~ScopedTempDir() { qputenv("TMPDIR", saved); }
    QString path() const { return dir.path(); }
    QStringList entries() const { return QDir(dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
};

int permissions(const QString &path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

bool touch(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write("keep") == 4;
}

} // namespace

class tst_Foundation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void characterSets_data();
    void characterSets();
    void stringWithFormat_data();
    void stringWithFormat();
    void setOperations_data();
    void setOperations();
    void setOperationsFollowTheirRules();
    void smallStringRules();

    void hexParsing_data();
    void hexParsing();
    void hexScannerAndRoundTrip();
    void colourRules_data();
    void colourRules();

    void temporaryFiles_data();
    void temporaryFiles();
    void temporaryFileLimitsAndContention();
    void fileReferenceAndTemporaryPath();
    void base64_data();
    void base64();

    void transformerChoice_data();
    void transformerChoice();
    void keyPaths_data();
    void keyPaths();
    void viewAndModelFollowEachOther();
    void lifetime_data();
    void lifetime();
    void objectHelpers();
};

// Each row: a set, a text searched for its first member, and characters the
// set must and must not hold.
void tst_Foundation::characterSets_data()
{
    QTest::addColumn<KQCharacterSet>("set");
    QTest::addColumn<QString>("text");
    QTest::addColumn<qsizetype>("location");
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<QString>("members");
    QTest::addColumn<QString>("nonMembers");

    using S = KQCharacterSet;
    const auto row = [](const char *name, const S &set, const QString &text, qsizetype location, qsizetype length,
                        const QString &members = {}, const QString &nonMembers = {}) {
        QTest::newRow(name) << set << text << location << length << members << nonMembers;
    };
    row("plain unit", chars(QStringLiteral("-")), QStringLiteral("ab-c"), 2, 1);
    row("pair found whole", chars(Emoji), QStringLiteral("a") + Emoji, 1, 2);
    row("a pair's units are not members", chars(Emoji), QStringLiteral("a") + LoneHigh + u'b', -1, 0);
    row("lone surrogate by unit", chars(QString(LoneLow)), Emoji + LoneLow, 2, 1);
    row("range of code points", S::characterSetWithRange(0x1F600, 0x1F64F), QStringLiteral("xy") + Emoji, 2, 2,
        QStringLiteral("\U0001F64F"), QStringLiteral("\U0001F5FF\U0001F650"));
    row("inverted", chars(QStringLiteral("ab")).invertedSet(), QStringLiteral("ab") + Emoji, 2, 2,
        QStringLiteral("c\U0010FFFF"), QStringLiteral("ab"));
    row("null set finds nothing", S(), QStringLiteral("abc"), -1, 0);
    row("decimal digits", S::decimalDigitCharacterSet(), QStringLiteral("a\u00BD9"), 2, 1,
        QStringLiteral("09\u0663\U0001D7CE"), QStringLiteral("a\u00BD\u2460 "));
    row("white space", S::whitespaceCharacterSet(), QStringLiteral("x\n\t"), 2, 1, QStringLiteral(" \t\u00A0\u3000"),
        QStringLiteral("\n\r\u2028x"));
    row("white space and newlines", S::whitespaceAndNewlineCharacterSet(), QStringLiteral("\u200B\u2029"), 1, 1,
        QStringLiteral(" \t\n\v\f\r\u0085\u2028\u2029\u00A0"), QStringLiteral("x\u200B\u0008\u000E"));
    row("newlines", S::newlineCharacterSet(), QStringLiteral(" \t\u0085"), 2, 1, QStringLiteral("\n\r\u000B\u2029"),
        QStringLiteral(" \t\u0009\u000E"));
}

void tst_Foundation::characterSets()
{
    QFETCH(KQCharacterSet, set);
    QFETCH(QString, text);
    QFETCH(qsizetype, location);
    QFETCH(qsizetype, length);
    QFETCH(QString, members);
    QFETCH(QString, nonMembers);
    const KQCharacterRange found = set.rangeOfCharacterInString(text);
    QCOMPARE(found.location, location);
    QCOMPARE(found.length, length);
    for (char32_t c : members.toUcs4())
        QVERIFY2(set.longCharacterIsMember(c), qPrintable(QString::number(c, 16)));
    for (char32_t c : nonMembers.toUcs4())
        QVERIFY2(!set.longCharacterIsMember(c), qPrintable(QString::number(c, 16)));
}

void tst_Foundation::stringWithFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QVariantMap>("args");
    QTest::addColumn<QString>("expected");

    const QVariantMap ab{{QStringLiteral("a"), QStringLiteral("A")}, {QStringLiteral("b"), QStringLiteral("B")}};
    QTest::newRow("adjacent") << QStringLiteral("${a}${b}") << ab << QStringLiteral("AB");
    QTest::newRow("white space after a reference dropped") << QStringLiteral("${a} and ${b}\n\t x") << ab
                                                           << QStringLiteral("Aand Bx");
    QTest::newRow("leading white space dropped, trailing kept") << QStringLiteral("  \n x ${a} y  ") << ab
                                                                << QStringLiteral("x Ay  ");
    QTest::newRow("only white space") << QStringLiteral(" \n\t ") << ab << QStringLiteral("");
    QTest::newRow("space before the name skipped") << QStringLiteral("${ \na}") << ab << QStringLiteral("A");
    QTest::newRow("space before } is the name; missing key") << QStringLiteral("[${a }]") << ab << QStringLiteral("[<nil>]");
    QTest::newRow("unterminated") << QStringLiteral("x${a") << ab << QStringLiteral("xA");
    QTest::newRow("empty reference") << QStringLiteral("${}") << ab << QStringLiteral("}");
    QTest::newRow("trailing opener dropped") << QStringLiteral("ab${") << ab << QStringLiteral("ab");
    QTest::newRow("name holding ${") << QStringLiteral("${a${b}") << QVariantMap{{QStringLiteral("a${b"), 7}}
                                     << QStringLiteral("7");
    QTest::newRow("surrogates pass through") << (QStringLiteral("${") + Emoji + QStringLiteral("}") + LoneHigh)
                                             << QVariantMap{{Emoji, Emoji}} << (Emoji + LoneHigh);
    QTest::newRow("descriptions") << QStringLiteral("${i},${d},${t},${n},${l},${m}")
                                  << QVariantMap{{QStringLiteral("i"), -42}, {QStringLiteral("d"), 0.1},
                                                 {QStringLiteral("t"), true},
                                                 {QStringLiteral("n"), QVariant::fromValue(nullptr)},
                                                 {QStringLiteral("l"), QVariantList{1, QStringLiteral("a b")}},
                                                 {QStringLiteral("m"), QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}}}}
                                  << QStringLiteral("-42,0.1,1,<null>,(\n    1,\n    \"a b\"\n),{\n    k = v;\n}");
}

void tst_Foundation::stringWithFormat()
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

void tst_Foundation::setOperations_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("text");
    QTest::addColumn<KQCharacterSet>("set");
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("expected"); // null: a null result
    QTest::addColumn<QString>("report");   // condition reported, if any

    const KQCharacterSet quote = chars(QStringLiteral("'"));
    const KQCharacterSet dash = chars(QStringLiteral("-"));
    const QString contract = QStringLiteral("[replacement rangeOfCharacterFromSet:chars].location == NSNotFound");
    const QString none;
    QTest::newRow("escape: escape holding a member") << "escape" << QStringLiteral("a''") << quote << QStringLiteral("'")
                                                     << QStringLiteral("a''''") << none;
    QTest::newRow("escape: empty text") << "escape" << QStringLiteral("") << quote << QStringLiteral("^") << QStringLiteral("") << none;
    QTest::newRow("escape: null text") << "escape" << QString() << quote << QStringLiteral("^") << none << none;
    QTest::newRow("escape: null set") << "escape" << QStringLiteral("a") << KQCharacterSet() << QStringLiteral("^") << none
                                      << QStringLiteral("chars");
    QTest::newRow("escape: null escape") << "escape" << QStringLiteral("a") << quote << none << none << QStringLiteral("escape");
    QTest::newRow("remove: pair whole, lone unit kept") << "remove" << (Emoji + LoneHigh + u'x') << chars(Emoji) << none
                                                        << (QString(LoneHigh) + u'x') << none;
    QTest::newRow("remove: empty text") << "remove" << QStringLiteral("") << dash << none << QStringLiteral("") << none;
    QTest::newRow("remove: null set") << "remove" << QStringLiteral("a") << KQCharacterSet() << none << none << QStringLiteral("chars");
    QTest::newRow("replace: replacement holds a member") << "replace" << QStringLiteral("a-b") << dash << QStringLiteral("--")
                                                         << none << contract;
    QTest::newRow("replace: null replacement") << "replace" << QStringLiteral("a-b") << dash << none << none << contract;
    QTest::newRow("replace: pair completed forever") << "replace" << (QStringLiteral("x") + LoneLow)
                                                     << chars(QStringLiteral("x") + Emoji) << QString(LoneHigh) << none
                                                     << QStringLiteral("replacement never completes a member");
}

void tst_Foundation::setOperations()
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

void tst_Foundation::setOperationsFollowTheirRules()
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

void tst_Foundation::smallStringRules()
{
    // Pascal strings: the length byte limits; a byte above 127 gives null.
    const auto pascal = [](const QByteArray &bytes) {
        return kq_stringFromPString(reinterpret_cast<const unsigned char *>(bytes.constData()));
    };
    QCOMPARE(pascal(QByteArray("\2abc")), QStringLiteral("ab"));
    QCOMPARE(pascal(QByteArray("\3a\0b", 4)), QString::fromUtf16(u"a\0b", 3));
    QVERIFY(pascal(QByteArray("\2a\xE9")).isNull());
    QByteArray longest(256, 'x');
    longest[0] = char(255);
    QCOMPARE(pascal(longest), QString(255, u'x'));

    const QString hello = QStringLiteral("Hello");
    QVERIFY(kq_containsString(hello, QStringLiteral("ell")));
    QVERIFY(!kq_containsString(hello, QStringLiteral("ELL"), 0));
    QVERIFY(kq_containsString(hello, QStringLiteral("ELL"), KQCaseInsensitiveSearch));
    QVERIFY(!kq_containsString(hello, QStringLiteral("ell"), KQAnchoredSearch));
    QVERIFY(kq_containsString(hello, QStringLiteral("LO"), KQAnchoredSearch | KQBackwardsSearch | KQCaseInsensitiveSearch));
    QVERIFY(!kq_containsString(hello, QStringLiteral("")));
    QVERIFY(!kq_containsString(QString(), QStringLiteral("a")));
}

void tst_Foundation::hexParsing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("valid");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");

    QTest::newRow("lower case") << QStringLiteral("#ff8000") << true << 255 << 128 << 0;
    QTest::newRow("length 6") << QStringLiteral("#FF800") << false << 0 << 0 << 0;
    QTest::newRow("length 8") << QStringLiteral("#FF80000") << false << 0 << 0 << 0;
    QTest::newRow("two fields only") << QStringLiteral("#12 34 ") << false << 0 << 0 << 0;
    QTest::newRow("negative fields are full") << QStringLiteral("#-1-1-1") << true << 255 << 255 << 255;
    QTest::newRow("blanks before fields") << QStringLiteral("# 1 2 3") << true << 1 << 2 << 3;
    QTest::newRow("ends at a NUL") << QStringLiteral("#00000") + QChar(0) << true << 0 << 0 << 0;
    QTest::newRow("non-ASCII letter") << QStringLiteral("#\u00e912345") << false << 0 << 0 << 0;
    QTest::newRow("surrogate pair") << QStringLiteral("#\U0001F600123") << false << 0 << 0 << 0;
    // Upper-casing comes first and may lengthen the text: the ligature ff becomes "FF".
    QTest::newRow("ligature upper-cased") << QStringLiteral("#\ufb0000000") << true << 255 << 0 << 0;
    QTest::newRow("empty") << QString() << false << 0 << 0 << 0;
}

void tst_Foundation::hexParsing()
{
    QFETCH(QString, text);
    QFETCH(bool, valid);
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);
    const QColor color = kq_colorFromRGBHexString(text);
    QCOMPARE(color.isValid(), valid);
    if (valid)
        QCOMPARE(color, QColor::fromRgbF(red / 255.0f, green / 255.0f, blue / 255.0f));
}

void tst_Foundation::hexScannerAndRoundTrip()
{
    // Every 6-byte tail over the characters that steer the C scanner (digits,
    // letters, signs, the 0x prefix, white space, an early end) is read as
    // sscanf reads it.
    static const char alphabet[] = {'0', 'x', '-', '+', ' ', '1', 'f', 'F', 'g', '\t', '\0'};
    constexpr int n = sizeof alphabet;
    char text[8] = "#";
    long mismatches = 0;
    for (int code = 0; code < n * n * n * n * n * n; ++code) {
        for (int k = 0, rest = code; k < 6; ++k, rest /= n)
            text[1 + k] = alphabet[rest % n];
        unsigned expected[3] = {0, 0, 0}, actual[3] = {0, 0, 0};
        const int expectedCount = std::sscanf(text, "#%02X%02X%02X", &expected[0], &expected[1], &expected[2]);
        const int actualCount = KQColor::scanHexTriplet(text, 7, actual);
        if ((expectedCount != actualCount || std::memcmp(expected, actual, sizeof expected) != 0) && ++mismatches <= 5)
            qWarning("differs from sscanf: \"%s\" (%d against %d)", text, actualCount, expectedCount);
    }
    QCOMPARE(mismatches, 0L);
    unsigned values[3];
    QCOMPARE(KQColor::scanHexTriplet("#", 1, values), -1);

    // Every colour's hex text, in either case, comes back upper-cased.
    static const char upper[] = "0123456789ABCDEF";
    static const char lower[] = "0123456789abcdef";
    QString hex(7, QLatin1Char('#'));
    long failures = 0;
    for (quint32 v = 0; v < (1u << 24); ++v) {
        const char *digits = (v & 1) ? lower : upper;
        for (int k = 0; k < 6; ++k)
            hex[6 - k] = QLatin1Char(digits[(v >> (4 * k)) & 0xF]);
        const QString back = kq_RGBHexString(kq_colorFromRGBHexString(hex));
        bool same = back.size() == 7;
        for (int k = 0; same && k < 7; ++k)
            same = back.at(k) == hex.at(k).toUpper();
        if (!same && ++failures <= 5)
            qWarning("%s came back as %s", qPrintable(hex), qPrintable(back));
    }
    QCOMPARE(failures, 0L);

    // Records of 16-bit channels come back whole.
    for (int v = 0; v <= 65535; ++v) {
        const RGBColor record{quint16(v), quint16(65535 - v), quint16(v / 2)};
        const QColor color = kq_colorFromRGBColor(record);
        if (kq_RGBColor(color) != record || color.alpha() != 255)
            QFAIL(qPrintable(QStringLiteral("channel value %1 did not come back").arg(v)));
    }
}

// Per colour: its hex text, its record, the contrasting black or white and
// its calibration (with the warning a non-RGB colour gives).
void tst_Foundation::colourRules_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("hex");
    QTest::addColumn<RGBColor>("record");
    QTest::addColumn<QColor>("contrast");
    QTest::addColumn<double>("calibration");
    QTest::addColumn<QString>("warning");

    const QColor black(Qt::black), white(Qt::white);
    QTest::newRow("white") << white << "#FFFFFF" << RGBColor{65535, 65535, 65535} << black << 0.0 << QString();
    QTest::newRow("black") << black << "#000000" << RGBColor{0, 0, 0} << white << 1.0 << QString();
    QTest::newRow("green") << QColor(Qt::green) << "#00FF00" << RGBColor{0, 65535, 0} << white << 1.0 - 0.587 << QString();
    QTest::newRow("yellow, mean two thirds") << QColor(Qt::yellow) << "#FFFF00" << RGBColor{65535, 65535, 0} << black
                                             << 1.0 - 0.299 - 0.587 << QString();
    QTest::newRow("half truncates") << QColor::fromRgba64(32767, 32768, 0) << "#7F7F00" << RGBColor{32767, 32768, 0}
                                    << white << 1.0 - (0.299 * 32767 + 0.587 * 32768) / 65535 << QString();
    QTest::newRow("just below a step") << QColor::fromRgba64(257 * 0x80 - 1, 257 * 0x80, 257 * 0x80 + 1) << "#7F8080"
                                       << RGBColor{257 * 0x80 - 1, 257 * 0x80, 257 * 0x80 + 1} << black
                                       << 1.0 - (0.299 * 32895 + 0.587 * 32896 + 0.114 * 32897) / 65535 << QString();
    // An extended colour can hold a mean of exactly 0.5.
    QTest::newRow("mean exactly one half") << QColor::fromRgbF(1.5f, 0.0f, 0.0f) << "#FF0000" << RGBColor{65535, 0, 0}
                                           << white << 1.0 - 0.299 * 1.5 << QString();
    QTest::newRow("HSV white") << QColor::fromHsv(0, 0, 255) << "#FFFFFF" << RGBColor{65535, 65535, 65535} << black << 0.0
                               << QStringLiteral("^Color is not RGB: QColor\\(AHSV ");
    QTest::newRow("invalid") << QColor() << "#000000" << RGBColor{0, 0, 0} << black << 0.0
                             << QStringLiteral("^Color is not RGB: QColor\\(Invalid\\)$");
}

void tst_Foundation::colourRules()
{
    QFETCH(QColor, color);
    QFETCH(QString, hex);
    QFETCH(RGBColor, record);
    QFETCH(QColor, contrast);
    QFETCH(double, calibration);
    QFETCH(QString, warning);
    QCOMPARE(kq_RGBHexString(color), hex);
    QVERIFY(kq_RGBColor(color) == record);
    QCOMPARE(kq_contrastingBlackOrWhite(color), contrast);
    if (!warning.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(warning));
    QVERIFY2(qAbs(kq_calibration(color) - calibration) < 1e-6, qPrintable(QString::number(kq_calibration(color))));
    const QColor converted = kq_CGColor(color);
    QCOMPARE(converted.isValid(), color.isValid());
    if (color.isValid())
        QCOMPARE(converted.spec(), QColor::Rgb);
}

// A free name is taken as given; a taken one gets a number before the
// extension; names that would leave the folder are refused.
void tst_Foundation::temporaryFiles_data()
{
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("free") << QStringList() << "clip" << "mov" << "clip.mov" << QByteArray();
    QTest::newRow("two taken") << QStringList{"clip.mov", "clip_1.mov"} << "clip" << "mov" << "clip_2.mov" << QByteArray();
    QTest::newRow("no extension, no dot") << QStringList{"clip"} << "clip" << QString() << "clip_1" << QByteArray();
    QTest::newRow("empty extension keeps its dot") << QStringList() << "clip" << "" << "clip." << QByteArray();
    QTest::newRow("null name") << QStringList() << QString() << "txt" << QString() << QByteArray("(name is one file name)");
    QTest::newRow("path in the name") << QStringList() << "../escape" << "txt" << QString()
                                      << QByteArray("(name is one file name)");
    QTest::newRow("dot dot") << QStringList() << ".." << QString() << QString() << QByteArray("(name is one file name)");
    QTest::newRow("slash in the extension") << QStringList() << "x" << "a/../../b" << QString()
                                            << QByteArray("(extension holds no slash)");
    QTest::newRow("temporary directory missing") << QStringList{"/missing"} << "x" << "txt" << QString()
                                                 << QByteArray("no temporary directory");
}

void tst_Foundation::temporaryFiles()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, name);
    QFETCH(QString, extension);
    QFETCH(QString, expected);
    QFETCH(QByteArray, report);
    ScopedTempDir temp;
    if (existing == QStringList{QStringLiteral("/missing")}) // the row's way of naming a folder that is not there
        qputenv("TMPDIR", QFile::encodeName(temp.path() + existing.takeFirst()));
    for (const QString &file : existing)
        QVERIFY(touch(temp.path() + u'/' + file));
    MessageCapture capture;
    const QString path = KQTemporaryFile(name, extension);
    const QByteArray messages = capture.text();
    QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report), messages.constData());
    if (expected.isNull()) {
        QVERIFY(path.isNull());
        QCOMPARE(temp.entries(), QStringList());
        QVERIFY(!QFileInfo::exists(QFileInfo(temp.path()).path() + QStringLiteral("/escape.txt")));
        return;
    }
    QCOMPARE(path, temp.path() + u'/' + expected);
    QCOMPARE(QFileInfo(path).size(), 0);
    QCOMPARE(permissions(path), 0700);
    for (const QString &file : existing)
        QCOMPARE(QFileInfo(temp.path() + u'/' + file).size(), 4); // untouched
}

void tst_Foundation::temporaryFileLimitsAndContention()
{
    {
        // Eight threads released together all ask for the same name.
        ScopedTempDir temp;
        std::atomic<bool> go{false};
        QStringList paths(8);
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                while (!go)
                    std::this_thread::yield();
                paths[i] = KQTemporaryFile(QStringLiteral("same"), QStringLiteral("dat"));
            });
        }
        go = true;
        for (std::thread &t : threads)
            t.join();
        QStringList expected{QStringLiteral("same.dat")};
        for (int i = 1; i < 8; ++i)
            expected += QStringLiteral("same_%1.dat").arg(i);
        expected.sort();
        QCOMPARE(temp.entries(), expected);
        QCOMPARE(QSet<QString>(paths.cbegin(), paths.cend()).size(), 8);
    }
    // Gives up after 20000 taken names.
    ScopedTempDir temp;
    for (int i = 0; i < 20000; ++i)
        QVERIFY(touch(temp.path() + (i == 0 ? QStringLiteral("/full.tmp") : QStringLiteral("/full_%1.tmp").arg(i))));
    MessageCapture capture;
    QVERIFY(KQTemporaryFile(QStringLiteral("full"), QStringLiteral("tmp")).isNull());
    QVERIFY(capture.text().contains("Assertion: (attemptNumber < 20000)"));
    QCOMPARE(temp.entries().size(), 20000);
}

void tst_Foundation::fileReferenceAndTemporaryPath()
{
    ScopedTempDir temp;
    const QString a = temporaryPathWithExtension(QStringLiteral("png"));
    QVERIFY(a != temporaryPathWithExtension(QStringLiteral("png")));
    QVERIFY2(QRegularExpression(QRegularExpression::escape(temp.path()) + QStringLiteral("/QN64_\\w{6}\\.png$")).match(a).hasMatch(),
             qPrintable(a));
    QVERIFY(QRegularExpression(QStringLiteral("/QN64_\\w{6}$")).match(temporaryPathWithExtension(QString())).hasMatch());
    QCOMPARE(temp.entries(), QStringList()); // nothing created

    // A reference follows its file through a rename, not its old name.
    const QString path = KQTemporaryFile(QStringLiteral("ref"), QStringLiteral("txt"));
    KQFileReference ref;
    QVERIFY(kq_fillFSRef(QUrl::fromLocalFile(path), &ref));
    const QString renamed = temp.path() + QStringLiteral("/renamed.txt");
    QVERIFY(QFile::rename(path, renamed));
    QVERIFY(touch(path));
    QCOMPARE(kq_URLFromFSRef(&ref), QUrl::fromLocalFile(renamed));
    QVERIFY(QFile::remove(renamed));
    QVERIFY(kq_URLFromFSRef(&ref).isEmpty());
    KQFileReference untouched;
    QVERIFY(!kq_fillFSRef(QUrl(QStringLiteral("https://example.org/a")), &untouched));
    QVERIFY(kq_URLFromFSRef(&untouched).isEmpty());

    MessageCapture capture;
    QVERIFY(temporaryPathWithExtension(QStringLiteral("a/b")).isNull());
    QVERIFY(kq_URLFromFSRef(nullptr).isEmpty());
    QVERIFY(!kq_fillFSRef(QUrl::fromLocalFile(temp.path()), nullptr));
    QVERIFY(KQSecTransform(QByteArray("x"), "base32", true).isNull());
    const QByteArray messages = capture.text();
    QVERIFY(messages.contains("(extension holds no slash)"));
    QCOMPARE(messages.count("Assertion: (fsref)"), 2);
    QVERIFY(messages.contains("Assertion: (transform)"));
}

// Text that is not canonical base64 decodes to null; only non-ASCII text
// is reported.
void tst_Foundation::base64_data()
{
    QTest::addColumn<QByteArray>("bytes"); // null: not decodable
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("empty") << QByteArray("") << "" << QByteArray();
    QTest::newRow("f") << QByteArray("f") << "Zg==" << QByteArray();
    QTest::newRow("fo") << QByteArray("fo") << "Zm8=" << QByteArray();
    QTest::newRow("foobar") << QByteArray("foobar") << "Zm9vYmFy" << QByteArray();
    QTest::newRow("both alphabet ends") << QByteArray("\xfb\xff\0\x3e", 4) << "+/8APg==" << QByteArray();
    QTest::newRow("padding in the middle") << QByteArray() << "Zg==Zm8=" << QByteArray();
    QTest::newRow("missing padding") << QByteArray() << "Zg" << QByteArray();
    QTest::newRow("line break") << QByteArray() << "Zm9v\nYmFy" << QByteArray();
    QTest::newRow("other alphabet") << QByteArray() << "Zm9v-_8A" << QByteArray();
    QTest::newRow("bits after the last byte") << QByteArray() << "Zh==" << QByteArray();
    QTest::newRow("non-ASCII") << QByteArray() << QString::fromUtf8("Zm9\xC3\xA9")
                               << QByteArray("(KQAssertNeverExecuted was executed)");
}

void tst_Foundation::base64()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QFETCH(QByteArray, report);
    if (!bytes.isNull())
        QCOMPARE(kq_base64Encode(bytes), text);
    MessageCapture capture;
    const QByteArray decoded = kq_base64Decode(text);
    QCOMPARE(decoded, bytes);
    QCOMPARE(decoded.isNull(), bytes.isNull());
    const QByteArray messages = capture.text();
    QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report), messages.constData());
}

void tst_Foundation::initTestCase()
{
    KQValueTransformer::setValueTransformer(
        KQValueTransformer::create([](const QVariant &v) { return QVariant(v.toInt() - 1); },
                                   [](const QVariant &v) { return QVariant(v.toInt() + 1); }),
        QStringLiteral("Plus1"));
}

void tst_Foundation::transformerChoice_data()
{
    QTest::addColumn<QVariant>("transformer");
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<int>("stored"); // the model's number after propagating 5 (it starts at 7)
    QTest::addColumn<QString>("report");

    const auto same = [](const QVariant &v) { return v; };
    const auto make = [this](const std::function<QVariant(const QVariant &)> &forward,
                                const std::function<QVariant(const QVariant &)> &reverse) {
        return QVariant::fromValue<QObject *>(KQValueTransformer::create(forward, reverse, this));
    };
    const QVariant none, null = QVariant::fromValue(nullptr), plus1 = QStringLiteral("Plus1");
    QTest::newRow("object before name") << make(same, [](const QVariant &v) { return QVariant(v.toInt() * 10); }) << plus1
                                        << 50 << QString();
    QTest::newRow("null object: the name") << null << plus1 << 6 << QString();
    QTest::newRow("null object, null name") << null << null << 5 << QString();
    QTest::newRow("unknown name") << none << QVariant(QStringLiteral("Nope")) << 5 << QString();
    QTest::newRow("no reverse") << make(same, {}) << plus1 << 7 << QStringLiteral("[[transformer class] allowsReverseTransformation]");
    QTest::newRow("reverse gives nothing") << make(same, [](const QVariant &) { return QVariant(); }) << none << 7
                                           << QStringLiteral("gave no value back");
    QTest::newRow("not a transformer") << QVariant::fromValue<QObject *>(this) << none << 7
                                       << QStringLiteral("transformer is a KQValueTransformer");
}

void tst_Foundation::transformerChoice()
{
    QFETCH(QVariant, transformer);
    QFETCH(QVariant, name);
    QFETCH(int, stored);
    QFETCH(QString, report);
    Node model, view;
    model.setNumber(7);
    QVariantMap options;
    if (transformer.isValid())
        options.insert(QLatin1String(NSValueTransformerBindingOption), transformer);
    if (name.isValid())
        options.insert(QLatin1String(NSValueTransformerNameBindingOption), name);
    QVERIFY(kq_bind(&view, Value, &model, QStringLiteral("number"), options));

    MessageCapture capture;
    kq_propagateValue(&view, 5, Value);
    const QByteArray text = capture.text();
    QCOMPARE(model.number(), stored);
    QCOMPARE(kq_valueForBinding(&view, Value), QVariant(stored)); // raw, untransformed
    QVERIFY2(report.isEmpty() ? text.isEmpty() : text.contains(report.toUtf8()), text.constData());
}

void tst_Foundation::keyPaths_data()
{
    QTest::addColumn<QString>("keyPath");
    QTest::addColumn<bool>("bindable");
    QTest::addColumn<QVariant>("read");
    QTest::addColumn<QVariant>("write");
    QTest::addColumn<bool>("written");

    QTest::newRow("two children deep") << "child.child.name" << true << QVariant(QStringLiteral("leaf"))
                                       << QVariant(QStringLiteral("new leaf")) << true;
    QTest::newRow("nested map key") << "settings.page.width" << true << QVariant(10) << QVariant(12) << true;
    QTest::newRow("new map key") << "settings.page.height" << true << QVariant() << QVariant(5) << true;
    QTest::newRow("past the last child") << "child.child.child.number" << true << QVariant() << QVariant(9) << false;
    QTest::newRow("converted text") << "number" << true << QVariant(7) << QVariant(QStringLiteral("42")) << true;
    QTest::newRow("unconvertible text") << "number" << true << QVariant(7) << QVariant(QStringLiteral("four")) << false;
    QTest::newRow("read-only") << "fixed" << true << QVariant(1) << QVariant(2) << false;
    QTest::newRow("undeclared name") << "child.missing" << false << QVariant() << QVariant() << false;
    QTest::newRow("empty name") << "child..number" << false << QVariant() << QVariant() << false;
}

void tst_Foundation::keyPaths()
{
    QFETCH(QString, keyPath);
    QFETCH(bool, bindable);
    QFETCH(QVariant, read);
    QFETCH(QVariant, write);
    QFETCH(bool, written);

    Tree tree;
    Node view;
    MessageCapture bindCapture;
    QCOMPARE(kq_bind(&view, Value, &tree.root, keyPath), bindable);
    QCOMPARE(bindCapture.text().isEmpty(), bindable);
    if (!bindable) {
        QVERIFY(kq_infoForBinding(&view, Value).isEmpty());
        return;
    }
    QCOMPARE(view.value(), read);
    MessageCapture capture;
    kq_propagateValue(&view, write, Value);
    QCOMPARE(capture.text().isEmpty(), written);
    const QVariant now = kq_valueForBinding(&view, Value);
    if (written) {
        QCOMPARE(now.toString(), write.toString());
        QCOMPARE(tree.root.settings().value(QStringLiteral("zoom")), QVariant(2)); // siblings kept
    } else {
        QCOMPARE(now, read); // untouched
    }
}

void tst_Foundation::viewAndModelFollowEachOther()
{
    Tree tree;
    QSlider slider;
    slider.setRange(0, 100);
    const auto half = KQValueTransformer::create([](const QVariant &v) { return QVariant(v.toInt() * 2); },
                                                 [](const QVariant &v) { return QVariant(v.toInt() / 2); }, &slider);
    QVERIFY(kq_bind(&slider, Value, &tree.root, QStringLiteral("child.number"),
                    {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(half)}}));
    QCOMPARE(slider.value(), 6); // initial value, transformed
    tree.middle.setNumber(10);
    QCOMPARE(slider.value(), 20);
    slider.setValue(30); // an edit in the view
    QCOMPARE(tree.middle.number(), 15);

    // Replacing an object along the path moves the observation to the new one.
    Node replacement;
    replacement.setNumber(40);
    tree.root.setChild(&replacement);
    QCOMPARE(slider.value(), 80);
    tree.middle.setNumber(1);
    QCOMPARE(slider.value(), 80);
    replacement.setNumber(5);
    QCOMPARE(slider.value(), 10);

    // Rebinding replaces the binding; the old key path is no longer watched.
    QVERIFY(kq_bind(&slider, Value, &tree.root, QStringLiteral("number")));
    QCOMPARE(slider.value(), 7);
    replacement.setNumber(6);
    QCOMPARE(slider.value(), 7);
    QCOMPARE(kq_infoForBinding(&slider, Value).value(QLatin1String(NSObservedKeyPathKey)).toString(), QStringLiteral("number"));
    QVERIFY(!kq_infoForBinding(&slider, Value).contains(QLatin1String(NSOptionsKey)));

    // Two objects bound to each other both ways, and one bound to itself.
    Node a, b;
    QVERIFY(kq_bind(&a, QStringLiteral("number"), &b, QStringLiteral("number")));
    QVERIFY(kq_bind(&b, QStringLiteral("number"), &a, QStringLiteral("number")));
    QVERIFY(kq_bind(&a, QStringLiteral("name"), &a, QStringLiteral("name")));
    a.setNumber(3);
    QCOMPARE(b.number(), 3);
    b.setNumber(4);
    QCOMPARE(a.number(), 4);
    a.setName(QStringLiteral("x"));
    QCOMPARE(a.name(), QStringLiteral("x"));
}

void tst_Foundation::lifetime_data()
{
    QTest::addColumn<QString>("gone");
    for (const char *gone : {"model", "view", "middle", "transformer", "unbind"})
        QTest::newRow(gone) << QString::fromLatin1(gone);
}

void tst_Foundation::lifetime()
{
    QFETCH(QString, gone);
    auto *tree = new Tree;
    auto *view = new Node;
    QPointer<KQValueTransformer> transformer = KQValueTransformer::create([](const QVariant &v) { return v; },
                                                                          [](const QVariant &v) { return v; });
    QVERIFY(kq_bind(view, Value, &tree->root, QStringLiteral("child.number"),
                    {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(transformer.data())}}));
    QCOMPARE(view->value(), QVariant(3));
    if (gone == QLatin1String("model")) {
        delete std::exchange(tree, nullptr);
        QVERIFY(kq_infoForBinding(view, Value).isEmpty());
        view->setValue(9); // would reach the dead model
        QVERIFY(!kq_valueForBinding(view, Value).isValid());
    } else if (gone == QLatin1String("view")) {
        delete std::exchange(view, nullptr);
        tree->middle.setNumber(4); // would reach the dead view
        QCOMPARE(tree->middle.number(), 4);
    } else if (gone == QLatin1String("middle")) {
        auto *temporary = new Node;
        temporary->setNumber(5);
        tree->root.setChild(temporary);
        QCOMPARE(view->value(), QVariant(5));
        delete temporary; // the root's pointer clears itself without a change signal
        QCoreApplication::processEvents();
        QVERIFY(!kq_valueForBinding(view, Value).isValid());
        QVERIFY(!view->value().isValid());
    } else if (gone == QLatin1String("transformer")) {
        delete transformer.data();
        view->setValue(11); // no transformer now: stored as given
        QCOMPARE(tree->middle.number(), 11);
    } else {
        kq_unbind(view, Value);
        QVERIFY(kq_infoForBinding(view, Value).isEmpty());
        tree->middle.setNumber(12);
        QCOMPARE(view->value(), QVariant(3));
        view->setValue(13);
        QCOMPARE(tree->middle.number(), 12);
    }
    delete view;
    delete tree;
    delete transformer.data();
}

void tst_Foundation::objectHelpers()
{
    // Deep copies of values that can be archived; objects cannot be.
    QObject object;
    const QVariant nested(QVariantList{1, QVariantMap{{QStringLiteral("list"), QVariantList{3.5, QVariantHash{{QStringLiteral("k"), QByteArray("v")}}}},
                                                      {QStringLiteral("nil"), QVariant()}}});
    MessageCapture capture;
    QCOMPARE(KQCloneUsingCoding(nested), nested);
    QCOMPARE(KQCloneUsingCoding(QVariant::fromValue(nullptr)).metaType(), QMetaType::fromType<std::nullptr_t>());
    QVERIFY(!KQCloneUsingCoding(QVariant()).isValid());
    QVERIFY(capture.text().isEmpty());
    MessageCapture refused;
    QVERIFY(!KQCloneUsingCoding(QVariantMap{{QStringLiteral("a"), QVariantList{1, QVariant::fromValue(&object)}}}).isValid());
    QVERIFY(refused.text().contains("cannot be archived"));

    // Invoking by name only what the object declares, with a convertible argument.
    Node node;
    node.setName(QStringLiteral("n"));
    QCOMPARE(kq_performSelectorIfResponds(&node, "greeting"), QVariant(QStringLiteral("hi n")));
    QCOMPARE(kq_performSelectorIfResponds(&node, "twice", QVariant(QStringLiteral("4"))), QVariant(8));
    QVERIFY(!kq_performSelectorIfResponds(&node, "twice", QVariant(QStringLiteral("x"))).isValid());
    QVERIFY(!kq_performSelectorIfResponds(&node, "twice").isValid());
    QVERIFY(!kq_performSelectorIfResponds(&node, "deleteLater", QVariant(1)).isValid());
    QVERIFY(!kq_performSelectorIfResponds(&node, "nothing").isValid());
    QVERIFY(!kq_performSelectorIfResponds(nullptr, "greeting").isValid());
    QCOMPARE(node.calls, 2);

    // Map and filter stop where asked; a nil from map is reported and kept as null.
    const QVariant null = QVariant::fromValue(nullptr);
    const QVariantList list{1, 2, 3, 4};
    QList<qsizetype> indexes;
    const auto doubled = [&](const QVariant &element, qsizetype index, bool *stop) {
        indexes.append(index);
        *stop = index == 2;
        return index == 1 ? QVariant() : QVariant(element.toInt() * 2);
    };
    MessageCapture nilReport;
    QCOMPARE(kq_map(list, doubled), (QVariantList{2, null, 6}));
    QCOMPARE(nilReport.text().count("KQAssertNeverExecuted was executed"), 1);
    QCOMPARE(indexes, (QList<qsizetype>{0, 1, 2}));
    MessageCapture quiet;
    QCOMPARE(kq_mapAndFilter(list, doubled), (QVariantList{2, 6}));
    QCOMPARE(kq_filter(list, [](const QVariant &e, qsizetype index, bool *stop) {
                 *stop = index == 1;
                 return e.toInt() % 2 == 1;
             }),
             QVariantList{1});
    QVERIFY(quiet.text().isEmpty());
    const QStringList texts = kq_map(QList<int>{1, 2, 3, 4}, [](int n, qsizetype, bool *stop) {
        *stop = n == 3;
        return QString::number(n * n);
    });
    QCOMPARE(texts, (QStringList{QStringLiteral("1"), QStringLiteral("4"), QStringLiteral("9")}));
    QCOMPARE(kq_mapAndFilter(QList<int>{1, 2, 3, 4}, [](int n, qsizetype, bool *) {
                 return n % 2 == 0 ? std::optional<int>(n / 2) : std::nullopt;
             }),
             (QList<int>{1, 2}));

    // Objects deleted later go when their own scope ends, not an outer one's.
    QPointer<QObject> outer, inner;
    kq_subpool([&] {
        (outer = new QObject)->deleteLater();
        kq_subpool([&] { (inner = new QObject)->deleteLater(); });
        QVERIFY(!inner);
        QVERIFY(outer);
    });
    QVERIFY(!outer);
}

QTEST_MAIN(tst_Foundation)
#include "tst_foundation.moc"
