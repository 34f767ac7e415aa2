#include "GalleryPage.h"

#include <TarnCommon/KQColorExtensions.h>
#include <TarnCommon/KQColourWheel.h>
#include <TarnCommon/KQMenuExtensions.h>

#include <QtCore/QJsonDocument>
#include <QtGui/QAction>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QGuiApplication>
#include <QtGui/QClipboard>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

namespace {

// The page's menus as data: the menu bar's menus, each with a submenu list.
// Items without a target reach the page's slots along the responder chain.
const char kMenusJson[] =
    "[\n"
    "  {\"title\": \"Palette\", \"submenu\": [\n"
    "    {\"title\": \"12 x 10\", \"action\": \"showShortPalette\", \"keyEquivalent\": \"1\"},\n"
    "    {\"title\": \"12 x 40 (darkened bottom rows)\", \"action\": \"showTallPalette\", \"keyEquivalent\": \"4\"},\n"
    "    {\"title\": \"Dimmed\", \"action\": \"toggleDim\", \"keyEquivalent\": \"D\", \"state\": 0}\n"
    "  ]},\n"
    "  {\"title\": \"Reference\", \"submenu\": [\n"
    "    {\"title\": \"Use the cell under the pointer\", \"action\": \"takeReference\", \"keyEquivalent\": \"r\"},\n"
    "    {\"title\": \"Copy the reference's hex text\", \"action\": \"copyReference\", \"keyEquivalent\": \"c\",\n"
    "     \"toolTip\": \"#RRGGBB of the reference colour\"}\n"
    "  ]}\n"
    "]\n";

QVariantList menusFromJson()
{
    return QJsonDocument::fromJson(QByteArray(kMenusJson)).toVariant().toList();
}

// The tool button repeats the first menu without key equivalents, so that
// no shortcut is claimed twice in the window.
QVariantList withoutKeyEquivalents(const QVariantList &items)
{
    QVariantList result;
    for (const QVariant &item : items) {
        QVariantMap map = item.toMap();
        map.remove(QStringLiteral("keyEquivalent"));
        result.append(map);
    }
    return result;
}

} // namespace

// A palette of Get_RGBColour_for_box cells, each labelled with its hex text
// in the contrasting black or white.
class PaletteGrid : public QWidget
{
    Q_OBJECT

public:
    explicit PaletteGrid(QWidget *parent = nullptr)
        : QWidget(parent)
    {
        setMouseTracking(true);
        setFocusPolicy(Qt::StrongFocus);
        setMinimumSize(12 * 52, 260);
    }

    int rows = 10;
    int columns = 12;
    bool dim = false;
    QPoint hovered{-1, -1}; // column, row from 1
    QPoint reference{1, 1};

    QColor colourAt(QPoint cell) const
    {
        return kq_colorFromRGBColor(Get_RGBColour_for_box(cell.x(), cell.y(), rows, columns, dim ? 1.0 : 0.0));
    }

Q_SIGNALS:
    void hoverChanged();

protected:
    QRectF cellRect(int column, int row) const
    {
        const double w = double(width()) / columns, h = double(height()) / rows;
        return QRectF((column - 1) * w, (row - 1) * h, w, h);
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        QFont small = font();
        small.setPixelSize(rows > 20 ? 8 : 11);
        painter.setFont(small);
        for (int row = 1; row <= rows; ++row) {
            for (int column = 1; column <= columns; ++column) {
                const QRectF r = cellRect(column, row);
                const QColor colour = colourAt({column, row});
                painter.fillRect(r, colour);
                painter.setPen(kq_contrastingBlackOrWhite(colour));
                painter.drawText(r, Qt::AlignCenter, kq_RGBHexString(colour));
                if (QPoint(column, row) == reference)
                    painter.drawRect(r.adjusted(1, 1, -2, -2));
            }
        }
    }

    void mouseMoveEvent(QMouseEvent *event) override
    {
        const QPointF p = event->position();
        hovered = QPoint(qBound(1, int(p.x() * columns / width()) + 1, columns),
                         qBound(1, int(p.y() * rows / height()) + 1, rows));
        Q_EMIT hoverChanged();
    }

    void mousePressEvent(QMouseEvent *event) override
    {
        mouseMoveEvent(event);
        reference = hovered;
        update();
        Q_EMIT hoverChanged();
    }
};

// The page answers the menus' actions; its grid is the first responder.
class ColoursPage : public QWidget
{
    Q_OBJECT

public:
    ColoursPage()
    {
        auto *layout = new QVBoxLayout(this);
        auto *bar = new QMenuBar(this);
        kq_addItemsWithProperties(bar, menusFromJson());
        layout->setMenuBar(bar);

        auto *intro = new QLabel(tr("Hue across, lightness down, a grey column first. Move the pointer over a "
                                    "cell to measure its difference from the reference; click a cell to make it "
                                    "the reference. The menu bar, the context menu and the tool button are built "
                                    "from one JSON property list."),
                                 this);
        intro->setWordWrap(true);
        layout->addWidget(intro);

        m_grid = new PaletteGrid(this);
        layout->addWidget(m_grid, 1);

        auto *row = new QHBoxLayout;
        m_status = new QLabel(this);
        m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto *button = new QToolButton(this);
        button->setText(tr("Palette"));
        button->setPopupMode(QToolButton::InstantPopup);
        const QVariantList paletteItems =
            menusFromJson().constFirst().toMap().value(QStringLiteral("submenu")).toList();
        button->setMenu(kq_menuWithItemProperties(withoutKeyEquivalents(paletteItems), button));
        row->addWidget(m_status, 1);
        row->addWidget(button);
        layout->addLayout(row);

        connect(m_grid, &PaletteGrid::hoverChanged, this, &ColoursPage::showDifference);
        m_grid->setFocus();
        showDifference();
    }

public Q_SLOTS:
    void showShortPalette() { setRows(10); }
    void showTallPalette() { setRows(40); }
    void toggleDim(QAction *sender)
    {
        m_grid->dim = !m_grid->dim;
        sender->setChecked(m_grid->dim);
        m_grid->update();
        showDifference();
    }
    void takeReference()
    {
        if (m_grid->hovered.x() > 0)
            m_grid->reference = m_grid->hovered;
        m_grid->update();
        showDifference();
    }
    void copyReference()
    {
        QGuiApplication::clipboard()->setText(kq_RGBHexString(m_grid->colourAt(m_grid->reference)));
    }

protected:
    void contextMenuEvent(QContextMenuEvent *event) override
    {
        // Built from the same data each time; its items find this page
        // through the menu's owner.
        QMenu *menu = kq_menuWithItemProperties(menusFromJson(), this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(event->globalPos());
    }

private:
    void setRows(int rows)
    {
        m_grid->rows = rows;
        m_grid->hovered = {-1, -1};
        m_grid->reference = {1, 1};
        m_grid->update();
        showDifference();
    }

    void showDifference()
    {
        const QColor reference = m_grid->colourAt(m_grid->reference);
        QString text = tr("Palette %1 x %2%3. Reference %4")
                           .arg(m_grid->columns)
                           .arg(m_grid->rows)
                           .arg(m_grid->dim ? tr(", dimmed") : QString())
                           .arg(kq_RGBHexString(reference));
        if (m_grid->hovered.x() > 0) {
            const QColor hovered = m_grid->colourAt(m_grid->hovered);
            text += tr("; under the pointer %1: difference %2, darkness %3")
                        .arg(kq_RGBHexString(hovered))
                        .arg(q_COLOR_difference_between_NSColors(hovered, reference), 0, 'f', 3)
                        .arg(kq_calibration(hovered), 0, 'f', 3);
        }
        m_status->setText(text);
    }

    PaletteGrid *m_grid = nullptr;
    QLabel *m_status = nullptr;
};

namespace {

QWidget *createPage()
{
    return new ColoursPage;
}

GalleryPage::NamedImages screenshots(QWidget *page)
{
    // The tall palette too, for its darkened bottom rows.
    QMetaObject::invokeMethod(page, "showTallPalette");
    GalleryPage::NamedImages images{{QStringLiteral("tall"), page->grab().toImage()}};
    QMetaObject::invokeMethod(page, "showShortPalette");
    return images;
}

const bool registered = GalleryPages::add({60, QStringLiteral("colours"), QObject::tr("Colours and menus"),
                                           &createPage, &screenshots});

} // namespace

#include "ColoursPage.moc"
