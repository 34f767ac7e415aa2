#include "MessageCapture.h"

#include <TarnCommon/KQImageDrawing.h>
#include <TarnCommon/KQSettings.h>

#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextImageFormat>
#include <QtTest/QtTest>

class tst_ImageDrawing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void flipMirrorsAboutCentreLine_data();
    void flipMirrorsAboutCentreLine();
    void transparentCopy_data();
    void transparentCopy();
    void badInputIsRefused();
    void firstRepresentation();
    void imageAsText();
};

void tst_ImageDrawing::flipMirrorsAboutCentreLine_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("expected");
    QTest::newRow("top of the rectangle") << 10.0 << 30.0;
    QTest::newRow("bottom of the rectangle") << 30.0 << 10.0;
    QTest::newRow("centre line") << 20.0 << 20.0;
    QTest::newRow("outside") << 0.0 << 40.0;
}

void tst_ImageDrawing::flipMirrorsAboutCentreLine()
{
    QFETCH(double, y);
    QFETCH(double, expected);
    QImage canvas(60, 60, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    painter.translate(5, 0); // what was there before is kept, the flip comes first
    q_DRAWING_flip_graphics_context_for_rect(&painter, QRectF(0, 10, 50, 20));
    QCOMPARE(painter.transform().map(QPointF(3, y)), QPointF(8, expected));
}

void tst_ImageDrawing::transparentCopy_data()
{
    QTest::addColumn<double>("fraction");
    QTest::addColumn<int>("alpha");
    QTest::newRow("opaque copy") << 1.0 << 255;
    QTest::newRow("half") << 0.5 << 128;
    QTest::newRow("invisible") << 0.0 << 0;
}

void tst_ImageDrawing::transparentCopy()
{
    QFETCH(double, fraction);
    QFETCH(int, alpha);
    QImage original(12, 7, QImage::Format_ARGB32);
    original.fill(QColor(200, 40, 40));
    const QImage copy = q_IMAGE_transparent_image_from_image(original, fraction);
    QCOMPARE(copy.size(), original.size());
    QVERIFY(qAbs(copy.pixelColor(3, 3).alpha() - alpha) <= 1);
    if (alpha == 255)
        QCOMPARE(copy.pixelColor(3, 3), original.pixelColor(3, 3));
}

void tst_ImageDrawing::badInputIsRefused()
{
    MessageCapture errors;
    QVERIFY(q_IMAGE_transparent_image_from_image(QImage(), 0.5).isNull());
    q_DRAWING_flip_graphics_context_for_rect(nullptr, QRectF(0, 0, 1, 1));
    const QByteArray text = errors.text();
    QVERIFY(text.contains("(originalImage != nil)"));
    QVERIFY(text.contains("q_IMAGE_transparent_image_from_image"));
    QVERIFY(text.contains("painter != nullptr"));
}

void tst_ImageDrawing::firstRepresentation()
{
    QVERIFY(QDX__Copy_NSImage_to_CGImageRef(QIcon()).isNull());
    QPixmap small(8, 8);
    small.fill(Qt::green);
    QPixmap large(32, 32);
    large.fill(Qt::blue);
    QIcon icon;
    icon.addPixmap(small);
    icon.addPixmap(large);
    const QImage image = QDX__Copy_NSImage_to_CGImageRef(icon);
    QCOMPARE(image.size(), QSize(8, 8));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::green));
}

void tst_ImageDrawing::imageAsText()
{
    QImage picture(10, 6, QImage::Format_ARGB32);
    picture.fill(QColor(10, 200, 30));
    const QTextDocumentFragment fragment = q_IMAGE_attributed_string_from_image(picture);
    QCOMPARE(fragment.toPlainText(), QString(QChar(QChar::ObjectReplacementCharacter)));

    // Inserted into any document, the picture comes along.
    QTextDocument document;
    QTextCursor cursor(&document);
    cursor.insertText(QStringLiteral("a"));
    cursor.insertFragment(fragment);
    const QTextImageFormat format = cursor.charFormat().toImageFormat();
    QVERIFY(format.isValid());
    QCOMPARE(QSizeF(format.width(), format.height()), QSizeF(10, 6));
    const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(format.name()));
    QImage loaded = qvariant_cast<QImage>(resource);
    if (loaded.isNull())
        loaded.loadFromData(resource.toByteArray());
    QCOMPARE(loaded.size(), picture.size());
    QCOMPARE(loaded.pixelColor(4, 4), picture.pixelColor(4, 4));
}

QTEST_MAIN(tst_ImageDrawing)
#include "tst_imagedrawing.moc"
