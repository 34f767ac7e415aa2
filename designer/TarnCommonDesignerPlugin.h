#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

#include <QtCore/QObject>

#include <functional>

// One widget of the library as Designer's widget box shows it.
class TarnCommonWidgetInterface : public QObject, public QDesignerCustomWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    struct Description
    {
        QString name;
        QString includeFile;
        QString toolTip;
        QString whatsThis;
        QString domXml;
        std::function<QWidget *(QWidget *parent)> create;
    };

    TarnCommonWidgetInterface(Description description, QObject *parent);

    QString name() const override { return m_description.name; }
    QString group() const override;
    QString toolTip() const override { return m_description.toolTip; }
    QString whatsThis() const override { return m_description.whatsThis; }
    QString includeFile() const override { return m_description.includeFile; }
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget *createWidget(QWidget *parent) override;
    bool isInitialized() const override { return m_initialized; }
    void initialize(QDesignerFormEditorInterface *core) override;
    QString domXml() const override { return m_description.domXml; }

private:
    Description m_description;
    bool m_initialized = false;
};

// The collection Designer and QUiLoader load: KQTabView, KQCollapsibleView
// and KQCollapsibleListView.
class TarnCommonDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit TarnCommonDesignerPlugin(QObject *parent = nullptr);

    QList<QDesignerCustomWidgetInterface *> customWidgets() const override { return m_widgets; }

private:
    QList<QDesignerCustomWidgetInterface *> m_widgets;
};
