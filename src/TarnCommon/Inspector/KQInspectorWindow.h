#pragma once

#include <TarnCommon/KQError.h>
#include <TarnCommon/NSWindow_ZL.h>
#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QPointer>
#include <QtCore/QSizeF>

#include <functional>
#include <limits>
#include <memory>

class KQInspectorMode;
class QDialog;
class QMessageBox;

// The application's one floating inspector. It follows the focus: whenever
// one of the application's windows becomes active, the application becomes
// active or the inspector itself comes on screen, it asks the responder chain
// for a focus owner (see KQInspectorFocusOwner), asks that owner for its mode,
// swaps the mode in and takes over the mode's title, size limits,
// resizability and level, keeping its own top edge where it was. Without a
// focus owner it shows a KQEmptyInspectorMode naming the focused window.
//
// Use sharedInspectorWindow(); it is made hidden on first use, comes back
// where the user left it, and is never destroyed (closing only hides it).
//
// Driving it from a document window takes a controller and a mode:
//
//     class DocumentController : public QObject, public KQInspectorFocusOwner
//     {
//         Q_OBJECT
//         Q_INTERFACES(KQInspectorFocusOwner)
//     public:
//         explicit DocumentController(QWidget *window) : QObject(window)
//         { kq_setWindowController(window, this); }
//         // Found along the responder chain of the focused window.
//         Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
//         KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
//         {
//             if (!m_mode)
//                 m_mode = new MyMode(this); // a KQInspectorMode subclass
//             return m_mode;
//         }
//     private:
//         QPointer<KQInspectorMode> m_mode;
//     };
//
//     KQInspectorWindow::sharedInspectorWindow()->orderFont(); // show it
//
// Modes are owned by whoever made them (usually the focus owner); a mode
// whose parent is the inspector window itself is deleted when it is swapped
// out. Owners and modes may be destroyed at any time: the inspector then
// falls back to the empty mode. An owner whose mode was destroyed is no longer
// the focus owner: it hears that it lost the focus once the destruction is
// over and is then asked for a mode again by a lookup (at once, if its window
// still has the focus).
class TARNCOMMON_EXPORT KQInspectorWindow : public NSWindow_ZL
{
    Q_OBJECT
    Q_PROPERTY(QObject *focusOwner READ focusOwner WRITE setFocusOwner NOTIFY focusOwnerChanged)
    Q_PROPERTY(KQInspectorMode *mode READ mode WRITE setMode NOTIFY modeChanged)
    Q_PROPERTY(qint64 level READ level WRITE setLevel NOTIFY levelChanged)

public:
    // The settings key of the shared inspector's frame.
    static const char *const frameAutosaveKey; // "QN.sharedInspectorWindow.frame"
    // The floating level that modes report unless they say otherwise.
    static constexpr qint64 defaultWindowLevel() { return 3; }
    // The style bits a mode's resizability toggles, and the starting style.
    enum StyleMask { Titled = 1, Closable = 2, Resizable = 8 };

    static KQInspectorWindow *sharedInspectorWindow();

    // A hidden inspector with no mode and no focus owner that does not track
    // anything yet: sharedInspectorWindow() is what applications use.
    explicit KQInspectorWindow(QWidget *parent = nullptr);
    ~KQInspectorWindow() override;

    QObject *focusOwner() const;
    // Hands the inspector over: the old owner hears willLose..., the new one
    // willGain... (its answer becomes the mode), then didGain... and finally
    // the old owner didLose.... No owner means the empty mode for the main
    // window. owner must implement KQInspectorFocusOwner.
    void setFocusOwner(QObject *owner);

    KQInspectorMode *mode() const;
    void setMode(KQInspectorMode *mode);

    // Looks the focus owner up now, as when the inspector comes on screen:
    // even while hidden, though not while the application is inactive.
    void updateFocusOwner();
    // Looks it up for a change of notificationObject (a window that became
    // active, the application): ignored while the inspector is hidden or the
    // application inactive, and for file dialogs and inspectors. A null
    // object still counts as such a change (so it is ignored while hidden).
    void updateFocusOwner(QObject *notificationObject);

    // Sizes mode's view and the window for the mode, keeping the window's top
    // edge; answers the view's new frame, or a zero rectangle when the mode's
    // limits contradict each other (which is reported).
    QRectF resizeWindowForNewMode(KQInspectorMode *mode);

    // A testing aid: the clock answers seconds on any steady scale (by
    // default a monotonic clock); nullptr restores the default. The quiet
    // period before the frame is saved runs on it, and so does the refresh
    // of the empty modes the inspector makes from now on.
    using Clock = std::function<double()>;
    void setClock(Clock clock);

    // Follows window activation, application activation and window closing.
    void startTrackingResponderChain();
    void windowWillClose(QWidget *window);
    void appWillResignActive();
    void appDidBecomeActive();
    bool appIsActive() const { return m_appIsActive; }

    // The application's main window: the active window, or the one that was
    // active last when a dialog or the inspector has the focus.
    QWidget *mainWindow() const;

    // Shows error as a window-modal message box on window (the inspector by
    // default). A formatting error (code 2048) that carries a recovery
    // attempter is shown bare, without the attempter's texts.
    QMessageBox *presentError(const KQError &error, QWidget *window = nullptr);
    static KQError errorForPresentation(const KQError &error);

    // Showing and hiding tell the mode (modeWillShow / modeWasHidden); showing
    // first looks the focus owner up.
    void setVisible(bool visible) override;
    void orderOut();
    void orderFont(); // brings the inspector to the front
    void orderBack();

    // The inspector never stands for a document.
    bool canBecomeMainWindow() const { return false; }

    // Window state the modes steer, in the platform's terms.
    qint64 level() const { return m_level; }
    void setLevel(qint64 level);
    int styleMask() const { return m_styleMask; }
    QSizeF contentMinSize() const { return m_contentMinSize; }
    QSizeF contentMaxSize() const { return m_contentMaxSize; }
    QSizeF resizeIncrements() const { return m_resizeIncrements; }
    bool showsResizeIndicator() const { return m_showsResizeIndicator; }
    bool hidesOnDeactivate() const { return m_hidesOnDeactivate; }
    void setHidesOnDeactivate(bool hides) { m_hidesOnDeactivate = hides; }

    // The widget the mode's view goes into.
    QWidget *contentView() const;
    // A visible window-modal dialog of the inspector, if any.
    QDialog *attachedSheet() const;

    // The frame is restored from this settings key now and saved under it, as
    // QWidget::saveGeometry() records it, once it has been left alone for
    // frameSaveQuietPeriod (so a drag is saved once, where it ends), when the
    // window hides and when the application quits.
    static constexpr double frameSaveQuietPeriod = 0.5; // seconds
    void setFrameAutosaveName(const QString &name);
    QString frameAutosaveName() const { return m_frameAutosaveName; }
    void saveFrameNow();
    // Whether a change of the frame waits to be saved.
    bool hasUnsavedFrame() const;
    // Does at once what the frame's save timer does: saves a waiting frame
    // once the quiet period has passed on the clock.
    void poll();

Q_SIGNALS:
    void focusOwnerChanged();
    void modeChanged();
    void levelChanged();

protected:
    void setUpCurrentMode();
    void tearDownCurrentMode();

    bool eventFilter(QObject *watched, QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    class Private;
    std::unique_ptr<Private> d;
    friend class Private;

    QPointer<KQInspectorMode> m_mode;
    QPointer<QObject> m_focusOwner;
    bool m_appIsActive = false;

    qint64 m_level = defaultWindowLevel();
    int m_styleMask = Titled | Closable | Resizable;
    QSizeF m_contentMinSize{0, 0};
    QSizeF m_contentMaxSize{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    QSizeF m_resizeIncrements{1, 1};
    bool m_showsResizeIndicator = true;
    bool m_hidesOnDeactivate = true;
    QString m_frameAutosaveName;
};
