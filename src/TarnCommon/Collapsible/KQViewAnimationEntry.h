#pragma once

#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtCore/QRectF>
#include <QtWidgets/QWidget>

/*! \file KQViewAnimationEntry.h
    \brief The widgets moving together in a height animation of the collapsible views. */

/*!
    One widget moving or resizing in a height animation of the collapsible
    views, and the frame it ends at.

    A delegate that wants another widget to follow a collapse or expansion
    appends an entry to the list it is handed; the animation then moves the
    widget linearly from the frame it has when the animation starts to
    endFrame. The entry does not own its widget.
*/
struct KQViewAnimationEntry
{
    /*! The widget to move. Guarded: a widget destroyed while the animation
        runs is skipped, and a null target is never touched. */
    QPointer<QWidget> target;
    /*! The geometry the widget ends at, in its parent's coordinates (pixels;
        rounded to whole pixels when applied). */
    QRectF endFrame;
};

/*! The widgets of one height animation, in the order they were added. */
using KQViewAnimations = QList<KQViewAnimationEntry>;
