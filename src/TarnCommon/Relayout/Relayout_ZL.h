#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QList>
#include <QtCore/QSizeF>

/*!
    \file Relayout_ZL.h
    \brief Repairs absolutely placed forms after translation: grows controls to
    their content and pushes overlapping siblings apart.

    A form laid out in Designer without layouts breaks when its texts get
    longer. f_relayout() grows every control to its natural width, moves (or
    narrows) one widget of each overlapping sibling pair sideways so that a
    gap of RelayoutSetGapSize_ZL() pixels remains, and finally sizes the
    window to its content. Only x and width ever change.

    Each widget's \c autoresizingMask property (an \c int, settable in
    Designer as a dynamic property) says which way it may move or grow:
    KQAutoresizingFlexibleLeftMargin, KQAutoresizingFlexibleWidth and
    KQAutoresizingFlexibleRightMargin. A side whose margin is not flexible is
    a strut. A widget without the property counts as pinned to the top-left
    corner (flexible right and top margins).

    Left alone: widgets tagged KQRelayoutOptOutTag, group boxes titled
    KQNoRelayoutTitle, separator lines, scroll bars, scroll-area viewports,
    splitters and their handles, and any widget the window delegate's
    \c f_shouldRelayoutObject(QWidget*) answers false for. A widget with its
    own QLayout is not entered and collides as one piece. The window
    delegate's \c f_alignedFriendsOfView(QWidget*) (answering a
    QList<QWidget*>) names siblings that move along with a widget.

    \code
    ui.setupUi(dialog);
    f_relayout(dialog); // after the texts are in place
    \endcode
*/

class QWidget;

/*! The autoresizing bit for a flexible left margin (the widget may move right-anchored). */
constexpr int KQAutoresizingFlexibleLeftMargin = 1;
/*! The autoresizing bit for a flexible width (the widget may stretch instead of moving). */
constexpr int KQAutoresizingFlexibleWidth = 2;
/*! The autoresizing bit for a flexible right margin (the widget is left-anchored). */
constexpr int KQAutoresizingFlexibleRightMargin = 4;
/*! The autoresizing bit for a flexible top margin (kept, not used by the rules). */
constexpr int KQAutoresizingFlexibleTopMargin = 8;
/*! The autoresizing bit for a flexible height (kept, not used by the rules). */
constexpr int KQAutoresizingFlexibleHeight = 16;
/*! The autoresizing bit for a flexible bottom margin (kept, not used by the rules). */
constexpr int KQAutoresizingFlexibleBottomMargin = 32;
/*! The tag of widgets that never take part in collisions and are never grown. */
constexpr int KQRelayoutOptOutTag = 1337;
/*! The exact, untranslated title of group boxes that relayout leaves alone. */
constexpr const char KQNoRelayoutTitle[] = "NoRelayout_DONT_TRANSLATE_THIS";

/*!
    Relayouts \a view: each child widget first (in children() order), then
    the collisions among its direct children, swept until nothing moves,
    then \a view's own fit rule. On a QMainWindow it works on the central
    widget. A level whose pushes never settle is stopped, reported once with
    a warning naming the window, and left as it is. A null \a view is
    reported and nothing happens.
*/
TARNCOMMON_EXPORT void f_relayout(QWidget *view);

/*!
    The far corner of the bounding box of \a view's child widgets (hidden
    ones included), plus a margin of 20 pixels unless \a view is its
    window's content view. An empty size for nullptr (reported).
*/
TARNCOMMON_EXPORT QSizeF f_minFrameSize(const QWidget *view);

/*!
    \a view's fit rule. A control grows to its natural width (never
    narrower, height kept; leftwards when only its left margin is flexible;
    not at all when pinned on both sides), and its aligned friends that shared
    its left edge or its width follow. A group box widens to hold its
    children plus 20 pixels. A window's content view sizes the window to the
    far corner of its children, smaller as well as larger. Other widgets keep
    their size.
*/
TARNCOMMON_EXPORT void f_expandToFitContent(QWidget *view);

/*!
    Whether \a view takes part in collisions: false for the opt-outs listed
    in this file's description, otherwise the window delegate's answer to
    \c f_shouldRelayoutObject(QWidget*) when it has one, else true. False
    (reported) for nullptr.
*/
TARNCOMMON_EXPORT bool f_shouldResolveCollision(const QWidget *view);

/*!
    The siblings that move along with \a view: the window delegate's answer to
    \c f_alignedFriendsOfView(QWidget*), or an empty list. Entries that are not
    live siblings of \a view (another parent, deleted, null) are reported and
    dropped; an answer of another type is reported and counts as none.
*/
TARNCOMMON_EXPORT QList<QWidget *> f_alignedFriends(const QWidget *view);

/*!
    Resolves the collision of \a view with its sibling \a other, whether or not
    their frames meet: pushes one of them (with its friends) sideways so that
    the gap remains. True when something moved. Refused with a report (false,
    nothing moved) for nullptr, the same widget twice, or widgets that are not
    siblings.
*/
TARNCOMMON_EXPORT bool f_resolveCollisionWith(QWidget *view, QWidget *other);

/*! \a view's autoresizing mask: its \c autoresizingMask property, or 12 (flexible right and top margins) without one. */
TARNCOMMON_EXPORT int f_autoresizingMask(const QWidget *view);
/*! Sets \a view's \c autoresizingMask property to \a mask; nothing for nullptr. */
TARNCOMMON_EXPORT void f_setAutoresizingMask(QWidget *view, int mask);
/*! \a view's \c tag property, 0 without one or for nullptr. */
TARNCOMMON_EXPORT int f_tag(const QWidget *view);
/*! Sets \a view's \c tag property to \a tag; nothing for nullptr. */
TARNCOMMON_EXPORT void f_setTag(QWidget *view, int tag);

/*! True when \a view's left margin is not flexible (false for nullptr). */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT bool HasLeftStrut_ZL(const QWidget *view);
/*! True when \a view's right margin is not flexible (false for nullptr). */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT bool HasRightStrut_ZL(const QWidget *view);
/*! True when \a view's width is flexible (false for nullptr). */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT bool ExpandsHorizontally_ZL(const QWidget *view);
/*!
    Sets the gap that later collisions leave between two widgets (8 pixels
    at first). A negative or non-finite \a gap is reported and ignored.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT void RelayoutSetGapSize_ZL(double gap);
