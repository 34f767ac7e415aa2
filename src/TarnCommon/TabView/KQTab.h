#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtWidgets/QWidget>

#include <memory>

/*! \file KQTab.h
    \brief KQTab, one choice of a KQTabView: its content widget, icon and tag. */

class KQTabPrivate;

/*!
    \brief One choice of a KQTabView.

    A tab carries the content widget shown while it is selected, the icon drawn
    in the tab bar, the icon's tooltip, an optional widget to focus when the
    tab is installed, and a tag of the client's choosing.

    The widgets are held weakly: a tab whose view was destroyed shows nothing.
    A content widget given without a parent belongs to the tab, which deletes
    it when it dies, unless by then the widget has a parent or the tab was
    given another one (the caller has it back then). A tab view only borrows
    it while the tab is selected (see KQTabView). A widget given with a parent
    belongs to that parent, as usual in Qt.

    \code
    auto *tab = new KQTab;
    tab->setView(new QLabel(QStringLiteral("General settings")));  // the tab owns it
    tab->setIcon(QIcon(QStringLiteral(":/icons/general.png")));
    tab->setIconTooltip(QStringLiteral("General"));
    tab->setTag(1);
    \endcode
*/
class TARNCOMMON_EXPORT KQTab : public QObject
{
    Q_OBJECT
    /*! The content widget shown below the bar while the tab is selected; null
        by default, and null again once the widget is destroyed. */
    Q_PROPERTY(QWidget *view READ view WRITE setView NOTIFY viewChanged)
    /*! The icon drawn in the tab's cell of the bar; null by default. */
    Q_PROPERTY(QIcon icon READ icon WRITE setIcon NOTIFY iconChanged)
    /*! The widget given the focus each time the tab is installed; null (no
        focus change) by default. Held weakly, never owned. */
    Q_PROPERTY(QWidget *initialFirstResponder READ initialFirstResponder WRITE setInitialFirstResponder
                   NOTIFY initialFirstResponderChanged)
    /*! The client's identifier for the tab, used by the tag-based operations
        of KQTabView; 0 by default. */
    Q_PROPERTY(qint64 tag READ tag WRITE setTag NOTIFY tagChanged)
    /*! The tooltip shown over the tab's icon, also the title of its
        accessibility button; a null string (the default) means no tooltip. */
    Q_PROPERTY(QString iconTooltip READ iconTooltip WRITE setIconTooltip NOTIFY iconTooltipChanged)

public:
    /*! A tab with no view, no icon, no tooltip and tag 0, owned by \a parent
        if one is given. */
    explicit KQTab(QObject *parent = nullptr);
    /*! Deletes the content widget if the tab owns it (it was parentless when
        given and still is). */
    ~KQTab() override;

    /*! The content widget, or null. */
    QWidget *view() const;
    /*! Makes \a view the content widget (null for none); the tab takes it over
        if it has no parent. Emits viewChanged() when the widget changes. */
    void setView(QWidget *view);

    /*! The icon drawn in the bar. */
    QIcon icon() const;
    /*! Sets the icon drawn in the bar; emits iconChanged() unless \a icon is
        (a copy of) the current one. */
    void setIcon(const QIcon &icon);

    /*! The widget focused when the tab is installed, or null. */
    QWidget *initialFirstResponder() const;
    /*! Sets the widget focused when the tab is installed (null for none);
        emits initialFirstResponderChanged() when it changes. */
    void setInitialFirstResponder(QWidget *widget);

    /*! The client's tag. */
    qint64 tag() const;
    /*! Sets the client's tag; emits tagChanged() when it changes. */
    void setTag(qint64 tag);

    /*! The icon's tooltip; null when the tab has no tooltip. */
    QString iconTooltip() const;
    /*! Sets the icon's tooltip; a null string removes it, while an empty one
        is kept as an empty tooltip. Emits iconTooltipChanged() when either the
        text or its nullness changes. */
    void setIconTooltip(const QString &tooltip);

Q_SIGNALS:
    /*! The content widget was replaced through setView(). */
    void viewChanged();
    /*! The icon was replaced through setIcon(). */
    void iconChanged();
    /*! The widget to focus was replaced through setInitialFirstResponder(). */
    void initialFirstResponderChanged();
    /*! The tag was changed through setTag(). */
    void tagChanged();
    /*! The tooltip was changed through setIconTooltip(). */
    void iconTooltipChanged();

private:
    std::unique_ptr<KQTabPrivate> const d;
};
