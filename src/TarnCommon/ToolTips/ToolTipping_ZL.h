#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QVariant>

/*! \file ToolTipping_ZL.h
    \brief The interface of widgets that compute their tooltip for each point.
*/

/*!
    \class ToolTipping_ZL
    \brief Adopted by a widget that computes its tooltip per point.

    The widget inherits it next to QWidget and lists it with
    Q_INTERFACES(ToolTipping_ZL), so the tooltip controller finds it with
    qobject_cast:

    \code
    class Chart : public QWidget, public ToolTipping_ZL
    {
        Q_OBJECT
        Q_INTERFACES(ToolTipping_ZL)
    public:
        QVariant toolTipAtPoint(QPointF point, bool *wrapText) override;
    };
    \endcode

    Only the deepest widget under the pointer is asked, found by geometry
    alone: a child covering the point (a label, even a hidden one) stands in
    the way of its parent's tooltip. See ToolTipController_ZL.
*/
class TARNCOMMON_EXPORT ToolTipping_ZL
{
public:
    /*! Virtual, so that implementations are destroyed properly through the interface. */
    virtual ~ToolTipping_ZL();

    /*!
        The tooltip at \a point, in the widget's own coordinates. \a wrapText
        arrives set to true; the widget may clear it for text that must not
        wrap. The answer is a QString (plain text), a QTextDocumentFragment
        (rich text), or an invalid QVariant for no tooltip at that point. Any
        other answer shows nothing and is logged as an error.
    */
    virtual QVariant toolTipAtPoint(QPointF point, bool *wrapText) = 0;
};

/*! The interface identifier of ToolTipping_ZL, for Q_DECLARE_INTERFACE and qobject_cast. */
#define ToolTipping_ZL_iid "org.tarn.TarnCommon.ToolTipping_ZL/1.0"
/*! \cond INTERNAL */
Q_DECLARE_INTERFACE(ToolTipping_ZL, ToolTipping_ZL_iid)
/*! \endcond */
