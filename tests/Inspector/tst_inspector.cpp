#include "InspectorTestSupport.h"
#include "KQInspectorLayout_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQError.h>
#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <TarnCommon/KQImageDrawing.h>

#include <QtGui/QPainter>
#include <QtGui/QTextBlock>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextFragment>
#include <QtGui/QTextImageFormat>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QSizeGrip>
#include <QtWidgets/QTextEdit>

#include <limits>
#include <memory>

namespace {

const double largest = std::numeric_limits<double>::max();

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

class tst_Inspector : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }
    void cleanup();

    void handOverSendsHooksInOrder();
    void noOwnerShowsEmptyModeForMainWindow();
    void lookupIgnores_data();
    void lookupIgnores();
    void lookupAsksKeyWindowThenMainWindow();
    void modeSizesWindow_data();
    void modeSizesWindow();
    void limitAssertions_data();
    void limitAssertions();
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
    void ownerDestroyedWhileShown();
    void modeDestroyedWhileShown_data();
    void modeDestroyedWhileShown();
    void inspectorDestroyedBeforeMode();
    void frameSurvivesRecreation();
    void frameSavedOnceLeftAlone_data();
    void frameSavedOnceLeftAlone();
    void sharedInspectorIsOneHiddenWindow();

    void showingBuildsTextAndOneTimer();
    void refreshRebuildsOnlyForNewTitle_data();
    void refreshRebuildsOnlyForNewTitle();
    void missingTitle_data();
    void missingTitle();
    void documentIcon_data();
    void documentIcon();

    void flipMirrorsAboutCentreLine_data();
    void flipMirrorsAboutCentreLine();
    void transparentCopy_data();
    void transparentCopy();
    void badInputIsRefused();
    void firstRepresentation();
    void imageAsText();
};

void tst_Inspector::cleanup()
{
    const QList<QWidget *> windows = QApplication::topLevelWidgets();
    for (QWidget *window : windows)
        window->hide();
}

void tst_Inspector::handOverSendsHooksInOrder()
{
    QStringList log;
    RecordingMode modeA("mA", &log);
    RecordingMode modeB("mB", &log);
    RecordingOwner ownerA("A", &log, &modeA);
    RecordingOwner ownerB("B", &log, &modeB);
    auto inspector = makeShownInspector();

    inspector->setFocusOwner(&ownerA);
    QCOMPARE(log, (QStringList{"A:willGain", "mA:willShow", "mA:didShow", "A:didGain"}));
    QCOMPARE(modeA.view()->parentWidget(), inspector->contentView());

    log.clear();
    inspector->setFocusOwner(&ownerB);
    QCOMPARE(log, (QStringList{"A:willLose", "B:willGain", "mA:willHide", "mA:wasHidden", "mB:willShow",
                               "mB:didShow", "B:didGain", "A:didLose"}));
    QCOMPARE(inspector->focusOwner(), &ownerB);
    QCOMPARE(inspector->mode(), &modeB);
    QCOMPARE(modeA.view()->parentWidget(), nullptr);
    QCOMPARE(modeB.view()->parentWidget(), inspector->contentView());

    // The same owner again changes nothing.
    log.clear();
    QSignalSpy modeChanges(inspector.get(), &KQInspectorWindow::modeChanged);
    inspector->setFocusOwner(&ownerB);
    QVERIFY(log.isEmpty());
    QCOMPARE(modeChanges.count(), 0);
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

void tst_Inspector::noOwnerShowsEmptyModeForMainWindow()
{
    OneOwner s;
    auto inspector = makeShownInspector();
    DocumentWindow document;
    document.setWindowTitle("Letter");
    QVERIFY(activate(&document));

    inspector->setFocusOwner(&s.owner);
    inspector->setFocusOwner(nullptr);
    QCOMPARE(inspector->focusOwner(), nullptr);
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

enum class LookupCase {
    Normal,
    InspectorHidden,
    ApplicationInactive,
    OpenDialog,
    SaveDialog,
    InspectorItself,
    NoNotification
};
Q_DECLARE_METATYPE(LookupCase)

void tst_Inspector::lookupIgnores_data()
{
    QTest::addColumn<LookupCase>("lookupCase");
    QTest::addColumn<bool>("ownerFound");
    QTest::newRow("a document window") << LookupCase::Normal << true;
    QTest::newRow("inspector hidden") << LookupCase::InspectorHidden << false;
    QTest::newRow("application inactive") << LookupCase::ApplicationInactive << false;
    QTest::newRow("open file dialog") << LookupCase::OpenDialog << false;
    QTest::newRow("save file dialog") << LookupCase::SaveDialog << true;
    QTest::newRow("the inspector itself") << LookupCase::InspectorItself << false;
    QTest::newRow("no notification while hidden") << LookupCase::NoNotification << true;
}

void tst_Inspector::lookupIgnores()
{
    QFETCH(LookupCase, lookupCase);
    QFETCH(bool, ownerFound);
    OneOwner s;
    DocumentWindow document(&s.owner);
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
    case LookupCase::OpenDialog:
        inspector->updateFocusOwner(&dialog);
        break;
    case LookupCase::SaveDialog:
        dialog.setAcceptMode(QFileDialog::AcceptSave);
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
    QCOMPARE(inspector->focusOwner() == &s.owner, ownerFound);
    QCOMPARE(s.log.contains("A:willGain"), ownerFound);
}

void tst_Inspector::lookupAsksKeyWindowThenMainWindow()
{
    // While a dialog has the focus, the document behind it still drives the
    // inspector: the main window's chain is asked after the key window's.
    OneOwner s;
    DocumentWindow document(&s.owner);
    auto inspector = makeShownInspector();
    inspector->startTrackingResponderChain();
    QVERIFY(activate(&document));
    QCOMPARE(inspector->focusOwner(), &s.owner);
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

void tst_Inspector::modeSizesWindow_data()
{
    // The mode's limits are 200x100 to 400x300 and its view is 250x180.
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

void tst_Inspector::modeSizesWindow()
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
    QCOMPARE(inspector->contentMinSize(), resizable ? QSizeF(200, 100) : QSizeF(0, 0));
    QCOMPARE(inspector->contentMaxSize(), resizable ? QSizeF(400, 300) : QSizeF(largest, largest));
    QCOMPARE(inspector->resizeIncrements(), resizable ? QSizeF(1, 1) : QSizeF(largest, largest));
    QCOMPARE(bool(inspector->styleMask() & KQInspectorWindow::Resizable), resizable);
    QCOMPARE(inspector->showsResizeIndicator(), resizable);
    QCOMPARE(inspector->findChild<QSizeGrip *>()->isVisible(), resizable);
    // What the user can drag it to.
    QCOMPARE(inspector->minimumSize(), userMin);
    QCOMPARE(inspector->maximumSize(), userMax);

    // Later notices of the limits count only while the mode is resizable.
    s.mode.setMinSize(QSizeF(210, 110));
    QCOMPARE(inspector->contentMinSize(), resizable ? QSizeF(210, 110) : QSizeF(0, 0));
    s.mode.setResizable(true);
    QCOMPARE(inspector->contentMinSize(), QSizeF(210, 110));
}

void tst_Inspector::limitAssertions_data()
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

void tst_Inspector::limitAssertions()
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
    QVERIFY2(text.contains("(" + report + ")"), qPrintable(text));
    QVERIFY(text.contains("resizeWindowForNewMode"));
    QCOMPARE(text.count("Assertion failed"), 1); // the first failing check stops
    // The size is left alone, yet the mode is installed.
    QCOMPARE(inspector->geometry(), QRect(100, 200, 500, 50));
    QCOMPARE(s.mode.view()->size(), QSize(123, 45));
    QCOMPARE(s.mode.view()->parentWidget(), inspector->contentView());
    QVERIFY(s.log.contains("m:didShow"));
}

void tst_Inspector::propertiesFollowMode()
{
    OneOwner s;
    s.mode.setTitle("Colours");
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&s.owner);
    QCOMPARE(inspector->windowTitle(), QStringLiteral("Colours"));
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

void tst_Inspector::sizingRules_data()
{
    QTest::addColumn<QSizeF>("content");
    QTest::addColumn<QSizeF>("minSize");
    QTest::addColumn<QSizeF>("maxSize");
    QTest::addColumn<QSizeF>("expected");
    QTest::newRow("too wide and too low") << QSizeF(500, 50) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(400, 100);
    QTest::newRow("inside the limits") << QSizeF(250, 150) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(250, 150);
    QTest::newRow("too small") << QSizeF(10, 10) << QSizeF(50, 50) << QSizeF(1e300, 1e300) << QSizeF(50, 50);
}

void tst_Inspector::sizingRules()
{
    QFETCH(QSizeF, content);
    QFETCH(QSizeF, minSize);
    QFETCH(QSizeF, maxSize);
    QFETCH(QSizeF, expected);
    QCOMPARE(KQInspectorLayout::clampedContentSize(content, minSize, maxSize), expected);
    // In y-up space the top edge is the rectangle's maximum y.
    const QRectF moved = KQInspectorLayout::contentKeepingTopEdge(QRectF(10, 300, content.width(), content.height()),
                                                                  expected);
    QCOMPARE(moved, QRectF(10, 300 + content.height() - expected.height(), expected.width(), expected.height()));
}

void tst_Inspector::showAndHideTellTheMode()
{
    OneOwner s;
    KQInspectorWindow inspector;
    inspector.setMode(&s.mode);
    QVERIFY(s.log.isEmpty()); // installed while hidden: no showing hooks

    inspector.orderFont();
    QVERIFY(inspector.isVisible());
    inspector.show(); // already on screen: nothing new
    QCOMPARE(s.log, QStringList{"m:willShow"});
    inspector.orderOut();
    QCOMPARE(s.log, (QStringList{"m:willShow", "m:wasHidden"}));
    inspector.orderBack();
    inspector.close(); // closing hides, and keeps the mode
    QCOMPARE(s.log, (QStringList{"m:willShow", "m:wasHidden", "m:willShow", "m:wasHidden"}));
    QCOMPARE(inspector.mode(), &s.mode);
}

void tst_Inspector::showingLooksOwnerUpWhileHidden()
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

void tst_Inspector::unsizedViewInHiddenInspector()
{
    // The empty mode's text view starts without a size; installed while the
    // inspector is hidden (its owner's window closed meanwhile), it must not
    // shrink the inspector to nothing.
    OneOwner s;
    KQInspectorWindow inspector;
    inspector.setGeometry(100, 200, 30, 260);
    inspector.setFocusOwner(&s.owner);
    QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160)); // a sized view is taken as it is
    inspector.setFocusOwner(nullptr);
    QVERIFY(emptyMode(&inspector));
    QCOMPARE(inspector.geometry(), QRect(100, 200, 220, 160));

    // Within the mode's limits, though.
    inspector.setMode(nullptr);
    inspector.setGeometry(100, 200, 30, 260);
    inspector.setMode(new KQEmptyInspectorMode(nullptr, &inspector));
    QCOMPARE(inspector.geometry(), QRect(100, 200, 50, 260));
}

void tst_Inspector::deactivationHidesAndReactivationLooksUpLater()
{
    OneOwner s;
    DocumentWindow document;
    auto inspector = makeShownInspector();
    inspector->setHidesOnDeactivate(true);
    inspector->setMode(&s.mode);
    QVERIFY(activate(&document));

    s.log.clear();
    inspector->appWillResignActive();
    QVERIFY(!inspector->appIsActive());
    QVERIFY(!inspector->isVisible());
    QCOMPARE(s.log, QStringList{"m:wasHidden"});

    document.setOwner(&s.owner);
    inspector->appDidBecomeActive();
    QVERIFY(inspector->isVisible());
    QCOMPARE(inspector->focusOwner(), nullptr); // the lookup waits for the next turn
    QCoreApplication::processEvents();
    QVERIFY(inspector->appIsActive());
    QCOMPARE(inspector->focusOwner(), &s.owner);
}

void tst_Inspector::closingOwnersWindowDropsOwner()
{
    OneOwner s;
    // Both windows hand the inspector to the same owner, but it controls only one.
    RefusableWindow controlled(&s.owner);
    kq_setWindowController(&controlled, &s.owner);
    DocumentWindow unrelated(&s.owner);
    auto inspector = makeShownInspector();
    inspector->startTrackingResponderChain();
    QVERIFY(activate(&unrelated));
    QCOMPARE(inspector->focusOwner(), &s.owner);

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

void tst_Inspector::errorPresentation_data()
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

void tst_Inspector::errorPresentation()
{
    QFETCH(int, code);
    QFETCH(QVariantMap, userInfo);
    QFETCH(bool, stripped);
    const KQError error(QStringLiteral("SomeDomain"), code, userInfo);
    const KQError shown = KQInspectorWindow::errorForPresentation(error);
    QCOMPARE(shown, stripped ? KQError(error.domain(), code) : error);

    OneOwner s;
    auto inspector = makeShownInspector();
    inspector->setMode(&s.mode);
    QMessageBox *box = inspector->presentError(error);
    QVERIFY(box);
    QCOMPARE(box->text().contains("Bad number"), !stripped);
    QCOMPARE(inspector->attachedSheet(), box);
    // Taking the mode away ends the sheet.
    QSignalSpy finished(box, &QDialog::finished);
    inspector->setMode(nullptr);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!inspector->attachedSheet());
}

void tst_Inspector::ownerDestroyedWhileShown()
{
    QStringList log;
    auto inspector = makeShownInspector();
    DocumentWindow document;
    QVERIFY(activate(&document));
    // The mode belongs to its owner and dies with it.
    auto *owner = new RecordingOwner("A", &log, nullptr);
    auto *mode = new RecordingMode("m", &log, owner);
    owner->setMode(mode);
    document.setOwner(owner);
    inspector->updateFocusOwner(&document);
    QCOMPARE(inspector->mode(), mode);
    QPointer<QWidget> view = mode->view();

    log.clear();
    delete owner;
    QVERIFY(view.isNull());
    QCOMPARE(inspector->focusOwner(), nullptr);
    QVERIFY(emptyMode(inspector.get()));
    QCOMPARE(emptyMode(inspector.get())->focusedWindow(), &document);
    QVERIFY(emptyMode(inspector.get())->refreshTimer()); // shown, so refreshing
    // The mode was still whole when its owner went, and was taken down properly.
    QCOMPARE(log, (QStringList{"m:willHide", "m:wasHidden"}));

    // An owner that goes while another owner's mode is shown changes nothing.
    OneOwner keeper;
    inspector->setFocusOwner(&keeper.owner);
    delete new RecordingOwner("X", &log, &keeper.mode);
    QCOMPARE(inspector->mode(), &keeper.mode);
}

void tst_Inspector::modeDestroyedWhileShown_data()
{
    QTest::addColumn<bool>("ownerGoesToo");
    QTest::addColumn<QStringList>("afterwards");
    QTest::newRow("owner makes a new mode")
        << false << QStringList{"A:willLose", "A:didLose", "A:willGain", "n:willShow", "n:didShow", "A:didGain"};
    QTest::newRow("owner destroyed with its mode") << true << QStringList{};
}

void tst_Inspector::modeDestroyedWhileShown()
{
    QFETCH(bool, ownerGoesToo);
    QFETCH(QStringList, afterwards);
    QStringList log;
    auto *mode = new RecordingMode("m", &log);
    RecordingMode next("n", &log);
    QPointer<RecordingOwner> owner = new RecordingOwner("A", &log, mode);
    DocumentWindow document(owner);
    auto inspector = makeShownInspector();
    QVERIFY(activate(&document));
    inspector->updateFocusOwner(&document);
    QCOMPARE(inspector->mode(), mode);
    QPointer<QWidget> view = mode->view();

    log.clear();
    delete mode;
    owner->setMode(&next);
    if (ownerGoesToo)
        delete owner.data();
    // At once: no blank window, and the owner no longer stands behind it.
    QVERIFY(view.isNull());
    QPointer<KQInspectorMode> empty = inspector->mode();
    QVERIFY(emptyMode(inspector.get()));
    QCOMPARE(installedViews(inspector.get()), 1);
    QCOMPARE(inspector->focusOwner(), nullptr);

    // Once the destruction is over, a living owner hears of its loss and,
    // its window having the focus, is asked again.
    QCoreApplication::sendPostedEvents();
    QCOMPARE(log, afterwards);
    QCOMPARE(inspector->focusOwner(), owner.data());
    QCOMPARE(inspector->mode() == &next, !ownerGoesToo);
    // The empty mode is the inspector's own: swapped out, it goes.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(empty.isNull(), !ownerGoesToo);
    delete owner.data();
}

void tst_Inspector::inspectorDestroyedBeforeMode()
{
    OneOwner s;
    auto inspector = makeShownInspector();
    inspector->setFocusOwner(&s.owner);
    QPointer<QWidget> view = s.mode.view();
    inspector.reset();
    QVERIFY(!view.isNull()); // the view stays with its mode
    QCOMPARE(view->parentWidget(), nullptr);
    QVERIFY(s.log.endsWith("m:wasHidden"));
    QCOMPARE(s.mode.view(), view.data());
}

void tst_Inspector::frameSurvivesRecreation()
{
    const QString key = QStringLiteral("tst.inspector.frame");
    const QRect frame(140, 160, 320, 240);
    {
        KQInspectorWindow first;
        first.setFrameAutosaveName(key);
        first.show();
        first.setGeometry(frame);
        QCoreApplication::processEvents();
    }
    KQInspectorWindow second;
    QVERIFY(second.geometry() != frame);
    second.setFrameAutosaveName(key);
    QCOMPARE(second.geometry(), frame);

    // A frame saved on a screen that is no longer there comes back on one
    // that is, with its size.
    QWidget elsewhere;
    elsewhere.setGeometry(5000, 4000, 320, 240);
    KQSettings::userDefaults()->setValue(key, elsewhere.saveGeometry());
    KQInspectorWindow third;
    third.setFrameAutosaveName(key);
    QCOMPARE(third.geometry().size(), frame.size());
    QVERIFY(QGuiApplication::screenAt(third.geometry().center()));
}

enum class SaveTrigger { None, QuietPeriod, Hiding, Quitting };
Q_DECLARE_METATYPE(SaveTrigger)

void tst_Inspector::frameSavedOnceLeftAlone_data()
{
    QTest::addColumn<double>("stillFor");
    QTest::addColumn<SaveTrigger>("trigger");
    QTest::addColumn<bool>("saved");
    QTest::newRow("still dragging") << 0.4 << SaveTrigger::None << false;
    QTest::newRow("left alone") << KQInspectorWindow::frameSaveQuietPeriod << SaveTrigger::QuietPeriod << true;
    QTest::newRow("hidden mid-drag") << 0.1 << SaveTrigger::Hiding << true;
    QTest::newRow("application quits mid-drag") << 0.1 << SaveTrigger::Quitting << true;
}

void tst_Inspector::frameSavedOnceLeftAlone()
{
    QFETCH(double, stillFor);
    QFETCH(SaveTrigger, trigger);
    QFETCH(bool, saved);
    const QString key = QStringLiteral("tst.inspector.drag");
    KQSettings::userDefaults()->remove(key);
    double now = 100;
    KQInspectorWindow inspector;
    inspector.setClock([&now] { return now; });
    inspector.setFrameAutosaveName(key);
    inspector.show();
    QVERIFY(QTest::qWaitForWindowExposed(&inspector));
    QCoreApplication::processEvents();
    KQSettings::userDefaults()->remove(key);

    // A drag: a new position every 0.1 s, none of them saved yet.
    for (int step = 1; step <= 5; ++step) {
        now += 0.1;
        inspector.move(QPoint(100 + 10 * step, 150));
        QCoreApplication::processEvents();
        inspector.poll();
    }
    QVERIFY(inspector.hasUnsavedFrame());
    QVERIFY(!KQSettings::userDefaults()->contains(key));

    now += stillFor;
    switch (trigger) {
    case SaveTrigger::None:
    case SaveTrigger::QuietPeriod:
        inspector.poll();
        break;
    case SaveTrigger::Hiding:
        inspector.hide();
        break;
    case SaveTrigger::Quitting:
        QVERIFY(QMetaObject::invokeMethod(QCoreApplication::instance(), "aboutToQuit", Qt::DirectConnection));
        break;
    }
    QCOMPARE(inspector.hasUnsavedFrame(), !saved);
    QCOMPARE(KQSettings::userDefaults()->value(key).toByteArray(), saved ? inspector.saveGeometry() : QByteArray());
}

void tst_Inspector::sharedInspectorIsOneHiddenWindow()
{
    KQInspectorWindow *shared = KQInspectorWindow::sharedInspectorWindow();
    QVERIFY(shared);
    QCOMPARE(KQInspectorWindow::sharedInspectorWindow(), shared);
    QVERIFY(!shared->isVisible());
    QCOMPARE(shared->frameAutosaveName(), QStringLiteral("QN.sharedInspectorWindow.frame"));
    QVERIFY(!shared->testAttribute(Qt::WA_DeleteOnClose));
    QVERIFY(!shared->canBecomeMainWindow());
}

void tst_Inspector::showingBuildsTextAndOneTimer()
{
    QWidget window;
    window.setWindowTitle(QStringLiteral("Report.txt"));
    KQEmptyInspectorMode mode(&window);
    auto *textView = qobject_cast<QTextEdit *>(mode.view());
    QVERIFY(textView);
    QCOMPARE(mode.textView(), textView);
    QCOMPARE(textView->textInteractionFlags(), Qt::NoTextInteraction);

    // Built at once, not on the first tick.
    mode.modeWillShow();
    QCOMPARE(textView->toPlainText(), QStringLiteral("Inspector not available for window:\nReport.txt"));
    QCOMPARE(textView->document()->begin().blockFormat().alignment(), Qt::AlignHCenter);
    QPointer<QTimer> first = mode.refreshTimer();
    QVERIFY(first && first->isActive());
    QCOMPARE(first->interval(), 2000);

    // Shown again: still exactly one timer.
    mode.modeWillShow();
    QVERIFY(first.isNull());
    QCOMPARE(mode.findChildren<QTimer *>().size(), 1);
    QVERIFY(mode.refreshTimer()->isActive());

    // Hidden: no timer at all, and hiding twice is harmless.
    mode.modeWasHidden();
    mode.modeWasHidden();
    QCOMPARE(mode.refreshTimer(), nullptr);
    QVERIFY(mode.findChildren<QTimer *>().isEmpty());
}

void tst_Inspector::refreshRebuildsOnlyForNewTitle_data()
{
    QTest::addColumn<QString>("newTitle");
    QTest::addColumn<double>("elapsed");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("rebuilt");
    QTest::newRow("unchanged") << QStringLiteral("Draft") << 2.0 << false << false;
    QTest::newRow("renamed") << QStringLiteral("Final") << 2.0 << false << true;
    QTest::newRow("renamed, much later") << QStringLiteral("Final") << 7.5 << false << true;
    QTest::newRow("renamed, not yet two seconds") << QStringLiteral("Final") << 1.9 << false << false;
    QTest::newRow("renamed while hidden") << QStringLiteral("Final") << 2.0 << true << false;
    QTest::newRow("modified marker") << QStringLiteral("Draft[*]") << 2.0 << false << false;
}

void tst_Inspector::refreshRebuildsOnlyForNewTitle()
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

    // Marks the text so a rebuild shows; the clock moves on and the refresh
    // is polled rather than waited for.
    mode.textView()->setPlainText(QStringLiteral("sentinel"));
    window.setWindowTitle(newTitle);
    now += elapsed;
    mode.poll();
    const QString text = mode.textView()->toPlainText();
    QCOMPARE(text == QStringLiteral("sentinel"), !rebuilt);
    if (rebuilt)
        QVERIFY(text.endsWith(newTitle));
}

void tst_Inspector::missingTitle_data()
{
    QTest::addColumn<bool>("withWindow");
    QTest::addColumn<bool>("windowGoesAway");
    QTest::newRow("untitled window") << true << false;
    QTest::newRow("no window") << false << false;
    QTest::newRow("window closed and deleted") << true << true;
}

void tst_Inspector::missingTitle()
{
    QFETCH(bool, withWindow);
    QFETCH(bool, windowGoesAway);
    auto window = std::make_unique<QWidget>();
    if (windowGoesAway)
        window->setWindowTitle(QStringLiteral("Soon gone"));
    KQEmptyInspectorMode mode(withWindow ? window.get() : nullptr);
    mode.modeWillShow();
    if (windowGoesAway) {
        QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("Soon gone")));
        window.reset();
        mode.update();
    }
    QCOMPARE(mode.lastWindowTitle(), QStringLiteral("?"));
    QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("\n?")));
}

void tst_Inspector::documentIcon_data()
{
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<bool>("hasIcon");
    QTest::newRow("document window") << QStringLiteral("/tmp/Notes.txt") << true;
    QTest::newRow("window without file") << QString() << false;
}

void tst_Inspector::documentIcon()
{
    QFETCH(QString, filePath);
    QFETCH(bool, hasIcon);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Notes"));
    QPixmap red(32, 32);
    red.fill(Qt::red);
    window.setWindowIcon(QIcon(red));
    window.setWindowFilePath(filePath);
    QCOMPARE(kq_documentIconOfWindow(&window).isNull(), !hasIcon);

    KQEmptyInspectorMode mode(&window);
    mode.modeWillShow();
    // The text's pieces in order, the notice's line first.
    QList<QTextFragment> pieces;
    QList<QTextImageFormat> images;
    for (QTextBlock block = mode.textView()->document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            pieces.append(it.fragment());
            if (it.fragment().charFormat().isImageFormat())
                images.append(it.fragment().charFormat().toImageFormat());
        }
    }
    QVERIFY(!pieces.isEmpty());
    const QTextCharFormat title = pieces.last().charFormat();
    QCOMPARE(pieces.last().text(), QStringLiteral("Notes"));
    // Only the title is raised, and only beside an icon.
    QCOMPARE(title.property(KQEmptyInspectorMode::BaselineOffsetProperty).toDouble(), hasIcon ? 3.0 : 0.0);
    QCOMPARE(title.baselineOffset() > 0, hasIcon);
    QVERIFY(!pieces.first().charFormat().hasProperty(KQEmptyInspectorMode::BaselineOffsetProperty));

    QCOMPARE(images.size(), hasIcon ? 1 : 0);
    const QString plain = mode.textView()->toPlainText();
    if (hasIcon) {
        QCOMPARE(QSizeF(images.first().width(), images.first().height()), QSizeF(16, 16));
        // The picture itself is there to be drawn.
        QVERIFY(mode.textView()->document()->resource(QTextDocument::ImageResource, QUrl(images.first().name())).isValid());
        QVERIFY(plain.endsWith(QChar(QChar::ObjectReplacementCharacter) + QStringLiteral(" Notes")));
    } else {
        QVERIFY(plain.endsWith(QStringLiteral("window:\nNotes")));
    }
}

void tst_Inspector::flipMirrorsAboutCentreLine_data()
{
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("expected");
    QTest::newRow("top of the rectangle") << 10.0 << 30.0;
    QTest::newRow("bottom of the rectangle") << 30.0 << 10.0;
    QTest::newRow("centre line") << 20.0 << 20.0;
    QTest::newRow("outside") << 0.0 << 40.0;
}

void tst_Inspector::flipMirrorsAboutCentreLine()
{
    QFETCH(double, y);
    QFETCH(double, expected);
    QImage canvas(60, 60, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&canvas);
    painter.translate(5, 0); // what was there before is kept, the flip comes first
    q_DRAWING_flip_graphics_context_for_rect(&painter, QRectF(0, 10, 50, 20));
    QCOMPARE(painter.transform().map(QPointF(3, y)), QPointF(8, expected));
}

void tst_Inspector::transparentCopy_data()
{
    QTest::addColumn<double>("fraction");
    QTest::addColumn<int>("alpha");
    QTest::newRow("opaque copy") << 1.0 << 255;
    QTest::newRow("half") << 0.5 << 128;
    QTest::newRow("invisible") << 0.0 << 0;
}

void tst_Inspector::transparentCopy()
{
    QFETCH(double, fraction);
    QFETCH(int, alpha);
    QImage original(12, 7, QImage::Format_ARGB32);
    original.fill(QColor(200, 40, 40));
    const QImage copy = q_IMAGE_transparent_image_from_image(original, fraction);
    QCOMPARE(copy.size(), original.size());
    QVERIFY(qAbs(copy.pixelColor(3, 3).alpha() - alpha) <= 1);
    if (alpha == 255)
        QCOMPARE(copy.pixelColor(3, 3), original.pixelColor(3, 3));
}

void tst_Inspector::badInputIsRefused()
{
    MessageCapture errors;
    QVERIFY(q_IMAGE_transparent_image_from_image(QImage(), 0.5).isNull());
    q_DRAWING_flip_graphics_context_for_rect(nullptr, QRectF(0, 0, 1, 1));
    const QByteArray text = errors.text();
    QVERIFY(text.contains("(originalImage != nil)"));
    QVERIFY(text.contains("q_IMAGE_transparent_image_from_image"));
    QVERIFY(text.contains("painter != nullptr"));
}

void tst_Inspector::firstRepresentation()
{
    QVERIFY(QDX__Copy_NSImage_to_CGImageRef(QIcon()).isNull());
    QPixmap small(8, 8);
    small.fill(Qt::green);
    QPixmap large(32, 32);
    large.fill(Qt::blue);
    QIcon icon;
    icon.addPixmap(small);
    icon.addPixmap(large);
    const QImage image = QDX__Copy_NSImage_to_CGImageRef(icon);
    QCOMPARE(image.size(), QSize(8, 8));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::green));
}

void tst_Inspector::imageAsText()
{
    QImage picture(10, 6, QImage::Format_ARGB32);
    picture.fill(QColor(10, 200, 30));
    const QTextDocumentFragment fragment = q_IMAGE_attributed_string_from_image(picture);
    QCOMPARE(fragment.toPlainText(), QString(QChar(QChar::ObjectReplacementCharacter)));

    // Inserted into any document, the picture comes along.
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

QTEST_MAIN(tst_Inspector)
#include "tst_inspector.moc"
