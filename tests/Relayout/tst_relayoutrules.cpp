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

const Settings Exact{DefaultGap, false};

} // namespace

Q_DECLARE_METATYPE(KQRelayout::Frame)


class Delegate : public QObject
{
    Q_OBJECT
public:
    QList<QWidget *> refused;
    QList<QWidget *> friends;
    Q_INVOKABLE bool f_shouldRelayoutObject(QWidget *view) const { return !refused.contains(view); }
    Q_INVOKABLE QList<QWidget *> f_alignedFriendsOfView(QWidget *) const { return friends; }
};

// A class whose every object opts out.
class TaggedWidget : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int tag READ tag CONSTANT)
public:
    using QWidget::QWidget;
    int tag() const { return KQRelayoutOptOutTag; }
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
    // Pushes move views along their row only, so x and width tell the outcome.
    void settle_data()
    {
        QTest::addColumn<QList<Frame>>("frames");
        QTest::addColumn<QList<int>>("masks");
        QTest::addColumn<bool>("friendsLoop");
        QTest::addColumn<bool>("settles");
        QTest::addColumn<QList<Frame>>("expected");
        QTest::newRow("push right") << QList<Frame>{f(20, 100), f(110, 80)} << QList<int>{4, 4} << false << true
                                    << QList<Frame>{f(20, 100), f(128, 80)};
        QTest::newRow("push left") << QList<Frame>{f(200, 100), f(280, 100)} << QList<int>{1, 1} << false << true
                                   << QList<Frame>{f(172, 100), f(280, 100)};
        QTest::newRow("stretch to nothing") << QList<Frame>{f(0, 100), f(10, 30)} << QList<int>{4, 2} << false << true
                                            << QList<Frame>{f(0, 100), f(40, 0)};
        QTest::newRow("stretch") << QList<Frame>{f(0, 100), f(90, 100)} << QList<int>{4, 2} << false << true
                                 << QList<Frame>{f(0, 100), f(108, 82)};
        QTest::newRow("infinitely wide pushes nothing") << QList<Frame>{f(0, qInf()), f(50, 80)} << QList<int>{4, 4} << false
                                                        << true << QList<Frame>{f(0, qInf()), f(50, 80)};
        // Rows out of top order around a frame whose y is not a number: the two rows still meet.
        QTest::newRow("unordered rows around a frame without a y")
            << QList<Frame>{f(0, 100, 10), Frame{300, qQNaN(), 50, 20}, f(50, 100, 0)} << QList<int>{4, 4, 4} << false << true
            << QList<Frame>{f(0, 100), f(300, 50), f(108, 100)};
        // Two overlapping friends move together and drift right for ever.
        QTest::newRow("drifting friends") << QList<Frame>{f(0, 100), f(50, 100)} << QList<int>{4, 4} << true << false
                                          << QList<Frame>{};
    }

    void settle()
    {
        QFETCH(QList<Frame>, frames);
        QFETCH(QList<int>, masks);
        QFETCH(bool, friendsLoop);
        QFETCH(bool, settles);
        QFETCH(QList<Frame>, expected);
        std::vector<View> level;
        for (int i = 0; i < frames.size(); ++i)
            level.push_back(view(frames[i], masks[i]));
        if (friendsLoop)
            level[1].friends = {0};
        Outcome outcome;
        const SettleResult result = KQRelayout::settle(level, Exact, &outcome);
        QCOMPARE(result.settled, settles);
        QVERIFY(result.sweeps <= sweepLimit(level.size()));
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(level[i].frame.x, expected[i].x);
            QCOMPARE(level[i].frame.width, expected[i].width);
        }
        QCOMPARE(outcome.emptied.size(), std::size_t(std::ranges::count(expected, 0.0, &Frame::width)));
    }

    // A control grows to its content; friends sharing its left edge or width keep sharing it.
    void controlRule()
    {
        std::vector<View> level{view(f(100, 80, 10, 24), 4, Kind::Control), view(f(100, 50, 40), 4), view(f(300, 80, 70), 4),
                                view(f(101, 81, 100), 4)};
        level[0].naturalWidth = 96;
        level[0].friends = {1, 2, 3};
        expandToFitContent(level, 0, Exact);
        const QList<Frame> expected{f(100, 96, 10, 24), f(100, 50, 40), f(300, 96, 70), f(101, 81, 100)};
        for (int i = 0; i < 4; ++i)
            QCOMPARE(level[i].frame, expected[i]);
        // Held by both margins, a control keeps the width its window gives it.
        std::vector<View> pinned{view(f(100, 80, 10, 24), 0, Kind::Control)};
        pinned[0].naturalWidth = 96;
        expandToFitContent(pinned, 0, Exact);
        QCOMPARE(pinned[0].frame.width, 80.0);
    }

    // A box adds the 20-point margin to its content; a tagged content view keeps its size.
    void boxAndContentRules_data()
    {
        QTest::addColumn<int>("kind"); // the plain view is a tagged content view
        QTest::addColumn<Frame>("frame");
        QTest::addColumn<QList<Frame>>("children");
        QTest::addColumn<Frame>("expected");
        QTest::addColumn<double>("minWidth");
        const int box = int(Kind::Box), plain = int(Kind::Plain);
        const QList<Frame> reach250{f(10, 240, 20, 20), f(30, 100, 50, 20)};
        const QList<Frame> span{f(10, 100, 10, 30), f(300, 90, 250, 40), f(50, 0, 900, 0)};
        QTest::newRow("box widens to hold its content") << box << f(5, 200, 5, 120) << reach250 << f(5, 270, 5, 120) << 270.0;
        QTest::newRow("empty box left alone") << box << f(5, 100, 5, 120) << QList<Frame>{} << f(5, 100, 5, 120) << 0.0;
        QTest::newRow("tagged content view keeps its size") << plain << f(0, 500, 0, 400) << span << f(0, 500, 0, 400) << 390.0;
    }

    void boxAndContentRules()
    {
        QFETCH(int, kind);
        QFETCH(Frame, frame);
        QFETCH(QList<Frame>, children);
        QFETCH(Frame, expected);
        QFETCH(double, minWidth);
        std::vector<View> level{view(frame, 4, Kind(kind))};
        level[0].contentView = Kind(kind) == Kind::Plain;
        level[0].optOutTag = level[0].contentView;
        for (const Frame &child : children)
            level[0].children.push_back(view(child, 4));
        if (!children.isEmpty())
            QCOMPARE(minFrameSize(level[0]).width, minWidth);
        expandToFitContent(level, 0, Exact);
        QCOMPARE(level[0].frame, expected);
    }

    // What is left out is never pushed, however much it overlaps.
    void optOuts_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("expected");
        QTest::newRow("push button") << "button" << true;
        QTest::newRow("tag on the object") << "tagged" << false;
        QTest::newRow("tag on the class") << "class" << false;
        QTest::newRow("kind of widget skipped") << "scrollbar" << false;
        QTest::newRow("refused by the delegate") << "refused" << false;
    }

    void optOuts()
    {
        QFETCH(QString, kind);
        QFETCH(bool, expected);
        QWidget window;
        Delegate delegate;
        kq_setWindowDelegate(&window, &delegate);
        QWidget *subject = new QPushButton(QStringLiteral("OK"), &window);
        if (kind == "class")
            subject = new TaggedWidget(&window);
        if (kind == "scrollbar")
            subject = new QScrollBar(&window);
        if (kind == "tagged")
            f_setTag(subject, KQRelayoutOptOutTag);
        if (kind == "refused")
            delegate.refused << subject;
        QCOMPARE(f_shouldResolveCollision(subject), expected);
        auto *neighbour = new QPushButton(QStringLiteral("Neighbour"), &window);
        subject->setGeometry(10, 10, 100, 30);
        neighbour->setGeometry(60, 10, 100, 30);
        QCOMPARE(f_resolveCollisionWith(neighbour, subject), expected);
    }

    // Drawn for short texts: a label growing into its field, an island, a right-anchored pair.
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
        delegate.friends = {below, field}; // a mover listed among its own friends moves once

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
        QCOMPARE(capture.text().count("never settle"), 1);
        QVERIFY(capture.text().contains("Cycling"));
    }

    void badInput()
    {
        QWidget window, elsewhere;
        auto *a = new QPushButton(QStringLiteral("A"), &window);
        auto *b = new QPushButton(QStringLiteral("B"), &window);
        auto *stranger = new QPushButton(QStringLiteral("C"), &elsewhere);
        a->setGeometry(0, 0, 100, 20);
        b->setGeometry(50, 0, 100, 20);
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
