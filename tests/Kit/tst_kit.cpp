#include "MessageCapture.h"

#include <TarnCommon/KQError.h>
#include <TarnCommon/KQMenuExtensions.h>
#include <TarnCommon/KQPrintInfo.h>
#include <TarnCommon/KQTextLayout.h>
#include <TarnCommon/KQURLRequest.h>

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtTest/QtTest>
#include <QtWidgets/QMenu>

#include <stdexcept>

using Pairs = QList<QPair<QString, QString>>;

namespace {

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
        QTest::newRow("empty texts are texts") << "" << "" << "";
    }
    void error()
    {
        QFETCH(QString, description);
        QFETCH(QString, longDescription);
        QFETCH(QString, shown);
        const KQError error = KQError::kq_errorWithDescription(description, longDescription);
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
        QTest::addColumn<QString>("item"); // text|shortcut|checked (- if not checkable)|data
        QTest::addColumn<QString>("report");
        const auto row = [](const char *name, const QVariantMap &properties, const char *item, const char *report = "") {
            QTest::newRow(name) << properties << QString::fromUtf8(item) << QString::fromUtf8(report);
        };
        row("title and key equivalent", {{"title", "Open"}, {"keyEquivalent", "o"}}, "Open|Ctrl+O|-|");
        row("state on", {{"state", 1}}, "||1|");
        row("tag is the data", {{"tag", 7}}, "||-|7");
        row("unknown key refused, others kept", {{"bogus", 1}, {"title", "Kept"}}, "Kept||-|", "QAction has no property \"bogus\"");
        row("wrong type for a property", {{"enabled", QVariantList{1}}, {"title", "Kept"}}, "Kept||-|",
            "\"enabled\" cannot take a value of type QVariantList");
    }
    void itemFromProperties()
    {
        QFETCH(QVariantMap, properties);
        QFETCH(QString, item);
        QFETCH(QString, report);
        MessageCapture capture;
        std::unique_ptr<QAction> action(kq_menuItemWithProperties(properties));
        const QByteArray messages = capture.text();
        const QString checked = action->isCheckable() ? QString::number(action->isChecked()) : QStringLiteral("-");
        QCOMPARE(QStringList({action->text(), action->shortcut().toString(QKeySequence::PortableText), checked,
                              action->data().toString()}).join(u'|'), item);
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
             QVariantMap{{"title", "Last"}}},
            &owner);
        QVERIFY(capture.text().contains("Menu element 3 is neither a property map nor a QAction"));
        QCOMPARE(menu->parentWidget(), &owner);
        const QList<QAction *> actions = menu->actions();
        QCOMPARE(actions.size(), 4);
        QCOMPARE(actions.mid(1, 2), (QList<QAction *>{ready, separator}));
    }

    void actionReachesItsReceiver_data()
    {
        QTest::addColumn<QString>("how");
        QTest::addColumn<QByteArray>("action");
        QTest::addColumn<QStringList>("targetCalls");
        QTest::addColumn<QStringList>("chainCalls");
        QTest::addColumn<QString>("report");
        QTest::newRow("explicit target") << "target" << QByteArray("open") << QStringList{"open"} << QStringList{} << "";
        QTest::newRow("context menu's owner, given the item") << "context" << QByteArray("save") << QStringList{} << QStringList{"save:Item"} << "";
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
        auto *menu = new QMenu(&window);
        QAction *item = kq_addItemWithTitle(menu, QStringLiteral("Item"), action, how == QLatin1String("target") ? &target : nullptr);
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
        QTest::newRow("blank and ampersand") << Pairs{{"a b", "x&y"}} << QByteArray("3");
        QTest::newRow("marks") << Pairs{{"m", "~_*+-./%="}} << QByteArray("9");
        QTest::newRow("order kept, a pair counts two") << Pairs{{"z", "1"}, {"a", QString::fromUtf8("\xF0\x9F\x98\x80")}} << QByteArray("3");
        QTest::newRow("stops at NUL") << Pairs{{"n", QString::fromUtf16(u"a\0b", 3)}} << QByteArray("3");
    }
    void formBody()
    {
        QFETCH(Pairs, parameters);
        QFETCH(QByteArray, contentLength);
        KQURLRequest request(QUrl(QStringLiteral("http://example.invalid/")));
        request.setValue("text/plain", "content-type");
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
        QCOMPARE(request.valueForHTTPHeaderField("content-type"), "text/plain,multipart/form-data; boundary=" + boundary);
        const KQURLRequest before = request; // without contents nothing changes
        kq_setHTTPPostFile(request, QString(), QStringLiteral("g"), QStringLiteral("k"));
        QVERIFY(request == before);
    }

    // Rich text: measured, laid out in frames and drawn; what cannot be measured is reported.
    void drawing_data()
    {
        QTest::addColumn<QString>("html");
        QTest::addColumn<qreal>("maxWidth");
        QTest::addColumn<QString>("report");
        const QString wrapped = QStringLiteral("<p align=right>A text that wraps into several lines when it is narrow enough to need them.</p>");
        QTest::newRow("wrapped paragraph, right-aligned") << wrapped << qreal(120) << "";
        QTest::newRow("paragraphs, justified") << "<div align=justify>One</div><div>Two, a longer one</div>" << qreal(120) << "";
        QTest::newRow("empty text") << "" << qreal(100) << "self.length > 0";
        QTest::newRow("negative width") << "x" << qreal(-5) << "maxWidth >= 0";
        QTest::newRow("infinite width") << "x" << qreal(qInf()) << "isfinite(maxWidth)";
    }
    void drawing()
    {
        QFETCH(QString, html);
        QFETCH(qreal, maxWidth);
        QFETCH(QString, report);
        const QFontMetricsF metrics(QFont(QStringLiteral("DejaVu Serif"), 12));
        const QTextDocumentFragment fragment = QTextDocumentFragment::fromHtml(
            QStringLiteral("<div style=\"font: 12pt 'DejaVu Serif'\">%1</div>").arg(html));
        MessageCapture capture;
        const QRectF placed = kq_boundsWithMaxWidth(fragment, maxWidth).translated(7, 9);
        const QSize canvas(int(placed.right()) + 20, int(placed.bottom()) + 20);
        const QRect ink = inkOf(canvas, [&](QPainter &p) { kq_drawInBounds(fragment, &p, report.isEmpty() ? placed : QRectF(0, 0, maxWidth, 50)); });
        QVERIFY(capture.text().contains(report.toUtf8()));
        if (!report.isEmpty()) {
            QVERIFY(placed.isNull() && ink.isNull());
            return;
        }
        QVERIFY(placed.width() <= maxWidth);
        // Every line laid out without a height limit fits the measured rectangle; a line's height less cuts the last.
        const qsizetype lines = kq_newCTFrameRefWithBounds(fragment, QRectF(0, 0, maxWidth, 99999)).lines().size();
        QCOMPARE(kq_newCTFrameRefWithBounds(fragment, placed).lines().size(), lines);
        QCOMPARE(kq_newCTFrameRefWithBounds(fragment, placed.adjusted(0, 0, 0, -metrics.height())).lines().size(), lines - 1);
        QVERIFY(!ink.isNull() && QRectF(placed).adjusted(-1, 0, 1, 0).contains(QRectF(ink)));
        QVERIFY(placed.bottom() - ink.bottom() < metrics.height()); // no spare line
    }

    void fitting_data()
    {
        QTest::addColumn<QSizeF>("content"); // as a fraction of the imageable size
        QTest::addColumn<qreal>("minimumMargin");
        QTest::addColumn<qreal>("factor"); // -1: refused, the factor stays as it was
        QTest::newRow("the tighter side wins") << QSizeF(2, 0.5) << qreal(0) << qreal(0.5);
        QTest::newRow("printer's minimum margins") << QSizeF(1, 1) << qreal(18) << qreal(1);
        QTest::newRow("zero width") << QSizeF(0, 1) << qreal(0) << qreal(-1);
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
        QCOMPARE(painter.pen().color(), QColor(Qt::red)); // restored, even after an exception
        QCOMPARE(painter.transform(), QTransform());
        MessageCapture capture;
        kq_isolate(nullptr, [] { QFAIL("ran without a painter"); });
        QVERIFY(kq_imageFromPicHandle(nullptr).isNull()); // never readable here
        const QByteArray reports = capture.text();
        QVERIFY2(reports.contains("painter != nullptr") && reports.contains("(picHandle)"), reports);
    }

    void imageFromPasteboard_data()
    {
        // Image data (no file), or a file: broken.png is not an image, gone.png is missing.
        QTest::addColumn<QString>("content");
        QTest::addColumn<bool>("image");
        QTest::newRow("image data") << "" << true;
        QTest::newRow("image file") << "a.png" << true;
        QTest::newRow("unreadable image file") << "broken.png" << false;
        QTest::newRow("missing file") << "gone.png" << false;
    }
    void imageFromPasteboard()
    {
        QFETCH(QString, content);
        QFETCH(bool, image);
        QTemporaryDir dir;
        QImage picture(4, 3, QImage::Format_ARGB32);
        picture.fill(Qt::green);
        QVERIFY(picture.save(dir.filePath(QStringLiteral("a.png"))));
        QFile broken(dir.filePath(QStringLiteral("broken.png")));
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("not an image") > 0 && broken.flush());
        QMimeData mime;
        if (content.isEmpty())
            mime.setImageData(picture);
        else
            mime.setUrls({QUrl::fromLocalFile(dir.filePath(content))});
        MessageCapture capture;
        const QImage result = kq_imageFromPasteboard(&mime);
        QCOMPARE(result.isNull() ? QSize() : result.size(), image ? picture.size() : QSize());
        QVERIFY(capture.text().isEmpty()); // failures are silent
    }
};

QTEST_MAIN(tst_Kit)
#include "tst_kit.moc"
