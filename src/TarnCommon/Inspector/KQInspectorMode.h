#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSizeF>
#include <QtCore/QString>

#include <memory>

class QWidget;
class KQInspectorModePrivate;

/*!
    \file KQInspectorMode.h
    \brief The base class of the pages the inspector window shows.
*/

/*!
    \brief One page of the inspector: a controller that makes its view on first
    request and tells the inspector window its title, size limits, whether it
    may be resized and at which level it floats.

    Subclasses override the getters they need. A subclass that changes a value
    while shown emits the property's NOTIFY signal after the getter answers the
    new value; the inspector window listens to all five.

    Hooks, sent by the inspector window around a showing: modeWillShow() and
    modeWasHidden() are virtual; \c modeDidShow and \c modeWillHide are optional
    and found by name, so a subclass declares them as slots or Q_INVOKABLE
    methods only when it wants them.

    \code
    class ColourMode : public KQInspectorMode
    {
    public:
        using KQInspectorMode::KQInspectorMode;
        QString inspectorTitle() const override { return tr("Colour"); }
        QSizeF minSize() const override { return QSizeF(200, 120); }
    protected:
        void loadView() override { setView(new ColourPanel); }
    };
    \endcode
*/
class TARNCOMMON_EXPORT KQInspectorMode : public QObject
{
    Q_OBJECT
    /*! The inspector window's title while this mode is shown. */
    Q_PROPERTY(QString inspectorTitle READ inspectorTitle NOTIFY inspectorTitleChanged)
    /*! Whether the user may resize the inspector while this mode is shown. */
    Q_PROPERTY(bool isResizable READ isResizable NOTIFY isResizableChanged)
    /*! The smallest content size, in pixels, of a resizable inspector. */
    Q_PROPERTY(QSizeF minSize READ minSize NOTIFY minSizeChanged)
    /*! The largest content size, in pixels, of a resizable inspector. */
    Q_PROPERTY(QSizeF maxSize READ maxSize NOTIFY maxSizeChanged)
    /*! The level the inspector floats at; above 0 keeps it on top of other windows. */
    Q_PROPERTY(qint64 windowLevel READ windowLevel NOTIFY windowLevelChanged)

public:
    /*! Makes a mode owned by \a parent (may be nullptr); its view is made later, on request. */
    explicit KQInspectorMode(QObject *parent = nullptr);
    /*! Deletes the mode's view too, wherever it is shown at the time. */
    ~KQInspectorMode() override;

    /*! The window title to show; by default "Inspector", translated. */
    virtual QString inspectorTitle() const;
    /*! Whether the inspector may be resized; true by default. */
    virtual bool isResizable() const;
    /*!
        The smallest content size; (0, 0) by default. A resizable mode must give
        a positive minimum of its own: the inspector reports a non-positive one
        and then leaves its size alone.
    */
    virtual QSizeF minSize() const;
    /*! The largest content size; by default the largest single-precision value in both directions. */
    virtual QSizeF maxSize() const;
    /*! The floating level; by default KQInspectorWindow::defaultWindowLevel(). */
    virtual qint64 windowLevel() const;

    /*!
        The mode's view, made by loadView() on the first request (and again
        after the view was deleted). The mode owns it; the inspector only
        shows it.
    */
    QWidget *view();
    /*! Whether the view exists, without making it. */
    bool isViewLoaded() const;

    /*!
        Sent when the mode is installed into a visible inspector (before its
        view is added) and when the inspector comes on screen with this mode.
        Does nothing by default.
    */
    virtual void modeWillShow();
    /*!
        Sent after the mode's view was taken out of a visible inspector and
        when the inspector leaves the screen with this mode. Does nothing by
        default.
    */
    virtual void modeWasHidden();

Q_SIGNALS:
    /*! Emit after inspectorTitle() answers a new value. */
    void inspectorTitleChanged();
    /*! Emit after isResizable() answers a new value. */
    void isResizableChanged();
    /*! Emit after minSize() answers a new value. */
    void minSizeChanged();
    /*! Emit after maxSize() answers a new value. */
    void maxSizeChanged();
    /*! Emit after windowLevel() answers a new value. */
    void windowLevelChanged();

protected:
    /*!
        Makes the view and hands it over with setView(); called by view() when
        there is none. The default makes an empty widget.
    */
    virtual void loadView();
    /*!
        Makes \a view the mode's view and takes ownership of it (it is deleted
        with the mode). A previous, different view is deleted.
    */
    void setView(QWidget *view);

private:
    std::unique_ptr<KQInspectorModePrivate> const d;
};
