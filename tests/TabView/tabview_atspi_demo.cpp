// Four tabs, the third hidden; each page holds a text field named "NAME field".
// Quits by itself after the seconds given, so a failing client never leaves it behind.
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tabview-atspi-demo"));
    KQSettings::enableTestMode();
    KQSettings::userDefaults()->setValue(QStringLiteral("enableScriptingAutomationTesting"), true);
    QWidget window;
    window.setGeometry(120, 90, 360, 240);
    KQTabView view(QRect(0, 0, 360, 240), &window);
    QList<KQTab *> tabs;
    for (const QString &name : {QStringLiteral("Circle"), QStringLiteral("Square"), QStringLiteral("Triangle"), QStringLiteral("Star")}) {
        auto *tab = new KQTab(&view);
        tab->setIconTooltip(name);
        tab->setTag(tabs.size() + 1);
        auto *page = new QWidget; // the tab owns its page
        auto *field = new QLineEdit(page);
        field->setAccessibleName(name + QStringLiteral(" field"));
        tab->setView(page);
        tabs << tab;
    }
    view.setTabs(tabs);
    view.hideTab(3);
    window.show();
    const int seconds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt() : 60;
    QTimer::singleShot(seconds * 1000, &application, &QApplication::quit);
    return application.exec();
}
