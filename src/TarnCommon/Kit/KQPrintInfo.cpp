#include <TarnCommon/KQPrintInfo.h>

#include <TarnCommon/KQAssert.h>

#include <QtCore/QFileInfo>
#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QImageReader>
#include <QtGui/QPagedPaintDevice>
#include <QtGui/QPainter>

#include <cmath>

class KQPrintInfoPrivate
{
public:
    QPageLayout layout{QPageSize(QPageSize::A4), QPageLayout::Portrait, QMarginsF()};
    qreal scalingFactor = 1.0;
    bool horizontallyCentered = false;
    bool verticallyCentered = false;
};

namespace {

enum class Edge { Top, Left, Right, Bottom };

// Margins below the page's minimum are raised to it, as a printer would.
void setEdge(QPageLayout &layout, Edge edge, qreal points)
{
    KQAssert(std::isfinite(points));
    const QPageLayout::Unit unit = layout.units();
    QPageLayout inPoints = layout;
    inPoints.setUnits(QPageLayout::Point);
    QMarginsF margins = inPoints.margins();
    const QMarginsF minimum = inPoints.minimumMargins();
    switch (edge) {
    case Edge::Top: margins.setTop(std::max(points, minimum.top())); break;
    case Edge::Left: margins.setLeft(std::max(points, minimum.left())); break;
    case Edge::Right: margins.setRight(std::max(points, minimum.right())); break;
    case Edge::Bottom: margins.setBottom(std::max(points, minimum.bottom())); break;
    }
    inPoints.setMargins(margins);
    inPoints.setUnits(unit);
    layout = inPoints;
}

bool usableSize(const QSizeF &size)
{
    return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() > 0 && size.height() > 0;
}

} // namespace

KQPrintInfo::KQPrintInfo()
    : d(std::make_unique<KQPrintInfoPrivate>())
{
}

KQPrintInfo::KQPrintInfo(const QPageLayout &pageLayout)
    : KQPrintInfo()
{
    setPageLayout(pageLayout);
}

KQPrintInfo::~KQPrintInfo() = default;

KQPrintInfo::KQPrintInfo(const KQPrintInfo &other)
    : d(std::make_unique<KQPrintInfoPrivate>(*other.d))
{
}

KQPrintInfo &KQPrintInfo::operator=(const KQPrintInfo &other)
{
    *d = *other.d;
    return *this;
}

QPageLayout KQPrintInfo::pageLayout() const { return d->layout; }

void KQPrintInfo::setPageLayout(const QPageLayout &pageLayout)
{
    KQAssert(pageLayout.isValid());
    d->layout = pageLayout;
}

qreal KQPrintInfo::scalingFactor() const { return d->scalingFactor; }

void KQPrintInfo::setScalingFactor(qreal factor)
{
    KQAssert(std::isfinite(factor) && factor > 0);
    d->scalingFactor = factor;
}

bool KQPrintInfo::isHorizontallyCentered() const { return d->horizontallyCentered; }
void KQPrintInfo::setHorizontallyCentered(bool centered) { d->horizontallyCentered = centered; }
bool KQPrintInfo::isVerticallyCentered() const { return d->verticallyCentered; }
void KQPrintInfo::setVerticallyCentered(bool centered) { d->verticallyCentered = centered; }

void KQPrintInfo::setTopMargin(qreal points) { setEdge(d->layout, Edge::Top, points); }
void KQPrintInfo::setLeftMargin(qreal points) { setEdge(d->layout, Edge::Left, points); }
void KQPrintInfo::setRightMargin(qreal points) { setEdge(d->layout, Edge::Right, points); }
void KQPrintInfo::setBottomMargin(qreal points) { setEdge(d->layout, Edge::Bottom, points); }

QRectF KQPrintInfo::imageablePageBounds() const
{
    QPageLayout inPoints = d->layout;
    inPoints.setUnits(QPageLayout::Point);
    return inPoints.fullRect().marginsRemoved(inPoints.minimumMargins());
}

QRectF KQPrintInfo::placedContentRect(const QSizeF &contentSize) const
{
    const QSizeF scaled = contentSize * d->scalingFactor;
    const QRectF imageable = imageablePageBounds();
    const QRectF margins = d->layout.paintRect(QPageLayout::Point);
    const qreal x = d->horizontallyCentered ? imageable.x() + (imageable.width() - scaled.width()) / 2 : margins.x();
    const qreal y = d->verticallyCentered ? imageable.y() + (imageable.height() - scaled.height()) / 2 : margins.y();
    return QRectF(QPointF(x, y), scaled);
}

void kq_maximallyFitContentOfSize(KQPrintInfo &printInfo, const QSizeF &size)
{
    printInfo.setHorizontallyCentered(true);
    printInfo.setVerticallyCentered(true);
    printInfo.setTopMargin(0);
    printInfo.setLeftMargin(0);
    printInfo.setRightMargin(0);
    printInfo.setBottomMargin(0);
    // A zero side would make the factor infinite; refused rather than passed on.
    KQAssertText("size.width > 0 && size.height > 0", usableSize(size));
    const QSizeF page = printInfo.imageablePageBounds().size();
    printInfo.setScalingFactor(std::min(page.width() / size.width(), page.height() / size.height()));
}

void kq_applyPrintInfo(const KQPrintInfo &printInfo, QPagedPaintDevice *device)
{
    KQAssert(device != nullptr);
    device->setPageLayout(printInfo.pageLayout());
}

bool kq_applyPrintInfo(const KQPrintInfo &printInfo, QPainter *painter, const QSizeF &contentSize)
{
    KQAssert(painter != nullptr && painter->isActive(), false);
    KQAssert(usableSize(contentSize), false);
    auto *device = dynamic_cast<QPagedPaintDevice *>(painter->device());
    KQAssertText("painter paints on a QPagedPaintDevice", device != nullptr, false);
    // The painter's origin is the device's paint rectangle (the page less its
    // margins); the placement is computed from the page's corner.
    const QPageLayout layout = device->pageLayout();
    const qreal pixelsPerPoint = device->logicalDpiX() / 72.0;
    const QPointF paintOrigin = layout.paintRect(QPageLayout::Point).topLeft();
    const QRectF placed = printInfo.placedContentRect(contentSize);
    painter->translate((placed.topLeft() - paintOrigin) * pixelsPerPoint);
    painter->scale(printInfo.scalingFactor() * pixelsPerPoint, printInfo.scalingFactor() * pixelsPerPoint);
    return true;
}

void kq_isolate(QPainter *painter, const std::function<void()> &block)
{
    KQAssert(painter != nullptr);
    KQAssert(block != nullptr);
    struct Restore
    {
        QPainter *painter;
        ~Restore() { painter->restore(); }
    };
    painter->save();
    const Restore restore{painter};
    block();
}

QImage kq_imageFromPicHandle(char **picHandle)
{
    KQAssertText("picHandle", picHandle != nullptr, QImage());
    // There is no legacy picture decoder to hand the bytes to.
    KQAssertText("imageRep", false, QImage());
}

QImage kq_imageFromPasteboard(const QMimeData *mimeData)
{
    if (!mimeData)
        return {};
    if (mimeData->hasImage()) {
        const QImage image = qvariant_cast<QImage>(mimeData->imageData());
        if (!image.isNull())
            return image;
    }
    const QStringList formats = mimeData->formats();
    for (const QString &format : formats) {
        if (format.startsWith(QLatin1String("image/"))) {
            const QImage image = QImage::fromData(mimeData->data(format));
            if (!image.isNull())
                return image;
        }
    }
    if (!mimeData->hasUrls())
        return {};
    const QList<QUrl> urls = mimeData->urls();
    if (urls.size() != 1 || !urls.first().isLocalFile())
        return {};
    const QString path = urls.first().toLocalFile();
    const QByteArray suffix = QFileInfo(path).suffix().toUtf8();
    if (suffix.isEmpty() || !QImageReader::supportedImageFormats().contains(suffix))
        return {};
    return QImage(path);
}
