#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// Collects what is written to standard error (assertion reports) while it
// lives; text() ends the capture and returns it.
class StderrCapture
{
public:
    StderrCapture()
    {
        m_file.open();
        std::fflush(stderr);
        m_saved = ::dup(STDERR_FILENO);
        ::dup2(m_file.handle(), STDERR_FILENO);
    }
    ~StderrCapture() { restore(); }

    QByteArray text()
    {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore()
    {
        if (m_saved < 0)
            return;
        std::fflush(stderr);
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
        m_saved = -1;
    }

    QTemporaryFile m_file;
    int m_saved = -1;
};
