#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQSettings.h>

#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtGui/QTextFragment>
#include <QtGui/QTextImageFormat>
#include <QtTest/QtTest>
#include <QtWidgets/QTextEdit>

#include <memory>

class tst_EmptyInspectorMode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void showingBuildsTextAndOneTimer();
    void refreshRebuildsOnlyForNewTitle_data();
    void refreshRebuildsOnlyForNewTitle();
    void missingTitle_data();
    void missingTitle();
    void documentIcon_data();
    void documentIcon();
};

void tst_EmptyInspectorMode::showingBuildsTextAndOneTimer()
{
    QWidget window;
    window.setWindowTitle(QStringLiteral("Report.txt"));
    KQEmptyInspectorMode mode(&window);
    auto *textView = qobject_cast<QTextEdit *>(mode.view());
    QVERIFY(textView);
    QCOMPARE(mode.textView(), textView);
    QCOMPARE(textView->textInteractionFlags(), Qt::NoTextInteraction);

    // Built at once, not on the first tick.
    mode.modeWillShow();
    QCOMPARE(textView->toPlainText(), QStringLiteral("Inspector not available for window:\nReport.txt"));
    QCOMPARE(textView->document()->begin().blockFormat().alignment(), Qt::AlignHCenter);
    QPointer<QTimer> first = mode.refreshTimer();
    QVERIFY(first && first->isActive());
    QCOMPARE(first->interval(), 2000);

    // Shown again: still exactly one timer.
    mode.modeWillShow();
    QVERIFY(first.isNull());
    QCOMPARE(mode.findChildren<QTimer *>().size(), 1);
    QVERIFY(mode.refreshTimer()->isActive());

    // Hidden: no timer at all, and hiding twice is harmless.
    mode.modeWasHidden();
    mode.modeWasHidden();
    QCOMPARE(mode.refreshTimer(), nullptr);
    QVERIFY(mode.findChildren<QTimer *>().isEmpty());
}

void tst_EmptyInspectorMode::refreshRebuildsOnlyForNewTitle_data()
{
    QTest::addColumn<QString>("newTitle");
    QTest::addColumn<double>("elapsed");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("rebuilt");
    QTest::newRow("unchanged") << QStringLiteral("Draft") << 2.0 << false << false;
    QTest::newRow("renamed") << QStringLiteral("Final") << 2.0 << false << true;
    QTest::newRow("renamed, much later") << QStringLiteral("Final") << 7.5 << false << true;
    QTest::newRow("renamed, not yet two seconds") << QStringLiteral("Final") << 1.9 << false << false;
    QTest::newRow("renamed while hidden") << QStringLiteral("Final") << 2.0 << true << false;
    QTest::newRow("modified marker") << QStringLiteral("Draft[*]") << 2.0 << false << false;
}

void tst_EmptyInspectorMode::refreshRebuildsOnlyForNewTitle()
{
    QFETCH(QString, newTitle);
    QFETCH(double, elapsed);
    QFETCH(bool, hidden);
    QFETCH(bool, rebuilt);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Draft"));
    KQEmptyInspectorMode mode(&window);
    double now = 50;
    mode.setClock([&now] { return now; });
    mode.modeWillShow();
    if (hidden)
        mode.modeWasHidden();

    // Marks the text so a rebuild shows; the clock moves on and the refresh
    // is polled rather than waited for.
    mode.textView()->setPlainText(QStringLiteral("sentinel"));
    window.setWindowTitle(newTitle);
    now += elapsed;
    mode.poll();
    const QString text = mode.textView()->toPlainText();
    QCOMPARE(text == QStringLiteral("sentinel"), !rebuilt);
    if (rebuilt)
        QVERIFY(text.endsWith(newTitle));
}

void tst_EmptyInspectorMode::missingTitle_data()
{
    QTest::addColumn<bool>("withWindow");
    QTest::addColumn<bool>("windowGoesAway");
    QTest::newRow("untitled window") << true << false;
    QTest::newRow("no window") << false << false;
    QTest::newRow("window closed and deleted") << true << true;
}

void tst_EmptyInspectorMode::missingTitle()
{
    QFETCH(bool, withWindow);
    QFETCH(bool, windowGoesAway);
    auto window = std::make_unique<QWidget>();
    if (windowGoesAway)
        window->setWindowTitle(QStringLiteral("Soon gone"));
    KQEmptyInspectorMode mode(withWindow ? window.get() : nullptr);
    mode.modeWillShow();
    if (windowGoesAway) {
        QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("Soon gone")));
        window.reset();
        mode.update();
    }
    QCOMPARE(mode.lastWindowTitle(), QStringLiteral("?"));
    QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("\n?")));
}

void tst_EmptyInspectorMode::documentIcon_data()
{
    QTest::addColumn<QString>("filePath");
    QTest::addColumn<bool>("hasIcon");
    QTest::newRow("document window") << QStringLiteral("/tmp/Notes.txt") << true;
    QTest::newRow("window without file") << QString() << false;
}

void tst_EmptyInspectorMode::documentIcon()
{
    QFETCH(QString, filePath);
    QFETCH(bool, hasIcon);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Notes"));
    QPixmap red(32, 32);
    red.fill(Qt::red);
    window.setWindowIcon(QIcon(red));
    window.setWindowFilePath(filePath);
    QCOMPARE(kq_documentIconOfWindow(&window).isNull(), !hasIcon);

    KQEmptyInspectorMode mode(&window);
    mode.modeWillShow();
    // The text's pieces in order, the notice's line first.
    QList<QTextFragment> pieces;
    QList<QTextImageFormat> images;
    for (QTextBlock block = mode.textView()->document()->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            pieces.append(it.fragment());
            if (it.fragment().charFormat().isImageFormat())
                images.append(it.fragment().charFormat().toImageFormat());
        }
    }
    QVERIFY(!pieces.isEmpty());
    const QTextCharFormat title = pieces.last().charFormat();
    QCOMPARE(pieces.last().text(), QStringLiteral("Notes"));
    // Only the title is raised, and only beside an icon.
    QCOMPARE(title.property(KQEmptyInspectorMode::BaselineOffsetProperty).toDouble(), hasIcon ? 3.0 : 0.0);
    QCOMPARE(title.baselineOffset() > 0, hasIcon);
    QVERIFY(!pieces.first().charFormat().hasProperty(KQEmptyInspectorMode::BaselineOffsetProperty));

    QCOMPARE(images.size(), hasIcon ? 1 : 0);
    const QString plain = mode.textView()->toPlainText();
    if (hasIcon) {
        QCOMPARE(QSizeF(images.first().width(), images.first().height()), QSizeF(16, 16));
        // The picture itself is there to be drawn.
        QVERIFY(mode.textView()->document()->resource(QTextDocument::ImageResource, QUrl(images.first().name())).isValid());
        QVERIFY(plain.endsWith(QChar(QChar::ObjectReplacementCharacter) + QStringLiteral(" Notes")));
    } else {
        QVERIFY(plain.endsWith(QStringLiteral("window:\nNotes")));
    }
}

QTEST_MAIN(tst_EmptyInspectorMode)
#include "tst_emptyinspectormode.moc"
