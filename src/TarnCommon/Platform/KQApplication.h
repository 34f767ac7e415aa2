#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtWidgets/QApplication>

// A QApplication that posts NOTIFICATION__After_Event_Sent after dispatching
// each event of the window system, which is what computed tooltips need.
// Applications with a QApplication subclass of their own use
// KQNotifyPostingAfterEvent (<TarnCommon/KQAfterEvent.h>) in their notify().
class TARNCOMMON_EXPORT KQApplication : public QApplication
{
    Q_OBJECT
public:
    KQApplication(int &argc, char **argv);
    ~KQApplication() override;

    bool notify(QObject *receiver, QEvent *event) override;
};
