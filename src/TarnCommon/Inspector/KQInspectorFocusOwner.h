#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

class KQInspectorMode;
class KQInspectorWindow;
class QWidget;

/*!
    \file KQInspectorFocusOwner.h
    \brief The interface of objects that drive the inspector, and how the inspector finds them.
*/

/*!
    \brief An object that drives the inspector while its window has the focus,
    in practice a window controller.

    It is a QObject that lists this interface in Q_INTERFACES, and something on
    the responder chain of its window (the controller itself, the window, or a
    widget in it) answers an invokable method returning it:

    \code
    Q_INVOKABLE QObject *inspectorFocusOwner();
    \endcode

    The inspector then asks it for its mode. The owner decides whether it keeps
    the mode for the next time; the inspector only shows it. KQInspectorWindow
    shows a complete example.
*/
class TARNCOMMON_EXPORT KQInspectorFocusOwner
{
public:
    /*! Destroys the owner; an inspector it owns falls back to its empty mode. */
    virtual ~KQInspectorFocusOwner();

    /*!
        The owner is about to own \a inspector: answers the mode to show, or
        nullptr for none. The owner keeps ownership of the mode (a mode whose
        parent is the inspector is deleted when it is swapped out).
    */
    virtual KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *inspector) = 0;
    /*! The owner now owns \a inspector. Does nothing by default. */
    virtual void didGainFocusOfInspector(KQInspectorWindow *inspector);
    /*! The owner is about to stop owning \a inspector. Does nothing by default. */
    virtual void willLoseFocusOfInspector(KQInspectorWindow *inspector);
    /*! The owner no longer owns \a inspector; sent after the new owner heard it gained it. Does nothing by default. */
    virtual void didLoseFocusOfInspector(KQInspectorWindow *inspector);
};

/*! The interface identifier of KQInspectorFocusOwner, for Q_INTERFACES and qobject_cast. */
#define KQInspectorFocusOwner_iid "org.tarncommon.KQInspectorFocusOwner"
/*! \cond INTERNAL */
Q_DECLARE_INTERFACE(KQInspectorFocusOwner, KQInspectorFocusOwner_iid)
/*! \endcond */

/*!
    The focus owner for the responder chain that starts at \a start (by default
    the focus widget of the active window): the first object along the chain
    with an invokable \c inspectorFocusOwner() is asked for it. nullptr when
    nothing answers or the answer does not implement KQInspectorFocusOwner
    (which is reported).
*/
TARNCOMMON_EXPORT QObject *kq_inspectorFocusOwner(QWidget *start = nullptr);

/*!
    The same as kq_inspectorFocusOwner() along an explicit \a chain of
    responders, asked in order.
*/
TARNCOMMON_EXPORT QObject *kq_inspectorFocusOwnerAlong(const QList<QObject *> &chain);
