#include "GalleryPage.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/ZLWrapVerticalScrollViewAroundView.h>

#include <QtCore/QCoreApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSlider>
#include <QtWidgets/QVBoxLayout>

#include <algorithm>
#include <functional>

namespace {

const QString AutosaveName = QStringLiteral("GalleryInspectorSections");
constexpr int PanelWidth = 280;

QWidget *sized(QWidget *content, int height)
{
    content->resize(PanelWidth, height);
    return content;
}

QWidget *makeDocumentSection()
{
    auto *content = new QWidget;
    auto *form = new QFormLayout(content);
    form->setContentsMargins(8, 6, 8, 6);
    form->addRow(QObject::tr("Name:"), new QLineEdit(QObject::tr("Harbour chart")));
    form->addRow(QObject::tr("Kind:"), new QLabel(QObject::tr("Vector drawing")));
    form->addRow(QObject::tr("Modified:"), new QLabel(QObject::tr("yesterday, 17:42")));
    return sized(content, 92);
}

QWidget *makeToolStrip()
{
    auto *content = new QWidget;
    auto *row = new QHBoxLayout(content);
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(new QLabel(QObject::tr("Opacity")));
    auto *slider = new QSlider(Qt::Horizontal);
    slider->setValue(80);
    row->addWidget(slider, 1);
    row->addWidget(new QCheckBox(QObject::tr("Locked")));
    return sized(content, 34);
}

QWidget *makeLayersSection()
{
    auto *layers = new QListWidget;
    layers->addItems({QObject::tr("Soundings"), QObject::tr("Buoys"), QObject::tr("Coastline"),
                      QObject::tr("Shipping lanes"), QObject::tr("Grid")});
    return sized(layers, 110);
}

QWidget *makeNotesSection()
{
    auto *notes = new QPlainTextEdit;
    notes->setPlainText(QObject::tr("Resizable sections share the spare height: the first one in the list takes "
                                    "what it can, the next one the rest.\n\nCollapse a section with its arrow; "
                                    "which sections are collapsed is kept under the autosave name and comes back "
                                    "when the gallery starts again."));
    return sized(notes, 120);
}

QString storedText()
{
    const QVariant stored = KQSettings::userDefaults()->value(AutosaveName);
    const QStringList titles = stored.toStringList();
    return QObject::tr("Stored under \u201c%1\u201d: %2")
        .arg(AutosaveName, titles.isEmpty() ? QObject::tr("(no collapsed section)") : titles.join(QStringLiteral(", ")));
}

QWidget *createCollapsiblePage()
{
    auto *page = new QWidget;
    auto *layout = new QHBoxLayout(page);

    const QList<KQCollapsibleView *> sections{
        new KQCollapsibleView(QObject::tr("Document"), makeDocumentSection(), false, false),
        new KQCollapsibleView(QString(), makeToolStrip(), true, false),
        new KQCollapsibleView(QObject::tr("Layers"), makeLayersSection(), true, true),
        new KQCollapsibleView(QObject::tr("Notes"), makeNotesSection(), true, true)};
    QList<std::pair<QPointer<KQCollapsibleView>, int>> naturalHeights;
    auto *list = new KQCollapsibleListView;
    for (KQCollapsibleView *section : sections) {
        naturalHeights.append({section, section->height()});
        list->addCollapsableView(section);
    }
    // The list grows only to its sections' minimum while they are added,
    // which squeezes the resizable ones to their headers; give them back
    // their natural heights before the list is stacked at full height.
    int naturalHeight = 0;
    for (const auto &[view, natural] : naturalHeights) {
        view->setFrame(QRect(view->pos(), QSize(view->width(), natural)));
        naturalHeight += natural;
    }
    list->setFrame(QRect(0, 0, PanelWidth, naturalHeight));
    list->setAutosaveName(AutosaveName);

    QScrollArea *scrollArea = ZLWrapVerticalScrollViewAroundView(list);
    scrollArea->setParent(page);
    scrollArea->setFixedWidth(PanelWidth + scrollArea->verticalScrollBar()->sizeHint().width());
    layout->addWidget(scrollArea);

    // The panel fills the visible height when that is more than its sections
    // need at their natural heights; otherwise it keeps those heights and
    // scrolls. The expanded resizable sections are given their natural
    // heights back first: the list gives spare height, and takes a
    // shortfall, from the first of them only, so after a collapse and an
    // expansion Layers would otherwise end squeezed to its header.
    auto fitToViewport = [list, scrollArea, naturalHeights] {
        if (list->isLayoutBlocked())
            return;
        int floor = 0;
        for (const auto &[view, natural] : naturalHeights) {
            if (!view || (view->isHidden() && view->testAttribute(Qt::WA_WState_ExplicitShowHide)))
                continue;
            if (view->isHeightResizable() && !view->isCollapsed())
                view->setFrame(QRect(view->pos(), QSize(view->width(), natural)));
            floor += view->height();
        }
        // The width follows the scroll area by itself; the list keeps its
        // height within what its sections allow.
        list->setFrame(QRect(list->pos(), QSize(list->width(), std::max(scrollArea->viewport()->height(), floor))));
    };
    // After a collapse or expansion, once its animation is over.
    QObject::connect(list, &KQCollapsibleListView::layoutBlockedChanged, page, [fitToViewport](bool blocked) {
        if (!blocked)
            fitToViewport();
    });
    struct ResizeWatcher : QObject
    {
        using QObject::QObject;
        std::function<void()> onResize;
        bool eventFilter(QObject *, QEvent *event) override
        {
            if (event->type() == QEvent::Resize)
                onResize();
            return false;
        }
    };
    auto *watcher = new ResizeWatcher(page);
    watcher->onResize = fitToViewport;
    scrollArea->viewport()->installEventFilter(watcher);

    auto *side = new QVBoxLayout;
    auto *explanation = new QLabel(
        QObject::tr("<p>An inspector-like panel: a <b>KQCollapsibleListView</b> of four "
                    "<b>KQCollapsibleView</b> sections inside <tt>ZLWrapVerticalScrollViewAroundView</tt>.</p>"
                    "<ul><li><i>Document</i> cannot collapse (no arrow, title at x = 3);</li>"
                    "<li>the opacity strip has no title, hence no header;</li>"
                    "<li><i>Layers</i> and <i>Notes</i> are resizable and share the spare height.</li></ul>"
                    "<p>Collapsing animates the section and slides the ones below it. The collapsed "
                    "titles are saved when the gallery quits and restored when it starts.</p>"),
        page);
    explanation->setWordWrap(true);
    side->addWidget(explanation);

    auto *status = new QLabel(storedText(), page);
    status->setWordWrap(true);
    auto *saveButton = new QPushButton(QObject::tr("Save now"), page);
    QObject::connect(saveButton, &QPushButton::clicked, page, [list, status] {
        list->saveToAutosaveName();
        status->setText(storedText());
    });
    auto *hideNotes = new QCheckBox(QObject::tr("Hide the Notes section"), page);
    QObject::connect(hideNotes, &QCheckBox::toggled, page, [list, fitToViewport](bool hidden) {
        list->setHiddenForCollapsableView(hidden, list->collapsableViews().last());
        fitToViewport();
    });

    side->addWidget(hideNotes);
    side->addWidget(saveButton, 0, Qt::AlignLeft);
    side->addWidget(status);
    side->addStretch(1);
    layout->addLayout(side, 1);
    return page;
}

// The panel once more with Layers collapsed (without animation), then back
// as it was, so the saved state is not disturbed.
GalleryPage::NamedImages layersCollapsed(QWidget *page)
{
    auto *list = page->findChild<KQCollapsibleListView *>();
    auto *scrollArea = page->findChild<QScrollArea *>();
    if (!list || !scrollArea || list->collapsableViews().size() < 3)
        return {};
    KQCollapsibleView *layers = list->collapsableViews().at(2);
    const bool wasCollapsed = layers->isCollapsed();
    layers->setCollapsed(true, false);
    QCoreApplication::sendPostedEvents();
    const QImage image = scrollArea->grab().toImage();
    layers->setCollapsed(wasCollapsed, false);
    return {{QStringLiteral("collapsible-layers-collapsed"), image}};
}

const bool registered = GalleryPages::add({30, QStringLiteral("collapsible"), QObject::tr("Collapsible views"),
                                           &createCollapsiblePage, &layersCollapsed});

} // namespace
