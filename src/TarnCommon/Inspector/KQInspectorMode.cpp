#include <TarnCommon/KQInspectorMode.h>

#include <TarnCommon/KQInspectorWindow.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QWidget>

#include <limits>

class KQInspectorModePrivate
{
public:
    QPointer<QWidget> view;
};

KQInspectorMode::KQInspectorMode(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<KQInspectorModePrivate>())
{
}

KQInspectorMode::~KQInspectorMode()
{
    delete d->view.data();
}

QString KQInspectorMode::inspectorTitle() const
{
    return QCoreApplication::translate("TarnCommon", "Inspector");
}

bool KQInspectorMode::isResizable() const
{
    return true;
}

QSizeF KQInspectorMode::minSize() const
{
    return QSizeF(0, 0);
}

QSizeF KQInspectorMode::maxSize() const
{
    const double largest = std::numeric_limits<float>::max();
    return QSizeF(largest, largest);
}

qint64 KQInspectorMode::windowLevel() const
{
    return KQInspectorWindow::defaultWindowLevel();
}

QWidget *KQInspectorMode::view()
{
    if (!d->view)
        loadView();
    return d->view.data();
}

bool KQInspectorMode::isViewLoaded() const
{
    return !d->view.isNull();
}

void KQInspectorMode::modeWillShow()
{
}

void KQInspectorMode::modeWasHidden()
{
}

void KQInspectorMode::loadView()
{
    setView(new QWidget);
}

void KQInspectorMode::setView(QWidget *view)
{
    if (d->view == view)
        return;
    delete d->view.data();
    d->view = view;
}
