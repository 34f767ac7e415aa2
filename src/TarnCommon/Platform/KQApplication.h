#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtWidgets/QApplication>

#include <memory>

/*!
    \file KQApplication.h
    \brief An application object that posts the after-event notification.
*/

class KQApplicationPrivate;

/*!
    \brief A QApplication that posts NOTIFICATION__After_Event_Sent after
    dispatching each event of the window system, which is what computed
    tooltips need.

    Applications with a QApplication subclass of their own call
    KQNotifyPostingAfterEvent() (<TarnCommon/KQAfterEvent.h>) in their
    notify() instead.

    \code
    int main(int argc, char **argv)
    {
        KQApplication application(argc, argv);
        MainWindow window;
        window.show();
        return application.exec();
    }
    \endcode
*/
class TARNCOMMON_EXPORT KQApplication : public QApplication
{
    Q_OBJECT
public:
    /*!
        Makes the application object, as QApplication does. \a argc and
        \a argv must stay valid for the application's whole life.
    */
    KQApplication(int &argc, char **argv);
    ~KQApplication() override;

    /*!
        Dispatches \a event to \a receiver as QApplication::notify() does and
        answers its result; afterwards posts NOTIFICATION__After_Event_Sent
        when the event is one the window system delivered to a window (see
        KQIsAfterEventCandidate()).
    */
    bool notify(QObject *receiver, QEvent *event) override;

private:
    std::unique_ptr<KQApplicationPrivate> const d;
};
