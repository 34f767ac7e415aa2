#include <TarnCommon/NSWindow_ZL.h>

#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QMetaMethod>
#include <QtGui/QScreen>

class NSWindow_ZLPrivate
{
public:
    explicit NSWindow_ZLPrivate(NSWindow_ZL *q)
        : q(q)
    {
    }

    void applyFrameConstraint();

    NSWindow_ZL *const q;
    // Set while the window moves itself, so the events that follow do not recurse.
    bool constraining = false;
};

NSWindow_ZL::NSWindow_ZL(QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags | Qt::Window)
    , d(std::make_unique<NSWindow_ZLPrivate>(this))
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
    d->applyFrameConstraint();
}

void NSWindow_ZL::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    d->applyFrameConstraint();
}

void NSWindow_ZL::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    d->applyFrameConstraint();
}

void NSWindow_ZLPrivate::applyFrameConstraint()
{
    if (constraining || !q->isWindow() || !q->isVisible())
        return;
    const QRectF frame(q->frameGeometry());
    const QRectF constrained = q->constrainFrameRect(frame, q->screen());
    if (constrained == frame)
        return;
    constraining = true;
    const QRect wanted = constrained.toAlignedRect();
    q->move(wanted.topLeft());
    if (wanted.size() != q->frameGeometry().size())
        q->resize(q->size() + (wanted.size() - q->frameGeometry().size()));
    constraining = false;
}
