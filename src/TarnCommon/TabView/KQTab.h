#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtGui/QIcon>
#include <QtWidgets/QWidget>

// One choice of a KQTabView: the content widget shown while the tab is
// selected, the icon drawn in the tab bar, the icon's tooltip, an optional
// widget to focus when the tab is installed, and the client's tag.
//
// The widgets are held weakly: a tab whose view was destroyed shows nothing.
// A content widget given to the tab without a parent belongs to the tab: the
// tab deletes it when it dies, unless by then the widget has a parent or the
// tab was given another one (the caller has it back then). A tab
// view only borrows it while the tab is selected (see KQTabView). A widget
// given with a parent belongs to that parent, as usual in Qt.
class TARNCOMMON_EXPORT KQTab : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QWidget *view READ view WRITE setView NOTIFY viewChanged)
    Q_PROPERTY(QIcon icon READ icon WRITE setIcon NOTIFY iconChanged)
    Q_PROPERTY(QWidget *initialFirstResponder READ initialFirstResponder WRITE setInitialFirstResponder
                   NOTIFY initialFirstResponderChanged)
    Q_PROPERTY(qint64 tag READ tag WRITE setTag NOTIFY tagChanged)
    Q_PROPERTY(QString iconTooltip READ iconTooltip WRITE setIconTooltip NOTIFY iconTooltipChanged)

public:
    explicit KQTab(QObject *parent = nullptr);
    ~KQTab() override;

    QWidget *view() const;
    void setView(QWidget *view);

    QIcon icon() const;
    void setIcon(const QIcon &icon);

    QWidget *initialFirstResponder() const;
    void setInitialFirstResponder(QWidget *widget);

    qint64 tag() const;
    void setTag(qint64 tag);

    // Null when the tab has no tooltip.
    QString iconTooltip() const;
    void setIconTooltip(const QString &tooltip);

Q_SIGNALS:
    void viewChanged();
    void iconChanged();
    void initialFirstResponderChanged();
    void tagChanged();
    void iconTooltipChanged();

private:
    QIcon _icon;
    QPointer<QWidget> _view;
    bool m_ownsView = false;
    QPointer<QWidget> _initialFirstResponder;
    qint64 _tag = 0;
    QString _iconTooltip;
};
