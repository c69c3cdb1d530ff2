// What the widget box offers.
#pragma once

#include "hosts/designer/ComponentClass.h"

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

class TZORestServiceClass;

/// Describes the component of one service class to a form editor, and makes it.
class TZOComponentWidget final : public QDesignerCustomWidgetInterface {
public:
    /// AClass must outlive the components.
    explicit TZOComponentWidget(const TZORestServiceClass* AClass);

    QString name() const override;
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QString domXml() const override;
    QWidget* createWidget(QWidget* AParent) override;
    /// Brings the explorer into the editor.
    void initialize(QDesignerFormEditorInterface* ACore) override;

private:
    const TZORestServiceClass* FServiceClass;
    TZOComponentClass FComponentClass;
};
