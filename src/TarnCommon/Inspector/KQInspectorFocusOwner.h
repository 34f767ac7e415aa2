#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

class KQInspectorMode;
class KQInspectorWindow;
class QWidget;

// An object that drives the inspector while its window has the focus, in
// practice a window controller. It is a QObject that lists this interface in
// Q_INTERFACES, and something on the responder chain of its window (the
// controller itself, the window, or a widget in it) answers an invokable
// method
//
//     Q_INVOKABLE QObject *inspectorFocusOwner();
//
// returning it. The inspector then asks it for its mode. The owner decides
// whether it keeps the mode for the next time; the inspector only shows it.
class TARNCOMMON_EXPORT KQInspectorFocusOwner
{
public:
    virtual ~KQInspectorFocusOwner();

    // The owner is about to own the inspector: the mode to show, or nullptr.
    virtual KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *inspector) = 0;
    virtual void didGainFocusOfInspector(KQInspectorWindow *inspector);
    virtual void willLoseFocusOfInspector(KQInspectorWindow *inspector);
    virtual void didLoseFocusOfInspector(KQInspectorWindow *inspector);
};

#define KQInspectorFocusOwner_iid "org.tarncommon.KQInspectorFocusOwner"
Q_DECLARE_INTERFACE(KQInspectorFocusOwner, KQInspectorFocusOwner_iid)

// The focus owner for the responder chain that starts at start (by default
// the focus widget of the active window): the first object along the chain
// with an invokable inspectorFocusOwner() is asked for it. nullptr when
// nothing answers or the answer does not implement KQInspectorFocusOwner
// (which is reported).
TARNCOMMON_EXPORT QObject *kq_inspectorFocusOwner(QWidget *start = nullptr);

// The same along an explicit chain of responders.
TARNCOMMON_EXPORT QObject *kq_inspectorFocusOwnerAlong(const QList<QObject *> &chain);
