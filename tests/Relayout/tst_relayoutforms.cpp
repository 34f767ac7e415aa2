#include "RelayoutForms.h"

#include <TarnCommon/KQRelayoutOnLanguageChange.h>
#include <TarnCommon/Relayout_ZL.h>

#include <QtTest/QtTest>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

#include <memory>

using RelayoutForms::Language;

namespace {

constexpr int Gap = 8;

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

QList<QWidget *> participatingSiblings(QWidget *parent)
{
    QList<QWidget *> list;
    for (QWidget *w : parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (f_shouldResolveCollision(w))
            list.append(w);
    }
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

bool rowsShared(const QRect &a, const QRect &b) { return a.top() <= b.bottom() && b.top() <= a.bottom(); }

} // namespace

class TestRelayoutForms : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { RelayoutForms::setLanguage(Language::English); }
    void relayoutRepairsForm_data();
    void relayoutRepairsForm();
    void languageRoundTrip_data();
    void languageRoundTrip();
};

void TestRelayoutForms::relayoutRepairsForm_data()
{
    QTest::addColumn<QString>("form");
    QTest::addColumn<int>("language");
    for (const char *form : {"preferences", "find"}) {
        for (Language language : RelayoutForms::languages()) {
            QTest::addRow("%s %s", form, qPrintable(RelayoutForms::languageName(language)))
                << QString::fromLatin1(form) << int(language);
        }
    }
}

void TestRelayoutForms::relayoutRepairsForm()
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
        const QList<QWidget *> siblings = participatingSiblings(parent);
        for (QWidget *w : siblings) {
            QVERIFY2(w->width() >= textWidth(w), qPrintable(w->objectName()));
            for (QWidget *other : siblings) {
                if (w == other || !rowsShared(w->geometry(), other->geometry()))
                    continue;
                QVERIFY2(!w->geometry().intersects(other->geometry()),
                         qPrintable(w->objectName() + QLatin1String(" overlaps ") + other->objectName()));
                // Left to right in a row, a pushed pair keeps the gap unless the design had less.
                QRect before, beforeOther;
                for (const auto &[widget, frame] : designed) {
                    if (widget == w)
                        before = frame;
                    if (widget == other)
                        beforeOther = frame;
                }
                // A pushed view moved without changing its width.
                const bool pushed = (w->x() != before.x() && w->width() == before.width())
                    || (other->x() != beforeOther.x() && other->width() == beforeOther.width());
                if (pushed && beforeOther.x() > before.x()) {
                    const int designedGap = beforeOther.x() - (before.right() + 1);
                    QVERIFY2(other->x() - (w->geometry().right() + 1) >= std::min(Gap, designedGap),
                             qPrintable(QStringLiteral("%1 %2 / %3 %4 ").arg(w->x()).arg(w->width()).arg(other->x()).arg(other->width()) +
                             w->objectName() + QLatin1String(" crowds ") + other->objectName()));
                }
            }
        }
    }
    const QRect content(QPoint(), window->size());
    for (const auto &[w, frame] : designed) {
        if (w == window.get())
            continue;
        QCOMPARE(w->y(), frame.y());
        QCOMPARE(w->height(), frame.height());
        if (w->parentWidget() == window.get())
            QVERIFY2(content.contains(w->geometry()), qPrintable(w->objectName()));
    }
    // A form that fits stays as it is.
    const auto fitted = frames(window.get());
    f_relayout(window.get());
    QCOMPARE(frames(window.get()), fitted);
}

void TestRelayoutForms::languageRoundTrip_data()
{
    QTest::addColumn<QString>("form");
    QTest::newRow("preferences") << QStringLiteral("preferences");
    QTest::newRow("find") << QStringLiteral("find");
}

void TestRelayoutForms::languageRoundTrip()
{
    QFETCH(QString, form);
    auto window = makeForm(form);
    auto *follower = new KQRelayoutOnLanguageChange(window.get());
    QSignalSpy relayouted(follower, &KQRelayoutOnLanguageChange::relayouted);
    const auto designed = frames(window.get());

    switchTo(Language::German);
    QCOMPARE(relayouted.count(), 1); // once, however many widgets heard of the change
    const auto german = frames(window.get());
    QVERIFY(german != designed);
    switchTo(Language::French);
    QVERIFY(frames(window.get()) != german);
    // French, then German again: the same frames as the first time.
    switchTo(Language::German);
    QCOMPARE(frames(window.get()), german);
    switchTo(Language::English);
    QCOMPARE(relayouted.count(), 4);
    QCOMPARE(frames(window.get()), designed);
}

QTEST_MAIN(TestRelayoutForms)
#include "tst_relayoutforms.moc"
