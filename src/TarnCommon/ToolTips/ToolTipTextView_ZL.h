#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtWidgets/QWidget>

class QTextDocument;
class QTextDocumentFragment;

// The content of the tooltip window: read-only text on the pale-yellow
// tooltip background with a thin translucent frame. It never takes input.
class TARNCOMMON_EXPORT ToolTipTextView_ZL : public QWidget
{
    Q_OBJECT
public:
    explicit ToolTipTextView_ZL(QWidget *parent = nullptr);
    ~ToolTipTextView_ZL() override;

    QTextDocument *document() const;

    // Space above/below and left/right of the text container.
    QSizeF textContainerInset() const { return QSizeF(0.0, 3.0); }

    // Replaces the text and lays it out in a container wrapWidth wide
    // (unbounded for a negative width). Answers the rectangle the text uses.
    QRectF setText(const QTextDocumentFragment &text, double wrapWidth);
    QRectF usedRect() const;

protected:
    void drawViewBackgroundInRect(QPainter &painter, const QRectF &rect);
    void paintEvent(QPaintEvent *event) override;

private:
    QTextDocument *m_document;
};
