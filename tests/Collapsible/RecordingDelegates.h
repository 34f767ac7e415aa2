#pragma once

#include <TarnCommon/KQCollapsibleListView.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

// Records every delegate message as one line, so tests can compare the order.
class RecordingViewDelegate : public QObject, public KQCollapsibleViewDelegate
{
public:
    void collapsableViewWillAnimateFromHeight(KQCollapsibleView *view, double fromHeight, double toHeight,
                                              KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("will %1 %2 -> %3").arg(view->title()).arg(fromHeight).arg(toHeight));
        if (extraTarget)
            animations.append({extraTarget, extraEndFrame});
    }
    void collapsableViewFinishedAnimations(KQCollapsibleView *view, const KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("finished %1").arg(view->title()));
        finished = animations;
    }

    QStringList log;
    KQViewAnimations finished;
    QPointer<QWidget> extraTarget;
    QRectF extraEndFrame;
};

class RecordingListDelegate : public QObject, public KQCollapsibleListViewDelegate
{
public:
    void collapsableListViewWillAnimateFromHeight(KQCollapsibleListView *, double fromHeight, double toHeight,
                                                  KQViewAnimations &animations) override
    {
        log.append(QStringLiteral("list %1 -> %2").arg(fromHeight).arg(toHeight));
        seen = animations;
    }

    QStringList log;
    KQViewAnimations seen;
};
