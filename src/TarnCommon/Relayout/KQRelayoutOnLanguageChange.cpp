#include <TarnCommon/KQRelayoutOnLanguageChange.h>

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/Relayout_ZL.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QWidget>

#include <utility>
#include <vector>

class KQRelayoutOnLanguageChangePrivate
{
public:
    QPointer<QWidget> window;
    std::vector<std::pair<QPointer<QWidget>, QRect>> frames; // every descendant, as designed
    QSize windowSize;
    QStringList texts; // the translatable texts the design was drawn for
    bool queued = false;

    QStringList currentTexts() const;
};

// What a translation changes: titles, captions, items and placeholders,
// never what the user typed.
QStringList KQRelayoutOnLanguageChangePrivate::currentTexts() const
{
    QStringList list;
    if (!window)
        return list;
    list.append(window->windowTitle());
    for (QWidget *w : window->findChildren<QWidget *>()) {
        if (auto *button = qobject_cast<QAbstractButton *>(w))
            list.append(button->text());
        else if (auto *label = qobject_cast<QLabel *>(w))
            list.append(label->text());
        else if (auto *box = qobject_cast<QGroupBox *>(w))
            list.append(box->title());
        else if (auto *edit = qobject_cast<QLineEdit *>(w))
            list.append(edit->placeholderText());
        else if (auto *combo = qobject_cast<QComboBox *>(w)) {
            for (int i = 0; i < combo->count(); ++i)
                list.append(combo->itemText(i));
        }
    }
    return list;
}

KQRelayoutOnLanguageChange::KQRelayoutOnLanguageChange(QWidget *window)
    : QObject(window ? window->window() : nullptr)
    , d(std::make_unique<KQRelayoutOnLanguageChangePrivate>())
{
    KQAssert(window != nullptr);
    d->window = window->window();
    d->window->installEventFilter(this);
    keepDesignedGeometry();
}

KQRelayoutOnLanguageChange::~KQRelayoutOnLanguageChange() = default;

QWidget *KQRelayoutOnLanguageChange::window() const
{
    return d->window;
}

void KQRelayoutOnLanguageChange::keepDesignedGeometry()
{
    d->frames.clear();
    if (!d->window)
        return;
    d->windowSize = d->window->size();
    for (QWidget *w : d->window->findChildren<QWidget *>()) {
        if (!w->isWindow())
            d->frames.emplace_back(w, w->geometry());
    }
    d->texts = d->currentTexts();
}

void KQRelayoutOnLanguageChange::restoreDesignedGeometry()
{
    if (!d->window)
        return;
    for (const auto &[widget, frame] : d->frames) {
        if (widget && widget->geometry() != frame)
            widget->setGeometry(frame);
    }
    d->window->resize(d->windowSize);
}

void KQRelayoutOnLanguageChange::relayoutNow()
{
    d->queued = false;
    if (!d->window)
        return;
    restoreDesignedGeometry();
    // In the language it was drawn for, the design itself is the layout.
    if (d->currentTexts() != d->texts)
        f_relayout(d->window);
    Q_EMIT relayouted();
}

bool KQRelayoutOnLanguageChange::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == d->window && event->type() == QEvent::LanguageChange && !d->queued) {
        // The window retranslates when this event reaches it, and its
        // children get their own events after it: run once all are through.
        d->queued = true;
        QMetaObject::invokeMethod(this, &KQRelayoutOnLanguageChange::relayoutNow, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}
