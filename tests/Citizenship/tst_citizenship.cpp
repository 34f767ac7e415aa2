#include "MessageCapture.h"
#include "ToolTipColors_ZL_p.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>
#include <TarnCommon/KQTranslations.h>

#include <QtTest/QtTest>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include <functional>

namespace {

// Content that asks for a known size, as a form laid out in Designer would.
class Pane : public QWidget
{
public:
    explicit Pane(QSize hint) : m_hint(hint) { resize(hint); }
    QSize sizeHint() const override { return m_hint; }
    QSize minimumSizeHint() const override { return m_hint / 2; }

private:
    QSize m_hint;
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

KQCollapsibleView *section(QSize paneHint = {150, 60}, bool collapsed = false)
{
    auto *view = new KQCollapsibleView(QStringLiteral("Section"), new Pane(paneHint), true, false);
    view->setCollapsed(collapsed, false);
    return view;
}

// Hosts the widget in a window's layout and shows it, activated.
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
        QTest::addColumn<QString>("container");
        QTest::addColumn<std::function<QWidget *()>>("make");
        QTest::addColumn<QSize>("expected");
        // Bar 27 high above the largest pane, at least 40 per cell; header 18
        // high above the content; a list stacks its views.
        const QList<std::tuple<const char *, std::function<QWidget *()>, QSize>> widgets{
            {"tab view", [] { return tabViewWithTabs(3, QSize(200, 100)); }, QSize(200, 127)},
            {"tab view, cells wider than panes", [] { return tabViewWithTabs(8, QSize(60, 50)); }, QSize(320, 77)},
            {"collapsible", [] { return section(); }, QSize(150, 78)},
            {"collapsed", [] { return section({150, 60}, true); }, QSize(150, 18)},
            {"list", [] {
                 auto *list = new KQCollapsibleListView;
                 list->addCollapsableView(section());
                 list->addCollapsableView(section({180, 40}));
                 return list;
             }, QSize(180, 136)}};
        for (const char *container : {"vbox", "splitter"})
            for (const auto &[name, make, size] : widgets)
                QTest::addRow("%s %s", container, name) << QString::fromLatin1(container) << make << size;
    }
    void layoutsGiveTheHintedSize()
    {
        QFETCH(QString, container);
        QFETCH(std::function<QWidget *()>, make);
        QFETCH(QSize, expected);
        QWidget window;
        QWidget *widget = make();
        auto *splitter = container == QLatin1String("splitter") ? new QSplitter(Qt::Vertical) : nullptr;
        auto *layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(splitter ? splitter : widget);
        if (splitter) {
            splitter->setHandleWidth(1);
            splitter->addWidget(widget);
        }
        // At the layout's hint: adjustSize() imposes a floor on windows holding expanding widgets.
        window.resize(window.sizeHint());
        window.show();
        QCoreApplication::processEvents();
        QCOMPARE(widget->sizeHint(), expected);
        QCOMPARE(widget->size(), expected);
        QVERIFY(widget->minimumSizeHint().width() <= expected.width() && widget->minimumSizeHint().height() <= expected.height());
    }

    void tabBarKeyboard_data()
    {
        QTest::addColumn<int>("start");
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<qint64>("hiddenTag");
        QTest::addColumn<int>("expected"); // tag of the selected tab afterwards
        QTest::newRow("right twice, left") << 0 << QList<int>{Qt::Key_Right, Qt::Key_Right, Qt::Key_Left} << qint64(-1) << 1;
        QTest::newRow("right stops at the end") << 3 << QList<int>{Qt::Key_Right} << qint64(-1) << 3;
        QTest::newRow("home") << 3 << QList<int>{Qt::Key_Home} << qint64(-1) << 0;
        QTest::newRow("hidden tab skipped") << 0 << QList<int>{Qt::Key_Right} << qint64(1) << 2;
        QTest::newRow("end among visible tabs") << 0 << QList<int>{Qt::Key_End} << qint64(3) << 2;
        QTest::newRow("other keys do nothing") << 1 << QList<int>{Qt::Key_A} << qint64(-1) << 1;
    }
    void tabBarKeyboard()
    {
        QFETCH(int, start);
        QFETCH(QList<int>, keys);
        QFETCH(qint64, hiddenTag);
        QFETCH(int, expected);
        QWidget window;
        KQTabView *view = tabViewWithTabs(4, QSize(120, 60));
        // A first responder in every pane: selecting must not take the focus off the bar.
        for (KQTab *tab : view->tabs())
            tab->setInitialFirstResponder(new QLineEdit(tab->view()));
        view->hideTab(hiddenTag);
        view->selectTab(view->tabs().at(std::min<int>(start, view->tabs().size() - 1)));
        QVERIFY(showIn(window, {view}));
        view->setFocus(Qt::TabFocusReason);
        for (const int key : keys)
            QTest::keyClick(view, Qt::Key(key));
        QCOMPARE(view->selectedTab()->tag(), qint64(expected));
        QVERIFY(view->hasFocus());
    }

    void keyboardReachesTheControls()
    {
        QWidget window;
        auto *field = new QLineEdit;
        KQTabView *tabView = tabViewWithTabs(2, QSize(100, 40));
        KQCollapsibleView *collapsible = section({100, 40});
        auto *button = collapsible->findChild<QToolButton *>(QStringLiteral("collapseButton"));
        QVERIFY(button && showIn(window, {field, tabView, collapsible}));
        field->setFocus(Qt::OtherFocusReason);
        // Tab walks from the field to the bar, then on to the section's button.
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), tabView);
        while (QApplication::focusWidget() != button && QApplication::focusWidget() != field)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), button);
        QTest::keyClick(button, Qt::Key_Space);
        QVERIFY(collapsible->isCollapsed());
        QTest::keyClick(button, Qt::Key_Space); // takes the running animation to its end and expands
        QVERIFY(!collapsible->isCollapsed());
    }

    void focusFrameOnTheFocusedTab()
    {
        QWidget window;
        KQTabView *view = tabViewWithTabs(3, QSize(200, 60));
        // A highlight no other part of the bar uses, to tell the frame by.
        const QColor highlight(220, 0, 0);
        QPalette palette = view->palette();
        palette.setColor(QPalette::Highlight, highlight);
        view->setPalette(palette);
        view->selectTab(view->tabs().at(1));
        QVERIFY(showIn(window, {view}));
        view->clearFocus(); // showing gave the bar the focus: the first tab stop
        const QImage unfocused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
        view->setFocus(Qt::TabFocusReason);
        QVERIFY(view->hasFocus());
        const QImage focused = view->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const QRect cell = view->tabRectsForTabBarRect(KQTabView::tabBarRectForBounds(QRectF(view->rect()))).at(1).toRect();
        // Every changed pixel is inside the focused cell and redder: the highlight blended over it.
        int changed = 0;
        for (int y = 0; y < unfocused.height(); ++y) {
            for (int x = 0; x < unfocused.width(); ++x) {
                if (unfocused.pixel(x, y) == focused.pixel(x, y))
                    continue;
                ++changed;
                QVERIFY(cell.contains(x, y));
                QVERIFY(focused.pixelColor(x, y).red() - focused.pixelColor(x, y).blue()
                        > unfocused.pixelColor(x, y).red() - unfocused.pixelColor(x, y).blue());
            }
        }
        QVERIFY(changed > 10);
    }

    void paletteColours_data()
    {
        // Window and button faces, text, the dark line, tooltip face and text.
        QTest::addColumn<QPalette>("palette");
        const auto palette = [](QColor face, QColor text, QColor dark, QColor tipFace, QColor tipText) {
            QPalette p = QApplication::style()->standardPalette();
            for (const auto role : {QPalette::Window, QPalette::Button})
                p.setColor(role, face);
            for (const auto role : {QPalette::WindowText, QPalette::ButtonText})
                p.setColor(role, text);
            p.setColor(QPalette::Dark, dark);
            p.setColor(QPalette::ToolTipBase, tipFace);
            p.setColor(QPalette::ToolTipText, tipText);
            return p;
        };
        QTest::newRow("light") << QApplication::style()->standardPalette();
        QTest::newRow("dark") << palette(QColor(53, 53, 53), QColor(230, 230, 230), QColor(20, 20, 20), QColor(60, 60, 52), QColor(230, 230, 230));
        QTest::newRow("high contrast") << palette(Qt::black, Qt::yellow, Qt::white, Qt::black, Qt::white);
    }
    void paletteColours()
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
        const QColor text = palette.color(QPalette::ButtonText);
        const QColor shaded = QColor::fromRgbF(text.redF() * 0.18f + face.redF() * 0.82f, text.greenF() * 0.18f + face.greenF() * 0.82f,
                                               text.blueF() * 0.18f + face.blueF() * 0.82f);
        QVERIFY2(near(edge, shaded, 5), qPrintable(edge.name()));
        // The collapsible header: face and the line under it.
        std::unique_ptr<KQCollapsibleView> header(section());
        header->setPalette(palette);
        const QImage image = header->grab().toImage();
        QVERIFY(near(image.pixelColor(140, 2), face) && near(image.pixelColor(140, 17), palette.color(QPalette::Dark)));
        // The tooltip: text and border in the tooltip text colour; a dark face
        // is kept, a light one gives the classic pale yellow.
        const ToolTipColors_ZL tip = toolTipColorsForPalette(palette);
        QCOMPARE(tip.text, palette.color(QPalette::ToolTipText));
        const QColor tipFace = palette.color(QPalette::ToolTipBase);
        QCOMPARE(tip.background.rgb(), tipFace.lightness() >= 128 ? QColor(255, 255, 215).rgb() : tipFace.rgb());
    }

    void textsFollowTheLanguage_data()
    {
        QTest::addColumn<QLocale>("locale");
        QTest::addColumn<bool>("installed");
        QTest::addColumn<QString>("emptyModeText");
        QTest::addColumn<QString>("buttonDescription");
        const QString german = QStringLiteral("Kein Inspektor verfügbar für das Fenster:");
        const QString germanButton = QStringLiteral("Ausgeklappt; drücken, um den Abschnitt auszublenden");
        QTest::newRow("German") << QLocale(QLocale::German, QLocale::Germany) << true << german << germanButton;
        QTest::newRow("Swiss German falls back to German") << QLocale(QLocale::German, QLocale::Switzerland) << true << german << germanButton;
        QTest::newRow("English needs none") << QLocale(QLocale::English) << false << QStringLiteral("Inspector not available for window:")
                                            << QStringLiteral("Expanded; press to hide the section");
    }

    void textsFollowTheLanguage()
    {
        QFETCH(QLocale, locale);
        QFETCH(bool, installed);
        QFETCH(QString, emptyModeText);
        QFETCH(QString, buttonDescription);
        // Made before the language changes: the texts on show must follow.
        QWidget document;
        document.setWindowTitle(QStringLiteral("Notes"));
        KQEmptyInspectorMode mode(&document);
        mode.view();
        mode.update();
        KQCollapsibleView section(QStringLiteral("Section"), nullptr, true, false);
        auto *button = section.findChild<QToolButton *>(QStringLiteral("collapseButton"));
        QVERIFY(button);
        QCOMPARE(KQInstallTranslations(locale), installed);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
        QCoreApplication::processEvents();
        const QString text = mode.textView()->toPlainText();
        QVERIFY2(text.startsWith(emptyModeText) && text.endsWith(QStringLiteral("Notes")), qPrintable(text));
        QCOMPARE(button->accessibleDescription(), buttonDescription);
    }

    void missingTranslationKeepsEnglish()
    {
        QVERIFY(KQInstallTranslations(QLocale(QLocale::German)));
        // A language without a file, or a folder without it: the German one goes,
        // English stays, nothing is reported as broken.
        MessageCapture capture;
        QVERIFY(!KQInstallTranslations(QLocale(QLocale::Japanese)));
        QVERIFY(!KQInstallTranslations(QLocale(QLocale::Italian), QStringLiteral("/nonexistent")));
        QCOMPARE(capture.text(), QByteArray());
        QCOMPARE(QCoreApplication::translate("TarnCommon", "Inspector"), QStringLiteral("Inspector"));
    }
};

QTEST_MAIN(tst_Citizenship)
#include "tst_citizenship.moc"
