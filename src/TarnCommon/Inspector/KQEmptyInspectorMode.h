#pragma once

#include <TarnCommon/KQInspectorMode.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QTextEdit>

#include <functional>

// The mode the inspector shows when nothing owns its focus: a centred notice
// that the inspector is not available for the focused window, with that
// window's document icon and title. While shown it refreshes every two
// seconds, so a change of the window's title is followed; the text is only
// rebuilt when the title changed.
//
// The refresh keeps time on a clock that tests can replace, so that they need
// not wait in real time:
//
//     double now = 0;
//     mode->setClock([&now] { return now; });
//     mode->modeWillShow();
//     window->setWindowTitle("Renamed");
//     now += KQEmptyInspectorMode::refreshInterval;
//     mode->poll(); // the text now names "Renamed"
class TARNCOMMON_EXPORT KQEmptyInspectorMode : public KQInspectorMode
{
    Q_OBJECT

public:
    static constexpr double refreshInterval = 2.0; // seconds
    static constexpr int documentIconSize = 16;
    // How far the title is raised beside a document icon, in points.
    static constexpr double titleBaselineOffset = 3.0;
    // The character-format property holding that offset on the title.
    static constexpr int BaselineOffsetProperty = 0x100000 + 0x4b51; // QTextFormat::UserProperty + 'KQ'

    // The focused window is fixed here: the mode keeps naming it.
    explicit KQEmptyInspectorMode(QWidget *focusedWindow, QObject *parent = nullptr);
    KQEmptyInspectorMode() = delete;
    ~KQEmptyInspectorMode() override;

    QSizeF minSize() const override; // 50 x 50
    QSizeF maxSize() const override; // the largest double in both directions

    // A testing aid: the clock answers seconds on any steady scale (by
    // default a monotonic clock); nullptr restores the default.
    using Clock = std::function<double()>;
    void setClock(Clock clock);
    // Does at once what the refresh timer does: refreshes when
    // refreshInterval has passed on the clock since the last refresh.
    // Nothing while the mode is hidden.
    void poll();

    // Starts the refresh (and refreshes at once); replaces a running refresh.
    void modeWillShow() override;
    // Stops the refresh.
    void modeWasHidden() override;

    QWidget *focusedWindow() const { return m_window.data(); }
    QTextEdit *textView() const { return m_textView.data(); }
    // The running refresh timer while shown, else nullptr.
    QTimer *refreshTimer() const { return m_timer.data(); }

    QString lastWindowTitle() const { return m_lastWindowTitle; }

public Q_SLOTS:
    // Rebuilds the text if the focused window's title changed.
    void update();

protected:
    void loadView() override;

private:
    void stopTimer();
    void armTimer(double now);

    QPointer<QWidget> m_window;
    QPointer<QTimer> m_timer;
    QPointer<QTextEdit> m_textView;
    QString m_lastWindowTitle;
    Clock m_clock;
    double m_nextRefresh = 0;
};

// The document icon of a window: its window icon when it stands for a file
// (its windowFilePath is set), else a null icon.
TARNCOMMON_EXPORT QIcon kq_documentIconOfWindow(const QWidget *window);
