#include <TarnCommon/KQPrintInfo.h>

#include "MessageCapture.h"

#include <QtCore/QMimeData>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>
#include <QtGui/QPainter>
#include <QtPrintSupport/QPrinter>
#include <QtTest/QtTest>

#include <stdexcept>

namespace {

// What a PDF page shows, read back from the file: its media box and the
// rectangles it fills, in page points (y growing upward).
struct PdfPage
{
    QRectF mediaBox;
    QList<QRectF> filled;
};

QList<qreal> numbers(const QByteArray &text)
{
    QList<qreal> values;
    for (const QByteArray &part : text.simplified().split(' '))
        values.append(part.toDouble());
    return values;
}

// Follows the q/Q/cm/re operators of an uncompressed content stream.
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
    const QRegularExpressionMatch box = QRegularExpression(QStringLiteral("/MediaBox \\[([^\\]]*)\\]")).match(QString::fromLatin1(pdf));
    if (box.hasMatch()) {
        const QList<qreal> v = numbers(box.captured(1).toLatin1());
        if (v.size() == 4)
            page.mediaBox = QRectF(QPointF(v[0], v[1]), QPointF(v[2], v[3]));
    }
    qsizetype at = 0;
    while ((at = pdf.indexOf("stream\n", at)) >= 0) {
        const qsizetype start = at + 7;
        const qsizetype end = pdf.indexOf("endstream", start);
        if (end < 0)
            break;
        QByteArray zlib = pdf.mid(start, end - start);
        QByteArray sized(4, '\0');
        sized[1] = char(0x10); // room for 1 MB of content
        const QByteArray content = qUncompress(sized + zlib);
        interpret(content.isEmpty() ? zlib : content, page);
        at = end;
    }
    return page;
}

} // namespace

class TestPrinting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitting_data();
    void fitting();
    void printedPageIsFilled_data();
    void printedPageIsFilled();
    void isolate();
    void imageFromPicHandle();
    void imageFromPasteboard_data();
    void imageFromPasteboard();
};

void TestPrinting::fitting_data()
{
    QTest::addColumn<QSizeF>("content"); // as a fraction of the imageable size
    QTest::addColumn<qreal>("minimumMargin");
    QTest::addColumn<qreal>("factor");

    QTest::newRow("equal to the imageable area") << QSizeF(1, 1) << qreal(0) << qreal(1);
    QTest::newRow("twice as wide and high") << QSizeF(2, 2) << qreal(0) << qreal(0.5);
    QTest::newRow("small content is enlarged") << QSizeF(0.5, 0.25) << qreal(0) << qreal(2);
    QTest::newRow("the tighter side wins") << QSizeF(2, 0.5) << qreal(0) << qreal(0.5);
    QTest::newRow("printer's minimum margins") << QSizeF(1, 1) << qreal(18) << qreal(1);
    QTest::newRow("zero width") << QSizeF(0, 1) << qreal(0) << qreal(-1);
    QTest::newRow("negative height") << QSizeF(1, -1) << qreal(0) << qreal(-1);
}

void TestPrinting::fitting()
{
    QFETCH(QSizeF, content);
    QFETCH(qreal, minimumMargin);
    QFETCH(qreal, factor); // -1: refused, the factor stays as it was

    const QMarginsF minimum(minimumMargin, minimumMargin, minimumMargin, minimumMargin);
    KQPrintInfo info(QPageLayout(QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF(40, 50, 40, 50),
                                 QPageLayout::Point, minimum));
    info.setScalingFactor(0.75);
    const QRectF page(QPointF(0, 0), QPageSize(QPageSize::A4).size(QPageSize::Point));
    const QRectF imageable = page.marginsRemoved(minimum);
    QCOMPARE(info.imageablePageBounds(), imageable); // whatever the margins

    MessageCapture capture;
    kq_maximallyFitContentOfSize(info, QSizeF(imageable.width() * content.width(), imageable.height() * content.height()));
    const QByteArray report = capture.text();
    QVERIFY(info.isHorizontallyCentered());
    QVERIFY(info.isVerticallyCentered());
    QCOMPARE(info.pageLayout().margins(QPageLayout::Point), minimum); // zero, or as low as the printer goes
    QCOMPARE(info.scalingFactor(), factor < 0 ? 0.75 : factor);
    QCOMPARE(report.contains("size.width > 0 && size.height > 0"), factor < 0);
}

void TestPrinting::printedPageIsFilled_data()
{
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSizeF>("content");

    QTest::newRow("wide drawing, landscape A5") << int(QPageSize::A5) << int(QPageLayout::Landscape) << QSizeF(200, 100);
    QTest::newRow("tall drawing, portrait A4") << int(QPageSize::A4) << int(QPageLayout::Portrait) << QSizeF(100, 400);
    QTest::newRow("tiny drawing, Letter") << int(QPageSize::Letter) << int(QPageLayout::Portrait) << QSizeF(3, 2);
}

void TestPrinting::printedPageIsFilled()
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
    const QSizeF expectedPage = orientation == QPageLayout::Landscape ? paper.transposed() : paper;
    QCOMPARE(page.mediaBox, QRectF(QPointF(0, 0), expectedPage));
    QCOMPARE(page.filled.size(), 1);
    const qreal factor = std::min(expectedPage.width() / content.width(), expectedPage.height() / content.height());
    const QSizeF scaled = content * factor;
    const QRectF expected(QPointF((expectedPage.width() - scaled.width()) / 2, (expectedPage.height() - scaled.height()) / 2), scaled);
    const QRectF filled = page.filled.first();
    const auto near = [](qreal a, qreal b) { return std::abs(a - b) < 0.05; };
    QVERIFY2(near(filled.left(), expected.left()) && near(filled.top(), expected.top())
                 && near(filled.width(), expected.width()) && near(filled.height(), expected.height()),
             qPrintable(QStringLiteral("filled %1,%2 %3x%4").arg(filled.x()).arg(filled.y()).arg(filled.width()).arg(filled.height())));
}

void TestPrinting::isolate()
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
}

void TestPrinting::imageFromPicHandle()
{
    char bytes[] = "PICT";
    char *pointer = bytes;
    for (char **handle : {static_cast<char **>(nullptr), &pointer}) {
        MessageCapture capture;
        QVERIFY(kq_imageFromPicHandle(handle).isNull());
        const QByteArray text = capture.text();
        QVERIFY2(text.contains(handle ? "Assertion: (imageRep)" : "Assertion: (picHandle)"),
                 text.constData());
    }
}

void TestPrinting::imageFromPasteboard_data()
{
    QTest::addColumn<QString>("content"); // "qimage", "png bytes", or files named by their suffixes
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("image");

    QTest::newRow("image data") << "qimage" << QStringList() << true;
    QTest::newRow("png bytes") << "png bytes" << QStringList() << true;
    QTest::newRow("image data before a file") << "qimage" << QStringList{QStringLiteral("a.txt")} << true;
    QTest::newRow("one image file") << "" << QStringList{QStringLiteral("a.png")} << true;
    QTest::newRow("two image files") << "" << QStringList{QStringLiteral("a.png"), QStringLiteral("b.png")} << false;
    QTest::newRow("suffix in upper case") << "" << QStringList{QStringLiteral("A.PNG")} << false;
    QTest::newRow("suffix not an image format") << "" << QStringList{QStringLiteral("a.txt")} << false;
    QTest::newRow("unreadable image file") << "" << QStringList{QStringLiteral("broken.png")} << false;
    QTest::newRow("missing file") << "" << QStringList{QStringLiteral("gone.png")} << false;
    QTest::newRow("remote address") << "" << QStringList{QStringLiteral("http://example.org/a.png")} << false;
    QTest::newRow("nothing") << "" << QStringList() << false;
    QStringList many;
    for (int i = 0; i < 500; ++i)
        many.append(QStringLiteral("a.png"));
    QTest::newRow("many files") << "" << many << false;
}

void TestPrinting::imageFromPasteboard()
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
        if (!name.startsWith(QLatin1String("gone"))) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(name.startsWith(QLatin1String("broken")) ? QByteArray("not an image") : png);
        }
        urls.append(QUrl::fromLocalFile(path));
    }
    if (!urls.isEmpty())
        mime.setUrls(urls);

    MessageCapture capture;
    const QImage result = kq_imageFromPasteboard(&mime);
    QCOMPARE(!result.isNull(), image);
    if (image)
        QCOMPARE(result.size(), picture.size());
    QVERIFY(capture.text().isEmpty()); // failures are silent
}

QTEST_MAIN(TestPrinting)
#include "tst_printing.moc"
