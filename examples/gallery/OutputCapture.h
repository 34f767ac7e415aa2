#pragma once

#include <QtCore/QObject>

class QSocketNotifier;

// Tees the process's standard output and error into a signal, so the
// library's warnings and assertion reports show in the gallery's log panel
// while still reaching the terminal.
class OutputCapture : public QObject
{
    Q_OBJECT
public:
    static OutputCapture *instance();
    bool isActive() const { return m_active; }
    // Writes straight to the real standard output, past the panel.
    void printToTerminal(const QString &text);

Q_SIGNALS:
    void textWritten(const QString &text);

private:
    explicit OutputCapture(QObject *parent = nullptr);
    void start();
    void drain(int readFd, int originalFd);

    bool m_active = false;
    int m_originalStdout = -1;
    int m_originalStderr = -1;
};
