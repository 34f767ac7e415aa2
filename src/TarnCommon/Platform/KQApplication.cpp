#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>

KQApplication::KQApplication(int &argc, char **argv)
    : QApplication(argc, argv)
{
}

KQApplication::~KQApplication() = default;

bool KQApplication::notify(QObject *receiver, QEvent *event)
{
    return KQNotifyPostingAfterEvent(receiver, event,
                                     [&] { return QApplication::notify(receiver, event); });
}
