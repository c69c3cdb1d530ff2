// What a form editor loads.
#pragma once

#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <memory>
#include <vector>

class TZOComponentWidget;

/// Offers one component per registered service class, and one for API documents that are named later. The
/// explorer itself comes with the first of them.
class TZODesignerPlugin final : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QDesignerCustomWidgetCollectionInterface_iid)
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

public:
    explicit TZODesignerPlugin(QObject* AParent = nullptr);
    ~TZODesignerPlugin() override;

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override;

private:
    std::vector<std::unique_ptr<TZOComponentWidget>> FWidgets;
};
