#include "hosts/designer/DesignerPlugin.h"

#include "hosts/designer/ComponentWidget.h"
#include "hosts/designer/DesignerServices.h"
#include "hosts/designer/DocumentWidget.h"

#include "openapi/ApiDocument.h"

#include "runtime/service/RestService.h"

#include <algorithm>

TZODesignerPlugin::TZODesignerPlugin(QObject* AParent) : QObject(AParent) {
    DesignerServices::Start();
    const auto& documents = DesignerServices::Documents();
    const auto isOfDocument = [&](const TZORestServiceClass* AClass) {
        return std::any_of(documents.begin(), documents.end(),
                           [&](const auto& ADocument) { return ADocument->ServiceClass() == AClass; });
    };
    for (const TZORestServiceClass* serviceClass : TZOTypeInfo::Services()) {
        if (!isOfDocument(serviceClass))
            FWidgets.push_back(std::make_unique<TZOComponentWidget>(serviceClass));
    }
    for (const auto& document : documents)
        FWidgets.push_back(std::make_unique<TZODocumentWidget>(document.get()));
    FWidgets.push_back(std::make_unique<TZODocumentWidget>(nullptr));
}

TZODesignerPlugin::~TZODesignerPlugin() = default;

QList<QDesignerCustomWidgetInterface*> TZODesignerPlugin::customWidgets() const {
    QList<QDesignerCustomWidgetInterface*> widgets;
    for (const auto& widget : FWidgets)
        widgets.append(widget.get());
    return widgets;
}
