#include <TarnCommon/KQTextLayout.h>

#include "MessageCapture.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtTest/QtTest>

#include <cmath>

namespace {

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

// The bounding box of every pixel that is not white; null when there is none.
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

} // namespace

class TestRichText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void measuring_data();
    void measuring();
    void drawingFitsMeasuredBounds_data();
    void drawingFitsMeasuredBounds();
    void drawingCentres_data();
    void drawingCentres();
    void framesCutWhatDoesNotFit();
    void badInput_data();
    void badInput();
};

void TestRichText::measuring_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<int>("points");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("wrapped"); // laid out just wider than the widest word

    for (const QString &family : {QStringLiteral("DejaVu Sans"), QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Sans Mono")}) {
        for (const int points : {9, 17}) {
            const QByteArray name = QStringLiteral("%1 %2").arg(family).arg(points).toUtf8();
            QTest::newRow(name + " one line") << family << points << QStringLiteral("Tarn measuring") << false;
            QTest::newRow(name + " wrapped") << family << points << QStringLiteral("alpha gamma omega") << true;
        }
    }
}

void TestRichText::measuring()
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
    const qreal maxWidth = wrapped ? widest + 1 : 10000;
    const qsizetype lines = wrapped ? words.size() : 1;
    const qreal width = wrapped ? widest : metrics.horizontalAdvance(text);
    // Lines are stacked by their whole-pixel height; the last one counts down to its descent, plus 1.
    const qreal lastBaseline = (lines - 1) * std::ceil(metrics.ascent() + metrics.descent()) + metrics.ascent();

    const QRectF bounds = kq_boundsWithMaxWidth(styledText(text, font), maxWidth);
    QCOMPARE(bounds.topLeft(), QPointF(0, 0));
    QCOMPARE(bounds.width(), std::ceil(width));
    QCOMPARE(bounds.height(), std::ceil(lastBaseline + metrics.descent() + 1));
}

void TestRichText::drawingFitsMeasuredBounds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("points");
    QTest::addColumn<qreal>("maxWidth");

    QTest::newRow("one short line") << QStringLiteral("Fits") << 12 << qreal(400);
    QTest::newRow("wrapped paragraph")
        << QStringLiteral("A text that wraps into several lines when it is narrow enough to need them.") << 11 << qreal(120);
    QTest::newRow("several paragraphs") << QStringLiteral("First\nSecond, longer paragraph\nThird") << 14 << qreal(90);
}

void TestRichText::drawingFitsMeasuredBounds()
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
    QVERIFY2(QRectF(placed).adjusted(-1, 0, 1, 0).contains(QRectF(ink)),
             qPrintable(QStringLiteral("ink %1,%2 %3x%4").arg(ink.x()).arg(ink.y()).arg(ink.width()).arg(ink.height())));
}

void TestRichText::drawingCentres_data()
{
    QTest::addColumn<int>("alignment");
    QTest::newRow("left-aligned text") << int(Qt::AlignLeft);
    QTest::newRow("right-aligned text") << int(Qt::AlignRight);
    QTest::newRow("justified text") << int(Qt::AlignJustify);
}

void TestRichText::drawingCentres()
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
    QVERIFY2(std::abs(QRectF(ink).center().x() - rect.center().x()) <= 2.5,
             qPrintable(QStringLiteral("ink from %1 to %2").arg(ink.left()).arg(ink.right())));
    QVERIFY(ink.top() >= rect.top()); // the first line at the top of the rectangle
    QVERIFY(ink.bottom() < rect.top() + QFontMetricsF(font).height() + 1);
}

void TestRichText::framesCutWhatDoesNotFit()
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSize(10);
    const QTextDocumentFragment fragment = styledText(QStringLiteral("one\ntwo\nthree"), font);
    const qreal lineHeight = std::ceil(QFontMetricsF(font).height());
    const KQTextFrame frame = kq_newCTFrameRefWithBounds(fragment, QRectF(3, 4, 200, 2 * lineHeight + 1));
    QCOMPARE(frame.lines().size(), 2);
    QCOMPARE(frame.bounds(), QRectF(3, 4, 200, 2 * lineHeight + 1));
    QCOMPARE(frame.lines().at(1).textStart, 4);
    QCOMPARE(frame.lines().first().baselineOrigin, QPointF(3, 4 + QFontMetricsF(font).ascent()));

    // A text taller than the measuring height is measured down to the last line that fits.
    QString tall;
    for (int i = 0; i < 8000; ++i)
        tall += QStringLiteral("line\n");
    const QRectF measured = kq_boundsWithMaxWidth(styledText(tall, font), 200);
    QVERIFY(measured.height() <= 99999 + 1);
    QVERIFY(measured.height() > 99999 - lineHeight);
}

void TestRichText::badInput_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qreal>("maxWidth");
    QTest::addColumn<QString>("report");

    QTest::newRow("empty text") << QString() << qreal(100) << QStringLiteral("self.length > 0");
    QTest::newRow("negative width") << QStringLiteral("x") << qreal(-5) << QStringLiteral("maxWidth >= 0");
    QTest::newRow("infinite width") << QStringLiteral("x") << qreal(qInf()) << QStringLiteral("isfinite(maxWidth)");
    QTest::newRow("NaN width") << QStringLiteral("x") << qreal(qQNaN()) << QStringLiteral("isfinite(maxWidth)");
}

void TestRichText::badInput()
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
    const QByteArray text2 = capture.text();
    QVERIFY2(text2.contains(report.toUtf8()), text2.constData());
    QVERIFY(inkBounds(image).isNull());
}

QTEST_MAIN(TestRichText)
#include "tst_richtext.moc"
