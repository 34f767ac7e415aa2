#include <TarnCommon/KQTab.h>

KQTab::KQTab(QObject *parent)
    : QObject(parent)
{
}

KQTab::~KQTab()
{
    if (m_ownsView && _view && !_view->parentWidget())
        delete _view.data();
}

QWidget *KQTab::view() const
{
    return _view;
}

void KQTab::setView(QWidget *view)
{
    if (_view == view)
        return;
    _view = view;
    m_ownsView = view && !view->parentWidget();
    Q_EMIT viewChanged();
}

QIcon KQTab::icon() const
{
    return _icon;
}

void KQTab::setIcon(const QIcon &icon)
{
    // QIcon has no equality; copies of one icon share its cache key.
    if (_icon.cacheKey() == icon.cacheKey())
        return;
    _icon = icon;
    Q_EMIT iconChanged();
}

QWidget *KQTab::initialFirstResponder() const
{
    return _initialFirstResponder;
}

void KQTab::setInitialFirstResponder(QWidget *widget)
{
    if (_initialFirstResponder == widget)
        return;
    _initialFirstResponder = widget;
    Q_EMIT initialFirstResponderChanged();
}

qint64 KQTab::tag() const
{
    return _tag;
}

void KQTab::setTag(qint64 tag)
{
    if (_tag == tag)
        return;
    _tag = tag;
    Q_EMIT tagChanged();
}

QString KQTab::iconTooltip() const
{
    return _iconTooltip;
}

void KQTab::setIconTooltip(const QString &tooltip)
{
    // A null and an empty tooltip differ (no tooltip vs. an empty one).
    if (_iconTooltip == tooltip && _iconTooltip.isNull() == tooltip.isNull())
        return;
    _iconTooltip = tooltip;
    Q_EMIT iconTooltipChanged();
}
