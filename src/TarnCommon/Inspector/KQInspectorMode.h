#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtCore/QString>

class QWidget;

// One page of the inspector: a controller that makes its view on first
// request and tells the inspector window its title, size limits, whether it
// may be resized and at which level it floats.
//
// Subclasses override the getters they need. A subclass that changes a value
// while shown emits the property's NOTIFY signal after the getter answers the
// new value; the inspector window listens to all five.
//
// Hooks, sent by the inspector window around a showing: modeWillShow() and
// modeWasHidden() are virtual; modeDidShow and modeWillHide are optional and
// found by name, so a subclass declares them as slots or Q_INVOKABLE methods
// only when it wants them.
class TARNCOMMON_EXPORT KQInspectorMode : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString inspectorTitle READ inspectorTitle NOTIFY inspectorTitleChanged)
    Q_PROPERTY(bool isResizable READ isResizable NOTIFY isResizableChanged)
    Q_PROPERTY(QSizeF minSize READ minSize NOTIFY minSizeChanged)
    Q_PROPERTY(QSizeF maxSize READ maxSize NOTIFY maxSizeChanged)
    Q_PROPERTY(qint64 windowLevel READ windowLevel NOTIFY windowLevelChanged)

public:
    explicit KQInspectorMode(QObject *parent = nullptr);
    // The view goes with its mode, wherever it is shown at the time.
    ~KQInspectorMode() override;

    // "Inspector", translated.
    virtual QString inspectorTitle() const;
    // true
    virtual bool isResizable() const;
    // (0, 0): a resizable mode must give a positive minimum of its own.
    virtual QSizeF minSize() const;
    // The largest single-precision value in both directions.
    virtual QSizeF maxSize() const;
    // KQInspectorWindow::defaultWindowLevel(), the floating level.
    virtual qint64 windowLevel() const;

    // The mode's view, made by loadView() on the first request.
    QWidget *view();
    bool isViewLoaded() const;

    virtual void modeWillShow();
    virtual void modeWasHidden();

Q_SIGNALS:
    void inspectorTitleChanged();
    void isResizableChanged();
    void minSizeChanged();
    void maxSizeChanged();
    void windowLevelChanged();

protected:
    // Makes the view and hands it over with setView(). The default is an
    // empty widget.
    virtual void loadView();
    // Takes ownership of view (it is deleted with the mode).
    void setView(QWidget *view);

private:
    QPointer<QWidget> m_view;
};
