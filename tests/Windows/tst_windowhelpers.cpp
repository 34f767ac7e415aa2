#include "MessageCapture.h"

#include <TarnCommon/CocoaExtensions_ZL.h>
#include <TarnCommon/ConstrainFrameRectToScreen_ZL.h>
#include <TarnCommon/KQWindowDelegate.h>
#include <TarnCommon/NSWindow_ZL.h>

#include <QtTest/QtTest>

class tst_WindowHelpers : public QObject
{
    Q_OBJECT
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
        QTest::newRow("wider than the screen") << 0 << QRectF(0, 300, 1200, 100) << true << QRectF(-200, 300, 1200, 100);
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
    }

    void delegateSetting()
    {
        NSWindow_ZL window;
        QWidget delegate; // close() answers yes or no, deleteLater() nothing
        kq_setWindowDelegate(&window, &delegate);
        MessageCapture output;
        QVERIFY(window.f_getDelegateSetting("missing", true));
        QVERIFY(window.f_getDelegateSetting("close", false));
        QVERIFY(window.f_getDelegateSetting("deleteLater", true));
        QVERIFY(output.text().contains("NSWindow_ZL delegate functions won't work properly"));
    }

    void cocoaExtensions()
    {
        const auto alert = f_alertWithShortText(QStringLiteral("Save?"), QStringLiteral("Lost."), QMessageBox::Critical);
        QCOMPARE(alert->icon(), QMessageBox::Critical);
        QCOMPARE(alert->text() + alert->informativeText(), QStringLiteral("Save?Lost."));
        MessageCapture errors;
        QCOMPARE(f_alertWithShortText(QString(), QString(), QMessageBox::Warning, nullptr), nullptr);
        QVERIFY(errors.text().contains("parent != nullptr"));

        QWidget view;
        setP_width(&view, 55);
        setP_height(&view, 66.4); // whole pixels
        setP_originX(&view, 7);
        setP_originY(&view, 8);
        QCOMPARE(QRectF(p_originX(&view), p_originY(&view), p_width(&view), p_height(&view)), QRectF(7, 8, 55, 66));
        QCOMPARE(QRectF(p_originX(nullptr), p_originY(nullptr), p_width(nullptr), p_height(nullptr)), QRectF());
        setP_width(nullptr, 12); // ignored, as a message to nobody
    }
};

QTEST_MAIN(tst_WindowHelpers)
#include "tst_windowhelpers.moc"
