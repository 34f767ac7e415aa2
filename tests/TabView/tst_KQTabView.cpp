#include "TabViewTestSupport.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtGui/QAccessible>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

#include <memory>

class tst_KQTabView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void tabNotifiesOnlyChanges_data();
    void tabNotifiesOnlyChanges();
    void newIconIsRepainted();
    void initWithTabsSizing_data();
    void initWithTabsSizing();
    void setTabsSelectsFirst();
    void setTabsEmptySelectsNothing();
    void delegateOrder();
    void reselectingIsNotShortCut();
    void delegateMayDestroyTheTabView_data();
    void delegateMayDestroyTheTabView();
    void selectForeignTabIsRefused();
    void contentFrameFollowsSize();
    void initialFirstResponderGetsFocus();
    void hideTab_data();
    void hideTab();
    void hideTabSelectionKeepsSelection();
    void showTab();
    void replaceTab_data();
    void replaceTab();
    void tagsActOnFirstTab();
    void tabsChangedOnlyOnChange_data();
    void tabsChangedOnlyOnChange();
    void destroyedTabDropsOut();
    void widgetReplacedWhileSelected();
    void destroyedViewWithDroppedTabs();
    void toolTipAtPoint_data();
    void toolTipAtPoint();
    void clickSequences_data();
    void clickSequences();
    void emptyBarIsStillDrawn();
    void pressForgottenWhenHidden();
    void selectedLook();
    void pressedLook();
    void sharpIconsOnHighDpi();
    void noAccessibilityWhenSwitchedOff();

private:
    // A shown 200 x 100 tab view with tabs tagged 1, 2, 3 (tooltips "one"...).
    KQTabView *makeTabView(int count = 3);
    QImage grabBar(KQTabView *view);

    std::unique_ptr<QWidget> m_window;
};

void tst_KQTabView::initTestCase()
{
    KQSettings::enableTestMode();
}

void tst_KQTabView::cleanup()
{
    m_window.reset();
}

KQTabView *tst_KQTabView::makeTabView(int count)
{
    m_window = std::make_unique<QWidget>();
    m_window->resize(200, 100);
    auto *view = new KQTabView(QRect(0, 0, 200, 100), m_window.get());
    const QStringList tooltips{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"),
                               QStringLiteral("four")};
    QList<KQTab *> tabs;
    for (int i = 0; i < count; ++i)
        tabs << makeTab(view, i + 1, tooltips.value(i));
    view->setTabs(tabs);
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        return nullptr;
    return view;
}

QImage tst_KQTabView::grabBar(KQTabView *view)
{
    return view->grab(QRect(0, 0, view->width(), 27)).toImage().convertToFormat(QImage::Format_ARGB32);
}

void tst_KQTabView::tabNotifiesOnlyChanges_data()
{
    // A property set to a first value, then to a second: how many
    // notifications the second brings.
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QVariant>("first");
    QTest::addColumn<QVariant>("second");
    QTest::addColumn<int>("notified");

    const QIcon red = makeIcon(Qt::red);
    QTest::newRow("same icon again") << QByteArray("icon") << QVariant(red) << QVariant(red) << 0;
    QTest::newRow("another icon") << QByteArray("icon") << QVariant(red) << QVariant(makeIcon(Qt::red)) << 1;
    QTest::newRow("no icon to no icon") << QByteArray("icon") << QVariant(QIcon()) << QVariant(QIcon()) << 0;
    QTest::newRow("same tag") << QByteArray("tag") << QVariant(qint64(5)) << QVariant(qint64(5)) << 0;
    QTest::newRow("another tag") << QByteArray("tag") << QVariant(qint64(5)) << QVariant(qint64(6)) << 1;
    QTest::newRow("no tooltip to empty tooltip")
        << QByteArray("iconTooltip") << QVariant(QString()) << QVariant(QStringLiteral("")) << 1;
    QTest::newRow("same tooltip") << QByteArray("iconTooltip") << QVariant(QStringLiteral("a"))
                                  << QVariant(QStringLiteral("a")) << 0;
}

void tst_KQTabView::tabNotifiesOnlyChanges()
{
    QFETCH(QByteArray, property);
    QFETCH(QVariant, first);
    QFETCH(QVariant, second);
    QFETCH(int, notified);

    KQTab tab;
    const QMetaProperty meta = tab.metaObject()->property(tab.metaObject()->indexOfProperty(property));
    QVERIFY(meta.isValid() && meta.hasNotifySignal());
    QVERIFY(meta.write(&tab, first));
    QSignalSpy spy(&tab, meta.notifySignal());
    QVERIFY(meta.write(&tab, second));
    QCOMPARE(spy.count(), notified);
}

// Counts its paint events.
class CountingTabView : public KQTabView
{
public:
    using KQTabView::KQTabView;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        ++paints;
        KQTabView::paintEvent(event);
    }
};

void tst_KQTabView::newIconIsRepainted()
{
    m_window = std::make_unique<QWidget>();
    auto *view = new CountingTabView(QRect(0, 0, 200, 100), m_window.get());
    KQTab *tab = makeTab(view, 1);
    view->setTabs({tab});
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCoreApplication::processEvents();
    view->paints = 0;
    tab->setIcon(makeIcon(Qt::blue));
    QCoreApplication::processEvents();
    QVERIFY(view->paints > 0);
}

void tst_KQTabView::initWithTabsSizing_data()
{
    QTest::addColumn<QList<QSize>>("viewSizes");
    QTest::addColumn<QSize>("frame");

    QTest::newRow("largest width and height independently")
        << QList<QSize>{{200, 100}, {150, 300}} << QSize(200, 327);
    QTest::newRow("a tab without a view counts as nothing") << QList<QSize>{{-1, -1}, {80, 40}} << QSize(80, 67);
    QTest::newRow("no tabs") << QList<QSize>{} << QSize(0, 27);
}

void tst_KQTabView::initWithTabsSizing()
{
    QFETCH(QList<QSize>, viewSizes);
    QFETCH(QSize, frame);

    QObject owner;
    QList<KQTab *> tabs;
    for (const QSize &size : viewSizes) {
        KQTab *tab = makeTab(&owner, tabs.size() + 1, QString(), size.isValid() ? size : QSize(10, 10));
        if (!size.isValid()) {
            delete tab->view();
            QCOMPARE(tab->view(), nullptr);
        }
        tabs << tab;
    }
    KQTabView view(tabs);
    QCOMPARE(view.geometry(), QRect(QPoint(0, 0), frame));
    QCOMPARE(view.selectedTab(), tabs.value(0, nullptr));
    QCOMPARE(view.tabs(), tabs);
}

void tst_KQTabView::setTabsSelectsFirst()
{
    KQTabView view(QRect(0, 0, 200, 100));
    RecordingDelegate delegate;
    view.setDelegate(&delegate);
    KQTab *a = makeTab(&view, 1);
    KQTab *b = makeTab(&view, 2);
    view.setTabs({a, b});
    QCOMPARE(view.selectedTab(), a);
    QCOMPARE(delegate.log, (QStringList{QStringLiteral("will 1<-- shown:"), QStringLiteral("did 1<-- shown:view1")}));
    QCOMPARE(a->view()->parentWidget(), &view);
    QVERIFY(!a->view()->isHidden());
}

void tst_KQTabView::setTabsEmptySelectsNothing()
{
    KQTabView view(QRect(0, 0, 200, 100));
    KQTab *a = makeTab(&view, 1);
    view.setTabs({a});
    RecordingDelegate delegate;
    view.setDelegate(&delegate);
    view.setTabs({});
    QCOMPARE(view.selectedTab(), nullptr);
    QVERIFY(view.tabs().isEmpty());
    QCOMPARE(delegate.log, (QStringList{QStringLiteral("will -<-1 shown:view1"), QStringLiteral("did -<-1 shown:")}));
}

void tst_KQTabView::delegateOrder()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    RecordingDelegate delegate;
    view->setDelegate(&delegate);
    QSignalSpy changed(view, &KQTabView::selectedTabChanged);
    view->selectTab(view->tabs().at(2));
    // The old widget is still up when "will" comes, the new one when "did" comes.
    QCOMPARE(delegate.log,
             (QStringList{QStringLiteral("will 3<-1 shown:view1"), QStringLiteral("did 3<-1 shown:view3")}));
    QCOMPARE(changed.count(), 1);
}

void tst_KQTabView::reselectingIsNotShortCut()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    RecordingDelegate delegate;
    view->setDelegate(&delegate);
    view->selectTab(view->selectedTab());
    QCOMPARE(delegate.log,
             (QStringList{QStringLiteral("will 1<-1 shown:view1"), QStringLiteral("did 1<-1 shown:view1")}));
}

void tst_KQTabView::delegateMayDestroyTheTabView_data()
{
    QTest::addColumn<bool>("inWill");
    QTest::addColumn<QString>("how");

    for (const bool inWill : {true, false}) {
        const char *when = inWill ? "in will" : "in did";
        for (const char *how : {"select", "click", "hide", "set"})
            QTest::addRow("%s, %s", when, how) << inWill << QString::fromLatin1(how);
    }
}

void tst_KQTabView::delegateMayDestroyTheTabView()
{
    QFETCH(bool, inWill);
    QFETCH(QString, how);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    DestroyingDelegate delegate;
    delegate.inWill = inWill;
    view->setDelegate(&delegate);
    const QPointer<KQTabView> watched(view);
    if (how == QLatin1String("select")) {
        view->selectTab(view->tabs().at(1));
    } else if (how == QLatin1String("click")) {
        QTest::mousePress(view, Qt::LeftButton, {}, QPoint(90, 10));
        QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(90, 10));
    } else if (how == QLatin1String("hide")) {
        view->hideTab(1);
    } else {
        view->setTabs(view->tabs().mid(1));
    }
    // Nothing of the tab view may be touched once it is gone (run under
    // valgrind or ASan to see the difference).
    QVERIFY(watched.isNull());
    QVERIFY(m_window->findChildren<KQTabView *>().isEmpty());
}

void tst_KQTabView::selectForeignTabIsRefused()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    KQTabView other(QRect(0, 0, 100, 100));
    KQTab *foreign = makeTab(&other, 9);
    other.setTabs({foreign});
    RecordingDelegate delegate;
    view->setDelegate(&delegate);

    StderrCapture capture;
    view->selectTab(foreign);
    const QString report = capture.text();
    QVERIFY2(report.contains(QStringLiteral("tab == nil || [_tabs containsObject:tab]")), qPrintable(report));
    QCOMPARE(view->selectedTab(), view->tabs().at(0));
    QVERIFY(delegate.log.isEmpty());
    QCOMPARE(foreign->view()->parentWidget(), &other);
}

void tst_KQTabView::contentFrameFollowsSize()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    QWidget *content = view->selectedTab()->view();
    QCOMPARE(content->geometry(), QRect(0, 27, 200, 73));
    view->resize(300, 20);
    QCOMPARE(content->geometry(), QRect(0, 27, 300, 0));
    view->resize(250, 150);
    QCOMPARE(content->geometry(), QRect(0, 27, 250, 123));
}

void tst_KQTabView::initialFirstResponderGetsFocus()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    KQTab *second = view->tabs().at(1);
    auto *field = new QLineEdit(second->view());
    second->setInitialFirstResponder(field);
    view->selectTab(second);
    QCOMPARE(QApplication::focusWidget(), field);
}

void tst_KQTabView::hideTab_data()
{
    QTest::addColumn<int>("selectTag");
    QTest::addColumn<QList<qint64>>("hide");
    QTest::addColumn<QList<qint64>>("visible");
    QTest::addColumn<int>("selected"); // tag, 0 for none

    QTest::newRow("hiding the selected selects the first left") << 1 << QList<qint64>{1} << QList<qint64>{2, 3} << 2;
    QTest::newRow("hiding another keeps the selection") << 2 << QList<qint64>{1} << QList<qint64>{2, 3} << 2;
    QTest::newRow("hiding every tab selects nothing") << 3 << QList<qint64>{3, 1, 2} << QList<qint64>{} << 0;
    QTest::newRow("unknown tag is ignored") << 2 << QList<qint64>{42} << QList<qint64>{1, 2, 3} << 2;
}

void tst_KQTabView::hideTab()
{
    QFETCH(int, selectTag);
    QFETCH(QList<qint64>, hide);
    QFETCH(QList<qint64>, visible);
    QFETCH(int, selected);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->selectTab(view->tabs().at(selectTag - 1));
    for (qint64 tag : hide)
        view->hideTab(tag);
    QList<qint64> tags;
    for (KQTab *tab : view->tabs())
        tags << tab->tag();
    QCOMPARE(tags, visible);
    QCOMPARE(view->selectedTab() ? view->selectedTab()->tag() : 0, qint64(selected));
    QCOMPARE(view->hiddenTabs().size() + view->tabs().size(), qsizetype(3));
}

void tst_KQTabView::hideTabSelectionKeepsSelection()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    KQTab *first = view->tabs().at(0);
    QVERIFY(view->hideTabSelection(1));
    QCOMPARE(view->selectedTab(), first);
    QVERIFY(!first->view()->isHidden());
    QCOMPARE(view->hiddenTabs(), QList<KQTab *>{first});
    QVERIFY(!view->hideTabSelection(2)); // visible but not selected
    QVERIFY(!view->hideTabSelection(42));
}

void tst_KQTabView::showTab()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->hideTab(2);
    view->hideTab(3);
    KQTab *selected = view->selectedTab();
    view->showTab(3, 0);
    view->showTab(2, 2);
    view->showTab(42, 0);
    QList<qint64> tags;
    for (KQTab *tab : view->tabs())
        tags << tab->tag();
    QCOMPARE(tags, (QList<qint64>{3, 1, 2}));
    QCOMPARE(view->selectedTab(), selected);
    QVERIFY(view->hiddenTabs().isEmpty());

    // Past the end: reported, and the tab stays hidden.
    view->hideTab(3);
    StderrCapture capture;
    view->showTab(3, 5);
    QVERIFY(!capture.text().isEmpty());
    QCOMPARE(view->hiddenTabs().size(), qsizetype(1));
}

void tst_KQTabView::replaceTab_data()
{
    QTest::addColumn<QList<qint64>>("hiddenFirst");
    QTest::addColumn<int>("selectTag");
    QTest::addColumn<qint64>("oldTag");
    QTest::addColumn<qint64>("newTag");
    QTest::addColumn<int>("position");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QList<qint64>>("visible");
    QTest::addColumn<int>("selected");

    QTest::newRow("new tab already in place: nothing happens")
        << QList<qint64>{} << 1 << qint64(1) << qint64(2) << 1 << false << QList<qint64>{1, 2, 3} << 1;
    QTest::newRow("visible new tab moves, selected old one is replaced")
        << QList<qint64>{} << 1 << qint64(1) << qint64(3) << 0 << true << QList<qint64>{3, 2} << 3;
    QTest::newRow("hidden new tab comes back, unselected old one hides")
        << QList<qint64>{3} << 1 << qint64(2) << qint64(3) << 1 << true << QList<qint64>{1, 3} << 1;
    QTest::newRow("hidden new tab replaces the selected old one")
        << QList<qint64>{3} << 2 << qint64(2) << qint64(3) << 0 << true << QList<qint64>{3, 1} << 3;
    QTest::newRow("unknown new tag: the selected old tab hides, nothing selected")
        << QList<qint64>{} << 2 << qint64(2) << qint64(42) << 0 << false << QList<qint64>{1, 3} << 0;
    QTest::newRow("unknown new tag, unselected old tab")
        << QList<qint64>{} << 1 << qint64(2) << qint64(42) << 0 << false << QList<qint64>{1, 3} << 1;
}

void tst_KQTabView::replaceTab()
{
    QFETCH(QList<qint64>, hiddenFirst);
    QFETCH(int, selectTag);
    QFETCH(qint64, oldTag);
    QFETCH(qint64, newTag);
    QFETCH(int, position);
    QFETCH(bool, result);
    QFETCH(QList<qint64>, visible);
    QFETCH(int, selected);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->selectTab(view->tabs().at(selectTag - 1));
    for (qint64 tag : hiddenFirst)
        QVERIFY(!view->hideTabSelection(tag));
    QCOMPARE(view->replaceTab(oldTag, newTag, position), result);
    QList<qint64> tags;
    for (KQTab *tab : view->tabs())
        tags << tab->tag();
    QCOMPARE(tags, visible);
    QCOMPARE(view->selectedTab() ? view->selectedTab()->tag() : 0, qint64(selected));
}

void tst_KQTabView::tagsActOnFirstTab()
{
    KQTabView view(QRect(0, 0, 200, 100));
    KQTab *a = makeTab(&view, 7);
    KQTab *b = makeTab(&view, 7);
    view.setTabs({a, b});
    view.hideTab(7);
    QCOMPARE(view.tabs(), QList<KQTab *>{b});
    QCOMPARE(view.selectedTab(), b);
    view.showTab(7, 1);
    QCOMPARE(view.tabs(), (QList<KQTab *>{b, a}));
}

void tst_KQTabView::tabsChangedOnlyOnChange_data()
{
    // Each operation after hiding tab 3: whether the visible tabs changed.
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("changed");

    QTest::newRow("hide a visible tab") << QStringLiteral("hide 2") << true;
    QTest::newRow("hide an unknown tag") << QStringLiteral("hide 42") << false;
    QTest::newRow("hide a hidden tab") << QStringLiteral("hide 3") << false;
    QTest::newRow("show a hidden tab") << QStringLiteral("show 3") << true;
    QTest::newRow("show a visible tab") << QStringLiteral("show 1") << false;
    QTest::newRow("replace, new tab already in place") << QStringLiteral("replace 1 2 1") << false;
    QTest::newRow("replace, unknown tags") << QStringLiteral("replace 41 42 0") << false;
    QTest::newRow("replace, hidden new tab") << QStringLiteral("replace 1 3 0") << true;
    QTest::newRow("set the same tabs") << QStringLiteral("set") << true;
    QTest::newRow("destroy a visible tab") << QStringLiteral("destroy 2") << true;
    QTest::newRow("destroy a hidden tab") << QStringLiteral("destroy 3") << false;
    QTest::newRow("select another tab") << QStringLiteral("select 2") << false;
}

void tst_KQTabView::tabsChangedOnlyOnChange()
{
    QFETCH(QString, operation);
    QFETCH(bool, changed);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->hideTab(3);
    const QList<KQTab *> before = view->tabs();
    QSignalSpy spy(view, &KQTabView::tabsChanged);
    const QStringList words = operation.split(QLatin1Char(' '));
    const auto arg = [&words](int i) { return words.value(i).toLongLong(); };
    const auto tagged = [view](qint64 tag) {
        for (KQTab *tab : view->tabs() + view->hiddenTabs())
            if (tab->tag() == tag)
                return tab;
        return static_cast<KQTab *>(nullptr);
    };
    if (words[0] == QLatin1String("hide"))
        view->hideTab(arg(1));
    else if (words[0] == QLatin1String("show"))
        view->showTab(arg(1), 0);
    else if (words[0] == QLatin1String("replace"))
        view->replaceTab(arg(1), arg(2), arg(3));
    else if (words[0] == QLatin1String("set"))
        view->setTabs(view->tabs());
    else if (words[0] == QLatin1String("destroy"))
        delete tagged(arg(1));
    else
        view->selectTab(tagged(arg(1)));
    QCOMPARE(spy.isEmpty(), !changed);
    if (!changed || words[0] == QLatin1String("set"))
        QCOMPARE(view->tabs().size(), before.size());
    // The property reads what the signal announced.
    QCOMPARE(view->property("tabs").value<QList<KQTab *>>(), view->tabs());
}

void tst_KQTabView::destroyedTabDropsOut()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    view->hideTab(3);
    delete view->tabs().at(1);
    delete view->hiddenTabs().at(0);
    QCOMPARE(view->tabs().size(), qsizetype(1));
    QVERIFY(view->hiddenTabs().isEmpty());
    QWidget *shown = view->selectedTab()->view();
    QVERIFY(!shown->isHidden());
    QSignalSpy changed(view, &KQTabView::selectedTabChanged);
    delete view->selectedTab();
    QCOMPARE(view->selectedTab(), nullptr);
    QVERIFY(view->tabs().isEmpty());
    // Its widget does not stay on show for a selection that is gone.
    QVERIFY(shown->isHidden());
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.at(0).at(0).value<KQTab *>(), nullptr);
    QCOMPARE(view->tabAtPoint(QPointF(100, 10)), nullptr);
    (void)grabBar(view); // painting with nothing left must not crash
}

void tst_KQTabView::widgetReplacedWhileSelected()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    KQTab *first = view->tabs().at(0);
    QWidget *installed = first->view();
    auto *replacement = new QWidget(m_window.get());
    first->setView(replacement);
    // The widget on show is the one taken down, not the tab's new one.
    view->selectTab(view->tabs().at(1));
    QVERIFY(installed->isHidden());
    QVERIFY(!view->tabs().at(1)->view()->isHidden());
    view->resize(260, 120);
    QCOMPARE(view->tabs().at(1)->view()->geometry(), QRect(0, 27, 260, 93));
    // Selected again, the tab installs its new widget.
    view->selectTab(first);
    QCOMPARE(replacement->parentWidget(), view);
    QVERIFY(!replacement->isHidden());
    QVERIFY(view->tabs().at(1)->view()->isHidden());
}

void tst_KQTabView::destroyedViewWithDroppedTabs()
{
    // Tabs the view adopted and setTabs later dropped are still its children:
    // they die with it and must not call back into it (valgrind/ASan show it).
    auto view = std::make_unique<KQTabView>(QRect(0, 0, 200, 100));
    KQTab *kept = makeTab(nullptr, 1);
    KQTab *dropped = makeTab(nullptr, 2);
    view->setTabs({kept, dropped});
    view->setTabs({kept});
    view->setTabs({kept});
    QCOMPARE(dropped->parent(), view.get());
    const QPointer<KQTab> watched(dropped);
    view.reset();
    QVERIFY(watched.isNull());
}

void tst_KQTabView::toolTipAtPoint_data()
{
    QTest::addColumn<QPointF>("point");
    QTest::addColumn<QVariant>("tooltip");

    QTest::newRow("first cell") << QPointF(50, 10) << QVariant(QStringLiteral("one"));
    QTest::newRow("shared edge") << QPointF(80, 10) << QVariant(QStringLiteral("two"));
    QTest::newRow("tab without tooltip") << QPointF(130, 10) << QVariant();
    QTest::newRow("separator row") << QPointF(50, 26.5) << QVariant();
    QTest::newRow("beside the cells") << QPointF(10, 10) << QVariant();
    QTest::newRow("content area") << QPointF(50, 60) << QVariant();
}

void tst_KQTabView::toolTipAtPoint()
{
    QFETCH(QPointF, point);
    QFETCH(QVariant, tooltip);

    KQTabView view(QRect(0, 0, 200, 100));
    view.setTabs({makeTab(&view, 1, QStringLiteral("one")), makeTab(&view, 2, QStringLiteral("two")),
                  makeTab(&view, 3)});
    auto *tipping = qobject_cast<ToolTipping_ZL *>(&view);
    QVERIFY(tipping);
    bool wrap = true;
    const QVariant answer = tipping->toolTipAtPoint(point, &wrap);
    QCOMPARE(answer.isValid(), tooltip.isValid());
    if (tooltip.isValid()) {
        QCOMPARE(answer.typeId(), QMetaType::QString);
        QCOMPARE(answer.toString(), tooltip.toString());
    }
    QVERIFY(wrap);
}

void tst_KQTabView::clickSequences_data()
{
    // Steps as "p x" (press), "m x" (move with the button down), "r x"
    // (release), all at y = 10; the pressed tag after each step; the
    // selected tag at the end (0: none).
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QList<int>>("pressed");
    QTest::addColumn<int>("selected");

    QTest::newRow("click the third") << QStringList{QStringLiteral("p 130"), QStringLiteral("r 130")}
                                     << QList<int>{3, 0} << 3;
    QTest::newRow("press first, drag to second, release")
        << QStringList{QStringLiteral("p 50"), QStringLiteral("m 90"), QStringLiteral("r 90")}
        << QList<int>{1, 2, 0} << 2;
    QTest::newRow("drag off the cells, release: nothing selected")
        << QStringList{QStringLiteral("p 130"), QStringLiteral("m 190"), QStringLiteral("r 190")}
        << QList<int>{3, 0, 0} << 1;
    QTest::newRow("off and back on")
        << QStringList{QStringLiteral("p 130"), QStringLiteral("m 10"), QStringLiteral("m 125"),
                       QStringLiteral("r 125")}
        << QList<int>{3, 0, 3, 0} << 3;
    QTest::newRow("stray release over a cell") << QStringList{QStringLiteral("r 90")} << QList<int>{0} << 2;
}

void tst_KQTabView::clickSequences()
{
    QFETCH(QStringList, steps);
    QFETCH(QList<int>, pressed);
    QFETCH(int, selected);

    KQTabView *view = makeTabView();
    QVERIFY(view);
    RecordingDelegate delegate;
    view->setDelegate(&delegate);
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const QPoint point(steps[i].mid(2).toInt(), 10);
        switch (steps[i].at(0).toLatin1()) {
        case 'p':
            QTest::mousePress(view, Qt::LeftButton, {}, point);
            break;
        case 'm':
            QTest::mouseMove(view, point);
            break;
        default:
            QTest::mouseRelease(view, Qt::LeftButton, {}, point);
            break;
        }
        const KQTab *down = view->pressedDownTab();
        QCOMPARE(down ? int(down->tag()) : 0, pressed[i]);
    }
    QCOMPARE(view->selectedTab() ? int(view->selectedTab()->tag()) : 0, selected);
    // A release that selects nothing sends nothing to the delegate.
    QCOMPARE(delegate.log.isEmpty(), selected == 1 && steps.last() == QStringLiteral("r 190"));
}

void tst_KQTabView::pressForgottenWhenHidden()
{
    KQTabView *view = makeTabView();
    QVERIFY(view);
    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(130, 10));
    QCOMPARE(view->pressedDownTab(), view->tabs().at(2));
    m_window->hide();
    QCOMPARE(view->pressedDownTab(), nullptr);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QCOMPARE(view->pressedDownTab(), nullptr);
    QCOMPARE(view->selectedTab(), view->tabs().at(0));
}

void tst_KQTabView::emptyBarIsStillDrawn()
{
    KQTabView *view = makeTabView(0);
    QVERIFY(view);
    const QImage bar = grabBar(view);
    const QRgb background = view->palette().color(QPalette::Button).rgba();
    const QRgb separator = view->palette().color(QPalette::Dark).rgba();
    QVERIFY(background != separator);
    for (const int x : {0, 100, 199}) {
        QCOMPARE(bar.pixel(x, 0), background);
        QCOMPARE(bar.pixel(x, 25), background);
        QCOMPARE(bar.pixel(x, 26), separator);
    }
}

void tst_KQTabView::selectedLook()
{
    KQTabView *view = makeTabView(3);
    QVERIFY(view);
    view->selectTab(view->tabs().at(1)); // cell x 80..120, no icon
    const QImage bar = grabBar(view);
    const QRgb background = view->palette().color(QPalette::Button).rgba();
    const QRgb separator = view->palette().color(QPalette::Dark).rgba();

    // Unselected cell and the space beside the cells: plain bar colour.
    QCOMPARE(bar.pixel(50, 13), background);
    QCOMPARE(bar.pixel(5, 13), background);
    // The separator along the bottom row, across the whole bar.
    QCOMPARE(bar.pixel(0, 26), separator);
    QCOMPARE(bar.pixel(199, 26), separator);
    QCOMPARE(bar.pixel(5, 25), background);
    // Selected cell: darker at the left and right edges in the middle row...
    const int edgeLeft = bar.pixelColor(80, 13).lightness();
    const int edgeRight = bar.pixelColor(119, 13).lightness();
    const int middle = bar.pixelColor(100, 13).lightness();
    const int plain = QColor(background).lightness();
    QVERIFY2(edgeLeft < plain - 20, qPrintable(QString::number(edgeLeft)));
    QVERIFY2(edgeRight < plain - 20, qPrintable(QString::number(edgeRight)));
    QVERIFY2(qAbs(middle - plain) <= 2, qPrintable(QString::number(middle)));
    // ...fading out toward the top and bottom of the cell.
    const int edgeTop = bar.pixelColor(80, 0).lightness();
    QVERIFY2(qAbs(edgeTop - plain) <= 3, qPrintable(QString::number(edgeTop)));
    const int edgeQuarter = bar.pixelColor(80, 6).lightness();
    QVERIFY(edgeQuarter > edgeLeft && edgeQuarter < plain);
}

void tst_KQTabView::pressedLook()
{
    KQTabView *view = makeTabView(3);
    QVERIFY(view);
    for (KQTab *tab : view->tabs())
        tab->setIcon(makeIcon(QColor(255, 0, 0)));
    const QRgb background = view->palette().color(QPalette::Button).rgba();

    // Icon of the first cell (40..80) at (52, 5) 16 x 16; its top-left
    // quadrant is transparent. The first tab is selected: test the second.
    QImage bar = grabBar(view);
    QCOMPARE(bar.pixelColor(95, 15), QColor(255, 0, 0));
    QCOMPARE(bar.pixel(93, 6), background);

    QTest::mousePress(view, Qt::LeftButton, {}, QPoint(100, 10));
    QCOMPARE(view->pressedDownTab(), view->tabs().at(1));
    bar = grabBar(view);
    // Only the icon's opaque pixels darken, by 40 % black.
    QCOMPARE(bar.pixelColor(95, 15), QColor(153, 0, 0));
    QCOMPARE(bar.pixel(93, 6), background);  // transparent quadrant
    QCOMPARE(bar.pixel(85, 15), background); // beside the icon
    QCOMPARE(bar.pixelColor(135, 15), QColor(255, 0, 0)); // the third tab is not pressed

    QTest::mouseMove(view, QPoint(190, 10));
    bar = grabBar(view);
    QCOMPARE(bar.pixelColor(95, 15), QColor(255, 0, 0));
    QTest::mouseRelease(view, Qt::LeftButton, {}, QPoint(190, 10));
}

void tst_KQTabView::sharpIconsOnHighDpi()
{
    // An icon with a 32 x 32 version for density 2 in stripes one device
    // pixel wide: drawn at density 2 they must stay one pixel wide.
    QImage stripes(32, 32, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < 32; ++y)
        for (int x = 0; x < 32; ++x)
            stripes.setPixelColor(x, y, x % 2 ? QColor(0, 0, 255) : QColor(255, 255, 0));
    QPixmap high = QPixmap::fromImage(stripes);
    high.setDevicePixelRatio(2.0);
    QIcon icon;
    icon.addPixmap(QPixmap::fromImage(stripes.scaled(16, 16)));
    icon.addPixmap(high);

    KQTabView view(QRect(0, 0, 200, 100));
    KQTab *tab = makeTab(&view, 1);
    tab->setIcon(icon);
    view.setTabs({tab}); // one cell at x 80, icon at (92, 5)
    QImage image(400, 200, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2.0);
    image.fill(Qt::white);
    view.render(&image);
    const int y = 2 * 5 + 10;
    for (int x = 2 * 92 + 4; x < 2 * 92 + 12; ++x) {
        const QColor expected = (x - 2 * 92) % 2 ? QColor(0, 0, 255) : QColor(255, 255, 0);
        QCOMPARE(image.pixelColor(x, y), expected);
    }
}

void tst_KQTabView::noAccessibilityWhenSwitchedOff()
{
    QVERIFY(!KQAccessibility::validForAutomateTesting());
    KQTabView *view = makeTabView(3);
    QVERIFY(view);
    view->setTabs(view->tabs());
    QCOMPARE(view->kqAccessibilityTabView(), nullptr);
    QAccessibleInterface *iface = QAccessible::queryAccessibleInterface(view);
    QVERIFY(iface);
    for (int i = 0; i < iface->childCount(); ++i) {
        QVERIFY(iface->child(i));
        QVERIFY(iface->child(i)->text(QAccessible::Name) != QStringLiteral("TabView Group"));
        QVERIFY(iface->child(i)->object()); // only widgets
    }
    QCOMPARE(view->accessibilityChildren().size(), qsizetype(iface->childCount()));
    QCOMPARE(view->kqAccessibilityTabView(), nullptr);
}

QTEST_MAIN(tst_KQTabView)
#include "tst_KQTabView.moc"
