#pragma once

/*!
    \file KQPrintInfo.h
    \brief Print settings that fit content to the page, isolated painting,
    and images from picture handles and from mime data.

    Fitting a drawing of a fixed size to the printed page:
    \code
    KQPrintInfo info(printer.pageLayout());
    kq_maximallyFitContentOfSize(info, drawingSize);
    kq_applyPrintInfo(info, &printer);
    QPainter painter(&printer);
    kq_applyPrintInfo(info, &painter, drawingSize);
    drawing.render(&painter); // in its own units, 0,0 to drawingSize
    \endcode
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtGui/QImage>
#include <QtGui/QPageLayout>

#include <functional>
#include <memory>

class QMimeData;
class QPagedPaintDevice;
class QPainter;
class KQPrintInfoPrivate;

/*!
    \brief How content is printed on a page: the page layout, a scaling
    factor and whether the content is centred across and down the page.

    A value. Lengths are in points (1/72 inch). The imageable page bounds
    are the part of the page a printer can reach: the page less its
    minimum margins, whatever margins are set.
*/
class TARNCOMMON_EXPORT KQPrintInfo
{
public:
    /*! An A4 portrait page with Qt's default margins, factor 1, not centred. */
    KQPrintInfo();
    /*! Settings for \a pageLayout, factor 1, not centred. */
    explicit KQPrintInfo(const QPageLayout &pageLayout);
    ~KQPrintInfo();
    /*! A copy of \a other. */
    KQPrintInfo(const KQPrintInfo &other);
    /*! Makes this a copy of \a other. */
    KQPrintInfo &operator=(const KQPrintInfo &other);

    /*! The page layout, its margins included. */
    QPageLayout pageLayout() const;
    /*! Sets the page layout to \a pageLayout. */
    void setPageLayout(const QPageLayout &pageLayout);

    /*! The factor content is scaled by when printed; 1 by default. */
    qreal scalingFactor() const;
    /*! Sets the scaling factor to \a factor; one that is not positive and finite is reported and ignored. */
    void setScalingFactor(qreal factor);

    /*! Whether content is centred across the page. */
    bool isHorizontallyCentered() const;
    /*! Sets whether content is centred across the page to \a centered. */
    void setHorizontallyCentered(bool centered);
    /*! Whether content is centred down the page. */
    bool isVerticallyCentered() const;
    /*! Sets whether content is centred down the page to \a centered. */
    void setVerticallyCentered(bool centered);

    /*! Sets the top margin to \a points (at least the page's minimum margin). */
    void setTopMargin(qreal points);
    /*! Sets the left margin to \a points (at least the page's minimum margin). */
    void setLeftMargin(qreal points);
    /*! Sets the right margin to \a points (at least the page's minimum margin). */
    void setRightMargin(qreal points);
    /*! Sets the bottom margin to \a points (at least the page's minimum margin). */
    void setBottomMargin(qreal points);

    /*! The part of the page a printer can reach, in points from the page's top-left corner. */
    QRectF imageablePageBounds() const;

    /*!
        Where content of \a contentSize lands on the page, in points from
        the page's top-left corner, once scaled: centred in the imageable
        bounds in a centred direction, else at the margin.
    */
    QRectF placedContentRect(const QSizeF &contentSize) const;

private:
    std::unique_ptr<KQPrintInfoPrivate> d;
};

/*!
    Sets \a printInfo up so that content of \a size fills the imageable page:
    centred both ways, margins 0 (or the page's minimum), and the scaling
    factor min(imageable width / width, imageable height / height), which
    enlarges small content too. A size that is not positive and finite
    would give no finite factor: it is reported and the factor left as it was.
*/
TARNCOMMON_EXPORT void kq_maximallyFitContentOfSize(KQPrintInfo &printInfo, const QSizeF &size);

/*!
    Gives \a device (a QPrinter or QPdfWriter, before painting starts) the
    page layout of \a printInfo. A null device is reported.
*/
TARNCOMMON_EXPORT void kq_applyPrintInfo(const KQPrintInfo &printInfo, QPagedPaintDevice *device);

/*!
    Transforms \a painter, active on a paged device given \a printInfo's
    layout, so that content drawn from (0, 0) to \a contentSize in points
    is scaled by the factor and placed as KQPrintInfo::placedContentRect()
    says. Answers false, with a report and the painter unchanged, when the
    painter is null, inactive or not on a paged device.
*/
TARNCOMMON_EXPORT bool kq_applyPrintInfo(const KQPrintInfo &printInfo, QPainter *painter, const QSizeF &contentSize);

/*!
    Runs \a block between saving and restoring \a painter's state; the state
    is restored even when the block throws. A null painter is reported and
    the block not run.
*/
TARNCOMMON_EXPORT void kq_isolate(QPainter *painter, const std::function<void()> &block);

/*!
    An image from a legacy picture handle. A null \a picHandle is reported
    ("picHandle"); no legacy picture decoder exists here, so every other
    handle is reported as undecodable ("imageRep"). Either way the image is null.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QImage kq_imageFromPicHandle(char **picHandle);

/*!
    An image from \a mimeData: its image data when it has some (a Qt image
    or the bytes of an "image/..." format), else the image in the one local
    file it names, when that file's suffix is, case included, one of
    QImageReader's formats. Anything else (no data, several or no files, a
    file that cannot be read) gives a null image without a report.
*/
TARNCOMMON_EXPORT QImage kq_imageFromPasteboard(const QMimeData *mimeData);
