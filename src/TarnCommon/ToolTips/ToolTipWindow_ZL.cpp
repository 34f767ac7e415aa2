#include <TarnCommon/ToolTipTextView_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>

#include "ToolTipWindow_ZL_p.h"

#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQRectRules.h>
#include <TarnCommon/KQScreenSpace.h>

#include <QtCore/QLibrary>
#include <QtCore/QVariantAnimation>
#include <QtGui/QBitmap>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtGui/qguiapplication_platform.h>
#include <QtWidgets/QApplication>

#include <cmath>

using namespace KQToolTipRules;

namespace KQToolTipRules {

std::optional<QRectF> ScreenAtPoint(QPointF point, const QList<QRectF> &frames)
{
    for (const QRectF &frame : frames) {
        if (kq_pointInRect(point, frame))
            return frame;
    }
    ZLLogError("No screen found at point {%g, %g}", point.x(), point.y());
    return std::nullopt;
}

QPointF ToolTipWindowOrigin(QPointF p, QSizeF size, const QList<QRectF> &frames, double cursorBelow)
{
    const std::optional<QRectF> screen = ScreenAtPoint(p, frames);
    const QRectF sf = screen.value_or(QRectF(0, 0, 0, 0));
    double y = p.y() - cursorBelow - size.height() - 5.0;
    // Near the bottom of the screen the window goes above the pointer; its
    // top is not checked after that.
    if (kq_minY(sf) > y)
        y = p.y() + 30.0;
    // Right-aligned with the screen when it would overflow it; off every
    // screen there is no right edge to keep to, and it stays at the pointer.
    double x = p.x();
    if (kq_minX(sf) > p.x())
        x = kq_minX(sf);
    else if (screen && x + size.width() > kq_minX(sf) + sf.width())
        x = kq_minX(sf) + sf.width() - size.width();
    return QPointF(x, y);
}

QSizeF ToolTipContentSize(const QRectF &used, QSizeF inset)
{
    return QSizeF(2 * inset.width() + used.x() + used.width(),
                  2 * inset.height() + used.y() + used.height());
}

namespace {

// The X server's resource string (what xrdb loads), empty off X11. Xlib is
// found at run time so the library does not depend on it.
QByteArray xResources()
{
#if QT_CONFIG(xcb)
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    Display *display = x11 ? x11->display() : nullptr;
    if (display == nullptr)
        return QByteArray();
    using ResourceManagerString = char *(*)(Display *);
    static const auto resourceManagerString =
        reinterpret_cast<ResourceManagerString>(QLibrary::resolve(QStringLiteral("X11"), 6, "XResourceManagerString"));
    if (resourceManagerString == nullptr)
        return QByteArray();
    return QByteArray(resourceManagerString(display));
#else
    return QByteArray();
#endif
}

// The value of one "name: value" line of an X resource string.
QByteArray xResource(const QByteArray &resources, const QByteArray &name)
{
    const QList<QByteArray> lines = resources.split('\n');
    for (const QByteArray &line : lines) {
        const int colon = line.indexOf(':');
        if (colon > 0 && line.left(colon).trimmed() == name)
            return line.mid(colon + 1).trimmed();
    }
    return QByteArray();
}

bool isX11()
{
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

} // namespace

double ToolTipStandardCursorReach(int shape, double size)
{
    switch (Qt::CursorShape(shape)) {
    case Qt::BlankCursor:
        return 0.0;
    case Qt::IBeamCursor:
    case Qt::CrossCursor:
    case Qt::WaitCursor:
    case Qt::SizeVerCursor:
    case Qt::SizeHorCursor:
    case Qt::SizeBDiagCursor:
    case Qt::SizeFDiagCursor:
    case Qt::SizeAllCursor:
    case Qt::SplitVCursor:
    case Qt::SplitHCursor:
    case Qt::ForbiddenCursor:
    case Qt::OpenHandCursor:
    case Qt::ClosedHandCursor:
        return size / 2.0;
    default: // the arrows, the pointing hand: the hot spot at the top
        return size;
    }
}

int ToolTipCursorThemeSize(const QByteArray &xcursorSize, const QByteArray &resources, int screenPixels)
{
    bool ok = false;
    int size = xcursorSize.trimmed().toInt(&ok);
    if (ok && size > 0)
        return size;
    size = xResource(resources, "Xcursor.size").toInt(&ok);
    if (ok && size > 0)
        return size;
    const double dpi = xResource(resources, "Xft.dpi").toDouble(&ok);
    if (ok && dpi * 16.0 / 72.0 >= 1.0)
        return int(dpi * 16.0 / 72.0);
    if (screenPixels / 48 > 0)
        return screenPixels / 48;
    return 16;
}

double ToolTipCursorReachBelowHotSpot()
{
    QCursor cursor;
    if (const QCursor *override = QGuiApplication::overrideCursor())
        cursor = *override;
    else if (QWidget *widget = QApplication::widgetAt(QCursor::pos()))
        cursor = widget->cursor();

    QSizeF image;
    if (!cursor.pixmap().isNull())
        image = cursor.pixmap().deviceIndependentSize();
    else if (cursor.shape() == Qt::BitmapCursor && !cursor.bitmap().isNull())
        image = cursor.bitmap().deviceIndependentSize();
    if (!image.isEmpty())
        return image.height() - cursor.hotSpot().y();
    if (cursor.shape() == Qt::BitmapCursor)
        return 0.0;

    // Standard shapes are drawn by the window system from its cursor theme.
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double ratio = screen ? screen->devicePixelRatio() : 1.0;
    int screenPixels = 0;
    QByteArray resources;
    if (isX11()) {
        resources = xResources();
        if (screen) {
            const QSize pixels = screen->virtualSize() * ratio;
            screenPixels = qMin(pixels.width(), pixels.height());
        }
    }
    const int size = ToolTipCursorThemeSize(qgetenv("XCURSOR_SIZE"), resources, screenPixels);
    return ToolTipStandardCursorReach(cursor.shape(), size / ratio);
}

} // namespace KQToolTipRules

class ToolTipWindow_ZLPrivate
{
public:
    explicit ToolTipWindow_ZLPrivate(ToolTipWindow_ZL *q)
        : q(q)
        , textView(new ToolTipTextView_ZL(q))
    {
    }

    void animationDidStop() { animationDidEnd(); }
    void sizeToText(const QRectF &used)
    {
        const QSizeF size = ToolTipContentSize(used, textView->textContainerInset());
        const QSize pixels(int(std::ceil(size.width())), int(std::ceil(size.height())));
        q->resize(pixels);
        textView->setGeometry(QRect(QPoint(0, 0), pixels));
        if (q->isVisible())
            q->update();
    }
    void animationDidEnd() { q->QWidget::hide(); }

    ToolTipWindow_ZL *const q;
    ToolTipTextView_ZL *textView;
    QPointer<QVariantAnimation> fadeOut;
};

ToolTipWindow_ZL::ToolTipWindow_ZL()
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                           | Qt::WindowTransparentForInput | Qt::WindowDoesNotAcceptFocus)
    , d(std::make_unique<ToolTipWindow_ZLPrivate>(this))
{
    setObjectName(QStringLiteral("ToolTipWindow_ZL"));
    resize(100, 100);
    d->textView->setGeometry(0, 0, 100, 100);
    setString(QString(QLatin1String("")), true);
    // Clear around the drawn background; the window system adds the shadow
    // it gives tooltip windows.
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    // Hides with the application.
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state != Qt::ApplicationActive)
            hide(false);
    });
}

ToolTipWindow_ZL::~ToolTipWindow_ZL()
{
    // Hide while still whole: ~QWidget would otherwise hide us after our
    // members are gone, and observers of the hide ask whether we are shown.
    QWidget::hide();
}

QTextDocumentFragment ToolTipWindow_ZL::attributedString() const
{
    return QTextDocumentFragment(d->textView->document());
}

void ToolTipWindow_ZL::setAttributedString(const QTextDocumentFragment &text, bool wrapText)
{
    // A tooltip that changes while fading comes back only through show().
    if (isFading())
        d->animationDidStop();
    d->sizeToText(d->textView->setText(text, wrapText ? wrapWidth : -1.0));
}

void ToolTipWindow_ZL::setString(const QString &text, bool wrapText)
{
    if (isFading())
        d->animationDidStop();
    d->sizeToText(ToolTipSetPlainText_ZL(d->textView, text, wrapText ? wrapWidth : -1.0));
}

void ToolTipWindow_ZL::setVisible(bool visible)
{
    if (isFading())
        d->fadeOut->stop();
    if (visible)
        setWindowOpacity(1.0);
    QWidget::setVisible(visible);
    if (visible)
        raise();
}

bool ToolTipWindow_ZL::isFading() const
{
    return d->fadeOut && d->fadeOut->state() == QAbstractAnimation::Running;
}

bool ToolTipWindow_ZL::isShown() const
{
    return isVisible() && !isFading();
}

ToolTipTextView_ZL *ToolTipWindow_ZL::textView() const
{
    return d->textView;
}

void ToolTipWindow_ZL::positionAtMouseLocation(QPointF point)
{
    QList<QRectF> frames;
    const QList<KQScreenSpace::Screen> screens = KQScreenSpace::screens();
    for (const KQScreenSpace::Screen &screen : screens)
        frames.append(screen.frame);
    const QSizeF size = frameGeometry().size();
    const QPointF origin = ToolTipWindowOrigin(KQScreenSpace::fromGlobal(point), size, frames,
                                               ToolTipCursorReachBelowHotSpot());
    const QRectF global = KQScreenSpace::toGlobal(QRectF(origin, size));
    move(QPoint(int(std::lround(global.x())), int(std::lround(global.y()))));
}

void ToolTipWindow_ZL::hide(bool fade)
{
    if (!isShown())
        return;
    if (!d->fadeOut) {
        d->fadeOut = new QVariantAnimation(this);
        d->fadeOut->setStartValue(1.0);
        d->fadeOut->setEndValue(0.0);
        d->fadeOut->setDuration(fadeDuration);
        connect(d->fadeOut, &QVariantAnimation::valueChanged, this,
                [this](const QVariant &value) { setWindowOpacity(value.toDouble()); });
        connect(d->fadeOut, &QAbstractAnimation::finished, this, [this] { d->animationDidEnd(); });
    }
    if (!fade) {
        d->animationDidEnd();
        return;
    }
    d->fadeOut->start();
}
