#include <TarnCommon/KQInspectorMode.h>

#include <TarnCommon/KQInspectorWindow.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QWidget>

#include <limits>

KQInspectorMode::KQInspectorMode(QObject *parent)
    : QObject(parent)
{
}

KQInspectorMode::~KQInspectorMode()
{
    delete m_view.data();
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
    if (!m_view)
        loadView();
    return m_view.data();
}

bool KQInspectorMode::isViewLoaded() const
{
    return !m_view.isNull();
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
    if (m_view == view)
        return;
    delete m_view.data();
    m_view = view;
}
