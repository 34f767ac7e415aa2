#include "RelayoutForms.h"

#include "ui_FindReplacePanel.h"
#include "ui_PreferencesDialog.h"

#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

namespace RelayoutForms {

QList<Language> languages()
{
    return {Language::English, Language::German, Language::French};
}

QString languageName(Language language)
{
    switch (language) {
    case Language::German:
        return QStringLiteral("Deutsch");
    case Language::French:
        return QStringLiteral("Français");
    case Language::English:
        break;
    }
    return QStringLiteral("English");
}

bool setLanguage(Language language)
{
    static QTranslator *translator = nullptr;
    if (translator) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
        translator = nullptr;
    }
    if (language == Language::English)
        return true;
    const QString code = language == Language::German ? QStringLiteral("de") : QStringLiteral("fr");
    auto next = std::make_unique<QTranslator>();
    if (!next->load(QStringLiteral(":/relayoutforms/translations/relayoutforms_%1.qm").arg(code)))
        return false;
    translator = next.release();
    return QCoreApplication::installTranslator(translator);
}

void AlignedColumns::addColumn(const QList<QWidget *> &column)
{
    m_columns.append(column);
}

QList<QWidget *> AlignedColumns::f_alignedFriendsOfView(QWidget *view) const
{
    for (const QList<QWidget *> &column : m_columns) {
        if (column.contains(view)) {
            QList<QWidget *> friends = column;
            friends.removeAll(view);
            return friends;
        }
    }
    return {};
}

PreferencesDialog::PreferencesDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui::PreferencesDialog>())
    , m_columns(new AlignedColumns(this))
{
    m_ui->setupUi(this);
    m_columns->addColumn({m_ui->nameLabel, m_ui->emailLabel, m_ui->languageLabel});
    kq_setWindowDelegate(this, m_columns);
}

PreferencesDialog::~PreferencesDialog() = default;

void PreferencesDialog::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QDialog::changeEvent(event);
}

FindReplacePanel::FindReplacePanel(QWidget *parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::FindReplacePanel>())
    , m_columns(new AlignedColumns(this))
{
    m_ui->setupUi(this);
    m_columns->addColumn({m_ui->findLabel, m_ui->replaceLabel});
    m_columns->addColumn({m_ui->nextButton, m_ui->replaceButton});
    m_columns->addColumn({m_ui->previousButton, m_ui->replaceAllButton});
    kq_setWindowDelegate(this, m_columns);
}

FindReplacePanel::~FindReplacePanel() = default;

void FindReplacePanel::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        m_ui->retranslateUi(this);
    QWidget::changeEvent(event);
}

} // namespace RelayoutForms
