#pragma once

#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

// Appends "<name>:<what>" to a shared log, so tests can compare the order of
// hooks and messages across several modes and owners.
struct LogWriter
{
    QString name;
    QStringList *log;
    void operator()(const char *what) const { log->append(name + QLatin1Char(':') + QLatin1String(what)); }
};

// A mode whose every value a test can set, and which logs each hook it hears.
class RecordingMode : public KQInspectorMode
{
    Q_OBJECT

public:
    RecordingMode(const QString &name, QStringList *log, QObject *parent = nullptr) : KQInspectorMode(parent), m_record{name, log} {}

    QString inspectorTitle() const override { return m_title.isNull() ? KQInspectorMode::inspectorTitle() : m_title; }
    bool isResizable() const override { return m_resizable; }
    QSizeF minSize() const override { return m_minSize; }
    QSizeF maxSize() const override { return m_maxSize; }
    qint64 windowLevel() const override { return m_level; }

    void setTitle(const QString &title) { m_title = title; Q_EMIT inspectorTitleChanged(); }
    void setResizable(bool resizable) { m_resizable = resizable; Q_EMIT isResizableChanged(); }
    void setMinSize(const QSizeF &size) { m_minSize = size; Q_EMIT minSizeChanged(); }
    void setMaxSize(const QSizeF &size) { m_maxSize = size; Q_EMIT maxSizeChanged(); }
    void setLevel(qint64 level) { m_level = level; Q_EMIT windowLevelChanged(); }
    void setViewSize(const QSize &size) { m_viewSize = size; }

    void modeWillShow() override { m_record("willShow"); }
    void modeWasHidden() override { m_record("wasHidden"); }
    Q_INVOKABLE void modeDidShow() { m_record("didShow"); }
    Q_INVOKABLE void modeWillHide() { m_record("willHide"); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        view->resize(m_viewSize);
        setView(view);
    }

private:
    LogWriter m_record;
    QString m_title;
    bool m_resizable = true;
    QSizeF m_minSize{50, 50};
    QSizeF m_maxSize{2000, 2000};
    qint64 m_level = 3;
    QSize m_viewSize{220, 160};
};

// A focus owner that logs the messages it receives and hands over its mode.
class RecordingOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    RecordingOwner(const QString &name, QStringList *log, KQInspectorMode *mode) : m_record{name, log}, m_mode(mode) {}

    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        m_record("willGain");
        return m_mode.data();
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { m_record("didGain"); }
    void willLoseFocusOfInspector(KQInspectorWindow *) override { m_record("willLose"); }
    void didLoseFocusOfInspector(KQInspectorWindow *) override { m_record("didLose"); }
    void setMode(KQInspectorMode *mode) { m_mode = mode; }

private:
    LogWriter m_record;
    QPointer<KQInspectorMode> m_mode;
};

// A window controller that drives the inspector itself.
class AnsweringOwner : public RecordingOwner
{
    Q_OBJECT

public:
    using RecordingOwner::RecordingOwner;
    Q_INVOKABLE QObject *inspectorFocusOwner() { return this; }
};

// A document window that answers the lookup with its owner (which may be none).
class DocumentWindow : public QWidget
{
    Q_OBJECT

public:
    explicit DocumentWindow(QObject *owner = nullptr) : m_owner(owner) {}
    void setOwner(QObject *owner) { m_owner = owner; }
    Q_INVOKABLE QObject *inspectorFocusOwner() const { return m_owner.data(); }

private:
    QPointer<QObject> m_owner;
};

// The usual cast of a test: one mode, logged as "m", handed over by owner "A".
struct OneOwner
{
    QStringList log;
    RecordingMode mode{QStringLiteral("m"), &log};
    RecordingOwner owner{QStringLiteral("A"), &log, &mode};
};
