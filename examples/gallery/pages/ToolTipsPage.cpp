// Computed tooltips: a swatch grid and a tool-bar gauge that work out their
// tooltip for the exact point under the pointer, plain or rich.
#include "GalleryPage.h"

#include <TarnCommon/KQAfterEvent.h>
#include <TarnCommon/KQApplication.h>
#include <TarnCommon/ToolTipController_ZL.h>
#include <TarnCommon/ToolTipWindow_ZL.h>
#include <TarnCommon/ToolTipping_ZL.h>

#include <QtGui/QPainter>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QVBoxLayout>

#include <array>
#include <optional>

namespace {

struct Swatch
{
    const char *name;
    QRgb colour;
    const char *note; // a longer remark shown as rich text; empty for plain
};

constexpr std::array<Swatch, 16> swatches{{
    {"Ivory", 0xfffff0, ""},
    {"Saffron", 0xf4c430, "The dried stigma of a crocus; <i>the</i> costliest spice by weight."},
    {"Vermilion", 0xe34234, ""},
    {"Carmine", 0x960018, "Made from cochineal insects."},
    {"Teal", 0x008080, ""},
    {"Cerulean", 0x007ba7, "From the Latin <i>caeruleus</i>, dark blue."},
    {"Ultramarine", 0x3f00ff, "Once ground from lapis lazuli brought from beyond the sea."},
    {"Indigo", 0x4b0082, ""},
    {"Chartreuse", 0x7fff00, "Named after a French liqueur."},
    {"Olive", 0x808000, ""},
    {"Sienna", 0x882d17, "An earth pigment from Tuscany, raw or burnt."},
    {"Umber", 0x635147, ""},
    {"Slate", 0x708090, ""},
    {"Charcoal", 0x36454f, "Burnt wood: the oldest black."},
    {"Pearl", 0xeae0c8, ""},
    {"Jet", 0x343434, ""},
}};

// A 4 x 4 grid of swatches. Plain swatches answer "Name #rrggbb" on one line;
// annotated ones answer rich text that wraps; the gaps answer nothing.
class SwatchGrid : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    static constexpr int columns = 4;
    static constexpr int cell = 64;   // swatch and gap
    static constexpr int gap = 12;

    explicit SwatchGrid(QWidget *parent = nullptr)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("swatchGrid"));
        setFixedSize(columns * cell + gap, int(swatches.size() / columns) * cell + gap);
    }

    static QRect swatchRect(int index)
    {
        return QRect(gap + (index % columns) * cell, gap + (index / columns) * cell, cell - gap, cell - gap);
    }

    std::optional<int> swatchAt(QPointF point) const
    {
        for (int i = 0; i < int(swatches.size()); ++i) {
            const QRectF r(swatchRect(i));
            if (point.x() >= r.left() && point.x() < r.left() + r.width() && point.y() >= r.top()
                && point.y() < r.top() + r.height())
                return i;
        }
        return std::nullopt;
    }

    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override
    {
        const std::optional<int> index = swatchAt(point);
        if (!index)
            return QVariant();
        const Swatch &s = swatches[size_t(*index)];
        const QString hex = QColor(s.colour).name();
        if (*s.note == '\0') {
            *wrapText = false;
            return QStringLiteral("%1 %2").arg(QLatin1String(s.name), hex);
        }
        return QVariant::fromValue(QTextDocumentFragment::fromHtml(
            QStringLiteral("<b>%1</b> <span style='color:%2'>&#9632;</span> %2<br>%3")
                .arg(QLatin1String(s.name), hex, QString::fromUtf8(s.note))));
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int i = 0; i < int(swatches.size()); ++i) {
            painter.setPen(QPen(palette().color(QPalette::Mid), 1));
            painter.setBrush(QColor(swatches[size_t(i)].colour));
            painter.drawRoundedRect(QRectF(swatchRect(i)).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
            if (*swatches[size_t(i)].note != '\0') { // a corner mark for the annotated ones
                painter.setBrush(Qt::white);
                painter.drawEllipse(QRectF(swatchRect(i).topRight() + QPointF(-12, 4), QSizeF(8, 8)));
            }
        }
    }
};

// A zoom gauge for the tool bar: its tooltip is the zoom under the pointer.
class ZoomGauge : public QWidget, public ToolTipping_ZL
{
    Q_OBJECT
    Q_INTERFACES(ToolTipping_ZL)
public:
    explicit ZoomGauge(QWidget *parent = nullptr)
        : QWidget(parent)
    {
        setObjectName(QStringLiteral("zoomGauge"));
        setFixedSize(160, 22);
    }

    QVariant toolTipAtPoint(QPointF point, bool *wrapText) override
    {
        *wrapText = false;
        const int percent = 25 + int(point.x() / width() * 375.0) / 25 * 25;
        return tr("Zoom to %1 %").arg(percent);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        const QRectF r = QRectF(rect()).adjusted(0.5, 4.5, -0.5, -4.5);
        QLinearGradient gradient(r.topLeft(), r.topRight());
        gradient.setColorAt(0, palette().color(QPalette::Base));
        gradient.setColorAt(1, palette().color(QPalette::Highlight));
        painter.setBrush(gradient);
        painter.setPen(palette().color(QPalette::Mid));
        painter.drawRect(r);
        for (int tick = 1; tick < 15; ++tick) {
            const double x = r.left() + r.width() * tick / 15.0;
            painter.drawLine(QPointF(x, r.bottom() - 3), QPointF(x, r.bottom()));
        }
    }
};

QWidget *createPage()
{
    ToolTipController_ZL::sharedToolTipController()->startup();

    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);

    auto *toolBar = new QToolBar(page);
    toolBar->setObjectName(QStringLiteral("toolTipsToolBar"));
    toolBar->addAction(QObject::tr("Fit"));
    toolBar->addAction(QObject::tr("Actual size"));
    toolBar->addSeparator();
    toolBar->addWidget(new ZoomGauge(toolBar));
    layout->addWidget(toolBar);

    auto *intro = new QLabel(QObject::tr("Rest the pointer on a swatch or on the zoom gauge for a second. "
                                         "Plain swatches answer one unwrapped line, the ones with a white mark "
                                         "answer rich text that wraps. A key or a click hides the tooltip at "
                                         "once; leaving the swatches fades it after a second."),
                             page);
    intro->setWordWrap(true);
    layout->addWidget(intro);

    const bool posting = qobject_cast<KQApplication *>(qApp) != nullptr;
    auto *status = new QLabel(posting ? QObject::tr("The application is a KQApplication: events are posted.")
                                      : QObject::tr("The application posts no NOTIFICATION__After_Event_Sent: "
                                                    "no tooltip will appear."),
                              page);
    layout->addWidget(status);

    layout->addWidget(new SwatchGrid(page));
    layout->addStretch();
    return page;
}

// The tooltip of an annotated swatch drawn over the page, as it shows on screen.
GalleryPage::NamedImages screenshots(QWidget *page)
{
    auto *grid = page->findChild<SwatchGrid *>();
    if (grid == nullptr)
        return {};
    const int index = 5;
    const QPoint pointer = grid->swatchRect(index).center();
    bool wrap = true;
    const QVariant answer = grid->toolTipAtPoint(pointer, &wrap);
    ToolTipWindow_ZL tip;
    tip.setAttributedString(answer.value<QTextDocumentFragment>(), wrap);
    QImage tipImage(tip.size(), QImage::Format_ARGB32_Premultiplied);
    tipImage.fill(Qt::transparent);
    tip.render(&tipImage, QPoint(), QRegion(), QWidget::DrawChildren);

    QImage composed = page->grab().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&composed);
    // Where the window goes: 5 below a 16-point arrow cursor.
    painter.drawImage(grid->mapTo(page, pointer) + QPoint(0, 16 + 5), tipImage);
    painter.end();
    return {{QStringLiteral("tooltip-over-swatch"), composed}, {QStringLiteral("tooltip-window"), tipImage}};
}

const bool registered =
    GalleryPages::add({40, QStringLiteral("tooltips"), QObject::tr("Tooltips"), &createPage, &screenshots});

} // namespace

#include "ToolTipsPage.moc"
