#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QString>
#include <QtWidgets/QMessageBox>

#include <memory>

/*!
    \file CocoaExtensions_ZL.h
    \brief Alert construction and shorthands for one component of a widget's frame.
*/

class QWidget;

/*!
    An alert with \a shortText as its message, \a longText as its informative
    text (a null text becomes an empty one) and the icon \a style, made but
    not shown. The caller owns it.

    \code
    auto alert = f_alertWithShortText(tr("Could not save"), error.localizedDescription(),
                                      QMessageBox::Warning);
    alert->exec();
    \endcode
*/
TARNCOMMON_EXPORT std::unique_ptr<QMessageBox> f_alertWithShortText(const QString &shortText,
                                                                    const QString &longText,
                                                                    QMessageBox::Icon style);

/*!
    The same alert as a child of \a parent, which owns it (a parented dialog
    cannot also be owned by the caller: whichever went first would leave the
    other with a dangling pointer). A null \a parent is refused with an
    assertion report and nullptr.
*/
TARNCOMMON_EXPORT QMessageBox *f_alertWithShortText(const QString &shortText, const QString &longText,
                                                    QMessageBox::Icon style, QWidget *parent);

/*! The width of \a view's geometry (its frame within its parent), in pixels; 0.0 for nullptr. */
TARNCOMMON_EXPORT double p_width(const QWidget *view);
/*! The height of \a view's geometry, in pixels; 0.0 for nullptr. */
TARNCOMMON_EXPORT double p_height(const QWidget *view);
/*! The x of \a view's geometry within its parent, in pixels; 0.0 for nullptr. */
TARNCOMMON_EXPORT double p_originX(const QWidget *view);
/*! The y of \a view's geometry within its parent, in pixels; 0.0 for nullptr. */
TARNCOMMON_EXPORT double p_originY(const QWidget *view);
/*!
    Sets the width of \a view's geometry to \a width, rounded to whole pixels,
    through setGeometry() and keeping the rest; nothing for nullptr.
*/
TARNCOMMON_EXPORT void setP_width(QWidget *view, double width);
/*! Sets the height of \a view's geometry to \a height, rounded to whole pixels; nothing for nullptr. */
TARNCOMMON_EXPORT void setP_height(QWidget *view, double height);
/*! Moves \a view's left edge to \a x, rounded to whole pixels, keeping its size; nothing for nullptr. */
TARNCOMMON_EXPORT void setP_originX(QWidget *view, double x);
/*! Moves \a view's top edge to \a y, rounded to whole pixels, keeping its size; nothing for nullptr. */
TARNCOMMON_EXPORT void setP_originY(QWidget *view, double y);
