#include "RecordingDelegates.h"
#include "MessageCapture.h"

#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQSettings.h>

#include <QtCore/QVariantAnimation>
#include <QtTest/QTest>
#include <QtWidgets/QToolButton>

#include <limits>
#include <memory>

namespace {

std::unique_ptr<KQCollapsibleView> makeView(const QString &title, bool collapsable = true, bool resizable = false,
                                            int contentHeight = 100)
{
    auto *content = new QWidget;
    content->resize(200, contentHeight);
    return std::make_unique<KQCollapsibleView>(title, content, collapsable, resizable);
}

QWidget *titleField(const KQCollapsibleView &view)
{
    return view.findChild<QWidget *>(QStringLiteral("titleField"));
}

QToolButton *collapseButton(const KQCollapsibleView &view)
{
    return view.findChild<QToolButton *>(QStringLiteral("collapseButton"));
}

void finishAnimation(const KQCollapsibleView &view)
{
    QVariantAnimation *animation = view.currentAnimation();
    QVERIFY(animation != nullptr);
    animation->setCurrentTime(animation->duration());
}

} // namespace

class TestCollapsibleView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void construction_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QSize>("expectedSize");
        QTest::addColumn<int>("expectedContentY");
        QTest::newRow("titled") << QStringLiteral("Fill") << QSize(200, 118) << 18;
        QTest::newRow("untitled") << QString() << QSize(200, 100) << 0;
        QTest::newRow("empty title still has a header") << QStringLiteral("") << QSize(200, 118) << 18;
    }

    void construction()
    {
        QFETCH(QString, title);
        QFETCH(QSize, expectedSize);
        QFETCH(int, expectedContentY);
        const auto view = makeView(title);
        QCOMPARE(view->size(), expectedSize);
        QCOMPARE(view->contentView()->geometry(), QRect(0, expectedContentY, 200, 100));
        QCOMPARE(view->contentView()->parentWidget(), view.get());
        QCOMPARE(collapseButton(*view) != nullptr, !title.isNull());
        QCOMPARE(titleField(*view) != nullptr, !title.isNull());
    }

    void titleLayout_data()
    {
        QTest::addColumn<bool>("collapsable");
        QTest::addColumn<int>("viewWidth");
        QTest::addColumn<QRect>("expectedTitleFrame");
        QTest::newRow("after the button") << true << 200 << QRect(18, 0, 182, 18);
        QTest::newRow("no button: starts at 3") << false << 200 << QRect(3, 0, 197, 18);
        QTest::newRow("narrower than the title origin") << true << 12 << QRect(18, 0, 10, 18);
        QTest::newRow("exactly the title origin") << false << 3 << QRect(3, 0, 10, 18);
    }

    void titleLayout()
    {
        QFETCH(bool, collapsable);
        QFETCH(int, viewWidth);
        QFETCH(QRect, expectedTitleFrame);
        const auto view = makeView(QStringLiteral("Title"), collapsable);
        view->resize(viewWidth, view->height());
        view->layoutSubviews();
        QCOMPARE(titleField(*view)->geometry(), expectedTitleFrame);
        QCOMPARE(collapseButton(*view)->geometry(), QRect(0, 0, 18, 18));
        QCOMPARE(collapseButton(*view)->isHidden(), !collapsable);
        QCOMPARE(view->contentView()->width(), viewWidth);
    }

    void heightLimits()
    {
        const auto view = makeView(QStringLiteral("T"), true, false);
        QCOMPARE(view->minHeight(), 118.0);
        QCOMPARE(view->maxHeight(), 118.0);
        view->setIsHeightResizable(true);
        QCOMPARE(view->minHeight(), 18.0);
        QCOMPARE(view->maxHeight(), std::numeric_limits<double>::max());
        view->setCollapsed(true, false);
        // Collapsed and resizable: the maximum is the current height.
        QCOMPARE(view->minHeight(), 18.0);
        QCOMPARE(view->maxHeight(), 18.0);
    }

    void collapseWithoutAnimationStillSendsBothMessages()
    {
        const auto view = makeView(QStringLiteral("A"));
        QWidget neighbour;
        RecordingViewDelegate delegate;
        delegate.extraTarget = &neighbour;
        delegate.extraEndFrame = QRectF(5, 6, 7, 8);
        view->setDelegate(&delegate);
        view->move(4, 9);

        view->setCollapsed(true, false);

        QCOMPARE(delegate.log, (QStringList{QStringLiteral("will A 118 -> 18"), QStringLiteral("finished A")}));
        QCOMPARE(view->geometry(), QRect(4, 9, 200, 18));
        QVERIFY(view->isCollapsed());
        QVERIFY(!view->isAnimating());
        QVERIFY(!collapseButton(*view)->isChecked());
        QCOMPARE(collapseButton(*view)->arrowType(), Qt::RightArrow);
        // The delegate's entries first, the view's own last; all applied.
        QCOMPARE(delegate.finished.size(), 2);
        QCOMPARE(delegate.finished.at(0).target.data(), &neighbour);
        QCOMPARE(neighbour.geometry(), QRect(5, 6, 7, 8));
        QCOMPARE(delegate.finished.at(1).target.data(), view.get());
        QCOMPARE(delegate.finished.at(1).endFrame, QRectF(4, 9, 200, 18));
    }

    void animatedCollapseDrivenToItsEnd()
    {
        const auto view = makeView(QStringLiteral("A"));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);

        collapseButton(*view)->click();

        QVERIFY(view->isCollapsed()); // at once, before the height follows
        QVERIFY(view->isAnimating());
        QCOMPARE(view->minHeight(), 118.0);
        QCOMPARE(delegate.log, QStringList{QStringLiteral("will A 118 -> 18")});
        QVariantAnimation *animation = view->currentAnimation();
        QVERIFY(animation);
        QCOMPARE(animation->duration(), KQCollapsibleView::AnimationDurationMs);

        animation->setCurrentTime(animation->duration() / 2);
        QCOMPARE(view->height(), 68);
        QVERIFY(view->isAnimating());

        finishAnimation(*view);
        QCOMPARE(view->height(), 18);
        QVERIFY(!view->isAnimating());
        QCOMPARE(delegate.log.last(), QStringLiteral("finished A"));

        // Expanding goes back to the content's bottom edge.
        view->toggleCollapsed();
        finishAnimation(*view);
        QCOMPARE(view->height(), 118);
        QVERIFY(collapseButton(*view)->isChecked());
        QCOMPARE(delegate.log.size(), 4);
    }

    void togglingDuringAnAnimationFinishesItFirst()
    {
        const auto view = makeView(QStringLiteral("A"));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        view->toggleCollapsed();
        view->currentAnimation()->setCurrentTime(50);
        view->toggleCollapsed();
        QCOMPARE(delegate.log, (QStringList{QStringLiteral("will A 118 -> 18"), QStringLiteral("finished A"),
                                            QStringLiteral("will A 18 -> 118")}));
        finishAnimation(*view);
        QCOMPARE(view->height(), 118);
        QVERIFY(!view->isCollapsed());
    }

    void resizableContentKeepsItsHeightWhileCollapsed()
    {
        // Resized while hidden: no resize event reaches the view before it
        // collapses.
        const auto view = makeView(QStringLiteral("R"), true, true);
        view->resize(200, 218);
        view->setCollapsed(true, false);
        QCOMPARE(view->contentView()->height(), 200);
        view->setCollapsed(false, false);
        QCOMPARE(view->height(), 218);
        QCOMPARE(view->contentView()->geometry(), QRect(0, 18, 200, 200));
    }

    void untitledView()
    {
        const auto view = makeView(QString(), true, true, 60);
        QCOMPARE(view->minHeight(), 18.0);
        view->setCollapsed(true, false);
        QCOMPARE(view->height(), 18);
        view->setCollapsed(false, false);
        QCOMPARE(view->height(), 60);
    }

    void changeOfEpsilonDoesNothing()
    {
        const auto view = makeView(QStringLiteral("E"));
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        view->setHeight(118.0 + 1.1920928955078125e-7, true);
        QVERIFY(delegate.log.isEmpty());
        QVERIFY(!view->currentAnimation());
        QVERIFY(!view->isAnimating());
    }

    void expandingToTheCurrentHeightDoesNothing()
    {
        // Untitled with an 18-pixel content: collapsing does not change the
        // height, so neither does expanding.
        const auto view = makeView(QString(), true, false, 18);
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        view->setCollapsed(true, true);
        QVERIFY(view->isCollapsed());
        view->setCollapsed(false, true);
        QVERIFY(!view->isCollapsed());
        QVERIFY(delegate.log.isEmpty());
        QVERIFY(!view->currentAnimation());
    }

    void nonCollapsableViewRefuses()
    {
        const auto view = makeView(QStringLiteral("Fixed"), false);
        RecordingViewDelegate delegate;
        view->setDelegate(&delegate);
        MessageCapture capture;
        view->setCollapsed(true, false);
        const QByteArray report = capture.text();
        QVERIFY2(report.contains("(_canCollapse)"), report.constData());
        QVERIFY(!view->isCollapsed());
        QCOMPARE(view->height(), 118);
        QVERIFY(delegate.log.isEmpty());

        MessageCapture quiet;
        view->setCollapsed(false, false);
        QVERIFY(quiet.text().isEmpty());
    }

    void invalidInitializerIsReported()
    {
        MessageCapture capture;
        KQCollapsibleView view(QRect(0, 0, 50, 40));
        QVERIFY(capture.text().contains("Invalid initializer method called"));
        QVERIFY(view.title().isNull());
        QVERIFY(!view.contentView());
        QVERIFY(!view.canCollapse());
    }

    void headerDrawing_data()
    {
        // A header band is drawn exactly when there is a title; the top line
        // exactly when asked for.
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("topLine");
        QTest::addColumn<int>("collapse"); // 0 expanded, 1 collapsed, 2 collapse halfway
        QTest::addColumn<bool>("expectBottomLine");
        const QString t = QStringLiteral("Header");
        QTest::newRow("expanded") << t << false << 0 << true;
        QTest::newRow("with top line") << t << true << 0 << true;
        QTest::newRow("collapsed: no bottom line") << t << false << 1 << false;
        QTest::newRow("collapse running: line stays") << t << false << 2 << true;
        QTest::newRow("untitled: no header") << QString() << true << 0 << false;
    }

    void headerDrawing()
    {
        QFETCH(QString, title);
        QFETCH(bool, topLine);
        QFETCH(int, collapse);
        QFETCH(bool, expectBottomLine);
        const bool expectBand = !title.isNull();

        const QColor band(200, 40, 40), shadow(30, 30, 220), window(40, 180, 40);
        const auto view = makeView(title);
        QPalette palette = view->palette();
        palette.setColor(QPalette::Button, band);
        palette.setColor(QPalette::Dark, shadow);
        palette.setColor(QPalette::Window, window);
        view->setPalette(palette);
        view->setAutoFillBackground(true);
        view->setDrawTopLine(topLine);
        if (collapse > 0)
            view->setCollapsed(true, collapse == 2);
        if (collapse == 2)
            view->currentAnimation()->setCurrentTime(view->currentAnimation()->duration() / 2);

        const QImage image = view->grab().toImage();
        const int x = image.width() - 3; // right of the title text
        const QColor background = expectBand ? band : window;
        QCOMPARE(image.pixelColor(x, 8), background);
        QCOMPARE(image.pixelColor(x, 0), topLine ? shadow : background);
        QCOMPARE(image.pixelColor(x, 17), expectBottomLine ? shadow : background);
        if (expectBand)
            QCOMPARE(image.pixelColor(x, 16), band);
    }

    void delegateMayDestroyTheViewWhenTold()
    {
        struct Destroyer : QObject, KQCollapsibleViewDelegate
        {
            void collapsableViewWillAnimateFromHeight(KQCollapsibleView *, double, double, KQViewAnimations &) override
            {
            }
            void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &) override
            {
                delete view;
            }
        } destroyer;
        QPointer<KQCollapsibleView> view = makeView(QStringLiteral("Gone")).release();
        view->setDelegate(&destroyer);
        view->setCollapsed(true, false);
        QVERIFY(!view);
    }

    void changeBelowEpsilonLeavesARunningAnimationAlone()
    {
        const auto view = makeView(QStringLiteral("M"));
        view->setCollapsed(true, true);
        QVariantAnimation *animation = view->currentAnimation();
        animation->setCurrentTime(animation->duration() / 2);
        view->setHeight(view->height(), true);
        QCOMPARE(view->currentAnimation(), animation);
        QCOMPARE(animation->state(), QAbstractAnimation::Running);
        QVERIFY(view->isAnimating());
    }
};

QTEST_MAIN(TestCollapsibleView)
#include "tst_collapsibleview.moc"
