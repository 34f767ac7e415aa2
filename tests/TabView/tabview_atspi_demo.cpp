// A real window with a tab view and the accessibility groups switched on, for
// reading from outside with an AT-SPI client. Four tabs, the third hidden, so
// the group lists three buttons; each page holds a text field and a push
// button named after its tab ("Square field", "Square apply"). Quits by itself
// after the seconds given (60), so a failing client never leaves it behind.
#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

#include <cstdio>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tabview-atspi-demo"));
    KQSettings::enableTestMode();
    KQSettings::userDefaults()->setValue(QStringLiteral("enableScriptingAutomationTesting"), true);
    if (!KQAccessibility::validForAutomateTesting()) {
        std::fprintf(stderr, "the automation switch did not take\n");
        return 1;
    }
    QWidget window;
    window.setGeometry(120, 90, 360, 240);
    KQTabView view(QRect(0, 0, 360, 240), &window);
    QList<KQTab *> tabs;
    for (const QString &name : {QStringLiteral("Circle"), QStringLiteral("Square"), QStringLiteral("Triangle"), QStringLiteral("Star")}) {
        auto *tab = new KQTab(&view);
        QPixmap icon(16, 16);
        icon.fill(QColor::fromHsv(int(tabs.size()) * 90, 200, 200));
        tab->setIcon(QIcon(icon));
        tab->setIconTooltip(name);
        tab->setTag(tabs.size() + 1);
        auto *page = new QWidget; // the tab owns its page
        auto *layout = new QVBoxLayout(page);
        layout->addWidget(new QLineEdit(page));
        layout->itemAt(0)->widget()->setAccessibleName(name + QStringLiteral(" field"));
        layout->addWidget(new QPushButton(name + QStringLiteral(" apply"), page));
        tab->setView(page);
        tabs << tab;
    }
    view.setTabs(tabs);
    view.hideTab(3);
    window.show();
    const int seconds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 0;
    QTimer::singleShot((seconds > 0 ? seconds : 60) * 1000, &application, &QApplication::quit);
    return application.exec();
}
