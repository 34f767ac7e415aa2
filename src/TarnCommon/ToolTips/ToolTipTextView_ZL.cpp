#include <TarnCommon/ToolTipTextView_ZL.h>

#include "ToolTipColors_ZL_p.h"
#include "ToolTipWindow_ZL_p.h"

#include <QtGui/QAbstractTextDocumentLayout>
#include <QtGui/QPainter>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtGui/QTextFrame>

#include <limits>

namespace {

// Room left and right of each line inside the container, as a text
// container's line padding.
constexpr double linePadding = 4.0;

void applyContainerMargins(QTextDocument *document)
{
    QTextFrameFormat format = document->rootFrame()->frameFormat();
    format.setTopMargin(0);
    format.setBottomMargin(0);
    format.setLeftMargin(linePadding);
    format.setRightMargin(linePadding);
    document->rootFrame()->setFrameFormat(format);
}

bool hasContainerMargins(const QTextDocument *document)
{
    const QTextFrameFormat format = document->rootFrame()->frameFormat();
    return format.topMargin() == 0 && format.bottomMargin() == 0 && format.leftMargin() == linePadding
        && format.rightMargin() == linePadding;
}

} // namespace

class ToolTipTextView_ZLPrivate
{
public:
    explicit ToolTipTextView_ZLPrivate(ToolTipTextView_ZL *q)
        : document(new QTextDocument(q))
    {
    }

    QTextDocument *const document; // a child of the view
};

ToolTipTextView_ZL::ToolTipTextView_ZL(QWidget *parent)
    : QWidget(parent)
    , d(std::make_unique<ToolTipTextView_ZLPrivate>(this))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    // The background is ours (drawViewBackgroundInRect), the rest clear.
    setAttribute(Qt::WA_TranslucentBackground);
    setAutoFillBackground(false);
    d->document->setDocumentMargin(0);
    d->document->setUndoRedoEnabled(false);
    QTextOption option = d->document->defaultTextOption();
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    d->document->setDefaultTextOption(option);
    d->document->setDefaultFont(font());
    applyContainerMargins(d->document);
}

ToolTipTextView_ZL::~ToolTipTextView_ZL() = default;

QTextDocument *ToolTipTextView_ZL::document() const
{
    return d->document;
}

QSizeF ToolTipTextView_ZL::textContainerInset() const
{
    return QSizeF(0.0, 3.0);
}

QRectF ToolTipTextView_ZL::setText(const QTextDocumentFragment &text, double wrapWidth)
{
    d->document->clear();
    d->document->setDefaultFont(font());
    applyContainerMargins(d->document);
    // A negative width lays every paragraph out on one line, however long.
    d->document->setTextWidth(wrapWidth < 0 ? -1.0 : wrapWidth);
    QTextCursor cursor(d->document);
    cursor.insertFragment(text);
    update();
    return usedRect();
}

QRectF ToolTipTextView_ZL::usedRect() const
{
    // idealWidth is the width the lines really take, padding included,
    // rather than the container's.
    QAbstractTextDocumentLayout *layout = d->document->documentLayout();
    if (layout == nullptr)
        return QRectF(0, 0, 0, 0);
    return QRectF(0, 0, d->document->idealWidth(), layout->documentSize().height());
}

QRectF ToolTipSetPlainText_ZL(ToolTipTextView_ZL *view, const QString &text, double wrapWidth)
{
    // clear() rebuilds the document (root frame, formats), and the font,
    // the width and the margins set after it each lay it out again: a
    // tooltip's text changes on every show, so a plain string replaces the
    // text of a plain document in one edit instead. Anything else (frames,
    // tables, another font or width) takes the general way.
    QTextDocument *document = view->document();
    const double width = wrapWidth < 0 ? -1.0 : wrapWidth;
    if (!document->rootFrame()->childFrames().isEmpty() || document->defaultFont() != view->font()
        || document->textWidth() != width || !hasContainerMargins(document))
        return view->setText(QTextDocumentFragment::fromPlainText(text), wrapWidth);
    QTextCursor cursor(document);
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.removeSelectedText();
    // What a rich text before left on the one remaining block.
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.setBlockCharFormat(QTextCharFormat());
    cursor.insertText(text, QTextCharFormat());
    cursor.endEditBlock();
    view->update();
    return view->usedRect();
}

void ToolTipTextView_ZL::drawViewBackgroundInRect(QPainter &painter, const QRectF &)
{
    // The whole view, whatever part is being repainted.
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const ToolTipColors_ZL colors = toolTipColorsForPalette(palette());
    painter.fillRect(r, colors.background);
    QPen pen(colors.border);
    pen.setWidthF(1.0);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(r);
}

void ToolTipTextView_ZL::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    drawViewBackgroundInRect(painter, rect());
    const QSizeF inset = textContainerInset();
    painter.translate(inset.width(), inset.height());
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = palette();
    context.palette.setColor(QPalette::Text, toolTipColorsForPalette(palette()).text);
    d->document->documentLayout()->draw(&painter, context);
}
