#include <TarnCommon/CocoaExtensions_ZL.h>

#include <QtWidgets/QWidget>

#include <cmath>

std::unique_ptr<QMessageBox> f_alertWithShortText(const QString &shortText, const QString &longText,
                                                  QMessageBox::Icon style, QWidget *parent)
{
    auto alert = std::make_unique<QMessageBox>(parent);
    alert->setIcon(style);
    alert->setText(shortText.isNull() ? QString(QLatin1String("")) : shortText);
    alert->setInformativeText(longText.isNull() ? QString(QLatin1String("")) : longText);
    return alert;
}

double p_width(const QWidget *view) { return view ? view->geometry().width() : 0.0; }
double p_height(const QWidget *view) { return view ? view->geometry().height() : 0.0; }
double p_originX(const QWidget *view) { return view ? view->geometry().x() : 0.0; }
double p_originY(const QWidget *view) { return view ? view->geometry().y() : 0.0; }

namespace {

// Widgets live on whole pixels.
int pixels(double value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

void setP_width(QWidget *view, double width)
{
    if (!view)
        return;
    QRect frame = view->geometry();
    frame.setWidth(pixels(width));
    view->setGeometry(frame);
}

void setP_height(QWidget *view, double height)
{
    if (!view)
        return;
    QRect frame = view->geometry();
    frame.setHeight(pixels(height));
    view->setGeometry(frame);
}

void setP_originX(QWidget *view, double x)
{
    if (!view)
        return;
    QRect frame = view->geometry();
    frame.moveLeft(pixels(x));
    view->setGeometry(frame);
}

void setP_originY(QWidget *view, double y)
{
    if (!view)
        return;
    QRect frame = view->geometry();
    frame.moveTop(pixels(y));
    view->setGeometry(frame);
}
