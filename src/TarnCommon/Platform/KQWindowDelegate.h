#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QList>
#include <QtCore/QObject>

class QWidget;

// A top-level widget may have a delegate and a controller: plain QObjects,
// owned elsewhere and held as QPointers (they may die first), asked for
// optional behaviour by method name. Setting either on a child widget
// attaches it to that widget's window.

TARNCOMMON_EXPORT void kq_setWindowDelegate(QWidget *window, QObject *delegate);
TARNCOMMON_EXPORT QObject *kq_windowDelegate(const QWidget *window);
TARNCOMMON_EXPORT void kq_setWindowController(QWidget *window, QObject *controller);
TARNCOMMON_EXPORT QObject *kq_windowController(const QWidget *window);

// The index of the first invokable method (slot, signal or Q_INVOKABLE) named
// name, whatever its parameters; -1 when there is none or object is null.
TARNCOMMON_EXPORT int kq_indexOfMethodNamed(const QObject *object, QByteArrayView name);

// True when object has an invokable method of that name.
TARNCOMMON_EXPORT bool kq_respondsToMethod(const QObject *object, QByteArrayView name);

// The responder chain from start: start, its ancestors, its window, the
// window's delegate, the window's controller, then the application. Without a
// start, the focus widget of the active window (or the active window) begins it.
TARNCOMMON_EXPORT QList<QObject *> kq_responderChain(QWidget *start = nullptr);

// The first object along the responder chain that answers name; nullptr if none.
TARNCOMMON_EXPORT QObject *kq_targetForMethod(QByteArrayView name, QWidget *start = nullptr);
