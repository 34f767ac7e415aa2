// A real window with a tab view and the accessibility groups switched on,
// for reading from outside with an AT-SPI client. Shows four tabs and hides
// the third, so the group must list three buttons. Each tab's page holds a
// text field and a push button named after the tab ("Square field", "Square
// apply"). Quits by itself after a while, so a failing client never leaves
// it behind.
#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
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
    window.setWindowTitle(QStringLiteral("Tab view accessibility check"));
    window.setGeometry(120, 90, 360, 240);
    KQTabView view(QRect(0, 0, 360, 240), &window);
    const QStringList names{QStringLiteral("Circle"), QStringLiteral("Square"), QStringLiteral("Triangle"),
                            QStringLiteral("Star")};
    const QList<QColor> colors{Qt::blue, Qt::darkGreen, Qt::darkYellow, Qt::red};
    QList<KQTab *> tabs;
    for (int i = 0; i < names.size(); ++i) {
        auto *tab = new KQTab(&view);
        QPixmap icon(16, 16);
        icon.fill(colors[i]);
        tab->setIcon(QIcon(icon));
        tab->setIconTooltip(names[i]);
        tab->setTag(i + 1);
        // Without a parent: the tab owns its page.
        auto *page = new QWidget;
        auto *layout = new QVBoxLayout(page);
        layout->addWidget(new QLabel(names[i], page));
        auto *field = new QLineEdit(page);
        field->setAccessibleName(names[i] + QStringLiteral(" field"));
        layout->addWidget(field);
        auto *apply = new QPushButton(names[i] + QStringLiteral(" apply"), page);
        layout->addWidget(apply);
        tab->setView(page);
        tabs << tab;
    }
    view.setTabs(tabs);
    view.hideTab(3);
    window.show();

    bool ok = false;
    const int seconds = argc > 1 ? QString::fromLocal8Bit(argv[1]).toInt(&ok) : 0;
    QTimer::singleShot((ok && seconds > 0 ? seconds : 60) * 1000, &application, &QApplication::quit);
    std::printf("ready\n");
    std::fflush(stdout);
    return application.exec();
}
