#include "openapi/TypeOutline.h"

#include "platform/VisibleText.h"

#include <QSet>

namespace {

class TOutline {
public:
    QString Text;

    void Root(const QString& ACaption, const TZOTypeInfo* AType) {
        Text += ACaption;
        if (!AType)
            Text += QStringLiteral(": none\n");
        else if (AType->Kind() == vkObject &&
                 !static_cast<const ZOObject::TTypeInfo*>(AType)->GetHasSubtypes() &&
                 ACaption == QStringLiteral("request"))
            Text += u'\n';
        else
            Finish(AType, {});
        if (AType)
            Children(AType, 1);
    }

private:
    static QString KindText(const TZOTypeInfo* AType) {
        if (AType->Kind() == vkList)
            return QStringLiteral("list of ") +
                   KindText(static_cast<const ZOList::TTypeInfo*>(AType)->ItemType());
        if (AType->Kind() == vkMap)
            return QStringLiteral("map of ") +
                   KindText(static_cast<const ZOMap::TTypeInfo*>(AType)->ItemType());
        const bool isNamed = AType->Kind() >= vkObject && !AType->Name().isEmpty();
        return isNamed ? KindName(AType->Kind()) + u' ' + VisibleText(AType->Name())
                       : KindName(AType->Kind());
    }

    static const TZOTypeInfo* ItemOf(const TZOTypeInfo* AType) {
        while (AType->Kind() == vkList || AType->Kind() == vkMap) {
            AType = AType->Kind() == vkList ? static_cast<const ZOList::TTypeInfo*>(AType)->ItemType()
                                            : static_cast<const ZOMap::TTypeInfo*>(AType)->ItemType();
        }
        return AType;
    }

    /// Ends a line that has got its name.
    void Finish(const TZOTypeInfo* AType, const ZOObject::TProperty* AProperty) {
        Text += QStringLiteral(": ") + KindText(AType);
        if (AProperty && AProperty->Required)
            Text += QStringLiteral(" required");
        if (AProperty && AProperty->ReadOnly)
            Text += QStringLiteral(" read-only");
        const QStringList& allowed = ItemOf(AType)->AllowedValues();
        if (!allowed.isEmpty())
            Text += QStringLiteral(" [") + VisibleText(allowed.join(QStringLiteral(", "))) + u']';
        if (AProperty && !AProperty->Description.isEmpty())
            Text += QStringLiteral(" - ") + VisibleText(AProperty->Description.simplified());
        if (FSeen.contains(ItemOf(AType)))
            Text += QStringLiteral(" (see above)");
        Text += u'\n';
    }

    void Line(int ADepth, const QString& AName, const TZOTypeInfo* AType,
              const ZOObject::TProperty* AProperty = nullptr) {
        Text += QString(ADepth * 2, u' ') + VisibleText(AName);
        if (!AType) {
            Text += QStringLiteral(": nothing\n");
            return;
        }
        Finish(AType, AProperty);
        Children(AType, ADepth + 1);
    }

    void Children(const TZOTypeInfo* AType, int ADepth) {
        const TZOTypeInfo* type = ItemOf(AType);
        if (type->Kind() < vkObject || FSeen.contains(type))
            return;
        FSeen.insert(type);
        if (ADepth > MaxDepth) {
            Text += QString(ADepth * 2, u' ') + QStringLiteral("...\n");
        } else if (type->Kind() == vkUnion) {
            for (const ZOUnion::TTag& tag : static_cast<const ZOUnion::TTypeInfo*>(type)->Tags())
                Line(ADepth, u'<' + tag.Name + u'>', tag.Type);
        } else if (type->Kind() == vkObject) {
            Object(*static_cast<const ZOObject::TTypeInfo*>(type), ADepth);
        }
    }

    void Object(const ZOObject::TTypeInfo& AType, int ADepth) {
        for (const ZOObject::TSubtype& subtype : AType.Subtypes())
            Line(ADepth, u'<' + AType.DiscriminatorName() + u'=' + subtype.Name + u'>', subtype.Type);
        for (int i = 0; i < AType.PropertyCount(); ++i)
            Line(ADepth, AType.Property(i)->Name, AType.Property(i)->Type, AType.Property(i));
    }

    static constexpr int MaxDepth = 200;
    QSet<const TZOTypeInfo*> FSeen;
};

} // namespace

QString TypeOutline::Of(const TZORestService::TOper& AOper) {
    TOutline outline;
    outline.Root(QStringLiteral("request"), AOper.Request);
    outline.Root(QStringLiteral("response"), AOper.Response);
    return outline.Text;
}
