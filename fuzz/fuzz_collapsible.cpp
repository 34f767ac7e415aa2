// The collapsible list's stacking rules on arbitrary lists of views: frames
// abut from the top at full width, only resizable expanded views change
// height and stay within their limits, and the spare height (or shortfall)
// is absorbed exactly as far as the limits allow. Any double, not-a-number
// included, must go through without a trap. Stored titles from arbitrary
// settings values give back exactly the strings they hold.
#include "FuzzSupport.h"
#include "KQCollapsibleStacking_p.h"

using namespace FuzzSupport;
using namespace KQCollapsibleStacking;

namespace {

bool near(double a, double b)
{
    if (std::isinf(a) || std::isinf(b))
        return a == b;
    return std::fabs(a - b) <= 1e-9 * (std::fabs(a) + std::fabs(b) + 1.0);
}

void stacking(FuzzedDataProvider &data)
{
    // Views as the list gathers them (limits from their own rule), or, now
    // and then, anything at all.
    const bool anything = data.ConsumeIntegralInRange(0, 7) == 0;
    QList<KQStackItem> items;
    const int count = data.ConsumeIntegralInRange(0, 8);
    for (int i = 0; i < count; ++i) {
        KQStackItem item;
        item.hidden = data.ConsumeIntegralInRange(0, 4) == 0;
        item.heightResizable = data.ConsumeBool();
        item.collapsed = data.ConsumeIntegralInRange(0, 3) == 0;
        double height = double(data.ConsumeIntegralInRange(0, 800)) * 0.5;
        if (item.collapsed || (item.heightResizable && height < HeaderHeight))
            height = HeaderHeight;
        if (anything)
            height = anyDouble(data);
        item.frame = QRectF(anything ? anyDouble(data) : 0.0, 0.0, 100.0, height);
        const KQHeightLimits limits = viewHeightLimits(height, item.heightResizable, item.collapsed);
        item.minHeight = anything ? anyDouble(data) : limits.minHeight;
        item.maxHeight = anything ? anyDouble(data) : limits.maxHeight;
        if (!anything && item.heightResizable && !item.collapsed && data.ConsumeBool())
            item.maxHeight = height + double(data.ConsumeIntegralInRange(0, 400)) * 0.5;
        items.append(item);
    }
    const double width = anything ? anyDouble(data) : double(data.ConsumeIntegralInRange(-2, 400));
    const double height = anything ? anyDouble(data) : double(data.ConsumeIntegralInRange(-2, 4000)) * 0.5;

    const std::optional<QList<QRectF>> frames = stackFrames(items, width, height);
    const KQHeightLimits limits = listHeightLimits(items);
    const double fitted = fittedListHeight(height, limits);
    const qsizetype animating = data.ConsumeIntegralInRange<qsizetype>(-1, count);
    const double from = anything ? anyDouble(data) : double(data.ConsumeIntegralInRange(0, 400));
    const double to = anything ? anyDouble(data) : double(data.ConsumeIntegralInRange(0, 400));
    const KQAnimationPlan plan = animationPlan(items, animating, from, to);
    if (anything)
        return; // only that nothing traps

    check(frames.has_value() == (width > 0 && height > 0), "laid out exactly when there is room");
    check(limits.minHeight <= limits.maxHeight, "list limits ordered");
    check(fitted >= limits.minHeight && fitted <= limits.maxHeight, "fitted height within the limits");

    double fixed = 0.0, spareMin = 0.0, spareMax = 0.0, visible = 0.0;
    for (const KQStackItem &item : std::as_const(items)) {
        if (item.hidden)
            continue;
        visible += item.frame.height();
        if (item.heightResizable && !item.collapsed) {
            spareMin += item.minHeight;
            spareMax += item.maxHeight;
        } else {
            fixed += item.frame.height();
        }
    }

    // The animation slides the visible views after the animating one.
    qsizetype move = 0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (items.at(i).hidden || animating < 0 || i <= animating)
            continue;
        check(move < plan.moves.size() && plan.moves.at(move).first == i
                  && plan.moves.at(move).second == items.at(i).frame.translated(0, to - from),
              "animation moves");
        ++move;
    }
    check(move == plan.moves.size() && near(plan.listHeight, visible + to - from), "animation plan");

    if (!frames)
        return;
    check(frames->size() == items.size(), "one frame per view");
    double y = 0.0, spare = 0.0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const KQStackItem &item = items.at(i);
        const QRectF &frame = frames->at(i);
        if (item.hidden) {
            check(frame == item.frame, "hidden views keep their frame");
            continue;
        }
        check(frame.x() == 0.0 && frame.width() == width && near(frame.y(), y), "stacked at full width");
        if (item.heightResizable && !item.collapsed) {
            check(frame.height() >= item.minHeight && frame.height() <= item.maxHeight, "within the view's limits");
            spare += frame.height();
        } else {
            check(frame.height() == item.frame.height(), "fixed views keep their height");
        }
        y += frame.height();
    }
    check(near(spare, std::clamp(height - fixed, spareMin, spareMax)), "spare height absorbed as far as the limits allow");
}

void titles(FuzzedDataProvider &data)
{
    QVariantList entries;
    QStringList strings;
    bool foreign = false;
    const int count = data.ConsumeIntegralInRange(0, 5);
    for (int i = 0; i < count; ++i) {
        if (data.ConsumeIntegralInRange(0, 3) == 0) {
            entries.append(i % 2 ? QVariant(i) : QVariant(QVariantMap()));
            foreign = true;
        } else {
            const QString s = text(data, 6);
            entries.append(s);
            strings.append(s);
        }
    }
    QVariant stored;
    bool expectDamaged = false;
    QStringList expected;
    switch (data.ConsumeIntegralInRange(0, 4)) {
    case 0:
        break; // nothing stored
    case 1:
        stored = strings.value(0);
        expected = {strings.value(0)};
        break;
    case 2:
        stored = strings;
        expected = strings;
        break;
    case 3:
        stored = entries;
        expected = strings;
        expectDamaged = foreign;
        break;
    default:
        stored = QVariant(count);
        expectDamaged = true;
        break;
    }
    bool damaged = !expectDamaged;
    check(storedTitles(stored, &damaged) == expected && damaged == expectDamaged, "stored titles");

    QList<std::pair<QString, bool>> views;
    QStringList saved;
    for (const QString &s : std::as_const(strings)) {
        const bool collapsed = data.ConsumeBool();
        const QString title = data.ConsumeBool() ? QString() : s;
        views.append({title, collapsed});
        if (collapsed && !title.isNull())
            saved.append(title);
    }
    check(collapsedTitlesToSave(views) == saved, "titles to save");
}

} // namespace

TARN_FUZZ_QUIET_INITIALIZE()

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    if (data.ConsumeIntegralInRange(0, 3) == 0)
        titles(data);
    else
        stacking(data);
    return 0;
}
