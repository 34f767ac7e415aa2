#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTemporaryFile>

#include <cstdio>
#include <initializer_list>
#include <unistd.h>
#include <vector>

// Collects what the library writes to standard streams while it lives (log
// lines go to stdout, assertion reports to stderr); several streams given
// together are collected into one text, in the order written. text() ends
// the capture.
class StreamCapture
{
public:
    explicit StreamCapture(FILE *stream)
        : StreamCapture({stream})
    {
    }

    explicit StreamCapture(std::initializer_list<FILE *> streams)
    {
        m_file.open();
        for (FILE *stream : streams) {
            std::fflush(stream);
            m_saved.push_back({stream, ::dup(::fileno(stream))});
            ::dup2(m_file.handle(), ::fileno(stream));
        }
    }

    ~StreamCapture() { restore(); }

    StreamCapture(const StreamCapture &) = delete;
    StreamCapture &operator=(const StreamCapture &) = delete;

    QByteArray text()
    {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    struct Saved
    {
        FILE *stream;
        int fd;
    };

    void restore()
    {
        for (const Saved &saved : m_saved) {
            std::fflush(saved.stream);
            ::dup2(saved.fd, ::fileno(saved.stream));
            ::close(saved.fd);
        }
        m_saved.clear();
    }

    QTemporaryFile m_file;
    std::vector<Saved> m_saved;
};
