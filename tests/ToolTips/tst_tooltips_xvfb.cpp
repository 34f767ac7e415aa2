// End to end under a real X server: the pointer really moves (XTest, through xdotool) over the
// gallery's tooltips page; the tooltip appears after the rest, is replaced, and fades on leaving.
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

    std::unique_ptr<QWidget> page;
    QWidget *grid = nullptr;
    QString xdotool;

    ToolTipWindow_ZL *tip() const { return ToolTipController_ZL::sharedToolTipController()->toolTipWindow(); }

    void movePointer(QPoint global)
    {
        QCOMPARE(QProcess::execute(xdotool, {QStringLiteral("mousemove"), QString::number(global.x()), QString::number(global.y())}), 0);
    }

    // The centre of a swatch in global coordinates.
    QPoint swatchCentre(int index) const
    {
        const int cell = 64, gap = 12, columns = 4;
        const QPoint local(gap + (index % columns) * cell + (cell - gap) / 2, gap + (index / columns) * cell + (cell - gap) / 2);
        return grid->mapToGlobal(local);
    }

    // The window's top 5 under the standard arrow, 16 tall with its hot spot at the top.
    static QPoint expectedPosition(QPoint pointer) { return pointer + QPoint(0, 16 + 5); }

private Q_SLOTS:
    void initTestCase()
    {
        KQSettings::enableTestMode();
        qunsetenv("XCURSOR_SIZE");
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        xdotool = QStandardPaths::findExecutable(QStringLiteral("xdotool"));
        QVERIFY(!xdotool.isEmpty());
        const QList<GalleryPage> pages = GalleryPages::all();
        const auto tooltips = std::find_if(pages.cbegin(), pages.cend(), [](const GalleryPage &p) { return p.id == QStringLiteral("tooltips"); });
        QVERIFY(tooltips != pages.cend());
        page.reset(tooltips->create());
        page->setGeometry(60, 60, 700, 500);
        page->show();
        QVERIFY(QTest::qWaitForWindowExposed(page.get()));
        page->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(page.get()));
        grid = page->findChild<QWidget *>(QStringLiteral("swatchGrid"));
        QVERIFY(grid != nullptr);
        QVERIFY(tip() != nullptr); // the page started the controller
        movePointer(page->mapToGlobal(QPoint(650, 450))); // away from every tooltip
        QTest::qWait(50);
    }

    // After the rest below the pointer; another swatch's rich text, wrapped, replaces it at the pointer.
    void appearsReplacesAndFades()
    {
        QPoint pointer = swatchCentre(0);
        QElapsedTimer sinceMove;
        sinceMove.start();
        movePointer(pointer);
        QVERIFY(QTest::qWaitFor([this] { return tip()->isShown(); }, 5000));
        QVERIFY2(sinceMove.elapsed() >= 1000, qPrintable(QString::number(sinceMove.elapsed())));
        QCOMPARE(tip()->attributedString().toPlainText(), QStringLiteral("Ivory #fffff0"));
        QCOMPARE(tip()->pos(), expectedPosition(pointer));

        movePointer(pointer = swatchCentre(1) + QPoint(3, 2));
        QVERIFY(QTest::qWaitFor([this] { return tip()->attributedString().toPlainText().startsWith(QStringLiteral("Saffron ")); }, 3000));
        QVERIFY(tip()->isShown() && tip()->width() <= 100);
        QCOMPARE(tip()->pos(), expectedPosition(pointer));

        movePointer(page->mapToGlobal(QPoint(650, 450)));
        QVERIFY(QTest::qWaitFor([this] { return tip()->isFading(); }, 4000));
        QVERIFY(QTest::qWaitFor([this] { return !tip()->isVisible(); }, 3000));
    }

    void cleanupTestCase() { page.reset(); }
};

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    TestToolTipsUnderX test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_tooltips_xvfb.moc"
