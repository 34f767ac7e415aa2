#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <memory>

class QWidget;

// An alert with a message and an informative text (a null text becomes an
// empty one) and the given icon, made but not shown. The caller owns it.
TARNCOMMON_EXPORT std::unique_ptr<QMessageBox> f_alertWithShortText(const QString &shortText,
                                                                    const QString &longText,
                                                                    QMessageBox::Icon style);

// The same alert as a child of parent, which owns it (a parented dialog
// cannot also be owned by the caller: whichever went first would leave the
// other with a dangling pointer). A null parent is refused with a report and
// nullptr.
TARNCOMMON_EXPORT QMessageBox *f_alertWithShortText(const QString &shortText, const QString &longText,
                                                    QMessageBox::Icon style, QWidget *parent);

// Frame shorthands: one component of a widget's geometry (its frame within
// its parent). The getters answer 0.0 for nullptr; the setters change that
// one component through setGeometry() and do nothing for nullptr.
TARNCOMMON_EXPORT double p_width(const QWidget *view);
TARNCOMMON_EXPORT double p_height(const QWidget *view);
TARNCOMMON_EXPORT double p_originX(const QWidget *view);
TARNCOMMON_EXPORT double p_originY(const QWidget *view);
TARNCOMMON_EXPORT void setP_width(QWidget *view, double width);
TARNCOMMON_EXPORT void setP_height(QWidget *view, double height);
TARNCOMMON_EXPORT void setP_originX(QWidget *view, double x);
TARNCOMMON_EXPORT void setP_originY(QWidget *view, double y);
