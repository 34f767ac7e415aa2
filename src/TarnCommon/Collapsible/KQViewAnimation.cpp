#include "KQViewAnimation_p.h"

#include <TarnCommon/KQCollapsibleListView.h>

namespace {

// The collapsible widgets lay out with every frame, shown or not (Qt gives
// hidden widgets no resize event); the list also skips its clamp while the
// animation it takes part in runs.
void applyFrame(QWidget *target, const QRect &frame)
{
    if (auto *list = qobject_cast<KQCollapsibleListView *>(target))
        list->setFrame(frame);
    else if (auto *view = qobject_cast<KQCollapsibleView *>(target))
        view->setFrame(frame);
    else
        target->setGeometry(frame);
}

} // namespace

KQViewAnimation::KQViewAnimation(const KQViewAnimations &entries, int durationMs, QObject *parent)
    : QVariantAnimation(parent)
    , m_entries(entries)
{
    m_startFrames.reserve(m_entries.size());
    for (const KQViewAnimationEntry &entry : m_entries)
        m_startFrames.append(entry.target ? QRectF(entry.target->geometry()) : entry.endFrame);
    setStartValue(0.0);
    setEndValue(1.0);
    setDuration(durationMs);
    m_configured = true;
}

QRect KQViewAnimation::interpolatedFrame(const QRectF &start, const QRectF &end, double progress)
{
    const auto mix = [progress](double a, double b) { return a + (b - a) * progress; };
    return QRectF(mix(start.x(), end.x()), mix(start.y(), end.y()), mix(start.width(), end.width()),
                  mix(start.height(), end.height()))
        .toRect();
}

void KQViewAnimation::updateCurrentValue(const QVariant &value)
{
    if (!m_configured)
        return;
    const double progress = value.toDouble();
    for (qsizetype i = 0; i < m_entries.size(); ++i) {
        QWidget *target = m_entries.at(i).target;
        if (target)
            applyFrame(target, interpolatedFrame(m_startFrames.at(i), m_entries.at(i).endFrame, progress));
    }
}
