#include "TarnCommonDesignerPlugin.h"

#include <TarnCommon/KQCollapsibleListView.h>
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQTabView.h>

#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtGui/QPixmap>

namespace {

// The widget box entry: the class, a default object name and a size that
// shows the widget's shape at once (Designer lays it out from there).
QString widgetXml(const QString &className, const QString &objectName, const QSize &size,
                  const QString &extraProperties = QString())
{
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n"
                          "  <property name=\"geometry\">\n"
                          "   <rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>\n"
                          "  </property>\n"
                          "%5"
                          " </widget>\n"
                          "</ui>\n")
        .arg(className, objectName)
        .arg(size.width())
        .arg(size.height())
        .arg(extraProperties);
}

} // namespace

TarnCommonWidgetInterface::TarnCommonWidgetInterface(Description description, QObject *parent)
    : QObject(parent)
    , m_description(std::move(description))
{
}

QString TarnCommonWidgetInterface::group() const
{
    return QStringLiteral("TarnCommon");
}

QIcon TarnCommonWidgetInterface::icon() const
{
    // A plain badge with the class's initials: the plugin carries no images.
    QPixmap pixmap(22, 22);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor(70, 110, 170));
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(QRectF(1, 1, 20, 20), 4, 4);
    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPixelSize(9);
    font.setBold(true);
    painter.setFont(font);
    QString initials;
    for (const QChar c : m_description.name.mid(2)) {
        if (c.isUpper())
            initials.append(c);
    }
    painter.drawText(QRectF(0, 0, 22, 22), Qt::AlignCenter, initials.left(3));
    painter.end();
    return QIcon(pixmap);
}

QWidget *TarnCommonWidgetInterface::createWidget(QWidget *parent)
{
    return m_description.create(parent);
}

void TarnCommonWidgetInterface::initialize(QDesignerFormEditorInterface *)
{
    m_initialized = true;
}

TarnCommonDesignerPlugin::TarnCommonDesignerPlugin(QObject *parent)
    : QObject(parent)
{
    m_widgets.append(new TarnCommonWidgetInterface(
        {QStringLiteral("KQTabView"), QStringLiteral("TarnCommon/KQTabView.h"),
         QStringLiteral("A view switching between widgets with a bar of icon tabs"),
         QStringLiteral("KQTabView shows one of several content widgets, chosen with a bar of icon tabs "
                        "along its top edge. Add the tabs (KQTab) in code."),
         widgetXml(QStringLiteral("KQTabView"), QStringLiteral("tabView"), QSize(240, 160)),
         [](QWidget *parent) -> QWidget * { return new KQTabView(parent); }},
        this));
    m_widgets.append(new TarnCommonWidgetInterface(
        {QStringLiteral("KQCollapsibleView"), QStringLiteral("TarnCommon/KQCollapsibleView.h"),
         QStringLiteral("A titled section that collapses to its header"),
         QStringLiteral("KQCollapsibleView shows a header with a disclosure button and a title over its "
                        "content; stack several in a KQCollapsibleListView."),
         widgetXml(QStringLiteral("KQCollapsibleView"), QStringLiteral("collapsibleView"), QSize(200, 18),
                   QStringLiteral("  <property name=\"title\">\n"
                                  "   <string>Section</string>\n"
                                  "  </property>\n")),
         [](QWidget *parent) -> QWidget * {
             return new KQCollapsibleView(QStringLiteral("Section"), nullptr, true, false, parent);
         }},
        this));
    m_widgets.append(new TarnCommonWidgetInterface(
        {QStringLiteral("KQCollapsibleListView"), QStringLiteral("TarnCommon/KQCollapsibleListView.h"),
         QStringLiteral("A list stacking collapsible sections"),
         QStringLiteral("KQCollapsibleListView stacks KQCollapsibleView sections at full width and "
                        "remembers which are collapsed under its autosaveName."),
         widgetXml(QStringLiteral("KQCollapsibleListView"), QStringLiteral("collapsibleListView"),
                   QSize(200, 200)),
         [](QWidget *parent) -> QWidget * { return new KQCollapsibleListView(parent); }},
        this));
}
