// The widgets inside ordinary Qt layouts, driven from the keyboard, and drawn
// from whatever palette the application sets.
#include "KQTabBarGeometry_p.h"
#include "ToolTipColors_ZL_p.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtGui/QAccessible>
#include <QtGui/QImage>
#include <QtTest/QtTest>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <functional>
#include <memory>

namespace {

// Content that asks for a known size, as a form laid out in Designer would.
class Pane : public QWidget
{
public:
    explicit Pane(QSize hint, QWidget *parent = nullptr)
        : QWidget(parent)
        , m_hint(hint)
    {
        resize(hint);
    }
    QSize sizeHint() const override { return m_hint; }
    QSize minimumSizeHint() const override { return m_hint / 2; }

private:
    QSize m_hint;
};

QIcon solidIcon(const QColor &color)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(color);
    return QIcon(pixmap);
}

KQTabView *tabViewWithTabs(int count, QSize paneHint, QWidget *parent = nullptr)
{
    QList<KQTab *> tabs;
    for (int i = 0; i < count; ++i) {
        auto *tab = new KQTab;
        tab->setTag(i);
        tab->setView(new Pane(paneHint));
        tab->setIcon(solidIcon(QColor(40 * i, 100, 160)));
        tabs << tab;
    }
    auto *view = new KQTabView(parent);
    view->setTabs(tabs);
    return view;
}

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(53, 53, 53));
    palette.setColor(QPalette::WindowText, QColor(230, 230, 230));
    palette.setColor(QPalette::Button, QColor(53, 53, 53));
    palette.setColor(QPalette::ButtonText, QColor(230, 230, 230));
    palette.setColor(QPalette::Dark, QColor(20, 20, 20));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::ToolTipBase, QColor(60, 60, 52));
    palette.setColor(QPalette::ToolTipText, QColor(230, 230, 230));
    return palette;
}

QPalette highContrastPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::black);
    palette.setColor(QPalette::WindowText, Qt::yellow);
    palette.setColor(QPalette::Button, Qt::black);
    palette.setColor(QPalette::ButtonText, Qt::yellow);
    palette.setColor(QPalette::Dark, Qt::white);
    palette.setColor(QPalette::Highlight, Qt::cyan);
    palette.setColor(QPalette::ToolTipBase, Qt::black);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    return palette;
}

QPalette lightPalette()
{
    return QApplication::style()->standardPalette();
}

bool near(QColor actual, QColor expected, int tolerance = 3)
{
    return std::abs(actual.red() - expected.red()) <= tolerance
           && std::abs(actual.green() - expected.green()) <= tolerance
           && std::abs(actual.blue() - expected.blue()) <= tolerance;
}

QColor over(const QColor &top, double alpha, const QColor &bottom)
{
    return QColor::fromRgbF(float(top.redF() * alpha + bottom.redF() * (1 - alpha)),
                            float(top.greenF() * alpha + bottom.greenF() * (1 - alpha)),
                            float(top.blueF() * alpha + bottom.blueF() * (1 - alpha)));
}

QList<QAccessible::Event> s_accessibilityEvents;
QList<QObject *> s_accessibilityTargets;
void recordAccessibility(QAccessibleEvent *event)
{
    s_accessibilityEvents << event->type();
    s_accessibilityTargets << event->object();
}

} // namespace

class tst_Citizenship : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutsGiveTheHintedSize_data();
    void layoutsGiveTheHintedSize();
    void tabBarKeyboard_data();
    void tabBarKeyboard();
    void keyboardReachesTheControls();
    void focusFrameOnTheFocusedTab();
    void paletteColours_data();
    void paletteColours();
};

void tst_Citizenship::layoutsGiveTheHintedSize_data()
{
    QTest::addColumn<QString>("container");
    QTest::addColumn<std::function<QWidget *()>>("make");
    QTest::addColumn<QSize>("expected");

    // Geometry rules: bar 27 high above the largest pane; at least 40 per cell.
    const std::function<QWidget *()> tabView = [] { return tabViewWithTabs(3, QSize(200, 100)); };
    const std::function<QWidget *()> manyTabs = [] { return tabViewWithTabs(8, QSize(60, 50)); };
    // Header 18 high above the content; collapsed, the header alone.
    const std::function<QWidget *()> section = [] {
        return new KQCollapsibleView(QStringLiteral("Section"), new Pane(QSize(150, 60)), true, false);
    };
    const std::function<QWidget *()> collapsed = [] {
        auto *view = new KQCollapsibleView(QStringLiteral("Section"), new Pane(QSize(150, 60)), true, false);
        view->setCollapsed(true, false);
        return view;
    };
    // The list stacks its views: their heights add up, the widest sets the width.
    const std::function<QWidget *()> list = [] {
        auto *list = new KQCollapsibleListView;
        list->addCollapsableView(new KQCollapsibleView(QStringLiteral("One"), new Pane(QSize(150, 60)), true, false));
        list->addCollapsableView(new KQCollapsibleView(QStringLiteral("Two"), new Pane(QSize(180, 40)), true, false));
        return list;
    };

    for (const QString &container : {QStringLiteral("vbox"), QStringLiteral("grid"), QStringLiteral("splitter")}) {
        QTest::addRow("%s tab view", qPrintable(container)) << container << tabView << QSize(200, 127);
        QTest::addRow("%s tab view, cells wider than panes", qPrintable(container)) << container << manyTabs
                                                                                    << QSize(320, 77);
        QTest::addRow("%s collapsible", qPrintable(container)) << container << section << QSize(150, 78);
        QTest::addRow("%s collapsed", qPrintable(container)) << container << collapsed << QSize(150, 18);
        QTest::addRow("%s list", qPrintable(container)) << container << list << QSize(180, 136);
    }
}

void tst_Citizenship::layoutsGiveTheHintedSize()
{
    QFETCH(QString, container);
    QFETCH(std::function<QWidget *()>, make);
    QFETCH(QSize, expected);

    QWidget window;
    QWidget *widget = make();
    if (container == QLatin1String("splitter")) {
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        auto *splitter = new QSplitter(Qt::Vertical, &window);
        splitter->setHandleWidth(1);
        splitter->addWidget(widget);
        layout->addWidget(splitter);
    } else if (container == QLatin1String("grid")) {
        auto *layout = new QGridLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(widget, 0, 0);
    } else {
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(widget);
    }
    // The window at its layout's hint (adjustSize() would impose a floor on
    // windows holding expanding widgets).
    window.resize(window.sizeHint());
    window.show();
    QCoreApplication::processEvents();

    QCOMPARE(widget->sizeHint(), expected);
    QCOMPARE(widget->size(), expected);
    QVERIFY(widget->minimumSizeHint().width() <= expected.width());
    QVERIFY(widget->minimumSizeHint().height() <= expected.height());
}

void tst_Citizenship::tabBarKeyboard_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<qint64>("hiddenTag");
    QTest::addColumn<int>("expected"); // tag of the selected tab afterwards
    QTest::addColumn<bool>("moved");

    QTest::newRow("right") << 0 << QList<int>{Qt::Key_Right} << qint64(-1) << 1 << true;
    QTest::newRow("right twice") << 0 << QList<int>{Qt::Key_Right, Qt::Key_Right} << qint64(-1) << 2 << true;
    QTest::newRow("right stops at the end") << 3 << QList<int>{Qt::Key_Right} << qint64(-1) << 3 << true;
    QTest::newRow("left") << 2 << QList<int>{Qt::Key_Left} << qint64(-1) << 1 << true;
    QTest::newRow("left stops at the start") << 0 << QList<int>{Qt::Key_Left} << qint64(-1) << 0 << true;
    QTest::newRow("home") << 3 << QList<int>{Qt::Key_Home} << qint64(-1) << 0 << true;
    QTest::newRow("end") << 0 << QList<int>{Qt::Key_End} << qint64(-1) << 3 << true;
    QTest::newRow("hidden tab skipped") << 0 << QList<int>{Qt::Key_Right} << qint64(1) << 2 << true;
    QTest::newRow("end among visible tabs") << 0 << QList<int>{Qt::Key_End} << qint64(3) << 2 << true;
    QTest::newRow("other keys do nothing") << 1 << QList<int>{Qt::Key_A} << qint64(-1) << 1 << false;
}

void tst_Citizenship::tabBarKeyboard()
{
    QFETCH(int, start);
    QFETCH(QList<int>, keys);
    QFETCH(qint64, hiddenTag);
    QFETCH(int, expected);
    QFETCH(bool, moved);

    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    KQTabView *view = tabViewWithTabs(4, QSize(120, 60));
    // A first responder in every pane: selecting must not take the focus off the bar.
    for (KQTab *tab : view->tabs())
        tab->setInitialFirstResponder(new QLineEdit(tab->view()));
    layout->addWidget(view);
    if (hiddenTag >= 0)
        view->hideTab(hiddenTag);
    view->selectTab(view->tabs().at(start > view->tabs().size() - 1 ? view->tabs().size() - 1 : start));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    view->setFocus(Qt::TabFocusReason);
    QVERIFY(view->hasFocus());

    s_accessibilityEvents.clear();
    s_accessibilityTargets.clear();
    // Events only reach the handler while an accessibility client is active.
    QAccessible::setActive(true);
    QAccessible::installUpdateHandler(&recordAccessibility);
    for (const int key : keys)
        QTest::keyClick(view, Qt::Key(key));
    QAccessible::installUpdateHandler(nullptr);
    QAccessible::setActive(false);

    QVERIFY(view->selectedTab());
    QCOMPARE(view->selectedTab()->tag(), qint64(expected));
    QVERIFY2(view->hasFocus(), "the keyboard focus stays on the bar");
    // Without a platform accessibility backend (offscreen) Qt drops every
    // accessibility event before any handler sees it.
    if (!QAccessible::isActive())
        QSKIP("no accessibility backend on this platform to observe the focus event");
    QCOMPARE(s_accessibilityEvents.count(QAccessible::Focus) > 0, moved);
    if (moved)
        QVERIFY(s_accessibilityTargets.contains(view));
}

void tst_Citizenship::keyboardReachesTheControls()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *field = new QLineEdit(&window);
    layout->addWidget(field);
    KQTabView *tabView = tabViewWithTabs(2, QSize(100, 40));
    layout->addWidget(tabView);
    auto *section = new KQCollapsibleView(QStringLiteral("Section"), new Pane(QSize(100, 40)), true, false);
    layout->addWidget(section);
    auto *button = section->findChild<QToolButton *>(QStringLiteral("collapseButton"));
    QVERIFY(button);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    field->setFocus(Qt::OtherFocusReason);

    // Tab walks from the field to the bar, then on to the section's button.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), tabView);
    while (QApplication::focusWidget() != button && QApplication::focusWidget() != field)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), button);

    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(section->isCollapsed());
    // A second press takes the running animation to its end and expands.
    QTest::keyClick(button, Qt::Key_Space);
    QVERIFY(!section->isCollapsed());
}

void tst_Citizenship::focusFrameOnTheFocusedTab()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    KQTabView *view = tabViewWithTabs(3, QSize(200, 60));
    layout->addWidget(view);
    // A highlight no other part of the bar uses, to tell the frame by.
    QPalette palette = view->palette();
    const QColor highlight(220, 0, 0);
    palette.setColor(QPalette::Highlight, highlight);
    view->setPalette(palette);
    view->selectTab(view->tabs().at(1));
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));

    // Showing the window gave the bar the focus: the first tab stop.
    view->clearFocus();
    QVERIFY(!view->hasFocus());
    const QImage unfocused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
    view->setFocus(Qt::TabFocusReason);
    QVERIFY(view->hasFocus());
    const QImage focused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
    const QRect cell = view->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(view->rect()))).at(1).toRect();

    int changed = 0;
    for (int y = 0; y < unfocused.height(); ++y) {
        for (int x = 0; x < unfocused.width(); ++x) {
            if (unfocused.pixel(x, y) == focused.pixel(x, y))
                continue;
            ++changed;
            QVERIFY2(cell.contains(x, y), "the focus frame stays inside the focused cell");
            // The style blends the highlight over the cell (icon included):
            // every changed pixel comes nearer to it.
            const auto distance = [](QColor a, QColor b) {
                return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
            };
            QVERIFY2(distance(focused.pixelColor(x, y), highlight) < distance(unfocused.pixelColor(x, y), highlight),
                     "the frame is drawn in the palette's highlight");
        }
    }
    QVERIFY(changed > 10);
}

void tst_Citizenship::paletteColours_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << lightPalette();
    QTest::newRow("dark") << darkPalette();
    QTest::newRow("high contrast") << highContrastPalette();
}

void tst_Citizenship::paletteColours()
{
    QFETCH(QPalette, palette);

    // The tab bar: face, separator, and the selected shading toward the text colour.
    std::unique_ptr<KQTabView> tabView(tabViewWithTabs(2, QSize(200, 60)));
    tabView->setPalette(palette);
    tabView->resize(200, 100);
    const QImage bar = tabView->grab().toImage();
    const QColor face = palette.color(QPalette::Button);
    QVERIFY(near(bar.pixelColor(5, 10), face));
    QVERIFY(near(bar.pixelColor(5, 26), palette.color(QPalette::Dark)));
    const QRect selected = tabView->tabRectsForTabBarRect(QRectF(0, 0, 200, 27)).at(0).toRect();
    const QColor edge = bar.pixelColor(selected.left(), selected.top() + selected.height() / 2);
    // 20 % at the edge, nearly all of it kept by the vertical mask at mid-height.
    QVERIFY2(near(edge, over(palette.color(QPalette::ButtonText), 0.18, face), 5),
             qPrintable(QStringLiteral("shading %1").arg(edge.name())));

    // The collapsible header: face and the line under it.
    KQCollapsibleView section(QStringLiteral("Section"), new Pane(QSize(150, 60)), true, false);
    section.setPalette(palette);
    const QImage header = section.grab().toImage();
    QVERIFY(near(header.pixelColor(140, 2), face));
    QVERIFY(near(header.pixelColor(140, 17), palette.color(QPalette::Dark)));

    // The tooltip: its text and border follow the tooltip text colour; a dark
    // face is kept, a light one gives the classic pale yellow.
    const ToolTipColors_ZL tip = toolTipColorsForPalette(palette);
    QCOMPARE(tip.text, palette.color(QPalette::ToolTipText));
    QCOMPARE(tip.border.rgb(), palette.color(QPalette::ToolTipText).rgb());
    const QColor tipFace = palette.color(QPalette::ToolTipBase);
    QCOMPARE(tip.background.rgb(), tipFace.lightness() >= 128 ? QColor(255, 255, 215).rgb() : tipFace.rgb());
    // Readable: the text stands out from the face.
    QVERIFY(std::abs(tip.text.lightness() - tip.background.lightness()) > 100);
}

QTEST_MAIN(tst_Citizenship)
#include "tst_citizenship.moc"
