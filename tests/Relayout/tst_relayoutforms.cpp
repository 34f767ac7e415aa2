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

// Every widget below the window with its frame, in a stable order.
QList<std::pair<QWidget *, QRect>> frames(QWidget *window)
{
    QList<std::pair<QWidget *, QRect>> list;
    for (QWidget *w : window->findChildren<QWidget *>())
        list.append({w, w->geometry()});
    list.append({window, QRect(QPoint(), window->size())});
    return list;
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
        for (const char *form : {"preferences", "find"})
            for (Language language : RelayoutForms::languages())
                QTest::addRow("%s %s", form, qPrintable(RelayoutForms::languageName(language))) << QString::fromLatin1(form) << int(language);
    }

    void relayoutRepairsForm()
    {
        QFETCH(QString, form);
        QFETCH(int, language);
        auto window = makeForm(form);
        const auto designed = frames(window.get());
        switchTo(Language(language));
        f_relayout(window.get());

        QList<QWidget *> parents{window.get()};
        for (QGroupBox *box : window->findChildren<QGroupBox *>())
            parents.append(box);
        for (QWidget *parent : parents) {
            QList<QWidget *> siblings = parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
            siblings.removeIf([](QWidget *w) { return !f_shouldResolveCollision(w); });
            for (QWidget *w : siblings) {
                QVERIFY2(w->width() >= textWidth(w), qPrintable(w->objectName()));
                for (QWidget *other : siblings) {
                    const QRect a = w->geometry(), b = other->geometry();
                    if (w == other || a.top() > b.bottom() || b.top() > a.bottom()) // not in one row
                        continue;
                    QVERIFY2(!a.intersects(b), qPrintable(w->objectName() + " overlaps " + other->objectName()));
                }
            }
        }
        // Rows stay where they were drawn, inside the window.
        for (const auto &[w, frame] : designed) {
            if (w == window.get())
                continue;
            QCOMPARE(w->y(), frame.y());
            QCOMPARE(w->height(), frame.height());
            QVERIFY2(w->parentWidget() != window.get() || window->rect().contains(w->geometry()), qPrintable(w->objectName()));
        }
        // A form that fits stays as it is.
        const auto fitted = frames(window.get());
        f_relayout(window.get());
        QCOMPARE(frames(window.get()), fitted);
    }

    void languageRoundTrip()
    {
        auto window = makeForm(QStringLiteral("preferences"));
        auto *follower = new KQRelayoutOnLanguageChange(window.get());
        QSignalSpy relayouted(follower, &KQRelayoutOnLanguageChange::relayouted);
        const auto designed = frames(window.get());
        switchTo(Language::German);
        QCOMPARE(relayouted.count(), 1); // once, however many widgets heard of the change
        const auto german = frames(window.get());
        QVERIFY(german != designed);
        switchTo(Language::French);
        QVERIFY(frames(window.get()) != german);
        switchTo(Language::German); // French, then German again: the same frames as the first time
        QCOMPARE(frames(window.get()), german);
        switchTo(Language::English);
        QCOMPARE(relayouted.count(), 4);
        QCOMPARE(frames(window.get()), designed);
    }
};

QTEST_MAIN(TestRelayoutForms)
#include "tst_relayoutforms.moc"
