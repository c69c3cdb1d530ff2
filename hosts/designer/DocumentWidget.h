// What the widget box offers of API documents.
#pragma once

#include "hosts/designer/ComponentWidget.h"

class TZOApiDocument;

/// Describes the component of one API document, or of one that is still to be named. Forms know one class for
/// all of them, TZODocumentComponent, while the widget box knows its entries by their classes: a component
/// that was dropped bears the name of its entry's class until its property Document is set, which the drop
/// does.
class TZODocumentWidget final : public TZOComponentWidget {
public:
    /// ADocument describes a service and must outlive the components; null: none is named yet.
    explicit TZODocumentWidget(const TZOApiDocument* ADocument);

    QString includeFile() const override;
    QIcon icon() const override;
    QString domXml() const override;
    QWidget* createWidget(QWidget* AParent) override;

protected:
    QString Description() const override;

private:
    const TZOApiDocument* FDocument;
};
