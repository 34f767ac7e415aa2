#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// Collects what the library writes to a standard stream (assertion reports go
// to stderr, warnings to stdout) while it is alive.
class StreamCapture
{
public:
    explicit StreamCapture(FILE *stream)
        : m_stream(stream)
    {
        std::fflush(m_stream);
        m_file.open();
        m_saved = ::dup(::fileno(m_stream));
        ::dup2(m_file.handle(), ::fileno(m_stream));
    }

    ~StreamCapture() { restore(); }

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
        std::fflush(m_stream);
        ::dup2(m_saved, ::fileno(m_stream));
        ::close(m_saved);
        m_saved = -1;
    }

    FILE *m_stream;
    QTemporaryFile m_file;
    int m_saved = -1;
};
