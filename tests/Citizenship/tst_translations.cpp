// The library's texts in the application's language.
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQTranslations.h>

#include "MessageCapture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QTextEdit>
#include <QtWidgets/QToolButton>

class tst_Translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { KQInstallTranslations(QLocale(QLocale::English)); }
    void textsFollowTheLanguage_data();
    void textsFollowTheLanguage();
    void missingTranslationKeepsEnglish();
};

void tst_Translations::textsFollowTheLanguage_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<bool>("installed");
    QTest::addColumn<QString>("emptyModeText");
    QTest::addColumn<QString>("buttonDescription");
    const QString german = QStringLiteral("Kein Inspektor verfügbar für das Fenster:");
    const QString germanButton = QStringLiteral("Ausgeklappt; drücken, um den Abschnitt auszublenden");
    QTest::newRow("German") << QLocale(QLocale::German, QLocale::Germany) << true << german << germanButton;
    QTest::newRow("Swiss German falls back to German") << QLocale(QLocale::German, QLocale::Switzerland) << true << german << germanButton;
    QTest::newRow("French") << QLocale(QLocale::French, QLocale::France) << true << QStringLiteral("Inspecteur indisponible pour la fenêtre :")
                            << QStringLiteral("Déplié ; appuyer pour masquer la section");
    QTest::newRow("English needs none") << QLocale(QLocale::English) << false << QStringLiteral("Inspector not available for window:")
                                        << QStringLiteral("Expanded; press to hide the section");
}

void tst_Translations::textsFollowTheLanguage()
{
    QFETCH(QLocale, locale);
    QFETCH(bool, installed);
    QFETCH(QString, emptyModeText);
    QFETCH(QString, buttonDescription);
    // Made before the language changes: the texts on show must follow.
    QWidget document;
    document.setWindowTitle(QStringLiteral("Notes"));
    KQEmptyInspectorMode mode(&document);
    mode.view();
    mode.update();
    KQCollapsibleView section(QStringLiteral("Section"), nullptr, true, false);
    auto *button = section.findChild<QToolButton *>(QStringLiteral("collapseButton"));
    QVERIFY(button);
    QCOMPARE(KQInstallTranslations(locale), installed);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LanguageChange);
    QCoreApplication::processEvents();
    const QString text = mode.textView()->toPlainText();
    QVERIFY2(text.startsWith(emptyModeText) && text.endsWith(QStringLiteral("Notes")), qPrintable(text));
    QCOMPARE(button->accessibleDescription(), buttonDescription);
}

void tst_Translations::missingTranslationKeepsEnglish()
{
    QVERIFY(KQInstallTranslations(QLocale(QLocale::German)));
    // A language without a file, or a folder without it: the German one goes,
    // English stays, nothing is reported as broken.
    MessageCapture capture;
    QVERIFY(!KQInstallTranslations(QLocale(QLocale::Japanese)));
    QVERIFY(!KQInstallTranslations(QLocale(QLocale::Italian), QStringLiteral("/nonexistent")));
    QCOMPARE(capture.text(), QByteArray());
    QCOMPARE(QCoreApplication::translate("TarnCommon", "Inspector"), QStringLiteral("Inspector"));
}

QTEST_MAIN(tst_Translations)
#include "tst_translations.moc"
