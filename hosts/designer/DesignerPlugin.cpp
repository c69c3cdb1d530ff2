#include "hosts/designer/DesignerPlugin.h"

#include "hosts/designer/ComponentWidget.h"
#include "hosts/designer/DesignerServices.h"

#include "runtime/service/RestService.h"

TZODesignerPlugin::TZODesignerPlugin(QObject* AParent) : QObject(AParent) {
    DesignerServices::Start();
    for (const TZORestServiceClass* serviceClass : TZOTypeInfo::Services())
        FWidgets.push_back(std::make_unique<TZOComponentWidget>(serviceClass));
}

TZODesignerPlugin::~TZODesignerPlugin() = default;

QList<QDesignerCustomWidgetInterface*> TZODesignerPlugin::customWidgets() const {
    QList<QDesignerCustomWidgetInterface*> widgets;
    for (const auto& widget : FWidgets)
        widgets.append(widget.get());
    return widgets;
}
