#include "GalleryPage.h"
#include "GeometryDemo.h"

#include <TarnCommon/KQAssert.h>
#include <TarnCommon/KQGeometry.h>
#include <TarnCommon/TarnCommonVersion.h>

#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

namespace {

// A contract the buttons break on purpose, to show a report in the log panel.
double ratio(double numerator, double denominator)
{
    KQAssert(denominator != 0.0, 0.0);
    return numerator / denominator;
}

QWidget *createStartPage()
{
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);

    auto *title = new QLabel(QStringLiteral("<h2>TarnCommon</h2>"), page);
    const QString version = QString::fromUtf8(reinterpret_cast<const char *>(TarnCommonVersionString)).trimmed();
    auto *versionLabel = new QLabel(QObject::tr("Version %1 &mdash; <tt>%2</tt>")
                                        .arg(TarnCommonVersionNumber, 0, 'f', 1)
                                        .arg(version.toHtmlEscaped()),
                                    page);
    versionLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(title);
    layout->addWidget(versionLabel);

    layout->addWidget(new GeometryDemo(page), 1);

    auto *buttons = new QHBoxLayout;
    auto *assertButton = new QPushButton(QObject::tr("Provoke an assertion"), page);
    QObject::connect(assertButton, &QPushButton::clicked, page, [] { (void)ratio(1.0, 0.0); });
    auto *edgeButton = new QPushButton(QObject::tr("Move an invalid edge"), page);
    QObject::connect(edgeButton, &QPushButton::clicked, page,
                     [] { (void)q_RECT_set_edge_to_location(QRectF(0, 0, 10, 10), 4, 1.0); });
    buttons->addWidget(assertButton);
    buttons->addWidget(edgeButton);
    buttons->addStretch();
    layout->addLayout(buttons);
    return page;
}

const bool registered = GalleryPages::add({0, QStringLiteral("start"), QObject::tr("Start"), &createStartPage});

} // namespace
