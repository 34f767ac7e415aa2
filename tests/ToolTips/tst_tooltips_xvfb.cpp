// End to end under a real X server: the pointer really moves (XTest, through xdotool) over the
// gallery's tooltips page; after a rest the tooltip appears, wrapped, and hides once the pointer leaves.
#include "GalleryPage.h"

#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtTest/QTest>

#include <memory>

class TestToolTipsUnderX : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void restShowsWrappedThenHides()
    {
        KQSettings::enableTestMode();
        qunsetenv("XCURSOR_SIZE");
        const QString xdotool = QStandardPaths::findExecutable(QStringLiteral("xdotool"));
        QVERIFY(!xdotool.isEmpty());
        const auto movePointer = [&xdotool](QPoint global) {
            return QProcess::execute(xdotool, {QStringLiteral("mousemove"), QString::number(global.x()), QString::number(global.y())}) == 0;
        };
        const QList<GalleryPage> pages = GalleryPages::all();
        const auto tooltips = std::find_if(pages.cbegin(), pages.cend(), [](const GalleryPage &p) { return p.id == QStringLiteral("tooltips"); });
        QVERIFY(tooltips != pages.cend());
        const std::unique_ptr<QWidget> page(tooltips->create());
        page->setGeometry(60, 60, 700, 500);
        page->show();
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        const QWidget *grid = page->findChild<QWidget *>(QStringLiteral("swatchGrid"));
        QVERIFY(grid != nullptr);
        const QPoint away = page->mapToGlobal(QPoint(650, 450));
        QVERIFY(movePointer(away));
        QTest::qWait(50);

        // The second swatch (64-pixel cells, 12 apart) has a long rich text; the window's top
        // comes 5 under the standard arrow, 16 tall with its hot spot at the top.
        const QPoint pointer = grid->mapToGlobal(QPoint(12 + 64 + 26, 12 + 26));
        const auto tip = [] { return ToolTipController_ZL::sharedToolTipController()->toolTipWindow(); };
        QElapsedTimer sinceMove;
        sinceMove.start();
        QVERIFY(movePointer(pointer));
        QVERIFY(QTest::qWaitFor([&tip] { return tip() && tip()->isShown(); }, 5000));
        QVERIFY(sinceMove.elapsed() >= 1000);
        QVERIFY(tip()->attributedString().toPlainText().startsWith(QStringLiteral("Saffron ")));
        QVERIFY(tip()->width() <= 100);
        QCOMPARE(tip()->pos(), pointer + QPoint(0, 16 + 5));

        QVERIFY(movePointer(away));
        QVERIFY(QTest::qWaitFor([&tip] { return !tip()->isVisible(); }, 5000));
    }
};

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    TestToolTipsUnderX test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tooltips_xvfb.moc"
