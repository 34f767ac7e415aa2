#pragma once

#include <TarnCommon/KQViewAnimationEntry.h>

#include <QtCore/QVariantAnimation>

// Moves every target from the frame it has when the animation is made to its
// end frame, linearly. A duration of 0 still runs through QVariantAnimation:
// start() then finishes at once, with the end frames applied.
class KQViewAnimation : public QVariantAnimation
{
    Q_OBJECT
public:
    KQViewAnimation(const KQViewAnimations &entries, int durationMs, QObject *parent);

    const KQViewAnimations &viewAnimations() const { return m_entries; }

    // The frame a target has at the given progress (0 = start, 1 = end).
    static QRect interpolatedFrame(const QRectF &start, const QRectF &end, double progress);

protected:
    void updateCurrentValue(const QVariant &value) override;

private:
    KQViewAnimations m_entries;
    QList<QRectF> m_startFrames;
    // Setting the values and the duration already interpolates (and, for a
    // zero duration, jumps to the end); the frames move only once started.
    bool m_configured = false;
};
