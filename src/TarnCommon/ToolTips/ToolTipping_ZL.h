#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QObject>
#include <QtCore/QPointF>
#include <QtCore/QVariant>

// Adopted by a widget that computes its tooltip per point. The widget
// inherits it next to QWidget and lists it with Q_INTERFACES(ToolTipping_ZL),
// so the tooltip controller finds it with qobject_cast:
//
//     class Chart : public QWidget, public ToolTipping_ZL
//     {
//         Q_OBJECT
//         Q_INTERFACES(ToolTipping_ZL)
//     public:
//         QVariant toolTipAtPoint(QPointF point, bool *wrapText) override;
//     };
//
// Only the deepest widget under the pointer is asked, found by geometry
// alone: a child covering the point (a label, even a hidden one) stands in
// the way of its parent's tooltip. See ToolTipController_ZL.
class TARNCOMMON_EXPORT ToolTipping_ZL
{
public:
    virtual ~ToolTipping_ZL();

    // point is in the widget's own coordinates. wrapText arrives set to true;
    // the widget may clear it for text that must not wrap. The answer is a
    // QString (plain text), a QTextDocumentFragment (rich text), or an
    // invalid QVariant for no tooltip at that point.
    virtual QVariant toolTipAtPoint(QPointF point, bool *wrapText) = 0;
};

#define ToolTipping_ZL_iid "org.tarn.TarnCommon.ToolTipping_ZL/1.0"
Q_DECLARE_INTERFACE(ToolTipping_ZL, ToolTipping_ZL_iid)
