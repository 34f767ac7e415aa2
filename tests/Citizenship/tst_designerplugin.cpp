// Linked against the shared library, as the plugin is, so both see the same classes.
#include <TarnCommon/KQCollapsibleView.h>
#include <TarnCommon/KQTabView.h>

#include <QtCore/QBuffer>
#include <QtCore/QPluginLoader>
#include <QtTest/QtTest>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiTools/QUiLoader>

const char *const kForm = R"(<ui version="4.0">
 <widget class="QWidget" name="Form">
  <widget class="KQTabView" name="tabs"/>
  <widget class="KQCollapsibleView" name="section"/>
 </widget>
</ui>
)";

class tst_DesignerPlugin : public QObject
{
    Q_OBJECT
    QUiLoader loader;

private Q_SLOTS:
    void initTestCase()
    {
        QPluginLoader plugin(QStringLiteral(DESIGNER_PLUGIN_FILE));
        QVERIFY2(plugin.load(), qPrintable(plugin.errorString()));
        QVERIFY(qobject_cast<QDesignerCustomWidgetCollectionInterface *>(plugin.instance()));
        loader.clearPluginPaths();
        loader.addPluginPath(QFileInfo(plugin.fileName()).path());
    }

    void widgetByClassName_data()
    {
        QTest::addColumn<QString>("name");
        for (const char *name : {"KQTabView", "KQCollapsibleView", "KQCollapsibleListView"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void widgetByClassName()
    {
        QFETCH(QString, name);
        QWidget parent;
        QWidget *made = loader.createWidget(name, &parent);
        QVERIFY(made && made->parentWidget() == &parent);
        QCOMPARE(QString::fromLatin1(made->metaObject()->className()), name);
    }

    void formLoads()
    {
        QBuffer buffer;
        buffer.setData(kForm);
        buffer.open(QIODevice::ReadOnly);
        std::unique_ptr<QWidget> form(loader.load(&buffer));
        QVERIFY2(form, qPrintable(loader.errorString()));
        QVERIFY(form->findChild<KQTabView *>() && form->findChild<KQCollapsibleView *>());
    }
};

QTEST_MAIN(tst_DesignerPlugin)
#include "tst_designerplugin.moc"
