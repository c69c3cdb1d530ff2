#include "hosts/designer/ComponentWidget.h"

#include "hosts/designer/DesignerHost.h"
#include "hosts/designer/DesignerServices.h"

#include "components/ComponentIcon.h"
#include "components/ServiceComponent.h"

#include "runtime/service/RestService.h"

#include "platform/TipText.h"
#include "platform/VisibleText.h"

namespace {

QString ComponentName(const TZORestServiceClass* AClass) {
    return AClass->ClassName() + QStringLiteral("Component");
}

// The class name without the "T" that all have.
QString BareName(const QString& AClassName) {
    return AClassName.size() > 1 && AClassName.startsWith(u'T') && AClassName.at(1).isUpper()
               ? AClassName.mid(1)
               : AClassName;
}

/// A component of a class that only its name tells from others.
class TDesignComponent final : public TZOServiceComponent {
public:
    TDesignComponent(const TZOComponentClass& AComponentClass, const TZORestServiceClass* AServiceClass,
                     QWidget* AParent)
        : TZOServiceComponent(AServiceClass, AParent), FComponentClass(AComponentClass) {}

    const QMetaObject* metaObject() const override { return FComponentClass.MetaObject(); }

private:
    const TZOComponentClass& FComponentClass;
    DesignerServices::TUser FUser;
};

} // namespace

TZOComponentWidget::TZOComponentWidget(const TZORestServiceClass* AClass)
    : TZOComponentWidget(AClass, ComponentName(AClass), TZOServiceComponent::staticMetaObject) {}

TZOComponentWidget::TZOComponentWidget(const TZORestServiceClass* AClass, const QString& AName,
                                       const QMetaObject& ABase)
    : FServiceClass(AClass), FComponentClass(AName, ABase), FName(AName) {}

QString TZOComponentWidget::name() const { return FName; }

QString TZOComponentWidget::group() const { return QStringLiteral("ZO Bridgework"); }

QString TZOComponentWidget::Description() const { return FServiceClass->TypeInfo()->Description(); }

QString TZOComponentWidget::toolTip() const { return TipText(Description()); }

QString TZOComponentWidget::whatsThis() const {
    return TipText(QStringLiteral("A REST service on the form: %1\n\nIt is not seen when the program runs. "
                                  "\"Explore service...\" in its menu tries its operations.")
                       .arg(Description()));
}

QString TZOComponentWidget::includeFile() const {
    const QString& header = FServiceClass->ComponentHeader();
    return header.isEmpty() ? BareName(name()) + QStringLiteral(".h") : header;
}

QIcon TZOComponentWidget::icon() const { return ComponentIcon(FServiceClass->ClassName()); }

QString TZOComponentWidget::domXml() const {
    return Dropped(FServiceClass->ClassName(), UsualObjectName(FServiceClass->ClassName()), {});
}

QString TZOComponentWidget::UsualObjectName(const QString& AClassName) {
    QString name = BareName(AClassName);
    name[0] = name[0].toLower();
    return name;
}

QString TZOComponentWidget::Dropped(const QString& ADisplayName, const QString& AObjectName,
                                    const QString& AProperties) const {
    return QStringLiteral("<ui language=\"c++\" displayname=\"%1\">"
                          "<widget class=\"%2\" name=\"%3\"><property name=\"geometry\"><rect>"
                          "<x>0</x><y>0</y><width>40</width><height>40</height>"
                          "</rect></property>%4</widget></ui>")
        .arg(VisibleText(ADisplayName).toHtmlEscaped(), name(), AObjectName, AProperties);
}

QWidget* TZOComponentWidget::createWidget(QWidget* AParent) {
    return new TDesignComponent(FComponentClass, FServiceClass, AParent);
}

void TZOComponentWidget::initialize(QDesignerFormEditorInterface* ACore) { TZODesignerHost::Start(ACore); }
