#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QWidget>

#include <memory>

/*! \file ToolTipWindow_ZL.h
    \brief The floating window in which the tooltip controller shows one tooltip.
*/

class ToolTipTextView_ZL;
class ToolTipWindow_ZLPrivate;

/*!
    \class ToolTipWindow_ZL
    \brief The frameless, translucent floating window in which the tooltip
    controller shows one plain or rich text.

    It sizes itself to the text (wrapping at wrapWidth when asked), places
    itself below the pointer's cursor image or above the pointer near the
    bottom of a screen, stays on the screen horizontally, ignores the mouse,
    never takes focus, hides when the application is deactivated, and fades
    out when hidden gently. ToolTipController_ZL makes and owns it; a window
    made by hand is the caller's to delete.

    \code
    ToolTipWindow_ZL window;
    window.setString(QStringLiteral("Three sizes available"), true);
    window.positionAtMouseLocation(QCursor::pos());
    window.show();
    window.hide(true); // fades out
    \endcode
*/
class TARNCOMMON_EXPORT ToolTipWindow_ZL : public QWidget
{
    Q_OBJECT
    /*!
        Whether the window is visible and not fading out (see isShown()).
        Read-only.
    */
    Q_PROPERTY(bool shown READ isShown)
public:
    /*! The window's level: one above pop-up menus (101). */
    static constexpr int level = 102;
    /*! The width, in pixels, of the text container when the text wraps. */
    static constexpr double wrapWidth = 100.0;
    /*! How long the fade-out of hide(true) runs, in milliseconds. */
    static constexpr int fadeDuration = 500;

    /*!
        Creates the hidden, top-level window holding empty text, 100 x 100
        until the first text is set.
    */
    ToolTipWindow_ZL();
    /*! Deletes the text view and the fade-out animation with the window. */
    ~ToolTipWindow_ZL() override;

    /*! A copy of the text now shown (rich text keeps its formatting). */
    QTextDocumentFragment attributedString() const;
    /*!
        Replaces the text and resizes the window to the size the text takes,
        with 3 pixels above and below it.
        With \a wrapText the lines break at wrapWidth; without, each
        paragraph stays on one line however long. A fade under way stops and
        the window goes; it comes back only through show().
    */
    void setAttributedString(const QTextDocumentFragment &text, bool wrapText);
    /*! Shows \a text as plain text, in the view's default font; see setAttributedString(). */
    void setString(const QString &text, bool wrapText);

    /*!
        However the window is shown or hidden (show(), hide(), setVisible()),
        a fade under way ends; shown, the window is fully opaque and in front.
    */
    void setVisible(bool visible) override;
    /*! Whether the window is visible and not fading out: a fading window already counts as hidden. */
    bool isShown() const;
    /*!
        Places the window for the pointer at \a point (Qt global
        coordinates): its top 5 pixels below the cursor image, or 30 pixels
        above the pointer when it would leave the screen's bottom; its left
        edge at the pointer, moved left to keep it on the screen. A point on
        no screen logs an error and the window goes next to the pointer.
    */
    void positionAtMouseLocation(QPointF point);
    /*!
        Does nothing unless shown. With \a fade, the window's opacity runs
        down over fadeDuration before it goes (isShown() is false from the
        start); without, it goes at once.
    */
    void hide(bool fade);
    using QWidget::hide;

    /*! The view that holds and draws the text, owned by the window; never nullptr. */
    ToolTipTextView_ZL *textView() const;
    /*! Whether a fade-out started by hide(true) is under way. */
    bool isFading() const;

private:
    std::unique_ptr<ToolTipWindow_ZLPrivate> const d;
};
