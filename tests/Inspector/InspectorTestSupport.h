#pragma once

#include <TarnCommon/KQInspectorFocusOwner.h>
#include <TarnCommon/KQInspectorMode.h>

#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

// A mode whose every value a test can set, and which writes each hook it
// hears into a shared log as "<name>:<hook>".
class RecordingMode : public KQInspectorMode
{
    Q_OBJECT

public:
    RecordingMode(const QString &name, QStringList *log, QObject *parent = nullptr)
        : KQInspectorMode(parent)
        , m_name(name)
        , m_log(log)
    {
    }

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

    void modeWillShow() override { record(QStringLiteral("willShow")); }
    void modeWasHidden() override { record(QStringLiteral("wasHidden")); }
    Q_INVOKABLE void modeDidShow() { record(QStringLiteral("didShow")); }
    Q_INVOKABLE void modeWillHide() { record(QStringLiteral("willHide")); }

protected:
    void loadView() override
    {
        auto *view = new QWidget;
        view->resize(m_viewSize);
        setView(view);
    }

private:
    void record(const QString &hook)
    {
        if (m_log)
            m_log->append(m_name + QLatin1Char(':') + hook);
    }

    QString m_name;
    QStringList *m_log;
    QString m_title;
    bool m_resizable = true;
    QSizeF m_minSize{50, 50};
    QSizeF m_maxSize{2000, 2000};
    qint64 m_level = 3;
    QSize m_viewSize{220, 160};
};

// A mode that declares neither optional hook.
class QuietMode : public KQInspectorMode
{
    Q_OBJECT

public:
    using KQInspectorMode::KQInspectorMode;
    QSizeF minSize() const override { return QSizeF(10, 10); }
};

// A focus owner that logs the messages it receives and hands over its mode.
class RecordingOwner : public QObject, public KQInspectorFocusOwner
{
    Q_OBJECT
    Q_INTERFACES(KQInspectorFocusOwner)

public:
    RecordingOwner(const QString &name, QStringList *log, KQInspectorMode *mode, QObject *parent = nullptr)
        : QObject(parent)
        , m_name(name)
        , m_log(log)
        , m_mode(mode)
    {
    }

    KQInspectorMode *willGainFocusOfInspector(KQInspectorWindow *) override
    {
        record(QStringLiteral("willGain"));
        return m_mode.data();
    }
    void didGainFocusOfInspector(KQInspectorWindow *) override { record(QStringLiteral("didGain")); }
    void willLoseFocusOfInspector(KQInspectorWindow *) override { record(QStringLiteral("willLose")); }
    void didLoseFocusOfInspector(KQInspectorWindow *) override { record(QStringLiteral("didLose")); }

    KQInspectorMode *mode() const { return m_mode.data(); }
    void setMode(KQInspectorMode *mode) { m_mode = mode; }

private:
    void record(const QString &message)
    {
        if (m_log)
            m_log->append(m_name + QLatin1Char(':') + message);
    }

    QString m_name;
    QStringList *m_log;
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
    explicit DocumentWindow(QObject *owner = nullptr)
        : m_owner(owner)
    {
    }

    void setOwner(QObject *owner) { m_owner = owner; }
    Q_INVOKABLE QObject *inspectorFocusOwner() const { return m_owner.data(); }

private:
    QPointer<QObject> m_owner;
};
