#pragma once

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <optional>
#include <utility>

// The rules of the collapsible list, free of widgets: the list gathers one
// KQStackItem per view (in list order), asks these functions, and applies
// the answers. Heights are doubles; the widgets round them when applying.
namespace KQCollapsibleStacking {

// Header height of a collapsible view: the collapsed height and the minimum
// height of a resizable view.
inline constexpr double HeaderHeight = 18.0;
// Heights closer than this are the same height.
inline constexpr double HeightEpsilon = 1.1920928955078125e-7;

struct KQStackItem
{
    QRectF frame;           // the view's current frame in the list
    double minHeight = 0.0; // the view's own limits
    double maxHeight = 0.0;
    bool hidden = false;
    bool heightResizable = false;
    bool collapsed = false;
};

struct KQHeightLimits
{
    double minHeight = 0.0;
    double maxHeight = 0.0;
};

// The view's own limits: a resizable view may shrink to its header and, while
// expanded, grow without end (the largest finite double); otherwise both
// limits are its current height.
KQHeightLimits viewHeightLimits(double currentHeight, bool heightResizable, bool collapsed);

// Sums of the visible views' limits (0 and 0 without a visible view). The
// sum of two unlimited maxima overflows to infinity, which is fine: it only
// means "unlimited".
KQHeightLimits listHeightLimits(const QList<KQStackItem> &items);

// The frames of the views stacked top to bottom at full width in a list of
// the given size. The spare height (or the shortfall) goes to the first
// resizable, expanded view as far as its limits allow, the rest to the next
// one, and so on. Hidden views keep their frame. No answer for a list
// without width or height: nothing is to be laid out then.
std::optional<QList<QRectF>> stackFrames(const QList<KQStackItem> &items, double width, double height);

// The height a list fitting its views takes: its current height clamped to
// the limits, the maximum winning on a conflict (unlike the frame clamp,
// where the minimum wins).
double fittedListHeight(double currentHeight, const KQHeightLimits &limits);

// What the list adds to a view's height animation: the visible views after
// the animating one slide by the change, and the list ends at the sum of the
// visible heights after the change.
struct KQAnimationPlan
{
    QList<std::pair<qsizetype, QRectF>> moves; // index of a view, its end frame
    double listHeight = 0.0;
};
KQAnimationPlan animationPlan(const QList<KQStackItem> &items, qsizetype animatingIndex, double fromHeight,
                              double toHeight);

// The titles stored for a list: the titles of its collapsed views, in list
// order (untitled views, given as null strings, never listed).
QStringList collapsedTitlesToSave(const QList<std::pair<QString, bool>> &titlesAndCollapsed);

// Reads a stored value back as titles. A list of strings is the normal
// form; a single string is a one-title list (how INI files keep one-element
// lists); nothing stored is no titles. Whatever else a damaged settings file
// holds yields the strings it does contain, and *damaged is set so the
// caller can report it.
QStringList storedTitles(const QVariant &stored, bool *damaged = nullptr);

} // namespace KQCollapsibleStacking
