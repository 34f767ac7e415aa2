#pragma once

#include "KQMessageOutput_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>


// Collects the library's messages (log lines and assertion reports) while it
// lives, in the form they would be printed, in the order sent; other
// messages pass on. text() ends the capture.
class MessageCapture
{
public:
    MessageCapture()
        : m_outer(s_current)
    {
        s_current = this;
        m_previous = qInstallMessageHandler(&MessageCapture::handle);
    }

    ~MessageCapture() { stop(); }

    MessageCapture(const MessageCapture &) = delete;
    MessageCapture &operator=(const MessageCapture &) = delete;

    QByteArray text()
    {
        stop();
        return m_text;
    }

private:
    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        MessageCapture *capture = s_current;
        const KQMessageOutput::Printed printed = KQMessageOutput::printedForm(context, message);
        if (capture && printed.stream)
            capture->m_text += printed.bytes;
        else if (capture && capture->m_previous)
            capture->m_previous(type, context, message);
    }

    void stop()
    {
        if (!m_active)
            return;
        m_active = false;
        qInstallMessageHandler(m_previous);
        s_current = m_outer;
    }

    static inline MessageCapture *s_current = nullptr;
    MessageCapture *m_outer = nullptr;
    QtMessageHandler m_previous = nullptr;
    QByteArray m_text;
    bool m_active = true;
};
