#pragma once

/*!
    \file KQTextLayout.h
    \brief Rich text laid out in a rectangle: text frames, measuring the
    rectangle a text needs, and drawing a text centred into a rectangle.

    Measuring and drawing make their frames the same way, so a text drawn
    into the rectangle that kq_boundsWithMaxWidth() measured fits it:
    \code
    const QRectF needed = kq_boundsWithMaxWidth(text, 240);
    label->setFixedSize(needed.size().toSize());
    // ... in paintEvent:
    kq_drawInBounds(text, &painter, QRectF(QPointF(0, 0), needed.size()));
    \endcode
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtGui/QTextDocumentFragment>

#include <memory>

class QPainter;
class KQTextFramePrivate;

/*!
    \brief A text laid out line by line inside a rectangle.

    A value: copies share the laid-out text, which never changes. Lines that
    do not fit into the rectangle's height are not part of the frame.
*/
class TARNCOMMON_EXPORT KQTextFrame
{
public:
    /*! \brief One laid-out line, in the coordinates the frame was made in. */
    struct Line
    {
        QPointF baselineOrigin; //!< the left end of the line's baseline
        qreal typographicWidth = 0; //!< the advance of the line's text, trailing white space left out
        qreal ascent = 0;  //!< height above the baseline
        qreal descent = 0; //!< depth below the baseline
        int textStart = 0; //!< the first character of the line in the whole text
        int textLength = 0; //!< how many characters the line holds
    };

    /*! An empty frame: no lines, a null rectangle. */
    KQTextFrame();
    ~KQTextFrame();
    /*! A copy sharing \a other's layout. */
    KQTextFrame(const KQTextFrame &other);
    /*! Makes this frame share \a other's layout. */
    KQTextFrame &operator=(const KQTextFrame &other);

    /*! The rectangle the text was laid into. */
    QRectF bounds() const;
    /*! The lines that fit, top to bottom. */
    QList<Line> lines() const;
    /*! True when no line fits (or the frame is empty). */
    bool isEmpty() const;
    /*! Draws the lines with \a painter at their places; the painter's pen colours text without a colour of its own. */
    void draw(QPainter *painter) const;

private:
    friend KQTextFrame kq_newCTFrameRefWithBounds(const QTextDocumentFragment &text, const QRectF &bounds);
    std::shared_ptr<const KQTextFramePrivate> d;
};

/*!
    A frame of the whole of \a text laid out inside \a bounds: lines as wide
    as \a bounds, the first at its top, those that do not fit into its
    height left out. The caller owns the value. A rectangle with a negative
    or not finite size is reported and gives an empty frame.
*/
TARNCOMMON_EXPORT KQTextFrame kq_newCTFrameRefWithBounds(const QTextDocumentFragment &text, const QRectF &bounds);

/*!
    The rectangle at (0, 0) that \a text needs at most \a maxWidth wide: the
    widest line's width, and the height from the top down to the last line's
    baseline plus its descent plus 1, each rounded up. The text is laid out
    99,999 points high, so lines below that are not measured. An empty text
    ("self.length > 0"), or a negative or not finite width, is reported and
    gives the null rectangle.
*/
TARNCOMMON_EXPORT QRectF kq_boundsWithMaxWidth(const QTextDocumentFragment &text, qreal maxWidth);

/*!
    Draws \a text into \a rect with \a painter, every paragraph centred (its
    own paragraph formats replaced). Leaves a bevel line join set on the
    painter's pen. An empty text ("self.length > 0") or a null painter is
    reported and nothing is drawn.
*/
TARNCOMMON_EXPORT void kq_drawInBounds(const QTextDocumentFragment &text, QPainter *painter, const QRectF &rect);
