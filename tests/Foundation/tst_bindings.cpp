#include <TarnCommon/KQBindings.h>
#include <TarnCommon/KQObjectExtensions.h>

#include "MessageCapture.h"

#include <QtCore/QPointer>
#include <QtTest/QtTest>
#include <QtWidgets/QSlider>

// A model node: a number, a name, a child node and a map of settings.
class Node : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int number READ number WRITE setNumber NOTIFY numberChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(Node *child READ child WRITE setChild NOTIFY childChanged)
    Q_PROPERTY(QVariantMap settings READ settings WRITE setSettings NOTIFY settingsChanged)
    Q_PROPERTY(int fixed READ fixed CONSTANT)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    using QObject::QObject;
    int number() const { return m_number; }
    void setNumber(int n) { if (n != m_number) { m_number = n; Q_EMIT numberChanged(); } }
    QString name() const { return m_name; }
    void setName(const QString &n) { if (n != m_name) { m_name = n; Q_EMIT nameChanged(); } }
    Node *child() const { return m_child; }
    void setChild(Node *c) { if (c != m_child) { m_child = c; Q_EMIT childChanged(); } }
    QVariantMap settings() const { return m_settings; }
    void setSettings(const QVariantMap &s) { if (s != m_settings) { m_settings = s; Q_EMIT settingsChanged(); } }
    int fixed() const { return 1; }
    QVariant value() const { return m_value; }
    void setValue(const QVariant &v) { if (v != m_value) { m_value = v; Q_EMIT valueChanged(); } }

    Q_INVOKABLE QString greeting() { ++calls; return QStringLiteral("hi ") + m_name; }
    Q_INVOKABLE int twice(int n) { ++calls; return 2 * n; }
    Q_INVOKABLE void poke() { ++calls; }
    int calls = 0;

Q_SIGNALS:
    void numberChanged();
    void nameChanged();
    void childChanged();
    void settingsChanged();
    void valueChanged();

private:
    int m_number = 0;
    QString m_name;
    QPointer<Node> m_child;
    QVariantMap m_settings;
    QVariant m_value;
};

namespace {

// model (7, "root") -> child (3, "middle") -> grandchild (1, "leaf"); settings {zoom: 2, page: {width: 10}}
struct Tree
{
    Node root, middle, leaf;
    Tree()
    {
        root.setNumber(7);
        root.setName(QStringLiteral("root"));
        middle.setNumber(3);
        middle.setName(QStringLiteral("middle"));
        leaf.setNumber(1);
        leaf.setName(QStringLiteral("leaf"));
        root.setChild(&middle);
        middle.setChild(&leaf);
        root.setSettings({{QStringLiteral("zoom"), 2}, {QStringLiteral("page"), QVariantMap{{QStringLiteral("width"), 10}}}});
    }
};

const QString Value = QStringLiteral("value");

} // namespace

class TestBindings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void transformerChoice_data();
    void transformerChoice();
    void keyPaths_data();
    void keyPaths();
    void viewAndModelFollowEachOther();
    void lifetime_data();
    void lifetime();
    void cyclesEnd();
    void clone_data();
    void clone();
    void performSelector_data();
    void performSelector();
    void mapAndFilter_data();
    void mapAndFilter();
    void typedForms();
    void subpool();
};

void TestBindings::initTestCase()
{
    KQValueTransformer::setValueTransformer(
        KQValueTransformer::create([](const QVariant &v) { return QVariant(v.toInt() - 1); },
                                   [](const QVariant &v) { return QVariant(v.toInt() + 1); }),
        QStringLiteral("Plus1"));
}

enum ObjectOption { NoObject, Times10, NullObject, NoReverse, InvalidReverse, NotATransformer };

void TestBindings::transformerChoice_data()
{
    QTest::addColumn<int>("object");
    QTest::addColumn<QVariant>("name");
    QTest::addColumn<int>("stored"); // the model's number after propagating 5 (it starts at 7)
    QTest::addColumn<QString>("report");

    const QVariant none;
    const QVariant plus1 = QStringLiteral("Plus1");
    const QVariant null = QVariant::fromValue(nullptr);
    QTest::newRow("no options") << int(NoObject) << none << 5 << QString();
    QTest::newRow("object") << int(Times10) << none << 50 << QString();
    QTest::newRow("object before name") << int(Times10) << plus1 << 50 << QString();
    QTest::newRow("null object: the name") << int(NullObject) << plus1 << 6 << QString();
    QTest::newRow("name only") << int(NoObject) << plus1 << 6 << QString();
    QTest::newRow("null object, null name") << int(NullObject) << null << 5 << QString();
    QTest::newRow("unknown name") << int(NoObject) << QVariant(QStringLiteral("Nope")) << 5 << QString();
    QTest::newRow("no reverse") << int(NoReverse) << plus1 << 7
                                << QStringLiteral("[[transformer class] allowsReverseTransformation]");
    QTest::newRow("reverse gives nothing") << int(InvalidReverse) << none << 7 << QStringLiteral("gave no value back");
    QTest::newRow("not a transformer") << int(NotATransformer) << none << 7
                                       << QStringLiteral("transformer is a KQValueTransformer");
}

void TestBindings::transformerChoice()
{
    QFETCH(int, object);
    QFETCH(QVariant, name);
    QFETCH(int, stored);
    QFETCH(QString, report);

    Node model, view, other;
    model.setNumber(7);
    QVariantMap options;
    const auto forward = [](const QVariant &v) { return v; };
    switch (ObjectOption(object)) {
    case NoObject: break;
    case Times10:
        options.insert(QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue<QObject *>(KQValueTransformer::create(
            forward, [](const QVariant &v) { return QVariant(v.toInt() * 10); }, &view)));
        break;
    case NullObject: options.insert(QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(nullptr)); break;
    case NoReverse:
        options.insert(QLatin1String(NSValueTransformerBindingOption),
                       QVariant::fromValue(KQValueTransformer::create(forward, {}, &view)));
        break;
    case InvalidReverse:
        options.insert(QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(KQValueTransformer::create(
            forward, [](const QVariant &) { return QVariant(); }, &view)));
        break;
    case NotATransformer:
        options.insert(QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue<QObject *>(&other));
        break;
    }
    if (name.isValid())
        options.insert(QLatin1String(NSValueTransformerNameBindingOption), name);
    QVERIFY(kq_bind(&view, Value, &model, QStringLiteral("number"), options));

    MessageCapture capture;
    kq_propagateValue(&view, 5, Value);
    const QByteArray text = capture.text();
    QCOMPARE(model.number(), stored);
    QCOMPARE(kq_valueForBinding(&view, Value), QVariant(stored)); // raw, untransformed
    if (report.isEmpty())
        QVERIFY2(text.isEmpty(), text.constData());
    else
        QVERIFY2(text.contains(report.toUtf8()), text.constData());
}

void TestBindings::keyPaths_data()
{
    QTest::addColumn<QString>("keyPath");
    QTest::addColumn<bool>("bindable");
    QTest::addColumn<QVariant>("read");
    QTest::addColumn<QVariant>("write");
    QTest::addColumn<bool>("written");

    QTest::newRow("own property") << "number" << true << QVariant(7) << QVariant(8) << true;
    QTest::newRow("through a child") << "child.number" << true << QVariant(3) << QVariant(4) << true;
    QTest::newRow("two children deep") << "child.child.name" << true << QVariant(QStringLiteral("leaf"))
                                       << QVariant(QStringLiteral("new leaf")) << true;
    QTest::newRow("map key") << "settings.zoom" << true << QVariant(2) << QVariant(3) << true;
    QTest::newRow("nested map key") << "settings.page.width" << true << QVariant(10) << QVariant(12) << true;
    QTest::newRow("new map key") << "settings.page.height" << true << QVariant() << QVariant(5) << true;
    QTest::newRow("past the last child") << "child.child.child.number" << true << QVariant() << QVariant(9) << false;
    QTest::newRow("converted text") << "number" << true << QVariant(7) << QVariant(QStringLiteral("42")) << true;
    QTest::newRow("unconvertible text") << "number" << true << QVariant(7) << QVariant(QStringLiteral("four")) << false;
    QTest::newRow("read-only") << "fixed" << true << QVariant(1) << QVariant(2) << false;
    QTest::newRow("undeclared name") << "child.missing" << false << QVariant() << QVariant() << false;
    QTest::newRow("dynamic property is undeclared") << "objectName.x" << false << QVariant() << QVariant() << false;
    QTest::newRow("empty name") << "child..number" << false << QVariant() << QVariant() << false;
    QTest::newRow("empty path") << "" << false << QVariant() << QVariant() << false;
}

void TestBindings::keyPaths()
{
    QFETCH(QString, keyPath);
    QFETCH(bool, bindable);
    QFETCH(QVariant, read);
    QFETCH(QVariant, write);
    QFETCH(bool, written);

    Tree tree;
    Node view;
    MessageCapture bindCapture;
    QCOMPARE(kq_bind(&view, Value, &tree.root, keyPath), bindable);
    QCOMPARE(bindCapture.text().isEmpty(), bindable);
    if (!bindable) {
        QVERIFY(kq_infoForBinding(&view, Value).isEmpty());
        return;
    }
    QCOMPARE(view.value(), read);
    QCOMPARE(kq_valueForBinding(&view, Value), read);

    const QVariantMap settingsBefore = tree.root.settings();
    MessageCapture capture;
    kq_propagateValue(&view, write, Value);
    QCOMPARE(capture.text().isEmpty(), written);
    const QVariant now = kq_valueForBinding(&view, Value);
    if (written) {
        QCOMPARE(now.toString(), write.toString());
        if (keyPath.startsWith(QLatin1String("settings.page")))
            QCOMPARE(tree.root.settings().value(QStringLiteral("zoom")), settingsBefore.value(QStringLiteral("zoom")));
    } else {
        QCOMPARE(now, read); // untouched
    }
}

void TestBindings::viewAndModelFollowEachOther()
{
    Tree tree;
    QSlider slider;
    slider.setRange(0, 100);
    const auto half = KQValueTransformer::create([](const QVariant &v) { return QVariant(v.toInt() * 2); },
                                                 [](const QVariant &v) { return QVariant(v.toInt() / 2); }, &slider);
    QVERIFY(kq_bind(&slider, Value, &tree.root, QStringLiteral("child.number"),
                    {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(half)}}));
    QCOMPARE(slider.value(), 6); // initial value, transformed

    tree.middle.setNumber(10);
    QCOMPARE(slider.value(), 20);
    slider.setValue(30); // an edit in the view
    QCOMPARE(tree.middle.number(), 15);

    // Replacing an object along the path moves the observation to the new one.
    Node replacement;
    replacement.setNumber(40);
    tree.root.setChild(&replacement);
    QCOMPARE(slider.value(), 80);
    tree.middle.setNumber(1);
    QCOMPARE(slider.value(), 80);
    replacement.setNumber(5);
    QCOMPARE(slider.value(), 10);

    // Rebinding replaces the binding; the old key path is no longer watched.
    QVERIFY(kq_bind(&slider, Value, &tree.root, QStringLiteral("number")));
    QCOMPARE(slider.value(), 7);
    replacement.setNumber(6);
    QCOMPARE(slider.value(), 7);
    QCOMPARE(kq_infoForBinding(&slider, Value).value(QLatin1String(NSObservedKeyPathKey)).toString(),
             QStringLiteral("number"));
    QVERIFY(!kq_infoForBinding(&slider, Value).contains(QLatin1String(NSOptionsKey)));
}

void TestBindings::lifetime_data()
{
    QTest::addColumn<QString>("gone");
    QTest::newRow("model") << "model";
    QTest::newRow("view") << "view";
    QTest::newRow("object along the path") << "middle";
    QTest::newRow("transformer") << "transformer";
    QTest::newRow("unbound") << "unbind";
}

void TestBindings::lifetime()
{
    QFETCH(QString, gone);

    auto *tree = new Tree;
    auto *view = new Node;
    QPointer<KQValueTransformer> transformer = KQValueTransformer::create([](const QVariant &v) { return v; },
                                                                          [](const QVariant &v) { return v; });
    QVERIFY(kq_bind(view, Value, &tree->root, QStringLiteral("child.number"),
                    {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(transformer.data())}}));
    QCOMPARE(view->value(), QVariant(3));
    if (gone == QLatin1String("model")) {
        delete tree;
        tree = nullptr;
        QVERIFY(kq_infoForBinding(view, Value).isEmpty());
        view->setValue(9); // would reach the dead model
        QVERIFY(!kq_valueForBinding(view, Value).isValid());
    } else if (gone == QLatin1String("view")) {
        delete view;
        view = nullptr;
        tree->middle.setNumber(4); // would reach the dead view
        QCOMPARE(tree->middle.number(), 4);
    } else if (gone == QLatin1String("middle")) {
        auto *temporary = new Node;
        temporary->setNumber(5);
        tree->root.setChild(temporary);
        QCOMPARE(view->value(), QVariant(5));
        delete temporary; // the root's pointer clears itself without a change signal
        QCoreApplication::processEvents();
        QVERIFY(!kq_valueForBinding(view, Value).isValid());
        QVERIFY(!view->value().isValid());
    } else if (gone == QLatin1String("transformer")) {
        delete transformer.data();
        const QVariant option = kq_infoForBinding(view, Value).value(QLatin1String(NSOptionsKey)).toMap().value(
            QLatin1String(NSValueTransformerBindingOption));
        QCOMPARE(option.value<QObject *>(), nullptr);
        view->setValue(11); // no transformer now: stored as given
        QCOMPARE(tree->middle.number(), 11);
    } else {
        kq_unbind(view, Value);
        QVERIFY(kq_infoForBinding(view, Value).isEmpty());
        tree->middle.setNumber(12);
        QCOMPARE(view->value(), QVariant(3));
        view->setValue(13);
        QCOMPARE(tree->middle.number(), 12);
    }
    delete view;
    delete tree;
    delete transformer.data();
}

void TestBindings::cyclesEnd()
{
    // Two objects bound to each other both ways, and an object bound to itself.
    Node a, b;
    QVERIFY(kq_bind(&a, QStringLiteral("number"), &b, QStringLiteral("number")));
    QVERIFY(kq_bind(&b, QStringLiteral("number"), &a, QStringLiteral("number")));
    QVERIFY(kq_bind(&a, QStringLiteral("name"), &a, QStringLiteral("name")));
    a.setNumber(3);
    QCOMPARE(b.number(), 3);
    b.setNumber(4);
    QCOMPARE(a.number(), 4);
    a.setName(QStringLiteral("x"));
    QCOMPARE(a.name(), QStringLiteral("x"));
}

void TestBindings::clone_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("cloned");

    QObject object;
    QTest::newRow("nil") << QVariant() << false;
    QTest::newRow("number") << QVariant(42) << true;
    QTest::newRow("null object") << QVariant::fromValue(nullptr) << true;
    QTest::newRow("nested containers")
        << QVariant(QVariantList{1, QStringLiteral("two"),
                                 QVariantMap{{QStringLiteral("list"), QVariantList{3.5, QVariantHash{{QStringLiteral("k"), QByteArray("v")}}}},
                                             {QStringLiteral("nil"), QVariant()}}})
        << true;
    QTest::newRow("object pointer") << QVariant::fromValue(&object) << false;
    QTest::newRow("object deep inside")
        << QVariant(QVariantMap{{QStringLiteral("a"), QVariantList{1, QVariant::fromValue(&object)}}}) << false;
}

void TestBindings::clone()
{
    QFETCH(QVariant, value);
    QFETCH(bool, cloned);

    MessageCapture capture;
    const QVariant copy = KQCloneUsingCoding(value);
    const QByteArray text = capture.text();
    QCOMPARE(copy.isValid(), cloned);
    if (cloned) {
        QCOMPARE(copy.metaType(), value.metaType());
        QCOMPARE(copy, value);
    }
    // Only values that could not be archived are reported.
    QCOMPARE(text.contains("cannot be archived"), !cloned && value.isValid());
}

void TestBindings::performSelector_data()
{
    QTest::addColumn<QByteArray>("selector");
    QTest::addColumn<bool>("withArgument");
    QTest::addColumn<QVariant>("argument");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<int>("calls");

    QTest::newRow("no argument") << QByteArray("greeting") << false << QVariant() << QVariant(QStringLiteral("hi n")) << 1;
    QTest::newRow("void method") << QByteArray("poke") << false << QVariant() << QVariant() << 1;
    QTest::newRow("argument") << QByteArray("twice") << true << QVariant(21) << QVariant(42) << 1;
    QTest::newRow("converted argument") << QByteArray("twice") << true << QVariant(QStringLiteral("4")) << QVariant(8) << 1;
    QTest::newRow("unconvertible argument") << QByteArray("twice") << true << QVariant(QStringLiteral("x")) << QVariant() << 0;
    QTest::newRow("missing") << QByteArray("nothing") << false << QVariant() << QVariant() << 0;
    QTest::newRow("wrong arity") << QByteArray("twice") << false << QVariant() << QVariant() << 0;
    QTest::newRow("slot inherited") << QByteArray("deleteLater") << true << QVariant(1) << QVariant() << 0;
}

void TestBindings::performSelector()
{
    QFETCH(QByteArray, selector);
    QFETCH(bool, withArgument);
    QFETCH(QVariant, argument);
    QFETCH(QVariant, result);
    QFETCH(int, calls);

    Node node;
    node.setName(QStringLiteral("n"));
    MessageCapture capture;
    const QVariant answer = withArgument ? kq_performSelectorIfResponds(&node, selector, argument)
                                         : kq_performSelectorIfResponds(&node, selector);
    QCOMPARE(answer, result);
    QCOMPARE(node.calls, calls);
    QVERIFY(!kq_performSelectorIfResponds(nullptr, selector).isValid());
}

void TestBindings::mapAndFilter_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("nilAt");  // the block gives nil for this index
    QTest::addColumn<int>("stopAt"); // the block sets the stop flag at this index
    QTest::addColumn<QVariantList>("mapped");
    QTest::addColumn<QVariantList>("filtered"); // odd elements
    QTest::addColumn<QVariantList>("mappedAndFiltered");

    const QVariant null = QVariant::fromValue(nullptr);
    QTest::newRow("empty") << 0 << -1 << -1 << QVariantList() << QVariantList() << QVariantList();
    QTest::newRow("all") << 3 << -1 << -1 << QVariantList{2, 4, 6} << QVariantList{1, 3} << QVariantList{2, 4, 6};
    QTest::newRow("nil second") << 3 << 1 << -1 << QVariantList{2, null, 6} << QVariantList{1, 3} << QVariantList{2, 6};
    QTest::newRow("stop at first") << 3 << -1 << 0 << QVariantList{2} << QVariantList{1} << QVariantList{2};
    QTest::newRow("stop at second") << 4 << -1 << 1 << QVariantList{2, 4} << QVariantList{1} << QVariantList{2, 4};
    QTest::newRow("nil and stop together") << 3 << 0 << 0 << QVariantList{null} << QVariantList{1} << QVariantList();
}

void TestBindings::mapAndFilter()
{
    QFETCH(int, count);
    QFETCH(int, nilAt);
    QFETCH(int, stopAt);
    QFETCH(QVariantList, mapped);
    QFETCH(QVariantList, filtered);
    QFETCH(QVariantList, mappedAndFiltered);

    QVariantList list;
    for (int i = 1; i <= count; ++i)
        list.append(i);
    QList<qsizetype> indexes;
    const auto doubled = [&](const QVariant &element, qsizetype index, bool *stop) {
        indexes.append(index);
        *stop = index == stopAt;
        return index == nilAt ? QVariant() : QVariant(element.toInt() * 2);
    };
    MessageCapture capture;
    QCOMPARE(kq_map(list, doubled), mapped);
    QCOMPARE(capture.text().count("KQAssertNeverExecuted was executed"), nilAt >= 0 ? 1 : 0);
    for (qsizetype i = 0; i < indexes.size(); ++i)
        QCOMPARE(indexes.at(i), i);

    MessageCapture quiet;
    QCOMPARE(kq_filter(list, [&](const QVariant &element, qsizetype index, bool *stop) {
                 *stop = index == stopAt;
                 return element.toInt() % 2 == 1;
             }),
             filtered);
    QCOMPARE(kq_mapAndFilter(list, doubled), mappedAndFiltered);
    QVERIFY(quiet.text().isEmpty());
}

void TestBindings::typedForms()
{
    const QList<int> numbers{1, 2, 3, 4};
    const QStringList texts = kq_map(numbers, [](int n, qsizetype, bool *stop) {
        *stop = n == 3;
        return QString::number(n * n);
    });
    QCOMPARE(texts, (QStringList{QStringLiteral("1"), QStringLiteral("4"), QStringLiteral("9")}));
    QCOMPARE(kq_filter(numbers, [](int n, qsizetype, bool *) { return n % 2 == 0; }), (QList<int>{2, 4}));
    const QList<int> halves = kq_mapAndFilter(numbers, [](int n, qsizetype, bool *) {
        return n % 2 == 0 ? std::optional<int>(n / 2) : std::nullopt;
    });
    QCOMPARE(halves, (QList<int>{1, 2}));
}

void TestBindings::subpool()
{
    QPointer<QObject> outer, inner, kept;
    kept = new QObject;
    kq_subpool([&] {
        outer = new QObject;
        outer->deleteLater();
        kq_subpool([&] {
            inner = new QObject;
            inner->deleteLater();
            QVERIFY(inner); // not before the scope ends
        });
        QVERIFY(!inner);
        QVERIFY(outer); // an inner scope leaves the outer one's objects alone
    });
    QVERIFY(!outer);
    QVERIFY(kept); // never handed over
    delete kept.data();
}

QTEST_MAIN(TestBindings)
#include "tst_bindings.moc"
