#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>

// Nothing to keep yet; the pointer leaves room without changing the class's size.
class KQApplicationPrivate
{
};

KQApplication::KQApplication(int &argc, char **argv)
    : QApplication(argc, argv)
    , d(std::make_unique<KQApplicationPrivate>())
{
}

KQApplication::~KQApplication() = default;

bool KQApplication::notify(QObject *receiver, QEvent *event)
{
    return KQNotifyPostingAfterEvent(receiver, event,
                                     [&] { return QApplication::notify(receiver, event); });
}
