// What the widget box offers.
#pragma once

#include "hosts/designer/ComponentClass.h"

#include <QtUiPlugin/QDesignerCustomWidgetInterface>

class TZORestServiceClass;

/// Describes the component of one service class to a form editor, and makes it.
class TZOComponentWidget : public QDesignerCustomWidgetInterface {
public:
    /// AClass must outlive the components.
    explicit TZOComponentWidget(const TZORestServiceClass* AClass);

    QString name() const override;
    QString group() const override;
    QString toolTip() const final;
    QString whatsThis() const final;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QString domXml() const override;
    QWidget* createWidget(QWidget* AParent) override;
    /// Brings the explorer into the editor.
    void initialize(QDesignerFormEditorInterface* ACore) override;

protected:
    /// AClass may be null, but for the functions that are not overridden; ABase is what the components are.
    TZOComponentWidget(const TZORestServiceClass* AClass, const QString& AName, const QMetaObject& ABase);

    /// Plain text, of a document perhaps.
    virtual QString Description() const;
    /// What the editor makes of a drop: a widget of this class. AProperties is XML.
    QString Dropped(const QString& ADisplayName, const QString& AObjectName,
                    const QString& AProperties) const;
    /// A usual name for an object of the class.
    static QString UsualObjectName(const QString& AClassName);

    const TZORestServiceClass* FServiceClass;
    TZOComponentClass FComponentClass;

private:
    QString FName;
};
