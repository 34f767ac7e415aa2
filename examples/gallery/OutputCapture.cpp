#include "OutputCapture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

OutputCapture *OutputCapture::instance()
{
    static OutputCapture *capture = [] {
        auto *c = new OutputCapture(QCoreApplication::instance());
        c->start();
        return c;
    }();
    return capture;
}

OutputCapture::OutputCapture(QObject *parent)
    : QObject(parent)
{
}

void OutputCapture::start()
{
    const int streams[2] = {STDOUT_FILENO, STDERR_FILENO};
    for (const int stream : streams) {
        int fds[2];
        if (::pipe(fds) != 0)
            return;
        const int original = ::dup(stream);
        std::fflush(stream == STDOUT_FILENO ? stdout : stderr);
        ::dup2(fds[1], stream);
        ::close(fds[1]);
        ::fcntl(fds[0], F_SETFL, O_NONBLOCK);
        (stream == STDOUT_FILENO ? m_originalStdout : m_originalStderr) = original;
        auto *notifier = new QSocketNotifier(fds[0], QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this,
                [this, fd = fds[0], original] { drain(fd, original); });
    }
    // Line-buffer stdout so reports arrive whole and promptly.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    m_active = true;
}

void OutputCapture::drain(int readFd, int originalFd)
{
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(readFd, buffer, sizeof buffer);
        if (n <= 0)
            break;
        if (::write(originalFd, buffer, static_cast<size_t>(n)) < 0) {
            // The terminal is gone; the panel still gets the text.
        }
        Q_EMIT textWritten(QString::fromUtf8(buffer, n));
    }
}

void OutputCapture::printToTerminal(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    const int fd = m_active ? m_originalStdout : STDOUT_FILENO;
    if (::write(fd, bytes.constData(), static_cast<size_t>(bytes.size())) < 0) {
        // Nowhere else to say it.
    }
}
