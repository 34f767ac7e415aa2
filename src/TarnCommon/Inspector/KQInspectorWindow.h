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
class KQInspectorWindowPrivate;
class QDialog;
class QMessageBox;

/*!
    \file KQInspectorWindow.h
    \brief The application's shared floating inspector window.
*/

/*!
    \brief The application's one floating inspector.

    It follows the focus: whenever one of the application's windows becomes
    active, the application becomes active or the inspector itself comes on
    screen, it asks the responder chain for a focus owner (see
    KQInspectorFocusOwner), asks that owner for its mode, swaps the mode in and
    takes over the mode's title, size limits, resizability and level, keeping
    its own top edge where it was. Without a focus owner it shows a
    KQEmptyInspectorMode naming the focused window.

    Use sharedInspectorWindow(); it is made hidden on first use, comes back
    where the user left it, and lives until the application object is
    destroyed (closing only hides it).

    Driving it from a document window takes a controller and a mode:

    \code
    class DocumentController : public QObject, public KQInspectorFocusOwner
    {
        Q_OBJECT
        Q_INTERFACES(KQInspectorFocusOwner)
    public:
        explicit DocumentController(QWidget *window) : QObject(window)
        { kq_setWindowController(window, this); }
        // Found along the responder chain of the focused window.
        Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
        KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
        {
            if (!m_mode)
                m_mode = new MyMode(this); // a KQInspectorMode subclass
            return m_mode;
        }
    private:
        QPointer<KQInspectorMode> m_mode;
    };

    KQInspectorWindow::sharedInspectorWindow()->orderFont(); // show it
    \endcode

    Modes are owned by whoever made them (usually the focus owner); a mode
    whose parent is the inspector window itself is deleted when it is swapped
    out. Owners and modes may be destroyed at any time: the inspector then
    falls back to the empty mode. An owner whose mode was destroyed is no
    longer the focus owner: it hears that it lost the focus once the
    destruction is over and is then asked for a mode again by a lookup (at
    once, if its window still has the focus).
*/
class TARNCOMMON_EXPORT KQInspectorWindow : public NSWindow_ZL
{
    Q_OBJECT
    /*!
        The object that drives the inspector, implementing KQInspectorFocusOwner,
        or nullptr. Not owned; a destroyed owner is dropped.
    */
    Q_PROPERTY(QObject *focusOwner READ focusOwner WRITE setFocusOwner NOTIFY focusOwnerChanged)
    /*! The mode shown, or nullptr. Not owned, unless its parent is the inspector. */
    Q_PROPERTY(KQInspectorMode *mode READ mode WRITE setMode NOTIFY modeChanged)
    /*! The floating level, taken over from the mode; above 0 keeps the inspector on top. */
    Q_PROPERTY(qint64 level READ level WRITE setLevel NOTIFY levelChanged)

public:
    /*! The settings key of the shared inspector's frame, "QN.sharedInspectorWindow.frame". */
    static const char *const frameAutosaveKey;
    /*! The floating level that modes report unless they say otherwise: 3. */
    static constexpr qint64 defaultWindowLevel() { return 3; }
    /*! The style bits of the window; a mode's resizability toggles Resizable. */
    enum StyleMask {
        Titled = 1, //!< The window has a title bar.
        Closable = 2, //!< The window may be closed (which only hides it).
        Resizable = 8 //!< The user may resize the window.
    };

    /*!
        The application's inspector, made hidden (with its frame restored and
        following the focus) on the first call. It is destroyed (its frame
        saved) as the application object goes, before the widget system is
        torn down; a later call, with a new application object, makes it anew.
    */
    static KQInspectorWindow *sharedInspectorWindow();

    /*!
        A hidden inspector of 300 x 300, centred on the primary screen, with no
        mode and no focus owner, that does not track anything yet:
        sharedInspectorWindow() is what applications use.
    */
    explicit KQInspectorWindow(QWidget *parent = nullptr);
    /*! Saves a waiting frame and takes the mode out (deleting it if the inspector is its parent). */
    ~KQInspectorWindow() override;

    /*! The current focus owner, or nullptr. */
    QObject *focusOwner() const;
    /*!
        Hands the inspector over to \a owner: the old owner hears willLose...,
        the new one willGain... (its answer becomes the mode), then didGain...
        and finally the old owner didLose.... No owner means the empty mode for
        the main window. \a owner must implement KQInspectorFocusOwner (else
        it is reported). Nothing happens for the current owner.
    */
    void setFocusOwner(QObject *owner);

    /*! The mode shown, or nullptr. */
    KQInspectorMode *mode() const;
    /*!
        Swaps \a mode in (nullptr for none): the old mode is taken out, the new
        one installed, its view sized and its values taken over. Nothing happens
        for the current mode. The inspector does not take ownership, but deletes
        a mode whose parent it is once that mode is swapped out.
    */
    void setMode(KQInspectorMode *mode);

    /*!
        Looks the focus owner up now, as when the inspector comes on screen:
        even while hidden, though not while the application is inactive.
    */
    void updateFocusOwner();
    /*!
        Looks it up for a change of \a notificationObject (a window that became
        active, the application): ignored while the inspector is hidden or the
        application inactive, and for file dialogs that open files and for
        inspectors. A null object still counts as such a change (so it is
        ignored while hidden).
    */
    void updateFocusOwner(QObject *notificationObject);

    /*!
        Sizes \a mode's view and the window for the mode, keeping the window's
        top edge: a visible inspector with a resizable mode keeps its size
        within the mode's limits, otherwise it takes the view's size. Answers
        the view's new frame, or a zero rectangle for a null mode or when the
        mode's limits contradict each other (both reported).
    */
    QRectF resizeWindowForNewMode(KQInspectorMode *mode);

    /*!
        The clock: answers seconds on any steady scale. The default is a
        monotonic clock.
    */
    using Clock = std::function<double()>;
    /*!
        A testing aid: makes \a clock keep time; nullptr restores the default.
        The quiet period before the frame is saved runs on it, and so does the
        refresh of the empty modes the inspector makes from now on.
    */
    void setClock(Clock clock);

    /*! Follows window activation, application activation and window closing from now on. */
    void startTrackingResponderChain();
    /*! \a window is closing: when its controller (or the window itself) is the focus owner, the owner is dropped. */
    void windowWillClose(QWidget *window);
    /*! The application goes inactive: lookups stop, and the inspector hides if hidesOnDeactivate(). */
    void appWillResignActive();
    /*!
        The application is active again: an inspector it hid comes back at
        once; once every other receiver has heard of the activation, the
        application counts as active and the focus owner is looked up.
    */
    void appDidBecomeActive();
    /*! Whether the inspector counts the application as active. */
    bool appIsActive() const;

    /*!
        The application's main window: the active window, or the one that was
        active last when a dialog or the inspector has the focus; nullptr when
        there is none.
    */
    QWidget *mainWindow() const;

    /*!
        Shows \a error as a window-modal message box on \a window (the
        inspector by default) and answers it; the box deletes itself when
        closed. A formatting error (code 2048) that carries a recovery
        attempter is shown bare, without the attempter's texts.
    */
    QMessageBox *presentError(const KQError &error, QWidget *window = nullptr);
    /*! The error presentError() shows for \a error. */
    static KQError errorForPresentation(const KQError &error);

    /*!
        Shows or hides the inspector. Showing first looks the focus owner up
        and then tells the mode modeWillShow(); hiding saves a waiting frame and
        tells the mode modeWasHidden().
    */
    void setVisible(bool visible) override;
    /*! Hides the inspector. */
    void orderOut();
    /*! Shows the inspector and brings it to the front. */
    void orderFont();
    /*! Shows the inspector behind the other windows. */
    void orderBack();

    /*! false: the inspector never stands for a document. */
    bool canBecomeMainWindow() const { return false; }

    /*! The floating level; defaultWindowLevel() at first. */
    qint64 level() const;
    /*! Sets the floating \a level; a level above 0 keeps the window on top. */
    void setLevel(qint64 level);
    /*! The StyleMask bits; Titled | Closable | Resizable at first. */
    int styleMask() const;
    /*! The smallest content size the user may resize to, from a resizable mode; (0, 0) otherwise. */
    QSizeF contentMinSize() const;
    /*! The largest content size the user may resize to, from a resizable mode; the largest double otherwise. */
    QSizeF contentMaxSize() const;
    /*! The steps of a user's resize: (1, 1) for a resizable mode, the largest double otherwise. */
    QSizeF resizeIncrements() const;
    /*! Whether the resize grip shows, as the mode is resizable. */
    bool showsResizeIndicator() const;
    /*! Whether the inspector hides while the application is inactive; true by default. */
    bool hidesOnDeactivate() const;
    /*! Sets whether the inspector \a hides while the application is inactive. */
    void setHidesOnDeactivate(bool hides);

    /*! The widget the mode's view goes into; owned by the inspector. */
    QWidget *contentView() const;
    /*! A visible window-modal dialog of the inspector, or nullptr. */
    QDialog *attachedSheet() const;

    /*! How long the frame must be left alone before it is saved, in seconds. */
    static constexpr double frameSaveQuietPeriod = 0.5;
    /*!
        Restores the frame from the settings key \a name now and saves it under
        that key, as QWidget::saveGeometry() records it, once it has been left
        alone for frameSaveQuietPeriod (so a drag is saved once, where it ends),
        when the window hides, when the application quits and when the inspector
        is destroyed. An empty name keeps nothing. A saved value that is not a
        frame, and a settings file that cannot be written, are reported; the
        window then keeps the frame it has.
    */
    void setFrameAutosaveName(const QString &name);
    /*! The settings key of the frame; empty when it is not kept. */
    QString frameAutosaveName() const;
    /*! Saves the frame under frameAutosaveName() at once. */
    void saveFrameNow();
    /*! Whether a change of the frame waits to be saved. */
    bool hasUnsavedFrame() const;
    /*!
        Does at once what the frame's save timer does: saves a waiting frame
        once the quiet period has passed on the clock.
    */
    void poll();

Q_SIGNALS:
    /*! The focus owner changed (also when a destroyed owner or mode made it drop). */
    void focusOwnerChanged();
    /*! Another mode is shown. */
    void modeChanged();
    /*! The floating level changed. */
    void levelChanged();

protected:
    /*!
        Installs the current mode: tells it modeWillShow() when the inspector
        is visible, sizes the window for it, puts its view in contentView(),
        sends its optional \c modeDidShow, and takes over its values and their
        changes. An override calls the base implementation.
    */
    virtual void setUpCurrentMode();
    /*!
        Takes the current mode out: sends its optional \c modeWillHide, stops
        following its values, rejects an attached sheet, takes its view out,
        tells it modeWasHidden() when visible and forgets it (deleting it later
        if the inspector is its parent). An override calls the base
        implementation.
    */
    virtual void tearDownCurrentMode();

    /*! Follows the application's windows closing. */
    bool eventFilter(QObject *watched, QEvent *event) override;
    /*! Schedules the frame's save. */
    void moveEvent(QMoveEvent *event) override;
    /*! Lays the content out and schedules the frame's save. */
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class KQInspectorWindowPrivate;
    std::unique_ptr<KQInspectorWindowPrivate> const d;
};
