// An application that quits while a collapse animation runs, with the shared
// inspector on screen and the shared tooltip controller showing a tooltip.
// The list's state must be saved, and everything the library made must be
// gone once the application object is (a leak checker then finds nothing).
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQInspectorWindow.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QVariantAnimation>

#include <cstdio>

int main(int argc, char *argv[])
{
    QPointer<KQInspectorWindow> inspector;
    QPointer<ToolTipController_ZL> controller;
    QPointer<ToolTipWindow_ZL> tip;
    QPointer<QVariantAnimation> animation;
    QStringList saved;
    {
        KQApplication application(argc, argv);
        KQSettings::enableTestMode();
        inspector = KQInspectorWindow::sharedInspectorWindow();
        inspector->orderFont();
        controller = ToolTipController_ZL::sharedToolTipController();
        controller->startup();
        tip = controller->toolTipWindow();
        tip->setString(QStringLiteral("shown at exit"), true);
        tip->show();

        KQCollapsibleListView list(QRect(100, 100, 200, 300));
        auto *view = new KQCollapsibleView(QStringLiteral("Details"), new QWidget, true, false);
        list.addCollapsableView(view);
        list.setAutosaveName(QStringLiteral("QuitList"));
        list.show();
        QTimer::singleShot(0, view, [&] {
            view->setCollapsed(true, true);
            animation = view->currentAnimation();
            QCoreApplication::quit();
        });
        application.exec();
        if (!animation || animation->state() != QAbstractAnimation::Running) {
            std::fprintf(stderr, "the collapse animation was not running at the quit\n");
            return 1;
        }
        saved = KQSettings::userDefaults()->value(QStringLiteral("QuitList")).toStringList();
    }
    int status = 0;
    const auto fail = [&status](const char *what) {
        std::fprintf(stderr, "%s\n", what);
        status = 1;
    };
    if (saved != QStringList{QStringLiteral("Details")})
        fail("the collapsed view was not saved at the quit");
    if (inspector)
        fail("the shared inspector window outlived the application");
    if (controller || tip)
        fail("the shared tooltip controller or its window outlived the application");
    if (animation)
        fail("the collapse animation outlived its view");
    return status;
}
