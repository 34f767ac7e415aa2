// Errors, menus built from property lists, HTTP form bodies, rich text
// measuring and drawing, and printing.
#include "MessageCapture.h"

#include <TarnCommon/KQError.h>
#include <TarnCommon/KQMenuExtensions.h>
#include <TarnCommon/KQPrintInfo.h>
#include <TarnCommon/KQTextLayout.h>
#include <TarnCommon/KQURLRequest.h>

#include <QtCore/QMimeData>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include <stdexcept>

using Pairs = QList<QPair<QString, QString>>;

namespace {

// Characters whose UTF-8 bytes, together, take every byte value UTF-8 text
// can hold, NUL aside.
QString everyByteText()
{
    QString text;
    for (char32_t c = 1; c < 0x10000; c = c < 0x100 ? c + 1 : c < 0x800 ? c + 0x40 : (c & ~0xFFFu) + 0x1000)
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

// Draws on white and answers the bounding box of every pixel that is not white.
QRect inkOf(const QSize &size, const std::function<void(QPainter &)> &draw)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    draw(painter);
    painter.end();
    QRect ink;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                ink |= QRect(x, y, 1, 1);
    return ink;
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

class tst_Kit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void error_data()
    {
        QTest::addColumn<QString>("description");
        QTest::addColumn<QString>("longDescription");
        QTest::addColumn<QString>("shown");
        const QString fallback = QStringLiteral("The operation couldn\u2019t be completed. (KQErrorDomain error 0.)");
        QTest::newRow("both") << "Short" << "Long" << "Short";
        QTest::newRow("long only") << QString() << "Long" << fallback;
        QTest::newRow("neither") << QString() << QString() << fallback;
        QTest::newRow("empty texts are texts") << "" << "" << "";
    }
    void error()
    {
        QFETCH(QString, description);
        QFETCH(QString, longDescription);
        QFETCH(QString, shown);
        const KQError error = KQError::kq_errorWithDescription(description, longDescription);
        QCOMPARE(error.domain(), QString::fromLatin1(KQErrorDomain));
        QCOMPARE(error.localizedDescription(), shown);
        QCOMPARE(error.localizedRecoverySuggestion(), longDescription);
        QCOMPARE(error.localizedRecoverySuggestion().isNull(), longDescription.isNull());
        KQError target(QStringLiteral("Other"), 99, {{QStringLiteral("k"), 1}});
        QVERIFY(KQError::kq_putErrorInto(&target, description, longDescription));
        QCOMPARE(target, error);
        QVERIFY(KQError::kq_putErrorInto(nullptr, description, longDescription));
    }

    void itemFromProperties_data()
    {
        QTest::addColumn<QVariantMap>("properties");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shortcut");
        QTest::addColumn<int>("checkState"); // -1 not checkable, 0 unchecked, 1 checked
        QTest::addColumn<QVariant>("data");
        QTest::addColumn<QString>("report");
        const auto row = [](const char *name, const QVariantMap &properties, const char *text, const char *shortcut,
                            int checkState = -1, const QVariant &data = {}, const char *report = "") {
            QTest::newRow(name) << properties << QString::fromUtf8(text) << QString::fromUtf8(shortcut) << checkState
                                << data << QString::fromUtf8(report);
        };
        row("title and key equivalent", {{"title", "Open"}, {"keyEquivalent", "o"}}, "Open", "Ctrl+O");
        row("upper case adds Shift", {{"keyEquivalent", "S"}}, "", "Ctrl+Shift+S");
        row("key equivalent as a sequence", {{"keyEquivalent", "Ctrl+Alt+P"}}, "", "Ctrl+Alt+P");
        row("Qt names", {{"text", "Quit"}, {"shortcut", "Ctrl+Q"}, {"checkable", true}}, "Quit", "Ctrl+Q", 0);
        row("state on", {{"state", 1}}, "", "", 1);
        row("state off", {{"state", 0}}, "", "", 0);
        row("later key wins", {{"text", "A"}, {"title", "B"}}, "B", "");
        row("tag is the data", {{"tag", 7}}, "", "", -1, 7);
        row("unknown key refused, others kept", {{"bogus", 1}, {"title", "Kept"}}, "Kept", "", -1, {},
            "QAction has no property \"bogus\"");
        row("wrong type for a property", {{"enabled", QVariantList{1}}, {"title", "Kept"}}, "Kept", "", -1, {},
            "\"enabled\" cannot take a value of type QVariantList");
        row("wrong type for a key equivalent", {{"keyEquivalent", 5}}, "", "", -1, {},
            "\"keyEquivalent\" cannot take a value of type int");
        row("wrong type for the action", {{"action", 3.5}}, "", "", -1, {}, "\"action\" cannot take");
    }
    void itemFromProperties()
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
        QCOMPARE(item->text(), text);
        QCOMPARE(item->shortcut().toString(QKeySequence::PortableText), shortcut);
        QCOMPARE(item->isCheckable() ? int(item->isChecked()) : -1, checkState);
        QCOMPARE(item->data(), data);
        QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report.toUtf8()), messages);
    }

    void menuFromList()
    {
        QWidget owner;
        auto *ready = new QAction(QStringLiteral("Ready"), &owner);
        auto *separator = new QAction(&owner);
        separator->setSeparator(true);
        MessageCapture capture;
        QMenu *menu = kq_menuWithItemProperties(
            {QVariantMap{{"title", "First"}}, QVariant::fromValue(ready), QVariant::fromValue(separator), QVariant(42),
             QVariantMap{{"title", "Last"}, {"submenu", QVariantList{QVariantMap{{"title", "Inner"}}}}}},
            &owner);
        QVERIFY(capture.text().contains("Menu element 3 is neither a property map nor a QAction"));
        QCOMPARE(menu->parentWidget(), &owner);
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 4);
        QCOMPARE(actions.at(0)->text(), QStringLiteral("First"));
        QCOMPARE(actions.mid(1, 2), (QList<QAction *>{ready, separator}));
        QCOMPARE(actions.at(3)->menu()->actions().constFirst()->text(), QStringLiteral("Inner"));
    }

    void actionReachesItsReceiver_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<QStringList>("targetCalls");
        QTest::addColumn<QStringList>("chainCalls");
        QTest::addColumn<QString>("report");
        QTest::newRow("explicit target") << "target" << QByteArray("open") << QStringList{"open"} << QStringList{} << "";
        QTest::newRow("target given the item") << "target" << QByteArray("save") << QStringList{"save:Item"} << QStringList{} << "";
        QTest::newRow("focus widget's ancestors") << "focus" << QByteArray("open") << QStringList{} << QStringList{"open"} << "";
        QTest::newRow("context menu's owner") << "context" << QByteArray("save") << QStringList{} << QStringList{"save:Item"} << "";
        QTest::newRow("tool button's menu") << "toolbutton" << QByteArray("open") << QStringList{} << QStringList{"open"} << "";
        QTest::newRow("nobody answers") << "context" << QByteArray("missing") << QStringList{} << QStringList{}
                                        << "No object along the responder chain answers the menu action \"missing\"";
    }
    void actionReachesItsReceiver()
    {
        QFETCH(QString, how);
        QFETCH(QByteArray, action);
        QFETCH(QStringList, targetCalls);
        QFETCH(QStringList, chainCalls);
        QFETCH(QString, report);
        Receiver target;
        Receiver window;
        auto *edit = new QLineEdit(&window);
        auto *button = new QToolButton(&window);
        std::unique_ptr<QMenu> unowned(how == QLatin1String("focus") ? new QMenu : nullptr); // only the focus leads to the window
        QMenu *menu = unowned ? unowned.get() : new QMenu(how == QLatin1String("toolbutton") ? static_cast<QWidget *>(button) : &window);
        button->setMenu(how == QLatin1String("toolbutton") ? menu : nullptr);
        if (unowned) {
            window.show();
            QApplication::setActiveWindow(&window);
            edit->setFocus();
            QVERIFY(QTest::qWaitForWindowActive(&window));
        }
        QAction *item = kq_addItemWithTitle(menu, QStringLiteral("Item"), action, how == QLatin1String("target") ? &target : nullptr);
        QCOMPARE(kq_action(item), action);
        MessageCapture capture;
        item->trigger();
        const QByteArray messages = capture.text();
        QCOMPARE(target.calls, targetCalls);
        QCOMPARE(window.calls, chainCalls);
        QVERIFY2(report.isEmpty() ? messages.isEmpty() : messages.contains(report.toUtf8()), messages);
    }

    void formBody_data()
    {
        QTest::addColumn<Pairs>("parameters");
        QTest::addColumn<QByteArray>("contentLength"); // the characters of the values
        QTest::newRow("empty") << Pairs() << QByteArray("0");
        QTest::newRow("blank and ampersand") << Pairs{{"a b", "x&y"}} << QByteArray("3");
        QTest::newRow("marks") << Pairs{{"m", "~_*+-./%="}} << QByteArray("9");
        QTest::newRow("order kept, a pair counts two") << Pairs{{"z", "1"}, {"a", QString::fromUtf8("\xF0\x9F\x98\x80")}} << QByteArray("3");
        QTest::newRow("stops at NUL") << Pairs{{"n", QString::fromUtf16(u"a\0b", 3)}} << QByteArray("3");
        QTest::newRow("every byte value") << Pairs{{everyByteText(), everyByteText()}, {"second", "&=+%"}}
                                          << QByteArray::number(everyByteText().size() + 4);
        QTest::newRow("empty value and key") << Pairs{{"", ""}, {"k", ""}} << QByteArray("0");
    }
    void formBody()
    {
        QFETCH(Pairs, parameters);
        QFETCH(QByteArray, contentLength);
        KQURLRequest request(QUrl(QStringLiteral("http://example.invalid/")));
        request.setValue("text/plain", "content-type");
        request.setValue("999", "Content-Length");
        kq_setHTTPPostParameters(request, parameters);
        QCOMPARE(request.HTTPMethod(), QByteArray("POST"));
        QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), contentLength);
        QCOMPARE(request.valueForHTTPHeaderField("Content-Type"), QByteArray("application/x-www-form-urlencoded"));
        QCOMPARE(request.allHTTPHeaderFields().size(), 2);
        // Qt's own percent encoding with '+' for a blank is the form encoding; a NUL ends the text.
        const auto encoded = [](const QString &text) { return QUrl::toPercentEncoding(text.section(QChar(0), 0, 0)).replace("%20", "+"); };
        QByteArrayList pairs;
        for (const auto &[key, value] : parameters)
            pairs << encoded(key) + '=' + encoded(value);
        QCOMPARE(request.HTTPBody(), pairs.join('&'));
    }

    void multipartBody()
    {
        KQURLRequest request;
        request.setValue("text/plain", "Content-Type");
        kq_setHTTPPostFile(request, QString::fromUtf8("<a>caf\xC3\xA9</a>"), QString::fromUtf8("\xC3\xA9.xml"), QStringLiteral("up"));
        const QByteArray boundary(KQMultipartBoundary);
        QCOMPARE(request.HTTPBody(), "--" + boundary + "\r\nContent-Disposition: attachment; name=\"up\"; filename=\"\xC3\xA9.xml\"\r\n"
                                     "Content-Type: text/xml\r\n\r\n<a>caf\xC3\xA9</a>\r\n--" + boundary + "--\r\n");
        QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), QByteArray("12")); // bytes
        QCOMPARE(request.HTTPMethod(), QByteArray("POST"));
        QCOMPARE(request.valueForHTTPHeaderField("content-type"), "text/plain,multipart/form-data; boundary=" + boundary);
        const KQURLRequest before = request; // without contents nothing changes
        kq_setHTTPPostFile(request, QString(), QStringLiteral("g"), QStringLiteral("k"));
        QVERIFY(request == before);
    }

    void drawing_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("points");
        QTest::addColumn<qreal>("maxWidth");
        QTest::addColumn<int>("alignment");
        QTest::newRow("one short line") << "Fits" << 12 << qreal(400) << int(Qt::AlignLeft);
        QTest::newRow("wrapped paragraph, right-aligned")
            << "A text that wraps into several lines when it is narrow enough to need them." << 11 << qreal(120) << int(Qt::AlignRight);
        QTest::newRow("several paragraphs, justified") << "First\nSecond, longer paragraph\nThird" << 14 << qreal(90) << int(Qt::AlignJustify);
    }
    void drawing()
    {
        QFETCH(QString, text);
        QFETCH(int, points);
        QFETCH(qreal, maxWidth);
        QFETCH(int, alignment);
        QFont font(QStringLiteral("DejaVu Serif"));
        font.setPointSize(points);
        const QTextDocumentFragment fragment = styledText(text, font, Qt::Alignment(alignment));
        const QRectF measured = kq_boundsWithMaxWidth(fragment, maxWidth);
        QVERIFY(measured.width() <= std::ceil(maxWidth));
        // Every line laid out without a height limit fits the measured rectangle.
        const QRectF placed = measured.translated(7, 9);
        QCOMPARE(kq_newCTFrameRefWithBounds(fragment, placed).lines().size(),
                 kq_newCTFrameRefWithBounds(fragment, QRectF(0, 0, maxWidth, 99999)).lines().size());
        const QSize canvas(int(placed.right()) + 20, int(placed.bottom()) + 20);
        const QRect ink = inkOf(canvas, [&](QPainter &p) { kq_drawInBounds(fragment, &p, placed); });
        QVERIFY(!ink.isNull() && QRectF(placed).adjusted(-1, 0, 1, 0).contains(QRectF(ink)));
        QVERIFY(placed.bottom() - ink.bottom() < QFontMetricsF(font).height()); // no spare line
        // A short line drawn into a wide rectangle, whatever the alignment, is
        // centred at the top, and the painter's pen join is left set to bevel.
        const QRectF wide(10, 5, 300, 60);
        const QRect line = inkOf(QSize(330, 80), [&](QPainter &p) {
            p.setPen(QPen(Qt::black, 1, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
            kq_drawInBounds(styledText(QStringLiteral("Hi there"), font, Qt::Alignment(alignment)), &p, wide);
            QCOMPARE(p.pen().joinStyle(), Qt::BevelJoin);
        });
        QVERIFY(std::abs(QRectF(line).center().x() - wide.center().x()) <= 2.5);
        QVERIFY(line.top() >= wide.top() && line.bottom() < wide.top() + QFontMetricsF(font).height() + 1);
    }

    void framesCutWhatDoesNotFit()
    {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPointSize(10);
        const qreal lineHeight = std::ceil(QFontMetricsF(font).height());
        const QRectF bounds(3, 4, 200, 2 * lineHeight + 1);
        const KQTextFrame frame = kq_newCTFrameRefWithBounds(styledText(QStringLiteral("one\ntwo\nthree"), font), bounds);
        QCOMPARE(frame.lines().size(), 2);
        QCOMPARE(frame.bounds(), bounds);
        QCOMPARE(frame.lines().at(1).textStart, 4);
        QCOMPARE(frame.lines().first().baselineOrigin, QPointF(3, 4 + QFontMetricsF(font).ascent()));
    }

    void badText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<qreal>("maxWidth");
        QTest::addColumn<QString>("report");
        QTest::newRow("empty text") << QString() << qreal(100) << "self.length > 0";
        QTest::newRow("negative width") << "x" << qreal(-5) << "maxWidth >= 0";
        QTest::newRow("infinite width") << "x" << qreal(qInf()) << "isfinite(maxWidth)";
        QTest::newRow("NaN width") << "x" << qreal(qQNaN()) << "isfinite(maxWidth)";
    }
    void badText()
    {
        QFETCH(QString, text);
        QFETCH(qreal, maxWidth);
        QFETCH(QString, report);
        const QTextDocumentFragment fragment = styledText(text, QFont());
        MessageCapture capture;
        QCOMPARE(kq_boundsWithMaxWidth(fragment, maxWidth), QRectF());
        QVERIFY(inkOf(QSize(50, 50), [&](QPainter &p) { kq_drawInBounds(fragment, &p, QRectF(0, 0, maxWidth, 50)); }).isNull());
        QVERIFY(capture.text().contains(report.toUtf8()));
    }

    void fitting_data()
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
    void fitting()
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
        const QSizeF size(imageable.width() * content.width(), imageable.height() * content.height());
        kq_maximallyFitContentOfSize(info, size);
        QCOMPARE(info.pageLayout().margins(QPageLayout::Point), minimum); // as low as the printer goes
        QCOMPARE(info.scalingFactor(), factor < 0 ? 0.75 : factor);
        QCOMPARE(capture.text().contains("size.width > 0 && size.height > 0"), factor < 0);
        if (factor > 0) // centred on the imageable area
            QCOMPARE(info.placedContentRect(size).center(), imageable.center());
    }

    void printedPageIsFilled_data()
    {
        QTest::addColumn<int>("pageSize");
        QTest::addColumn<int>("orientation");
        QTest::addColumn<QSizeF>("content");
        QTest::newRow("wide, landscape A5") << int(QPageSize::A5) << int(QPageLayout::Landscape) << QSizeF(200, 100);
        QTest::newRow("tall, portrait A4") << int(QPageSize::A4) << int(QPageLayout::Portrait) << QSizeF(100, 400);
        QTest::newRow("tiny, Letter") << int(QPageSize::Letter) << int(QPageLayout::Portrait) << QSizeF(3, 2);
    }
    void printedPageIsFilled()
    {
        QFETCH(int, pageSize);
        QFETCH(int, orientation);
        QFETCH(QSizeF, content);
        QTemporaryDir dir;
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFileName(dir.filePath(QStringLiteral("fit.pdf")));
        // Wide margins, which fitting must take away.
        printer.setPageLayout(QPageLayout(QPageSize(QPageSize::PageSizeId(pageSize)), QPageLayout::Orientation(orientation),
                                          QMarginsF(20, 25, 20, 25), QPageLayout::Millimeter));
        KQPrintInfo info(printer.pageLayout());
        kq_maximallyFitContentOfSize(info, content);
        kq_applyPrintInfo(info, &printer);
        QPainter painter(&printer);
        QVERIFY(kq_applyPrintInfo(info, &painter, content));
        const QRectF placed = painter.transform().mapRect(QRectF(QPointF(0, 0), content)).translated(printer.pageRect(QPrinter::DevicePixel).topLeft());
        painter.fillRect(QRectF(QPointF(0, 0), content), Qt::black);
        QVERIFY(painter.end());
        // One page of the sheet's size, the content filling it one way and centred the other.
        const QSizeF paper = QPageSize(QPageSize::PageSizeId(pageSize)).size(QPageSize::Point);
        const QSizeF sheet = (orientation == QPageLayout::Landscape ? paper.transposed() : paper);
        const QSizeF device = sheet * printer.resolution() / 72.0;
        QVERIFY2(std::abs(placed.center().x() - device.width() / 2) + std::abs(placed.center().y() - device.height() / 2) < 1, qPrintable(QString::number(placed.center().x())));
        QVERIFY(std::abs(std::max(placed.width() / device.width(), placed.height() / device.height()) - 1) < 1e-3);
        QFile file(printer.outputFileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString pdf = QString::fromLatin1(file.readAll());
        QCOMPARE(pdf.count(QRegularExpression(QStringLiteral("/Type\\s*/Page\\b"))), 1);
        const QRegularExpressionMatch box = QRegularExpression(QStringLiteral("/MediaBox\\s*\\[0 0 ([\\d.]+) ([\\d.]+)\\]")).match(pdf);
        QCOMPARE(QSizeF(box.captured(1).toDouble(), box.captured(2).toDouble()), sheet);
    }

    void isolate()
    {
        QImage image(10, 10, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setPen(Qt::red);
        try {
            kq_isolate(&painter, [&] {
                painter.setPen(Qt::blue);
                painter.translate(5, 5);
                throw std::runtime_error("drawing failed");
            });
        } catch (const std::runtime_error &) {
        }
        // Restored on the way out, even by an exception.
        QCOMPARE(painter.pen().color(), QColor(Qt::red));
        QCOMPARE(painter.transform(), QTransform());
        MessageCapture capture;
        kq_isolate(nullptr, [] { QFAIL("ran without a painter"); });
        char *pointer = nullptr; // a picture handle is never readable here: reported, no image
        QVERIFY(kq_imageFromPicHandle(nullptr).isNull() && kq_imageFromPicHandle(&pointer).isNull());
        const QByteArray reports = capture.text();
        for (const char *report : {"painter != nullptr", "(picHandle)", "(imageRep)"})
            QVERIFY2(reports.contains(report), report);
    }

    void imageFromPasteboard_data()
    {
        // Image data, bytes of a MIME type, and files (gone*: missing, broken*: not an image).
        QTest::addColumn<QString>("content");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<bool>("image");
        QTest::newRow("image data") << "image data" << QStringList() << true;
        QTest::newRow("png bytes") << "image/png" << QStringList() << true;
        QTest::newRow("image data before a file") << "image data" << QStringList{"a.txt"} << true;
        QTest::newRow("one image file") << "" << QStringList{"a.png"} << true;
        QTest::newRow("two image files") << "" << QStringList{"a.png", "b.png"} << false;
        QTest::newRow("suffix in upper case") << "" << QStringList{"A.PNG"} << false;
        QTest::newRow("suffix not an image format") << "" << QStringList{"a.txt"} << false;
        QTest::newRow("unreadable image file") << "" << QStringList{"broken.png"} << false;
        QTest::newRow("missing file") << "" << QStringList{"gone.png"} << false;
        QTest::newRow("remote address") << "" << QStringList{"http://example.org/a.png"} << false;
    }
    void imageFromPasteboard()
    {
        QFETCH(QString, content);
        QFETCH(QStringList, files);
        QFETCH(bool, image);
        QTemporaryDir dir;
        QImage picture(4, 3, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        QByteArray png;
        QBuffer buffer(&png);
        QVERIFY(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, "PNG"));
        QMimeData mime;
        if (content == QLatin1String("image data"))
            mime.setImageData(picture);
        else if (!content.isEmpty())
            mime.setData(content, png);
        QList<QUrl> urls;
        for (const QString &name : files) {
            QFile file(dir.filePath(name));
            if (!name.startsWith(QLatin1String("gone")) && file.open(QIODevice::WriteOnly))
                file.write(name.startsWith(QLatin1String("broken")) ? QByteArray("not an image") : png);
            urls.append(name.contains(u':') ? QUrl(name) : QUrl::fromLocalFile(file.fileName()));
        }
        mime.setUrls(urls);
        MessageCapture capture;
        const QImage result = kq_imageFromPasteboard(&mime);
        QCOMPARE(result.isNull() ? QSize() : result.size(), image ? picture.size() : QSize());
        QVERIFY(capture.text().isEmpty()); // failures are silent
    }
};

QTEST_MAIN(tst_Kit)
#include "tst_kit.moc"
