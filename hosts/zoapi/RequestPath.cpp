#include "hosts/zoapi/RequestPath.h"

#include "hosts/zoapi/Arguments.h"

#include "jsoneditor/values/ValueText.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/JsonText.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/Storage.h"
#include "runtime/types/Union.h"
#include "runtime/types/ValueHolder.h"

#include <QSet>

#include <functional>
#include <vector>

namespace {

[[noreturn]] void RaiseNoPlace(const QString& APath, const QString& AStep, const QString& AReason) {
    throw EZOUsageError(
        QStringLiteral("The request has no place \"%1\": \"%2\" %3.").arg(APath, AStep, AReason));
}

QString Unescaped(QString AStep) {
    return AStep.replace(QStringLiteral("~1"), QStringLiteral("/"))
        .replace(QStringLiteral("~0"), QStringLiteral("~"));
}

QStringList StepsOf(const QString& APath) {
    const QStringList steps = APath.split(u'/');
    if (steps.size() > JsonText::MaxDepth)
        throw EZOUsageError(QStringLiteral("The path \"%1...\" nests deeper than %2 levels.")
                                .arg(APath.left(40))
                                .arg(JsonText::MaxDepth));
    return steps;
}

/// Walks from one value to another inside it.
class TWalk {
public:
    TWalk(TZOValueHolder& ARoot, const QString& APath) : FPath(APath) {
        FAt.Type = ARoot.Type();
        ARoot.GetByRef(FAt.Storage);
    }

    TZOValuePlace At() const { return FAt; }

    void Step(const QString& AStep) {
        ChooseTag(AStep);
        switch (FAt.Type->Kind()) {
        case vkObject:
            return StepIntoObject(AStep);
        case vkList:
            return StepIntoList(AStep);
        case vkMap: {
            auto* map = static_cast<ZOMap*>(FAt.Storage);
            FAt.Type = map->Type()->ItemType();
            FMakeAbsent = [map, AStep](void*& ARef) { map->SetItem(AStep, false, ARef); };
            return map->GetByRef(AStep, FAt.Storage);
        }
        default:
            RaiseNoPlace(FPath, AStep, QStringLiteral("would be part of a value without parts"));
        }
    }

    /// Whether the last step names the discriminator of a polymorphic object here.
    bool IsDiscriminator(const QString& AStep) {
        ChooseTag(AStep);
        return FAt.Type->Kind() == vkObject && Declared()->GetHasSubtypes() &&
               Declared()->DiscriminatorName() == AStep;
    }

    void ChooseSubtype(const QString& AName) {
        const ZOObject::TSubtype* subtype = Declared()->FindSubtype(AName);
        if (!subtype)
            RaiseNoPlace(FPath, AName, QStringLiteral("is none of the types that can stand there"));
        auto*& object = *static_cast<ZOObject**>(FAt.Storage);
        delete object;
        object = subtype->Type->CreateInstance().release();
    }

    /// Makes the value absent where the last step led.
    void MakeAbsent() {
        void* none = nullptr;
        FMakeAbsent(none);
    }

private:
    const ZOObject::TTypeInfo* Declared() const { return static_cast<const ZOObject::TTypeInfo*>(FAt.Type); }

    void StepIntoObject(const QString& AStep) {
        auto* object = *static_cast<ZOObject**>(FAt.Storage);
        const ZOObject::TTypeInfo* type = ZOObject::TData::Type(object);
        const PProperty property = type->FindProperty(AStep);
        if (!property && Declared()->GetHasSubtypes() && !Declared()->GetSubtypeByType(type))
            RaiseNoPlace(FPath, AStep,
                         QStringLiteral("needs \"%1\" to be set first").arg(Declared()->DiscriminatorName()));
        if (!property)
            RaiseNoPlace(FPath, AStep, QStringLiteral("is no property there"));
        FAt.Type = property->Type;
        FMakeAbsent = [object, property](void*& ARef) {
            ZOObject::TData::SetProp(object, property->Index, false, ARef);
        };
        ZOObject::TData::GetByRef(object, property->Index, FAt.Storage);
    }

    void StepIntoList(const QString& AStep) {
        auto* list = static_cast<ZOList*>(FAt.Storage);
        bool isNumber = false;
        const int index = AStep == QStringLiteral("-") ? list->Count() : AStep.toInt(&isNumber);
        if ((!isNumber && AStep != QStringLiteral("-")) || index < 0 || index > list->Count())
            RaiseNoPlace(FPath, AStep, QStringLiteral("is no element of the list, nor the next one"));
        FAt.Type = list->Type()->ItemType();
        FMakeAbsent = [list, index](void*& ARef) { list->SetItem(index, false, ARef); };
        if (index == list->Count())
            list->Insert(index, true, FAt.Storage);
        else
            list->GetByRef(index, FAt.Storage);
    }

    static bool TakesStep(const TZOTypeInfo* AType, const QString& AStep) {
        if (AType->Kind() == vkObject) {
            const auto* object = static_cast<const ZOObject::TTypeInfo*>(AType);
            return object->FindProperty(AStep) ||
                   (object->GetHasSubtypes() && object->DiscriminatorName() == AStep);
        }
        bool isNumber = false;
        AStep.toInt(&isNumber);
        return AType->Kind() == vkMap ||
               (AType->Kind() == vkList && (isNumber || AStep == QStringLiteral("-")));
    }

    /// Whether a value of AType takes the step, itself or, for a union, as an alternative at any depth.
    /// ASeen: unions that are not looked into, as they may stand inside each other.
    static bool LeadsToStep(const TZOTypeInfo* AType, const QString& AStep, QSet<const TZOTypeInfo*> ASeen) {
        std::vector<const TZOTypeInfo*> open{AType};
        while (!open.empty()) {
            const TZOTypeInfo* type = open.back();
            open.pop_back();
            if (!type || ASeen.contains(type))
                continue;
            if (type->Kind() != vkUnion) {
                if (TakesStep(type, AStep))
                    return true;
                continue;
            }
            ASeen.insert(type);
            for (const ZOUnion::TTag& tag : static_cast<const ZOUnion::TTypeInfo*>(type)->Tags())
                open.push_back(tag.Type);
        }
        return false;
    }

    void ChooseTag(const QString& AStep) {
        QSet<const TZOTypeInfo*> passed;
        while (FAt.Type->Kind() == vkUnion) {
            auto* value = *static_cast<ZOUnion**>(FAt.Storage);
            PTag tag = ZOUnion::TData::GetTag(value);
            if (!tag)
                passed.insert(FAt.Type);
            for (const ZOUnion::TTag& other : ZOUnion::TData::Type(value)->Tags()) {
                if (!tag && LeadsToStep(other.Type, AStep, passed))
                    tag = &other;
            }
            if (!tag || !tag->Type)
                RaiseNoPlace(FPath, AStep, QStringLiteral("fits none of the alternatives there"));
            FAt.Type = tag->Type;
            ZOUnion::TData::GetByRef(value, tag->Index, FAt.Storage);
        }
    }

    QString FPath;
    TZOValuePlace FAt;
    std::function<void(void*& ARef)> FMakeAbsent;
};

/// Null is no value: it takes away what stands there.
void StoreJson(TWalk& AWalk, const QString& AText) {
    TZOValueHolder decoded(AWalk.At().Type, true);
    TZOJson::Decode(AText.toUtf8(), decoded);
    void* value = nullptr;
    if (decoded.GetValue(value))
        ZOStorage::Swap(AWalk.At().Type, AWalk.At().Storage, value);
    else
        AWalk.MakeAbsent();
}

void StoreText(TWalk& AWalk, const QString& AText) {
    const TZOValuePlace place = AWalk.At();
    bool isLong = false;
    const qint64 number = place.Type->Kind() == vkInt64 ? AText.toLongLong(&isLong) : 0;
    if (isLong)
        *static_cast<qint64*>(place.Storage) = number;
    else if (ValueText::IsContainer(place.Type->Kind()))
        StoreJson(AWalk, AText);
    else if (place.Type->Kind() == vkUpload || place.Type->Kind() == vkDownload)
        throw EZOUsageError(QStringLiteral("it takes a file: use --upload"));
    else
        ValueText::FromText(place.Type, AText, place.Storage);
}

} // namespace

TZOValuePlace RequestPath::Reach(TZOValueHolder& ARoot, const QString& APath) {
    TWalk walk(ARoot, APath);
    for (const QString& step : StepsOf(APath))
        walk.Step(Unescaped(step));
    return walk.At();
}

void RequestPath::Set(TZOValueHolder& ARoot, const QString& APath, const QString& AText) {
    TWalk walk(ARoot, APath);
    const QStringList steps = StepsOf(APath);
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const QString step = Unescaped(steps[i]);
        if (i + 1 == steps.size() && walk.IsDiscriminator(step)) {
            walk.ChooseSubtype(AText);
            return;
        }
        walk.Step(step);
    }
    try {
        StoreText(walk, AText);
    } catch (const EException& error) {
        throw EZOUsageError(QStringLiteral("\"%1\" cannot be set: %2").arg(APath, error.Message()));
    }
}
