#include <TarnCommon/KQTab.h>

#include <QtCore/QPointer>

class KQTabPrivate
{
public:
    QIcon icon;
    QPointer<QWidget> view;
    bool ownsView = false;
    QPointer<QWidget> initialFirstResponder;
    qint64 tag = 0;
    QString iconTooltip;
};

KQTab::KQTab(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<KQTabPrivate>())
{
}

KQTab::~KQTab()
{
    if (d->ownsView && d->view && !d->view->parentWidget())
        delete d->view.data();
}

QWidget *KQTab::view() const
{
    return d->view;
}

void KQTab::setView(QWidget *view)
{
    if (d->view == view)
        return;
    d->view = view;
    d->ownsView = view && !view->parentWidget();
    Q_EMIT viewChanged();
}

QIcon KQTab::icon() const
{
    return d->icon;
}

void KQTab::setIcon(const QIcon &icon)
{
    // QIcon has no equality; copies of one icon share its cache key.
    if (d->icon.cacheKey() == icon.cacheKey())
        return;
    d->icon = icon;
    Q_EMIT iconChanged();
}

QWidget *KQTab::initialFirstResponder() const
{
    return d->initialFirstResponder;
}

void KQTab::setInitialFirstResponder(QWidget *widget)
{
    if (d->initialFirstResponder == widget)
        return;
    d->initialFirstResponder = widget;
    Q_EMIT initialFirstResponderChanged();
}

qint64 KQTab::tag() const
{
    return d->tag;
}

void KQTab::setTag(qint64 tag)
{
    if (d->tag == tag)
        return;
    d->tag = tag;
    Q_EMIT tagChanged();
}

QString KQTab::iconTooltip() const
{
    return d->iconTooltip;
}

void KQTab::setIconTooltip(const QString &tooltip)
{
    // A null and an empty tooltip differ (no tooltip vs. an empty one).
    if (d->iconTooltip == tooltip && d->iconTooltip.isNull() == tooltip.isNull())
        return;
    d->iconTooltip = tooltip;
    Q_EMIT iconTooltipChanged();
}
