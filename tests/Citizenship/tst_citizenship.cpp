#include "MessageCapture.h"
#include "ToolTipColors_ZL_p.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>
#include <TarnCommon/KQTranslations.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <functional>

namespace {

// Content that asks for a known size, as a form laid out in Designer would.
struct Pane : QWidget
{
    explicit Pane(QSize size) : hint(size) { resize(size); }
    QSize sizeHint() const override { return hint; }
    QSize hint;
};

KQTabView *tabViewWithTabs(int count, QSize paneHint)
{
    QList<KQTab *> tabs;
    for (int i = 0; i < count; ++i) {
        tabs << new KQTab;
        tabs.last()->setTag(i);
        tabs.last()->setView(new Pane(paneHint));
    }
    auto *view = new KQTabView;
    view->setTabs(tabs);
    return view;
}

KQCollapsibleView *section(QSize paneHint = {150, 60})
{
    return new KQCollapsibleView(QStringLiteral("Section"), new Pane(paneHint), true, false);
}

bool showIn(QWidget &window, const QList<QWidget *> &widgets)
{
    auto *layout = new QVBoxLayout(&window);
    for (QWidget *widget : widgets)
        layout->addWidget(widget);
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

bool near(QColor actual, QColor expected, int tolerance = 3)
{
    return std::abs(actual.red() - expected.red()) <= tolerance && std::abs(actual.green() - expected.green()) <= tolerance
           && std::abs(actual.blue() - expected.blue()) <= tolerance;
}

} // namespace

class tst_Citizenship : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KQInstallTranslations(QLocale(QLocale::English)); }

    void layoutsGiveTheHintedSize_data()
    {
        using Make = std::function<QWidget *()>;
        QTest::addColumn<Make>("make");
        QTest::addColumn<QSize>("expected");
        // Bar 27 high above the largest pane; header 18 high above the content; a list stacks its views.
        QTest::newRow("tab view") << Make([] { return tabViewWithTabs(3, QSize(200, 100)); }) << QSize(200, 127);
        QTest::newRow("collapsible") << Make([] { return section(); }) << QSize(150, 78);
        QTest::newRow("list") << Make([] {
            auto *list = new KQCollapsibleListView;
            list->addCollapsableView(section());
            list->addCollapsableView(section({180, 40}));
            return list;
        }) << QSize(180, 136);
    }
    void layoutsGiveTheHintedSize()
    {
        QFETCH(std::function<QWidget *()>, make);
        QFETCH(QSize, expected);
        QWidget window;
        QWidget *widget = make();
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(widget);
        // At the layout's hint: adjustSize() imposes a floor on windows holding expanding widgets.
        window.resize(window.sizeHint());
        window.show();
        QCoreApplication::processEvents();
        QCOMPARE(widget->size(), expected); // the layout gave the widget its hint
    }

    // Arrows and End skip hidden tabs and keep the focus; Tab walks field, bar, pane, section button.
    void keyboard_data()
    {
        QTest::addColumn<bool>("fromField");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("hiddenTag");
        QTest::addColumn<int>("selected");
        QTest::addColumn<bool>("collapsed");
        using Keys = QList<int>;
        const Keys toButton{Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab};
        QTest::newRow("arrows") << false << Keys{Qt::Key_Right, Qt::Key_Right, Qt::Key_Left} << -1 << 1 << false;
        QTest::newRow("end, right: last visible tab") << false << Keys{Qt::Key_End, Qt::Key_Right} << 3 << 2 << false;
        QTest::newRow("space collapses") << true << toButton + Keys{Qt::Key_Space} << -1 << 0 << true;
        QTest::newRow("again mid-animation expands") << true << toButton + Keys{Qt::Key_Space, Qt::Key_Space} << -1 << 0 << false;
    }
    void keyboard()
    {
        QFETCH(bool, fromField);
        QFETCH(QList<int>, keys);
        QFETCH(int, hiddenTag);
        QFETCH(int, selected);
        QFETCH(bool, collapsed);
        QWidget window;
        auto *field = new QLineEdit;
        KQTabView *view = tabViewWithTabs(4, QSize(120, 60));
        // A first responder in every pane: selecting must not take the focus off the bar.
        for (KQTab *tab : view->tabs())
            tab->setInitialFirstResponder(new QLineEdit(tab->view()));
        view->hideTab(hiddenTag);
        KQCollapsibleView *collapsible = section({100, 40});
        auto *button = collapsible->findChild<QToolButton *>(QStringLiteral("collapseButton"));
        QVERIFY(button && showIn(window, {field, view, collapsible}));
        (fromField ? static_cast<QWidget *>(field) : view)->setFocus(Qt::TabFocusReason);
        for (const int key : keys)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
        QCOMPARE(view->selectedTab()->tag(), qint64(selected));
        QCOMPARE(QApplication::focusWidget(), fromField ? static_cast<QWidget *>(button) : view);
        QCOMPARE(collapsible->isCollapsed(), collapsed);
    }

    void focusFrameOnTheFocusedTab()
    {
        QWidget window;
        KQTabView *view = tabViewWithTabs(3, QSize(200, 60));
        view->selectTab(view->tabs().at(1));
        QVERIFY(showIn(window, {view}));
        view->clearFocus(); // showing gave the bar the focus: the first tab stop
        const QImage unfocused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
        view->setFocus(Qt::TabFocusReason);
        const QImage focused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QRect cell = view->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(view->rect()))).at(1).toRect();
        // The frame: the changed pixels span the focused cell and stay inside it.
        QRect changed;
        for (int y = 0; y < unfocused.height(); ++y) {
            for (int x = 0; x < unfocused.width(); ++x) {
                if (unfocused.pixel(x, y) != focused.pixel(x, y))
                    changed |= QRect(x, y, 1, 1);
            }
        }
        QVERIFY(cell.contains(changed) && changed.width() > cell.width() / 2);
    }

    void paletteColours_data()
    {
        QTest::addColumn<QString>("widget");
        for (const char *widget : {"tab view", "collapsible header", "tooltip"})
            QTest::newRow(widget) << QString::fromLatin1(widget);
    }
    void paletteColours()
    {
        QFETCH(QString, widget);
        QPalette palette(QColor(53, 53, 53)); // the window face, too
        palette.setColor(QPalette::ToolTipBase, QColor(60, 60, 52));
        const QColor face = palette.color(QPalette::Button), text = palette.color(QPalette::ButtonText);
        const QColor dark = palette.color(QPalette::Dark);
        if (widget == QLatin1String("tab view")) {
            std::unique_ptr<KQTabView> tabView(tabViewWithTabs(2, QSize(200, 60)));
            tabView->setPalette(palette);
            tabView->resize(200, 100);
            const QImage bar = tabView->grab().toImage();
            QVERIFY(near(bar.pixelColor(5, 10), face));
            QVERIFY(near(bar.pixelColor(5, 26), dark));
            const QRect selected = tabView->tabRectsForTabBarRect(QRectF(0, 0, 200, 27)).at(0).toRect();
            const QColor edge = bar.pixelColor(selected.left(), selected.top() + selected.height() / 2);
            // 20 % at the edge, nearly all of it kept by the vertical mask at mid-height.
            const QColor shaded = QColor::fromRgbF(text.redF() * 0.18f + face.redF() * 0.82f, text.greenF() * 0.18f + face.greenF() * 0.82f,
                                                   text.blueF() * 0.18f + face.blueF() * 0.82f);
            QVERIFY2(near(edge, shaded, 5), qPrintable(edge.name()));
        } else if (widget == QLatin1String("collapsible header")) {
            std::unique_ptr<KQCollapsibleView> header(section());
            header->setPalette(palette);
            const QImage image = header->grab().toImage();
            QVERIFY(near(image.pixelColor(140, 2), face) && near(image.pixelColor(140, 17), dark));
        } else {
            // Text and border in the tooltip text colour; a dark face is kept (a light one gives pale yellow).
            const ToolTipColors_ZL tip = toolTipColorsForPalette(palette);
            QCOMPARE(tip.text, palette.color(QPalette::ToolTipText));
            QCOMPARE(tip.background.rgb(), QColor(60, 60, 52).rgb());
        }
    }

    // Texts on show follow the language; a missing translation keeps English, reporting nothing.
    void textsFollowTheLanguage_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QString>("emptyModeText");
        QTest::newRow("German") << QLocale(QLocale::German, QLocale::Germany) << true
                                << QStringLiteral("Kein Inspektor verfügbar für das Fenster:");
        QTest::newRow("missing translation") << QLocale(QLocale::Japanese) << false
                                             << QStringLiteral("Inspector not available for window:");
    }

    void textsFollowTheLanguage()
    {
        QFETCH(QLocale, locale);
        QFETCH(bool, installed);
        QFETCH(QString, emptyModeText);
        if (!installed) // a language without a file must drop the one before it
            QVERIFY(KQInstallTranslations(QLocale(QLocale::German)));
        QWidget document;
        KQEmptyInspectorMode mode(&document);
        mode.view();
        mode.update();
        MessageCapture capture;
        QCOMPARE(KQInstallTranslations(locale), installed);
        QCoreApplication::processEvents();
        QCOMPARE(mode.textView()->toPlainText().left(emptyModeText.size()), emptyModeText);
        QCOMPARE(capture.text(), QByteArray());
    }
};

QTEST_MAIN(tst_Citizenship)
#include "tst_citizenship.moc"
