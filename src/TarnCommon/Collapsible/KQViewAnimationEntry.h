#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtWidgets/QWidget>

// One widget moving or resizing in a height animation of the collapsible
// views: the widget and the frame (geometry in its parent) it ends at. A
// delegate that wants another widget to follow the animation appends an entry.
// A target destroyed while the animation runs is skipped.
struct KQViewAnimationEntry
{
    QPointer<QWidget> target;
    QRectF endFrame;
};

using KQViewAnimations = QList<KQViewAnimationEntry>;
