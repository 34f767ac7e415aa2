// Designer forms and the library's languages: a form laid out in Designer
// (compiled with uic) holding the library's widgets, and a language switch
// that loads the library's translations and shows its texts change.
#include "GalleryPage.h"
#include "ui_FormsPage.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQError.h>
#include <TarnCommon/KQTab.h>
#include <TarnCommon/KQTabView.h>
#include <TarnCommon/KQTranslations.h>

#include <QtCore/QEvent>
#include <QtCore/QPointer>
#include <QtGui/QPainter>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>

#include "DrawnIcon.h"

namespace {

QIcon letterIcon(const QString &letter, const QColor &color)
{
    return drawnIcon([&](QPainter &painter) {
        painter.setBrush(color);
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QRectF(1, 1, 14, 14));
        painter.setPen(Qt::white);
        QFont font = painter.font();
        font.setPixelSize(10);
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(QRectF(0, 0, 16, 16), Qt::AlignCenter, letter);
    });
}

QLabel *paneLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    return label;
}

// Shows the library's own texts; refreshed when the language changes.
class LibraryTexts : public QWidget
{
public:
    explicit LibraryTexts(KQCollapsibleView *section, QWidget *parent)
        : QWidget(parent)
        , m_section(section)
    {
        auto *layout = new QFormLayout(this);
        m_button = new QLabel(this);
        m_button->setWordWrap(true);
        m_error = new QLabel(this);
        m_error->setWordWrap(true);
        layout->addRow(QObject::tr("Section button:"), m_button);
        layout->addRow(QObject::tr("Error text:"), m_error);
        refresh();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        QWidget::changeEvent(event);
        if (event->type() == QEvent::LanguageChange)
            refresh();
    }

private:
    void refresh()
    {
        const auto *button = m_section ? m_section->findChild<QToolButton *>(QStringLiteral("collapseButton")) : nullptr;
        m_button->setText(button ? button->accessibleDescription() : QString());
        m_error->setText(KQError(QStringLiteral("NSCocoaErrorDomain"), 4).localizedDescription());
    }

    QPointer<KQCollapsibleView> m_section;
    QLabel *m_button = nullptr;
    QLabel *m_error = nullptr;
};

QWidget *createFormsPage()
{
    auto *page = new QWidget;
    auto *layout = new QHBoxLayout(page);

    // The form as Designer laid it out; the tabs and sections are code's part.
    auto *form = new QWidget(page);
    auto *ui = new Ui::FormsPage;
    ui->setupUi(form);
    QList<KQTab *> tabs;
    const QList<std::pair<QString, QColor>> entries{
        {QStringLiteral("A"), QColor(200, 80, 60)},
        {QStringLiteral("B"), QColor(60, 140, 90)},
        {QStringLiteral("C"), QColor(60, 100, 190)}};
    for (const auto &[letter, color] : entries) {
        auto *tab = new KQTab;
        tab->setIcon(letterIcon(letter, color));
        tab->setIconTooltip(QObject::tr("Tab %1").arg(letter));
        tab->setView(paneLabel(QObject::tr("Pane %1: Tab focuses the bar, then Left, Right, Home and End "
                                           "choose the tab.")
                                   .arg(letter)));
        tabs << tab;
    }
    ui->formTabView->setTabs(tabs);
    auto *sectionContent = paneLabel(QObject::tr("Content added in code"));
    sectionContent->resize(200, 60);
    auto *inList = new KQCollapsibleView(QObject::tr("In the list"), sectionContent, true, false);
    ui->formList->addCollapsableView(inList);
    delete ui; // the widgets belong to the form
    layout->addWidget(form, 3);

    // The library's texts in the chosen language.
    auto *languages = new QGroupBox(QObject::tr("The library's language"), page);
    auto *side = new QVBoxLayout(languages);
    auto *choice = new QComboBox(languages);
    choice->addItem(QStringLiteral("English"), QStringLiteral("en"));
    choice->addItem(QStringLiteral("Deutsch"), QStringLiteral("de"));
    choice->addItem(QStringLiteral("Fran\u00e7ais"), QStringLiteral("fr"));
    side->addWidget(choice);
    auto *status = new QLabel(languages);
    status->setWordWrap(true);
    side->addWidget(status);

    auto *document = new QWidget(page);
    document->setWindowTitle(QObject::tr("Report.txt"));
    auto *mode = new KQEmptyInspectorMode(document, page);
    mode->view()->setMinimumHeight(90);
    side->addWidget(mode->view());
    mode->update();
    side->addWidget(new LibraryTexts(inList, languages));
    side->addStretch(1);
    layout->addWidget(languages, 2);

    QObject::connect(choice, &QComboBox::currentIndexChanged, page, [choice, status] {
        const QLocale locale(choice->currentData().toString());
        const bool loaded = KQInstallTranslations(locale);
        status->setText(loaded || locale.language() == QLocale::English
                            ? QString()
                            : QObject::tr("No translation found in %1")
                                  .arg(KQTranslationDirectories().join(QStringLiteral(", "))));
    });
    return page;
}

const bool registered = GalleryPages::add(
    {80, QStringLiteral("forms"), QObject::tr("Designer forms and languages"), &createFormsPage});

} // namespace
