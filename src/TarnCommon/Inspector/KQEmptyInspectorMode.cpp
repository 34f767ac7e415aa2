#include <TarnCommon/KQEmptyInspectorMode.h>

#include <TarnCommon/KQGeometry.h>
#include <TarnCommon/KQImageDrawing.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextFrame>
#include <QtWidgets/QTextEdit>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

QIcon kq_documentIconOfWindow(const QWidget *window)
{
    if (!window || window->window()->windowFilePath().isEmpty())
        return QIcon();
    return window->window()->windowIcon();
}

namespace {

// The title as the window shows it: the modification marker placeholder is
// not part of it.
QString displayedTitle(const QWidget *window)
{
    QString title = window->windowTitle();
    title.replace(QLatin1String("[*]"), window->isWindowModified() ? QStringLiteral("*") : QString());
    return title;
}

// The text sits 20 points below the top and above the bottom, flush with the
// sides.
void applyTextContainerInset(QTextDocument *document)
{
    document->setDocumentMargin(0);
    QTextFrameFormat inset = document->rootFrame()->frameFormat();
    inset.setTopMargin(20);
    inset.setBottomMargin(20);
    inset.setLeftMargin(0);
    inset.setRightMargin(0);
    document->rootFrame()->setFrameFormat(inset);
}

// Calls back when the application's language changes, so the text is shown
// in the new one.
class LanguageChangeWatcher : public QObject
{
public:
    LanguageChangeWatcher(std::function<void()> changed, QObject *parent)
        : QObject(parent)
        , m_changed(std::move(changed))
    {
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::LanguageChange)
            m_changed();
        return false;
    }

private:
    std::function<void()> m_changed;
};

} // namespace

class KQEmptyInspectorModePrivate
{
public:
    explicit KQEmptyInspectorModePrivate(QWidget *window)
        : window(window)
    {
    }

    void stopTimer();
    void armTimer(double now);

    QPointer<QWidget> window;
    QPointer<QTimer> timer;
    QPointer<QTextEdit> textView;
    QString lastWindowTitle;
    KQEmptyInspectorMode::Clock clock = &Secs;
    double nextRefresh = 0;
};

KQEmptyInspectorMode::KQEmptyInspectorMode(QWidget *focusedWindow, QObject *parent)
    : KQInspectorMode(parent)
    , d(std::make_unique<KQEmptyInspectorModePrivate>(focusedWindow))
{
}

KQEmptyInspectorMode::~KQEmptyInspectorMode()
{
    d->stopTimer();
}

QWidget *KQEmptyInspectorMode::focusedWindow() const
{
    return d->window.data();
}

QTextEdit *KQEmptyInspectorMode::textView() const
{
    return d->textView.data();
}

QTimer *KQEmptyInspectorMode::refreshTimer() const
{
    return d->timer.data();
}

QString KQEmptyInspectorMode::lastWindowTitle() const
{
    return d->lastWindowTitle;
}

QSizeF KQEmptyInspectorMode::minSize() const
{
    return QSizeF(50, 50);
}

QSizeF KQEmptyInspectorMode::maxSize() const
{
    const double largest = std::numeric_limits<double>::max();
    return QSizeF(largest, largest);
}

void KQEmptyInspectorMode::setClock(Clock clock)
{
    d->clock = clock ? std::move(clock) : Clock(&Secs);
    // Readings of two clocks cannot be compared: a running period restarts.
    if (d->timer) {
        const double now = d->clock();
        d->nextRefresh = now + refreshInterval;
        d->armTimer(now);
    }
}

void KQEmptyInspectorMode::modeWillShow()
{
    d->stopTimer();
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, &KQEmptyInspectorMode::poll);
    d->timer = timer;
    const double now = d->clock();
    d->nextRefresh = now + refreshInterval;
    d->armTimer(now);
    update(); // built at once, not two seconds later
}

void KQEmptyInspectorMode::modeWasHidden()
{
    d->stopTimer();
}

void KQEmptyInspectorMode::poll()
{
    if (!d->timer)
        return;
    const double now = d->clock();
    if (now >= d->nextRefresh) {
        d->nextRefresh = now + refreshInterval;
        update();
    }
    if (d->timer)
        d->armTimer(now);
}

// The timer is only a wake-up call: it is set for the time left on the clock,
// so a timer that fires early (Qt's coarse timers may) just waits again.
void KQEmptyInspectorModePrivate::armTimer(double now)
{
    const double interval = KQEmptyInspectorMode::refreshInterval;
    const double remaining = std::clamp(nextRefresh - now, 0.0, interval);
    timer->start(int(std::ceil(remaining * 1000)));
}

void KQEmptyInspectorModePrivate::stopTimer()
{
    delete timer.data();
    timer = nullptr;
}

void KQEmptyInspectorMode::loadView()
{
    if (!d->textView) {
        auto *textView = new QTextEdit;
        textView->setGeometry(0, 0, 0, 0);
        textView->setFrameShape(QFrame::NoFrame);
        textView->viewport()->setAutoFillBackground(false);
        textView->setAutoFillBackground(false);
        textView->setReadOnly(true);
        textView->setTextInteractionFlags(Qt::NoTextInteraction);
        textView->setFocusPolicy(Qt::NoFocus);
        textView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        textView->installEventFilter(new LanguageChangeWatcher(
            [this] {
                d->lastWindowTitle.clear();
                update();
            },
            textView));
        d->textView = textView;
    }
    setView(d->textView.data());
}

void KQEmptyInspectorMode::update()
{
    QString title = d->window ? displayedTitle(d->window.data()) : QString();
    if (title.isEmpty())
        title = QStringLiteral("?");
    if (title == d->lastWindowTitle)
        return;
    d->lastWindowTitle = title;
    if (!d->textView)
        view();

    QTextDocument *document = d->textView->document();
    document->clear();
    applyTextContainerInset(document);
    QTextCursor cursor(document);
    cursor.insertText(QCoreApplication::translate("TarnCommon", "Inspector not available for window:"));
    cursor.insertText(QStringLiteral("\n"));
    double baselineOffset = 0.0;
    const QIcon icon = kq_documentIconOfWindow(d->window.data());
    if (!icon.isNull()) {
        const QImage image = icon.pixmap(documentIconSize, documentIconSize)
                                 .toImage()
                                 .scaled(documentIconSize, documentIconSize, Qt::IgnoreAspectRatio,
                                         Qt::SmoothTransformation);
        cursor.insertFragment(q_IMAGE_attributed_string_from_image(image));
        cursor.insertText(QStringLiteral(" "), QTextCharFormat());
        baselineOffset = titleBaselineOffset;
    }
    QTextCharFormat titleFormat;
    titleFormat.setProperty(BaselineOffsetProperty, baselineOffset);
    if (baselineOffset != 0.0) {
        // Qt raises text by a percentage of the font's height.
        const QFontMetricsF metrics(d->textView->font());
        titleFormat.setBaselineOffset(100.0 * baselineOffset / metrics.height());
    }
    cursor.insertText(title, titleFormat);

    QTextCursor all(document);
    all.select(QTextCursor::Document);
    QTextBlockFormat centred;
    centred.setAlignment(Qt::AlignHCenter);
    all.mergeBlockFormat(centred);
}
