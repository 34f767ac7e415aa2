#pragma once

#include <TarnCommon/KQInspectorMode.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtWidgets/QTextEdit>

#include <functional>
#include <memory>

class KQEmptyInspectorModePrivate;

/*!
    \file KQEmptyInspectorMode.h
    \brief The inspector's mode for windows that have no focus owner.
*/

/*!
    \brief The mode the inspector shows when nothing owns its focus: a centred
    notice that the inspector is not available for the focused window, with that
    window's document icon and title.

    While shown it refreshes every refreshInterval seconds, so a change of the
    window's title is followed; the text is only rebuilt when the title changed.
    KQInspectorWindow makes these modes itself.

    The refresh keeps time on a clock that tests can replace, so that they need
    not wait in real time:

    \code
    double now = 0;
    mode->setClock([&now] { return now; });
    mode->modeWillShow();
    window->setWindowTitle("Renamed");
    now += KQEmptyInspectorMode::refreshInterval;
    mode->poll(); // the text now names "Renamed"
    \endcode
*/
class TARNCOMMON_EXPORT KQEmptyInspectorMode : public KQInspectorMode
{
    Q_OBJECT

public:
    /*! The time between two refreshes while shown, in seconds. */
    static constexpr double refreshInterval = 2.0;
    /*! The side of the document icon shown before the title, in pixels. */
    static constexpr int documentIconSize = 16;
    /*! How far the title is raised beside a document icon, in points. */
    static constexpr double titleBaselineOffset = 3.0;
    /*!
        The character-format property (QTextFormat::UserProperty + 0x4b51)
        holding the title's baseline offset in points: titleBaselineOffset
        beside an icon, else 0.
    */
    static constexpr int BaselineOffsetProperty = 0x100000 + 0x4b51;

    /*!
        Makes a mode naming \a focusedWindow (may be nullptr, which shows "?"),
        owned by \a parent. The window is fixed here: the mode keeps naming it,
        and does not own it.
    */
    explicit KQEmptyInspectorMode(QWidget *focusedWindow, QObject *parent = nullptr);
    /*! A mode always names a window: there is no default constructor. */
    KQEmptyInspectorMode() = delete;
    /*! Stops the refresh; the text view goes with the view, as for every mode. */
    ~KQEmptyInspectorMode() override;

    /*! 50 x 50. */
    QSizeF minSize() const override;
    /*! The largest double in both directions. */
    QSizeF maxSize() const override;

    /*!
        The clock: answers seconds on any steady scale. The default is a
        monotonic clock.
    */
    using Clock = std::function<double()>;
    /*!
        A testing aid: makes \a clock keep the refresh's time; nullptr restores
        the default. A running refresh period starts over on the new clock.
    */
    void setClock(Clock clock);
    /*!
        Does at once what the refresh timer does: refreshes when refreshInterval
        has passed on the clock since the last refresh. Nothing while the mode
        is hidden.
    */
    void poll();

    /*! Starts the refresh and refreshes at once; replaces a running refresh. */
    void modeWillShow() override;
    /*! Stops the refresh. */
    void modeWasHidden() override;

    /*! The window the mode names, or nullptr once it was destroyed. */
    QWidget *focusedWindow() const;
    /*! The text view that shows the notice (the mode's view), or nullptr before it is made. */
    QTextEdit *textView() const;
    /*! The running refresh timer while shown, else nullptr. The mode owns it. */
    QTimer *refreshTimer() const;

    /*! The title last shown ("?" for a window without one); null before the first refresh. */
    QString lastWindowTitle() const;

public Q_SLOTS:
    /*! Rebuilds the text if the focused window's title changed since the last time. */
    void update();

protected:
    /*! Makes the read-only text view on the first call; later calls reuse it. */
    void loadView() override;

private:
    std::unique_ptr<KQEmptyInspectorModePrivate> const d;
};

/*!
    The document icon of \a window's top-level window: its window icon when it
    stands for a file (its windowFilePath is set), else a null icon (also for
    a null \a window).
*/
TARNCOMMON_EXPORT QIcon kq_documentIconOfWindow(const QWidget *window);
