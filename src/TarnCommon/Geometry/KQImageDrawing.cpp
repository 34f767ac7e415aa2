#include <TarnCommon/KQImageDrawing.h>

#include <TarnCommon/KQAssert.h>

#include <QtCore/QBuffer>
#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextImageFormat>
#include <QtGui/QTransform>

QImage QDX__Copy_NSImage_to_CGImageRef(const QIcon &image)
{
    if (image.isNull())
        return {};
    const QList<QSize> sizes = image.availableSizes();
    if (sizes.isEmpty())
        return {};
    return image.pixmap(sizes.first()).toImage();
}

QImage q_IMAGE_transparent_image_from_image(const QImage &originalImage, double fraction)
{
    KQAssertText("originalImage != nil", !originalImage.isNull(), QImage());
    QImage result(originalImage.size(), QImage::Format_ARGB32_Premultiplied);
    result.setDevicePixelRatio(originalImage.devicePixelRatio());
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(fraction);
    painter.drawImage(QPointF(0, 0), originalImage);
    painter.end();
    return result;
}

QTextDocumentFragment q_IMAGE_attributed_string_from_image(const QImage &image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");

    QTextDocument document;
    QTextCursor cursor(&document);
    QTextImageFormat format;
    format.setName(QLatin1String("data:image/png;base64,") + QString::fromLatin1(png.toBase64()));
    format.setWidth(image.width() / image.devicePixelRatio());
    format.setHeight(image.height() / image.devicePixelRatio());
    cursor.insertImage(format);
    return QTextDocumentFragment(&document);
}

void q_DRAWING_flip_graphics_context_for_rect(QPainter *painter, const QRectF &rect)
{
    KQAssert(painter != nullptr);
    // Each later step applies to points first, as on the platform this
    // mirrors: the net effect is y' = 2 * rect.y + rect.height - y.
    QTransform flip;
    flip.translate(0, rect.y());
    flip.scale(1, -1);
    flip.translate(0, -rect.height());
    flip.translate(0, -rect.y());
    painter->setTransform(flip, true);
}
