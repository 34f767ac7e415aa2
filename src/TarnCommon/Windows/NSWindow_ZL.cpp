#include <TarnCommon/NSWindow_ZL.h>

#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QMetaMethod>
#include <QtGui/QScreen>

NSWindow_ZL::NSWindow_ZL(QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags | Qt::Window)
{
}

NSWindow_ZL::~NSWindow_ZL() = default;

QRectF NSWindow_ZL::constrainFrameRect(const QRectF &frame, const QScreen *screen) const
{
    return ConstrainFrameRectToScreen_ZL(screen, false, frame);
}

bool NSWindow_ZL::f_getDelegateSetting(QByteArrayView method, bool defaultValue) const
{
    QObject *delegate = kq_windowDelegate(this);
    const int index = kq_indexOfMethodNamed(delegate, method);
    if (index < 0)
        return defaultValue;
    const QMetaMethod meta = delegate->metaObject()->method(index);
    // Any one-byte answer is a yes/no (bool, char): what is not one byte
    // wide cannot be one.
    unsigned char answer = 0;
    if (meta.returnMetaType().sizeOf() != 1 || meta.parameterCount() != 0
        || !meta.invoke(delegate, Qt::DirectConnection, QGenericReturnArgument(meta.typeName(), &answer))) {
        ZLLogWarning("NSWindow_ZL delegate functions won't work properly");
        return defaultValue;
    }
    return answer != 0;
}

void NSWindow_ZL::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    applyFrameConstraint();
}

void NSWindow_ZL::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    applyFrameConstraint();
}

void NSWindow_ZL::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    applyFrameConstraint();
}

void NSWindow_ZL::applyFrameConstraint()
{
    if (m_constraining || !isWindow() || !isVisible())
        return;
    const QRectF frame(frameGeometry());
    const QRectF constrained = constrainFrameRect(frame, screen());
    if (constrained == frame)
        return;
    m_constraining = true;
    const QRect wanted = constrained.toAlignedRect();
    move(wanted.topLeft());
    if (wanted.size() != frameGeometry().size())
        resize(size() + (wanted.size() - frameGeometry().size()));
    m_constraining = false;
}
