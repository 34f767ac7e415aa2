// The tooltip window: its size for the text, its placement near the pointer
// and the screens' edges, and showing, hiding and fading.
#include "CapturedOutput.h"
#include "ToolTipWindow_ZL_p.h"

#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipTextView_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include <QtCore/QVariantAnimation>
#include <QtGui/QPainter>
#include <QtGui/QTextDocument>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include <cmath>

class TestToolTipWindow : public QObject
{
    Q_OBJECT

    static QVariantAnimation *fadeOf(ToolTipWindow_ZL &window) { return window.findChild<QVariantAnimation *>(); }

    static QSize expectedSize(ToolTipWindow_ZL &window)
    {
        const QRectF used = window.textView()->usedRect();
        return QSize(int(std::ceil(used.x() + used.width())), int(std::ceil(used.y() + used.height() + 6)));
    }

    static double lineHeight(ToolTipWindow_ZL &window)
    {
        return QFontMetricsF(window.textView()->document()->defaultFont()).lineSpacing();
    }

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void sizeFollowsText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("wrap");
        QTest::addColumn<int>("lines"); // at least (or exactly for 1)
        const QString longText = QStringLiteral("A long tooltip text that needs several lines when it wraps");
        QTest::newRow("wrapped") << longText << true << 3;
        QTest::newRow("not wrapped") << longText << false << 1;
        QTest::newRow("short wrapped") << QStringLiteral("Red") << true << 1;
        QTest::newRow("empty") << QString(QLatin1String("")) << true << 1;
        QTest::newRow("long word wrapped") << QStringLiteral("Supercalifragilisticexpialidocious!!") << true << 2;
    }
    void sizeFollowsText()
    {
        QFETCH(QString, text);
        QFETCH(bool, wrap);
        QFETCH(int, lines);
        ToolTipWindow_ZL window;
        window.setString(text, wrap);
        QCOMPARE(window.size(), expectedSize(window));
        QCOMPARE(window.textView()->geometry(), QRect(QPoint(0, 0), window.size()));
        const double used = window.textView()->usedRect().height();
        if (lines == 1)
            QVERIFY(std::abs(used - lineHeight(window)) < 1.0);
        else
            QVERIFY(used >= lines * lineHeight(window) - 1.0);
        if (wrap)
            QVERIFY(window.width() <= 100);
        else if (text.size() > 20)
            QVERIFY(window.width() > 100);
        QCOMPARE(window.attributedString().toPlainText(), text);
    }

    void emptyWindowFromTheStart()
    {
        ToolTipWindow_ZL window;
        QCOMPARE(window.attributedString().toPlainText(), QString());
        QCOMPARE(window.size(), expectedSize(window));
        QCOMPARE(window.height(), int(std::ceil(window.textView()->usedRect().height() + 6)));
    }

    void richTextKeepsItsFormatting()
    {
        ToolTipWindow_ZL window;
        window.setAttributedString(QTextDocumentFragment::fromHtml(QStringLiteral("<b>Bold</b> plain")), false);
        QVERIFY(window.attributedString().toHtml().contains(QStringLiteral("font-weight")));
        QCOMPARE(window.size(), expectedSize(window));
    }

    void windowKind()
    {
        ToolTipWindow_ZL window;
        QVERIFY(window.isWindow());
        QVERIFY(window.windowFlags().testFlag(Qt::WindowTransparentForInput));
        QVERIFY(window.windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(window.windowType(), Qt::ToolTip);
        QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
        QCOMPARE(ToolTipWindow_ZL::level, 102);
    }

    void paintsPaleYellowWithFrame()
    {
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("W"), true);
        QImage image(window.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        window.textView()->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        const QColor inside = image.pixelColor(2, window.height() / 2);
        QCOMPARE(inside, QColor(255, 255, 215, 221));
        const QColor edge = image.pixelColor(window.width() / 2, 0);
        QCOMPARE(edge, QColor(0, 0, 0, 85)); // the thin frame, black at a third
        QCOMPARE(image.pixelColor(0, window.height() / 2), QColor(0, 0, 0, 85));
    }

    // In y-up space: primary (0, 0, 1000, 700), secondary (1000, 100, 800, 600).
    void placement_data()
    {
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<bool>("onScreen");
        const QSizeF s(80, 20);
        // below = 16: the top is 5 under the cursor image.
        QTest::newRow("middle") << QPointF(300, 400) << s << QPointF(300, 359) << true;
        QTest::newRow("bottom goes above") << QPointF(300, 30) << s << QPointF(300, 60) << true;
        QTest::newRow("just fits at the bottom") << QPointF(300, 41) << s << QPointF(300, 0) << true;
        QTest::newRow("right edge") << QPointF(950, 400) << s << QPointF(920, 359) << true;
        QTest::newRow("wider than the screen") << QPointF(500, 400) << QSizeF(1200, 20) << QPointF(-200, 359) << true;
        QTest::newRow("secondary right edge") << QPointF(1790, 300) << s << QPointF(1720, 259) << true;
        QTest::newRow("secondary bottom") << QPointF(1200, 130) << s << QPointF(1200, 160) << true;
        QTest::newRow("left of every screen") << QPointF(-50, 400) << s << QPointF(0, 359) << false;
        QTest::newRow("below every screen") << QPointF(-10, -5) << s << QPointF(0, 25) << false;
    }
    void placement()
    {
        QFETCH(QPointF, pointer);
        QFETCH(QSizeF, size);
        QFETCH(QPointF, origin);
        QFETCH(bool, onScreen);
        const QList<QRectF> frames{QRectF(0, 0, 1000, 700), QRectF(1000, 100, 800, 600)};
        CapturedOutput output;
        QCOMPARE(ToolTipWindowOrigin(pointer, size, frames, 16.0), origin);
        const QByteArray log = output.text();
        QCOMPARE(log.contains("No screen found at point"), !onScreen);
        if (!onScreen)
            QVERIFY(log.contains(QStringLiteral("{%1, %2}").arg(pointer.x()).arg(pointer.y()).toUtf8()));
    }

    void screenAtPointIsHalfOpen()
    {
        const QList<QRectF> frames{QRectF(0, 0, 1000, 700), QRectF(1000, 100, 800, 600)};
        QCOMPARE(ScreenAtPoint(QPointF(1000, 300), frames), std::optional<QRectF>(frames[1]));
        QCOMPARE(ScreenAtPoint(QPointF(0, 0), frames), std::optional<QRectF>(frames[0]));
        CapturedOutput output;
        QVERIFY(!ScreenAtPoint(QPointF(1800, 300), frames).has_value());
        QVERIFY(output.text().contains("No screen found at point {1800, 300}"));
    }

    void cursorImageReach_data()
    {
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("hotSpotY");
        QTest::addColumn<double>("below");
        QTest::newRow("tall image, hot spot at the top") << 32 << 0 << 32.0;
        QTest::newRow("cross hair centred") << 24 << 12 << 12.0;
    }
    void cursorImageReach()
    {
        QFETCH(int, height);
        QFETCH(int, hotSpotY);
        QFETCH(double, below);
        QPixmap image(16, height);
        image.fill(Qt::black);
        QGuiApplication::setOverrideCursor(QCursor(image, 0, hotSpotY));
        const double reach = ToolTipCursorReachBelowHotSpot();
        QGuiApplication::restoreOverrideCursor();
        QCOMPARE(reach, below);
    }

    void standardShapeCountsAsArrow()
    {
        qunsetenv("XCURSOR_SIZE");
        QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
        QCOMPARE(ToolTipCursorReachBelowHotSpot(), 16.0);
        qputenv("XCURSOR_SIZE", "24");
        QCOMPARE(ToolTipCursorReachBelowHotSpot(), 24.0);
        qunsetenv("XCURSOR_SIZE");
        QGuiApplication::restoreOverrideCursor();
    }

    // Qt global coordinates: the primary screen is 1000 x 700 at (0, 0).
    void positionsOnTheRealScreens()
    {
        QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("Green: 80"), true);
        window.positionAtMouseLocation(QPointF(300, 300));
        QCOMPARE(window.pos(), QPoint(300, 300 + 16 + 5));
        // Near the bottom: its bottom edge 30 above the pointer.
        window.positionAtMouseLocation(QPointF(300, 690));
        QCOMPARE(window.geometry().bottom() + 1, 660);
        // Near the right edge of the secondary screen.
        window.positionAtMouseLocation(QPointF(1795, 100));
        QCOMPARE(window.geometry().right() + 1, 1800);
        QGuiApplication::restoreOverrideCursor();
    }

    void showHideAndFade()
    {
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("Fading"), true);
        QVERIFY(!window.isShown());
        window.hide(true); // not shown: nothing, not even an animation
        QVERIFY(fadeOf(window) == nullptr);

        window.show();
        QVERIFY(window.isShown());
        QCOMPARE(window.windowOpacity(), 1.0);
        window.hide(false);
        QVERIFY(!window.isVisible());
        QVERIFY(!window.isShown());

        window.show();
        window.hide(true);
        QVERIFY(window.isVisible());   // still on screen while fading
        QVERIFY(!window.isShown());    // but no longer counts as shown
        QVERIFY(window.isFading());
        QVariantAnimation *fade = fadeOf(window);
        QVERIFY(fade != nullptr);
        fade->setCurrentTime(fade->duration() / 2);
        QVERIFY(window.windowOpacity() < 1.0);
        fade->setCurrentTime(fade->duration()); // the end of the fade
        QVERIFY(!window.isVisible());
        QVERIFY(!window.isFading());
    }

    void showDuringFadeIsShownAgain()
    {
        ToolTipWindow_ZL window;
        window.show();
        window.hide(true);
        QVariantAnimation *fade = fadeOf(window);
        fade->setCurrentTime(fade->duration() / 2);
        window.show();
        QVERIFY(window.isShown());
        QVERIFY(!window.isFading());
        QCOMPARE(window.windowOpacity(), 1.0);
        QCOMPARE(window.findChildren<QVariantAnimation *>().size(), 1); // reused
    }

    void newTextDuringFadeOrdersOut()
    {
        ToolTipWindow_ZL window;
        window.show();
        window.hide(true);
        window.setString(QStringLiteral("Changed"), true);
        QVERIFY(!window.isVisible());
        QVERIFY(!window.isFading());
    }

    void hidesWithTheApplication()
    {
        ToolTipWindow_ZL window;
        window.show();
        QVERIFY(window.isShown());
        Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
        QVERIFY(!window.isVisible());
    }
};

QTEST_MAIN(TestToolTipWindow)
#include "tst_tooltipwindow.moc"
