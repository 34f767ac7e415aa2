#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QList>
#include <QtCore/QObject>

/*!
    \file KQWindowDelegate.h
    \brief A window's delegate and controller, and the responder chain that asks them by method name.

    A top-level widget may have a delegate and a controller: plain QObjects,
    owned elsewhere and held weakly (they may be deleted first, and then read
    back as nullptr), asked for optional behaviour by method name. Setting
    either on a child widget attaches it to that widget's window.

    \code
    kq_setWindowDelegate(window, delegate);
    if (QObject *target = kq_targetForMethod("copy"))
        QMetaObject::invokeMethod(target, "copy");
    \endcode
*/

class QWidget;

/*!
    Makes \a delegate the delegate of \a window's window; nullptr removes it.
    The delegate is not owned. Nothing happens for a null \a window.
*/
TARNCOMMON_EXPORT void kq_setWindowDelegate(QWidget *window, QObject *delegate);
/*! The delegate of \a window's window; nullptr when there is none, it was deleted, or \a window is null. */
TARNCOMMON_EXPORT QObject *kq_windowDelegate(const QWidget *window);
/*!
    Makes \a controller the controller of \a window's window; nullptr removes
    it. The controller is not owned. Nothing happens for a null \a window.
*/
TARNCOMMON_EXPORT void kq_setWindowController(QWidget *window, QObject *controller);
/*! The controller of \a window's window; nullptr when there is none, it was deleted, or \a window is null. */
TARNCOMMON_EXPORT QObject *kq_windowController(const QWidget *window);

/*!
    The meta-method index of \a object's first invokable method (slot, signal
    or Q_INVOKABLE) named \a name, whatever its parameters; -1 when there is
    none, \a object is null or \a name is empty.
*/
TARNCOMMON_EXPORT int kq_indexOfMethodNamed(const QObject *object, QByteArrayView name);

/*! True when \a object has an invokable method named \a name; false for a null \a object. */
TARNCOMMON_EXPORT bool kq_respondsToMethod(const QObject *object, QByteArrayView name);

/*!
    The responder chain from \a start: \a start, its ancestors up to its
    window, the window's delegate, the window's controller (unless already
    listed), then the application object. Without \a start, the focus widget
    (or else the active window) begins it; without either, only the
    application is listed (nothing at all without an application).
*/
TARNCOMMON_EXPORT QList<QObject *> kq_responderChain(QWidget *start = nullptr);

/*!
    The first object along kq_responderChain(\a start) that has an invokable
    method named \a name; nullptr if none has.
*/
TARNCOMMON_EXPORT QObject *kq_targetForMethod(QByteArrayView name, QWidget *start = nullptr);
