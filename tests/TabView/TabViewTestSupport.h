#pragma once

#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QStringList>
#include <QtGui/QIcon>
#include <QtGui/QImage>
#include <QtGui/QPixmap>

// A tab owned by owner, with a content widget of the given size that the
// tab owns (it has no parent).
inline KQTab *makeTab(QObject *owner, qint64 tag, const QString &tooltip = QString(), QSize viewSize = {100, 50})
{
    auto *tab = new KQTab(owner);
    auto *view = new QWidget;
    view->resize(viewSize);
    view->setObjectName(QStringLiteral("view%1").arg(tag));
    tab->setView(view);
    tab->setTag(tag);
    tab->setIconTooltip(tooltip);
    return tab;
}

// An opaque 16 x 16 square with a transparent top-left quadrant.
inline QIcon makeIcon(const QColor &color)
{
    QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
    image.fill(color);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            image.setPixelColor(x, y, Qt::transparent);
    return QIcon(QPixmap::fromImage(image));
}

// Records the delegate messages, with what was installed when each came.
// Told to, destroys the tab view from inside one of the two messages, as a
// panel that closes once a choice is made would.
class RecordingDelegate : public QObject, public KQTabViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(KQTabViewDelegate)
public:
    QStringList log;
    QString destroyIn; // "will", "did" or empty

    void tabViewWillChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) override
    {
        hear(QStringLiteral("will"), tabView, toTab, fromTab);
    }
    void tabViewDidChangeToTab(KQTabView *tabView, KQTab *toTab, KQTab *fromTab) override
    {
        hear(QStringLiteral("did"), tabView, toTab, fromTab);
    }

private:
    // "will 2<-1 shown:view1" : the message, the tags and the visible child.
    void hear(const QString &what, KQTabView *tabView, KQTab *to, KQTab *from)
    {
        QString shown;
        for (QWidget *child : tabView->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (!child->isHidden())
                shown += child->objectName();
        }
        const auto tag = [](KQTab *tab) { return tab ? QString::number(tab->tag()) : QStringLiteral("-"); };
        log << QStringLiteral("%1 %2<-%3 shown:%4").arg(what, tag(to), tag(from), shown);
        if (what == destroyIn)
            delete tabView;
    }
};
