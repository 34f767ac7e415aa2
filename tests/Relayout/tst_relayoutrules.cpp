#include "KQRelayoutRules_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQWindowDelegate.h>
#include <TarnCommon/Relayout_ZL.h>

#include <QtTest/QtTest>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QVBoxLayout>

using namespace KQRelayout;

Q_DECLARE_METATYPE(KQRelayout::Frame)

namespace {

Frame f(double x, double w, double y = 0, double h = 20) { return Frame{x, y, w, h}; }

View view(Frame frame, int mask, Kind kind = Kind::Plain)
{
    View v;
    v.frame = frame;
    v.mask = mask;
    v.kind = kind;
    return v;
}

Settings exact(double gap = DefaultGap)
{
    Settings s;
    s.gap = gap;
    s.integral = false;
    return s;
}

} // namespace

namespace QTest {
template<>
char *toString(const Frame &frame)
{
    return qstrdup(QByteArray("Frame(" + QByteArray::number(frame.x) + ", " + QByteArray::number(frame.y) + ", "
                              + QByteArray::number(frame.width) + " x " + QByteArray::number(frame.height) + ")")
                       .constData());
}
} // namespace QTest

// A delegate with both hooks, steerable per test.
class Delegate : public QObject
{
    Q_OBJECT
public:
    QList<QWidget *> refused;
    QList<QWidget *> friends;
    Q_INVOKABLE bool f_shouldRelayoutObject(QWidget *view) const { return !refused.contains(view); }
    Q_INVOKABLE QList<QWidget *> f_alignedFriendsOfView(QWidget *) const { return friends; }
};

class WrongDelegate : public QObject
{
    Q_OBJECT
public:
    Q_INVOKABLE int f_shouldRelayoutObject(QWidget *) const { return 0x100; }
    Q_INVOKABLE QString f_alignedFriendsOfView(QWidget *) const { return QStringLiteral("label"); }
};

// A button whose class declares the tag, as a custom widget may.
class ClassTaggedButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(int tag READ tag CONSTANT)
public:
    using QPushButton::QPushButton;
    int tag() const { return KQRelayoutOptOutTag; }
};

class TestRelayoutRules : public QObject
{
    Q_OBJECT
private slots:
    void collision_data();
    void collision();
    void friends_data();
    void friends();
    void controlRule_data();
    void controlRule();
    void boxAndContentRules_data();
    void boxAndContentRules();
    void guard_data();
    void guard();
    void optOuts_data();
    void optOuts();
    void widgets();
    void badInput();
};

void TestRelayoutRules::collision_data()
{
    QTest::addColumn<int>("maskA");
    QTest::addColumn<Frame>("a");
    QTest::addColumn<int>("maskB");
    QTest::addColumn<Frame>("b");
    QTest::addColumn<double>("gap");
    QTest::addColumn<bool>("moved");
    QTest::addColumn<Frame>("expectedA");
    QTest::addColumn<Frame>("expectedB");

    // Push right: both have a left strut; the one further right moves to gap past the other.
    QTest::newRow("push right") << 4 << f(20, 100) << 4 << f(110, 80) << 8.0 << true << f(20, 100) << f(128, 80);
    QTest::newRow("push right, receiver further right") << 4 << f(110, 80) << 4 << f(20, 100) << 8.0 << true
                                                      << f(128, 80) << f(20, 100);
    QTest::newRow("push right stretches a sizable view with a right strut")
        << 4 << f(20, 100) << 2 << f(110, 80) << 8.0 << true << f(20, 100) << f(128, 62);
    QTest::newRow("push right moves a sizable view whose right margin is flexible")
        << 4 << f(20, 100) << 6 << f(110, 80) << 8.0 << true << f(20, 100) << f(128, 80);
    QTest::newRow("push right tie: the receiver moves") << 4 << f(20, 50) << 4 << f(20, 60) << 8.0 << true
                                                        << f(88, 50) << f(20, 60);
    QTest::newRow("zero gap: pushed views touch") << 4 << f(20, 100) << 4 << f(110, 80) << 0.0 << true
                                                  << f(20, 100) << f(120, 80);
    // Push left: a flexible left margin on either side, right struts on both.
    QTest::newRow("push left") << 1 << f(200, 100) << 1 << f(280, 100) << 8.0 << true << f(172, 100)
                               << f(280, 100);
    QTest::newRow("push left, mixed margins") << 0 << f(280, 100) << 1 << f(200, 100) << 8.0 << true
                                              << f(280, 100) << f(172, 100);
    QTest::newRow("push left tie: the other one moves") << 1 << f(200, 100) << 1 << f(250, 50) << 8.0 << true
                                                        << f(200, 100) << f(142, 50);
    QTest::newRow("push left stretches, keeping the left edge") << 1 << f(200, 100) << 2 << f(100, 110) << 8.0
                                                                << true << f(200, 100) << f(100, 92);
    QTest::newRow("push left refused: a flexible right margin") << 1 << f(200, 100) << 4 << f(250, 100) << 8.0
                                                                << false << f(200, 100) << f(250, 100);
    QTest::newRow("push left refused: flexible on both sides") << 5 << f(200, 100) << 1 << f(250, 100) << 8.0
                                                               << false << f(200, 100) << f(250, 100);
    // Shifts under one point are jitter; one point is not.
    QTest::newRow("dead band right") << 4 << f(0, 100) << 4 << f(99.5, 50) << 0.0 << false << f(0, 100)
                                     << f(99.5, 50);
    QTest::newRow("one point moves") << 4 << f(0, 100) << 4 << f(99, 50) << 0.0 << true << f(0, 100) << f(100, 50);
    QTest::newRow("dead band left") << 1 << f(100, 50) << 1 << f(149.1, 50) << 0.0 << false << f(100, 50)
                                    << f(149.1, 50);
    // A stretch past the view's width leaves nothing of it, at its far edge.
    QTest::newRow("stretch to nothing") << 4 << f(0, 100) << 2 << f(10, 30) << 8.0 << true << f(0, 100)
                                        << f(40, 0);
}

void TestRelayoutRules::collision()
{
    QFETCH(int, maskA);
    QFETCH(Frame, a);
    QFETCH(int, maskB);
    QFETCH(Frame, b);
    QFETCH(double, gap);
    QFETCH(bool, moved);
    QFETCH(Frame, expectedA);
    QFETCH(Frame, expectedB);
    std::vector<View> level{view(a, maskA), view(b, maskB)};
    Outcome outcome;
    QCOMPARE(resolveCollision(level, 0, 1, exact(gap), &outcome), moved);
    QCOMPARE(level[0].frame, expectedA);
    QCOMPARE(level[1].frame, expectedB);
    QCOMPARE(outcome.emptied.size(), std::size_t(level[1].frame.width == 0 && moved ? 1 : 0));
}

void TestRelayoutRules::friends_data()
{
    QTest::addColumn<int>("friendMask");
    QTest::addColumn<bool>("listsMover");
    QTest::addColumn<Frame>("expectedFriend");

    // The friend sits on another row: it moves only because the mover does.
    QTest::newRow("fixed friend moves by the shift") << 4 << false << f(128, 80, 40);
    QTest::newRow("sizable friend stretches") << 2 << false << f(128, 62, 40);
    QTest::newRow("mover listed among its friends moves once") << 4 << true << f(128, 80, 40);
}

void TestRelayoutRules::friends()
{
    QFETCH(int, friendMask);
    QFETCH(bool, listsMover);
    QFETCH(Frame, expectedFriend);
    std::vector<View> level{view(f(20, 100), 4), view(f(110, 80), 4), view(f(110, 80, 40), friendMask)};
    level[1].friends = listsMover ? std::vector<std::size_t>{2, 1} : std::vector<std::size_t>{2};
    QVERIFY(resolveCollision(level, 0, 1, exact()));
    QCOMPARE(level[1].frame, f(128, 80));
    QCOMPARE(level[2].frame, expectedFriend);
    QCOMPARE(level[0].frame, f(20, 100));
}

void TestRelayoutRules::controlRule_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<bool>("participates");
    QTest::addColumn<double>("natural");
    QTest::addColumn<Frame>("expected");
    QTest::addColumn<Frame>("expectedSameEdgeFriend");
    QTest::addColumn<Frame>("expectedSameWidthFriend");

    const Frame start = f(100, 80, 10, 24);
    // Friends: one sharing the left edge (another width), one sharing the width (another x).
    QTest::newRow("grows right") << 4 << true << 96.0 << f(100, 96, 10, 24) << f(100, 50, 40) << f(300, 96, 70);
    QTest::newRow("grows left when anchored right") << 1 << true << 96.0 << f(84, 96, 10, 24) << f(84, 50, 40)
                                                    << f(300, 96, 70);
    QTest::newRow("flexible both sides grows right") << 5 << true << 96.0 << f(100, 96, 10, 24) << f(100, 50, 40)
                                                     << f(300, 96, 70);
    QTest::newRow("never narrower") << 4 << true << 60.0 << start << f(100, 50, 40) << f(300, 80, 70);
    QTest::newRow("pinned on both sides stays") << 0 << true << 96.0 << start << f(100, 50, 40) << f(300, 80, 70);
    QTest::newRow("opted out stays") << 4 << false << 96.0 << start << f(100, 50, 40) << f(300, 80, 70);
}

void TestRelayoutRules::controlRule()
{
    QFETCH(int, mask);
    QFETCH(bool, participates);
    QFETCH(double, natural);
    QFETCH(Frame, expected);
    QFETCH(Frame, expectedSameEdgeFriend);
    QFETCH(Frame, expectedSameWidthFriend);
    std::vector<View> level{view(f(100, 80, 10, 24), mask, Kind::Control), view(f(100, 50, 40), 4),
                            view(f(300, 80, 70), 4), view(f(101, 81, 100), 4)};
    level[0].participates = participates;
    level[0].naturalWidth = natural;
    level[0].friends = {1, 2, 3};
    expandToFitContent(level, 0, exact());
    QCOMPARE(level[0].frame, expected);
    QCOMPARE(level[1].frame, expectedSameEdgeFriend);
    QCOMPARE(level[2].frame, expectedSameWidthFriend);
    QCOMPARE(level[3].frame, f(101, 81, 100)); // shares neither: untouched
}

void TestRelayoutRules::boxAndContentRules_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<bool>("contentView");
    QTest::addColumn<bool>("tagged");
    QTest::addColumn<Frame>("frame");
    QTest::addColumn<QList<Frame>>("children");
    QTest::addColumn<Frame>("expected");

    const QList<Frame> reach250{f(10, 240, 20, 20), f(30, 100, 50, 20)};
    QTest::newRow("box widens to hold its content") << int(Kind::Box) << false << false << f(5, 200, 5, 120)
                                                    << reach250 << f(5, 270, 5, 120);
    QTest::newRow("wide box keeps its width") << int(Kind::Box) << false << false << f(5, 400, 5, 120) << reach250
                                              << f(5, 400, 5, 120);
    QTest::newRow("empty box left alone") << int(Kind::Box) << false << false << f(5, 100, 5, 120) << QList<Frame>{}
                                          << f(5, 100, 5, 120);
    const QList<Frame> span{f(10, 100, 10, 30), f(300, 90, 250, 40), f(50, 0, 900, 0)};
    QTest::newRow("content view shrinks to its content") << int(Kind::Plain) << true << false << f(0, 500, 0, 400)
                                                         << span << f(0, 390, 0, 290);
    QTest::newRow("content view grows to its content") << int(Kind::Plain) << true << false << f(0, 200, 0, 100)
                                                       << span << f(0, 390, 0, 290);
    QTest::newRow("tagged content view keeps its size") << int(Kind::Plain) << true << true << f(0, 500, 0, 400)
                                                        << span << f(0, 500, 0, 400);
    QTest::newRow("other views keep their size") << int(Kind::Plain) << false << false << f(0, 500, 0, 400) << span
                                                 << f(0, 500, 0, 400);
}

void TestRelayoutRules::boxAndContentRules()
{
    QFETCH(int, kind);
    QFETCH(bool, contentView);
    QFETCH(bool, tagged);
    QFETCH(Frame, frame);
    QFETCH(QList<Frame>, children);
    QFETCH(Frame, expected);
    std::vector<View> level{view(frame, 4, Kind(kind))};
    level[0].contentView = contentView;
    level[0].optOutTag = tagged;
    for (const Frame &child : children)
        level[0].children.push_back(view(child, 4));
    const Frame bounds = minFrameSize(level[0]);
    expandToFitContent(level, 0, exact());
    QCOMPARE(level[0].frame, expected);
    // The minimum size adds the 20-point margin except for a content view.
    if (!children.isEmpty())
        QCOMPARE(bounds.width, contentView ? 390.0 : (kind == int(Kind::Box) ? 250.0 : 390.0) + 20.0);
}

void TestRelayoutRules::guard_data()
{
    QTest::addColumn<QList<Frame>>("frames");
    QTest::addColumn<QList<int>>("masks");
    QTest::addColumn<bool>("friendsLoop");
    QTest::addColumn<bool>("settles");

    // Pushed right by A, B collides with right-anchored C, which pushes it back left into A.
    QTest::newRow("cycling trio") << QList<Frame>{f(0, 100), f(50, 100), f(150, 100)} << QList<int>{0, 0, 1}
                                  << false << false;
    // Two overlapping friends move together and drift right for ever.
    QTest::newRow("drifting friends") << QList<Frame>{f(0, 100), f(50, 100)} << QList<int>{4, 4} << true << false;
    // A chain that needs a sweep per link, in the worst subview order.
    QList<Frame> chain;
    QList<int> masks;
    for (int i = 11; i >= 0; --i) {
        chain << f(i * 10, 50);
        masks << 4;
    }
    QTest::newRow("long chain settles") << chain << masks << false << true;
    // Rows out of top order around a frame whose y is not a number: the two rows still meet.
    QTest::newRow("unordered rows around a frame without a y")
        << QList<Frame>{f(0, 100, 10), Frame{300, qQNaN(), 50, 20}, f(50, 100, 0)} << QList<int>{4, 4, 4} << false
        << true;
}

void TestRelayoutRules::guard()
{
    QFETCH(QList<Frame>, frames);
    QFETCH(QList<int>, masks);
    QFETCH(bool, friendsLoop);
    QFETCH(bool, settles);
    std::vector<View> level;
    for (int i = 0; i < frames.size(); ++i)
        level.push_back(view(frames[i], masks[i]));
    if (friendsLoop)
        level[1].friends = {0};
    std::vector<View> unguardedLevel = level;

    const SettleResult guarded = settle(level, exact());
    QCOMPARE(guarded.settled, settles);
    QVERIFY(guarded.sweeps <= sweepLimit(level.size()));

    Settings unguarded = exact();
    unguarded.guarded = false;
    unguarded.unguardedLimit = 100 * sweepLimit(level.size());
    const SettleResult reference = settle(unguardedLevel, unguarded);
    QCOMPARE(reference.settled, settles);
    if (settles) {
        // Settling levels are untouched by the guard: same sweeps, same frames.
        QCOMPARE(guarded.sweeps, reference.sweeps);
        for (std::size_t i = 0; i < level.size(); ++i) {
            // Only x and width ever change (a y that is not a number never equals itself).
            QCOMPARE(level[i].frame.x, unguardedLevel[i].frame.x);
            QCOMPARE(level[i].frame.width, unguardedLevel[i].frame.width);
            for (std::size_t j = i + 1; j < level.size(); ++j)
                QVERIFY(!intersects(level[i].frame, level[j].frame));
        }
    }
}

void TestRelayoutRules::optOuts_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("expected");

    QTest::newRow("push button") << "button" << true;
    QTest::newRow("tag 1337") << "tagged" << false;
    QTest::newRow("tag 1337 declared by the class") << "class tagged" << false;
    QTest::newRow("horizontal line") << "hline" << false;
    QTest::newRow("vertical line") << "vline" << false;
    QTest::newRow("marked group box") << "marked" << false;
    QTest::newRow("translated marker is not the marker") << "marked lower case" << true;
    QTest::newRow("scroll bar") << "scrollbar" << false;
    QTest::newRow("splitter") << "splitter" << false;
    QTest::newRow("scroll area viewport") << "viewport" << false;
    QTest::newRow("refused by the delegate") << "refused" << false;
}

void TestRelayoutRules::optOuts()
{
    QFETCH(QString, kind);
    QFETCH(bool, expected);
    QWidget window;
    Delegate delegate;
    kq_setWindowDelegate(&window, &delegate);
    QWidget *subject = nullptr;
    if (kind == QLatin1String("tagged") || kind == QLatin1String("button") || kind == QLatin1String("refused")) {
        subject = new QPushButton(QStringLiteral("OK"), &window);
        if (kind == QLatin1String("tagged"))
            f_setTag(subject, KQRelayoutOptOutTag);
        if (kind == QLatin1String("refused"))
            delegate.refused << subject;
    } else if (kind == QLatin1String("class tagged")) {
        subject = new ClassTaggedButton(QStringLiteral("OK"), &window);
    } else if (kind.endsWith(QLatin1String("line"))) {
        auto *line = new QFrame(&window);
        line->setFrameShape(kind == QLatin1String("hline") ? QFrame::HLine : QFrame::VLine);
        subject = line;
    } else if (kind.startsWith(QLatin1String("marked"))) {
        subject = new QGroupBox(kind == QLatin1String("marked") ? QString::fromLatin1(KQNoRelayoutTitle)
                                                                : QString::fromLatin1(KQNoRelayoutTitle).toLower(),
                                &window);
    } else if (kind == QLatin1String("scrollbar")) {
        subject = new QScrollBar(&window);
    } else if (kind == QLatin1String("splitter")) {
        subject = new QSplitter(&window);
    } else {
        subject = (new QScrollArea(&window))->viewport();
    }
    QCOMPARE(f_shouldResolveCollision(subject), expected);

    // What is left out is never pushed, however much it overlaps.
    auto *neighbour = new QPushButton(QStringLiteral("Neighbour"), subject->parentWidget());
    subject->setGeometry(10, 10, 100, 30);
    neighbour->setGeometry(60, 10, 100, 30);
    QCOMPARE(f_resolveCollisionWith(neighbour, subject), expected);
}

void TestRelayoutRules::widgets()
{
    // A window drawn for short texts: a label that grows into its field, an
    // island with its own layout, and a right-anchored button pair.
    QWidget window;
    Delegate delegate;
    kq_setWindowDelegate(&window, &delegate);
    window.resize(600, 400);
    auto *label = new QLabel(QStringLiteral("A label whose text is much longer than its frame"), &window);
    label->setGeometry(10, 10, 40, 20);
    auto *field = new QLineEdit(&window);
    field->setGeometry(58, 10, 100, 20);
    auto *below = new QLineEdit(&window);
    below->setGeometry(58, 40, 100, 20);
    auto *island = new QWidget(&window);
    island->setGeometry(10, 100, 200, 60);
    auto *inner = new QPushButton(QStringLiteral("A button inside a layout, with a long title"), island);
    (new QVBoxLayout(island))->addWidget(inner);
    island->layout()->setGeometry(island->rect());
    const QRect innerBefore = inner->geometry();
    auto *cancel = new QPushButton(QStringLiteral("Cancel the whole operation"), &window);
    cancel->setGeometry(300, 200, 60, 30);
    auto *ok = new QPushButton(QStringLiteral("OK"), &window);
    ok->setGeometry(368, 200, 100, 30);
    for (QWidget *w : {static_cast<QWidget *>(cancel), static_cast<QWidget *>(ok)})
        f_setAutoresizingMask(w, KQAutoresizingFlexibleLeftMargin);
    delegate.friends = {below};

    f_relayout(&window);

    QCOMPARE(label->width(), label->sizeHint().width());
    QCOMPARE(field->x(), label->geometry().right() + 1 + 8);
    QCOMPARE(below->x(), field->x()); // the field's friend moved with it
    QCOMPARE(inner->geometry(), innerBefore);
    QCOMPARE(cancel->geometry().right(), 359); // grown leftwards, right edge kept
    QCOMPARE(ok->geometry(), QRect(368, 200, 100, 30));
    // The window is the content's far corner, smaller than it was.
    QCOMPARE(window.size(), QSize(468, 230));
    const QList<QRect> after{label->geometry(), field->geometry(), below->geometry(), cancel->geometry()};
    f_relayout(&window);
    QCOMPARE((QList<QRect>{label->geometry(), field->geometry(), below->geometry(), cancel->geometry()}), after);

    // A window whose pushes never settle is stopped, reported and left as it is.
    QWidget cycling;
    cycling.setWindowTitle(QStringLiteral("Cycling"));
    QList<QWidget *> trio;
    const int xs[] = {0, 50, 150};
    const int masks[] = {0, 0, 1};
    for (int i = 0; i < 3; ++i) {
        trio << new QWidget(&cycling);
        trio.last()->setGeometry(xs[i], 0, 100, 20);
        f_setAutoresizingMask(trio.last(), masks[i]);
    }
    MessageCapture capture;
    f_relayout(&cycling);
    const QByteArray report = capture.text();
    QCOMPARE(report.count("never settle"), 1);
    QVERIFY(report.contains("Cycling"));
}

void TestRelayoutRules::badInput()
{
    QWidget window;
    auto *a = new QPushButton(QStringLiteral("A"), &window);
    a->setGeometry(0, 0, 100, 20);
    auto *b = new QPushButton(QStringLiteral("B"), &window);
    b->setGeometry(50, 0, 100, 20);
    QWidget elsewhere;
    auto *stranger = new QPushButton(QStringLiteral("C"), &elsewhere);
    stranger->setGeometry(0, 30, 100, 20);

    {
        MessageCapture capture;
        f_relayout(nullptr);
        QCOMPARE(f_resolveCollisionWith(a, a), false);
        QCOMPARE(f_resolveCollisionWith(a, stranger), false);
        QCOMPARE(f_resolveCollisionWith(nullptr, b), false);
        QVERIFY(f_minFrameSize(nullptr).isEmpty());
        RelayoutSetGapSize_ZL(-3);
        RelayoutSetGapSize_ZL(qQNaN());
        QCOMPARE(capture.text().count("Assertion failed"), 7);
    }
    QCOMPARE(b->geometry(), QRect(50, 0, 100, 20));
    QVERIFY(f_resolveCollisionWith(a, b)); // the gap is still 8
    QCOMPARE(b->x(), 108);

    // Friends that are not live siblings are reported and dropped; answers of the wrong type are ignored.
    Delegate delegate;
    kq_setWindowDelegate(&window, &delegate);
    auto *doomed = new QPushButton(&window);
    delegate.friends = {stranger, doomed, nullptr, b};
    delete doomed;
    {
        MessageCapture capture;
        QCOMPARE(f_alignedFriends(a), QList<QWidget *>{b});
        QCOMPARE(capture.text().count("not one of its siblings"), 3);
    }
    WrongDelegate wrong;
    kq_setWindowDelegate(&window, &wrong);
    MessageCapture capture;
    QVERIFY(f_shouldResolveCollision(a));
    QVERIFY(f_alignedFriends(a).isEmpty());
    QCOMPARE(capture.text().count("is ignored"), 2);
}

QTEST_MAIN(TestRelayoutRules)
#include "tst_relayoutrules.moc"
