// Returns from main() with a tooltip on screen: the shared controller and its window must go quietly.
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

int main(int argc, char *argv[])
{
    KQApplication application(argc, argv);
    ToolTipController_ZL *controller = ToolTipController_ZL::sharedToolTipController();
    controller->startup();
    ToolTipWindow_ZL *window = controller->toolTipWindow();
    if (!window)
        return 1;
    window->setString(QStringLiteral("still shown at exit"), true);
    window->show();
    QCoreApplication::processEvents();
    return window->isVisible() ? 0 : 1;
}
