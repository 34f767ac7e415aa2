#include "MessageCapture.h"

#include <TarnCommon/CocoaExtensions_ZL.h>
#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQWindowDelegate.h>
#include <TarnCommon/NSWindow_ZL.h>

#include <QtTest/QtTest>

class tst_WindowHelpers : public QObject // also the windows' delegate, answering settings in every shape
{
    Q_OBJECT
public:
    Q_INVOKABLE bool wantsNo() const { return false; }
    Q_INVOKABLE int wideAnswer() const { return 0x10001; }
    Q_INVOKABLE char byteAnswer() const { return 'Y'; }
    Q_INVOKABLE void noAnswer() const { }
    Q_INVOKABLE bool needsArgument(int value) const { return value > 0; }

private Q_SLOTS:
    void constrain_data()
    {
        // Global frames; the primary is (0, 0, 1000, 700), the secondary (1000, 0, 800, 600).
        QTest::addColumn<int>("screen"); // -1: none, the primary
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<bool>("fully");
        QTest::addColumn<QRectF>("expected");
        QTest::newRow("above: pulled down") << 0 << QRectF(100, -150, 300, 200) << false << QRectF(100, 0, 300, 200);
        QTest::newRow("below and left, fully") << 0 << QRectF(-50, 600, 300, 200) << true << QRectF(0, 500, 300, 200);
        QTest::newRow("below and left, top only") << 0 << QRectF(-50, 600, 300, 200) << false << QRectF(-50, 600, 300, 200);
        QTest::newRow("off the right edge") << 0 << QRectF(900, 400, 300, 200) << true << QRectF(700, 400, 300, 200);
        QTest::newRow("taller than the screen") << 0 << QRectF(0, -200, 300, 900) << true << QRectF(0, 0, 300, 700);
        QTest::newRow("wider than the screen") << 0 << QRectF(0, 600, 1200, 100) << true << QRectF(-200, 600, 1200, 100);
        QTest::newRow("below the secondary, fully") << 1 << QRectF(1100, 500, 300, 200) << true << QRectF(1100, 400, 300, 200);
        QTest::newRow("no screen: the primary") << -1 << QRectF(100, -50, 300, 200) << false << QRectF(100, 0, 300, 200);
    }
    void constrain()
    {
        QFETCH(int, screen);
        QFETCH(QRectF, frame);
        QFETCH(bool, fully);
        QFETCH(QRectF, expected);
        const QScreen *on = screen >= 0 ? QGuiApplication::screenAt(QPoint(1000 * screen, 0)) : nullptr;
        QCOMPARE(ConstrainFrameRectToScreen_ZL(on, fully, frame), expected);
        if (screen != 0 || fully)
            return; // a window moved there keeps its title bar on screen the same way
        NSWindow_ZL window;
        window.setGeometry(QRect(QPoint(200, 100), frame.size().toSize()));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        window.move(frame.topLeft().toPoint());
        QCOMPARE(window.frameGeometry(), expected.toRect());
    }

    void delegateSetting_data()
    {
        QTest::addColumn<QByteArray>("method");
        QTest::addColumn<bool>("defaultValue");
        QTest::addColumn<bool>("expected");
        QTest::addColumn<bool>("warns");
        QTest::newRow("unknown method") << QByteArray("missing") << true << true << false;
        QTest::newRow("no over a yes default") << QByteArray("wantsNo") << true << false << false;
        QTest::newRow("wider result") << QByteArray("wideAnswer") << false << false << true;
        QTest::newRow("one-byte result") << QByteArray("byteAnswer") << false << true << false;
        QTest::newRow("no result") << QByteArray("noAnswer") << true << true << true;
        QTest::newRow("takes an argument") << QByteArray("needsArgument") << false << false << true;
    }
    void delegateSetting()
    {
        QFETCH(QByteArray, method);
        QFETCH(bool, defaultValue);
        QFETCH(bool, expected);
        QFETCH(bool, warns);
        NSWindow_ZL window;
        kq_setWindowDelegate(&window, this);
        MessageCapture output;
        QCOMPARE(window.f_getDelegateSetting(method, defaultValue), expected);
        QCOMPARE(output.text().contains("NSWindow_ZL delegate functions won't work properly"), warns);
    }

    void cocoaExtensions()
    {
        const auto alert = f_alertWithShortText(QStringLiteral("Save?"), QStringLiteral("Lost."), QMessageBox::Critical);
        QVERIFY(!alert->isVisible() && !alert->parent());
        QCOMPARE(alert->icon(), QMessageBox::Critical);
        QCOMPARE(alert->text() + alert->informativeText(), QStringLiteral("Save?Lost."));
        auto parent = std::make_unique<QWidget>();
        const QPointer<QMessageBox> child = f_alertWithShortText(QStringLiteral("Revert?"), QString(), QMessageBox::Question, parent.get());
        parent.reset(); // goes with its parent
        QVERIFY(child.isNull());
        MessageCapture errors;
        QCOMPARE(f_alertWithShortText(QString(), QString(), QMessageBox::Warning, nullptr), nullptr);
        QVERIFY(errors.text().contains("parent != nullptr"));

        QWidget view;
        view.setGeometry(10, 20, 30, 40);
        QCOMPARE(QRectF(p_originX(&view), p_originY(&view), p_width(&view), p_height(&view)), QRectF(10, 20, 30, 40));
        setP_width(&view, 55);
        setP_height(&view, 66.4);
        setP_originX(&view, 7);
        setP_originY(&view, 8);
        QCOMPARE(view.geometry(), QRect(7, 8, 55, 66));
        QCOMPARE(QRectF(p_originX(nullptr), p_originY(nullptr), p_width(nullptr), p_height(nullptr)), QRectF());
        setP_width(nullptr, 12); // ignored, as a message to nobody
    }
};

QTEST_MAIN(tst_WindowHelpers)
#include "tst_windowhelpers.moc"
