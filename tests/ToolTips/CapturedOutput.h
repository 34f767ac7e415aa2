#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QTemporaryFile>

#include <cstdio>
#include <unistd.h>

// Collects what the library writes to standard output and error while it
// lives (log lines go to stdout, assertion reports to stderr).
class CapturedOutput
{
public:
    CapturedOutput()
    {
        m_file.open();
        std::fflush(stdout);
        std::fflush(stderr);
        m_savedOut = dup(STDOUT_FILENO);
        m_savedErr = dup(STDERR_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
        dup2(m_file.handle(), STDERR_FILENO);
    }
    ~CapturedOutput() { restore(); }

    QByteArray text()
    {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore()
    {
        if (m_savedOut < 0)
            return;
        std::fflush(stdout);
        std::fflush(stderr);
        dup2(m_savedOut, STDOUT_FILENO);
        dup2(m_savedErr, STDERR_FILENO);
        close(m_savedOut);
        close(m_savedErr);
        m_savedOut = m_savedErr = -1;
    }

    QTemporaryFile m_file;
    int m_savedOut = -1;
    int m_savedErr = -1;
};
