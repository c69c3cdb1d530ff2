#include "hosts/designer/DocumentWidget.h"

#include "hosts/designer/DesignerServices.h"

#include "components/ComponentIcon.h"
#include "components/DocumentComponent.h"

#include "openapi/ApiDocument.h"

#include <QFileInfo>

namespace {

QString EntryName(const TZOApiDocument* ADocument) {
    return ADocument ? ADocument->ServiceClass()->ClassName() + QStringLiteral("Document")
                     : QLatin1String(TZODocumentComponent::staticMetaObject.className());
}

class TDesignDocument final : public TZODocumentComponent {
public:
    TDesignDocument(const TZOComponentClass& AEntryClass, QWidget* AParent)
        : TZODocumentComponent(AParent), FEntryClass(&AEntryClass) {}

    const QMetaObject* metaObject() const override {
        if (FEntryClass && !GetDocument().isEmpty())
            FEntryClass = nullptr;
        return FEntryClass ? FEntryClass->MetaObject() : &TZODocumentComponent::staticMetaObject;
    }

private:
    mutable const TZOComponentClass* FEntryClass;
    DesignerServices::TUser FUser;
};

} // namespace

TZODocumentWidget::TZODocumentWidget(const TZOApiDocument* ADocument)
    : TZOComponentWidget(ADocument ? ADocument->ServiceClass() : nullptr, EntryName(ADocument),
                         TZODocumentComponent::staticMetaObject),
      FDocument(ADocument) {}

QString TZODocumentWidget::Description() const {
    return FDocument ? TZOComponentWidget::Description()
                     : QStringLiteral("The service of an API document, which the property Document names.");
}

QString TZODocumentWidget::includeFile() const { return QStringLiteral("components/DocumentComponent.h"); }

QIcon TZODocumentWidget::icon() const {
    return FDocument ? TZOComponentWidget::icon() : ComponentIcon(QStringLiteral("Document"));
}

QString TZODocumentWidget::domXml() const {
    if (!FDocument)
        return Dropped(QStringLiteral("API document"), QStringLiteral("apiDocument"), {});
    // The class name ends with a hash, which nobody wants in a name.
    const QString name = FServiceClass->ClassName().section(u'_', 0, -2);
    const QString file = QFileInfo(FDocument->FileName()).fileName();
    return Dropped(
        FDocument->Title(), UsualObjectName(name),
        QStringLiteral(
            "<property name=\"Document\" stdset=\"0\"><string notr=\"true\">%1</string></property>")
            .arg(file.toHtmlEscaped()));
}

QWidget* TZODocumentWidget::createWidget(QWidget* AParent) {
    return new TDesignDocument(FComponentClass, AParent);
}
