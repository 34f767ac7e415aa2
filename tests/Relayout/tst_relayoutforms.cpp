#include "RelayoutForms.h"

#include <TarnCommon/KQRelayoutOnLanguageChange.h>
#include <TarnCommon/Relayout_ZL.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

#include <memory>

using RelayoutForms::Language;

namespace {

std::unique_ptr<QWidget> makeForm(const QString &name)
{
    if (name == QLatin1String("preferences"))
        return std::make_unique<RelayoutForms::PreferencesDialog>();
    return std::make_unique<RelayoutForms::FindReplacePanel>();
}

void switchTo(Language language)
{
    QVERIFY(RelayoutForms::setLanguage(language));
    QCoreApplication::sendPostedEvents(); // the language change, then the queued relayout
    QCoreApplication::sendPostedEvents();
}

// Every widget below the window with its frame, and the window's size.
QHash<QWidget *, QRect> frames(QWidget *window)
{
    QHash<QWidget *, QRect> all{{window, QRect(QPoint(), window->size())}};
    for (QWidget *w : window->findChildren<QWidget *>())
        all.insert(w, w->geometry());
    return all;
}

// The least width a control's text needs, measured independently of the engine.
int textWidth(QWidget *w)
{
    if (auto *edit = qobject_cast<QLineEdit *>(w))
        return edit->fontMetrics().horizontalAdvance(edit->placeholderText());
    if (qobject_cast<QAbstractButton *>(w) || qobject_cast<QLabel *>(w) || qobject_cast<QComboBox *>(w))
        return w->sizeHint().width();
    return 0;
}

} // namespace

class TestRelayoutForms : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { RelayoutForms::setLanguage(Language::English); }

    void relayoutRepairsForm_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<int>("language");
        for (const char *form : {"preferences", "find"}) {
            QTest::addRow("%s English", form) << QString::fromLatin1(form) << int(Language::English);
            QTest::addRow("%s German", form) << QString::fromLatin1(form) << int(Language::German);
        }
    }

    void relayoutRepairsForm()
    {
        QFETCH(QString, form);
        QFETCH(int, language);
        auto window = makeForm(form);
        auto *follower = new KQRelayoutOnLanguageChange(window.get());
        QSignalSpy relayouted(follower, &KQRelayoutOnLanguageChange::relayouted);
        const auto designed = frames(window.get());
        switchTo(Language(language));
        QCOMPARE(relayouted.count(), language == int(Language::English) ? 0 : 1); // once, however many widgets heard
        // A form that fits stays as it is.
        const auto fitted = frames(window.get());
        f_relayout(window.get());
        QCOMPARE(frames(window.get()), fitted);
        QCOMPARE(fitted != designed, language != int(Language::English));

        QList<QWidget *> parents = window->findChildren<QWidget *>();
        parents.append(window.get());
        for (QWidget *parent : parents) {
            QList<QWidget *> siblings = parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
            siblings.removeIf([](QWidget *w) { return !f_shouldResolveCollision(w); });
            for (QWidget *w : siblings) {
                QVERIFY2(w->width() >= textWidth(w), qPrintable(w->objectName()));
                // Rows stay where they were drawn, inside the window.
                QCOMPARE(w->y(), designed[w].y());
                QCOMPARE(w->height(), designed[w].height());
                QVERIFY2(parent != window.get() || window->rect().contains(w->geometry()), qPrintable(w->objectName()));
                for (QWidget *other : siblings)
                    QVERIFY2(w == other || !w->geometry().intersects(other->geometry()), qPrintable(w->objectName()));
            }
        }
        switchTo(Language::English);
        QCOMPARE(frames(window.get()), designed);
    }
};

QTEST_MAIN(TestRelayoutForms)
#include "tst_relayoutforms.moc"
