#pragma once

#include <TarnCommon/KQAssert.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>

// A delegate that is not owned: the interface pointer is only handed out
// while the QObject behind it lives, so a delegate destroyed at any moment
// (mid-animation included) simply stops receiving messages.
template<typename Interface>
class KQGuardedDelegate
{
public:
    // A delegate must be a QObject too, or it could not be guarded; any other
    // object is refused with a report.
    void set(Interface *delegate)
    {
        m_object.clear();
        m_interface = nullptr;
        if (!delegate)
            return;
        QObject *object = dynamic_cast<QObject *>(delegate);
        KQAssert(object != nullptr);
        m_object = object;
        m_interface = delegate;
    }

    Interface *get() const { return m_object ? m_interface : nullptr; }

private:
    QPointer<QObject> m_object;
    Interface *m_interface = nullptr;
};
