#pragma once

#include <TarnCommon/KQLog.h>

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <cstring>

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
        const char *category = context.category ? context.category : "";
        if (capture && std::strcmp(category, TARNCOMMON_LOG().categoryName()) == 0)
            capture->m_text += message.toUtf8() + '\n';
        else if (capture && std::strcmp(category, TARNCOMMON_ASSERT_LOG().categoryName()) == 0)
            capture->m_text += '\n' + message.toUtf8() + "\n\n";
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
