#include "MessageCapture.h"
#include "ConstrainFrameRect_p.h"

#include <TarnCommon/CocoaExtensions_ZL.h>
#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQScreenSpace.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQWindowDelegate.h>
#include <TarnCommon/NSWindow_ZL.h>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtTest/QtTest>

namespace {

class SettingsDelegate : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE bool wantsYes() const { return true; }
    Q_INVOKABLE bool wantsNo() const { return false; }
    Q_INVOKABLE int wideAnswer() const { return 0x10001; }
    Q_INVOKABLE char byteAnswer() const { return 'Y'; }
    Q_INVOKABLE void noAnswer() const { }
    Q_INVOKABLE bool needsArgument(int value) const { return value > 0; }
};

} // namespace

class tst_WindowHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void constrainRule_data();
    void constrainRule();
    void constrainOnScreens_data();
    void constrainOnScreens();
    void windowKeepsTitleBarOnScreen();
    void delegateSetting_data();
    void delegateSetting();
    void alert_data();
    void alert();
    void frameAccessors();
};

void tst_WindowHelpers::constrainRule_data()
{
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<bool>("fully");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("top pulled down") << QRectF(100, 650, 300, 200) << false << QRectF(100, 500, 300, 200);
    QTest::newRow("inside stays") << QRectF(100, 100, 300, 200) << true << QRectF(100, 100, 300, 200);
    QTest::newRow("below and left, fully") << QRectF(-50, -100, 300, 200) << true << QRectF(0, 0, 300, 200);
    QTest::newRow("below and left, top only") << QRectF(-50, -100, 300, 200) << false << QRectF(-50, -100, 300, 200);
    QTest::newRow("off the right edge") << QRectF(900, 100, 300, 200) << true << QRectF(700, 100, 300, 200);
    QTest::newRow("taller than the screen") << QRectF(0, 0, 300, 900) << true << QRectF(0, 0, 300, 700);
    QTest::newRow("taller, top only") << QRectF(0, 0, 300, 900) << false << QRectF(0, -200, 300, 900);
    QTest::newRow("wider than the screen") << QRectF(0, 0, 1200, 100) << true << QRectF(-200, 0, 1200, 100);
}

void tst_WindowHelpers::constrainRule()
{
    QFETCH(QRectF, frame);
    QFETCH(bool, fully);
    QFETCH(QRectF, expected);
    const QRectF visible(0, 0, 1000, 700);
    QCOMPARE(KQWindowRules::constrainFrameToVisibleFrame(visible, fully, frame), expected);
}

void tst_WindowHelpers::constrainOnScreens_data()
{
    // Frames in Qt global coordinates on the test screens: the primary at
    // (0, 0, 1000, 700), the secondary at (1000, 0, 800, 600).
    QTest::addColumn<int>("screenIndex");
    QTest::addColumn<QRectF>("frame");
    QTest::addColumn<bool>("fully");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("above the primary") << 0 << QRectF(100, -50, 300, 200) << false << QRectF(100, 0, 300, 200);
    QTest::newRow("off the primary's right, fully") << 0 << QRectF(900, 100, 300, 200) << true << QRectF(700, 100, 300, 200);
    QTest::newRow("below the secondary, fully") << 1 << QRectF(1100, 500, 300, 200) << true << QRectF(1100, 400, 300, 200);
    QTest::newRow("above the secondary") << 1 << QRectF(1100, -10, 300, 200) << false << QRectF(1100, 0, 300, 200);
    QTest::newRow("no screen: the primary") << -1 << QRectF(100, -50, 300, 200) << false << QRectF(100, 0, 300, 200);
}

void tst_WindowHelpers::constrainOnScreens()
{
    QFETCH(int, screenIndex);
    QFETCH(QRectF, frame);
    QFETCH(bool, fully);
    QFETCH(QRectF, expected);
    QCOMPARE(QGuiApplication::screens().size(), 2);
    const QPoint corners[] = {QPoint(0, 0), QPoint(1000, 0)};
    const QScreen *screen = screenIndex >= 0 ? QGuiApplication::screenAt(corners[screenIndex]) : nullptr;
    QCOMPARE(ConstrainFrameRectToScreen_ZL(screen, fully, frame), expected);
}

void tst_WindowHelpers::windowKeepsTitleBarOnScreen()
{
    NSWindow_ZL window;
    window.setGeometry(200, 100, 300, 200);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.move(200, -80);
    QCOMPARE(window.frameGeometry().top(), 0);
    QCOMPARE(window.frameGeometry().left(), 200);
    // Hanging off the bottom and the sides is allowed.
    window.move(-100, 600);
    QCOMPARE(window.frameGeometry().topLeft(), QPoint(-100, 600));
}

void tst_WindowHelpers::delegateSetting_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<bool>("withDelegate");
    QTest::addColumn<bool>("defaultValue");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<bool>("warns");
    QTest::newRow("no delegate") << QByteArray("wantsNo") << false << true << true << false;
    QTest::newRow("unknown method") << QByteArray("missing") << true << true << true << false;
    QTest::newRow("yes over a no default") << QByteArray("wantsYes") << true << false << true << false;
    QTest::newRow("no over a yes default") << QByteArray("wantsNo") << true << true << false << false;
    QTest::newRow("wider result") << QByteArray("wideAnswer") << true << false << false << true;
    QTest::newRow("wider result, yes default") << QByteArray("wideAnswer") << true << true << true << true;
    QTest::newRow("one-byte result") << QByteArray("byteAnswer") << true << false << true << false;
    QTest::newRow("no result") << QByteArray("noAnswer") << true << true << true << true;
    QTest::newRow("takes an argument") << QByteArray("needsArgument") << true << false << false << true;
}

void tst_WindowHelpers::delegateSetting()
{
    QFETCH(QByteArray, method);
    QFETCH(bool, withDelegate);
    QFETCH(bool, defaultValue);
    QFETCH(bool, expected);
    QFETCH(bool, warns);
    NSWindow_ZL window;
    SettingsDelegate delegate;
    if (withDelegate)
        kq_setWindowDelegate(&window, &delegate);
    MessageCapture output;
    QCOMPARE(window.f_getDelegateSetting(method, defaultValue), expected);
    QCOMPARE(output.text().contains("NSWindow_ZL delegate functions won't work properly"), warns);
}

void tst_WindowHelpers::alert_data()
{
    QTest::addColumn<QString>("shortText");
    QTest::addColumn<QString>("longText");
    QTest::addColumn<bool>("parented");
    QTest::newRow("both texts") << QStringLiteral("Save changes?") << QStringLiteral("They will be lost.") << false;
    QTest::newRow("no texts") << QString() << QString() << false;
    QTest::newRow("child of a window") << QStringLiteral("Revert?") << QString() << true;
}

void tst_WindowHelpers::alert()
{
    QFETCH(QString, shortText);
    QFETCH(QString, longText);
    QFETCH(bool, parented);
    std::unique_ptr<QMessageBox> owned;
    auto parent = std::make_unique<QWidget>();
    QPointer<QMessageBox> alert;
    if (parented) {
        alert = f_alertWithShortText(shortText, longText, QMessageBox::Critical, parent.get());
    } else {
        owned = f_alertWithShortText(shortText, longText, QMessageBox::Critical);
        alert = owned.get();
    }
    QVERIFY(alert);
    QVERIFY(!alert->isVisible());
    QCOMPARE(alert->icon(), QMessageBox::Critical);
    QCOMPARE(alert->text(), shortText);
    QCOMPARE(alert->informativeText(), longText);
    QCOMPARE(alert->parentWidget(), parented ? parent.get() : nullptr);
    // A parented alert goes with its parent, and nothing else deletes it again.
    parent.reset();
    QCOMPARE(alert.isNull(), parented);

    // The parented form needs its parent.
    MessageCapture errors;
    QCOMPARE(f_alertWithShortText(shortText, longText, QMessageBox::Warning, nullptr), nullptr);
    QVERIFY(errors.text().contains("parent != nullptr"));
}

void tst_WindowHelpers::frameAccessors()
{
    QWidget parent;
    auto *view = new QWidget(&parent);
    view->setGeometry(10, 20, 30, 40);
    QCOMPARE(QRectF(p_originX(view), p_originY(view), p_width(view), p_height(view)), QRectF(10, 20, 30, 40));
    setP_width(view, 55);
    setP_height(view, 66.4);
    setP_originX(view, 7);
    setP_originY(view, 8);
    QCOMPARE(view->geometry(), QRect(7, 8, 55, 66));

    QCOMPARE(QRectF(p_originX(nullptr), p_originY(nullptr), p_width(nullptr), p_height(nullptr)), QRectF());
    setP_width(nullptr, 12); // ignored, as a message to nobody
}

QTEST_MAIN(tst_WindowHelpers)
#include "tst_windowhelpers.moc"
