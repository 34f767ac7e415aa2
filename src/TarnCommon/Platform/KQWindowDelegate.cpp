#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace {

// Lives as a child of the window, so it goes with it; holds its objects weakly.
class WindowAttachments : public QObject
{
public:
    using QObject::QObject;
    QPointer<QObject> delegate;
    QPointer<QObject> controller;
};

const char kAttachmentsName[] = "_kq_windowAttachments";

WindowAttachments *attachments(const QWidget *widget, bool create)
{
    if (!widget)
        return nullptr;
    QWidget *window = widget->window();
    auto *found = window->findChild<WindowAttachments *>(QLatin1String(kAttachmentsName),
                                                          Qt::FindDirectChildrenOnly);
    if (!found && create) {
        found = new WindowAttachments(window);
        found->setObjectName(QLatin1String(kAttachmentsName));
    }
    return found;
}

} // namespace

void kq_setWindowDelegate(QWidget *window, QObject *delegate)
{
    if (WindowAttachments *a = attachments(window, delegate != nullptr))
        a->delegate = delegate;
}

QObject *kq_windowDelegate(const QWidget *window)
{
    const WindowAttachments *a = attachments(window, false);
    return a ? a->delegate.data() : nullptr;
}

void kq_setWindowController(QWidget *window, QObject *controller)
{
    if (WindowAttachments *a = attachments(window, controller != nullptr))
        a->controller = controller;
}

QObject *kq_windowController(const QWidget *window)
{
    const WindowAttachments *a = attachments(window, false);
    return a ? a->controller.data() : nullptr;
}

int kq_indexOfMethodNamed(const QObject *object, QByteArrayView name)
{
    if (!object || name.isEmpty())
        return -1;
    const QMetaObject *meta = object->metaObject();
    for (int i = 0; i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Constructor && method.name() == name)
            return i;
    }
    return -1;
}

bool kq_respondsToMethod(const QObject *object, QByteArrayView name)
{
    return kq_indexOfMethodNamed(object, name) >= 0;
}

QList<QObject *> kq_responderChain(QWidget *start)
{
    QList<QObject *> chain;
    if (!start && qobject_cast<QApplication *>(QCoreApplication::instance())) {
        start = QApplication::focusWidget();
        if (!start)
            start = QApplication::activeWindow();
    }
    if (start) {
        for (QWidget *w = start; w; w = w->isWindow() ? nullptr : w->parentWidget())
            chain.append(w);
        QWidget *window = start->window();
        if (QObject *delegate = kq_windowDelegate(window))
            chain.append(delegate);
        if (QObject *controller = kq_windowController(window); controller && !chain.contains(controller))
            chain.append(controller);
    }
    if (QCoreApplication *application = QCoreApplication::instance())
        chain.append(application);
    return chain;
}

QObject *kq_targetForMethod(QByteArrayView name, QWidget *start)
{
    const QList<QObject *> chain = kq_responderChain(start);
    for (QObject *candidate : chain) {
        if (kq_respondsToMethod(candidate, name))
            return candidate;
    }
    return nullptr;
}
