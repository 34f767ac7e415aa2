#include <TarnCommon/KQEmptyInspectorMode.h>
#include <TarnCommon/KQSettings.h>

#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtGui/QTextFragment>
#include <QtGui/QTextImageFormat>
#include <QtTest/QtTest>
#include <QtWidgets/QTextEdit>

#include <limits>

namespace {

QIcon squareIcon(const QColor &colour)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(colour);
    return QIcon(pixmap);
}

struct Piece
{
    QString text;
    QTextCharFormat format;
};

// The text's pieces in order, the notice's line first.
QList<Piece> pieces(const QTextDocument *document)
{
    QList<Piece> result;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it)
            result.append({it.fragment().text(), it.fragment().charFormat()});
    }
    return result;
}

} // namespace

class tst_EmptyInspectorMode : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { KQSettings::enableTestMode(); }

    void values();
    void viewIsMadeOnce();
    void showingBuildsTextAtOnce();
    void showingTwiceKeepsOneTimer();
    void hidingStopsTheRefresh();
    void refreshRebuildsOnlyForNewTitle_data();
    void refreshRebuildsOnlyForNewTitle();
    void missingTitle_data();
    void missingTitle();
    void documentIcon_data();
    void documentIcon();
};

void tst_EmptyInspectorMode::values()
{
    KQEmptyInspectorMode mode(nullptr);
    QCOMPARE(mode.minSize(), QSizeF(50, 50));
    const double largest = std::numeric_limits<double>::max();
    QCOMPARE(mode.maxSize(), QSizeF(largest, largest));
    QVERIFY(mode.isResizable());
    QCOMPARE(mode.inspectorTitle(), QStringLiteral("Inspector"));
    QCOMPARE(mode.windowLevel(), qint64(3));
}

void tst_EmptyInspectorMode::viewIsMadeOnce()
{
    KQEmptyInspectorMode mode(nullptr);
    QWidget *view = mode.view();
    auto *textView = qobject_cast<QTextEdit *>(view);
    QVERIFY(textView);
    QCOMPARE(mode.textView(), textView);
    QVERIFY(textView->isReadOnly());
    QCOMPARE(textView->textInteractionFlags(), Qt::NoTextInteraction);
    QCOMPARE(textView->size(), QSize(0, 0));
    QCOMPARE(mode.view(), view);
}

void tst_EmptyInspectorMode::showingBuildsTextAtOnce()
{
    QWidget window;
    window.setWindowTitle(QStringLiteral("Report.txt"));
    KQEmptyInspectorMode mode(&window);
    mode.modeWillShow();
    QCOMPARE(mode.textView()->toPlainText(),
             QStringLiteral("Inspector not available for window:\nReport.txt"));
    QCOMPARE(mode.textView()->document()->begin().blockFormat().alignment(), Qt::AlignHCenter);
    QTimer *timer = mode.refreshTimer();
    QVERIFY(timer);
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QCOMPARE(timer->interval(), 2000);
}

void tst_EmptyInspectorMode::showingTwiceKeepsOneTimer()
{
    KQEmptyInspectorMode mode(nullptr);
    mode.modeWillShow();
    QPointer<QTimer> first = mode.refreshTimer();
    mode.modeWillShow();
    QVERIFY(first.isNull());
    QCOMPARE(mode.findChildren<QTimer *>().size(), 1);
    QVERIFY(mode.refreshTimer()->isActive());
}

void tst_EmptyInspectorMode::hidingStopsTheRefresh()
{
    KQEmptyInspectorMode mode(nullptr);
    mode.modeWillShow();
    mode.modeWasHidden();
    QCOMPARE(mode.refreshTimer(), nullptr);
    QVERIFY(mode.findChildren<QTimer *>().isEmpty());
    mode.modeWasHidden(); // hiding again is harmless
}

void tst_EmptyInspectorMode::refreshRebuildsOnlyForNewTitle_data()
{
    QTest::addColumn<QString>("newTitle");
    QTest::addColumn<bool>("rebuilt");
    QTest::newRow("unchanged") << QStringLiteral("Draft") << false;
    QTest::newRow("renamed") << QStringLiteral("Final") << true;
    QTest::newRow("modified marker") << QStringLiteral("Draft[*]") << false;
}

void tst_EmptyInspectorMode::refreshRebuildsOnlyForNewTitle()
{
    QFETCH(QString, newTitle);
    QFETCH(bool, rebuilt);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Draft"));
    KQEmptyInspectorMode mode(&window);
    mode.modeWillShow();
    QVERIFY(mode.refreshTimer()->isActive());

    // Marks the text so a rebuild shows; then one tick of the refresh timer,
    // fired by hand rather than waited for.
    mode.textView()->setPlainText(QStringLiteral("sentinel"));
    window.setWindowTitle(newTitle);
    QVERIFY(QMetaObject::invokeMethod(mode.refreshTimer(), "timeout", Qt::DirectConnection));
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
    auto *window = new QWidget;
    if (windowGoesAway)
        window->setWindowTitle(QStringLiteral("Soon gone"));
    KQEmptyInspectorMode mode(withWindow ? window : nullptr);
    mode.modeWillShow();
    if (windowGoesAway) {
        QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("Soon gone")));
        delete window;
        window = nullptr;
        mode.update();
    }
    QCOMPARE(mode.lastWindowTitle(), QStringLiteral("?"));
    QVERIFY(mode.textView()->toPlainText().endsWith(QStringLiteral("\n?")));
    delete window;
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
    window.setWindowIcon(squareIcon(Qt::red));
    window.setWindowFilePath(filePath);
    QCOMPARE(kq_documentIconOfWindow(&window).isNull(), !hasIcon);

    KQEmptyInspectorMode mode(&window);
    mode.modeWillShow();
    const QList<Piece> parts = pieces(mode.textView()->document());
    QVERIFY(!parts.isEmpty());
    const Piece &title = parts.last();
    QCOMPARE(title.text, QStringLiteral("Notes"));
    QCOMPARE(title.format.property(KQEmptyInspectorMode::BaselineOffsetProperty).toDouble(), hasIcon ? 3.0 : 0.0);

    QList<Piece> images;
    for (const Piece &part : parts) {
        if (part.format.isImageFormat())
            images.append(part);
    }
    QCOMPARE(images.size(), hasIcon ? 1 : 0);
    const QString plain = mode.textView()->toPlainText();
    if (hasIcon) {
        const QTextImageFormat image = images.first().format.toImageFormat();
        QCOMPARE(image.width(), 16.0);
        QCOMPARE(image.height(), 16.0);
        // The picture itself is there to be drawn.
        const QVariant resource = mode.textView()->document()->resource(QTextDocument::ImageResource,
                                                                         QUrl(image.name()));
        QVERIFY(resource.isValid());
        QVERIFY(plain.endsWith(QChar(QChar::ObjectReplacementCharacter) + QStringLiteral(" Notes")));
    } else {
        QVERIFY(plain.endsWith(QStringLiteral("window:\nNotes")));
    }
    // Only the title is raised, and only beside an icon.
    QCOMPARE(title.format.baselineOffset() > 0, hasIcon);
    QCOMPARE(parts.first().format.baselineOffset(), 0.0);
    QVERIFY(!parts.first().format.hasProperty(KQEmptyInspectorMode::BaselineOffsetProperty));
}

QTEST_MAIN(tst_EmptyInspectorMode)
#include "tst_emptyinspectormode.moc"
