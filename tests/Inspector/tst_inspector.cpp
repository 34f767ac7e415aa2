#include "KQInspectorLayout_p.h"
#include "MessageCapture.h"

#include <TarnCommon/TarnCommon.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <cstdio>
#include <memory>

namespace {

// A mode whose every value a test can set, and which logs each hook it hears as "<name>:<hook>".
class RecordingMode : public KQInspectorMode
{
    Q_OBJECT

public:
    RecordingMode(const QString &name, QStringList *log, QObject *parent = nullptr) : KQInspectorMode(parent), m_name(name), m_log(log) {}

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

    void modeWillShow() override { record("willShow"); }
    void modeWasHidden() override { record("wasHidden"); }
    Q_INVOKABLE void modeDidShow() { record("didShow"); }
    Q_INVOKABLE void modeWillHide() { record("willHide"); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        view->resize(m_viewSize);
        setView(view);
    }

private:
    void record(const char *what) { m_log->append(m_name + QLatin1Char(':') + QLatin1String(what)); }

    QString m_name;
    QStringList *m_log;
    QString m_title;
    bool m_resizable = true;
    QSizeF m_minSize{50, 50};
    QSizeF m_maxSize{2000, 2000};
    qint64 m_level = 3;
    QSize m_viewSize{220, 160};
};

// A focus owner that logs the messages it receives and hands over its mode; as a
// window controller it answers the lookup itself.
class RecordingOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    RecordingOwner(const QString &name, QStringList *log, KQInspectorMode *mode) : m_name(name), m_log(log), m_mode(mode) {}

    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        record("willGain");
        return m_mode.data();
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { record("didGain"); }
    void willLoseFocusOfInspector(KQInspectorWindow *) override { record("willLose"); }
    void didLoseFocusOfInspector(KQInspectorWindow *) override { record("didLose"); }
    void setMode(KQInspectorMode *mode) { m_mode = mode; }
    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }

private:
    void record(const char *what) { m_log->append(m_name + QLatin1Char(':') + QLatin1String(what)); }

    QString m_name;
    QStringList *m_log;
    QPointer<KQInspectorMode> m_mode;
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
    if (!condition)
        std::printf("FAIL: %s\n", what);
    failures += condition ? 0 : 1;
}

bool waitFor(const std::function<bool()> &condition) { return QTest::qWaitFor(condition, 10000); }

// The shared inspector with real windows under an X server, run twice by
// inspector_e2e.sh. The first run activates two document windows in turn (the
// inspector's mode and title must follow), moves the inspector and quits, which
// saves its frame; the second run must show the shared inspector there.
const QPoint userPlace(333, 222);

int firstRun()
{
    KQSettings::enableTestMode(true);
    QStringList log;
    RecordingMode alphaMode(QStringLiteral("alpha"), &log), betaMode(QStringLiteral("beta"), &log);
    alphaMode.setTitle(QStringLiteral("Alpha Inspector"));
    betaMode.setTitle(QStringLiteral("Beta Inspector"));
    RecordingOwner alphaOwner(QStringLiteral("A"), &log, &alphaMode), betaOwner(QStringLiteral("B"), &log, &betaMode);
    DocumentWindow alpha(&alphaOwner), beta(&betaOwner);
    alpha.setGeometry(40, 60, 320, 200);
    beta.setGeometry(420, 60, 320, 200);
    alpha.show();
    beta.show();
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    for (auto [window, mode] : {std::pair(&alpha, &alphaMode), {&beta, &betaMode}, {&alpha, &alphaMode}}) {
        window->raise();
        window->activateWindow();
        check(waitFor([&] { return inspector->mode() == mode && inspector->windowTitle() == mode->inspectorTitle(); }),
              "the inspector shows the active window's mode and title");
    }
    inspector->move(userPlace);
    check(waitFor([&] { return inspector->frameGeometry().topLeft() == userPlace; }), "inspector moved by the window system");
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec(); // quitting saves the frame
    return failures;
}

int secondRun()
{
    KQSettings::enableTestMode(false);
    KQInspectorWindow *inspector = KQInspectorWindow::sharedInspectorWindow();
    inspector->orderFont();
    check(waitFor([&] { return inspector->isVisible() && inspector->frameGeometry().topLeft() == userPlace; }),
          "the restarted inspector is shown where the user left it");
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
        QCOMPARE(modeB.view()->parentWidget(), inspector->contentView());

        // The same owner again changes nothing.
        log.clear();
        QSignalSpy modeChanges(inspector.get(), &KQInspectorWindow::modeChanged);
        inspector->setFocusOwner(&ownerB);
        QVERIFY(log.isEmpty() && modeChanges.isEmpty());

        // No owner: the empty mode, for the main window.
        DocumentWindow document;
        document.setWindowTitle("Letter");
        QVERIFY(activate(&document));
        inspector->setFocusOwner(nullptr);
        const auto *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
        QVERIFY(empty);
        QCOMPARE(empty->lastWindowTitle(), QStringLiteral("Letter"));
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Inspector"));
    }

    void lookupIgnores_data()
    {
        QTest::addColumn<QString>("notice"); // where the lookup starts
        QTest::addColumn<bool>("ownerFound");
        QTest::newRow("a document window") << "document" << true;
        QTest::newRow("inspector hidden") << "document, hidden" << false;
        QTest::newRow("open file dialog") << "open dialog" << false;
        QTest::newRow("save file dialog") << "save dialog" << true;
        QTest::newRow("the inspector itself") << "inspector" << false;
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
        if (notice.startsWith("document"))
            inspector->updateFocusOwner(&document);
        else if (notice.endsWith("dialog"))
            inspector->updateFocusOwner(&dialog);
        else
            inspector->updateFocusOwner(inspector.get());
        QCOMPARE(inspector->focusOwner() == &s.owner, ownerFound);
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
        QDialog dialog;
        QVERIFY(activate(&dialog));
        QCOMPARE(inspector->mainWindow(), &document);
        inspector->updateFocusOwner(&dialog);
        QCOMPARE(inspector->focusOwner(), &s.owner);
        document.hide(); // a main window that left the screen is no main window
        QCOMPARE(inspector->mainWindow(), nullptr);

        // A controller attached to a plain window answers for it.
        RecordingMode otherMode("n", &s.log);
        RecordingOwner controller("C", &s.log, &otherMode);
        QWidget plain;
        kq_setWindowController(&plain, &controller);
        QVERIFY(activate(&plain));
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
        QTest::addColumn<QSize>("userMin"); // what the user can drag it to
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
        QCOMPARE(inspector->findChild<QSizeGrip *>()->isVisible(), resizable);
        QCOMPARE(inspector->minimumSize(), userMin);
        QCOMPARE(inspector->maximumSize(), userMax);
    }

    void limitAssertions_data()
    {
        QTest::addColumn<QSizeF>("minSize");
        QTest::addColumn<QSizeF>("maxSize");
        QTest::addColumn<QString>("report");
        QTest::newRow("max width below min width") << QSizeF(300, 100) << QSizeF(200, 300) << "minSize.width <= maxSize.width";
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
        auto inspector = makeShownInspector(QRect(100, 200, 500, 50));
        MessageCapture errors;
        inspector->setFocusOwner(&s.owner);
        const QString text = QString::fromUtf8(errors.text());
        QVERIFY2(text.contains("(" + report + ")") && text.count("Assertion failed") == 1, qPrintable(text));
        // The size is left alone, yet the mode is installed.
        QCOMPARE(inspector->geometry(), QRect(100, 200, 500, 50));
        QCOMPARE(s.mode.view()->parentWidget(), inspector->contentView());
    }

    void propertiesFollowMode()
    {
        OneOwner s;
        auto inspector = makeShownInspector();
        inspector->setFocusOwner(&s.owner);
        QVERIFY(inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        s.mode.setTitle("Shapes");
        QCOMPARE(inspector->windowTitle(), QStringLiteral("Shapes"));
        QSignalSpy levelChanges(inspector.get(), &KQInspectorWindow::levelChanged);
        s.mode.setLevel(0);
        QCOMPARE(levelChanges.count(), 1);
        QVERIFY(!inspector->windowFlags().testFlag(Qt::WindowStaysOnTopHint) && inspector->isVisible());
    }

    // In y-up space the top edge is the rectangle's maximum y.
    void sizingRules_data()
    {
        QTest::addColumn<QSizeF>("content");
        QTest::addColumn<QSizeF>("minSize");
        QTest::addColumn<QSizeF>("maxSize");
        QTest::addColumn<QSizeF>("expected");
        QTest::newRow("too wide and too low") << QSizeF(500, 50) << QSizeF(200, 100) << QSizeF(400, 300) << QSizeF(400, 100);
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
        DocumentWindow document(&s.owner);
        QVERIFY(activate(&document));
        KQInspectorWindow inspector;
        inspector.appDidBecomeActive();
        QCoreApplication::processEvents();
        inspector.show();
        // Installed while still hidden, then told of the showing once.
        QCOMPARE(s.log, (QStringList{"A:willGain", "A:didGain", "m:willShow"}));
        s.log.clear();
        inspector.close(); // closing hides, and keeps the mode
        QCOMPARE(s.log, QStringList{"m:wasHidden"});
        QCOMPARE(inspector.mode(), &s.mode);
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
        // A close that the window refuses (a document asking to save first) is no closing.
        controlled.refuseClose = true;
        QVERIFY(!controlled.close());
        QCOMPARE(inspector->focusOwner(), &s.owner);
        controlled.refuseClose = false;
        QVERIFY(controlled.close());
        QCOMPARE(inspector->focusOwner(), nullptr);
        QVERIFY(qobject_cast<KQEmptyInspectorMode *>(inspector->mode()));
    }

    // A formatting error with a recovery attempter is shown bare; the sheet ends with the mode.
    void errorPresentation_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("stripped");
        QTest::newRow("formatting error") << 2048 << true;
        QTest::newRow("other error") << 2047 << false;
    }

    void errorPresentation()
    {
        QFETCH(int, code);
        QFETCH(bool, stripped);
        const QVariantMap info{{QString::fromLatin1(KQLocalizedDescriptionKey), "Bad number"},
                               {QString::fromLatin1(KQRecoveryAttempterErrorKey), "fixer"}};
        const KQError error(QStringLiteral("SomeDomain"), code, info);
        OneOwner s;
        auto inspector = makeShownInspector();
        inspector->setMode(&s.mode);
        QMessageBox *box = inspector->presentError(error);
        QCOMPARE(box->text().contains("Bad number"), !stripped);
        QSignalSpy finished(box, &QDialog::finished);
        inspector->setMode(nullptr);
        QCOMPARE(finished.count(), 1);
    }

    // A mode destroyed while shown leaves no blank window: the empty mode at once,
    // then its owner is asked again, its window having the focus.
    void modeDestroyedWhileShown()
    {
        QStringList log;
        RecordingOwner owner("A", &log, nullptr);
        auto *mode = new RecordingMode("m", &log);
        owner.setMode(mode);
        RecordingMode next("n", &log);
        DocumentWindow document(&owner);
        auto inspector = makeShownInspector();
        QVERIFY(activate(&document));
        inspector->updateFocusOwner(&document);
        log.clear();
        delete mode;
        owner.setMode(&next);
        KQEmptyInspectorMode *empty = qobject_cast<KQEmptyInspectorMode *>(inspector->mode());
        QVERIFY(empty);
        QCOMPARE(inspector->focusOwner(), nullptr);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(log, (QStringList{"A:willLose", "A:didLose", "A:willGain", "n:willShow", "n:didShow", "A:didGain"}));
        QCOMPARE(inspector->mode(), &next);
    }

    // A frame saved on a screen that is no longer there comes back on one that is, with its size.
    void frameFromLostScreen()
    {
        QWidget elsewhere;
        elsewhere.setGeometry(5000, 4000, 320, 240);
        KQSettings::userDefaults()->setValue(QStringLiteral("tst.inspector.frame"), elsewhere.saveGeometry());
        KQInspectorWindow inspector;
        inspector.setFrameAutosaveName(QStringLiteral("tst.inspector.frame"));
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

    void emptyModeRefreshesOnlyForNewTitle_data()
    {
        QTest::addColumn<QString>("newTitle");
        QTest::addColumn<double>("elapsed");
        QTest::addColumn<bool>("rebuilt");
        QTest::newRow("unchanged") << "Draft" << 2.0 << false;
        QTest::newRow("renamed") << "Final" << 2.0 << true;
        QTest::newRow("renamed, not yet two seconds") << "Final" << 1.9 << false;
    }

    void emptyModeRefreshesOnlyForNewTitle()
    {
        QFETCH(QString, newTitle);
        QFETCH(double, elapsed);
        QFETCH(bool, rebuilt);
        QWidget window;
        window.setWindowTitle(QStringLiteral("Draft"));
        KQEmptyInspectorMode mode(&window);
        double now = 50;
        mode.setClock([&now] { return now; });
        mode.modeWillShow();
        mode.textView()->setPlainText(QStringLiteral("sentinel")); // a rebuild replaces it
        window.setWindowTitle(newTitle);
        now += elapsed;
        mode.poll();
        QCOMPARE(mode.textView()->toPlainText(), rebuilt ? "Inspector not available for window:\n" + newTitle : QStringLiteral("sentinel"));
    }

    // Built at once when shown, naming the window ("?" once it is gone), beside its
    // document icon when it has one: a 16-point picture, the title raised beside it.
    void emptyModeText_data()
    {
        QTest::addColumn<QString>("filePath");
        QTest::addColumn<bool>("deleted"); // once shown
        QTest::addColumn<QString>("text");
        const QString notice = QStringLiteral("Inspector not available for window:\n");
        QTest::newRow("window closed and deleted") << QString() << true << notice + "?";
        QTest::newRow("document window") << "/tmp/Notes.txt" << false << notice + QChar(QChar::ObjectReplacementCharacter) + " Notes";
    }

    void emptyModeText()
    {
        QFETCH(QString, filePath);
        QFETCH(bool, deleted);
        QFETCH(QString, text);
        auto shown = std::make_unique<QWidget>();
        shown->setWindowTitle(QStringLiteral("Notes"));
        QPixmap red(32, 32);
        red.fill(Qt::red);
        shown->setWindowIcon(QIcon(red));
        shown->setWindowFilePath(filePath);
        KQEmptyInspectorMode mode(shown.get());
        mode.modeWillShow();
        if (deleted) {
            shown.reset();
            mode.update();
        }
        QTextDocument *document = mode.textView()->document();
        QCOMPARE(document->toPlainText(), text);
        QTextCursor cursor(document);
        cursor.movePosition(QTextCursor::End);
        QCOMPARE(cursor.charFormat().baselineOffset() > 0, !deleted);
        const QTextImageFormat image = document->lastBlock().begin().fragment().charFormat().toImageFormat();
        QCOMPARE(image.isValid(), !deleted);
        QVERIFY(deleted || QSizeF(image.width(), image.height()) == QSizeF(16, 16));
        QVERIFY(deleted || document->resource(QTextDocument::ImageResource, QUrl(image.name())).isValid());
    }

    void imageHelpers()
    {
        QImage canvas(60, 60, QImage::Format_ARGB32_Premultiplied);
        QPainter painter(&canvas);
        painter.translate(5, 0); // what was there before is kept, the flip comes first
        q_DRAWING_flip_graphics_context_for_rect(&painter, QRectF(0, 10, 50, 20));
        QCOMPARE(painter.transform().map(QPointF(3, 10)), QPointF(8, 30));
        QImage original(12, 7, QImage::Format_ARGB32);
        original.fill(QColor(200, 40, 40));
        const QImage copy = q_IMAGE_transparent_image_from_image(original, 0.5);
        QVERIFY(qAbs(copy.pixelColor(3, 3).alpha() - 128) <= 1);
        MessageCapture errors;
        QVERIFY(q_IMAGE_transparent_image_from_image(QImage(), 0.5).isNull());
        q_DRAWING_flip_graphics_context_for_rect(nullptr, QRectF(0, 0, 1, 1));
        QVERIFY(QDX__Copy_NSImage_to_CGImageRef(QIcon()).isNull());
        QVERIFY(errors.text().contains("(originalImage != nil)") && errors.text().contains("painter != nullptr"));
    }
};

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 2 && (arguments[1] == QLatin1String("--first") || arguments[1] == QLatin1String("--second"))) {
        QApplication::setApplicationName(QStringLiteral("tarn-inspector-e2e"));
        return (arguments[1] == QLatin1String("--first") ? firstRun() : secondRun()) == 0 ? 0 : 1;
    }
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    tst_Inspector test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_inspector.moc"
