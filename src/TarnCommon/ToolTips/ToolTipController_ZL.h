#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

#include <functional>
#include <memory>

/*! \file ToolTipController_ZL.h
    \brief The controller that shows tooltips computed per point by the widget under the pointer.
*/

class QEvent;
class ToolTipController_ZLPrivate;
class ToolTipWindow_ZL;

/*!
    \class ToolTipController_ZL
    \brief Shows computed tooltips: text that the widget under the pointer
    computes for the exact point (see ToolTipping_ZL).

    After a mouse movement or a button release, once the pointer has rested
    for a second, the widget under it is asked (polled every half second);
    its answer shows in one ToolTipWindow_ZL until the pointer leaves every
    tooltip for more than a second, or ten seconds have passed for one
    unchanged answer (both fade), or a press, drag or key arrives (gone at
    once).

    It is fed by NOTIFICATION__After_Event_Sent: use KQApplication, or post it
    from your own QApplication::notify (<TarnCommon/KQAfterEvent.h>). Without
    it no tooltip ever shows.

    \code
    KQApplication app(argc, argv);
    ToolTipController_ZL::sharedToolTipController()->startup();
    \endcode
*/
class TARNCOMMON_EXPORT ToolTipController_ZL : public QObject
{
    Q_OBJECT
public:
    /*!
        The application's controller, created on first use and not started.
        It belongs to the application object and goes with it (just before
        the widgets are torn down). Without an application object the
        assertion is reported and nullptr is returned.
    */
    static ToolTipController_ZL *sharedToolTipController();

    /*!
        Creates a controller that is not started: no window, no timer,
        nothing observed. Most applications use sharedToolTipController()
        instead of making their own.
    */
    explicit ToolTipController_ZL(QObject *parent = nullptr);
    /*!
        Stops the timer and the observation, and closes and deletes the
        tooltip window.
    */
    ~ToolTipController_ZL() override;

    /*!
        Creates the window, starts the half-second poll timer and observes
        NOTIFICATION__After_Event_Sent; later calls do nothing. Needs a
        QApplication: without one the assertion is reported and nothing
        starts.
    */
    void startup();

    /*!
        The tooltip window, owned by the controller: nullptr before
        startup(), and after anyone closed it until the next tooltip needs a
        new one. Do not keep the pointer across tooltips; use QPointer.
    */
    ToolTipWindow_ZL *toolTipWindow() const;

    /*!
        A clock answering seconds on any steady scale. The default is a
        monotonic clock.
    */
    using Clock = std::function<double()>;
    /*!
        Replaces the clock that times resting, showing and leaving, so that
        an application's tests need not wait in real time; nullptr restores
        the default clock.

        \code
        double now = 0;
        controller->setClock([&now] { return now; });
        QTest::mouseMove(chart, QPoint(40, 30)); // pointer rests here
        now += 1.0;
        controller->poll();
        QVERIFY(controller->toolTipWindow()->isShown());
        \endcode
    */
    void setClock(Clock clock);
    /*!
        Does at once what the half-second timer does: asks the widget under
        the pointer and shows, replaces or hides the tooltip by the current
        time of the clock. Before startup() it never shows anything.
    */
    void poll();

private:
    void _handleEvent(QEvent *event);
    void _timerFired();

    friend class ToolTipController_ZLPrivate;
    std::unique_ptr<ToolTipController_ZLPrivate> const d;
};
