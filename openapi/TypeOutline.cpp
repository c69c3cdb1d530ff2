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
    /// What AType is a list or map of, or null.
    static const TZOTypeInfo* ItemTypeOf(const TZOTypeInfo* AType) {
        if (AType->Kind() == vkList)
            return static_cast<const ZOList::TTypeInfo*>(AType)->ItemType();
        return AType->Kind() == vkMap ? static_cast<const ZOMap::TTypeInfo*>(AType)->ItemType() : nullptr;
    }

    static QString KindText(const TZOTypeInfo* AType) {
        QString text;
        const TZOTypeInfo* type = AType;
        for (int level = 0; const TZOTypeInfo* item = ItemTypeOf(type); ++level, type = item) {
            if (level == MaxContainers)
                return text + QStringLiteral("...");
            text += KindName(type->Kind()) + QStringLiteral(" of ");
        }
        const bool isNamed = type->Kind() >= vkObject && !type->Name().isEmpty();
        return text + KindName(type->Kind()) + (isNamed ? u' ' + VisibleText(type->Name()) : QString());
    }

    /// What stands in AType when all lists and maps are opened; still one of them where they do not end.
    static const TZOTypeInfo* ItemOf(const TZOTypeInfo* AType) {
        const TZOTypeInfo* type = AType;
        for (int level = 0; level < MaxContainers && ItemTypeOf(type); ++level)
            type = ItemTypeOf(type);
        return type;
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
    /// Of lists and maps of each other, which may hold nothing but themselves.
    static constexpr int MaxContainers = 8;
    QSet<const TZOTypeInfo*> FSeen;
};

} // namespace

QString TypeOutline::Of(const TZORestService::TOper& AOper) {
    TOutline outline;
    outline.Root(QStringLiteral("request"), AOper.Request);
    outline.Root(QStringLiteral("response"), AOper.Response);
    return outline.Text;
}
