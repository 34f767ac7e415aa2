#include "InspectorTestSupport.h"
#include "KQInspectorLayout_p.h"
#include "StreamCapture.h"

#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQError.h>
#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSizeGrip>

#include <limits>
#include <memory>

namespace {

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

// A document window that may refuse to close.
class RefusableWindow : public DocumentWindow
{
public:
    using DocumentWindow::DocumentWindow;
    bool refuseClose = false;

protected:
    void closeEvent(QCloseEvent *event) override { event->setAccepted(!refuseClose); }
};

} // namespace

class tst_InspectorWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void modeDefaults();
    void handOverSendsHooksInOrder();
    void sameOwnerTwiceIsNoOp();
    void noOwnerShowsEmptyModeForMainWindow();
    void ownerWithoutModeLeavesInspectorEmpty();
    void ownerlessWindowsKeepFirstEmptyMode();
    void lookupIgnores_data();
    void lookupIgnores();
    void lookupAsksKeyWindowThenMainWindow();
    void resizableModeKeepsTopEdge();
    void nonResizableModeTakesViewSize();
    void limitAssertions_data();
    void limitAssertions();
    void defaultMinimumFailsCheck();
    void sizeNoticesIgnoredWhenNotResizable();
    void propertiesFollowMode();
    void sizingRules_data();
    void sizingRules();
    void showAndHideTellTheMode();
    void showingLooksOwnerUpWhileHidden();
    void unsizedViewInHiddenInspector();
    void deactivationHidesAndReactivationLooksUpLater();
    void closingOwnersWindowDropsOwner();
    void errorPresentation_data();
    void errorPresentation();
    void removingModeEndsSheet();
    void ownerDestroyedWhileShown();
    void modeDestroyedWhileShown();
    void inspectorDestroyedBeforeMode();
    void frameSurvivesRecreation();
    void trackingFollowsActivation();
    void sharedInspectorIsOneHiddenWindow();
};

void tst_InspectorWindow::initTestCase()
{
    KQSettings::enableTestMode();
}

void tst_InspectorWindow::cleanup()
{
    const QList<QWidget *> windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->hide();
}

void tst_InspectorWindow::modeDefaults()
{
    KQInspectorMode mode;
    QCOMPARE(mode.inspectorTitle(), QStringLiteral("Inspector"));
    QVERIFY(mode.isResizable());
    QCOMPARE(mode.minSize(), QSizeF(0, 0));
    const double largestFloat = std::numeric_limits<float>::max();
    QCOMPARE(mode.maxSize(), QSizeF(largestFloat, largestFloat));
    QCOMPARE(mode.windowLevel(), qint64(3));
    QVERIFY(!mode.isViewLoaded());
    QWidget *view = mode.view();
    QVERIFY(view);
    QCOMPARE(mode.view(), view); // made once
}

void tst_InspectorWindow::handOverSendsHooksInOrder()
{
    QStringList log;
    RecordingMode modeA(QStringLiteral("mA"), &log);
    RecordingMode modeB(QStringLiteral("mB"), &log);
    RecordingOwner ownerA(QStringLiteral("A"), &log, &modeA);
    RecordingOwner ownerB(QStringLiteral("B"), &log, &modeB);
    auto inspector = makeShownInspector();

    inspector->setFocusOwner(&ownerA);
    QCOMPARE(log, (QStringList{"A:willGain", "mA:willShow", "mA:didShow", "A:didGain"}));
    QCOMPARE(inspector->mode(), &modeA);
    QCOMPARE(modeA.view()->parentWidget(), inspector->contentView());

    log.clear();
    inspector->setFocusOwner(&ownerB);
    QCOMPARE(log, (QStringList{"A:willLose", "B:willGain", "mA:willHide", "mA:wasHidden", "mB:willShow",
                               "mB:didShow", "B:didGain", "A:didLose"}));
    QCOMPARE(inspector->focusOwner(), &ownerB);
    QCOMPARE(modeA.view()->parentWidget(), nullptr);
    QCOMPARE(modeB.view()->parentWidget(), inspector->contentView());

    // A hidden inspector swaps modes without any showing hooks.
    inspector->hide();
    log.clear();
    inspector->setFocusOwner(&ownerA);
    QCOMPARE(log, (QStringList{"B:willLose", "A:willGain", "A:didGain", "B:didLose"}));
}

void tst_InspectorWindow::sameOwnerTwiceIsNoOp()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&owner);
    QWidget *view = mode.view();
    log.clear();
    QSignalSpy modeChanges(inspector.get(), &KQInspectorWindow::modeChanged);

    inspector->setFocusOwner(&owner);
    QVERIFY(log.isEmpty());
    QCOMPARE(modeChanges.count(), 0);
    QCOMPARE(mode.view(), view);
    QCOMPARE(view->parentWidget(), inspector->contentView());
}

void tst_InspectorWindow::noOwnerShowsEmptyModeForMainWindow()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector();
    DocumentWindow document;
    document.setWindowTitle(QStringLiteral("Letter"));
    QVERIFY(activate(&document));

    inspector->setFocusOwner(&owner);
    inspector->setFocusOwner(nullptr);
    QCOMPARE(inspector->focusOwner(), nullptr);
    auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
    QVERIFY(empty);
    QCOMPARE(empty->focusedWindow(), &document);
    QCOMPARE(empty->lastWindowTitle(), QStringLiteral("Letter"));
    QCOMPARE(inspector->windowTitle(), QStringLiteral("Inspector"));
    QVERIFY(log.endsWith(QStringLiteral("A:didLose")));
}

void tst_InspectorWindow::ownerWithoutModeLeavesInspectorEmpty()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner withMode(QStringLiteral("A"), &log, &mode);
    RecordingOwner withoutMode(QStringLiteral("B"), &log, nullptr);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&withMode);
    inspector->setFocusOwner(&withoutMode);
    QCOMPARE(inspector->mode(), nullptr);
    QVERIFY(inspector->contentView()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly).isEmpty());
}

void tst_InspectorWindow::ownerlessWindowsKeepFirstEmptyMode()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    DocumentWindow first(&owner);
    first.setWindowTitle(QStringLiteral("First"));
    DocumentWindow second;
    second.setWindowTitle(QStringLiteral("Second"));
    DocumentWindow third;
    third.setWindowTitle(QStringLiteral("Third"));
    auto inspector = makeShownInspector();

    QVERIFY(activate(&first));
    inspector->updateFocusOwner(&first);
    QCOMPARE(inspector->focusOwner(), &owner);
    QVERIFY(activate(&second));
    inspector->updateFocusOwner(&second);
    auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
    QVERIFY(empty);
    QCOMPARE(empty->focusedWindow(), &second);

    QVERIFY(activate(&third));
    inspector->updateFocusOwner(&third);
    QCOMPARE(inspector->mode(), empty);
    QCOMPARE(empty->focusedWindow(), &second);
}

enum class LookupCase { Normal, InspectorHidden, ApplicationInactive, FileDialog, InspectorItself, NoNotification };
Q_DECLARE_METATYPE(LookupCase)

void tst_InspectorWindow::lookupIgnores_data()
{
    QTest::addColumn<LookupCase>("lookupCase");
    QTest::addColumn<bool>("ownerFound");
    QTest::newRow("a document window") << LookupCase::Normal << true;
    QTest::newRow("inspector hidden") << LookupCase::InspectorHidden << false;
    QTest::newRow("application inactive") << LookupCase::ApplicationInactive << false;
    QTest::newRow("file dialog") << LookupCase::FileDialog << false;
    QTest::newRow("the inspector itself") << LookupCase::InspectorItself << false;
    QTest::newRow("no notification while hidden") << LookupCase::NoNotification << true;
}

void tst_InspectorWindow::lookupIgnores()
{
    QFETCH(LookupCase, lookupCase);
    QFETCH(bool, ownerFound);
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    DocumentWindow document(&owner);
    auto inspector = makeShownInspector();
    QVERIFY(activate(&document));
    QFileDialog dialog;

    switch (lookupCase) {
    case LookupCase::Normal:
        inspector->updateFocusOwner(&document);
        break;
    case LookupCase::InspectorHidden:
        inspector->hide();
        inspector->updateFocusOwner(&document);
        break;
    case LookupCase::ApplicationInactive:
        inspector->appWillResignActive();
        inspector->updateFocusOwner(&document);
        inspector->updateFocusOwner();
        break;
    case LookupCase::FileDialog:
        inspector->updateFocusOwner(&dialog);
        break;
    case LookupCase::InspectorItself:
        inspector->updateFocusOwner(inspector.get());
        break;
    case LookupCase::NoNotification:
        inspector->hide();
        inspector->updateFocusOwner();
        break;
    }
    QCOMPARE(inspector->focusOwner() == &owner, ownerFound);
    QCOMPARE(log.contains(QStringLiteral("A:willGain")), ownerFound);
}

void tst_InspectorWindow::lookupAsksKeyWindowThenMainWindow()
{
    // While a dialog has the focus, the document behind it still drives the
    // inspector: the main window's chain is asked after the key window's.
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    DocumentWindow document(&owner);
    auto inspector = makeShownInspector();
    inspector->startTrackingResponderChain();
    QVERIFY(activate(&document));
    QCOMPARE(inspector->focusOwner(), &owner);

    QDialog dialog;
    QVERIFY(activate(&dialog));
    QCOMPARE(inspector->mainWindow(), &document);
    inspector->updateFocusOwner(&dialog);
    QCOMPARE(inspector->focusOwner(), &owner);
    document.hide(); // a main window that left the screen is no main window
    QCOMPARE(inspector->mainWindow(), nullptr);

    // A controller attached to a plain window answers for it.
    QStringList otherLog;
    RecordingMode otherMode(QStringLiteral("n"), &otherLog);
    AnsweringOwner controller(QStringLiteral("C"), &otherLog, &otherMode);
    QWidget plain;
    kq_setWindowController(&plain, &controller);
    QVERIFY(activate(&plain));
    QCOMPARE(inspector->focusOwner(), &controller);
    QCOMPARE(inspector->mode(), &otherMode);

    // An answer that is no focus owner is refused and counts as none.
    QObject stranger;
    DocumentWindow confused(&stranger);
    StreamCapture output(stdout);
    QVERIFY(activate(&confused));
    QVERIFY(output.text().contains("does not implement KQInspectorFocusOwner"));
    QCOMPARE(inspector->focusOwner(), nullptr);
}

void tst_InspectorWindow::resizableModeKeepsTopEdge()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setMinSize(QSizeF(200, 100));
    mode.setMaxSize(QSizeF(400, 300));
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector(QRect(100, 200, 500, 50));
    const QRectF before = KQScreenSpace::fromGlobal(QRectF(inspector->geometry()));

    inspector->setFocusOwner(&owner);
    QCOMPARE(inspector->geometry(), QRect(100, 200, 400, 100));
    const QRectF after = KQScreenSpace::fromGlobal(QRectF(inspector->geometry()));
    QCOMPARE(after.y(), before.y() - 50);
    QCOMPARE(after.y() + after.height(), before.y() + before.height());
    QCOMPARE(mode.view()->geometry(), QRect(0, 0, 400, 100));
    QCOMPARE(inspector->contentMinSize(), QSizeF(200, 100));
    QCOMPARE(inspector->contentMaxSize(), QSizeF(400, 300));
    QCOMPARE(inspector->resizeIncrements(), QSizeF(1, 1));
    QVERIFY(inspector->styleMask() & KQInspectorWindow::Resizable);
    QVERIFY(inspector->showsResizeIndicator());
    QVERIFY(inspector->findChild<QSizeGrip *>()->isVisible());
    QCOMPARE(inspector->minimumSize(), QSize(200, 100));
    QCOMPARE(inspector->maximumSize(), QSize(400, 300));
}

void tst_InspectorWindow::nonResizableModeTakesViewSize()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setResizable(false);
    mode.setViewSize(QSize(250, 180));
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector(QRect(100, 200, 500, 400));

    inspector->setFocusOwner(&owner);
    QCOMPARE(inspector->geometry(), QRect(100, 200, 250, 180));
    QVERIFY(!inspector->showsResizeIndicator());
    QVERIFY(!inspector->findChild<QSizeGrip *>()->isVisible());
    QCOMPARE(inspector->styleMask() & KQInspectorWindow::Resizable, 0);
    QCOMPARE(inspector->styleMask(), KQInspectorWindow::Titled | KQInspectorWindow::Closable);
    const double largest = std::numeric_limits<double>::max();
    QCOMPARE(inspector->contentMinSize(), QSizeF(0, 0));
    QCOMPARE(inspector->contentMaxSize(), QSizeF(largest, largest));
    QCOMPARE(inspector->resizeIncrements(), QSizeF(largest, largest));
    // The user cannot resize it.
    QCOMPARE(inspector->minimumSize(), QSize(250, 180));
    QCOMPARE(inspector->maximumSize(), QSize(250, 180));
}

void tst_InspectorWindow::limitAssertions_data()
{
    QTest::addColumn<QSizeF>("minSize");
    QTest::addColumn<QSizeF>("maxSize");
    QTest::addColumn<QString>("report");
    QTest::newRow("max width below min width")
        << QSizeF(300, 100) << QSizeF(200, 300) << QStringLiteral("minSize.width <= maxSize.width");
    QTest::newRow("max height below min height")
        << QSizeF(100, 300) << QSizeF(300, 200) << QStringLiteral("minSize.height <= maxSize.height");
    QTest::newRow("zero min height")
        << QSizeF(100, 0) << QSizeF(300, 300) << QStringLiteral("minSize.width > 0 && minSize.height > 0");
    QTest::newRow("negative sizes")
        << QSizeF(-20, -20) << QSizeF(-10, 300) << QStringLiteral("minSize.width > 0 && minSize.height > 0");
}

void tst_InspectorWindow::limitAssertions()
{
    QFETCH(QSizeF, minSize);
    QFETCH(QSizeF, maxSize);
    QFETCH(QString, report);
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setMinSize(minSize);
    mode.setMaxSize(maxSize);
    mode.setViewSize(QSize(123, 45));
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector(QRect(100, 200, 500, 50));

    StreamCapture errors(stderr);
    inspector->setFocusOwner(&owner);
    const QString text = QString::fromUtf8(errors.text());
    QVERIFY2(text.contains(QStringLiteral("(") + report + QStringLiteral(")")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral("resizeWindowForNewMode")));
    QCOMPARE(text.count(QStringLiteral("Assertion failed")), 1); // the first failing check stops
    // The size is left alone, yet the mode is installed.
    QCOMPARE(inspector->geometry(), QRect(100, 200, 500, 50));
    QCOMPARE(mode.view()->size(), QSize(123, 45));
    QCOMPARE(mode.view()->parentWidget(), inspector->contentView());
    QCOMPARE(inspector->mode(), &mode);
    QVERIFY(log.contains(QStringLiteral("m:didShow")));
}

void tst_InspectorWindow::defaultMinimumFailsCheck()
{
    KQInspectorMode mode; // the base class's minimum is zero
    mode.view()->resize(77, 66);
    auto inspector = makeShownInspector();
    StreamCapture errors(stderr);
    inspector->setMode(&mode);
    QVERIFY(errors.text().contains("minSize.width > 0 && minSize.height > 0"));
    QCOMPARE(mode.view()->size(), QSize(77, 66));
    inspector->setMode(nullptr);
}

void tst_InspectorWindow::sizeNoticesIgnoredWhenNotResizable()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setResizable(false);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&owner);
    mode.setMinSize(QSizeF(90, 90));
    mode.setMaxSize(QSizeF(95, 95));
    QCOMPARE(inspector->contentMinSize(), QSizeF(0, 0));
    QCOMPARE(inspector->contentMaxSize().width(), std::numeric_limits<double>::max());

    // Once resizable, the limits apply, and later notices are heard.
    mode.setResizable(true);
    QCOMPARE(inspector->contentMinSize(), QSizeF(90, 90));
    mode.setMaxSize(QSizeF(500, 500));
    QCOMPARE(inspector->contentMaxSize(), QSizeF(500, 500));
}

void tst_InspectorWindow::propertiesFollowMode()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setTitle(QStringLiteral("Colours"));
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&owner);
    QCOMPARE(inspector->windowTitle(), QStringLiteral("Colours"));
    QCOMPARE(inspector->level(), qint64(3));
    QVERIFY(inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint));

    mode.setTitle(QStringLiteral("Shapes"));
    QCOMPARE(inspector->windowTitle(), QStringLiteral("Shapes"));
    log.clear();
    QSignalSpy levelChanges(inspector.get(), &KQInspectorWindow::levelChanged);
    mode.setLevel(0);
    QCOMPARE(inspector->level(), qint64(0));
    QCOMPARE(levelChanges.count(), 1);
    QVERIFY(!inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QVERIFY(inspector->isVisible());
    QVERIFY(log.isEmpty()); // re-showing after the flag change is no showing for the mode

    // A mode that is no longer shown is no longer heard.
    inspector->setMode(nullptr);
    mode.setTitle(QStringLiteral("Gone"));
    QCOMPARE(inspector->windowTitle(), QStringLiteral("Shapes"));
}

void tst_InspectorWindow::sizingRules_data()
{
    QTest::addColumn<QSizeF>("content");
    QTest::addColumn<QSizeF>("minSize");
    QTest::addColumn<QSizeF>("maxSize");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("too wide and too low") << QSizeF(500, 50) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(400, 100);
    QTest::newRow("inside the limits") << QSizeF(250, 150) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(250, 150);
    QTest::newRow("too small") << QSizeF(10, 10) << QSizeF(50, 50) << QSizeF(1e300, 1e300) << QSizeF(50, 50);
}

void tst_InspectorWindow::sizingRules()
{
    QFETCH(QSizeF, content);
    QFETCH(QSizeF, minSize);
    QFETCH(QSizeF, maxSize);
    QFETCH(QSizeF, expected);
    QCOMPARE(KQInspectorLayout::clampedContentSize(content, minSize, maxSize), expected);
    const QRectF moved = KQInspectorLayout::contentKeepingTopEdge(QRectF(10, 300, content.width(), content.height()),
                                                                  expected);
    QCOMPARE(moved.y() + moved.height(), 300 + content.height());
    QCOMPARE(moved.x(), 10.0);
    QCOMPARE(moved.size(), expected);
}

void tst_InspectorWindow::showAndHideTellTheMode()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    auto inspector = std::make_unique<KQInspectorWindow>();
    inspector->setMode(&mode);
    QVERIFY(log.isEmpty()); // installed while hidden: no showing hooks

    inspector->orderFont();
    QVERIFY(inspector->isVisible());
    inspector->show(); // already on screen: nothing new
    QCOMPARE(log, QStringList{"m:willShow"});
    inspector->orderOut();
    QCOMPARE(log, (QStringList{"m:willShow", "m:wasHidden"}));
    inspector->hide();
    inspector->orderBack();
    inspector->close(); // closing hides, and keeps the mode
    QCOMPARE(log, (QStringList{"m:willShow", "m:wasHidden", "m:willShow", "m:wasHidden"}));
    QCOMPARE(inspector->mode(), &mode);
}

void tst_InspectorWindow::showingLooksOwnerUpWhileHidden()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    mode.setResizable(false);
    mode.setViewSize(QSize(260, 140));
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    DocumentWindow document(&owner);
    QVERIFY(activate(&document));
    auto inspector = std::make_unique<KQInspectorWindow>();
    inspector->appDidBecomeActive();
    QCoreApplication::processEvents();

    inspector->show();
    // Installed while still hidden, then told of the showing once.
    QCOMPARE(log, (QStringList{"A:willGain", "A:didGain", "m:willShow"}));
    QCOMPARE(inspector->geometry().size(), QSize(260, 140));
}

void tst_InspectorWindow::unsizedViewInHiddenInspector()
{
    // The empty mode's text view starts without a size; installed while the
    // inspector is hidden (its owner's window closed meanwhile), it must not
    // shrink the inspector to nothing.
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    KQInspectorWindow inspector;
    inspector.setGeometry(100, 200, 30, 260);
    inspector.setFocusOwner(&owner);
    QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160)); // a sized view is taken as it is
    inspector.setFocusOwner(nullptr);
    QVERIFY(qobject_cast<KQEmptyInspectorMode *>(inspector.mode()));
    QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160));

    // Within the mode's limits, though.
    inspector.setMode(nullptr);
    inspector.setGeometry(100, 200, 30, 260);
    inspector.setMode(new KQEmptyInspectorMode(nullptr, &inspector));
    QCOMPARE(inspector.geometry(), QRect(100, 200, 50, 260));
}

void tst_InspectorWindow::deactivationHidesAndReactivationLooksUpLater()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    DocumentWindow document;
    auto inspector = makeShownInspector();
    inspector->setHidesOnDeactivate(true);
    inspector->setMode(&mode);
    QVERIFY(activate(&document));

    log.clear();
    inspector->appWillResignActive();
    QVERIFY(!inspector->appIsActive());
    QVERIFY(!inspector->isVisible());
    QCOMPARE(log, QStringList{"m:wasHidden"});

    document.setOwner(&owner);
    inspector->appDidBecomeActive();
    QVERIFY(inspector->isVisible());
    QCOMPARE(inspector->focusOwner(), nullptr); // the lookup waits for the next turn
    QCoreApplication::processEvents();
    QVERIFY(inspector->appIsActive());
    QCOMPARE(inspector->focusOwner(), &owner);
}

void tst_InspectorWindow::closingOwnersWindowDropsOwner()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner controller(QStringLiteral("A"), &log, &mode);
    // Both windows hand the inspector to the same owner, but it controls only one.
    RefusableWindow controlled(&controller);
    kq_setWindowController(&controlled, &controller);
    DocumentWindow unrelated(&controller);
    auto inspector = makeShownInspector();
    inspector->startTrackingResponderChain();
    QVERIFY(activate(&unrelated));
    QCOMPARE(inspector->focusOwner(), &controller);

    unrelated.close();
    QCOMPARE(inspector->focusOwner(), &controller);
    QVERIFY(activate(&controlled));

    // A close that the window refuses (a document asking to save first) is
    // no closing, and neither is hiding it later.
    controlled.refuseClose = true;
    QVERIFY(!controlled.close());
    QCOMPARE(inspector->focusOwner(), &controller);
    QCoreApplication::processEvents();
    controlled.hide();
    QCOMPARE(inspector->focusOwner(), &controller);
    QVERIFY(activate(&controlled));

    controlled.refuseClose = false;
    QVERIFY(controlled.close());
    QCOMPARE(inspector->focusOwner(), nullptr);
    QVERIFY(qobject_cast<KQEmptyInspectorMode *>(inspector->mode()));
}

void tst_InspectorWindow::errorPresentation_data()
{
    const QString attempter = QString::fromLatin1(KQRecoveryAttempterErrorKey);
    const QString description = QString::fromLatin1(KQLocalizedDescriptionKey);
    QTest::addColumn<int>("code");
    QTest::addColumn<QVariantMap>("userInfo");
    QTest::addColumn<bool>("stripped");
    const QVariantMap full{{description, QStringLiteral("Bad number")}, {attempter, QStringLiteral("fixer")}};
    QTest::newRow("formatting error with attempter") << 2048 << full << true;
    QTest::newRow("formatting error without attempter")
        << 2048 << QVariantMap{{description, QStringLiteral("Bad number")}} << false;
    QTest::newRow("other code with attempter") << 2047 << full << false;
}

void tst_InspectorWindow::errorPresentation()
{
    QFETCH(int, code);
    QFETCH(QVariantMap, userInfo);
    QFETCH(bool, stripped);
    const KQError error(QStringLiteral("SomeDomain"), code, userInfo);
    const KQError shown = KQInspectorWindow::errorForPresentation(error);
    QCOMPARE(shown.domain(), error.domain());
    QCOMPARE(shown.code(), code);
    QCOMPARE(shown.userInfo().isEmpty(), stripped);
    if (!stripped)
        QCOMPARE(shown, error);

    auto inspector = makeShownInspector();
    QMessageBox *box = inspector->presentError(error);
    QVERIFY(box);
    QCOMPARE(box->text().contains(QStringLiteral("Bad number")), !stripped);
    QCOMPARE(inspector->attachedSheet(), box);
    box->close();
}

void tst_InspectorWindow::removingModeEndsSheet()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    auto inspector = makeShownInspector();
    inspector->setMode(&mode);
    QPointer<QMessageBox> sheet = inspector->presentError(KQError(QStringLiteral("D"), 1));
    QSignalSpy finished(sheet.data(), &QDialog::finished);
    QVERIFY(inspector->attachedSheet());
    inspector->setMode(nullptr);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!inspector->attachedSheet());
}

void tst_InspectorWindow::ownerDestroyedWhileShown()
{
    QStringList log;
    auto inspector = makeShownInspector();
    DocumentWindow document;
    QVERIFY(activate(&document));
    // The mode belongs to its owner and dies with it.
    auto *owner = new RecordingOwner(QStringLiteral("A"), &log, nullptr);
    auto *mode = new RecordingMode(QStringLiteral("m"), &log, owner);
    owner->setMode(mode);
    document.setOwner(owner);
    inspector->updateFocusOwner(&document);
    QCOMPARE(inspector->mode(), mode);
    QPointer<QWidget> view = mode->view();

    log.clear();
    delete owner;
    QVERIFY(view.isNull());
    QCOMPARE(inspector->focusOwner(), nullptr);
    auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
    QVERIFY(empty);
    QCOMPARE(empty->focusedWindow(), &document);
    QVERIFY(empty->refreshTimer()); // shown, so refreshing
    // The mode was still whole when its owner went, and was taken down properly.
    QCOMPARE(log, (QStringList{"m:willHide", "m:wasHidden"}));

    // An owner that goes while another owner's mode is shown changes nothing.
    RecordingMode kept(QStringLiteral("k"), &log);
    RecordingOwner keeper(QStringLiteral("K"), &log, &kept);
    inspector->setFocusOwner(&keeper);
    delete new RecordingOwner(QStringLiteral("X"), &log, &kept);
    QCOMPARE(inspector->mode(), &kept);
}

void tst_InspectorWindow::modeDestroyedWhileShown()
{
    QStringList log;
    auto *mode = new RecordingMode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, mode);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&owner);
    QPointer<QWidget> view = mode->view();
    delete mode;
    QVERIFY(view.isNull());
    QVERIFY(qobject_cast<KQEmptyInspectorMode *>(inspector->mode()));
    QCOMPARE(inspector->focusOwner(), &owner);
    QCOMPARE(inspector->contentView()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly).size(), 1);

    // The empty mode is the inspector's own: swapped out, it goes.
    QPointer<KQInspectorMode> empty = inspector->mode();
    RecordingMode next(QStringLiteral("n"), &log);
    inspector->setMode(&next);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(empty.isNull());
}

void tst_InspectorWindow::inspectorDestroyedBeforeMode()
{
    QStringList log;
    RecordingMode mode(QStringLiteral("m"), &log);
    RecordingOwner owner(QStringLiteral("A"), &log, &mode);
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&owner);
    QPointer<QWidget> view = mode.view();
    inspector.reset();
    QVERIFY(!view.isNull()); // the view stays with its mode
    QCOMPARE(view->parentWidget(), nullptr);
    QVERIFY(log.endsWith(QStringLiteral("m:wasHidden")));
    QCOMPARE(mode.view(), view.data());
}

void tst_InspectorWindow::frameSurvivesRecreation()
{
    const QString key = QStringLiteral("tst.inspector.frame");
    {
        KQInspectorWindow first;
        first.setFrameAutosaveName(key);
        first.show();
        first.setGeometry(QRect(140, 160, 320, 240));
        QCoreApplication::processEvents(); // the save is coalesced to the next turn
    }
    KQInspectorWindow second;
    QVERIFY(second.geometry() != QRect(140, 160, 320, 240));
    second.setFrameAutosaveName(key);
    QCOMPARE(second.geometry(), QRect(140, 160, 320, 240));

    // A frame saved on a screen that is no longer there comes back on one
    // that is, with its size.
    QWidget elsewhere;
    elsewhere.setGeometry(5000, 4000, 320, 240);
    KQSettings::userDefaults()->setValue(key, elsewhere.saveGeometry());
    KQInspectorWindow third;
    third.setFrameAutosaveName(key);
    QCOMPARE(third.geometry().size(), QSize(320, 240));
    QVERIFY(QGuiApplication::screenAt(third.geometry().center()));
}

void tst_InspectorWindow::trackingFollowsActivation()
{
    QStringList log;
    RecordingMode modeA(QStringLiteral("mA"), &log);
    modeA.setTitle(QStringLiteral("Alpha"));
    RecordingMode modeB(QStringLiteral("mB"), &log);
    modeB.setTitle(QStringLiteral("Beta"));
    RecordingOwner ownerA(QStringLiteral("A"), &log, &modeA);
    RecordingOwner ownerB(QStringLiteral("B"), &log, &modeB);
    DocumentWindow windowA(&ownerA);
    DocumentWindow windowB(&ownerB);
    auto inspector = makeShownInspector();
    inspector->startTrackingResponderChain();

    for (int round = 0; round < 2; ++round) {
        QVERIFY(activate(&windowA));
        QCOMPARE(inspector->mode(), &modeA);
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Alpha"));
        QVERIFY(activate(&windowB));
        QCOMPARE(inspector->mode(), &modeB);
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Beta"));
    }
    // Activating the inspector itself changes nothing.
    QVERIFY(activate(inspector.get()));
    QCOMPARE(inspector->mode(), &modeB);
}

void tst_InspectorWindow::sharedInspectorIsOneHiddenWindow()
{
    KQInspectorWindow *shared = KQInspectorWindow::sharedInspectorWindow();
    QVERIFY(shared);
    QCOMPARE(KQInspectorWindow::sharedInspectorWindow(), shared);
    QVERIFY(!shared->isVisible());
    QCOMPARE(shared->frameAutosaveName(), QStringLiteral("QN.sharedInspectorWindow.frame"));
    QVERIFY(!shared->testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(!shared->canBecomeMainWindow());
    QCOMPARE(shared->focusOwner(), nullptr);
    QCOMPARE(shared->mode(), nullptr);
}

QTEST_MAIN(tst_InspectorWindow)
#include "tst_inspectorwindow.moc"
