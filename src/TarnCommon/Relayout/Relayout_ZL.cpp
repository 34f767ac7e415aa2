#include <TarnCommon/Relayout_ZL.h>

#include "KQRelayoutRules_p.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQLog.h>
#include <TarnCommon/KQWindowDelegate.h>

#include <QtCore/QHash>
#include <QtCore/QMetaMethod>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtWidgets/QAbstractScrollArea>
#include <QtWidgets/QAbstractSlider>
#include <QtWidgets/QAbstractSpinBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionFrame>
#include <QtWidgets/QTabWidget>

#include <array>
#include <cmath>
#include <optional>

using namespace KQRelayout;

namespace {

double s_gap = DefaultGap;

const char *const MaskProperty = "autoresizingMask";
const char *const TagProperty = "tag";

int maskFrom(const QVariant &value)
{
    bool ok = false;
    const int mask = value.toInt(&ok);
    return ok ? mask : DefaultMask;
}

// What relayout needs to know of a widget's class; it depends on the class
// alone, so a pass works it out once per class instead of by a row of casts
// per widget.
enum ClassTrait : unsigned {
    ControlClass = 1,      // grows to its natural width
    LineEditClass = 2,     // whose natural width is its text's, not its size hint's
    FrameClass = 4,        // may be drawn as a separator line
    ScrollMachinery = 8,   // scroll bars, splitters and their handles never collide
    ClosedClass = 16,      // Qt sizes its inside: never entered
    MainWindowClass = 32,  // relayouted through its central widget
    GroupBoxClass = 64,    // the box rule, and the opt-out title
};

unsigned classTraits(const QMetaObject *meta)
{
    const auto is = [meta](const QMetaObject &base) { return meta->inherits(&base); };
    unsigned traits = 0;
    if (is(QAbstractButton::staticMetaObject) || is(QLabel::staticMetaObject) || is(QComboBox::staticMetaObject)
        || is(QAbstractSpinBox::staticMetaObject) || is(QLineEdit::staticMetaObject)
        || is(QAbstractSlider::staticMetaObject) || is(QProgressBar::staticMetaObject))
        traits |= ControlClass | ClosedClass;
    if (is(QLineEdit::staticMetaObject))
        traits |= LineEditClass;
    if (is(QFrame::staticMetaObject))
        traits |= FrameClass;
    if (is(QScrollBar::staticMetaObject) || is(QSplitter::staticMetaObject) || is(QSplitterHandle::staticMetaObject))
        traits |= ScrollMachinery;
    if (is(QAbstractScrollArea::staticMetaObject) || is(QTabWidget::staticMetaObject)
        || is(QSplitter::staticMetaObject))
        traits |= ClosedClass;
    if (is(QMainWindow::staticMetaObject))
        traits |= MainWindowClass;
    if (is(QGroupBox::staticMetaObject))
        traits |= GroupBoxClass;
    return traits;
}

// What a pass looks up once instead of once per widget. Every widget a pass
// visits shares one window, and finding its delegate scans the window's
// children. QObject::property() by name compares the name with every static
// property of the class before it looks at the dynamic ones, which cost more
// than the rest of a widget's snapshot: the static lookup is made once per
// class, and widgets without dynamic properties are not asked at all.
class Pass
{
public:
    explicit Pass(const QWidget *view);

    int mask(const QWidget *w) { return maskFrom(read(w, 0)); }
    int tag(const QWidget *w) { return read(w, 1).toInt(); }
    unsigned traits(const QWidget *w) { return classInfo(w->metaObject()).traits; }

    QPointer<QObject> delegate;
    QMetaMethod shouldRelayout;
    QMetaMethod alignedFriends;

private:
    struct ClassInfo
    {
        std::array<int, 2> propertyIndex; // mask, tag: static properties of that name, or -1
        unsigned traits;
    };
    const ClassInfo &classInfo(const QMetaObject *meta);
    QVariant read(const QWidget *w, int which);
    QHash<const QMetaObject *, ClassInfo> m_classes;
};

bool shouldResolve(const QWidget *view, int tag, unsigned traits, const Pass &pass);
void linkFriends(std::vector<View> &level, const Pass &pass);

bool isSeparator(const QWidget *w, unsigned traits)
{
    if (!(traits & FrameClass))
        return false;
    const QFrame::Shape shape = static_cast<const QFrame *>(w)->frameShape();
    return shape == QFrame::HLine || shape == QFrame::VLine;
}

bool isScrollMachinery(const QWidget *w, unsigned traits)
{
    if (traits & ScrollMachinery)
        return true;
    const auto *area = w->parentWidget() ? qobject_cast<const QAbstractScrollArea *>(w->parentWidget()) : nullptr;
    return area && area->viewport() == w;
}


// A window's content view: the window itself, or a main window's central widget.
bool isContentView(const QWidget *w)
{
    if (w->isWindow())
        return !qobject_cast<const QMainWindow *>(w);
    const auto *main = qobject_cast<const QMainWindow *>(w->parentWidget());
    return main && main->isWindow() && main->centralWidget() == w;
}

QWidget *contentRoot(QWidget *w)
{
    if (auto *main = qobject_cast<QMainWindow *>(w))
        return main->centralWidget();
    return w;
}

QList<QWidget *> subviews(const QWidget *w)
{
    QList<QWidget *> list;
    for (QObject *child : w->children()) {
        if (child->isWidgetType() && !static_cast<QWidget *>(child)->isWindow())
            list.append(static_cast<QWidget *>(child));
    }
    return list;
}

QString describe(const QWidget *w)
{
    QString name = w->objectName();
    if (name.isEmpty())
        name = QString::fromLatin1(w->metaObject()->className());
    if (w->isWindow() && !w->windowTitle().isEmpty())
        name += QStringLiteral(" \"%1\"").arg(w->windowTitle());
    return name;
}

// A QLineEdit's size hint ignores its text; its natural width is the text's
// advance (or the placeholder's) plus the frame and margins it draws.
double lineEditWidth(const QLineEdit *edit)
{
    const QString text = edit->text().isEmpty() ? edit->placeholderText() : edit->displayText();
    const QMargins margins = edit->textMargins();
    const int horizontalMargin = 2; // QLineEdit's fixed inner margin on each side
    const int cursor = 1;
    const int inner = edit->fontMetrics().horizontalAdvance(text) + margins.left() + margins.right()
        + 2 * horizontalMargin + cursor;
    QStyleOptionFrame option;
    option.initFrom(edit);
    option.lineWidth = edit->hasFrame() ? edit->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, edit) : 0;
    option.midLineWidth = 0;
    option.state |= QStyle::State_Sunken;
    const QSize size = edit->style()->sizeFromContents(QStyle::CT_LineEdit, &option,
                                                       QSize(inner, edit->fontMetrics().height()), edit);
    return size.width();
}

// A friend given by the delegate counts only while it is a live sibling; the
// comparison is by address against the parent's children, so a deleted one
// is never touched.
QList<QWidget *> checkedFriends(const QWidget *view, const QList<QObject *> &answer,
                                const QSet<const QObject *> &siblings)
{
    QList<QWidget *> friends;
    for (QObject *candidate : answer) {
        if (!candidate || !siblings.contains(candidate) || !candidate->isWidgetType()) {
            ZLLogWarning("Relayout: an aligned friend of %s is not one of its siblings (deleted, null or of "
                         "another parent) and is ignored",
                         qPrintable(describe(view)));
            continue;
        }
        friends.append(static_cast<QWidget *>(candidate));
    }
    return friends;
}

QSet<const QObject *> childSet(const QWidget *parent)
{
    QSet<const QObject *> set;
    if (parent) {
        const QObjectList &children = parent->children();
        set.reserve(children.size());
        for (const QObject *child : children)
            set.insert(child);
    }
    return set;
}

View snapshot(QWidget *w, bool enter, Pass &pass)
{
    View view;
    view.owner = w;
    view.frame = Frame{double(w->x()), double(w->y()), double(w->width()), double(w->height())};
    view.mask = pass.mask(w);
    const int tag = pass.tag(w);
    const unsigned traits = pass.traits(w);
    view.participates = shouldResolve(w, tag, traits, pass);
    view.optOutTag = tag == OptOutTag;
    view.contentView = isContentView(w);
    if (traits & ControlClass) {
        view.kind = Kind::Control;
        view.naturalWidth = (traits & LineEditClass) ? lineEditWidth(static_cast<const QLineEdit *>(w))
                                                     : w->sizeHint().width();
    } else if (w->layout() && !(traits & MainWindowClass)) {
        view.kind = Kind::Island; // its own layout sizes it
    } else if (traits & GroupBoxClass) {
        view.kind = Kind::Box;
    }
    if (enter && view.kind != Kind::Island && !(traits & ClosedClass)) {
        const QList<QWidget *> children = subviews(w);
        view.children.reserve(children.size());
        for (QWidget *child : children)
            view.children.push_back(snapshot(child, true, pass));
        linkFriends(view.children, pass);
    }
    return view;
}

void applyFrame(QWidget *w, const Frame &frame)
{
    const QRect wanted(qRound(frame.x), qRound(frame.y), qRound(frame.width), qRound(frame.height));
    if (w->geometry() == wanted)
        return;
    w->setGeometry(wanted);
    w->update();
    if (QWidget *parent = w->parentWidget())
        parent->update();
}

// The content size of a content view: the window is resized so that the view gets it.
void applyContentSize(QWidget *content, const Frame &frame)
{
    const QSize wanted(qRound(frame.width), qRound(frame.height));
    if (content->size() == wanted)
        return;
    QWidget *window = content->window();
    if (window == content) {
        window->resize(wanted);
    } else {
        window->resize(window->size() + (wanted - content->size()));
        content->resize(wanted); // the main window's layout confirms it when it next runs
    }
}

void writeBack(const View &view, bool isRoot)
{
    auto *w = static_cast<QWidget *>(view.owner);
    if (view.contentView && isRoot)
        applyContentSize(w, view.frame);
    else if (!w->isWindow())
        applyFrame(w, view.frame);
    for (const View &child : view.children)
        writeBack(child, false);
}

Settings currentSettings()
{
    Settings settings;
    settings.gap = s_gap;
    return settings;
}

// The level \a w sits in: its siblings as they are (not entered), itself
// entered when \a enter; a window stands alone.
std::vector<View> levelOf(QWidget *w, std::size_t *index, bool enter)
{
    Pass pass(w);
    std::vector<View> level;
    QWidget *parent = w->isWindow() ? nullptr : w->parentWidget();
    const QList<QWidget *> siblings = parent ? subviews(parent) : QList<QWidget *>{w};
    level.reserve(siblings.size());
    for (QWidget *sibling : siblings) {
        if (sibling == w)
            *index = level.size();
        level.push_back(snapshot(sibling, enter && sibling == w, pass));
    }
    linkFriends(level, pass);
    return level;
}

bool invokeDelegate(QObject *delegate, const QMetaMethod &method, const QWidget *view, void *answer)
{
    if (method.parameterCount() != 1)
        return false;
    const QMetaType parameter = method.parameterMetaType(0);
    QWidget *argument = const_cast<QWidget *>(view);
    QObject *asObject = argument;
    if (parameter == QMetaType::fromType<QWidget *>())
        return method.invoke(delegate, Qt::DirectConnection, QGenericReturnArgument(method.typeName(), answer),
                             Q_ARG(QWidget *, argument));
    if (parameter == QMetaType::fromType<QObject *>())
        return method.invoke(delegate, Qt::DirectConnection, QGenericReturnArgument(method.typeName(), answer),
                             Q_ARG(QObject *, asObject));
    return false;
}

QMetaMethod hookNamed(const QObject *delegate, const char *name)
{
    const int index = kq_indexOfMethodNamed(delegate, name);
    return index < 0 ? QMetaMethod() : delegate->metaObject()->method(index);
}

Pass::Pass(const QWidget *view)
    : delegate(kq_windowDelegate(view))
    , shouldRelayout(hookNamed(delegate, "f_shouldRelayoutObject"))
    , alignedFriends(hookNamed(delegate, "f_alignedFriendsOfView"))
{
}

const Pass::ClassInfo &Pass::classInfo(const QMetaObject *meta)
{
    auto found = m_classes.find(meta);
    if (found == m_classes.end()) {
        found = m_classes.insert(
            meta, ClassInfo{{meta->indexOfProperty(MaskProperty), meta->indexOfProperty(TagProperty)},
                            classTraits(meta)});
    }
    return *found;
}

QVariant Pass::read(const QWidget *w, int which)
{
    const QMetaObject *meta = w->metaObject();
    const int index = classInfo(meta).propertyIndex[which];
    if (index >= 0)
        return meta->property(index).read(w);
    const char *name = which == 0 ? MaskProperty : TagProperty;
    return w->dynamicPropertyNames().contains(name) ? w->property(name) : QVariant();
}

bool shouldResolve(const QWidget *view, int tag, unsigned traits, const Pass &pass)
{
    if (tag == OptOutTag || isSeparator(view, traits) || isScrollMachinery(view, traits))
        return false;
    if ((traits & GroupBoxClass)
        && static_cast<const QGroupBox *>(view)->title() == QLatin1String(KQNoRelayoutTitle))
        return false;
    // A delegate deleted by an earlier answer of the same pass answers nothing more.
    if (!pass.shouldRelayout.isValid() || !pass.delegate)
        return true;
    // Any one-byte answer is a yes/no (bool, char); nothing wider can be.
    unsigned char answer = 1;
    if (pass.shouldRelayout.returnMetaType().sizeOf() != 1
        || !invokeDelegate(pass.delegate, pass.shouldRelayout, view, &answer)) {
        ZLLogWarning("Relayout: the window delegate's f_shouldRelayoutObject must take a QWidget* and answer a "
                     "bool; it is ignored");
        return true;
    }
    return answer != 0;
}

// The delegate's answer as objects, not yet checked; an answer of another type is reported and counts as none.
QList<QObject *> delegateFriends(const QWidget *view, const Pass &pass)
{
    const QMetaMethod &hook = pass.alignedFriends;
    if (!hook.isValid() || !pass.delegate)
        return {};
    const QMetaType type = hook.returnMetaType();
    QList<QObject *> answer;
    bool understood = false;
    if (type == QMetaType::fromType<QList<QWidget *>>()) {
        QList<QWidget *> widgets;
        understood = invokeDelegate(pass.delegate, hook, view, &widgets);
        for (QWidget *w : widgets)
            answer.append(w); // a pointer conversion only, never a dereference
    } else if (type == QMetaType::fromType<QList<QObject *>>()) {
        understood = invokeDelegate(pass.delegate, hook, view, &answer);
    } else if (type == QMetaType::fromType<QVariantList>()) {
        QVariantList values;
        understood = invokeDelegate(pass.delegate, hook, view, &values);
        for (const QVariant &value : values) {
            if (value.metaType() == QMetaType::fromType<QWidget *>())
                answer.append(*static_cast<QWidget *const *>(value.constData()));
            else if (value.metaType() == QMetaType::fromType<QObject *>())
                answer.append(*static_cast<QObject *const *>(value.constData()));
            else
                answer.append(nullptr);
        }
    }
    if (!understood) {
        ZLLogWarning("Relayout: the window delegate's f_alignedFriendsOfView must take a QWidget* and answer a "
                     "QList<QWidget*>; it is ignored");
        return {};
    }
    return answer;
}

// Friends as indices into the level; the rules know only their siblings.
// The sibling set and the index by widget are built once per level, and only
// when the delegate names any friend at all.
void linkFriends(std::vector<View> &level, const Pass &pass)
{
    if (!pass.alignedFriends.isValid())
        return;
    std::optional<QSet<const QObject *>> siblings;
    QHash<const void *, std::size_t> indexOf;
    for (View &view : level) {
        view.friends.clear();
        const auto *owner = static_cast<const QWidget *>(view.owner);
        const QList<QObject *> answer = delegateFriends(owner, pass);
        if (answer.isEmpty())
            continue;
        if (!siblings) {
            siblings = childSet(owner->parentWidget()); // one parent for the whole level
            indexOf.reserve(qsizetype(level.size()));
            for (std::size_t i = 0; i < level.size(); ++i)
                indexOf.insert(level[i].owner, i);
        }
        for (QWidget *f : checkedFriends(owner, answer, *siblings)) {
            const auto found = indexOf.constFind(f);
            if (found != indexOf.constEnd())
                view.friends.push_back(found.value());
        }
    }
}

} // namespace

void f_relayout(QWidget *view)
{
    KQAssert(view != nullptr);
    QWidget *root = contentRoot(view);
    if (!root)
        return; // a main window without a central widget has nothing to relayout
    std::size_t index = 0;
    std::vector<View> level = levelOf(root, &index, true);
    Outcome outcome;
    relayout(level, index, currentSettings(), outcome);
    if (!outcome.unsettled.empty()) {
        const auto *parent = static_cast<const QWidget *>(outcome.unsettled.front()->owner);
        ZLLogWarning("Relayout of %s stopped: the views in %s keep pushing each other and never settle; "
                     "their frames are left as they are",
                     qPrintable(describe(root->window())), qPrintable(describe(parent)));
    }
    for (const View *emptied : outcome.emptied) {
        ZLLogWarning("Relayout of %s narrowed %s to nothing: it stretches but has no room left",
                     qPrintable(describe(root->window())),
                     qPrintable(describe(static_cast<const QWidget *>(emptied->owner))));
    }
    for (const View &v : level)
        writeBack(v, &v == &level[index]);
}

QSizeF f_minFrameSize(const QWidget *view)
{
    KQAssert(view != nullptr, QSizeF());
    Frame bounds;
    for (QWidget *child : subviews(view)) {
        bounds = unite(bounds, Frame{double(child->x()), double(child->y()), double(child->width()),
                                     double(child->height())});
    }
    const double margin = isContentView(view) ? 0.0 : ContentMargin;
    return QSizeF(bounds.maxX() + margin, bounds.maxY() + margin);
}

void f_expandToFitContent(QWidget *view)
{
    KQAssert(view != nullptr);
    std::size_t index = 0;
    std::vector<View> level = levelOf(view, &index, false);
    View &own = level[index];
    // The box and content-view rules look one level down, at the frames as they are.
    for (QWidget *child : subviews(view)) {
        View childView;
        childView.owner = child;
        childView.frame = Frame{double(child->x()), double(child->y()), double(child->width()), double(child->height())};
        own.children.push_back(childView);
    }
    if (own.kind == Kind::Island)
        own.children.clear();
    expandToFitContent(level, index, currentSettings());
    for (const View &v : level) {
        auto *w = static_cast<QWidget *>(v.owner);
        if (&v == &own && v.contentView)
            applyContentSize(w, v.frame);
        else if (!w->isWindow())
            applyFrame(w, v.frame);
    }
}

bool f_shouldResolveCollision(const QWidget *view)
{
    KQAssert(view != nullptr, false);
    Pass pass(view);
    return shouldResolve(view, pass.tag(view), pass.traits(view), pass);
}

QList<QWidget *> f_alignedFriends(const QWidget *view)
{
    KQAssert(view != nullptr, {});
    const QList<QObject *> answer = delegateFriends(view, Pass(view));
    return answer.isEmpty() ? QList<QWidget *>() : checkedFriends(view, answer, childSet(view->parentWidget()));
}

bool f_resolveCollisionWith(QWidget *view, QWidget *other)
{
    KQAssert(view != nullptr, false);
    KQAssert(other != nullptr, false);
    KQAssert(view != other, false);
    KQAssert(!view->isWindow() && !other->isWindow() && view->parentWidget() == other->parentWidget(), false);
    std::size_t a = 0, b = 0;
    std::vector<View> level = levelOf(view, &a, false);
    for (std::size_t i = 0; i < level.size(); ++i) {
        if (level[i].owner == other)
            b = i;
    }
    Outcome outcome;
    if (!resolveCollision(level, a, b, currentSettings(), &outcome))
        return false;
    for (const View &v : level)
        applyFrame(static_cast<QWidget *>(v.owner), v.frame);
    return true;
}

int f_autoresizingMask(const QWidget *view)
{
    if (!view)
        return DefaultMask;
    return maskFrom(view->property(MaskProperty));
}

void f_setAutoresizingMask(QWidget *view, int mask)
{
    if (view)
        view->setProperty(MaskProperty, mask);
}

int f_tag(const QWidget *view)
{
    return view ? view->property(TagProperty).toInt() : 0;
}

void f_setTag(QWidget *view, int tag)
{
    if (view)
        view->setProperty(TagProperty, tag);
}

bool HasLeftStrut_ZL(const QWidget *view)
{
    return view && hasLeftStrut(f_autoresizingMask(view));
}

bool HasRightStrut_ZL(const QWidget *view)
{
    return view && hasRightStrut(f_autoresizingMask(view));
}

bool ExpandsHorizontally_ZL(const QWidget *view)
{
    return view && expandsHorizontally(f_autoresizingMask(view));
}

void RelayoutSetGapSize_ZL(double gap)
{
    KQAssert(std::isfinite(gap) && gap >= 0);
    s_gap = gap;
}
