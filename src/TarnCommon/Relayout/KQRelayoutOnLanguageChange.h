#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>

#include <memory>

/*!
    \file KQRelayoutOnLanguageChange.h
    \brief Keeps an absolutely placed window fitted to its texts while the language changes at run time.
*/

class QWidget;
class KQRelayoutOnLanguageChangePrivate;

/*!
    \class KQRelayoutOnLanguageChange
    \brief Relayouts a window once after each language change, starting from its designed geometry.

    Create it right after the window's \c setupUi(), while the window shows
    the language it was designed in: it records that designed geometry (every
    child widget's frame and the window's size) and texts. On each
    QEvent::LanguageChange it waits until the window and all its widgets have
    re-translated themselves (the work is queued behind the event), puts every
    widget back where it was designed and, unless the texts are the designed
    ones again, runs f_relayout() on the window. Relayout only ever grows
    controls, so starting from the designed frames is what makes a switch
    English → German → English end exactly where it began.

    It is a child of the window and dies with it.

    \code
    ui.setupUi(dialog);
    new KQRelayoutOnLanguageChange(dialog);
    QCoreApplication::installTranslator(&german); // the dialog follows by itself
    \endcode
*/
class TARNCOMMON_EXPORT KQRelayoutOnLanguageChange : public QObject
{
    Q_OBJECT
public:
    /*!
        Watches \a window (the top-level widget of the widget given) and
        records its designed geometry now. A null \a window is reported and the
        object watches nothing.
    */
    explicit KQRelayoutOnLanguageChange(QWidget *window);
    /*! Stops watching. */
    ~KQRelayoutOnLanguageChange() override;

    /*! The watched window; nullptr when there is none or it is gone. */
    QWidget *window() const;

    /*! Records the current frames and texts as the designed ones (after the form was changed in code). */
    void keepDesignedGeometry();
    /*! Puts every widget that still exists back to its designed frame, and the window to its designed size. */
    void restoreDesignedGeometry();
    /*!
        Restores the designed geometry and, when the texts differ from the
        designed ones, runs f_relayout() on the window; what a language change
        triggers, done at once.
    */
    void relayoutNow();

Q_SIGNALS:
    /*! Emitted after each relayoutNow(), including the ones that language changes queue. */
    void relayouted();

protected:
    /*! Queues relayoutNow() behind the window's own handling of a language change. */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::unique_ptr<KQRelayoutOnLanguageChangePrivate> const d;
};
