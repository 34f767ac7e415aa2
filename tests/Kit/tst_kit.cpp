// Errors, menus built from property lists, HTTP form bodies read back by
// Python's own parsers, rich text measuring and drawing, and printing.
#include "MessageCapture.h"

#include <TarnCommon/KQError.h>
#include <TarnCommon/KQMenuExtensions.h>
#include <TarnCommon/KQPrintInfo.h>
#include <TarnCommon/KQTextLayout.h>
#include <TarnCommon/KQURLRequest.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMimeData>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <cmath>
#include <stdexcept>

using Pairs = QList<QPair<QString, QString>>;

namespace {

const QByteArray Boundary = "---------------------------14737809831466499882746641449";

// Characters whose UTF-8 bytes, together, take every byte value UTF-8 text
// can hold, NUL aside.
QString everyByteText()
{
    QString text;
    for (char16_t c = 1; c < 0x100; ++c)
        text += QChar(c);
    for (char32_t c = 0x100; c < 0x800; c += 0x40)
        text += QString::fromUcs4(&c, 1);
    for (char32_t c = 0x800; c < 0x10000; c = (c & ~0xFFFu) + 0x1000) // lead bytes E0 to EF
        text += QString::fromUcs4(&c, 1);
    for (char32_t c : {0x10000u, 0x40000u, 0x100000u, 0x10FFFFu})
        text += QString::fromUcs4(&c, 1);
    return text;
}

QTextDocumentFragment styledText(const QString &text, const QFont &font, Qt::Alignment alignment = Qt::AlignLeft)
{
    QTextDocument document;
    QTextCursor cursor(&document);
    QTextBlockFormat block;
    block.setAlignment(alignment);
    cursor.setBlockFormat(block);
    QTextCharFormat format;
    format.setFont(font);
    cursor.insertText(text, format);
    return QTextDocumentFragment(&document);
}

// The bounding box of every pixel that is not white.
QRect inkBounds(const QImage &image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                ink |= QRect(x, y, 1, 1);
    return ink;
}

QImage blank(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    return image;
}

// What a PDF page shows: its media box and the rectangles it fills, in page
// points (y up), from the q/Q/cm/re operators of its content streams.
struct PdfPage
{
    QRectF mediaBox;
    QList<QRectF> filled;
};

void interpret(const QByteArray &content, PdfPage &page)
{
    QList<QTransform> stack{QTransform()};
    QList<qreal> operands;
    for (const QByteArray &token : content.simplified().split(' ')) {
        bool isNumber = false;
        const qreal value = token.toDouble(&isNumber);
        if (isNumber) {
            operands.append(value);
            continue;
        }
        if (token == "q") {
            stack.append(stack.last());
        } else if (token == "Q" && stack.size() > 1) {
            stack.removeLast();
        } else if (token == "cm" && operands.size() >= 6) {
            const auto m = operands.mid(operands.size() - 6);
            stack.last() = QTransform(m[0], m[1], m[2], m[3], m[4], m[5]) * stack.last();
        } else if (token == "re" && operands.size() >= 4) {
            const auto r = operands.mid(operands.size() - 4);
            page.filled.append(stack.last().mapRect(QRectF(r[0], r[1], r[2], r[3])));
        }
        operands.clear();
    }
}

PdfPage readPdf(const QString &path)
{
    QFile file(path);
    PdfPage page;
    if (!file.open(QIODevice::ReadOnly))
        return page;
    const QByteArray pdf = file.readAll();
    const auto box = QRegularExpression(QStringLiteral("/MediaBox \\[([^\\]]*)\\]")).match(QString::fromLatin1(pdf));
    const QStringList v = box.captured(1).simplified().split(u' ');
    if (v.size() == 4)
        page.mediaBox = QRectF(QPointF(v[0].toDouble(), v[1].toDouble()), QPointF(v[2].toDouble(), v[3].toDouble()));
    for (qsizetype at = 0; (at = pdf.indexOf("stream\n", at)) >= 0;) {
        const qsizetype start = at + 7;
        const qsizetype end = pdf.indexOf("endstream", start);
        if (end < 0)
            break;
        const QByteArray zlib = pdf.mid(start, end - start);
        const QByteArray content = qUncompress(QByteArray::fromHex("00100000") + zlib); // room for 1 MB
        interpret(content.isEmpty() ? zlib : content, page);
        at = end;
    }
    return page;
}

} // namespace

// Answers two menu actions and records who called it with what.
class Receiver : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;
    QStringList calls;
public Q_SLOTS:
    void open() { calls << QStringLiteral("open"); }
    void save(QAction *sender) { calls << QStringLiteral("save:") + sender->text(); }
};

class SpecialMenu : public QMenu
{
    Q_OBJECT
public:
    using QMenu::QMenu;
};

class tst_Kit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void errorWithDescription_data();
    void errorWithDescription();

    void itemFromProperties_data();
    void itemFromProperties();
    void menuFromList();
    void actionReachesItsReceiver_data();
    void actionReachesItsReceiver();
    void keyEquivalentIsAShortcut();

    void formBody_data();
    void formBody();
    void multipartBody();
    void formReceivedByPython_data();
    void formReceivedByPython();
    void multipartReceivedByPython_data();
    void multipartReceivedByPython();

    void measuring_data();
    void measuring();
    void drawingFitsMeasuredBounds_data();
    void drawingFitsMeasuredBounds();
    void drawingCentres_data();
    void drawingCentres();
    void framesCutWhatDoesNotFit();
    void badText_data();
    void badText();

    void fitting_data();
    void fitting();
    void printedPageIsFilled_data();
    void printedPageIsFilled();
    void isolate();
    void imageFromPasteboard_data();
    void imageFromPasteboard();

private:
    QJsonObject post(const KQURLRequest &request);

    QProcess m_server;
    QUrl m_url;
    QNetworkAccessManager m_manager;
};

void tst_Kit::initTestCase()
{
    m_server.start(QStringLiteral(PYTHON3), {QStringLiteral(POST_ECHO_SERVER)});
    QVERIFY(m_server.waitForStarted());
    QVERIFY(m_server.waitForReadyRead(30000));
    const int port = m_server.readLine().trimmed().toInt();
    QVERIFY(port > 0);
    m_url = QUrl(QStringLiteral("http://127.0.0.1:%1/post").arg(port));
}

void tst_Kit::cleanupTestCase()
{
    m_server.kill();
    m_server.waitForFinished();
}

void tst_Kit::errorWithDescription_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("longDescription");
    QTest::addColumn<QStringList>("keys");
    QTest::addColumn<QString>("shown"); // localizedDescription()
    const QString fallback = QStringLiteral("The operation couldn\u2019t be completed. (KQErrorDomain error 0.)");
    QTest::newRow("both") << "Short" << "Long"
                          << QStringList{"NSLocalizedDescription", "NSLocalizedRecoverySuggestion"} << "Short";
    QTest::newRow("short only") << "Short" << QString() << QStringList{"NSLocalizedDescription"} << "Short";
    QTest::newRow("long only") << QString() << "Long" << QStringList{"NSLocalizedRecoverySuggestion"} << fallback;
    QTest::newRow("neither") << QString() << QString() << QStringList() << fallback;
    QTest::newRow("empty texts are texts") << "" << ""
                                           << QStringList{"NSLocalizedDescription", "NSLocalizedRecoverySuggestion"}
                                           << "";
}

void tst_Kit::errorWithDescription()
{
    QFETCH(QString, description);
    QFETCH(QString, longDescription);
    QFETCH(QStringList, keys);
    QFETCH(QString, shown);
    const KQError error = KQError::kq_errorWithDescription(description, longDescription);
    QCOMPARE(error.domain(), QString::fromLatin1(KQErrorDomain));
    QCOMPARE(error.code(), 0);
    QCOMPARE(error.userInfo().keys(), keys);
    QCOMPARE(error.localizedDescription(), shown);
    QCOMPARE(error.localizedRecoverySuggestion(), longDescription);
    QCOMPARE(error.localizedRecoverySuggestion().isNull(), longDescription.isNull());

    // Put into an error that held something else, or into nothing at all.
    KQError target(QStringLiteral("Other"), 99, {{QStringLiteral("k"), 1}});
    QVERIFY(KQError::kq_putErrorInto(&target, description, longDescription));
    QCOMPARE(target, error);
    QVERIFY(KQError::kq_putErrorInto(nullptr, description, longDescription));
}

void tst_Kit::itemFromProperties_data()
{
    QTest::addColumn<QVariantMap>("properties");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shortcut");
    QTest::addColumn<int>("checkState"); // -1 not checkable, 0 unchecked, 1 checked
    QTest::addColumn<QVariant>("data");
    QTest::addColumn<QString>("report");
    const QString none;
    QTest::newRow("empty map") << QVariantMap{} << none << none << -1 << QVariant() << none;
    QTest::newRow("title and key equivalent")
        << QVariantMap{{"title", "Open"}, {"keyEquivalent", "o"}} << "Open" << "Ctrl+O" << -1 << QVariant() << none;
    QTest::newRow("upper case adds Shift") << QVariantMap{{"keyEquivalent", "S"}} << none << "Ctrl+Shift+S" << -1
                                           << QVariant() << none;
    QTest::newRow("key equivalent as a sequence")
        << QVariantMap{{"keyEquivalent", "Ctrl+Alt+P"}} << none << "Ctrl+Alt+P" << -1 << QVariant() << none;
    QTest::newRow("Qt names") << QVariantMap{{"text", "Quit"}, {"shortcut", "Ctrl+Q"}, {"checkable", true}}
                              << "Quit" << "Ctrl+Q" << 0 << QVariant() << none;
    QTest::newRow("state on") << QVariantMap{{"state", 1}} << none << none << 1 << QVariant() << none;
    QTest::newRow("state off") << QVariantMap{{"state", 0}} << none << none << 0 << QVariant() << none;
    QTest::newRow("later key wins") << QVariantMap{{"text", "A"}, {"title", "B"}} << "B" << none << -1 << QVariant()
                                    << none;
    QTest::newRow("tag is the data") << QVariantMap{{"tag", 7}} << none << none << -1 << QVariant(7) << none;
    QTest::newRow("unknown key refused, others kept") << QVariantMap{{"bogus", 1}, {"title", "Kept"}} << "Kept"
                                                      << none << -1 << QVariant()
                                                      << "QAction has no property \"bogus\"";
    QTest::newRow("wrong type for a property")
        << QVariantMap{{"enabled", QVariantList{1}}, {"title", "Kept"}} << "Kept" << none << -1 << QVariant()
        << "\"enabled\" cannot take a value of type QVariantList";
    QTest::newRow("wrong type for a key equivalent") << QVariantMap{{"keyEquivalent", 5}} << none << none << -1
                                                     << QVariant() << "\"keyEquivalent\" cannot take a value of type int";
    QTest::newRow("wrong type for the action") << QVariantMap{{"action", 3.5}} << none << none << -1 << QVariant()
                                               << "\"action\" cannot take";
}

void tst_Kit::itemFromProperties()
{
    QFETCH(QVariantMap, properties);
    QFETCH(QString, text);
    QFETCH(QString, shortcut);
    QFETCH(int, checkState);
    QFETCH(QVariant, data);
    QFETCH(QString, report);
    MessageCapture capture;
    std::unique_ptr<QAction> item(kq_menuItemWithProperties(properties));
    const QByteArray messages = capture.text();
    QCOMPARE(item->metaObject(), &QAction::staticMetaObject);
    QCOMPARE(item->text(), text);
    QCOMPARE(item->shortcut().toString(QKeySequence::PortableText), shortcut);
    QCOMPARE(item->isCheckable() ? int(item->isChecked()) : -1, checkState);
    QCOMPARE(item->data(), data);
    QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report.toUtf8()), messages);
}

void tst_Kit::menuFromList()
{
    QWidget owner;
    auto *ready = new QAction(QStringLiteral("Ready"), &owner);
    auto *separator = new QAction(&owner);
    separator->setSeparator(true);
    MessageCapture capture;
    SpecialMenu *menu = kq_menuWithItemProperties<SpecialMenu>(
        {QVariantMap{{"title", "First"}}, QVariant::fromValue(ready), QVariant::fromValue(separator), QVariant(42),
         QVariantMap{{"title", "Last"}, {"submenu", QVariantList{QVariantMap{{"title", "Inner"}}}}}},
        &owner);
    QVERIFY(capture.text().contains("Menu element 3 is neither a property map nor a QAction"));
    QCOMPARE(menu->parentWidget(), &owner);
    const QList<QAction *> actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QCOMPARE(actions.at(0)->text(), QStringLiteral("First"));
    QCOMPARE(actions.at(1), ready);
    QCOMPARE(actions.at(2), separator);
    QCOMPARE(actions.at(3)->menu()->actions().constFirst()->text(), QStringLiteral("Inner"));
    QVERIFY(kq_menuWithItemProperties({}, &owner)->actions().isEmpty());
}

void tst_Kit::actionReachesItsReceiver_data()
{
    QTest::addColumn<QString>("how");
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QStringList>("targetCalls");
    QTest::addColumn<QStringList>("chainCalls");
    QTest::addColumn<QString>("report");
    QTest::newRow("explicit target") << "target" << QByteArray("open") << QStringList{"open"} << QStringList{}
                                     << QString();
    QTest::newRow("target given the item") << "target" << QByteArray("save") << QStringList{"save:Item"}
                                           << QStringList{} << QString();
    QTest::newRow("focus widget's ancestors") << "focus" << QByteArray("open") << QStringList{}
                                              << QStringList{"open"} << QString();
    QTest::newRow("context menu's owner") << "context" << QByteArray("save") << QStringList{}
                                          << QStringList{"save:Item"} << QString();
    QTest::newRow("tool button's menu") << "toolbutton" << QByteArray("open") << QStringList{} << QStringList{"open"}
                                        << QString();
    QTest::newRow("nobody answers") << "context" << QByteArray("missing") << QStringList{} << QStringList{}
                                    << "No object along the responder chain answers the menu action \"missing\"";
}

void tst_Kit::actionReachesItsReceiver()
{
    QFETCH(QString, how);
    QFETCH(QByteArray, action);
    QFETCH(QStringList, targetCalls);
    QFETCH(QStringList, chainCalls);
    QFETCH(QString, report);
    Receiver target;
    Receiver window;
    auto *layout = new QVBoxLayout(&window);
    auto *edit = new QLineEdit(&window);
    auto *button = new QToolButton(&window);
    layout->addWidget(edit);
    layout->addWidget(button);
    std::unique_ptr<QMenu> unowned;
    QMenu *menu = nullptr;
    if (how == QLatin1String("focus")) {
        unowned = std::make_unique<QMenu>(); // only the focus leads to the window
        menu = unowned.get();
        window.show();
        QApplication::setActiveWindow(&window);
        edit->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    } else if (how == QLatin1String("toolbutton")) {
        menu = new QMenu(button);
        button->setMenu(menu);
    } else {
        menu = new QMenu(&window);
    }
    QAction *item = kq_addItemWithTitle(menu, QStringLiteral("Item"), action,
                                        how == QLatin1String("target") ? &target : nullptr);
    QCOMPARE(kq_action(item), action);
    MessageCapture capture;
    item->trigger();
    const QByteArray messages = capture.text();
    QCOMPARE(target.calls, targetCalls);
    QCOMPARE(window.calls, chainCalls);
    QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report.toUtf8()), messages);
}

void tst_Kit::keyEquivalentIsAShortcut()
{
    const QVariantList bar{QVariantMap{
        {"title", "File"},
        {"submenu", QVariantList{QVariantMap{{"title", "Open"}, {"action", "open"}, {"keyEquivalent", "o"}},
                                 QVariantMap{{"title", "Save As"}, {"action", "save"}, {"keyEquivalent", "S"}}}}}};
    QMainWindow window;
    auto *receiver = new Receiver(&window);
    receiver->setFocusPolicy(Qt::StrongFocus);
    window.setCentralWidget(receiver);
    kq_addItemsWithProperties(window.menuBar(), bar);
    window.show();
    QApplication::setActiveWindow(&window);
    QVERIFY(QTest::qWaitForWindowActive(&window));
    receiver->setFocus(); // the first responder
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(receiver->calls, (QStringList{"open", "save:Save As"}));
}

QJsonObject tst_Kit::post(const KQURLRequest &request)
{
    QNetworkReply *reply = request.send(&m_manager);
    if (!reply)
        return {};
    QSignalSpy finished(reply, &QNetworkReply::finished);
    if (!reply->isFinished() && !finished.wait(30000))
        return {};
    reply->deleteLater();
    return QJsonDocument::fromJson(reply->readAll()).object();
}

void tst_Kit::formBody_data()
{
    QTest::addColumn<Pairs>("parameters");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("contentLength");
    QTest::newRow("empty") << Pairs() << QByteArray("") << QByteArray("0");
    QTest::newRow("blank and ampersand") << Pairs{{"a b", "x&y"}} << QByteArray("a+b=x%26y") << QByteArray("3");
    QTest::newRow("length counts characters before encoding")
        << Pairs{{"k", QString::fromUtf8("caf\xC3\xA9")}} << QByteArray("k=caf%C3%A9") << QByteArray("4");
    QTest::newRow("marks") << Pairs{{"m", "~_*+-./%="}} << QByteArray("m=~_%2A%2B-.%2F%25%3D") << QByteArray("9");
    QTest::newRow("order kept, a pair counts two") << Pairs{{"z", "1"}, {"a", QString::fromUtf8("\xF0\x9F\x98\x80")}}
                                                   << QByteArray("z=1&a=%F0%9F%98%80") << QByteArray("3");
    QTest::newRow("stops at NUL") << Pairs{{"n", QString::fromUtf16(u"a\0b", 3)}} << QByteArray("n=a")
                                  << QByteArray("3");
}

void tst_Kit::formBody()
{
    QFETCH(Pairs, parameters);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, contentLength);
    KQURLRequest request(QUrl(QStringLiteral("http://example.invalid/")));
    request.setValue("text/plain", "content-type");
    request.setValue("999", "Content-Length");
    kq_setHTTPPostParameters(request, parameters);
    QCOMPARE(request.HTTPBody(), body);
    QCOMPARE(request.HTTPMethod(), QByteArray("POST"));
    QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), contentLength);
    QCOMPARE(request.valueForHTTPHeaderField("Content-Type"), QByteArray("application/x-www-form-urlencoded"));
    QCOMPARE(request.allHTTPHeaderFields().size(), 2);
}

void tst_Kit::multipartBody()
{
    KQURLRequest request;
    request.setValue("text/plain", "Content-Type");
    kq_setHTTPPostFile(request, QStringLiteral("<a>1234</a>"), QStringLiteral("f.xml"), QStringLiteral("up"));
    QCOMPARE(request.HTTPBody(), "--" + Boundary + "\r\n"
                                 "Content-Disposition: attachment; name=\"up\"; filename=\"f.xml\"\r\n"
                                 "Content-Type: text/xml\r\n\r\n"
                                 "<a>1234</a>\r\n"
                                 "--" + Boundary + "--\r\n");
    QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), QByteArray("11"));
    QCOMPARE(request.HTTPMethod(), QByteArray("POST"));
    QCOMPARE(request.valueForHTTPHeaderField("content-type"), "text/plain,multipart/form-data; boundary=" + Boundary);
    // Without contents nothing changes.
    const KQURLRequest before = request;
    kq_setHTTPPostFile(request, QString(), QStringLiteral("g"), QStringLiteral("k"));
    QVERIFY(request == before);
}

void tst_Kit::formReceivedByPython_data()
{
    QTest::addColumn<Pairs>("parameters");
    QTest::newRow("plain") << Pairs{{"name", "Ada"}, {"lang", "en"}};
    QTest::newRow("every byte value") << Pairs{{everyByteText(), everyByteText()}, {"second", "&=+%"}};
    QTest::newRow("empty value and key") << Pairs{{"", ""}, {"k", ""}};
}

void tst_Kit::formReceivedByPython()
{
    QFETCH(Pairs, parameters);
    KQURLRequest request(m_url);
    kq_setHTTPPostParameters(request, parameters);
    const QJsonObject answer = post(request);
    QVERIFY(!answer.isEmpty());
    // The whole body arrives, whatever the stored Content-Length says.
    QCOMPARE(answer.value(QLatin1String("body")).toString().toLatin1(), request.HTTPBody());
    Pairs received;
    for (const QJsonValue &field : answer.value(QLatin1String("fields")).toArray())
        received.append({field.toArray().at(0).toString(), field.toArray().at(1).toString()});
    QCOMPARE(received, parameters);
    // Python's own form encoding of the same fields is byte for byte ours.
    QCOMPARE(answer.value(QLatin1String("requoted")).toString().toLatin1(), request.HTTPBody());
}

void tst_Kit::multipartReceivedByPython_data()
{
    QTest::addColumn<QString>("contents");
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("key");
    QTest::newRow("xml") << QStringLiteral("<?xml version=\"1.0\"?>\n<doc/>") << "doc.xml" << "file";
    QTest::newRow("non-ASCII") << QString::fromUtf8("<t>caf\xC3\xA9 \xF0\x9F\x98\x80</t>")
                               << QString::fromUtf8("r\xC3\xA9sum\xC3\xA9.xml") << QString::fromUtf8("pi\xC3\xA8""ce");
    QTest::newRow("empty file") << QStringLiteral("") << "empty.xml" << "f";
}

void tst_Kit::multipartReceivedByPython()
{
    QFETCH(QString, contents);
    QFETCH(QString, filename);
    QFETCH(QString, key);
    KQURLRequest request(m_url);
    kq_setHTTPPostFile(request, contents, filename, key);
    const QJsonObject answer = post(request);
    QVERIFY(!answer.isEmpty());
    QCOMPARE(answer.value(QLatin1String("defects")).toArray().size(), 0);
    const QJsonArray parts = answer.value(QLatin1String("parts")).toArray();
    QCOMPARE(parts.size(), 1);
    const QJsonObject part = parts.at(0).toObject();
    QCOMPARE(part.value(QLatin1String("name")).toString(), key);
    QCOMPARE(part.value(QLatin1String("filename")).toString(), filename);
    QCOMPARE(part.value(QLatin1String("type")).toString(), QStringLiteral("text/xml"));
    QCOMPARE(part.value(QLatin1String("content")).toString(), contents);
}

void tst_Kit::measuring_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("points");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("wrapped"); // laid out just wider than the widest word
    for (const char *family : {"DejaVu Sans", "DejaVu Serif", "DejaVu Sans Mono"}) {
        for (const int points : {9, 17}) {
            QTest::addRow("%s %d one line", family, points) << family << points << "Tarn measuring" << false;
            QTest::addRow("%s %d wrapped", family, points) << family << points << "alpha gamma omega" << true;
        }
    }
}

void tst_Kit::measuring()
{
    QFETCH(QString, family);
    QFETCH(int, points);
    QFETCH(QString, text);
    QFETCH(bool, wrapped);
    QFont font(family);
    font.setPointSize(points);
    const QFontMetricsF metrics(font);
    const QStringList words = text.split(u' ');
    qreal widest = 0;
    for (const QString &word : words)
        widest = std::max(widest, metrics.horizontalAdvance(word));
    const qsizetype lines = wrapped ? words.size() : 1;
    // Lines stack by their whole-pixel height; the last counts to its descent, plus 1.
    const qreal lastBaseline = (lines - 1) * std::ceil(metrics.ascent() + metrics.descent()) + metrics.ascent();
    const QRectF bounds = kq_boundsWithMaxWidth(styledText(text, font), wrapped ? widest + 1 : 10000);
    QCOMPARE(bounds.topLeft(), QPointF(0, 0));
    QCOMPARE(bounds.width(), std::ceil(wrapped ? widest : metrics.horizontalAdvance(text)));
    QCOMPARE(bounds.height(), std::ceil(lastBaseline + metrics.descent() + 1));
}

void tst_Kit::drawingFitsMeasuredBounds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("points");
    QTest::addColumn<qreal>("maxWidth");
    QTest::newRow("one short line") << QStringLiteral("Fits") << 12 << qreal(400);
    QTest::newRow("wrapped paragraph")
        << QStringLiteral("A text that wraps into several lines when it is narrow enough to need them.") << 11 << qreal(120);
    QTest::newRow("several paragraphs") << QStringLiteral("First\nSecond, longer paragraph\nThird") << 14 << qreal(90);
}

void tst_Kit::drawingFitsMeasuredBounds()
{
    QFETCH(QString, text);
    QFETCH(int, points);
    QFETCH(qreal, maxWidth);
    QFont font(QStringLiteral("DejaVu Serif"));
    font.setPointSize(points);
    const QTextDocumentFragment fragment = styledText(text, font);
    const QRectF measured = kq_boundsWithMaxWidth(fragment, maxWidth);
    QVERIFY(measured.width() <= std::ceil(maxWidth));
    // Every line laid out without a height limit fits the measured rectangle too.
    const qsizetype allLines = kq_newCTFrameRefWithBounds(fragment, QRectF(0, 0, maxWidth, 99999)).lines().size();
    const QRectF placed = measured.translated(7, 9);
    QCOMPARE(kq_newCTFrameRefWithBounds(fragment, placed).lines().size(), allLines);
    QImage image = blank(QSize(int(placed.right()) + 20, int(placed.bottom()) + 20));
    QPainter painter(&image);
    kq_drawInBounds(fragment, &painter, placed);
    painter.end();
    const QRect ink = inkBounds(image);
    QVERIFY(!ink.isNull());
    QVERIFY(QRectF(placed).adjusted(-1, 0, 1, 0).contains(QRectF(ink)));
}

void tst_Kit::drawingCentres_data()
{
    QTest::addColumn<int>("alignment");
    QTest::newRow("left-aligned text") << int(Qt::AlignLeft);
    QTest::newRow("right-aligned text") << int(Qt::AlignRight);
    QTest::newRow("justified text") << int(Qt::AlignJustify);
}

void tst_Kit::drawingCentres()
{
    QFETCH(int, alignment);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(20);
    const QRectF rect(10, 5, 300, 60);
    QImage image = blank(QSize(330, 80));
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    kq_drawInBounds(styledText(QStringLiteral("Hi there"), font, Qt::Alignment(alignment)), &painter, rect);
    QCOMPARE(painter.pen().joinStyle(), Qt::BevelJoin); // left set on the painter
    painter.end();
    const QRect ink = inkBounds(image);
    QVERIFY(!ink.isNull());
    QVERIFY(std::abs(QRectF(ink).center().x() - rect.center().x()) <= 2.5);
    QVERIFY(ink.top() >= rect.top()); // the first line at the top
    QVERIFY(ink.bottom() < rect.top() + QFontMetricsF(font).height() + 1);
}

void tst_Kit::framesCutWhatDoesNotFit()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    const qreal lineHeight = std::ceil(QFontMetricsF(font).height());
    const KQTextFrame frame =
        kq_newCTFrameRefWithBounds(styledText(QStringLiteral("one\ntwo\nthree"), font), QRectF(3, 4, 200, 2 * lineHeight + 1));
    QCOMPARE(frame.lines().size(), 2);
    QCOMPARE(frame.bounds(), QRectF(3, 4, 200, 2 * lineHeight + 1));
    QCOMPARE(frame.lines().at(1).textStart, 4);
    QCOMPARE(frame.lines().first().baselineOrigin, QPointF(3, 4 + QFontMetricsF(font).ascent()));
    // A text taller than the measuring height is measured to the last line that fits.
    const QRectF measured = kq_boundsWithMaxWidth(styledText(QStringLiteral("line\n").repeated(8000), font), 200);
    QVERIFY(measured.height() <= 99999 + 1);
    QVERIFY(measured.height() > 99999 - lineHeight);
}

void tst_Kit::badText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("maxWidth");
    QTest::addColumn<QString>("report");
    QTest::newRow("empty text") << QString() << qreal(100) << "self.length > 0";
    QTest::newRow("negative width") << "x" << qreal(-5) << "maxWidth >= 0";
    QTest::newRow("infinite width") << "x" << qreal(qInf()) << "isfinite(maxWidth)";
    QTest::newRow("NaN width") << "x" << qreal(qQNaN()) << "isfinite(maxWidth)";
}

void tst_Kit::badText()
{
    QFETCH(QString, text);
    QFETCH(qreal, maxWidth);
    QFETCH(QString, report);
    const QTextDocumentFragment fragment = styledText(text, QFont());
    MessageCapture capture;
    QCOMPARE(kq_boundsWithMaxWidth(fragment, maxWidth), QRectF());
    QImage image = blank(QSize(50, 50));
    QPainter painter(&image);
    kq_drawInBounds(fragment, &painter, QRectF(0, 0, maxWidth, 50));
    painter.end();
    QVERIFY(capture.text().contains(report.toUtf8()));
    QVERIFY(inkBounds(image).isNull());
}

void tst_Kit::fitting_data()
{
    QTest::addColumn<QSizeF>("content"); // as a fraction of the imageable size
    QTest::addColumn<qreal>("minimumMargin");
    QTest::addColumn<qreal>("factor"); // -1: refused, the factor stays as it was
    QTest::newRow("small content is enlarged") << QSizeF(0.5, 0.25) << qreal(0) << qreal(2);
    QTest::newRow("the tighter side wins") << QSizeF(2, 0.5) << qreal(0) << qreal(0.5);
    QTest::newRow("printer's minimum margins") << QSizeF(1, 1) << qreal(18) << qreal(1);
    QTest::newRow("zero width") << QSizeF(0, 1) << qreal(0) << qreal(-1);
    QTest::newRow("negative height") << QSizeF(1, -1) << qreal(0) << qreal(-1);
}

void tst_Kit::fitting()
{
    QFETCH(QSizeF, content);
    QFETCH(qreal, minimumMargin);
    QFETCH(qreal, factor);
    const QMarginsF minimum(minimumMargin, minimumMargin, minimumMargin, minimumMargin);
    KQPrintInfo info(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(40, 50, 40, 50),
                                 QPageLayout::Point, minimum));
    MessageCapture refused;
    info.setScalingFactor(-2);
    QVERIFY(refused.text().contains("factor > 0"));
    info.setScalingFactor(0.75);
    const QRectF imageable = QRectF(QPointF(0, 0), QPageSize(QPageSize::A4).size(QPageSize::Point)).marginsRemoved(minimum);
    QCOMPARE(info.imageablePageBounds(), imageable); // whatever the margins
    MessageCapture capture;
    kq_maximallyFitContentOfSize(info, QSizeF(imageable.width() * content.width(), imageable.height() * content.height()));
    QVERIFY(info.isHorizontallyCentered() && info.isVerticallyCentered());
    QCOMPARE(info.pageLayout().margins(QPageLayout::Point), minimum); // as low as the printer goes
    QCOMPARE(info.scalingFactor(), factor < 0 ? 0.75 : factor);
    QCOMPARE(capture.text().contains("size.width > 0 && size.height > 0"), factor < 0);
}

void tst_Kit::printedPageIsFilled_data()
{
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSizeF>("content");
    QTest::newRow("wide, landscape A5") << int(QPageSize::A5) << int(QPageLayout::Landscape) << QSizeF(200, 100);
    QTest::newRow("tall, portrait A4") << int(QPageSize::A4) << int(QPageLayout::Portrait) << QSizeF(100, 400);
    QTest::newRow("tiny, Letter") << int(QPageSize::Letter) << int(QPageLayout::Portrait) << QSizeF(3, 2);
}

void tst_Kit::printedPageIsFilled()
{
    QFETCH(int, pageSize);
    QFETCH(int, orientation);
    QFETCH(QSizeF, content);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("fit.pdf"));
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    // Wide margins, which fitting must take away.
    printer.setPageLayout(QPageLayout(QPageSize(QPageSize::PageSizeId(pageSize)), QPageLayout::Orientation(orientation),
                                      QMarginsF(20, 25, 20, 25), QPageLayout::Millimeter));
    KQPrintInfo info(printer.pageLayout());
    kq_maximallyFitContentOfSize(info, content);
    kq_applyPrintInfo(info, &printer);
    QPainter painter(&printer);
    QVERIFY(kq_applyPrintInfo(info, &painter, content));
    painter.fillRect(QRectF(QPointF(0, 0), content), Qt::black);
    QVERIFY(painter.end());

    const PdfPage page = readPdf(path);
    const QSizeF paper = QPageSize(QPageSize::PageSizeId(pageSize)).size(QPageSize::Point);
    const QSizeF sheet = orientation == QPageLayout::Landscape ? paper.transposed() : paper;
    QCOMPARE(page.mediaBox, QRectF(QPointF(0, 0), sheet));
    QCOMPARE(page.filled.size(), 1);
    const QSizeF scaled = content * std::min(sheet.width() / content.width(), sheet.height() / content.height());
    const QRectF expected(QPointF((sheet.width() - scaled.width()) / 2, (sheet.height() - scaled.height()) / 2), scaled);
    const QRectF filled = page.filled.first();
    for (const qreal delta : {filled.left() - expected.left(), filled.top() - expected.top(),
                              filled.width() - expected.width(), filled.height() - expected.height()})
        QVERIFY2(std::abs(delta) < 0.05, qPrintable(QStringLiteral("filled %1,%2 %3x%4").arg(filled.x()).arg(filled.y()).arg(filled.width()).arg(filled.height())));
}

void tst_Kit::isolate()
{
    QImage image(10, 10, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    bool ran = false;
    kq_isolate(&painter, [&] {
        ran = true;
        painter.setPen(Qt::blue);
        painter.translate(5, 5);
    });
    QVERIFY(ran);
    QCOMPARE(painter.pen().color(), QColor(Qt::red));
    QCOMPARE(painter.transform(), QTransform());
    try {
        kq_isolate(&painter, [&] {
            painter.scale(2, 2);
            throw std::runtime_error("drawing failed");
        });
    } catch (const std::runtime_error &) {
    }
    QCOMPARE(painter.transform(), QTransform()); // restored on the way out

    MessageCapture capture;
    ran = false;
    kq_isolate(nullptr, [&] { ran = true; });
    QVERIFY(!ran);
    QVERIFY(capture.text().contains("painter != nullptr"));
    // A picture handle is never readable here: reported, no image.
    char bytes[] = "PICT";
    char *pointer = bytes;
    for (char **handle : {static_cast<char **>(nullptr), &pointer}) {
        MessageCapture handleCapture;
        QVERIFY(kq_imageFromPicHandle(handle).isNull());
        QVERIFY(handleCapture.text().contains(handle ? "Assertion: (imageRep)" : "Assertion: (picHandle)"));
    }
}

void tst_Kit::imageFromPasteboard_data()
{
    QTest::addColumn<QString>("content"); // "qimage", "png bytes", or files named by their suffixes
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("image");
    QTest::newRow("image data") << "qimage" << QStringList() << true;
    QTest::newRow("png bytes") << "png bytes" << QStringList() << true;
    QTest::newRow("image data before a file") << "qimage" << QStringList{"a.txt"} << true;
    QTest::newRow("one image file") << "" << QStringList{"a.png"} << true;
    QTest::newRow("two image files") << "" << QStringList{"a.png", "b.png"} << false;
    QTest::newRow("suffix in upper case") << "" << QStringList{"A.PNG"} << false;
    QTest::newRow("suffix not an image format") << "" << QStringList{"a.txt"} << false;
    QTest::newRow("unreadable image file") << "" << QStringList{"broken.png"} << false;
    QTest::newRow("missing file") << "" << QStringList{"gone.png"} << false;
    QTest::newRow("remote address") << "" << QStringList{"http://example.org/a.png"} << false;
    QTest::newRow("nothing") << "" << QStringList() << false;
    QTest::newRow("many files") << "" << QStringList(500, QStringLiteral("a.png")) << false;
}

void tst_Kit::imageFromPasteboard()
{
    QFETCH(QString, content);
    QFETCH(QStringList, files);
    QFETCH(bool, image);
    QTemporaryDir dir;
    QImage picture(4, 3, QImage::Format_ARGB32);
    picture.fill(Qt::green);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    QMimeData mime;
    if (content == QLatin1String("qimage"))
        mime.setImageData(picture);
    else if (content == QLatin1String("png bytes"))
        mime.setData(QStringLiteral("image/png"), png);
    QList<QUrl> urls;
    for (const QString &name : files) {
        if (name.contains(u':')) {
            urls.append(QUrl(name));
            continue;
        }
        const QString path = dir.filePath(name);
        QFile file(path);
        if (!name.startsWith(QLatin1String("gone")) && file.open(QIODevice::WriteOnly))
            file.write(name.startsWith(QLatin1String("broken")) ? QByteArray("not an image") : png);
        urls.append(QUrl::fromLocalFile(path));
    }
    if (!urls.isEmpty())
        mime.setUrls(urls);
    MessageCapture capture;
    const QImage result = kq_imageFromPasteboard(&mime);
    QCOMPARE(result.isNull() ? QSize() : result.size(), image ? picture.size() : QSize());
    QVERIFY(capture.text().isEmpty()); // failures are silent
}

QTEST_MAIN(tst_Kit)
#include "tst_kit.moc"
