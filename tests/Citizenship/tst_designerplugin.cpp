// The Designer plugin as Designer and QUiLoader use it. Linked against the
// shared library, as the plugin is, so both see the same classes.
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QBuffer>
#include <QtCore/QPluginLoader>
#include <QtCore/QRegularExpression>
#include <QtTest/QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <QtUiTools/QUiLoader>

namespace {

const char *const kForm = R"(<ui version="4.0">
 <class>Form</class>
 <widget class="QWidget" name="Form">
  <layout class="QVBoxLayout" name="layout">
   <item>
    <widget class="KQTabView" name="tabs">
     <property name="tag" stdset="0"><number>7</number></property>
     <property name="autoresizingMask" stdset="0"><number>18</number></property>
    </widget>
   </item>
   <item>
    <widget class="KQCollapsibleView" name="section">
     <property name="title"><string>Colours</string></property>
     <property name="drawTopLine"><bool>true</bool></property>
    </widget>
   </item>
  </layout>
 </widget>
</ui>
)";

} // namespace

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pluginOffersTheWidgets_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"KQTabView", "KQCollapsibleView", "KQCollapsibleListView"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void pluginOffersTheWidgets()
    {
        QFETCH(QString, name);
        QPluginLoader loader(QStringLiteral(DESIGNER_PLUGIN_FILE));
        QVERIFY2(loader.load(), qPrintable(loader.errorString()));
        auto *collection = qobject_cast<QDesignerCustomWidgetCollectionInterface *>(loader.instance());
        QVERIFY(collection);
        const QList<QDesignerCustomWidgetInterface *> widgets = collection->customWidgets();
        const auto found = std::find_if(widgets.begin(), widgets.end(), [&](auto *widget) { return widget->name() == name; });
        QVERIFY(found != widgets.end());
        // The widget-box entry makes one of these.
        QCOMPARE(QRegularExpression(QStringLiteral("<widget [^>]*class=\"(\\w+)\"")).match((*found)->domXml()).captured(1), name);
        QCOMPARE((*found)->includeFile(), QStringLiteral("TarnCommon/%1.h").arg(name));
        QVERIFY(QFile::exists(QStringLiteral(PUBLIC_INCLUDE_DIR "/") + (*found)->includeFile()));
        QWidget parent;
        std::unique_ptr<QWidget> made((*found)->createWidget(&parent));
        QVERIFY(made && made->parentWidget() == &parent);
        QCOMPARE(QString::fromLatin1(made->metaObject()->className()), name);
    }

    void formLoadsThroughQUiLoader()
    {
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(QStringLiteral(DESIGNER_PLUGIN_DIR));
        QBuffer buffer;
        buffer.setData(kForm);
        buffer.open(QIODevice::ReadOnly);
        std::unique_ptr<QWidget> form(loader.load(&buffer));
        QVERIFY2(form, qPrintable(loader.errorString()));
        auto *tabs = form->findChild<KQTabView *>(QStringLiteral("tabs"));
        auto *section = form->findChild<KQCollapsibleView *>(QStringLiteral("section"));
        QVERIFY(tabs && section);
        // Properties of the classes and the relayout properties set dynamically.
        QCOMPARE(section->title(), QStringLiteral("Colours"));
        QVERIFY(section->drawTopLine());
        QCOMPARE(tabs->property("tag").toInt(), 7);
        QCOMPARE(tabs->property("autoresizingMask").toInt(), 18);
    }
};

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
