#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QRectF>
#include <QtWidgets/QWidget>

class QScreen;

// A top-level widget whose title bar never rises above the visible area of
// its screen: whenever it is placed, resized or shown, its frame goes through
// constrainFrameRect(). It can also ask its window delegate (see
// kq_setWindowDelegate) for optional yes/no settings by method name.
class TARNCOMMON_EXPORT NSWindow_ZL : public QWidget
{
    Q_OBJECT

public:
    explicit NSWindow_ZL(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::Window);
    ~NSWindow_ZL() override;

    // The frame this window accepts for frame on screen (Qt global
    // coordinates): only the top edge is pulled under the visible top.
    virtual QRectF constrainFrameRect(const QRectF &frame, const QScreen *screen) const;

    // Invokes the delegate's invokable method of that name (no arguments,
    // returning bool or another one-byte value) and answers its result.
    // Without a delegate or such a method, answers defaultValue; a method of
    // another shape is reported with a warning and also gives defaultValue.
    bool f_getDelegateSetting(QByteArrayView method, bool defaultValue) const;

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void applyFrameConstraint();

    bool m_constraining = false;
};
