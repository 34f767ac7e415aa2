#include <TarnCommon/KQInspectorWindow.h>

#include "KQInspectorLayout_p.h"

#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQGeometry.h>
#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QTimer>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSizeGrip>

#include <algorithm>
#include <cmath>
#include <limits>

const char *const KQInspectorWindow::frameAutosaveKey = "QN.sharedInspectorWindow.frame";

namespace {

QPointer<KQInspectorWindow> g_sharedInspectorWindow;

// Parentless windows outlive ~QApplication, which only takes their native
// windows: the shared one goes in a post routine, which runs first thing in
// ~QApplication, while widgets can still be destroyed (and its frame saved).
void destroySharedInspectorWindow()
{
    delete g_sharedInspectorWindow.data();
}

// The content view: the mode's view fills it as the user resizes the window.
class ContentView : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QWidget::resizeEvent(event);
        const QList<QWidget *> views = findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        for (QWidget *view : views)
            view->resize(size());
    }
};

KQInspectorFocusOwner *asFocusOwner(QObject *object)
{
    return qobject_cast<KQInspectorFocusOwner *>(object);
}

// Sends an optional hook that a mode declares by name only when it wants it.
void performIfResponds(QObject *object, QByteArrayView name)
{
    const int index = kq_indexOfMethodNamed(object, name);
    if (index < 0)
        return;
    const QMetaMethod method = object->metaObject()->method(index);
    if (method.parameterCount() != 0) {
        ZLLogWarning("%s::%s must take no arguments to be called by the inspector",
                     object->metaObject()->className(), method.name().constData());
        return;
    }
    method.invoke(object, Qt::DirectConnection);
}

// Widgets live on whole pixels; sizes beyond them mean "no limit".
int toPixels(double value)
{
    if (!(value > 0))
        return 0;
    if (value >= QWIDGETSIZE_MAX)
        return QWIDGETSIZE_MAX;
    return static_cast<int>(std::lround(value));
}

QSize toPixels(const QSizeF &size)
{
    return QSize(toPixels(size.width()), toPixels(size.height()));
}

bool canBecomeMain(const QWidget *window)
{
    return window && window->isWindow() && !qobject_cast<const KQInspectorWindow *>(window)
           && !qobject_cast<const QDialog *>(window) && !(window->windowType() == Qt::Popup)
           && !(window->windowType() == Qt::ToolTip);
}

} // namespace

class KQInspectorWindowPrivate
{
public:
    explicit KQInspectorWindowPrivate(KQInspectorWindow *q)
        : q(q)
    {
    }

    void observe(KQInspectorMode *observed);
    void stopObserving();
    void applyIsResizable();
    void applyMinSize();
    void applyMaxSize();
    void applyTitle();
    void applyWindowLevel();
    void applySizeConstraints();
    void setContentGeometry(const QRect &content);
    QMargins frameMargins() const;
    void modeDestroyed();
    void focusOwnerDestroyed();
    QList<QObject *> lookupChain() const;
    void restoreFrame();
    void scheduleFrameSave();
    void armFrameSaveTimer(double now);
    KQEmptyInspectorMode *makeEmptyMode();
    void focusWindowChanged(QWindow *window);

    KQInspectorWindow *q;
    QWidget *contentView = nullptr;
    QSizeGrip *resizeIndicator = nullptr;
    QTimer *frameSaveTimer = nullptr;
    KQInspectorWindow::Clock clock = &Secs;
    double lastFrameChange = 0;
    bool frameSavePending = false;
    QList<QMetaObject::Connection> observations;
    QMetaObject::Connection modeGuard;
    QMetaObject::Connection ownerGuard;
    QPointer<QWidget> lastMainWindow;
    QPointer<QWidget> closingWindow;
    bool tracking = false;
    bool silentVisibility = false;
    bool hiddenByDeactivation = false;
    bool restoringFrame = false;
    Qt::ApplicationState lastApplicationState = Qt::ApplicationInactive;

    QPointer<KQInspectorMode> mode;
    QPointer<QObject> focusOwner;
    bool appIsActive = false;

    qint64 level = KQInspectorWindow::defaultWindowLevel();
    int styleMask = KQInspectorWindow::Titled | KQInspectorWindow::Closable | KQInspectorWindow::Resizable;
    QSizeF contentMinSize{0, 0};
    QSizeF contentMaxSize{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    QSizeF resizeIncrements{1, 1};
    bool showsResizeIndicator = true;
    bool hidesOnDeactivate = true;
    QString frameAutosaveName;
};

KQInspectorWindow *KQInspectorWindow::sharedInspectorWindow()
{
    if (!g_sharedInspectorWindow) {
        // Lives as long as the application object; the routine is added
        // once per application, however often the window is made again.
        static QPointer<QCoreApplication> s_routineAddedFor;
        if (QCoreApplication *application = QCoreApplication::instance(); application != s_routineAddedFor) {
            s_routineAddedFor = application;
            qAddPostRoutine(&destroySharedInspectorWindow);
        }
        g_sharedInspectorWindow = new KQInspectorWindow;
        g_sharedInspectorWindow->setFrameAutosaveName(QString::fromLatin1(frameAutosaveKey));
        g_sharedInspectorWindow->startTrackingResponderChain();
    }
    return g_sharedInspectorWindow.data();
}

KQInspectorWindow::KQInspectorWindow(QWidget *parent)
    : NSWindow_ZL(parent, Qt::Tool | Qt::WindowStaysOnTopHint)
    , d(std::make_unique<KQInspectorWindowPrivate>(this))
{
    setObjectName(QStringLiteral("KQInspectorWindow"));
    // Coming on screen must not take the focus from the document it inspects.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setWindowTitle(QCoreApplication::translate("TarnCommon", "Inspector"));
    d->contentView = new ContentView(this);
    d->resizeIndicator = new QSizeGrip(this);
    d->resizeIndicator->resize(d->resizeIndicator->sizeHint());
    d->frameSaveTimer = new QTimer(this);
    d->frameSaveTimer->setSingleShot(true);
    connect(d->frameSaveTimer, &QTimer::timeout, this, &KQInspectorWindow::poll);
    if (QCoreApplication *application = QCoreApplication::instance())
        connect(application, &QCoreApplication::aboutToQuit, this, &KQInspectorWindow::saveFrameNow);

    // The main window is remembered from the start, so that it is known even
    // while a dialog or the inspector itself has the focus.
    if (auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance())) {
        connect(application, &QGuiApplication::focusWindowChanged, this,
                [this](QWindow *window) { d->focusWindowChanged(window); });
    }
    if (canBecomeMain(QApplication::activeWindow()))
        d->lastMainWindow = QApplication::activeWindow();
    d->appIsActive = QGuiApplication::applicationState() == Qt::ApplicationActive;
    d->lastApplicationState = QGuiApplication::applicationState();

    // 300 x 300 of content, centred on the primary screen.
    const QScreen *screen = QGuiApplication::primaryScreen();
    QRect content(0, 0, 300, 300);
    if (screen)
        content.moveCenter(screen->availableGeometry().center());
    d->setContentGeometry(content);
}

KQInspectorWindow::~KQInspectorWindow()
{
    if (d->frameSavePending)
        saveFrameNow();
    // Nothing the application says may reach this window once it is going.
    if (QCoreApplication *application = QCoreApplication::instance()) {
        application->removeEventFilter(this);
        disconnect(application, nullptr, this, nullptr);
    }
    disconnect(d->ownerGuard);
    tearDownCurrentMode();
    d->silentVisibility = true;
}

QObject *KQInspectorWindow::focusOwner() const
{
    return d->focusOwner.data();
}

void KQInspectorWindow::setFocusOwner(QObject *owner)
{
    if (owner == d->focusOwner.data())
        return;
    KQAssertText("owner implements KQInspectorFocusOwner", !owner || asFocusOwner(owner));

    const QPointer<QObject> oldOwner = d->focusOwner;
    const QPointer<QObject> newOwner = owner;
    if (KQInspectorFocusOwner *old = asFocusOwner(oldOwner.data()))
        old->willLoseFocusOfInspector(this);
    KQInspectorMode *newMode = nullptr;
    if (KQInspectorFocusOwner *gaining = asFocusOwner(newOwner.data()))
        newMode = gaining->willGainFocusOfInspector(this);
    setMode(newMode);

    disconnect(d->ownerGuard);
    d->focusOwner = newOwner;
    if (newOwner)
        d->ownerGuard = connect(newOwner.data(), &QObject::destroyed, this, [this] { d->focusOwnerDestroyed(); });

    if (KQInspectorFocusOwner *gained = asFocusOwner(d->focusOwner.data()))
        gained->didGainFocusOfInspector(this);
    if (KQInspectorFocusOwner *old = asFocusOwner(oldOwner.data()))
        old->didLoseFocusOfInspector(this);
    if (!d->focusOwner)
        setMode(d->makeEmptyMode());
    Q_EMIT focusOwnerChanged();
}

void KQInspectorWindowPrivate::focusOwnerDestroyed()
{
    // The owner is gone: nobody to tell, and its mode may follow it at once.
    q->setMode(nullptr);
    q->setMode(makeEmptyMode());
    Q_EMIT q->focusOwnerChanged();
}

KQEmptyInspectorMode *KQInspectorWindowPrivate::makeEmptyMode()
{
    auto *mode = new KQEmptyInspectorMode(q->mainWindow(), q);
    mode->setClock(clock);
    return mode;
}

KQInspectorMode *KQInspectorWindow::mode() const
{
    return d->mode.data();
}

void KQInspectorWindow::setMode(KQInspectorMode *mode)
{
    if (mode == d->mode.data())
        return;
    tearDownCurrentMode();
    d->mode = mode;
    if (mode)
        d->modeGuard = connect(mode, &QObject::destroyed, this, [this] { d->modeDestroyed(); });
    setUpCurrentMode();
    d->contentView->update();
    Q_EMIT modeChanged();
}

void KQInspectorWindowPrivate::modeDestroyed()
{
    // Deleted while shown: its view went with it. Forget it and show the
    // empty mode rather than a blank window.
    stopObserving();
    QObject::disconnect(modeGuard);
    mode = nullptr;
    // The owner that gave the mode no longer stands behind what is shown:
    // forget it too, so that a lookup asks it again instead of finding the
    // same owner and keeping the empty mode for good.
    const QPointer<QObject> owner = focusOwner;
    if (owner) {
        QObject::disconnect(ownerGuard);
        focusOwner = nullptr;
    }
    q->setMode(makeEmptyMode());
    if (!owner)
        return;
    Q_EMIT q->focusOwnerChanged();
    // The owner may be the one destroying the mode, even on its own way out:
    // it hears of its loss only once that is over, and is then looked up
    // again, so that an owner whose window still has the focus shows its
    // next mode without waiting for a change of focus.
    QMetaObject::invokeMethod(
        q,
        [this, owner] {
            KQInspectorFocusOwner *lost = asFocusOwner(owner.data());
            if (!lost || focusOwner == owner)
                return;
            lost->willLoseFocusOfInspector(q);
            if (owner)
                lost->didLoseFocusOfInspector(q);
            q->updateFocusOwner();
        },
        Qt::QueuedConnection);
}

void KQInspectorWindow::setUpCurrentMode()
{
    KQInspectorMode *mode = d->mode.data();
    if (!mode)
        return;
    const QPointer<KQInspectorMode> guard = mode;
    if (isVisible())
        mode->modeWillShow();
    if (!guard)
        return;
    const QRectF rect = resizeWindowForNewMode(mode);
    if (QWidget *view = mode->view()) {
        view->setParent(d->contentView);
        if (rect != QRectF(0, 0, 0, 0))
            view->setGeometry(rect.toRect());
        view->show();
    }
    if (isVisible())
        performIfResponds(mode, "modeDidShow");
    if (guard)
        d->observe(mode);
}

void KQInspectorWindow::tearDownCurrentMode()
{
    KQInspectorMode *mode = d->mode.data();
    if (!mode)
        return;
    const QPointer<KQInspectorMode> guard = mode;
    if (isVisible())
        performIfResponds(mode, "modeWillHide");
    d->stopObserving();
    if (QDialog *sheet = attachedSheet())
        sheet->reject();
    const QList<QWidget *> views = d->contentView->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *view : views)
        view->setParent(nullptr);
    if (guard && isVisible())
        mode->modeWasHidden();
    disconnect(d->modeGuard);
    d->mode = nullptr;
    if (guard && guard->parent() == this)
        guard->deleteLater();
}

void KQInspectorWindowPrivate::observe(KQInspectorMode *observed)
{
    // Connected and applied in this order, so each value takes effect at once.
    observations = {
        QObject::connect(observed, &KQInspectorMode::isResizableChanged, q, [this] { applyIsResizable(); }),
        QObject::connect(observed, &KQInspectorMode::minSizeChanged, q, [this] { applyMinSize(); }),
        QObject::connect(observed, &KQInspectorMode::maxSizeChanged, q, [this] { applyMaxSize(); }),
        QObject::connect(observed, &KQInspectorMode::inspectorTitleChanged, q, [this] { applyTitle(); }),
        QObject::connect(observed, &KQInspectorMode::windowLevelChanged, q, [this] { applyWindowLevel(); }),
    };
    applyIsResizable();
    applyMinSize();
    applyMaxSize();
    applyTitle();
    applyWindowLevel();
}

void KQInspectorWindowPrivate::stopObserving()
{
    for (const QMetaObject::Connection &connection : std::as_const(observations))
        QObject::disconnect(connection);
    observations.clear();
}

void KQInspectorWindowPrivate::applyIsResizable()
{
    if (!mode)
        return;
    const bool resizable = mode->isResizable();
    showsResizeIndicator = resizable;
    resizeIndicator->setVisible(resizable);
    if (resizable) {
        contentMinSize = mode->minSize();
        contentMaxSize = mode->maxSize();
        resizeIncrements = QSizeF(1, 1);
    } else {
        const double largest = std::numeric_limits<double>::max();
        contentMinSize = QSizeF(0, 0);
        contentMaxSize = QSizeF(largest, largest);
        resizeIncrements = QSizeF(largest, largest);
    }
    styleMask = (styleMask & ~KQInspectorWindow::Resizable) | (resizable ? KQInspectorWindow::Resizable : 0);
    applySizeConstraints();
}

void KQInspectorWindowPrivate::applyMinSize()
{
    if (!mode || !mode->isResizable())
        return;
    contentMinSize = mode->minSize();
    applySizeConstraints();
}

void KQInspectorWindowPrivate::applyMaxSize()
{
    if (!mode || !mode->isResizable())
        return;
    contentMaxSize = mode->maxSize();
    applySizeConstraints();
}

void KQInspectorWindowPrivate::applyTitle()
{
    if (mode)
        q->setWindowTitle(mode->inspectorTitle());
}

void KQInspectorWindowPrivate::applyWindowLevel()
{
    if (mode)
        q->setLevel(mode->windowLevel());
}

// What the user may do to the window, in Qt's terms: a resizable style lets
// the window range between the content limits (when they make sense); without
// it the window is fixed at its present size.
void KQInspectorWindowPrivate::applySizeConstraints()
{
    if (!(styleMask & KQInspectorWindow::Resizable)) {
        q->setFixedSize(q->size());
        return;
    }
    const QSize minimum = toPixels(contentMinSize);
    const QSize maximum = toPixels(contentMaxSize);
    if (minimum.width() > maximum.width() || minimum.height() > maximum.height()) {
        q->setMinimumSize(0, 0);
        q->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        return;
    }
    // The limits bind the user only: a window already outside them keeps its
    // size until the user resizes it.
    q->setMinimumSize(minimum.boundedTo(q->size()));
    q->setMaximumSize(maximum.expandedTo(q->size()));
    q->setSizeIncrement(toPixels(resizeIncrements).boundedTo(QSize(1, 1)));
}

void KQInspectorWindowPrivate::setContentGeometry(const QRect &content)
{
    // Programmatic frames are not bound by what the user may do.
    q->setMinimumSize(0, 0);
    q->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    q->setGeometry(content);
    applySizeConstraints();
}

QMargins KQInspectorWindowPrivate::frameMargins() const
{
    const QRect frame = q->frameGeometry();
    const QRect content = q->geometry();
    return QMargins(content.left() - frame.left(), content.top() - frame.top(),
                    frame.right() - content.right(), frame.bottom() - content.bottom());
}

QRectF KQInspectorWindow::resizeWindowForNewMode(KQInspectorMode *mode)
{
    KQAssert(mode != nullptr, QRectF(0, 0, 0, 0));
    QWidget *view = mode->view();
    KQAssert(view != nullptr, QRectF(0, 0, 0, 0));

    QSizeF size;
    if (isVisible() && mode->isResizable()) {
        const QSizeF minSize = mode->minSize();
        const QSizeF maxSize = mode->maxSize();
        KQAssertText("minSize.width <= maxSize.width", minSize.width() <= maxSize.width(), QRectF(0, 0, 0, 0));
        KQAssertText("minSize.height <= maxSize.height", minSize.height() <= maxSize.height(), QRectF(0, 0, 0, 0));
        KQAssertText("minSize.width > 0 && minSize.height > 0", minSize.width() > 0 && minSize.height() > 0,
                     QRectF(0, 0, 0, 0));
        KQAssertText("maxSize.width > 0 && maxSize.height > 0", maxSize.width() > 0 && maxSize.height() > 0,
                     QRectF(0, 0, 0, 0));
        size = KQInspectorLayout::clampedContentSize(QSizeF(geometry().size()), minSize, maxSize);
    } else {
        size = QSizeF(view->size());
        // A view without a size of its own yet (the empty mode's text view
        // starts at zero) would shrink the window to nothing: it keeps the
        // window's size instead, within the limits of a resizable mode.
        if (size.isEmpty()) {
            size = QSizeF(geometry().size());
            const QSizeF minSize = mode->minSize();
            const QSizeF maxSize = mode->maxSize();
            if (mode->isResizable() && minSize.width() <= maxSize.width() && minSize.height() <= maxSize.height())
                size = KQInspectorLayout::clampedContentSize(size, minSize, maxSize);
        }
    }
    const QRect viewFrame(QPoint(0, 0), toPixels(size));
    if (view->geometry() != viewFrame)
        view->setGeometry(viewFrame);

    if (QSizeF(geometry().size()) != QSizeF(viewFrame.size())) {
        const QRectF primary = KQScreenSpace::primaryScreenGeometry();
        const QRectF content = KQScreenSpace::fromGlobal(QRectF(geometry()), primary);
        const QRectF newContent = KQScreenSpace::toGlobal(
            KQInspectorLayout::contentKeepingTopEdge(content, QSizeF(viewFrame.size())), primary);
        const QMargins margins = d->frameMargins();
        const QRectF frame = ConstrainFrameRectToScreen_ZL(screen(), true, newContent.marginsAdded(margins));
        d->setContentGeometry(frame.marginsRemoved(margins).toRect());
        update();
    }
    return QRectF(QPointF(0, 0), QSizeF(geometry().size()));
}

void KQInspectorWindow::updateFocusOwner()
{
    if (!d->appIsActive)
        return;
    setFocusOwner(kq_inspectorFocusOwnerAlong(d->lookupChain()));
}

void KQInspectorWindow::updateFocusOwner(QObject *notificationObject)
{
    if (!isVisible() || !d->appIsActive)
        return;
    // A dialog choosing a file to open must not take the inspector away from
    // the document behind it; a save dialog is a window like any other. The
    // inspector is never its own subject.
    const auto *fileDialog = qobject_cast<QFileDialog *>(notificationObject);
    if ((fileDialog && fileDialog->acceptMode() == QFileDialog::AcceptOpen)
        || qobject_cast<KQInspectorWindow *>(notificationObject))
        return;
    setFocusOwner(kq_inspectorFocusOwnerAlong(d->lookupChain()));
}

// The active window's chain, then the main window's when another window (a
// dialog, the inspector) has the focus, then the application.
QList<QObject *> KQInspectorWindowPrivate::lookupChain() const
{
    QList<QObject *> chain;
    const auto append = [&chain](QWidget *start) {
        const QList<QObject *> part = kq_responderChain(start);
        for (QObject *object : part) {
            if (object != QCoreApplication::instance() && !chain.contains(object))
                chain.append(object);
        }
    };
    QWidget *key = QApplication::activeWindow();
    if (key) {
        QWidget *focus = QApplication::focusWidget();
        append(focus && focus->window() == key ? focus : key);
    }
    QWidget *main = q->mainWindow();
    if (main && main != key)
        append(main->focusWidget() ? main->focusWidget() : main);
    chain.append(QCoreApplication::instance());
    return chain;
}

QWidget *KQInspectorWindow::mainWindow() const
{
    QWidget *active = QApplication::activeWindow();
    if (canBecomeMain(active))
        return active;
    QWidget *last = d->lastMainWindow.data();
    return last && last->isVisible() ? last : nullptr;
}

void KQInspectorWindow::startTrackingResponderChain()
{
    if (d->tracking)
        return;
    d->tracking = true;
    auto *application = qobject_cast<QGuiApplication *>(QCoreApplication::instance());
    KQAssert(application != nullptr);
    connect(application, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        const bool wasActive = d->lastApplicationState == Qt::ApplicationActive;
        d->lastApplicationState = state;
        if (wasActive && state != Qt::ApplicationActive)
            appWillResignActive();
        else if (!wasActive && state == Qt::ApplicationActive)
            appDidBecomeActive();
    });
    application->installEventFilter(this);
}

void KQInspectorWindowPrivate::focusWindowChanged(QWindow *window)
{
    if (!window)
        return;
    QObject *object = window;
    const QList<QWidget *> windows = QApplication::topLevelWidgets();
    for (QWidget *widget : windows) {
        if (widget->windowHandle() == window) {
            object = widget;
            if (canBecomeMain(widget))
                lastMainWindow = widget;
            break;
        }
    }
    if (tracking)
        q->updateFocusOwner(object);
}

bool KQInspectorWindow::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if ((type == QEvent::Close || type == QEvent::Hide) && watched->isWidgetType() && watched != this
        && static_cast<QWidget *>(watched)->isWindow()) {
        auto *window = static_cast<QWidget *>(watched);
        if (type == QEvent::Close) {
            // The window may still refuse to close (an unsaved document that
            // asks first). An accepted close hides it at once, in this turn of
            // the event loop; a refused one leaves nothing to act on.
            d->closingWindow = window;
            QMetaObject::invokeMethod(this, [this] { d->closingWindow = nullptr; }, Qt::QueuedConnection);
        } else if (d->closingWindow == window) {
            d->closingWindow = nullptr;
            windowWillClose(window);
        }
    }
    return NSWindow_ZL::eventFilter(watched, event);
}

void KQInspectorWindow::windowWillClose(QWidget *window)
{
    if (!window || !d->focusOwner)
        return;
    // A window without a controller is its own controller.
    QObject *controller = kq_windowController(window);
    if (!controller)
        controller = window;
    if (controller == d->focusOwner.data())
        setFocusOwner(nullptr);
}

void KQInspectorWindow::appWillResignActive()
{
    d->appIsActive = false;
    if (d->hidesOnDeactivate && isVisible()) {
        d->hiddenByDeactivation = true;
        setVisible(false);
    }
}

void KQInspectorWindow::appDidBecomeActive()
{
    if (d->hiddenByDeactivation) {
        d->hiddenByDeactivation = false;
        setVisible(true);
    }
    // Once every other observer has heard of the activation, so the active
    // and main windows are settled before the lookup.
    QMetaObject::invokeMethod(
        this,
        [this] {
            d->appIsActive = true;
            updateFocusOwner(QCoreApplication::instance());
        },
        Qt::QueuedConnection);
}

KQError KQInspectorWindow::errorForPresentation(const KQError &error)
{
    // Formatting errors come with a recovery attempter whose texts make no
    // sense to the user here: show the bare error instead.
    if (error.code() == 2048 && error.userInfo().contains(QString::fromLatin1(KQRecoveryAttempterErrorKey)))
        return KQError(error.domain(), error.code());
    return error;
}

QMessageBox *KQInspectorWindow::presentError(const KQError &error, QWidget *window)
{
    const KQError shown = errorForPresentation(error);
    auto *box = new QMessageBox(window ? window : this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setWindowModality(Qt::WindowModal);
    box->setIcon(QMessageBox::Warning);
    box->setText(shown.localizedDescription());
    box->setInformativeText(shown.localizedRecoverySuggestion());
    box->open();
    return box;
}

void KQInspectorWindow::setVisible(bool visible)
{
    if (d->silentVisibility) {
        NSWindow_ZL::setVisible(visible);
        return;
    }
    const bool wasVisible = isVisible();
    if (visible && !wasVisible) {
        updateFocusOwner();
        if (d->mode)
            d->mode->modeWillShow();
    }
    NSWindow_ZL::setVisible(visible);
    // Where the user left the window is kept before anything else can happen.
    if (!visible && d->frameSavePending)
        saveFrameNow();
    if (!visible && wasVisible && d->mode)
        d->mode->modeWasHidden();
}

void KQInspectorWindow::orderOut()
{
    setVisible(false);
}

void KQInspectorWindow::orderFont()
{
    setVisible(true);
    raise();
}

void KQInspectorWindow::orderBack()
{
    setVisible(true);
    lower();
}

void KQInspectorWindow::setLevel(qint64 level)
{
    if (level == d->level)
        return;
    d->level = level;
    Q_EMIT levelChanged();
    const bool onTop = level > 0;
    if (windowFlags().testFlag(Qt::WindowStaysOnTopHint) == onTop)
        return;
    // Changing a window's flags hides it; bring it straight back, without
    // telling the mode of a showing that never happened.
    const bool wasVisible = isVisible();
    d->silentVisibility = true;
    setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (wasVisible)
        show();
    d->silentVisibility = false;
}

bool KQInspectorWindow::appIsActive() const
{
    return d->appIsActive;
}

qint64 KQInspectorWindow::level() const
{
    return d->level;
}

int KQInspectorWindow::styleMask() const
{
    return d->styleMask;
}

QSizeF KQInspectorWindow::contentMinSize() const
{
    return d->contentMinSize;
}

QSizeF KQInspectorWindow::contentMaxSize() const
{
    return d->contentMaxSize;
}

QSizeF KQInspectorWindow::resizeIncrements() const
{
    return d->resizeIncrements;
}

bool KQInspectorWindow::showsResizeIndicator() const
{
    return d->showsResizeIndicator;
}

bool KQInspectorWindow::hidesOnDeactivate() const
{
    return d->hidesOnDeactivate;
}

void KQInspectorWindow::setHidesOnDeactivate(bool hides)
{
    d->hidesOnDeactivate = hides;
}

QString KQInspectorWindow::frameAutosaveName() const
{
    return d->frameAutosaveName;
}

QWidget *KQInspectorWindow::contentView() const
{
    return d->contentView;
}

QDialog *KQInspectorWindow::attachedSheet() const
{
    const QList<QDialog *> dialogs = findChildren<QDialog *>(Qt::FindDirectChildrenOnly);
    for (QDialog *dialog : dialogs) {
        if (dialog->isVisible() && dialog->windowModality() == Qt::WindowModal)
            return dialog;
    }
    return nullptr;
}

void KQInspectorWindow::setFrameAutosaveName(const QString &name)
{
    d->frameAutosaveName = name;
    d->restoreFrame();
}

void KQInspectorWindowPrivate::restoreFrame()
{
    if (frameAutosaveName.isEmpty())
        return;
    const QByteArray saved = KQSettings::userDefaults()->value(frameAutosaveName).toByteArray();
    if (saved.isEmpty())
        return;
    // Qt's own record of a window's geometry keeps the content apart from the
    // window manager's frame, which is not known before the window is first
    // shown: restoring a bare frame rectangle as content would grow the
    // window by its decoration at every launch. Qt also brings back a frame
    // saved on a screen that has since gone onto one that is there.
    restoringFrame = true;
    q->setMinimumSize(0, 0);
    q->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (!q->restoreGeometry(saved))
        ZLLogWarning("The saved frame under \"%s\" is damaged; the window keeps its frame",
                     qUtf8Printable(frameAutosaveName));
    applySizeConstraints();
    restoringFrame = false;
}

// Each move or resize of a drag only notes the time; the timer, set for the
// quiet period, then checks whether the frame has been left alone long enough.
void KQInspectorWindowPrivate::scheduleFrameSave()
{
    if (restoringFrame || frameAutosaveName.isEmpty())
        return;
    lastFrameChange = clock();
    frameSavePending = true;
    if (!frameSaveTimer->isActive())
        armFrameSaveTimer(lastFrameChange);
}

void KQInspectorWindowPrivate::armFrameSaveTimer(double now)
{
    const double quietPeriod = KQInspectorWindow::frameSaveQuietPeriod;
    const double remaining = std::clamp(lastFrameChange + quietPeriod - now, 0.0, quietPeriod);
    frameSaveTimer->start(int(std::ceil(remaining * 1000)));
}

bool KQInspectorWindow::hasUnsavedFrame() const
{
    return d->frameSavePending;
}

void KQInspectorWindow::poll()
{
    if (!d->frameSavePending)
        return;
    const double now = d->clock();
    if (now - d->lastFrameChange >= frameSaveQuietPeriod)
        saveFrameNow();
    else
        d->armFrameSaveTimer(now);
}

void KQInspectorWindow::setClock(Clock clock)
{
    d->clock = clock ? std::move(clock) : Clock(&Secs);
    // Readings of two clocks cannot be compared: a waiting save starts over.
    if (d->frameSavePending) {
        d->lastFrameChange = d->clock();
        d->armFrameSaveTimer(d->lastFrameChange);
    }
}

void KQInspectorWindow::saveFrameNow()
{
    d->frameSaveTimer->stop();
    d->frameSavePending = false;
    if (d->frameAutosaveName.isEmpty())
        return;
    const std::unique_ptr<QSettings> settings = KQSettings::userDefaults();
    settings->setValue(d->frameAutosaveName, saveGeometry());
    settings->sync();
    if (settings->status() != QSettings::NoError)
        ZLLogWarning("The frame under \"%s\" could not be saved to %s", qUtf8Printable(d->frameAutosaveName),
                     qUtf8Printable(settings->fileName()));
}

void KQInspectorWindow::moveEvent(QMoveEvent *event)
{
    NSWindow_ZL::moveEvent(event);
    d->scheduleFrameSave();
}

void KQInspectorWindow::resizeEvent(QResizeEvent *event)
{
    NSWindow_ZL::resizeEvent(event);
    d->contentView->setGeometry(rect());
    d->resizeIndicator->move(rect().bottomRight() - d->resizeIndicator->rect().bottomRight());
    d->resizeIndicator->raise();
    d->scheduleFrameSave();
}
