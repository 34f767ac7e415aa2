#pragma once

// The relayout rules on plain frames and masks. Nothing here knows about
// widgets (or Qt), so the tests and the fuzzers run the rules directly; the
// widget functions build a RelayoutView tree from a widget tree, run the
// rules on it and write back the frames that changed.

#include <cstddef>
#include <vector>

namespace KQRelayout {

// Autoresizing mask bits that steer the rules (the vertical ones are kept but unused).
enum MaskBit : int {
    FlexibleLeftMargin = 1,
    FlexibleWidth = 2,
    FlexibleRightMargin = 4,
    FlexibleTopMargin = 8,
    FlexibleHeight = 16,
    FlexibleBottomMargin = 32,
};

// A widget placed without a layout stays at its parent's top-left corner.
constexpr int DefaultMask = FlexibleRightMargin | FlexibleTopMargin;
constexpr int OptOutTag = 1337;
constexpr double DefaultGap = 8.0;
// Sizes closer than single-precision epsilon are the same size.
constexpr double SizeEpsilon = 1.1920928955078125e-7;
// Margin around the content of a view that is not its window's content view.
constexpr double ContentMargin = 20.0;

constexpr bool hasLeftStrut(int mask) { return (mask & FlexibleLeftMargin) == 0; }
constexpr bool hasRightStrut(int mask) { return (mask & FlexibleRightMargin) == 0; }
constexpr bool expandsHorizontally(int mask) { return (mask & FlexibleWidth) != 0; }

struct Frame
{
    double x = 0, y = 0, width = 0, height = 0;

    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool operator==(const Frame &other) const = default;
};

// Overlap by a positive area; an empty frame meets nothing.
bool intersects(const Frame &a, const Frame &b);
// The bounding box of both; an empty frame adds nothing, two give the zero frame.
Frame unite(const Frame &a, const Frame &b);

enum class Kind {
    Plain,   // any other view: only the content-view rule applies
    Control, // grows to its natural width
    Box,     // widens to hold its children
    Island,  // sized by its own layout: neither entered nor grown, collides as one
};

struct View
{
    Frame frame;
    int mask = DefaultMask;
    Kind kind = Kind::Plain;
    bool participates = true; // takes part in collisions (the opt-outs answer false)
    bool optOutTag = false;   // tagged to be left alone by the content-view rule
    bool contentView = false; // its window's content view: fitting it sizes the window
    double naturalWidth = 0;  // a control's width for its content
    std::vector<std::size_t> friends; // siblings that move along with it, by index
    std::vector<View> children;       // subviews, in subview order
    void *owner = nullptr;            // what the caller maps the view back to
};

struct Settings
{
    double gap = DefaultGap;
    bool integral = true;  // frames land on whole pixels as each rule sets them
    bool guarded = true;   // stop levels that never settle
    std::size_t unguardedLimit = 0; // when not guarded: a hard cap for test harnesses (0: none)
};

struct Outcome
{
    std::vector<const View *> unsettled;  // parents whose children kept pushing each other
    std::vector<const View *> emptied;    // views narrowed to nothing by a stretch
    std::size_t sweeps = 0;               // sweeps run, over all levels
    std::size_t longestLevel = 0;         // most sweeps any one level needed
};

// The most sweeps a level of \a count siblings is given before it counts as
// cycling. A settling level needs at most one sweep per link of its longest
// push chain, and a chain passes each sibling at most once in each direction,
// plus the final sweep that finds nothing to do: 2 * count + 1. Friends can
// make a move ride along with another; eight times the siblings plus a
// constant stays far above any level that settles.
std::size_t sweepLimit(std::size_t count);

// The collision rule for siblings[a] colliding with siblings[b]: true when something moved.
bool resolveCollision(std::vector<View> &siblings, std::size_t a, std::size_t b, const Settings &settings,
                      Outcome *outcome = nullptr);

struct SettleResult
{
    std::size_t sweeps = 0;
    bool settled = true;
};
// Sweeps over every intersecting pair until nothing moves (or the guard stops it).
SettleResult settle(std::vector<View> &siblings, const Settings &settings, Outcome *outcome = nullptr);

// The far corner of the children's bounding box plus the margin (none for a content view).
Frame minFrameSize(const View &view);

// The fit rule of siblings[index] (control, box or content-view rule by its kind).
void expandToFitContent(std::vector<View> &siblings, std::size_t index, const Settings &settings);

// The driver on siblings[index]: children first, then collisions among them, then its own fit.
void relayout(std::vector<View> &siblings, std::size_t index, const Settings &settings, Outcome &outcome);

// The number of views in the tree below and including \a view.
std::size_t viewCount(const View &view);

} // namespace KQRelayout
