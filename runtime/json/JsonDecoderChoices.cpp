// Values whose type the text itself chooses: polymorphic objects and unions.
#include "runtime/json/JsonDecoder_p.h"

#include "runtime/types/Storage.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <memory>

bool TZOJsonDecoder::FillObject(const ZOObject::TTypeInfo* AType, ZOObject*& AObject) {
    if (FTokens.Peek() != '{')
        return FailType(AType, FTokens.Token());
    if (!AType->GetHasSubtypes())
        return FillProperties(AObject, {});
    const char* start = FTokens.Start();
    const std::string discriminator = AType->DiscriminatorName().toStdString();
    QString name;
    bool found = false;
    if (!PeekText(discriminator, name, found))
        return false;
    if (!found)
        return Fail(
            QStringLiteral("the object has no \"%1\" to tell its type").arg(AType->DiscriminatorName()),
            start);
    const ZOObject::TSubtype* subtype = AType->FindSubtype(name);
    if (!subtype) {
        Fail(QStringLiteral("\"%1\" is none of the types that can stand here").arg(name), start);
        return Step(QStringView(AType->DiscriminatorName()));
    }
    delete AObject;
    AObject = subtype->Type->CreateInstance().release();
    return FillProperties(AObject, discriminator);
}

bool TZOJsonDecoder::PeekText(std::string_view AKey, QString& AText, bool& AFound) {
    const TZOJsonTokens::TPlace place = FTokens.Start();
    FTokens.Drop();
    // What is leapt over here is checked when the object is read.
    while (!AFound && !FTokens.IsAtEnd() && FTokens.Peek() != '}') {
        std::string_view key;
        if (!Key(key))
            return false;
        AFound = Unescaped(key) == AKey;
        if (!AFound) {
            Leap();
            FTokens.Take(',');
        }
    }
    if (FTokens.IsAtEnd())
        return FailSyntax();
    if (AFound && !TakeNull(TZOTypeLibrary::Scalar(vkString))) {
        if (FTokens.Peek() != '"')
            return Fail(QStringLiteral("the name of a type is expected"), FTokens.Start());
        if (!FillString(AText))
            return false;
    }
    FTokens.GoTo(place);
    return true;
}

bool TZOJsonDecoder::FillUnion(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion) {
    return AType->Form() == ufTagged ? FillTagged(AType, AUnion) : FillBare(AType, AUnion);
}

bool TZOJsonDecoder::FillTagged(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion) {
    if (FTokens.Peek() != '{')
        return FailType(AType, FTokens.Token());
    const char* start = FTokens.Start();
    const std::string tagKey = AType->TagName().toStdString();
    QString name;
    bool found = false;
    if (!PeekText(tagKey, name, found))
        return false;
    const PTag tag = AType->FindTag(name);
    if (!tag) {
        return Fail(
            found ? QStringLiteral("\"%1\" is none of the alternatives that can stand here").arg(name)
                  : QStringLiteral("the object has no \"%1\" to tell its alternative").arg(AType->TagName()),
            start);
    }
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, tag->Index, true, storage);
    return ForEach('}', [&] {
        std::string_view key;
        if (!Key(key))
            return false;
        const bool isValue = tag->Type && Unescaped(key) == "value" && FTokens.Token() != "null";
        if (!isValue)
            return Skip() || Step(key);
        // The last one of repeated keys counts, and nothing of the earlier ones.
        ZOStorage::Renew(tag->Type, storage);
        return Fill(tag->Type, storage) || Step(key);
    });
}

bool TZOJsonDecoder::FillBare(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion) {
    const char* start = FTokens.Start();
    const bool isNull = FTokens.Token() == "null";
    const TZOJsonTokens::TPlace before = FTokens.Start();
    if (!Skip())
        return false;
    const TZOJsonTokens::TPlace behind = FTokens.Start();

    PTag best = nullptr;
    int bestMisfits = 0;
    std::unique_ptr<TZOValueHolder> bestValue;
    for (const ZOUnion::TTag& tag : AType->Tags()) {
        if (!tag.Type) {
            if (isNull)
                best = &tag;
            continue;
        }
        FTokens.GoTo(before);
        TZOJsonDecoder trial(FTokens, FTexts, FDepth);
        trial.FCountsMisfits = true;
        auto value = std::make_unique<TZOValueHolder>(tag.Type, true);
        const auto set = [&](bool has, void*& ref) { return value->SetValue(has, ref); };
        const bool fits = trial.FillSlot(tag.Type, set) && value->HasValue();
        if (fits && (!best || trial.FMisfits < bestMisfits)) {
            best = &tag;
            bestMisfits = trial.FMisfits;
            bestValue = std::move(value);
        }
        if (best && bestMisfits == 0)
            break;
    }
    FTokens.GoTo(behind);
    if (!best)
        return Fail(QStringLiteral("the value fits none of the alternatives that can stand here"), start);
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, best->Index, true, storage);
    void* value = nullptr;
    if (best->Type && bestValue->GetValue(value))
        ZOStorage::Swap(best->Type, storage, value);
    return true;
}
