#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtWidgets/QWidget>

#include <memory>

/*! \file ToolTipTextView_ZL.h
    \brief The text view inside the tooltip window.
*/

class QTextDocument;
class QTextDocumentFragment;
class ToolTipTextView_ZLPrivate;

/*!
    \class ToolTipTextView_ZL
    \brief The content of the tooltip window: read-only text on the
    pale-yellow tooltip background with a thin translucent frame.

    It never takes input: mouse events pass through it and it takes no focus.
    ToolTipWindow_ZL makes one and sizes it to its text; a subclass may
    repaint the background by overriding drawViewBackgroundInRect().
*/
class TARNCOMMON_EXPORT ToolTipTextView_ZL : public QWidget
{
    Q_OBJECT
public:
    /*! Creates an empty view; \a parent, if any, owns it. */
    explicit ToolTipTextView_ZL(QWidget *parent = nullptr);
    /*! Deletes the document with the view. */
    ~ToolTipTextView_ZL() override;

    /*! The document holding the text, owned by the view; never nullptr. */
    QTextDocument *document() const;

    /*!
        The space left and right (width) and above and below (height) of the
        text container, in pixels: 0 and 3.
    */
    QSizeF textContainerInset() const;

    /*!
        Replaces the text with \a text in the view's font and lays it out in
        a container \a wrapWidth pixels wide (unbounded for a negative width,
        so each paragraph stays on one line). Answers the rectangle the text
        uses, as usedRect() does.
    */
    QRectF setText(const QTextDocumentFragment &text, double wrapWidth);
    /*!
        The rectangle the laid-out text uses, from the container's origin:
        the width its lines really take (padding included) and its height.
        An empty rectangle when there is no layout.
    */
    QRectF usedRect() const;

protected:
    /*!
        Paints the background of the whole view (whatever \a rect says, which
        is the area being repainted) with \a painter: pale yellow, slightly
        translucent, framed by a one-pixel black line at a third of full
        opacity. Called by paintEvent() before the text is drawn.
    */
    virtual void drawViewBackgroundInRect(QPainter &painter, const QRectF &rect);
    /*! Draws the background, then the text inside the container inset. */
    void paintEvent(QPaintEvent *event) override;

private:
    std::unique_ptr<ToolTipTextView_ZLPrivate> const d;
};
