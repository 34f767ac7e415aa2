#include "GalleryPage.h"

#include <TarnCommon/KQBindings.h>
#include <TarnCommon/KQPrintInfo.h>
#include <TarnCommon/KQTextLayout.h>

#include <QtCore/QDir>
#include <QtGui/QPainter>
#include <QtGui/QPdfWriter>
#include <QtGui/QTextDocument>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QVBoxLayout>

namespace {

// The model the controls are bound to.
class Temperature : public QObject
{
    Q_OBJECT
    Q_PROPERTY(double celsius READ celsius WRITE setCelsius NOTIFY celsiusChanged)

public:
    using QObject::QObject;
    double celsius() const { return m_celsius; }
    void setCelsius(double c)
    {
        if (c != m_celsius) {
            m_celsius = c;
            Q_EMIT celsiusChanged();
        }
    }

Q_SIGNALS:
    void celsiusChanged();

private:
    double m_celsius = 20;
};

// Draws rich text centred, with the rectangle it was measured to need.
class MeasuredText : public QWidget
{
public:
    using QWidget::QWidget;
    int maxWidth = 220;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QTextDocument document;
        document.setHtml(QStringLiteral("<b>Measured</b> rich text, <i>centred</i> in the rectangle "
                                        "it needs at the chosen width."));
        const QTextDocumentFragment text(&document);
        const QRectF bounds = kq_boundsWithMaxWidth(text, maxWidth).translated(10, 10);
        QPainter painter(this);
        painter.fillRect(rect(), palette().base());
        painter.setPen(Qt::red);
        painter.drawRect(bounds);
        painter.setPen(palette().text().color());
        kq_drawInBounds(text, &painter, bounds);
    }
};

QWidget *bindingBox(QWidget *parent)
{
    auto *box = new QGroupBox(QObject::tr("Bindings"), parent);
    auto *model = new Temperature(box);
    auto *edit = new QLineEdit(box);
    auto *slider = new QSlider(Qt::Horizontal, box);
    slider->setRange(-40, 120);
    auto *label = new QLabel(box);
    auto *refused = new QLineEdit(box);

    auto *asText = KQValueTransformer::create(
        [](const QVariant &v) { return QVariant(QString::number(v.toDouble(), 'f', 1)); },
        [](const QVariant &v) {
            bool ok = false;
            const double c = v.toString().toDouble(&ok);
            return ok ? QVariant(c) : QVariant();
        },
        box);
    auto *fahrenheit = KQValueTransformer::create(
        [](const QVariant &v) { return QVariant(QStringLiteral("%1 \u00B0F").arg(v.toDouble() * 9 / 5 + 32, 0, 'f', 1)); },
        {}, box); // no way back: edits through it are refused
    kq_bind(edit, QStringLiteral("text"), model, QStringLiteral("celsius"),
            {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(asText)}});
    kq_bind(slider, QStringLiteral("value"), model, QStringLiteral("celsius"));
    kq_bind(label, QStringLiteral("text"), model, QStringLiteral("celsius"),
            {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(fahrenheit)}});
    kq_bind(refused, QStringLiteral("text"), model, QStringLiteral("celsius"),
            {{QLatin1String(NSValueTransformerBindingOption), QVariant::fromValue(fahrenheit)}});

    auto *layout = new QFormLayout(box);
    layout->addRow(QObject::tr("Celsius (text)"), edit);
    layout->addRow(QObject::tr("Celsius (slider)"), slider);
    layout->addRow(QObject::tr("Fahrenheit"), label);
    layout->addRow(QObject::tr("Fahrenheit, edits refused"), refused);
    return box;
}

QWidget *textBox(QWidget *parent)
{
    auto *box = new QGroupBox(QObject::tr("Rich text"), parent);
    auto *text = new MeasuredText(box);
    text->setMinimumHeight(120);
    auto *width = new QSlider(Qt::Horizontal, box);
    width->setRange(60, 500);
    width->setValue(text->maxWidth);
    QObject::connect(width, &QSlider::valueChanged, text, [text](int w) {
        text->maxWidth = w;
        text->update();
    });
    auto *print = new QPushButton(QObject::tr("Print to PDF"), box);
    auto *status = new QLabel(box);
    QObject::connect(print, &QPushButton::clicked, box, [status] {
        const QString path = QDir::temp().filePath(QStringLiteral("tarn-gallery-fit.pdf"));
        QPdfWriter writer(path);
        const QSizeF drawing(120, 80);
        KQPrintInfo info(writer.pageLayout());
        kq_maximallyFitContentOfSize(info, drawing);
        kq_applyPrintInfo(info, &writer);
        QPainter painter(&writer);
        kq_applyPrintInfo(info, &painter, drawing);
        painter.setPen(QPen(Qt::darkBlue, 2));
        painter.drawRect(QRectF(QPointF(0, 0), drawing));
        painter.drawEllipse(QRectF(QPointF(0, 0), drawing));
        painter.end();
        status->setText(QObject::tr("Written to %1 (factor %2)").arg(path).arg(info.scalingFactor(), 0, 'f', 2));
    });
    auto *layout = new QVBoxLayout(box);
    layout->addWidget(text, 1);
    layout->addWidget(width);
    layout->addWidget(print);
    layout->addWidget(status);
    return box;
}

QWidget *createBindingsPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    layout->addWidget(bindingBox(page));
    layout->addWidget(textBox(page), 1);
    return page;
}

const bool registered =
    GalleryPages::add({75, QStringLiteral("bindings"), QObject::tr("Bindings and rich text"), &createBindingsPage});

} // namespace

#include "BindingsPage.moc"
