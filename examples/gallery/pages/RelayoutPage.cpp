// Relayout: an absolutely placed Designer form in three languages, as the
// translation leaves it and as the relayout engine repairs it.
#include "GalleryPage.h"
#include "RelayoutForms.h"

#include <TarnCommon/KQRelayoutOnLanguageChange.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

namespace {

using RelayoutForms::Language;

// A form dialog shown inside the page instead of as a window of its own.
QWidget *embeddedForm(QWidget *parent)
{
    auto *form = new RelayoutForms::PreferencesDialog(parent);
    form->setWindowFlags(Qt::Widget);
    return form;
}

// The form keeps its own (absolute) size, which relayout may grow; the
// scroll area shows it at that size instead of imposing one.
QGroupBox *formPane(const QString &title, QWidget *form)
{
    auto *pane = new QGroupBox(title);
    auto *layout = new QVBoxLayout(pane);
    auto *scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(form);
    layout->addWidget(scroll);
    return pane;
}

QWidget *createRelayoutPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);

    auto *explanation = new QLabel(QObject::tr(
        "A Designer form with absolute positions and no layouts. Pick a language: on the left the texts "
        "are simply replaced and clip or overlap; on the right the relayout engine grows each control to "
        "its text and pushes its neighbours aside. Back in English the designed frames return exactly."));
    explanation->setWordWrap(true);
    layout->addWidget(explanation);

    auto *languages = new QHBoxLayout;
    auto *group = new QButtonGroup(page);
    for (Language language : RelayoutForms::languages()) {
        auto *button = new QRadioButton(RelayoutForms::languageName(language));
        button->setObjectName(QStringLiteral("language%1").arg(int(language)));
        button->setChecked(language == Language::English);
        group->addButton(button, int(language));
        languages->addWidget(button);
    }
    languages->addStretch();
    layout->addLayout(languages);
    QWidget *asDesigned = embeddedForm(nullptr);
    QWidget *repaired = embeddedForm(nullptr);
    repaired->setObjectName(QStringLiteral("repairedForm"));
    new KQRelayoutOnLanguageChange(repaired); // created in English, the designed language

    // Relayout sizes a window to its content; embedded here, the form is not
    // one, so the page grows it to enclose its widgets once the queued
    // relayout has run.
    const QSize designedSize = repaired->size();
    QObject::connect(group, &QButtonGroup::idClicked, page, [repaired, designedSize](int id) {
        RelayoutForms::setLanguage(Language(id));
        QTimer::singleShot(0, repaired, [repaired, designedSize] {
            const QRect content = repaired->childrenRect();
            repaired->resize(designedSize.expandedTo(QSize(content.right() + 12, content.bottom() + 12)));
        });
    });

    auto *forms = new QHBoxLayout;
    forms->addWidget(formPane(QObject::tr("Translated only"), asDesigned));
    forms->addWidget(formPane(QObject::tr("After relayout"), repaired));
    layout->addLayout(forms, 1);

    // Leave the application in English when the gallery closes the page.
    QObject::connect(page, &QObject::destroyed, [] { RelayoutForms::setLanguage(Language::English); });
    return page;
}

// The page in each language, once every widget has its new texts and the
// queued relayout has run.
GalleryPage::NamedImages relayoutScreenshots(QWidget *page)
{
    GalleryPage::NamedImages images;
    for (Language language : RelayoutForms::languages()) {
        if (language == Language::English)
            continue;
        if (auto *button = page->findChild<QRadioButton *>(QStringLiteral("language%1").arg(int(language))))
            button->click();
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
        const QString code = language == Language::German ? QStringLiteral("de") : QStringLiteral("fr");
        images.append({QStringLiteral("page-%1").arg(code), page->grab().toImage()});
        // The repaired form whole, however much of it the page shows.
        if (auto *form = page->findChild<QWidget *>(QStringLiteral("repairedForm")))
            images.append({QStringLiteral("form-%1").arg(code), form->grab().toImage()});
    }
    if (auto *english = page->findChild<QRadioButton *>(QStringLiteral("language%1").arg(int(Language::English))))
        english->click();
    QCoreApplication::processEvents();
    return images;
}

const bool registered = GalleryPages::add(
    {80, QStringLiteral("relayout"), QObject::tr("Relayout"), &createRelayoutPage, &relayoutScreenshots});

} // namespace
