#pragma once

// Two absolutely placed Designer forms (no layouts) that the relayout engine
// repairs in every language, shared by the gallery and the form tests.

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtWidgets/QDialog>

#include <memory>

class QWidget;
namespace Ui {
class PreferencesDialog;
class FindReplacePanel;
}

namespace RelayoutForms {

enum class Language { English, German, French };

QList<Language> languages();
QString languageName(Language language); // in its own language
// Installs the forms' translator for \a language application-wide (English
// removes it); false when its translation cannot be loaded.
bool setLanguage(Language language);

// Answers the window delegate's friends hook: the widgets of one column move
// and widen together.
class AlignedColumns : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    void addColumn(const QList<QWidget *> &column);
    Q_INVOKABLE QList<QWidget *> f_alignedFriendsOfView(QWidget *view) const;

private:
    QList<QList<QWidget *>> m_columns;
};

class PreferencesDialog : public QDialog
{
    Q_OBJECT
public:
    explicit PreferencesDialog(QWidget *parent = nullptr);
    ~PreferencesDialog() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    std::unique_ptr<Ui::PreferencesDialog> m_ui;
    AlignedColumns *m_columns;
};

class FindReplacePanel : public QWidget
{
    Q_OBJECT
public:
    explicit FindReplacePanel(QWidget *parent = nullptr);
    ~FindReplacePanel() override;

protected:
    void changeEvent(QEvent *event) override;

private:
    std::unique_ptr<Ui::FindReplacePanel> m_ui;
    AlignedColumns *m_columns;
};

} // namespace RelayoutForms
