#include "KQInspectorLayout_p.h"
#include "MessageCapture.h"

#include <TarnCommon/TarnCommon.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <cstdio>
#include <limits>
#include <memory>

namespace {

// Appends "<name>:<what>" to a shared log, so tests can compare the order of
// hooks and messages across several modes and owners.
struct LogWriter
{
    QString name;
    QStringList *log;
    void operator()(const char *what) const { log->append(name + QLatin1Char(':') + QLatin1String(what)); }
};

// A mode whose every value a test can set, and which logs each hook it hears.
class RecordingMode : public KQInspectorMode
{
    Q_OBJECT

public:
    RecordingMode(const QString &name, QStringList *log, QObject *parent = nullptr) : KQInspectorMode(parent), m_record{name, log} {}

    QString inspectorTitle() const override { return m_title.isNull() ? KQInspectorMode::inspectorTitle() : m_title; }
    bool isResizable() const override { return m_resizable; }
    QSizeF minSize() const override { return m_minSize; }
    QSizeF maxSize() const override { return m_maxSize; }
    qint64 windowLevel() const override { return m_level; }

    void setTitle(const QString &title) { m_title = title; Q_EMIT inspectorTitleChanged(); }
    void setResizable(bool resizable) { m_resizable = resizable; Q_EMIT isResizableChanged(); }
    void setMinSize(const QSizeF &size) { m_minSize = size; Q_EMIT minSizeChanged(); }
    void setMaxSize(const QSizeF &size) { m_maxSize = size; Q_EMIT maxSizeChanged(); }
    void setLevel(qint64 level) { m_level = level; Q_EMIT windowLevelChanged(); }
    void setViewSize(const QSize &size) { m_viewSize = size; }

    void modeWillShow() override { m_record("willShow"); }
    void modeWasHidden() override { m_record("wasHidden"); }
    Q_INVOKABLE void modeDidShow() { m_record("didShow"); }
    Q_INVOKABLE void modeWillHide() { m_record("willHide"); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        view->resize(m_viewSize);
        setView(view);
    }

private:
    LogWriter m_record;
    QString m_title;
    bool m_resizable = true;
    QSizeF m_minSize{50, 50};
    QSizeF m_maxSize{2000, 2000};
    qint64 m_level = 3;
    QSize m_viewSize{220, 160};
};

// A focus owner that logs the messages it receives and hands over its mode.
class RecordingOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    RecordingOwner(const QString &name, QStringList *log, KQInspectorMode *mode) : m_record{name, log}, m_mode(mode) {}

    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        m_record("willGain");
        return m_mode.data();
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { m_record("didGain"); }
    void willLoseFocusOfInspector(KQInspectorWindow *) override { m_record("willLose"); }
    void didLoseFocusOfInspector(KQInspectorWindow *) override { m_record("didLose"); }
    void setMode(KQInspectorMode *mode) { m_mode = mode; }

private:
    LogWriter m_record;
    QPointer<KQInspectorMode> m_mode;
};

// A window controller that drives the inspector itself.
class AnsweringOwner : public RecordingOwner
{
    Q_OBJECT

public:
    using RecordingOwner::RecordingOwner;
    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
};

// A document window that answers the lookup with its owner (which may be none)
// and may refuse to close.
class DocumentWindow : public QWidget
{
    Q_OBJECT

public:
    explicit DocumentWindow(QObject *owner = nullptr) : m_owner(owner) {}
    void setOwner(QObject *owner) { m_owner = owner; }
    Q_INVOKABLE QObject *inspectorFocusOwner() const { return m_owner.data(); }
    bool refuseClose = false;

protected:
    void closeEvent(QCloseEvent *event) override { event->setAccepted(!refuseClose); }

private:
    QPointer<QObject> m_owner;
};

// The usual cast of a test: one mode, logged as "m", handed over by owner "A".
struct OneOwner
{
    QStringList log;
    RecordingMode mode{QStringLiteral("m"), &log};
    RecordingOwner owner{QStringLiteral("A"), &log, &mode};
};

int failures = 0;

void check(bool condition, const char *what)
{
    std::printf("%s: %s\n", condition ? "ok  " : "FAIL", what);
    std::fflush(stdout);
    failures += condition ? 0 : 1;
}

bool waitFor(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, 10000); }

// The shared inspector with real windows under an X server, run twice by
// inspector_e2e.sh. The first run activates two document windows in turn
// (the inspector's title and mode must follow), moves the inspector and
// quits, which saves its frame (also written to the frame file); the second
// run must find the shared inspector with that frame.
int firstRun(QFile &frameFile)
{
    KQSettings::enableTestMode(true);
    QStringList log;
    RecordingMode alphaMode(QStringLiteral("alpha"), &log), betaMode(QStringLiteral("beta"), &log);
    alphaMode.setTitle(QStringLiteral("Alpha Inspector"));
    betaMode.setTitle(QStringLiteral("Beta Inspector"));
    betaMode.setResizable(false);
    betaMode.setViewSize(QSize(240, 130));
    RecordingOwner alphaOwner(QStringLiteral("A"), &log, &alphaMode), betaOwner(QStringLiteral("B"), &log, &betaMode);
    DocumentWindow alpha(&alphaOwner), beta(&betaOwner);
    alpha.setGeometry(40, 60, 320, 200);
    beta.setGeometry(420, 60, 320, 200);
    alpha.show();
    beta.show();
    check(QTest::qWaitForWindowExposed(&alpha) && QTest::qWaitForWindowExposed(&beta), "document windows mapped");
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");
    const auto follows = [&](QWidget *window, KQInspectorMode *mode, const char *title) {
        window->raise();
        window->activateWindow();
        return waitFor([&] {
            return QApplication::activeWindow() == window && inspector->mode() == mode
                   && inspector->windowTitle() == QLatin1String(title);
        });
    };
    for (int round = 0; round < 2; ++round) {
        check(follows(&alpha, &alphaMode, "Alpha Inspector"), "alpha active: inspector shows the alpha mode and title");
        check(inspector->focusOwner() == &alphaOwner, "alpha's owner owns the inspector");
        check(follows(&beta, &betaMode, "Beta Inspector"), "beta active: inspector shows the beta mode and title");
        check(inspector->geometry().size() == QSize(240, 130), "beta's fixed-size mode sizes the inspector");
        check(alphaMode.view()->parentWidget() == nullptr, "alpha's view left the inspector");
    }
    check(log.contains(QStringLiteral("alpha:didShow")) && log.contains(QStringLiteral("alpha:willHide")),
          "optional hooks were sent");

    const QPoint place(333, 222); // where the user leaves it
    inspector->move(place);
    check(waitFor([&] { return inspector->frameGeometry().topLeft() == place; }), "inspector moved by the window system");
    const QRect frame = inspector->frameGeometry();
    check(frameFile.open(QIODevice::WriteOnly), "frame file written");
    frameFile.write(QByteArray::number(frame.x()) + ' ' + QByteArray::number(frame.y()) + ' '
                    + QByteArray::number(frame.width()) + ' ' + QByteArray::number(frame.height()));
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec(); // quitting saves the frame
    return failures;
}

int secondRun(QFile &frameFile)
{
    KQSettings::enableTestMode(false);
    check(frameFile.open(QIODevice::ReadOnly), "the first run left its frame");
    const QList<QByteArray> numbers = frameFile.readAll().split(' ');
    check(numbers.size() == 4, "four numbers");
    if (numbers.size() != 4)
        return failures;
    const QRect expected(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt(), numbers[3].toInt());
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    check(inspector->frameGeometry() == expected, "the restarted inspector has the saved frame");
    inspector->orderFont();
    check(QTest::qWaitForWindowExposed(inspector), "inspector mapped");
    check(waitFor([&] { return inspector->frameGeometry().topLeft() == expected.topLeft(); }), "and is shown there");
    return failures;
}

bool activate(QWidget *window)
{
    window->show();
    window->activateWindow();
    return QTest::qWaitForWindowActive(window);
}

// A visible inspector that believes the application is active.
std::unique_ptr<KQInspectorWindow> makeShownInspector(const QRect &content = QRect(100, 200, 300, 300))
{
    auto inspector = std::make_unique<KQInspectorWindow>();
    inspector->setHidesOnDeactivate(false);
    inspector->appDidBecomeActive();
    QCoreApplication::processEvents();
    inspector->setGeometry(content);
    inspector->show();
    return inspector;
}

KQEmptyInspectorMode *emptyMode(const KQInspectorWindow *inspector)
{
    return qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
}

int installedViews(const KQInspectorWindow *inspector)
{
    return int(inspector->contentView()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly).size());
}

} // namespace

class tst_Inspector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void cleanup()
    {
        for (QWidget *window : QApplication::topLevelWidgets())
            window->hide();
    }

    void handOverSendsHooksInOrder()
    {
        QStringList log;
        RecordingMode modeA("mA", &log), modeB("mB", &log);
        RecordingOwner ownerA("A", &log, &modeA), ownerB("B", &log, &modeB);
        auto inspector = makeShownInspector();
        inspector->setFocusOwner(&ownerA);
        QCOMPARE(log, (QStringList{"A:willGain", "mA:willShow", "mA:didShow", "A:didGain"}));
        log.clear();
        inspector->setFocusOwner(&ownerB);
        QCOMPARE(log, (QStringList{"A:willLose", "B:willGain", "mA:willHide", "mA:wasHidden", "mB:willShow",
                                   "mB:didShow", "B:didGain", "A:didLose"}));
        QCOMPARE(inspector->mode(), &modeB);
        QCOMPARE(modeA.view()->parentWidget(), nullptr);
        QCOMPARE(modeB.view()->parentWidget(), inspector->contentView());

        // The same owner again changes nothing.
        log.clear();
        QSignalSpy modeChanges(inspector.get(), &KQInspectorWindow::modeChanged);
        inspector->setFocusOwner(&ownerB);
        QVERIFY(log.isEmpty() && modeChanges.isEmpty());
        QCOMPARE(modeB.view()->parentWidget(), inspector->contentView());

        // A hidden inspector swaps modes without any showing hooks.
        inspector->hide();
        log.clear();
        inspector->setFocusOwner(&ownerA);
        QCOMPARE(log, (QStringList{"B:willLose", "A:willGain", "A:didGain", "B:didLose"}));

        // An owner without a mode leaves the inspector empty.
        RecordingOwner withoutMode("C", &log, nullptr);
        inspector->setFocusOwner(&withoutMode);
        QCOMPARE(inspector->mode(), nullptr);
        QCOMPARE(installedViews(inspector.get()), 0);
    }

    void noOwnerShowsEmptyModeForMainWindow()
    {
        OneOwner s;
        auto inspector = makeShownInspector();
        DocumentWindow document;
        document.setWindowTitle("Letter");
        QVERIFY(activate(&document));
        inspector->setFocusOwner(&s.owner);
        inspector->setFocusOwner(nullptr);
        KQEmptyInspectorMode *empty = emptyMode(inspector.get());
        QVERIFY(empty);
        QCOMPARE(empty->focusedWindow(), &document);
        QCOMPARE(empty->lastWindowTitle(), QStringLiteral("Letter"));
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Inspector"));
        QVERIFY(s.log.endsWith("A:didLose"));

        // Another window without an owner keeps the empty mode it finds.
        DocumentWindow other;
        QVERIFY(activate(&other));
        inspector->updateFocusOwner(&other);
        QCOMPARE(inspector->mode(), empty);
        QCOMPARE(empty->focusedWindow(), &document);
    }

    void lookupIgnores_data()
    {
        QTest::addColumn<QString>("notice"); // where the lookup starts
        QTest::addColumn<bool>("ownerFound");
        QTest::newRow("a document window") << "document" << true;
        QTest::newRow("inspector hidden") << "document, hidden" << false;
        QTest::newRow("application inactive") << "document, inactive" << false;
        QTest::newRow("open file dialog") << "open dialog" << false;
        QTest::newRow("save file dialog") << "save dialog" << true;
        QTest::newRow("the inspector itself") << "inspector" << false;
        QTest::newRow("no notification while hidden") << "none, hidden" << true;
    }

    void lookupIgnores()
    {
        QFETCH(QString, notice);
        QFETCH(bool, ownerFound);
        OneOwner s;
        DocumentWindow document(&s.owner);
        auto inspector = makeShownInspector();
        QVERIFY(activate(&document));
        QFileDialog dialog;
        dialog.setAcceptMode(notice.startsWith("save") ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        if (notice.endsWith("hidden"))
            inspector->hide();
        if (notice.endsWith("inactive"))
            inspector->appWillResignActive();
        if (notice.startsWith("document"))
            inspector->updateFocusOwner(&document);
        else if (notice.endsWith("dialog"))
            inspector->updateFocusOwner(&dialog);
        else if (notice == "inspector")
            inspector->updateFocusOwner(inspector.get());
        if (notice.startsWith("none") || notice.endsWith("inactive"))
            inspector->updateFocusOwner();
        QCOMPARE(inspector->focusOwner() == &s.owner, ownerFound);
        QCOMPARE(s.log.contains("A:willGain"), ownerFound);
    }

    // While a dialog has the focus, the document behind it still drives the
    // inspector: the main window's chain is asked after the key window's.
    void lookupAsksKeyWindowThenMainWindow()
    {
        OneOwner s;
        DocumentWindow document(&s.owner);
        auto inspector = makeShownInspector();
        inspector->startTrackingResponderChain();
        QVERIFY(activate(&document));
        QVERIFY(activate(inspector.get())); // activating the inspector itself changes nothing
        QCOMPARE(inspector->focusOwner(), &s.owner);
        QDialog dialog;
        QVERIFY(activate(&dialog));
        QCOMPARE(inspector->mainWindow(), &document);
        inspector->updateFocusOwner(&dialog);
        QCOMPARE(inspector->focusOwner(), &s.owner);
        document.hide(); // a main window that left the screen is no main window
        QCOMPARE(inspector->mainWindow(), nullptr);

        // A controller attached to a plain window answers for it.
        RecordingMode otherMode("n", &s.log);
        AnsweringOwner controller("C", &s.log, &otherMode);
        QWidget plain;
        kq_setWindowController(&plain, &controller);
        QVERIFY(activate(&plain));
        QCOMPARE(inspector->focusOwner(), &controller);
        QCOMPARE(inspector->mode(), &otherMode);

        // An answer that is no focus owner is refused and counts as none.
        QObject stranger;
        DocumentWindow confused(&stranger);
        MessageCapture output;
        QVERIFY(activate(&confused));
        QVERIFY(output.text().contains("does not implement KQInspectorFocusOwner"));
        QCOMPARE(inspector->focusOwner(), nullptr);
    }

    // The mode's limits are 200x100 to 400x300 and its view is 250x180.
    void modeSizesWindow_data()
    {
        QTest::addColumn<bool>("resizable");
        QTest::addColumn<QRect>("before");
        QTest::addColumn<QRect>("after");
        QTest::addColumn<QSize>("userMin");
        QTest::addColumn<QSize>("userMax");
        QTest::newRow("resizable: clamped, top edge kept")
            << true << QRect(100, 200, 500, 50) << QRect(100, 200, 400, 100) << QSize(200, 100) << QSize(400, 300);
        QTest::newRow("not resizable: the view's size")
            << false << QRect(100, 200, 500, 400) << QRect(100, 200, 250, 180) << QSize(250, 180) << QSize(250, 180);
    }

    void modeSizesWindow()
    {
        QFETCH(bool, resizable);
        QFETCH(QRect, before);
        QFETCH(QRect, after);
        QFETCH(QSize, userMin);
        QFETCH(QSize, userMax);
        OneOwner s;
        s.mode.setMinSize(QSizeF(200, 100));
        s.mode.setMaxSize(QSizeF(400, 300));
        s.mode.setViewSize(QSize(250, 180));
        s.mode.setResizable(resizable);
        auto inspector = makeShownInspector(before);
        inspector->setFocusOwner(&s.owner);
        QCOMPARE(inspector->geometry(), after);
        QCOMPARE(s.mode.view()->geometry(), QRect(QPoint(), after.size()));
        const double largest = std::numeric_limits<double>::max();
        QCOMPARE(inspector->contentMinSize(), resizable ? QSizeF(200, 100) : QSizeF(0, 0));
        QCOMPARE(inspector->contentMaxSize(), resizable ? QSizeF(400, 300) : QSizeF(largest, largest));
        QCOMPARE(inspector->resizeIncrements(), resizable ? QSizeF(1, 1) : QSizeF(largest, largest));
        QCOMPARE(bool(inspector->styleMask() & KQInspectorWindow::Resizable), resizable);
        QCOMPARE(inspector->findChild<QSizeGrip *>()->isVisible(), resizable);
        QCOMPARE(inspector->minimumSize(), userMin); // what the user can drag it to
        QCOMPARE(inspector->maximumSize(), userMax);

        // Later notices of the limits count only while the mode is resizable.
        s.mode.setMinSize(QSizeF(210, 110));
        QCOMPARE(inspector->contentMinSize(), resizable ? QSizeF(210, 110) : QSizeF(0, 0));
        s.mode.setResizable(true);
        QCOMPARE(inspector->contentMinSize(), QSizeF(210, 110));
    }

    void limitAssertions_data()
    {
        QTest::addColumn<QSizeF>("minSize");
        QTest::addColumn<QSizeF>("maxSize");
        QTest::addColumn<QString>("report");
        QTest::newRow("max width below min width") << QSizeF(300, 100) << QSizeF(200, 300) << "minSize.width <= maxSize.width";
        QTest::newRow("max height below min height") << QSizeF(100, 300) << QSizeF(300, 200) << "minSize.height <= maxSize.height";
        QTest::newRow("zero min height") << QSizeF(100, 0) << QSizeF(300, 300) << "minSize.width > 0 && minSize.height > 0";
        QTest::newRow("negative sizes") << QSizeF(-20, -20) << QSizeF(-10, 300) << "minSize.width > 0 && minSize.height > 0";
    }

    void limitAssertions()
    {
        QFETCH(QSizeF, minSize);
        QFETCH(QSizeF, maxSize);
        QFETCH(QString, report);
        OneOwner s;
        s.mode.setMinSize(minSize);
        s.mode.setMaxSize(maxSize);
        s.mode.setViewSize(QSize(123, 45));
        auto inspector = makeShownInspector(QRect(100, 200, 500, 50));
        MessageCapture errors;
        inspector->setFocusOwner(&s.owner);
        const QString text = QString::fromUtf8(errors.text());
        QVERIFY2(text.contains("(" + report + ")") && text.contains("resizeWindowForNewMode"), qPrintable(text));
        QCOMPARE(text.count("Assertion failed"), 1); // the first failing check stops
        // The size is left alone, yet the mode is installed.
        QCOMPARE(inspector->geometry(), QRect(100, 200, 500, 50));
        QCOMPARE(s.mode.view()->size(), QSize(123, 45));
        QCOMPARE(s.mode.view()->parentWidget(), inspector->contentView());
        QVERIFY(s.log.contains("m:didShow"));
    }

    void propertiesFollowMode()
    {
        OneOwner s;
        s.mode.setTitle("Colours");
        auto inspector = makeShownInspector();
        inspector->setFocusOwner(&s.owner);
        QVERIFY(inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        s.mode.setTitle("Shapes");
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Shapes"));
        s.log.clear();
        QSignalSpy levelChanges(inspector.get(), &KQInspectorWindow::levelChanged);
        s.mode.setLevel(0);
        QCOMPARE(inspector->level(), qint64(0));
        QCOMPARE(levelChanges.count(), 1);
        QVERIFY(!inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(inspector->isVisible());
        QVERIFY(s.log.isEmpty()); // re-showing after the flag change is no showing for the mode

        // A mode that is no longer shown is no longer heard.
        inspector->setMode(nullptr);
        s.mode.setTitle("Gone");
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Shapes"));
    }

    // In y-up space the top edge is the rectangle's maximum y.
    void sizingRules_data()
    {
        QTest::addColumn<QSizeF>("content");
        QTest::addColumn<QSizeF>("minSize");
        QTest::addColumn<QSizeF>("maxSize");
        QTest::addColumn<QSizeF>("expected");
        QTest::newRow("too wide and too low") << QSizeF(500, 50) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(400, 100);
        QTest::newRow("inside the limits") << QSizeF(250, 150) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(250, 150);
        QTest::newRow("too small") << QSizeF(10, 10) << QSizeF(50, 50) << QSizeF(1e300, 1e300) << QSizeF(50, 50);
    }

    void sizingRules()
    {
        QFETCH(QSizeF, content);
        QFETCH(QSizeF, minSize);
        QFETCH(QSizeF, maxSize);
        QFETCH(QSizeF, expected);
        QCOMPARE(KQInspectorLayout::clampedContentSize(content, minSize, maxSize), expected);
        QCOMPARE(KQInspectorLayout::contentKeepingTopEdge(QRectF(10, 300, content.width(), content.height()), expected),
                 QRectF(10, 300 + content.height() - expected.height(), expected.width(), expected.height()));
    }

    void showAndHideTellTheMode()
    {
        OneOwner s;
        KQInspectorWindow inspector;
        inspector.setMode(&s.mode);
        QVERIFY(s.log.isEmpty()); // installed while hidden: no showing hooks
        inspector.orderFont();
        inspector.show(); // already on screen: nothing new
        QCOMPARE(s.log, QStringList{"m:willShow"});
        inspector.orderOut();
        QCOMPARE(s.log, (QStringList{"m:willShow", "m:wasHidden"}));
        inspector.orderBack();
        inspector.close(); // closing hides, and keeps the mode
        QCOMPARE(s.log, (QStringList{"m:willShow", "m:wasHidden", "m:willShow", "m:wasHidden"}));
        QCOMPARE(inspector.mode(), &s.mode);
    }

    void showingLooksOwnerUpWhileHidden()
    {
        OneOwner s;
        s.mode.setResizable(false);
        s.mode.setViewSize(QSize(260, 140));
        DocumentWindow document(&s.owner);
        QVERIFY(activate(&document));
        KQInspectorWindow inspector;
        inspector.appDidBecomeActive();
        QCoreApplication::processEvents();
        inspector.show();
        // Installed while still hidden, then told of the showing once.
        QCOMPARE(s.log, (QStringList{"A:willGain", "A:didGain", "m:willShow"}));
        QCOMPARE(inspector.geometry().size(), QSize(260, 140));
    }

    // The empty mode's text view starts without a size; installed while the
    // inspector is hidden (its owner's window closed meanwhile), it must not
    // shrink the inspector to nothing.
    void unsizedViewInHiddenInspector()
    {
        OneOwner s;
        KQInspectorWindow inspector;
        inspector.setGeometry(100, 200, 30, 260);
        inspector.setFocusOwner(&s.owner);
        QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160)); // a sized view is taken as it is
        inspector.setFocusOwner(nullptr);
        QVERIFY(emptyMode(&inspector));
        QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160));
        inspector.setMode(nullptr); // within the mode's limits, though
        inspector.setGeometry(100, 200, 30, 260);
        inspector.setMode(new KQEmptyInspectorMode(nullptr, &inspector));
        QCOMPARE(inspector.geometry(), QRect(100, 200, 50, 260));
    }

    void deactivationHidesAndReactivationLooksUpLater()
    {
        OneOwner s;
        DocumentWindow document;
        auto inspector = makeShownInspector();
        inspector->setHidesOnDeactivate(true);
        inspector->setMode(&s.mode);
        QVERIFY(activate(&document));
        s.log.clear();
        inspector->appWillResignActive();
        QVERIFY(!inspector->isVisible());
        QCOMPARE(s.log, QStringList{"m:wasHidden"});
        document.setOwner(&s.owner);
        inspector->appDidBecomeActive();
        QVERIFY(inspector->isVisible());
        QCOMPARE(inspector->focusOwner(), nullptr); // the lookup waits for the next turn
        QCoreApplication::processEvents();
        QCOMPARE(inspector->focusOwner(), &s.owner);
    }

    void closingOwnersWindowDropsOwner()
    {
        OneOwner s;
        // Both windows hand the inspector to the same owner, but it controls only one.
        DocumentWindow controlled(&s.owner);
        kq_setWindowController(&controlled, &s.owner);
        DocumentWindow unrelated(&s.owner);
        auto inspector = makeShownInspector();
        inspector->startTrackingResponderChain();
        QVERIFY(activate(&unrelated));
        unrelated.close();
        QCOMPARE(inspector->focusOwner(), &s.owner);
        QVERIFY(activate(&controlled));
        // A close that the window refuses (a document asking to save first) is
        // no closing, and neither is hiding it later.
        controlled.refuseClose = true;
        QVERIFY(!controlled.close());
        QCoreApplication::processEvents();
        controlled.hide();
        QCOMPARE(inspector->focusOwner(), &s.owner);
        QVERIFY(activate(&controlled));
        controlled.refuseClose = false;
        QVERIFY(controlled.close());
        QCOMPARE(inspector->focusOwner(), nullptr);
        QVERIFY(emptyMode(inspector.get()));
    }

    void errorPresentation_data()
    {
        const QString description = QString::fromLatin1(KQLocalizedDescriptionKey);
        QTest::addColumn<int>("code");
        QTest::addColumn<QVariantMap>("userInfo");
        QTest::addColumn<bool>("stripped");
        const QVariantMap full{{description, "Bad number"}, {QString::fromLatin1(KQRecoveryAttempterErrorKey), "fixer"}};
        QTest::newRow("formatting error with attempter") << 2048 << full << true;
        QTest::newRow("formatting error without attempter") << 2048 << QVariantMap{{description, "Bad number"}} << false;
        QTest::newRow("other code with attempter") << 2047 << full << false;
    }

    void errorPresentation()
    {
        QFETCH(int, code);
        QFETCH(QVariantMap, userInfo);
        QFETCH(bool, stripped);
        const KQError error(QStringLiteral("SomeDomain"), code, userInfo);
        QCOMPARE(KQInspectorWindow::errorForPresentation(error), stripped ? KQError(error.domain(), code) : error);
        OneOwner s;
        auto inspector = makeShownInspector();
        inspector->setMode(&s.mode);
        QMessageBox *box = inspector->presentError(error);
        QVERIFY(box);
        QCOMPARE(box->text().contains("Bad number"), !stripped);
        QCOMPARE(inspector->attachedSheet(), box);
        QSignalSpy finished(box, &QDialog::finished); // taking the mode away ends the sheet
        inspector->setMode(nullptr);
        QCOMPARE(finished.count(), 1);
        QVERIFY(!inspector->attachedSheet());
    }

    void destroyedWhileShown_data()
    {
        QTest::addColumn<QString>("victims");
        QTest::addColumn<QStringList>("heard"); // once the destruction is over
        QTest::newRow("owner with its mode") << "owner" << QStringList{"m:willHide", "m:wasHidden"};
        QTest::newRow("mode, the owner makes a new one")
            << "mode" << QStringList{"A:willLose", "A:didLose", "A:willGain", "n:willShow", "n:didShow", "A:didGain"};
        QTest::newRow("mode, then its owner") << "mode, owner" << QStringList{};
    }

    void destroyedWhileShown()
    {
        QFETCH(QString, victims);
        QFETCH(QStringList, heard);
        QStringList log;
        QPointer<RecordingOwner> owner = new RecordingOwner("A", &log, nullptr);
        QPointer<RecordingMode> mode = new RecordingMode("m", &log, victims == "owner" ? owner.data() : nullptr);
        owner->setMode(mode);
        RecordingMode next("n", &log);
        DocumentWindow document(owner);
        auto inspector = makeShownInspector();
        QVERIFY(activate(&document));
        inspector->updateFocusOwner(&document);
        QPointer<QWidget> view = mode->view();
        log.clear();
        if (victims.startsWith("mode")) {
            delete mode.data();
            owner->setMode(&next);
        }
        if (victims.endsWith("owner"))
            delete owner.data();
        // At once: no blank window, and the owner no longer stands behind it.
        QVERIFY(view.isNull());
        QPointer<KQInspectorMode> empty = inspector->mode();
        QVERIFY(emptyMode(inspector.get()) && emptyMode(inspector.get())->refreshTimer()); // shown, so refreshing
        QCOMPARE(emptyMode(inspector.get())->focusedWindow(), &document);
        QCOMPARE(installedViews(inspector.get()), 1);
        QCOMPARE(inspector->focusOwner(), nullptr);
        // Then a living owner hears of its loss and, its window having the focus, is asked again.
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log, heard);
        QCOMPARE(inspector->focusOwner(), owner.data());
        QCOMPARE(inspector->mode() == &next, bool(owner));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(empty.isNull(), bool(owner)); // the empty mode is the inspector's own: swapped out, it goes
        delete owner.data();

        // An owner that goes while another owner's mode is shown changes nothing.
        OneOwner keeper;
        inspector->setFocusOwner(&keeper.owner);
        delete new RecordingOwner("X", &log, &keeper.mode);
        QCOMPARE(inspector->mode(), &keeper.mode);
    }

    void inspectorDestroyedBeforeMode()
    {
        OneOwner s;
        auto inspector = makeShownInspector();
        inspector->setFocusOwner(&s.owner);
        QPointer<QWidget> view = s.mode.view();
        inspector.reset();
        QVERIFY(view && !view->parentWidget()); // the view stays with its mode
        QVERIFY(s.log.endsWith("m:wasHidden"));
        QCOMPARE(s.mode.view(), view.data());
    }

    // A frame saved on a screen that is no longer there comes back on one that is, with its size.
    void frameFromLostScreen()
    {
        const QString key = QStringLiteral("tst.inspector.frame");
        QWidget elsewhere;
        elsewhere.setGeometry(5000, 4000, 320, 240);
        KQSettings::userDefaults()->setValue(key, elsewhere.saveGeometry());
        KQInspectorWindow inspector;
        inspector.setFrameAutosaveName(key);
        QCOMPARE(inspector.geometry().size(), QSize(320, 240));
        QVERIFY(QGuiApplication::screenAt(inspector.geometry().center()));
    }

    void frameSavedOnceLeftAlone_data()
    {
        QTest::addColumn<double>("stillFor");
        QTest::addColumn<QString>("then");
        QTest::addColumn<bool>("saved");
        QTest::newRow("still dragging") << 0.4 << "poll" << false;
        QTest::newRow("left alone") << KQInspectorWindow::frameSaveQuietPeriod << "poll" << true;
        QTest::newRow("hidden mid-drag") << 0.1 << "hide" << true;
        QTest::newRow("application quits mid-drag") << 0.1 << "quit" << true;
    }

    void frameSavedOnceLeftAlone()
    {
        QFETCH(double, stillFor);
        QFETCH(QString, then);
        QFETCH(bool, saved);
        const QString key = QStringLiteral("tst.inspector.drag");
        double now = 100;
        KQInspectorWindow inspector;
        inspector.setClock([&now] { return now; });
        inspector.setFrameAutosaveName(key);
        inspector.show();
        QVERIFY(QTest::qWaitForWindowExposed(&inspector));
        QCoreApplication::processEvents();
        KQSettings::userDefaults()->remove(key);
        for (int step = 1; step <= 5; ++step) { // a drag: a new position every 0.1 s, none of them saved yet
            now += 0.1;
            inspector.move(QPoint(100 + 10 * step, 150));
            QCoreApplication::processEvents();
            inspector.poll();
        }
        QVERIFY(inspector.hasUnsavedFrame());
        QVERIFY(!KQSettings::userDefaults()->contains(key));
        now += stillFor;
        if (then == "poll")
            inspector.poll();
        else if (then == "hide")
            inspector.hide();
        else
            QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection));
        QCOMPARE(inspector.hasUnsavedFrame(), !saved);
        QCOMPARE(KQSettings::userDefaults()->value(key).toByteArray(), saved ? inspector.saveGeometry() : QByteArray());
    }

    void emptyModeShowingStartsOneTimer()
    {
        QWidget window;
        KQEmptyInspectorMode mode(&window);
        mode.modeWillShow();
        QPointer<QTimer> first = mode.refreshTimer();
        QVERIFY(first && first->isActive());
        mode.modeWillShow(); // shown again: still exactly one timer
        QVERIFY(first.isNull());
        QCOMPARE(mode.findChildren<QTimer *>().size(), 1);
        QVERIFY(mode.refreshTimer()->isActive());
        mode.modeWasHidden(); // hidden: no timer at all, and hiding twice is harmless
        mode.modeWasHidden();
        QVERIFY(!mode.refreshTimer() && mode.findChildren<QTimer *>().isEmpty());
    }

    void emptyModeRefreshesOnlyForNewTitle_data()
    {
        QTest::addColumn<QString>("newTitle");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<bool>("rebuilt");
        QTest::newRow("unchanged") << "Draft" << 2.0 << false << false;
        QTest::newRow("renamed") << "Final" << 2.0 << false << true;
        QTest::newRow("renamed, much later") << "Final" << 7.5 << false << true;
        QTest::newRow("renamed, not yet two seconds") << "Final" << 1.9 << false << false;
        QTest::newRow("renamed while hidden") << "Final" << 2.0 << true << false;
        QTest::newRow("modified marker") << "Draft[*]" << 2.0 << false << false;
    }

    void emptyModeRefreshesOnlyForNewTitle()
    {
        QFETCH(QString, newTitle);
        QFETCH(double, elapsed);
        QFETCH(bool, hidden);
        QFETCH(bool, rebuilt);
        QWidget window;
        window.setWindowTitle(QStringLiteral("Draft"));
        KQEmptyInspectorMode mode(&window);
        double now = 50;
        mode.setClock([&now] { return now; });
        mode.modeWillShow();
        if (hidden)
            mode.modeWasHidden();
        mode.textView()->setPlainText(QStringLiteral("sentinel")); // a rebuild replaces it
        window.setWindowTitle(newTitle);
        now += elapsed;
        mode.poll();
        QCOMPARE(mode.textView()->toPlainText(), rebuilt ? "Inspector not available for window:\n" + newTitle : QStringLiteral("sentinel"));
    }

    // Built at once when shown, naming the window ("?" for none), beside its
    // document icon when it has one.
    void emptyModeText_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("filePath");
        QTest::addColumn<QString>("window"); // kept, none or deleted once shown
        QTest::addColumn<QString>("named");
        QTest::newRow("titled window") << "Report.txt" << QString() << "kept" << "Report.txt";
        QTest::newRow("untitled window") << QString() << QString() << "kept" << "?";
        QTest::newRow("no window") << "Report.txt" << QString() << "none" << "?";
        QTest::newRow("window closed and deleted") << "Soon gone" << QString() << "deleted" << "?";
        QTest::newRow("document window") << "Notes" << "/tmp/Notes.txt" << "kept" << "Notes";
    }

    void emptyModeText()
    {
        QFETCH(QString, title);
        QFETCH(QString, filePath);
        QFETCH(QString, window);
        QFETCH(QString, named);
        const bool hasIcon = !filePath.isEmpty();
        auto shown = std::make_unique<QWidget>();
        shown->setWindowTitle(title);
        QPixmap red(32, 32);
        red.fill(Qt::red);
        shown->setWindowIcon(QIcon(red));
        shown->setWindowFilePath(filePath);
        QCOMPARE(kq_documentIconOfWindow(shown.get()).isNull(), !hasIcon);
        KQEmptyInspectorMode mode(window == "none" ? nullptr : shown.get());
        mode.modeWillShow();
        if (window == "deleted") {
            QVERIFY(mode.textView()->toPlainText().endsWith(title));
            shown.reset();
            mode.update();
        }
        QTextDocument *document = mode.textView()->document();
        const QString icon = hasIcon ? QString(QChar(QChar::ObjectReplacementCharacter)) + " " : QString();
        QCOMPARE(document->toPlainText(), "Inspector not available for window:\n" + icon + named);
        QCOMPARE(mode.lastWindowTitle(), named);
        QCOMPARE(document->begin().blockFormat().alignment(), Qt::AlignHCenter);
        QList<QTextFragment> pieces; // the notice's line first
        QList<QTextImageFormat> images;
        for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
            for (auto it = block.begin(); !it.atEnd(); ++it) {
                pieces.append(it.fragment());
                if (it.fragment().charFormat().isImageFormat())
                    images.append(it.fragment().charFormat().toImageFormat());
            }
        // Only the title is raised, and only beside the icon, a 16-point picture there to be drawn.
        const QTextCharFormat raised = pieces.last().charFormat();
        QCOMPARE(raised.property(KQEmptyInspectorMode::BaselineOffsetProperty).toDouble(), hasIcon ? 3.0 : 0.0);
        QCOMPARE(raised.baselineOffset() > 0, hasIcon);
        QVERIFY(!pieces.first().charFormat().hasProperty(KQEmptyInspectorMode::BaselineOffsetProperty));
        QCOMPARE(images.size(), hasIcon ? 1 : 0);
        for (const QTextImageFormat &image : images) {
            QCOMPARE(QSizeF(image.width(), image.height()), QSizeF(16, 16));
            QVERIFY(document->resource(QTextDocument::ImageResource, QUrl(image.name())).isValid());
        }
    }

    void flipMirrorsAboutCentreLine_data()
    {
        QTest::addColumn<double>("y");
        QTest::addColumn<double>("expected");
        QTest::newRow("top of the rectangle") << 10.0 << 30.0;
        QTest::newRow("bottom of the rectangle") << 30.0 << 10.0;
        QTest::newRow("centre line") << 20.0 << 20.0;
        QTest::newRow("outside") << 0.0 << 40.0;
    }

    void flipMirrorsAboutCentreLine()
    {
        QFETCH(double, y);
        QFETCH(double, expected);
        QImage canvas(60, 60, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&canvas);
        painter.translate(5, 0); // what was there before is kept, the flip comes first
        q_DRAWING_flip_graphics_context_for_rect(&painter, QRectF(0, 10, 50, 20));
        QCOMPARE(painter.transform().map(QPointF(3, y)), QPointF(8, expected));
    }

    void transparentCopy_data()
    {
        QTest::addColumn<double>("fraction");
        QTest::addColumn<int>("alpha");
        QTest::newRow("opaque copy") << 1.0 << 255;
        QTest::newRow("half") << 0.5 << 128;
        QTest::newRow("invisible") << 0.0 << 0;
    }

    void transparentCopy()
    {
        QFETCH(double, fraction);
        QFETCH(int, alpha);
        QImage original(12, 7, QImage::Format_ARGB32);
        original.fill(QColor(200, 40, 40));
        const QImage copy = q_IMAGE_transparent_image_from_image(original, fraction);
        QCOMPARE(copy.size(), original.size());
        QVERIFY(qAbs(copy.pixelColor(3, 3).alpha() - alpha) <= 1);
        QVERIFY(alpha < 255 || copy.pixelColor(3, 3) == original.pixelColor(3, 3));
    }

    void imageBadInputIsRefused()
    {
        MessageCapture errors;
        QVERIFY(q_IMAGE_transparent_image_from_image(QImage(), 0.5).isNull());
        q_DRAWING_flip_graphics_context_for_rect(nullptr, QRectF(0, 0, 1, 1));
        QVERIFY(QDX__Copy_NSImage_to_CGImageRef(QIcon()).isNull());
        const QByteArray text = errors.text();
        QVERIFY(text.contains("(originalImage != nil)") && text.contains("q_IMAGE_transparent_image_from_image"));
        QVERIFY(text.contains("painter != nullptr"));
    }

    void iconFirstRepresentation()
    {
        QPixmap small(8, 8), large(32, 32);
        small.fill(Qt::green);
        large.fill(Qt::blue);
        QIcon icon;
        icon.addPixmap(small);
        icon.addPixmap(large);
        const QImage image = QDX__Copy_NSImage_to_CGImageRef(icon);
        QCOMPARE(image.size(), QSize(8, 8));
        QCOMPARE(image.pixelColor(2, 2), QColor(Qt::green));
    }

    // Inserted into any document, the picture comes along.
    void imageAsText()
    {
        QImage picture(10, 6, QImage::Format_ARGB32);
        picture.fill(QColor(10, 200, 30));
        const QTextDocumentFragment fragment = q_IMAGE_attributed_string_from_image(picture);
        QCOMPARE(fragment.toPlainText(), QString(QChar(QChar::ObjectReplacementCharacter)));
        QTextDocument document;
        QTextCursor cursor(&document);
        cursor.insertText(QStringLiteral("a"));
        cursor.insertFragment(fragment);
        const QTextImageFormat format = cursor.charFormat().toImageFormat();
        QVERIFY(format.isValid());
        QCOMPARE(QSizeF(format.width(), format.height()), QSizeF(10, 6));
        const QVariant resource = document.resource(QTextDocument::ImageResource, QUrl(format.name()));
        QImage loaded = qvariant_cast<QImage>(resource);
        if (loaded.isNull())
            loaded.loadFromData(resource.toByteArray());
        QCOMPARE(loaded.size(), picture.size());
        QCOMPARE(loaded.pixelColor(4, 4), picture.pixelColor(4, 4));
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 3 && (arguments[1] == QLatin1String("--first") || arguments[1] == QLatin1String("--second"))) {
        QApplication::setOrganizationName(QStringLiteral("TarnCommon"));
        QApplication::setApplicationName(QStringLiteral("tarn-inspector-e2e"));
        QFile frameFile(arguments[2]);
        const int result = arguments[1] == QLatin1String("--first") ? firstRun(frameFile) : secondRun(frameFile);
        std::printf("%s\n", result == 0 ? "PASSED" : "FAILED");
        return result == 0 ? 0 : 1;
    }
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    tst_Inspector test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_inspector.moc"
