// Strings and character sets, colours, files and encodings, bindings and the object helpers.
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

#include <sys/stat.h>

#include <functional>
#include <latch>
#include <thread>

using Result = std::function<QString()>;
Q_DECLARE_METATYPE(Result)

// A model node: a number, a name, a child node and a map of settings. Written through
// the property system, a member property announces a change by its signal.
class Node : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int number MEMBER number NOTIFY numberChanged)
    Q_PROPERTY(QString name MEMBER name NOTIFY nameChanged)
    Q_PROPERTY(Node *child READ child WRITE setChild NOTIFY childChanged)
    Q_PROPERTY(QVariantMap settings MEMBER settings NOTIFY settingsChanged)
    Q_PROPERTY(int fixed READ fixed CONSTANT)
    Q_PROPERTY(QVariant value MEMBER value NOTIFY valueChanged)

public:
    using QObject::QObject;
    Node *child() const { return m_child; }
    void setChild(Node *c)
    {
        m_child = c;
        Q_EMIT childChanged();
    }
    int fixed() const { return 1; }
    Q_INVOKABLE int twice(int n) { ++calls; return 2 * n; }
    int number = 0;
    QString name;
    QVariantMap settings;
    QVariant value;
    int calls = 0;

Q_SIGNALS:
    void numberChanged();
    void nameChanged();
    void childChanged();
    void settingsChanged();
    void valueChanged();

private:
    QPointer<Node> m_child; // clears itself when the child goes
};

namespace {

using namespace LiteralTextRules;
using S = KQCharacterSet;

const QString Emoji = QStringLiteral("\U0001F600"); // D83D DE00
const QChar LoneHigh(char16_t(0xD83D)), LoneLow(char16_t(0xDE00));
const QString Value = QStringLiteral("value");

S chars(const QString &s) { return S::characterSetWithCharactersInString(s); }
QString shown(const QString &s) { return s.isNull() ? QStringLiteral("NULL") : s; }

// What the set finds first in text, as location+length, then any member it lacks or non-member it holds.
QString finds(const S &set, const QString &text, const QString &members = {}, const QString &nonMembers = {})
{
    const KQCharacterRange found = set.rangeOfCharacterInString(text);
    QString out = QStringLiteral("%1+%2").arg(found.location).arg(found.length);
    for (char32_t c : members.toUcs4())
        out += set.longCharacterIsMember(c) ? QString() : QStringLiteral(" lacks %1").arg(uint(c), 0, 16);
    for (char32_t c : nonMembers.toUcs4())
        out += set.longCharacterIsMember(c) ? QStringLiteral(" holds %1").arg(uint(c), 0, 16) : QString();
    return out;
}

// The filled format, the same from a map and a hash.
QString format(const QString &f, const QVariantMap &args)
{
    const QString filled = kq_stringWithFormat(f, args);
    const QString fromHash = kq_stringWithFormat(f, QVariantHash(args.cbegin(), args.cend()));
    return filled == fromHash ? shown(filled) : filled + QStringLiteral(" | hash ") + fromHash;
}
const QVariantMap AB{{QStringLiteral("a"), QStringLiteral("A")}, {QStringLiteral("b"), QStringLiteral("B")}};

// A colour as its red green blue in 8 bits, or "invalid".
QString rgb(const QColor &c)
{
    return c.isValid() ? QStringLiteral("%1 %2 %3").arg(c.red()).arg(c.green()).arg(c.blue())
                       : QStringLiteral("invalid");
}

double rounded(double v) { return double(qRound64(v * 1e5)) / 1e5; }

// Hex text, 16-bit record, contrasting colour, calibration and the converted colour's kind.
QString colour(const QColor &c)
{
    const RGBColor r = kq_RGBColor(c);
    const QColor converted = kq_CGColor(c);
    return QStringLiteral("%1 %2,%3,%4 %5 %6 %7").arg(kq_RGBHexString(c)).arg(r.red).arg(r.green).arg(r.blue)
        .arg(kq_contrastingBlackOrWhite(c) == Qt::black ? "black" : "white").arg(rounded(kq_calibration(c)))
        .arg(!converted.isValid() ? "invalid" : converted.spec() == QColor::Rgb ? "rgb" : "other");
}
QString colourRow(const char *hex, const char *record, const char *contrast, double calibration, const char *kind = "rgb")
{
    return QStringLiteral("%1 %2 %3 %4 %5").arg(hex, record, contrast).arg(rounded(calibration)).arg(kind);
}

// root (7) -> middle (3) -> leaf (1, "leaf"); settings {zoom: 2, page: {width: 10}}
struct Tree
{
    Node root, middle, leaf;
    Tree()
    {
        root.number = 7;
        middle.number = 3;
        leaf.number = 1;
        leaf.name = QStringLiteral("leaf");
        root.setChild(&middle);
        middle.setChild(&leaf);
        root.settings = {{QStringLiteral("zoom"), 2}, {QStringLiteral("page"), QVariantMap{{QStringLiteral("width"), 10}}}};
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
    void initTestCase()
    {
        KQValueTransformer::setValueTransformer(KQValueTransformer::create([](const QVariant &v) { return QVariant(v.toInt() - 1); },
                                                                           [](const QVariant &v) { return QVariant(v.toInt() + 1); }),
                                                QStringLiteral("Plus1"));
    }

    // report: what the library must say (a regular expression starting ^: a Qt warning); nothing if empty.
    void results_data()
    {
        QTest::addColumn<Result>("result");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QString>("report");
        const auto row = [](const char *name, Result r, const QString &expected, const char *report = "") {
            QTest::newRow(name) << r << expected << QString::fromLatin1(report);
        };
        const S quote = chars(QStringLiteral("'")), dash = chars(QStringLiteral("-"));
        const char *contract = "[replacement rangeOfCharacterFromSet:chars].location == NSNotFound";
        row("set: pair found whole", [] { return finds(chars(Emoji), "a" + Emoji); }, "1+2");
        row(
            "set: range of code points",
            [] {
                return finds(S::characterSetWithRange(0x1F600, 0x1F64F), "xy" + Emoji, "\U0001F64F",
                             "\U0001F5FF\U0001F650");
            },
            "2+2");
        row("set: inverted", [] { return finds(chars("ab").invertedSet(), "ab" + Emoji, "c\U0010FFFF", "ab"); }, "2+2");
        row("set: null set finds nothing", [] { return finds(S(), "abc"); }, "-1+0");
        row(
            "set: decimal digits",
            [] {
                return finds(S::decimalDigitCharacterSet(), "a\u00BD9", "09\u0663\U0001D7CE",
                             "a\u00BD\u2460 \U0001F600\U0001F601");
            },
            "2+1");
        row(
            "set: white space and newlines",
            [] {
                return finds(S::whitespaceAndNewlineCharacterSet(), "\u200B\u2029",
                             " \t\n\v\f\r\u0085\u2028\u2029\u00A0", "x\u200B\u0008\u000E");
            },
            "1+1");
        row("format: white space after a reference dropped", [] { return format("${a} and ${b}\n\t x", AB); }, "Aand Bx");
        row("format: space before } is the name; missing key", [] { return format("[${a }]", AB); }, "[<nil>]");
        row("format: unterminated", [] { return format("x${a", AB); }, "xA");
        row(
            "format: descriptions",
            [] {
                return format("${i},${d},${t},${n},${l},${m}", {{"i", -42},
                                                                {"d", 0.1},
                                                                {"t", true},
                                                                {"n", QVariant::fromValue(nullptr)},
                                                                {"l", QVariantList{1, "a b"}},
                                                                {"m", QVariantMap{{"k", "v"}}}});
            },
            "-42,0.1,1,<null>,(\n    1,\n    \"a b\"\n),{\n    k = v;\n}");
        row("escape: null set", [] { return shown(kq_stringByEscapingCharactersInSet("a", S(), "^")); }, "NULL", "(chars)");
        row("escape: null escape", [=] { return shown(kq_stringByEscapingCharactersInSet("a", quote, QString())); }, "NULL", "(escape)");
        row("remove: null set", [] { return shown(kq_stringByRemovingCharactersInSet("a", S())); }, "NULL", "(chars)");
        row("replace: replacement holds a member", [=] { return shown(kq_stringByReplacingCharactersInSet("a-b", dash, "--")); }, "NULL", contract);
        const auto pascal = [](QByteArray bytes) {
            return
                [=] { return shown(kq_stringFromPString(reinterpret_cast<const unsigned char *>(bytes.constData()))); };
        };
        row("pascal: the length byte limits", pascal("\2abc"), "ab");
        row("pascal: a byte above 127 gives null", pascal("\2a\xE9"), "NULL");
        const auto contains = [](const char *text, const char *other, unsigned options) {
            return [=] { return QString::number(kq_containsString(text ? QString::fromLatin1(text) : QString(), other, options)); };
        };
        row("contains: anchored backwards", contains("Hello", "LO", KQAnchoredSearch | KQBackwardsSearch | KQCaseInsensitiveSearch), "1");
        row("contains: nothing is never contained", [] { return QString::number(kq_containsString("Hello", "")); }, "0");
        row("contains: in nothing", contains(nullptr, "a", 0), "0");
        row(
            "record: 16-bit channels come back whole",
            [] {
                return QString::number(kq_RGBColor(kq_colorFromRGBColor({1, 32768, 65535})) ==
                                       RGBColor{1, 32768, 65535});
            },
            "1");
        row("hex: lower case", [] { return rgb(kq_colorFromRGBHexString("#ff8000")); }, "255 128 0");
        row("hex: read as the C scanner reads, a negative field full", [] { return rgb(kq_colorFromRGBHexString("#-1-1-1")); }, "255 255 255");
        row("hex: two fields only", [] { return rgb(kq_colorFromRGBHexString("#12 34 ")); }, "invalid");
        row("hex: non-ASCII letter", [] { return rgb(kq_colorFromRGBHexString("#\u00e912345")); }, "invalid");
        row("hex: empty", [] { return rgb(kq_colorFromRGBHexString(QString())); }, "invalid");
        row("hex: the scanner ends before a field as the C scanner does", [] {
            unsigned values[3];
            return QString::number(KQColor::scanHexTriplet("#", 1, values));
        }, "-1");
        row(
            "colour: yellow, mean two thirds", [] { return colour(Qt::yellow); },
            colourRow("#FFFF00", "65535,65535,0", "black", 1.0 - 0.299 - 0.587));
        row("colour: half truncates", [] { return colour(QColor::fromRgba64(32767, 32768, 0)); },
            colourRow("#7F7F00", "32767,32768,0", "white", 1.0 - (0.299 * 32767 + 0.587 * 32768) / 65535));
        row("colour: HSV white", [] { return colour(QColor::fromHsv(0, 0, 255)); }, colourRow("#FFFFFF", "65535,65535,65535", "black", 0.0),
            "^Color is not RGB: QColor\\(AHSV ");
        row("colour: invalid", [] { return colour(QColor()); }, colourRow("#000000", "0,0,0", "black", 0.0, "invalid"),
            "^Color is not RGB: QColor\\(Invalid\\)$");
        const auto base64 = [](QByteArray bytes) {
            return [=] {
                return kq_base64Encode(bytes) + (kq_base64Decode(kq_base64Encode(bytes)) == bytes ? "" : " differs");
            };
        };
        const auto decoded = [](const char *text) {
            return [=] {
                const QByteArray d = kq_base64Decode(QString::fromUtf8(text));
                return d.isNull() ? "NULL" : QString::fromLatin1(d.toHex());
            };
        };
        row("base64: both alphabet ends", base64(QByteArray("\xfb\xff\0\x3e", 4)), "+/8APg==");
        row("base64: empty decodes to empty", decoded(""), "");
        row("base64: padding in the middle", decoded("Zg==Zm8="), "NULL");
        row("base64: missing padding", decoded("Zg"), "NULL");
        row("base64: bits after the last byte", decoded("Zh=="), "NULL");
        row("base64: non-ASCII", decoded("Zm9\xC3\xA9"), "NULL", "(KQAssertNeverExecuted was executed)");
    }
    void results()
    {
        QFETCH(Result, result);
        QFETCH(QString, expected);
        QFETCH(QString, report);
        if (report.startsWith(u'^'))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(report));
        MessageCapture capture;
        QCOMPARE(result(), expected);
        const QByteArray text = capture.text();
        QVERIFY2(report.isEmpty() || report.startsWith(u'^') ? text.isEmpty() : text.contains(report.toUtf8()), text.constData());
    }

    void setOperationsFollowTheirRules()
    {
        // Random texts rich in surrogate trouble: the one-pass operations equal the rules followed step by step.
        const QList<QString> alphabet{"a", "-", " ", Emoji, LoneHigh, LoneLow, QChar(0xD83C), QChar(0xDF00)};
        const QList<S> sets{chars("-"), chars("-" + Emoji), chars(QString(LoneHigh) + QChar(0xDF00)),
                            chars("- " + QString(QChar(0xD83C)) + QChar(0xDF00) + "\U0001F300"),
                            S::characterSetWithRange(0xD800, 0xDBFF), S::characterSetWithRange(0x1F300, 0x1F600)};
        QRandomGenerator random(20261123);
        const auto randomText = [&](int maxLength) {
            QString s = QStringLiteral("");
            for (int i = random.bounded(maxLength + 1); i > 0; --i)
                s += alphabet.at(random.bounded(int(alphabet.size())));
            return s;
        };
        int compared = 0, endless = 0;
        for (int round = 0; round < 6000; ++round) {
            const S &set = sets.at(round % sets.size());
            const QString text = randomText(12), other = randomText(3);
            QCOMPARE(kq_stringByEscapingCharactersInSet(text, set, other), literalEscape(text, set, other));
            QCOMPARE(kq_stringByRemovingCharactersInSet(text, set), literalRemove(text, set));
            if (set.rangeOfCharacterInString(other).isFound())
                continue;
            // Without end the rule replaces more often than the text has units; every finite run stays within that.
            const std::optional<QString> expected = literalReplace(text, set, other, 4 * int(text.size()) + 8);
            MessageCapture capture;
            const QString actual = kq_stringByReplacingCharactersInSet(text, set, other);
            const QByteArray messages = capture.text();
            QCOMPARE(actual, expected.value_or(QString()));
            QCOMPARE(actual.isNull(), !expected);
            QCOMPARE(messages.contains("replacement never completes a member"), !expected);
            ++(expected ? compared : endless);
        }
        QVERIFY(compared > 3000 && endless > 0);
    }

    // A free name is taken as given; a taken one gets a number before the extension;
    // names that would leave the folder are refused.
    void temporaryFiles_data()
    {
        QTest::addColumn<QStringList>("existing");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("expected");
        QTest::addColumn<QByteArray>("report");
        const QByteArray oneName("(name is one file name)");
        QTest::newRow("two taken") << QStringList{"clip.mov", "clip_1.mov"} << "clip" << "mov" << "clip_2.mov" << QByteArray();
        QTest::newRow("no extension, no dot") << QStringList{"clip"} << "clip" << QString() << "clip_1" << QByteArray();
        QTest::newRow("empty extension keeps its dot") << QStringList() << "clip" << "" << "clip." << QByteArray();
        QTest::newRow("null name") << QStringList() << QString() << "txt" << QString() << oneName;
        QTest::newRow("path in the name") << QStringList() << "../escape" << "txt" << QString() << oneName;
        QTest::newRow("slash in the extension") << QStringList() << "x" << "a/../../b" << QString() << QByteArray("(extension holds no slash)");
        QTest::newRow("temporary directory missing") << QStringList{"/missing"} << "x" << "txt" << QString() << QByteArray("no temporary directory");
    }
    void temporaryFiles()
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
        QCOMPARE(path, expected.isNull() ? QString() : temp.path() + u'/' + expected);
        QCOMPARE(temp.entries().size(), existing.size() + (expected.isNull() ? 0 : 1));
        if (!expected.isNull()) {
            struct stat info;
            QVERIFY(::stat(QFile::encodeName(path).constData(), &info) == 0 && (info.st_mode & 07777) == 0700 && info.st_size == 0);
        }
    }

    void temporaryFileUnderContention()
    {
        // Threads released together all ask for the same name; each gets its own file.
        ScopedTempDir temp;
        QStringList paths(4);
        std::latch start(4);
        {
            std::vector<std::jthread> threads;
            for (int i = 0; i < 4; ++i) {
                threads.emplace_back([&, i] {
                    start.arrive_and_wait();
                    paths[i] = KQTemporaryFile(QStringLiteral("same"), QStringLiteral("dat"));
                });
            }
        }
        QCOMPARE(QSet<QString>(paths.cbegin(), paths.cend()).size(), 4);
        QCOMPARE(temp.entries().size(), 4);
    }

    void fileReferenceAndTemporaryPath()
    {
        ScopedTempDir temp;
        const QString a = temporaryPathWithExtension(QStringLiteral("png"));
        QVERIFY(a != temporaryPathWithExtension(QStringLiteral("png")));
        QVERIFY2(QRegularExpression(QRegularExpression::escape(temp.path()) + QStringLiteral("/QN64_\\w{6}\\.png$"))
                     .match(a)
                     .hasMatch(),
                 qPrintable(a));
        // A reference follows its file through a rename, not its old name.
        const QString path = KQTemporaryFile(QStringLiteral("ref"), QStringLiteral("txt"));
        KQFileReference ref;
        QVERIFY(kq_fillFSRef(QUrl::fromLocalFile(path), &ref));
        const QString renamed = temp.path() + QStringLiteral("/renamed.txt");
        QVERIFY(QFile::rename(path, renamed) && touch(path));
        QCOMPARE(kq_URLFromFSRef(&ref), QUrl::fromLocalFile(renamed));
        QVERIFY(QFile::remove(renamed));
        QVERIFY(kq_URLFromFSRef(&ref).isEmpty());
        QVERIFY(!kq_fillFSRef(QUrl(QStringLiteral("https://example.org/a")), &ref));
        MessageCapture capture;
        QVERIFY(temporaryPathWithExtension(QStringLiteral("a/b")).isNull());
        QVERIFY(kq_URLFromFSRef(nullptr).isEmpty());
        QVERIFY(!kq_fillFSRef(QUrl::fromLocalFile(temp.path()), nullptr));
        QVERIFY(KQSecTransform(QByteArray("x"), "base32", true).isNull());
        const QByteArray messages = capture.text();
        QVERIFY(messages.contains("(extension holds no slash)") && messages.contains("Assertion: (transform)"));
        QCOMPARE(messages.count("Assertion: (fsref)"), 2);
    }

    // Binding a view's value to a key path of the tree (the root's number is 7), then the view
    // propagating a value: what the view read, what the binding holds (raw) and what is said.
    // Transformers: an object before a name; forward on the way to the view, reverse on the way back.
    // When a participant goes first, the view's own change reaches the model only while bound.
    void binding_data()
    {
        QTest::addColumn<QString>("keyPath");
        QTest::addColumn<QVariantMap>("options");
        QTest::addColumn<QString>("gone");
        QTest::addColumn<QVariant>("read");
        QTest::addColumn<QVariant>("write");
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<QString>("report"); // "?": some report
        const auto same = [](const QVariant &v) { return v; };
        const auto make = [this](const std::function<QVariant(const QVariant &)> &forward,
                                 const std::function<QVariant(const QVariant &)> &reverse) {
            return QVariantMap{{QLatin1String(NSValueTransformerBindingOption),
                                QVariant::fromValue<QObject *>(KQValueTransformer::create(forward, reverse, this))},
                               {QLatin1String(NSValueTransformerNameBindingOption), QStringLiteral("Plus1")}};
        };
        const QVariantMap byName{{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(nullptr)},
                                 {QLatin1String(NSValueTransformerNameBindingOption), QStringLiteral("Plus1")}};
        const QVariantMap notATransformer{{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue<QObject *>(this)}};
        const QVariant none;
        QTest::newRow("two children deep") << "child.child.name" << QVariantMap() << "" << QVariant("leaf")
                                           << QVariant("new leaf") << QVariant("new leaf") << "";
        QTest::newRow("nested map key") << "settings.page.width" << QVariantMap() << "" << QVariant(10) << QVariant(12) << QVariant(12) << "";
        QTest::newRow("past the last child") << "child.child.child.number" << QVariantMap() << "" << none << QVariant(9) << none << "?";
        QTest::newRow("unconvertible text") << "number" << QVariantMap() << "" << QVariant(7) << QVariant("four") << QVariant(7) << "?";
        QTest::newRow("read-only") << "fixed" << QVariantMap() << "" << QVariant(1) << QVariant(2) << QVariant(1) << "?";
        QTest::newRow("undeclared name") << "child.missing" << QVariantMap() << "" << none << none << none << "?";
        const auto twice = [](const QVariant &v) { return QVariant(v.toInt() * 2); };
        QTest::newRow("transformer object before name") << "number" << make(twice, [](const QVariant &v) { return QVariant(v.toInt() * 10); })
                                                        << "" << QVariant(14) << QVariant(5) << QVariant(50) << "";
        QTest::newRow("null object: the name") << "number" << byName << "" << QVariant(6) << QVariant(5) << QVariant(6) << "";
        QTest::newRow("no reverse") << "number" << make(same, {}) << "" << QVariant(7) << QVariant(5) << QVariant(7)
                                    << "[[transformer class] allowsReverseTransformation]";
        QTest::newRow("reverse gives nothing") << "number" << make(same, [](const QVariant &) { return QVariant(); })
                                               << "" << QVariant(7) << QVariant(5) << QVariant(7) << "gave no value back";
        QTest::newRow("not a transformer") << "number" << notATransformer << "" << QVariant(7) << QVariant(5) << QVariant(7)
                                           << "transformer is a KQValueTransformer";
        const QVariantMap transformer{
            {QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue<QObject *>(KQValueTransformer::create(same, same, this))}};
        QTest::newRow("model gone") << "child.number" << QVariantMap() << "model" << QVariant(3) << QVariant(9) << none << "";
        QTest::newRow("middle node gone") << "child.number" << QVariantMap() << "middle" << QVariant(3) << QVariant(9) << none
                                  << "does not reach an object";
        QTest::newRow("transformer gone: stored as given") << "child.number" << transformer << "transformer" << QVariant(3) << QVariant(11)
                                                           << QVariant(11) << "";
        QTest::newRow("unbound") << "child.number" << QVariantMap() << "unbind" << QVariant(3) << QVariant(13) << none << "";
    }
    void binding()
    {
        QFETCH(QString, keyPath);
        QFETCH(QVariantMap, options);
        QFETCH(QString, gone);
        QFETCH(QVariant, read);
        QFETCH(QVariant, write);
        QFETCH(QVariant, stored);
        QFETCH(QString, report);
        auto tree = std::make_unique<Tree>();
        Node view;
        MessageCapture capture;
        const bool bound = kq_bind(&view, Value, &tree->root, keyPath, options);
        QCOMPARE(kq_infoForBinding(&view, Value).isEmpty(), !bound);
        QCOMPARE(bound, write.isValid()); // the rows that cannot bind write nothing
        if (bound) {
            QCOMPARE(view.value, read);
            if (gone == u"model") {
                tree.reset();
                QVERIFY(kq_infoForBinding(&view, Value).isEmpty());
            } else if (gone == u"middle") {
                auto temporary = std::make_unique<Node>();
                tree->root.setChild(temporary.get());
                QCOMPARE(view.value, QVariant(temporary->number));
                temporary.reset(); // the root's pointer clears itself without a change signal
                QCoreApplication::processEvents();
                QVERIFY(!view.value.isValid());
            } else if (gone == u"transformer") {
                delete options.value(QLatin1String(NSValueTransformerBindingOption)).value<QObject *>();
            } else if (gone == u"unbind") {
                kq_unbind(&view, Value);
                tree->middle.setProperty("number", 12); // reaches the view no more
                QCOMPARE(view.value, read);
            }
            if (gone.isEmpty())
                kq_propagateValue(&view, write, Value);
            else
                view.setProperty("value", write);
            QCOMPARE(kq_valueForBinding(&view, Value), stored);
            if (tree) // siblings kept
                QCOMPARE(tree->root.settings.value(QStringLiteral("zoom")), QVariant(2));
            if (gone == u"unbind") // nor does the view's change reach the model
                QCOMPARE(tree->middle.number, 12);
        }
        const QByteArray text = capture.text();
        QVERIFY2(report == u"?" ? !text.isEmpty() : report.isEmpty() ? text.isEmpty() : text.contains(report.toUtf8()), text.constData());
    }

    void objectHelpers()
    {
        // Deep copies of values that can be archived; objects cannot be.
        QObject object;
        const QVariant nested(QVariantList{1, QVariantMap{{"list", QVariantList{3.5, QVariantHash{{"k", QByteArray("v")}}}}, {"nil", QVariant()}}});
        MessageCapture capture;
        QCOMPARE(KQCloneUsingCoding(nested), nested);
        QVERIFY(!KQCloneUsingCoding(QVariant()).isValid());
        QVERIFY(!KQCloneUsingCoding(QVariantMap{{"a", QVariantList{1, QVariant::fromValue(&object)}}}).isValid());
        QVERIFY(capture.text().contains("cannot be archived"));
        // Invoking by name what the object declares, with a convertible argument only.
        Node node;
        QCOMPARE(kq_performSelectorIfResponds(&node, "twice", QVariant(QStringLiteral("4"))), QVariant(8));
        QVERIFY(!kq_performSelectorIfResponds(&node, "twice", QVariant("x")).isValid());
        QVERIFY(!kq_performSelectorIfResponds(nullptr, "twice").isValid());
        QCOMPARE(node.calls, 1);
        // Map and filter stop where asked; a nil from map is reported and kept as null.
        const QVariantList list{1, 2, 3, 4};
        const auto doubled = [](const QVariant &element, qsizetype index, bool *stop) {
            *stop = index == 2;
            return index == 1 ? QVariant() : QVariant(element.toInt() * 2);
        };
        MessageCapture nilReport;
        QCOMPARE(kq_map(list, doubled), (QVariantList{2, QVariant::fromValue(nullptr), 6}));
        QCOMPARE(kq_mapAndFilter(list, doubled), (QVariantList{2, 6}));
        QCOMPARE(kq_filter(list,
                           [](const QVariant &e, qsizetype index, bool *stop) {
                               *stop = index == 1;
                               return e.toInt() % 2 == 1;
                           }),
                 QVariantList{1});
        QCOMPARE(nilReport.text().count("KQAssertNeverExecuted was executed"), 1);
        // Objects deleted later go when their own scope ends, not an outer one's.
        QPointer<QObject> outer, inner;
        kq_subpool([&] {
            (outer = new QObject)->deleteLater();
            kq_subpool([&] { (inner = new QObject)->deleteLater(); });
            QVERIFY(!inner && outer);
        });
        QVERIFY(!outer);
    }
};

QTEST_MAIN(tst_Foundation)
#include "tst_foundation.moc"
