#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QRectF>
#include <QtWidgets/QWidget>

#include <memory>

/*!
    \file NSWindow_ZL.h
    \brief A top-level widget whose title bar stays on screen.
*/

class QScreen;
class NSWindow_ZLPrivate;

/*!
    \brief A top-level widget whose title bar never rises above the visible
    area of its screen.

    Whenever it is moved, resized or shown, its frame goes through
    constrainFrameRect(), which subclasses may override to apply a stricter
    rule. It can also ask its window delegate (see kq_setWindowDelegate())
    for optional yes/no settings by method name.

    \code
    auto *window = new NSWindow_ZL;
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setGeometry(100, -50, 400, 300); // pulled down under the screen's top on show
    window->show();
    \endcode
*/
class TARNCOMMON_EXPORT NSWindow_ZL : public QWidget
{
    Q_OBJECT

public:
    /*!
        Makes the window with \a parent and \a flags; Qt::Window is always
        added, so it is a top-level window even with a parent (which then
        owns it, as for any QWidget).
    */
    explicit NSWindow_ZL(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::Window);
    ~NSWindow_ZL() override;

    /*!
        The frame this window accepts for \a frame on \a screen (both in Qt
        global coordinates): only the top edge is pulled under the visible
        top, the size is kept. A null \a screen means the primary screen;
        without any screen \a frame comes back unchanged. Override it to
        constrain further; it is called with the window's frame geometry.
    */
    virtual QRectF constrainFrameRect(const QRectF &frame, const QScreen *screen) const;

    /*!
        Invokes the delegate's invokable method named \a method (no
        arguments, returning bool or another one-byte value) and answers
        whether its result is non-zero. Without a delegate or such a method,
        answers \a defaultValue; a method of another shape is reported with a
        warning and also gives \a defaultValue.
    */
    bool f_getDelegateSetting(QByteArrayView method, bool defaultValue) const;

protected:
    /*!
        Handles the move as QWidget does, then constrains the frame;
        overrides call it to keep the constraint.
    */
    void moveEvent(QMoveEvent *event) override;
    /*!
        Handles the resize as QWidget does, then constrains the frame;
        overrides call it to keep the constraint.
    */
    void resizeEvent(QResizeEvent *event) override;
    /*!
        Handles the show as QWidget does, then constrains the frame;
        overrides call it to keep the constraint.
    */
    void showEvent(QShowEvent *event) override;

private:
    std::unique_ptr<NSWindow_ZLPrivate> const d;
};
