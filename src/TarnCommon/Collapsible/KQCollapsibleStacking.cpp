#include "KQCollapsibleStacking_p.h"

#include <algorithm>
#include <limits>

namespace KQCollapsibleStacking {

KQHeightLimits viewHeightLimits(double currentHeight, bool heightResizable, bool collapsed)
{
    KQHeightLimits limits{currentHeight, currentHeight};
    if (heightResizable) {
        limits.minHeight = HeaderHeight;
        if (!collapsed)
            limits.maxHeight = std::numeric_limits<double>::max();
    }
    return limits;
}

KQHeightLimits listHeightLimits(const QList<KQStackItem> &items)
{
    KQHeightLimits limits;
    for (const KQStackItem &item : items) {
        if (item.hidden)
            continue;
        limits.minHeight += item.minHeight;
        limits.maxHeight += item.maxHeight;
    }
    return limits;
}

std::optional<QList<QRectF>> stackFrames(const QList<KQStackItem> &items, double width, double height)
{
    if (width <= 0.0 || height <= 0.0)
        return std::nullopt;

    QList<QRectF> frames;
    frames.reserve(items.size());
    double used = 0.0;
    for (const KQStackItem &item : items) {
        if (item.hidden) {
            frames.append(item.frame);
            continue;
        }
        frames.append(QRectF(0.0, used, width, item.frame.height()));
        used += item.frame.height();
    }

    double extra = height - used;
    double y = 0.0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const KQStackItem &item = items.at(i);
        if (item.hidden)
            continue;
        QRectF &frame = frames[i];
        double h = frame.height();
        if (item.heightResizable && !item.collapsed) {
            double grown = extra + h;
            if (grown < item.minHeight)
                grown = item.minHeight;
            if (grown > item.maxHeight)
                grown = item.maxHeight;
            extra -= grown - h;
            h = grown;
        }
        frame = QRectF(frame.x(), y, frame.width(), h);
        y += h;
    }
    return frames;
}

double fittedListHeight(double currentHeight, const KQHeightLimits &limits)
{
    return std::min(limits.maxHeight, std::max(limits.minHeight, currentHeight));
}

KQAnimationPlan animationPlan(const QList<KQStackItem> &items, qsizetype animatingIndex, double fromHeight,
                              double toHeight)
{
    const double delta = toHeight - fromHeight;
    KQAnimationPlan plan;
    plan.listHeight = delta;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const KQStackItem &item = items.at(i);
        if (item.hidden)
            continue;
        if (animatingIndex >= 0 && i > animatingIndex)
            plan.moves.append({i, item.frame.translated(0.0, delta)});
        plan.listHeight += item.frame.height();
    }
    return plan;
}

QStringList collapsedTitlesToSave(const QList<std::pair<QString, bool>> &titlesAndCollapsed)
{
    QStringList titles;
    for (const auto &[title, collapsed] : titlesAndCollapsed) {
        if (collapsed && !title.isNull())
            titles.append(title);
    }
    return titles;
}

QStringList storedTitles(const QVariant &stored, bool *damaged)
{
    bool isDamaged = false;
    QStringList titles;
    switch (stored.typeId()) {
    case QMetaType::UnknownType:
        break;
    case QMetaType::QString:
        titles.append(stored.toString());
        break;
    case QMetaType::QStringList:
        titles = stored.toStringList();
        break;
    case QMetaType::QVariantList: {
        const QVariantList entries = stored.toList();
        for (const QVariant &entry : entries) {
            if (entry.typeId() == QMetaType::QString)
                titles.append(entry.toString());
            else
                isDamaged = true;
        }
        break;
    }
    default:
        isDamaged = true;
        break;
    }
    if (damaged)
        *damaged = isDamaged;
    return titles;
}

} // namespace KQCollapsibleStacking
