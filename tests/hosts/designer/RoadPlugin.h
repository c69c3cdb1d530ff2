// Loaded by the form editor beside the explorer: walks a road, then closes the editor.
#pragma once

#include <QObject>
#include <QWidget>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

/// The editor makes one of what a plug-in offers, to know its properties.
class TRoad final : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;
};

/// Offers no widget. The environment names the road (ZO_ROAD) and the folder for pictures and the transcript
/// (ZO_ROAD_FOLDER). The editor ends with 0 after it was closed at the end of the road, or with 3 at once
/// after the message of the step that failed on standard error.
class TRoadPlugin final : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetInterface)

public:
    QString name() const override { return QStringLiteral("TRoad"); }
    QString group() const override { return {}; }
    QString toolTip() const override { return {}; }
    QString whatsThis() const override { return {}; }
    QString includeFile() const override { return {}; }
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QString domXml() const override { return {}; }
    QWidget* createWidget(QWidget* AParent) override;
    void initialize(QDesignerFormEditorInterface* ACore) override;
};
