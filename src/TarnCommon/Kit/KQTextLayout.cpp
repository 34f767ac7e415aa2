#include <TarnCommon/KQTextLayout.h>

#include <TarnCommon/KQAssert.h>

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QPainter>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextLayout>

#include <cmath>

namespace {

constexpr qreal MeasuringHeight = 99999.0;
constexpr qreal ExtraHeight = 1.0;

struct PlacedLine
{
    QTextBlock block;
    int lineNumber = 0;
    QPointF blockOrigin; // where the block's layout starts, relative to the frame
};

bool usableRect(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width())
        && std::isfinite(rect.height()) && rect.width() >= 0 && rect.height() >= 0;
}

} // namespace

class KQTextFramePrivate
{
public:
    QRectF bounds;
    QTextDocument document;
    QList<PlacedLine> placed;
    QList<KQTextFrame::Line> lines;
};

KQTextFrame::KQTextFrame() = default;
KQTextFrame::~KQTextFrame() = default;
KQTextFrame::KQTextFrame(const KQTextFrame &other) = default;
KQTextFrame &KQTextFrame::operator=(const KQTextFrame &other) = default;

QRectF KQTextFrame::bounds() const
{
    return d ? d->bounds : QRectF();
}

QList<KQTextFrame::Line> KQTextFrame::lines() const
{
    return d ? d->lines : QList<Line>();
}

bool KQTextFrame::isEmpty() const
{
    return !d || d->lines.isEmpty();
}

void KQTextFrame::draw(QPainter *painter) const
{
    KQAssert(painter != nullptr);
    if (!d)
        return;
    for (const PlacedLine &placed : d->placed) {
        const QTextLine line = placed.block.layout()->lineAt(placed.lineNumber);
        line.draw(painter, d->bounds.topLeft() + placed.blockOrigin);
    }
}

KQTextFrame kq_newCTFrameRefWithBounds(const QTextDocumentFragment &text, const QRectF &bounds)
{
    KQTextFrame frame;
    KQAssert(usableRect(bounds), frame);
    auto d = std::make_shared<KQTextFramePrivate>();
    d->bounds = bounds;
    // The frame's own document: margins off, lines as wide as the rectangle.
    d->document.setDocumentMargin(0);
    QTextCursor(&d->document).insertFragment(text);
    d->document.setTextWidth(bounds.width());
    (void)d->document.documentLayout()->documentSize(); // lays every paragraph out now
    for (QTextBlock block = d->document.begin(); block.isValid(); block = block.next()) {
        const QTextBlockFormat format = block.blockFormat();
        const qreal sideMargins = format.leftMargin() + format.rightMargin()
            + format.indent() * d->document.indentWidth();
        const QTextLayout *textLayout = block.layout();
        for (int i = 0; i < textLayout->lineCount(); ++i) {
            const QTextLine line = textLayout->lineAt(i);
            const QPointF origin = textLayout->position(); // where the document layout put the paragraph
            const qreal top = origin.y() + line.y();
            if (top + line.height() > bounds.height())
                return frame.d = d, frame; // what follows does not fit
            d->placed.append({block, i, origin});
            KQTextFrame::Line measured;
            measured.baselineOrigin = bounds.topLeft() + QPointF(origin.x() + line.x(), top + line.ascent());
            measured.typographicWidth = line.naturalTextWidth() + sideMargins
                + (i == 0 ? format.textIndent() : 0.0);
            measured.ascent = line.ascent();
            measured.descent = line.descent();
            measured.textStart = block.position() + line.textStart();
            measured.textLength = line.textLength();
            d->lines.append(measured);
        }
    }
    frame.d = d;
    return frame;
}

QRectF kq_boundsWithMaxWidth(const QTextDocumentFragment &text, qreal maxWidth)
{
    KQAssertText("self.length > 0", !text.isEmpty(), QRectF());
    KQAssert(std::isfinite(maxWidth) && maxWidth >= 0, QRectF());
    const KQTextFrame frame = kq_newCTFrameRefWithBounds(text, QRectF(0, 0, maxWidth, MeasuringHeight));
    qreal width = 0;
    qreal descent = 0;
    QPointF origin;
    const QList<KQTextFrame::Line> lines = frame.lines();
    for (const KQTextFrame::Line &line : lines) {
        width = std::max(width, line.typographicWidth);
        descent = line.descent;
    }
    if (!lines.isEmpty())
        origin = lines.last().baselineOrigin;
    // With y growing downward the baseline's depth is measured from the top directly.
    return QRectF(0, 0, std::ceil(width), std::ceil(origin.y() + descent + ExtraHeight));
}

void kq_drawInBounds(const QTextDocumentFragment &text, QPainter *painter, const QRectF &rect)
{
    KQAssertText("self.length > 0", !text.isEmpty());
    KQAssert(painter != nullptr);
    QTextDocument centred;
    QTextCursor cursor(&centred);
    cursor.insertFragment(text);
    cursor.select(QTextCursor::Document);
    QTextBlockFormat alignment;
    alignment.setAlignment(Qt::AlignHCenter);
    cursor.setBlockFormat(alignment);
    QPen pen = painter->pen();
    pen.setJoinStyle(Qt::BevelJoin);
    painter->setPen(pen);
    kq_newCTFrameRefWithBounds(QTextDocumentFragment(&centred), rect).draw(painter);
}
