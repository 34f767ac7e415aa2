#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointF>
#include <QtCore/QPointer>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QWidget>

class QVariantAnimation;
class ToolTipTextView_ZL;

// The frameless, translucent floating window in which the tooltip controller
// shows one plain or rich text. It sizes itself to the text (wrapping at 100
// points when asked), places itself below the pointer's cursor image or above
// the pointer near the bottom of a screen, stays on the screen horizontally,
// ignores the mouse, and fades out when hidden gently.
class TARNCOMMON_EXPORT ToolTipWindow_ZL : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool shown READ isShown)
public:
    static constexpr int level = 102;          // above pop-up menus (101)
    static constexpr double wrapWidth = 100.0;  // container width when wrapping
    static constexpr int fadeDuration = 500;    // milliseconds

    ToolTipWindow_ZL();
    ~ToolTipWindow_ZL() override;

    QTextDocumentFragment attributedString() const;
    void setAttributedString(const QTextDocumentFragment &text, bool wrapText);
    void setString(const QString &text, bool wrapText);

    // However it is shown or hidden (show(), hide(), setVisible()), a fade
    // under way ends; shown, it is fully opaque and in front.
    void setVisible(bool visible) override;
    // Visible and not fading out.
    bool isShown() const;
    // point: the pointer in Qt global coordinates.
    void positionAtMouseLocation(QPointF point);
    // Does nothing unless shown. With fade, the window's opacity runs down
    // before it goes; without, it goes at once.
    void hide(bool fade);
    using QWidget::hide;

    ToolTipTextView_ZL *textView() const { return textView_; }
    bool isFading() const;

private:
    void animationDidStop();
    void animationDidEnd();

    ToolTipTextView_ZL *textView_;
    QPointer<QVariantAnimation> fadeOut_;
};
