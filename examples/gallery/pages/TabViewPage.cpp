// The icon tab view: four tabs with tooltips, hiding, showing and replacing
// tabs by tag, and the accessibility groups for UI tests.
#include "DrawnIcon.h"
#include "GalleryPage.h"

#include <TarnCommon/KQAccessibility.h>
#include <TarnCommon/KQSettings.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>

#include <QtGui/QHelpEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>
#include <QtWidgets/QVBoxLayout>

#include <cmath>

namespace {

const QString kAutomationKey = QStringLiteral("enableScriptingAutomationTesting");

enum Shape { Circle = 1, Square, Triangle, Star };

QPainterPath shapePath(Shape shape)
{
    // In a 16 x 16 box.
    QPainterPath path;
    switch (shape) {
    case Circle:
        path.addEllipse(QRectF(1.5, 1.5, 13, 13));
        break;
    case Square:
        path.addRoundedRect(QRectF(2, 2, 12, 12), 2, 2);
        break;
    case Triangle:
        path.moveTo(8, 1.5);
        path.lineTo(14.5, 14);
        path.lineTo(1.5, 14);
        path.closeSubpath();
        break;
    case Star:
        for (int i = 0; i < 10; ++i) {
            const double radius = i % 2 ? 3.2 : 7.2;
            const double angle = -M_PI / 2 + i * M_PI / 5;
            const QPointF point(8 + radius * std::cos(angle), 8.3 + radius * std::sin(angle));
            i ? path.lineTo(point) : path.moveTo(point);
        }
        path.closeSubpath();
        break;
    }
    return path;
}

QIcon shapeIcon(Shape shape, const QColor &color)
{
    return drawnIcon([&](QPainter &painter) {
        painter.setPen(QPen(color.darker(150), 1.0));
        painter.setBrush(color);
        painter.drawPath(shapePath(shape));
    });
}

// Reports every selection change under the tab view.
class SelectionReporter : public QObject, public KQTabViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(KQTabViewDelegate)
public:
    SelectionReporter(QLabel *label, QObject *parent)
        : QObject(parent)
        , m_label(label)
    {
    }

    void tabViewWillChangeToTab(KQTabView *, KQTab *, KQTab *) override {}
    void tabViewDidChangeToTab(KQTabView *, KQTab *toTab, KQTab *fromTab) override
    {
        if (!m_label)
            return;
        const auto name = [](KQTab *tab) { return tab ? tab->iconTooltip() : QObject::tr("nothing"); };
        m_label->setText(QObject::tr("Selected %1 (was %2)").arg(name(toTab), name(fromTab)));
    }

private:
    QPointer<QLabel> m_label;
};

// Shows the tab view's computed tooltips with Qt's own tooltip window.
class ToolTipShower : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *tipping = qobject_cast<ToolTipping_ZL *>(watched);
        if (event->type() != QEvent::ToolTip || !tipping)
            return QObject::eventFilter(watched, event);
        auto *help = static_cast<QHelpEvent *>(event);
        bool wrap = true;
        const QVariant tip = tipping->toolTipAtPoint(help->pos(), &wrap);
        if (tip.isValid())
            QToolTip::showText(help->globalPos(), tip.toString(), qobject_cast<QWidget *>(watched));
        else
            QToolTip::hideText();
        return true;
    }
};

QWidget *makeContent(const QString &title, const QString &text)
{
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->addWidget(new QLabel(QStringLiteral("<h3>%1</h3>").arg(title.toHtmlEscaped()), content));
    auto *body = new QLabel(text, content);
    body->setWordWrap(true);
    layout->addWidget(body);
    layout->addStretch();
    return content;
}

QWidget *createTabViewPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *intro = new QLabel(QObject::tr("Click an icon to choose a tab; press and drag across the bar and the "
                                         "pressed look follows the pointer, the release selects. Hover an icon "
                                         "for its tooltip."),
                             page);
    intro->setWordWrap(true);
    layout->addWidget(intro);

    auto *tabView = new KQTabView(page);
    tabView->setObjectName(QStringLiteral("galleryTabView"));
    struct Entry
    {
        Shape shape;
        QString name;
        QColor color;
        QString text;
    };
    const QList<Entry> entries{
        {Circle, QObject::tr("Circle"), QColor(0x2f, 0x80, 0xed), QObject::tr("The first tab: selected when the tabs are set.")},
        {Square, QObject::tr("Square"), QColor(0x27, 0xae, 0x60), QObject::tr("Its name field takes the focus when the tab is installed.")},
        {Triangle, QObject::tr("Triangle"), QColor(0xf2, 0x99, 0x4a), QObject::tr("Hide it and the first visible tab takes over.")},
        {Star, QObject::tr("Star"), QColor(0xeb, 0x57, 0x57), QObject::tr("The last tab; replace another with it.")},
    };
    QList<KQTab *> tabs;
    for (const Entry &entry : entries) {
        auto *tab = new KQTab(tabView);
        tab->setTag(entry.shape);
        tab->setIcon(shapeIcon(entry.shape, entry.color));
        tab->setIconTooltip(entry.name);
        QWidget *content = makeContent(entry.name, entry.text);
        if (entry.shape == Square) {
            auto *field = new QLineEdit(content);
            field->setPlaceholderText(QObject::tr("Name"));
            content->layout()->addWidget(field);
            tab->setInitialFirstResponder(field);
        }
        content->setParent(tabView);
        content->hide();
        tab->setView(content);
        tabs << tab;
    }
    auto *status = new QLabel(page);
    tabView->setDelegate(new SelectionReporter(status, tabView));
    tabView->installEventFilter(new ToolTipShower(tabView));
    tabView->setTabs(tabs);
    layout->addWidget(tabView, 1);
    layout->addWidget(status);

    auto *controls = new QHBoxLayout;
    auto *which = new QComboBox(page);
    auto *replacement = new QComboBox(page);
    for (const Entry &entry : entries) {
        which->addItem(shapeIcon(entry.shape, entry.color), entry.name, int(entry.shape));
        replacement->addItem(entry.name, int(entry.shape));
    }
    replacement->setCurrentIndex(3);
    auto *hide = new QPushButton(QObject::tr("Hide"), page);
    auto *show = new QPushButton(QObject::tr("Show"), page);
    auto *replace = new QPushButton(QObject::tr("Replace with"), page);
    const QPointer<KQTabView> view(tabView);
    QObject::connect(hide, &QPushButton::clicked, page, [view, which] {
        if (view)
            view->hideTab(which->currentData().toInt());
    });
    QObject::connect(show, &QPushButton::clicked, page, [view, which] {
        // Back near its original place, as far as the visible tabs allow.
        if (view)
            view->showTab(which->currentData().toInt(), std::min<qsizetype>(which->currentIndex(), view->tabs().size()));
    });
    QObject::connect(replace, &QPushButton::clicked, page, [view, which, replacement, status] {
        if (!view)
            return;
        // Where the selected tab sits, kept inside the bar; 0 when the bar is
        // empty (a hidden tab may still come back there).
        const qsizetype selected = view->tabs().indexOf(view->selectedTab());
        const qsizetype position = std::max<qsizetype>(0, std::min<qsizetype>(selected, view->tabs().size() - 1));
        const bool found = view->replaceTab(which->currentData().toInt(), replacement->currentData().toInt(), position);
        if (!found)
            status->setText(QObject::tr("Nothing replaced: the new tab is already there"));
    });
    controls->addWidget(which);
    controls->addWidget(hide);
    controls->addWidget(show);
    controls->addWidget(replace);
    controls->addWidget(replacement);
    controls->addStretch();
    layout->addLayout(controls);

    const bool automation = KQAccessibility::validForAutomateTesting();
    auto *accessibility = new QCheckBox(QObject::tr("Accessibility groups for UI tests (takes effect at the next start)"), page);
    accessibility->setChecked(KQSettings::userDefaults()->value(kAutomationKey, false).toBool());
    accessibility->setToolTip(automation ? QObject::tr("On now: the bar is the group \"TabView Group\" with one button per tab.")
                                         : QObject::tr("Off now: the tab view has Qt's default accessibility."));
    QObject::connect(accessibility, &QCheckBox::toggled, page,
                     [](bool on) { KQSettings::userDefaults()->setValue(kAutomationKey, on); });
    layout->addWidget(accessibility);
    return page;
}

// The bar rendered at twice the density: the icons are asked for at that
// density, so they stay sharp.
GalleryPage::NamedImages tabViewScreenshots(QWidget *page)
{
    auto *view = page->findChild<KQTabView *>(QStringLiteral("galleryTabView"));
    if (!view)
        return {};
    QImage image(QSize(view->width(), int(KQTabView::kTabBarHeight)) * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2.0);
    image.fill(Qt::transparent);
    view->render(&image, QPoint(), QRegion(0, 0, view->width(), int(KQTabView::kTabBarHeight)));
    return {{QStringLiteral("bar-2x"), image}};
}

const bool registered = GalleryPages::add(
    {20, QStringLiteral("tabview"), QObject::tr("Tab View"), &createTabViewPage, &tabViewScreenshots});

} // namespace

#include "TabViewPage.moc"
