#include <TarnCommon/CocoaExtensions_ZL.h>

#include <TarnCommon/KQAssert.h>

#include <QtWidgets/QWidget>

#include <cmath>

namespace {

void setUpAlert(QMessageBox *alert, const QString &shortText, const QString &longText, QMessageBox::Icon style)
{
    alert->setIcon(style);
    alert->setText(shortText.isNull() ? QString(QLatin1String("")) : shortText);
    alert->setInformativeText(longText.isNull() ? QString(QLatin1String("")) : longText);
}

} // namespace

std::unique_ptr<QMessageBox> f_alertWithShortText(const QString &shortText, const QString &longText,
                                                  QMessageBox::Icon style)
{
    auto alert = std::make_unique<QMessageBox>();
    setUpAlert(alert.get(), shortText, longText, style);
    return alert;
}

QMessageBox *f_alertWithShortText(const QString &shortText, const QString &longText, QMessageBox::Icon style,
                                  QWidget *parent)
{
    KQAssert(parent != nullptr, nullptr);
    auto *alert = new QMessageBox(parent);
    setUpAlert(alert, shortText, longText, style);
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

// Reads the frame, lets change alter one component and sets it back, so the
// widget's usual resize and repaint follow; nothing for nullptr.
template<typename Change>
void changeFrame(QWidget *view, Change change)
{
    if (!view)
        return;
    QRect frame = view->geometry();
    change(frame);
    view->setGeometry(frame);
}

} // namespace

void setP_width(QWidget *view, double width)
{
    changeFrame(view, [width](QRect &frame) { frame.setWidth(pixels(width)); });
}

void setP_height(QWidget *view, double height)
{
    changeFrame(view, [height](QRect &frame) { frame.setHeight(pixels(height)); });
}

void setP_originX(QWidget *view, double x)
{
    changeFrame(view, [x](QRect &frame) { frame.moveLeft(pixels(x)); });
}

void setP_originY(QWidget *view, double y)
{
    changeFrame(view, [y](QRect &frame) { frame.moveTop(pixels(y)); });
}
