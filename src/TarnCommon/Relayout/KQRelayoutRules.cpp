#include "KQRelayoutRules_p.h"

#include <algorithm>
#include <cmath>

namespace KQRelayout {

namespace {

// Whole pixels as a widget takes them: halves round up, as qRound does.
double pixel(double value) { return std::floor(value + 0.5); }

void place(Frame &frame, double x, double width, const Settings &settings)
{
    frame.x = settings.integral ? pixel(x) : x;
    frame.width = settings.integral ? pixel(width) : width;
}

// The x-extents of all siblings, compared to tell a cycling level by its repeating state.
std::vector<double> extents(const std::vector<View> &siblings)
{
    std::vector<double> state;
    state.reserve(siblings.size() * 2);
    for (const View &view : siblings) {
        state.push_back(view.frame.x);
        state.push_back(view.frame.width);
    }
    return state;
}

// For each sibling, the siblings whose rows it shares, in subview order. The
// rules never change y or height, so views that do not share a row cannot
// collide in this level: a sweep then costs the pairs that share a row, not
// all pairs. Kept flat (the partners of i are list[offsets[i], offsets[i+1]))
// because a level of many small lists spent more on allocating them than on
// the sweeps.
struct RowPartners
{
    std::vector<std::size_t> offsets;
    std::vector<std::size_t> list;
};

RowPartners rowPartners(const std::vector<View> &siblings)
{
    const std::size_t count = siblings.size();
    // Only views with a positive height and a y that is a number can meet
    // anything; this also keeps not-a-number out of the sort.
    std::vector<std::size_t> byTop;
    byTop.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const Frame &frame = siblings[i].frame;
        if (frame.height > 0 && !std::isnan(frame.y) && !std::isnan(frame.maxY()))
            byTop.push_back(i);
    }
    const auto higher = [&](std::size_t l, std::size_t r) { return siblings[l].frame.y < siblings[r].frame.y; };
    if (!std::is_sorted(byTop.begin(), byTop.end(), higher)) // forms are mostly drawn top to bottom
        std::sort(byTop.begin(), byTop.end(), higher);

    std::vector<std::pair<std::size_t, std::size_t>> pairs;
    for (std::size_t i = 0; i < byTop.size(); ++i) {
        const Frame &a = siblings[byTop[i]].frame;
        for (std::size_t j = i + 1; j < byTop.size(); ++j) {
            const Frame &b = siblings[byTop[j]].frame;
            if (!(b.y < a.maxY()))
                break;
            if (a.y < b.maxY())
                pairs.emplace_back(byTop[i], byTop[j]);
        }
    }

    RowPartners partners;
    partners.offsets.assign(count + 1, 0);
    for (const auto &[l, r] : pairs) {
        ++partners.offsets[l + 1];
        ++partners.offsets[r + 1];
    }
    for (std::size_t i = 0; i < count; ++i)
        partners.offsets[i + 1] += partners.offsets[i];
    partners.list.resize(partners.offsets[count]);
    std::vector<std::size_t> fill(partners.offsets.begin(), partners.offsets.end() - 1);
    for (const auto &[l, r] : pairs) {
        partners.list[fill[l]++] = r;
        partners.list[fill[r]++] = l;
    }
    for (std::size_t i = 0; i < count; ++i)
        std::sort(partners.list.begin() + std::ptrdiff_t(partners.offsets[i]),
                  partners.list.begin() + std::ptrdiff_t(partners.offsets[i + 1]));
    return partners;
}

void fitControl(std::vector<View> &siblings, std::size_t index, const Settings &settings)
{
    View &control = siblings[index];
    if (!control.participates || (hasLeftStrut(control.mask) && hasRightStrut(control.mask)))
        return;
    const Frame old = control.frame;
    Frame fitted = old;
    // Never narrower, and the height stays: only the width follows the content.
    fitted.width = std::isfinite(control.naturalWidth) ? std::max(old.width, control.naturalWidth) : old.width;
    if (!(control.mask & FlexibleRightMargin) && fitted.width > old.width)
        fitted.x -= fitted.width - old.width; // anchored right: grow leftwards
    place(fitted, fitted.x, fitted.width, settings);
    control.frame = fitted;

    // Friends that shared the left edge or the width keep sharing it.
    for (std::size_t f : control.friends) {
        if (f >= siblings.size())
            continue;
        Frame &friendFrame = siblings[f].frame;
        if (std::abs(friendFrame.x - old.x) <= SizeEpsilon)
            friendFrame.x = fitted.x;
        if (std::abs(friendFrame.width - old.width) <= SizeEpsilon)
            friendFrame.width = fitted.width;
    }
}

void fitBox(View &box, const Settings &settings)
{
    if (!box.participates || (hasLeftStrut(box.mask) && hasRightStrut(box.mask)) || box.children.empty())
        return;
    Frame content;
    for (const View &child : box.children)
        content = unite(content, child.frame);
    const double need = content.maxX() + ContentMargin;
    // Only wider: the box is its own content view, so it never drops below its width.
    place(box.frame, box.frame.x, std::max(need, box.frame.width), settings);
}

void fitContentView(View &view, const Settings &settings)
{
    if (view.optOutTag || !view.contentView)
        return;
    const Frame size = minFrameSize(view);
    view.frame.width = settings.integral ? pixel(size.width) : size.width;
    view.frame.height = settings.integral ? pixel(size.height) : size.height;
}

} // namespace

bool intersects(const Frame &a, const Frame &b)
{
    return a.width > 0 && a.height > 0 && b.width > 0 && b.height > 0 && a.x < b.maxX() && b.x < a.maxX()
        && a.y < b.maxY() && b.y < a.maxY();
}

Frame unite(const Frame &a, const Frame &b)
{
    const bool aEmpty = !(a.width > 0) || !(a.height > 0);
    const bool bEmpty = !(b.width > 0) || !(b.height > 0);
    if (aEmpty)
        return bEmpty ? Frame{} : b;
    if (bEmpty)
        return a;
    const double x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return Frame{x, y, std::max(a.maxX(), b.maxX()) - x, std::max(a.maxY(), b.maxY()) - y};
}

std::size_t sweepLimit(std::size_t count) { return 8 * count + 64; }

bool resolveCollision(std::vector<View> &siblings, std::size_t a, std::size_t b, const Settings &settings,
                      Outcome *outcome)
{
    if (a >= siblings.size() || b >= siblings.size() || a == b)
        return false;
    const View &first = siblings[a];
    const View &second = siblings[b];
    if (!first.participates || !second.participates)
        return false;

    std::size_t mover;
    double shift;
    const bool pushRight = hasLeftStrut(first.mask) && hasLeftStrut(second.mask);
    if (pushRight) {
        // The one further right moves right; on a tie the receiver does.
        mover = second.frame.x > first.frame.x ? b : a;
        const Frame &left = siblings[mover == a ? b : a].frame;
        shift = left.maxX() + settings.gap - siblings[mover].frame.x;
    } else {
        if (!hasRightStrut(first.mask) || !hasRightStrut(second.mask))
            return false; // cannot be separated in the pushing direction
        // The one further left moves left; on a tie the other one does.
        mover = first.frame.maxX() < second.frame.maxX() ? a : b;
        const Frame &right = siblings[mover == a ? b : a].frame;
        shift = -(settings.gap + (siblings[mover].frame.maxX() - right.x));
    }
    // Sub-point shifts are jitter, which also ends the sweeps.
    if (!std::isfinite(shift) || (shift > -1.0 && shift < 1.0))
        return false;

    std::vector<std::size_t> group;
    for (std::size_t f : siblings[mover].friends) {
        if (f < siblings.size())
            group.push_back(f);
    }
    if (std::find(group.begin(), group.end(), mover) == group.end())
        group.push_back(mover);

    for (std::size_t index : group) {
        View &view = siblings[index];
        Frame &frame = view.frame;
        const bool farSideFlexible = pushRight ? !hasRightStrut(view.mask) : !hasLeftStrut(view.mask);
        if (expandsHorizontally(view.mask) && !farSideFlexible) {
            // Stretch: the far edge stays, the near edge gives way.
            const double farEdge = frame.maxX();
            double x = pushRight ? frame.x + shift : frame.x;
            double width = frame.width - std::abs(shift);
            if (width < 0) {
                // Qt has no negative sizes: the view ends as a sliver at its far edge.
                width = 0;
                x = pushRight ? farEdge : frame.x;
                if (outcome)
                    outcome->emptied.push_back(&view);
            }
            place(frame, x, width, settings);
        } else {
            place(frame, frame.x + shift, frame.width, settings);
        }
    }
    return true;
}

SettleResult settle(std::vector<View> &siblings, const Settings &settings, Outcome *outcome)
{
    SettleResult result;
    if (siblings.size() < 2)
        return result;
    const auto partners = rowPartners(siblings);
    const std::size_t limit = settings.guarded ? sweepLimit(siblings.size()) : settings.unguardedLimit;

    // Brent's cycle finding on the x-extents: a state seen again means the
    // level repeats forever, which no level that settles ever does.
    std::vector<double> saved = extents(siblings);
    std::size_t power = 1, distance = 0;

    for (;;) {
        if (limit && result.sweeps >= limit) {
            result.settled = false;
            break;
        }
        ++result.sweeps;
        bool changed = false;
        for (std::size_t a = 0; a < siblings.size(); ++a) {
            for (std::size_t k = partners.offsets[a]; k < partners.offsets[a + 1]; ++k) {
                const std::size_t b = partners.list[k];
                if (intersects(siblings[a].frame, siblings[b].frame)
                    && resolveCollision(siblings, a, b, settings, outcome))
                    changed = true;
            }
        }
        if (!changed)
            break;
        if (settings.guarded) {
            std::vector<double> state = extents(siblings);
            if (state == saved) {
                result.settled = false;
                break;
            }
            if (++distance == power) {
                saved = std::move(state);
                power *= 2;
                distance = 0;
            }
        }
    }
    if (outcome) {
        outcome->sweeps += result.sweeps;
        outcome->longestLevel = std::max(outcome->longestLevel, result.sweeps);
    }
    return result;
}

Frame minFrameSize(const View &view)
{
    Frame bounds;
    for (const View &child : view.children)
        bounds = unite(bounds, child.frame);
    const double margin = view.contentView ? 0.0 : ContentMargin;
    return Frame{0, 0, bounds.maxX() + margin, bounds.maxY() + margin};
}

void expandToFitContent(std::vector<View> &siblings, std::size_t index, const Settings &settings)
{
    if (index >= siblings.size())
        return;
    View &view = siblings[index];
    switch (view.kind) {
    case Kind::Control:
        fitControl(siblings, index, settings);
        break;
    case Kind::Box:
        fitBox(view, settings);
        break;
    case Kind::Plain:
        fitContentView(view, settings);
        break;
    case Kind::Island:
        break;
    }
}

void relayout(std::vector<View> &siblings, std::size_t index, const Settings &settings, Outcome &outcome)
{
    if (index >= siblings.size() || siblings[index].kind == Kind::Island)
        return;
    View &view = siblings[index];
    for (std::size_t i = 0; i < view.children.size(); ++i)
        relayout(view.children, i, settings, outcome);
    if (!settle(view.children, settings, &outcome).settled)
        outcome.unsettled.push_back(&view);
    expandToFitContent(siblings, index, settings);
}

std::size_t viewCount(const View &view)
{
    std::size_t count = 1;
    for (const View &child : view.children)
        count += viewCount(child);
    return count;
}

} // namespace KQRelayout
