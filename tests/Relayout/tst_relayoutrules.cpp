#include "KQRelayoutRules_p.h"
#include "MessageCapture.h"

#include <TarnCommon/KQWindowDelegate.h>
#include <TarnCommon/Relayout_ZL.h>

#include <QtTest/QtTest>
#include <QtWidgets/QtWidgets>

using namespace KQRelayout;

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

// Siblings a and b collide; the frames they end with.
struct Collision
{
    int maskA;
    Frame a;
    int maskB;
    Frame b;
    double gap;
    Frame expectedA, expectedB;
};

} // namespace

Q_DECLARE_METATYPE(KQRelayout::Frame)
Q_DECLARE_METATYPE(Collision)


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


class TestRelayoutRules : public QObject
{
    Q_OBJECT
private slots:
    void collision_data()
    {
        QTest::addColumn<Collision>("c");
        // Push right: both have a left strut; the one further right moves to gap past the other.
        QTest::newRow("push right") << Collision{4, f(20, 100), 4, f(110, 80), 8, f(20, 100), f(128, 80)};
        QTest::newRow("push right, receiver further right") << Collision{4, f(110, 80), 4, f(20, 100), 8, f(128, 80), f(20, 100)};
        QTest::newRow("push right stretches a sizable view with a right strut")
            << Collision{4, f(20, 100), 2, f(110, 80), 8, f(20, 100), f(128, 62)};
        QTest::newRow("push right tie: the receiver moves") << Collision{4, f(20, 50), 4, f(20, 60), 8, f(88, 50), f(20, 60)};
        // Push left: a flexible left margin on either side, right struts on both.
        QTest::newRow("push left") << Collision{1, f(200, 100), 1, f(280, 100), 8, f(172, 100), f(280, 100)};
        QTest::newRow("push left stretches, keeping the left edge")
            << Collision{1, f(200, 100), 2, f(100, 110), 8, f(200, 100), f(100, 92)};
        QTest::newRow("push left refused: a flexible right margin") << Collision{1, f(200, 100), 4, f(250, 100), 8, f(200, 100), f(250, 100)};
        // Shifts under one point are jitter; one point is not.
        QTest::newRow("dead band right") << Collision{4, f(0, 100), 4, f(99.5, 50), 0, f(0, 100), f(99.5, 50)};
        QTest::newRow("one point moves") << Collision{4, f(0, 100), 4, f(99, 50), 0, f(0, 100), f(100, 50)};
        // A stretch past the view's width leaves nothing of it, at its far edge.
        QTest::newRow("stretch to nothing") << Collision{4, f(0, 100), 2, f(10, 30), 8, f(0, 100), f(40, 0)};
    }

    void collision()
    {
        QFETCH(Collision, c);
        std::vector<View> level{view(c.a, c.maskA), view(c.b, c.maskB)};
        Outcome outcome;
        QCOMPARE(resolveCollision(level, 0, 1, exact(c.gap), &outcome), !(c.expectedA == c.a && c.expectedB == c.b));
        QCOMPARE(level[0].frame, c.expectedA);
        QCOMPARE(level[1].frame, c.expectedB);
        QCOMPARE(outcome.emptied.size(), std::size_t(c.expectedB.width == 0 ? 1 : 0));
    }

    // The friend sits on another row: it moves only because the mover does.
    void friends_data()
    {
        QTest::addColumn<int>("friendMask");
        QTest::addColumn<bool>("listsMover");
        QTest::addColumn<Frame>("expectedFriend");
        QTest::newRow("fixed friend moves by the shift") << 4 << false << f(128, 80, 40);
        QTest::newRow("mover listed among its friends moves once") << 4 << true << f(128, 80, 40);
    }

    void friends()
    {
        QFETCH(int, friendMask);
        QFETCH(bool, listsMover);
        QFETCH(Frame, expectedFriend);
        std::vector<View> level{view(f(20, 100), 4), view(f(110, 80), 4), view(f(110, 80, 40), friendMask)};
        level[1].friends = listsMover ? std::vector<std::size_t>{2, 1} : std::vector<std::size_t>{2};
        QVERIFY(resolveCollision(level, 0, 1, exact()));
        QCOMPARE(level[0].frame, f(20, 100));
        QCOMPARE(level[1].frame, f(128, 80));
        QCOMPARE(level[2].frame, expectedFriend);
    }

    // Friends: one sharing the left edge (another width), one sharing the width (another x), one sharing neither.
    void controlRule_data()
    {
        QTest::addColumn<int>("mask");
        QTest::addColumn<bool>("participates");
        QTest::addColumn<double>("natural");
        QTest::addColumn<QList<Frame>>("expected"); // the control, then its friends
        const Frame sameEdge = f(100, 50, 40), sameWidth = f(300, 80, 70), neither = f(101, 81, 100);
        const QList<Frame> unchanged{f(100, 80, 10, 24), sameEdge, sameWidth, neither};
        const QList<Frame> grownRight{f(100, 96, 10, 24), sameEdge, f(300, 96, 70), neither};
        QTest::newRow("grows right") << 4 << true << 96.0 << grownRight;
        QTest::newRow("grows left when anchored right") << 1 << true << 96.0 << QList<Frame>{f(84, 96, 10, 24), f(84, 50, 40), f(300, 96, 70), neither};
        QTest::newRow("never narrower") << 4 << true << 60.0 << unchanged;
        QTest::newRow("opted out stays") << 4 << false << 96.0 << unchanged;
    }

    void controlRule()
    {
        QFETCH(int, mask);
        QFETCH(bool, participates);
        QFETCH(double, natural);
        QFETCH(QList<Frame>, expected);
        std::vector<View> level{view(f(100, 80, 10, 24), mask, Kind::Control), view(f(100, 50, 40), 4),
                                view(f(300, 80, 70), 4), view(f(101, 81, 100), 4)};
        level[0].participates = participates;
        level[0].naturalWidth = natural;
        level[0].friends = {1, 2, 3};
        expandToFitContent(level, 0, exact());
        for (int i = 0; i < 4; ++i)
            QCOMPARE(level[i].frame, expected[i]);
    }

    // The minimum size adds the 20-point margin except for a content view.
    void boxAndContentRules_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("contentView");
        QTest::addColumn<bool>("tagged");
        QTest::addColumn<Frame>("frame");
        QTest::addColumn<QList<Frame>>("children");
        QTest::addColumn<Frame>("expected");
        QTest::addColumn<double>("minWidth");
        const int box = int(Kind::Box), plain = int(Kind::Plain);
        const QList<Frame> reach250{f(10, 240, 20, 20), f(30, 100, 50, 20)};
        const QList<Frame> span{f(10, 100, 10, 30), f(300, 90, 250, 40), f(50, 0, 900, 0)};
        QTest::newRow("box widens to hold its content") << box << false << false << f(5, 200, 5, 120) << reach250 << f(5, 270, 5, 120) << 270.0;
        QTest::newRow("empty box left alone") << box << false << false << f(5, 100, 5, 120) << QList<Frame>{} << f(5, 100, 5, 120) << 0.0;
        QTest::newRow("content view shrinks to its content") << plain << true << false << f(0, 500, 0, 400) << span << f(0, 390, 0, 290) << 390.0;
        QTest::newRow("tagged content view keeps its size") << plain << true << true << f(0, 500, 0, 400) << span << f(0, 500, 0, 400) << 390.0;
    }

    void boxAndContentRules()
    {
        QFETCH(int, kind);
        QFETCH(bool, contentView);
        QFETCH(bool, tagged);
        QFETCH(Frame, frame);
        QFETCH(QList<Frame>, children);
        QFETCH(Frame, expected);
        QFETCH(double, minWidth);
        std::vector<View> level{view(frame, 4, Kind(kind))};
        level[0].contentView = contentView;
        level[0].optOutTag = tagged;
        for (const Frame &child : children)
            level[0].children.push_back(view(child, 4));
        if (!children.isEmpty())
            QCOMPARE(minFrameSize(level[0]).width, minWidth);
        expandToFitContent(level, 0, exact());
        QCOMPARE(level[0].frame, expected);
    }

    void guard_data()
    {
        QTest::addColumn<QList<Frame>>("frames");
        QTest::addColumn<QList<int>>("masks");
        QTest::addColumn<bool>("friendsLoop");
        QTest::addColumn<bool>("settles");
        // Pushed right by A, B collides with right-anchored C, which pushes it back left into A.
        QTest::newRow("cycling trio") << QList<Frame>{f(0, 100), f(50, 100), f(150, 100)} << QList<int>{0, 0, 1} << false << false;
        // Two overlapping friends move together and drift right for ever.
        QTest::newRow("drifting friends") << QList<Frame>{f(0, 100), f(50, 100)} << QList<int>{4, 4} << true << false;
        // A chain that needs a sweep per link, in the worst subview order.
        QList<Frame> chain;
        for (int i = 11; i >= 0; --i)
            chain << f(i * 10, 50);
        QTest::newRow("long chain settles") << chain << QList<int>(12, 4) << false << true;
        // Rows out of top order around a frame whose y is not a number: the two rows still meet.
        QTest::newRow("unordered rows around a frame without a y")
            << QList<Frame>{f(0, 100, 10), Frame{300, qQNaN(), 50, 20}, f(50, 100, 0)} << QList<int>{4, 4, 4} << false << true;
    }

    void guard()
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
        const SettleResult result = settle(level, exact());
        QCOMPARE(result.settled, settles);
        QVERIFY(result.sweeps <= sweepLimit(level.size()));
        for (std::size_t i = 0; settles && i < level.size(); ++i) {
            for (std::size_t j = i + 1; j < level.size(); ++j)
                QVERIFY(!intersects(level[i].frame, level[j].frame));
        }
    }

    // What is left out is never pushed, however much it overlaps.
    void optOuts_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("expected");
        QTest::newRow("push button") << "button" << true;
        QTest::newRow("tag 1337") << "tagged" << false;
        QTest::newRow("horizontal line") << "hline" << false;
        QTest::newRow("marked group box") << "marked" << false;
        QTest::newRow("scroll bar") << "scrollbar" << false;
        QTest::newRow("refused by the delegate") << "refused" << false;
    }

    void optOuts()
    {
        QFETCH(QString, kind);
        QFETCH(bool, expected);
        QWidget window;
        Delegate delegate;
        kq_setWindowDelegate(&window, &delegate);
        const auto make = [&]() -> QWidget * {
            const QString marker = QString::fromLatin1(KQNoRelayoutTitle);
            if (kind == "marked")
                return new QGroupBox(marker, &window);
            if (kind == "scrollbar")
                return new QScrollBar(&window);
            if (!kind.endsWith("line"))
                return new QPushButton(QStringLiteral("OK"), &window);
            auto *line = new QFrame(&window);
            line->setFrameShape(QFrame::HLine);
            return line;
        };
        QWidget *subject = make();
        if (kind == "tagged")
            f_setTag(subject, KQRelayoutOptOutTag);
        if (kind == "refused")
            delegate.refused << subject;
        QCOMPARE(f_shouldResolveCollision(subject), expected);
        auto *neighbour = new QPushButton(QStringLiteral("Neighbour"), subject->parentWidget());
        subject->setGeometry(10, 10, 100, 30);
        neighbour->setGeometry(60, 10, 100, 30);
        QCOMPARE(f_resolveCollisionWith(neighbour, subject), expected);
    }

    // A window drawn for short texts: a label that grows into its field, an
    // island with its own layout, and a right-anchored button pair.
    void widgets()
    {
        QWidget window;
        Delegate delegate;
        kq_setWindowDelegate(&window, &delegate);
        window.resize(600, 400);
        const auto place = [&window](QWidget *widget, QRect frame, QWidget *parent = nullptr) {
            widget->setParent(parent ? parent : &window);
            widget->setGeometry(frame);
            return widget;
        };
        QWidget *label = place(new QLabel(QStringLiteral("A label whose text is much longer than its frame")), {10, 10, 40, 20});
        QWidget *field = place(new QLineEdit, {58, 10, 100, 20});
        QWidget *below = place(new QLineEdit, {58, 40, 100, 20});
        QWidget *island = place(new QWidget, {10, 100, 200, 60});
        auto *inner = new QPushButton(QStringLiteral("A button inside a layout, with a long title"), island);
        (new QVBoxLayout(island))->addWidget(inner);
        island->layout()->setGeometry(island->rect());
        const QRect innerBefore = inner->geometry();
        QWidget *cancel = place(new QPushButton(QStringLiteral("Cancel the whole operation")), {300, 200, 60, 30});
        QWidget *ok = place(new QPushButton(QStringLiteral("OK")), {368, 200, 100, 30});
        f_setAutoresizingMask(cancel, KQAutoresizingFlexibleLeftMargin);
        f_setAutoresizingMask(ok, KQAutoresizingFlexibleLeftMargin);
        delegate.friends = {below};

        f_relayout(&window);
        QCOMPARE(label->width(), label->sizeHint().width());
        QCOMPARE(field->x(), label->geometry().right() + 1 + 8);
        QCOMPARE(below->x(), field->x()); // the field's friend moved with it
        QCOMPARE(inner->geometry(), innerBefore);
        QCOMPARE(cancel->geometry().right(), 359); // grown leftwards, right edge kept
        QCOMPARE(ok->geometry(), QRect(368, 200, 100, 30));
        QCOMPARE(window.size(), QSize(468, 230)); // the content's far corner, smaller than it was

        // A window whose pushes never settle is stopped, reported and left as it is.
        QWidget cycling;
        cycling.setWindowTitle(QStringLiteral("Cycling"));
        for (const auto &[x, mask] : std::initializer_list<std::pair<int, int>>{{0, 0}, {50, 0}, {150, 1}})
            f_setAutoresizingMask(place(new QWidget, {x, 0, 100, 20}, &cycling), mask);
        MessageCapture capture;
        f_relayout(&cycling);
        const QByteArray report = capture.text();
        QCOMPARE(report.count("never settle"), 1);
        QVERIFY(report.contains("Cycling"));
    }

    void badInput()
    {
        QWidget window, elsewhere;
        auto *a = new QPushButton(QStringLiteral("A"), &window);
        auto *b = new QPushButton(QStringLiteral("B"), &window);
        auto *stranger = new QPushButton(QStringLiteral("C"), &elsewhere);
        a->setGeometry(0, 0, 100, 20);
        b->setGeometry(50, 0, 100, 20);
        stranger->setGeometry(0, 30, 100, 20);
        {
            MessageCapture capture;
            f_relayout(nullptr);
            QVERIFY(!f_resolveCollisionWith(a, a));
            QVERIFY(!f_resolveCollisionWith(a, stranger));
            QVERIFY(!f_resolveCollisionWith(nullptr, b));
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
};

QTEST_MAIN(TestRelayoutRules)
#include "tst_relayoutrules.moc"
