// The tooltip window: its size for the text, its placement near the pointer
// and the screens' edges, and showing, hiding and fading.
#include "MessageCapture.h"
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

using namespace KQToolTipRules;

class TestToolTipWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void size_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("wrap");
        QTest::addColumn<int>("lines"); // at least so many; 1: exactly one
        const QString longText = QStringLiteral("A long tooltip text that needs several lines when it wraps");
        QTest::newRow("wrapped") << longText << true << 3;
        QTest::newRow("not wrapped") << longText << false << 1;
        QTest::newRow("long word wrapped") << QStringLiteral("Supercalifragilisticexpialidocious!!") << true << 2;
        QTest::newRow("empty") << QString() << true << 1;
        QTest::newRow("rich") << QStringLiteral("<b>Bold</b> and <i>italic</i>") << false << 1;
    }
    void size()
    {
        QFETCH(QString, text);
        QFETCH(bool, wrap);
        QFETCH(int, lines);
        ToolTipWindow_ZL window;
        const bool rich = text.startsWith(QLatin1Char('<'));
        if (rich)
            window.setAttributedString(QTextDocumentFragment::fromHtml(text), wrap);
        else if (!text.isEmpty()) // the empty text is what a new window holds
            window.setString(text, wrap);
        // The used rectangle of the text, plus 3 above and below.
        const QRectF used = window.textView()->usedRect();
        QCOMPARE(window.size(), QSize(int(std::ceil(used.right())), int(std::ceil(used.bottom() + 6))));
        QCOMPARE(window.textView()->geometry(), QRect(QPoint(0, 0), window.size()));
        const double line = QFontMetricsF(window.textView()->document()->defaultFont()).lineSpacing();
        QVERIFY(lines == 1 ? std::abs(used.height() - line) < 1.5 : used.height() >= lines * line - 1);
        QVERIFY(wrap ? window.width() <= 100 : text.size() < 40 || window.width() > 100);
        QCOMPARE(window.attributedString().toPlainText(), rich ? QStringLiteral("Bold and italic") : text);
    }

    void paintsPaleYellowWithFrame()
    {
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("W"), true);
        QImage image(window.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        window.textView()->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        QCOMPARE(image.pixelColor(2, window.height() / 2), QColor(255, 255, 215, 221));
        QCOMPARE(image.pixelColor(window.width() / 2, 0), QColor(0, 0, 0, 85)); // black at a third
    }

    void subclassPaintsItsOwnBackground()
    {
        struct GreenView : ToolTipTextView_ZL
        {
            void drawViewBackgroundInRect(QPainter &painter, const QRectF &) override
            {
                painter.fillRect(rect(), Qt::green);
            }
        } view;
        view.resize(40, 20);
        QImage image(view.size(), QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        view.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        QCOMPARE(image.pixelColor(0, 0), QColor(Qt::green));
    }

    // In y-up space: primary (0, 0, 1000, 700), secondary (1000, 100, 800, 600);
    // the cursor reaches 16 below its hot spot.
    void placement_data()
    {
        QTest::addColumn<QPointF>("pointer");
        QTest::addColumn<double>("width");
        QTest::addColumn<QPointF>("origin");
        QTest::addColumn<bool>("onScreen");
        QTest::newRow("top 5 under the cursor") << QPointF(300, 400) << 80.0 << QPointF(300, 359) << true;
        QTest::newRow("bottom: 30 above") << QPointF(300, 30) << 80.0 << QPointF(300, 60) << true;
        QTest::newRow("just fits at the bottom") << QPointF(300, 41) << 80.0 << QPointF(300, 0) << true;
        QTest::newRow("right edge") << QPointF(950, 400) << 80.0 << QPointF(920, 359) << true;
        QTest::newRow("wider than the screen") << QPointF(500, 400) << 1200.0 << QPointF(-200, 359) << true;
        QTest::newRow("secondary's left edge") << QPointF(1000, 300) << 80.0 << QPointF(1000, 259) << true;
        QTest::newRow("secondary bottom") << QPointF(1200, 130) << 80.0 << QPointF(1200, 160) << true;
        QTest::newRow("right of every screen: at the pointer") << QPointF(1800, 300) << 80.0 << QPointF(1800, 259) << false;
        QTest::newRow("under the secondary: at the pointer, above it") << QPointF(1500, 30) << 80.0 << QPointF(1500, 60) << false;
        QTest::newRow("left of every screen") << QPointF(-50, 400) << 80.0 << QPointF(0, 359) << false;
        QTest::newRow("below every screen") << QPointF(-10, -5) << 80.0 << QPointF(0, 25) << false;
    }
    void placement()
    {
        QFETCH(QPointF, pointer);
        QFETCH(double, width);
        QFETCH(QPointF, origin);
        QFETCH(bool, onScreen);
        const QList<QRectF> frames{QRectF(0, 0, 1000, 700), QRectF(1000, 100, 800, 600)};
        MessageCapture output;
        QCOMPARE(ToolTipWindowOrigin(pointer, QSizeF(width, 20), frames, 16.0), origin);
        const QByteArray expected = QStringLiteral("No screen found at point {%1, %2}").arg(pointer.x()).arg(pointer.y()).toUtf8();
        QCOMPARE(output.text().contains(expected), !onScreen);
    }

    // How far the cursor reaches below the pointer: a bitmap's image and
    // hot spot, or a standard shape of the theme's size held at its hot spot.
    void cursorReach_data()
    {
        QTest::addColumn<int>("height"); // 0: a standard shape
        QTest::addColumn<int>("hotSpotY");
        QTest::addColumn<int>("shape");
        QTest::addColumn<QByteArray>("xcursorSize");
        QTest::addColumn<double>("below");
        const int arrow = Qt::ArrowCursor;
        QTest::newRow("image, hot spot at the top") << 32 << 0 << arrow << QByteArray() << 32.0;
        QTest::newRow("image, hot spot centred") << 24 << 12 << arrow << QByteArray() << 12.0;
        QTest::newRow("standard arrow") << 0 << 0 << arrow << QByteArray() << 16.0;
        QTest::newRow("standard arrow, sized") << 0 << 0 << arrow << QByteArray("24") << 24.0;
        QTest::newRow("I-beam, held in its middle") << 0 << 0 << int(Qt::IBeamCursor) << QByteArray("32") << 16.0;
        QTest::newRow("pointing hand") << 0 << 0 << int(Qt::PointingHandCursor) << QByteArray("32") << 32.0;
        QTest::newRow("blank") << 0 << 0 << int(Qt::BlankCursor) << QByteArray("32") << 0.0;
    }
    void cursorReach()
    {
        QFETCH(int, height);
        QFETCH(int, hotSpotY);
        QFETCH(int, shape);
        QFETCH(QByteArray, xcursorSize);
        QFETCH(double, below);
        QPixmap image(16, qMax(height, 1));
        image.fill(Qt::black);
        QGuiApplication::setOverrideCursor(height ? QCursor(image, 0, hotSpotY) : QCursor(Qt::CursorShape(shape)));
        qputenv("XCURSOR_SIZE", xcursorSize);
        const double reach = ToolTipCursorReachBelowHotSpot();
        qunsetenv("XCURSOR_SIZE");
        QGuiApplication::restoreOverrideCursor();
        QCOMPARE(reach, below);
    }

    // The cursor theme's size as X finds it.
    void cursorThemeSize_data()
    {
        QTest::addColumn<QByteArray>("xcursorSize");
        QTest::addColumn<QByteArray>("resources");
        QTest::addColumn<int>("screenPixels");
        QTest::addColumn<int>("size");
        const QByteArray sized("Xft.antialias:\t1\nXcursor.size:\t48\nXft.dpi:\t96\n");
        QTest::newRow("the environment first") << QByteArray("24") << sized << 1080 << 24;
        QTest::newRow("then the resource") << QByteArray() << sized << 1080 << 48;
        QTest::newRow("then the font resolution") << QByteArray() << QByteArray("Xft.dpi: 144\n") << 1080 << 32;
        QTest::newRow("then the screen") << QByteArray("junk") << QByteArray("Xcursor.theme: Adwaita\n") << 1080 << 22;
        QTest::newRow("nothing known") << QByteArray() << QByteArray() << 0 << 16;
    }
    void cursorThemeSize()
    {
        QFETCH(QByteArray, xcursorSize);
        QFETCH(QByteArray, resources);
        QFETCH(int, screenPixels);
        QFETCH(int, size);
        QCOMPARE(ToolTipCursorThemeSize(xcursorSize, resources, screenPixels), size);
    }

    // Qt global coordinates: the primary screen is 1000 x 700 at (0, 0).
    // (The plain case below the pointer: the controller's test.)
    void positionsOnTheScreens()
    {
        QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
        ToolTipWindow_ZL window;
        window.setString(QStringLiteral("Green: 80"), true);
        window.positionAtMouseLocation(QPointF(300, 690));
        QCOMPARE(window.geometry().bottom() + 1, 660);
        window.positionAtMouseLocation(QPointF(1795, 100));
        QCOMPARE(window.geometry().right() + 1, 1800);
        QGuiApplication::restoreOverrideCursor();
    }

    // A fade that runs out, or is cut short by showing again, a plain
    // widget hide or new text.
    void fade_data()
    {
        QTest::addColumn<QString>("interruption");
        QTest::addColumn<bool>("showAgain");
        QTest::newRow("runs out") << "" << false;
        QTest::newRow("show again") << "show" << true;
        QTest::newRow("hidden as a plain widget") << "QWidget::hide" << false;
        QTest::newRow("new text") << "text" << false;
    }
    void fade()
    {
        QFETCH(QString, interruption);
        QFETCH(bool, showAgain);
        ToolTipWindow_ZL window;
        window.hide(true); // not shown: nothing, not even an animation
        QVERIFY(window.findChild<QVariantAnimation *>() == nullptr);
        window.show();
        window.hide(false);
        QVERIFY(!window.isVisible());
        window.show();
        QVERIFY(window.isShown());
        window.hide(true);
        QVERIFY(window.isVisible() && !window.isShown()); // fading already counts as hidden
        auto *fade = window.findChild<QVariantAnimation *>();
        fade->setCurrentTime(fade->duration() / 2);
        QVERIFY(window.windowOpacity() < 1.0);
        if (interruption.isEmpty())
            fade->setCurrentTime(fade->duration());
        else if (interruption == QLatin1String("show"))
            window.show();
        else if (interruption == QLatin1String("QWidget::hide"))
            window.QWidget::hide();
        else
            window.setString(QStringLiteral("Changed"), true);
        QVERIFY(!window.isFading());
        QCOMPARE(window.isShown(), showAgain);
        QCOMPARE(window.isVisible(), showAgain);
        if (showAgain)
            QCOMPARE(window.windowOpacity(), 1.0);
    }

    void hidesWithTheApplication()
    {
        ToolTipWindow_ZL window;
        window.show();
        Q_EMIT qApp->applicationStateChanged(Qt::ApplicationInactive);
        QVERIFY(!window.isVisible());
    }
};

QTEST_MAIN(TestToolTipWindow)
#include "tst_tooltipwindow.moc"
