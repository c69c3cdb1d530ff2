// Values whose type the text itself chooses: polymorphic objects and unions.
#include "runtime/json/JsonDecoder_p.h"

#include "runtime/types/Storage.h"
#include "runtime/types/TypeLibrary.h"
#include "runtime/types/ValueHolder.h"

#include <memory>

bool TZOJsonDecoder::FillObject(const ZOObject::TTypeInfo* AType, ZOObject*& AObject) {
    if (FTokens.Peek() != '{')
        return FailType(AType->Kind(), FTokens.Token());
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
    const TPlace place = FTokens.Start();
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
        return FailType(AType->Kind(), FTokens.Token());
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
    const TPlace place = FTokens.Start();
    if (!FVerdicts) {
        // Checked once for all that is tried.
        if (!Skip())
            return false;
        FTokens.GoTo(place);
        TVerdicts verdicts;
        FVerdicts = &verdicts;
        const bool isFilled = FillTried(AType, AUnion, verdicts[{place, AType}]);
        FVerdicts = nullptr;
        return isFilled;
    }
    // While a union is tried, it fits nothing at its own place: one that names itself comes to an end.
    const auto [entry, isNew] = FVerdicts->try_emplace({place, AType});
    if (isNew)
        return FillTried(AType, AUnion, entry->second);
    if (!entry->second.Tag)
        return FailChoice(place);
    if (FIsDecided)
        return FillChosen(*entry->second.Tag, AUnion);
    FIsWhole = false;
    FTokens.GoTo(entry->second.Behind);
    return true;
}

bool TZOJsonDecoder::FillTried(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion, TVerdict& AVerdict) {
    const TPlace place = FTokens.Start();
    const TVerdict verdict = TryTags(AType, AUnion);
    AVerdict = verdict;
    if (!verdict.Tag)
        return FailChoice(place);
    // One that is only tried needs no more than the verdict.
    if (verdict.IsWhole || FIsTrial) {
        FIsWhole &= verdict.IsWhole;
        FTokens.GoTo(verdict.Behind);
        return true;
    }
    FTokens.GoTo(place);
    TZOJsonDecoder decided(FTokens, FTexts, FDepth);
    decided.FVerdicts = FVerdicts;
    decided.FIsDecided = true;
    return decided.FillChosen(*verdict.Tag, AUnion);
}

TZOJsonDecoder::TVerdict TZOJsonDecoder::TryTags(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion) {
    const TPlace place = FTokens.Start();
    TVerdict best;
    int bestMisfits = 0;
    std::unique_ptr<TZOValueHolder> bestValue;
    const bool isNull = FTokens.Token() == "null";
    for (const ZOUnion::TTag& tag : AType->Tags()) {
        FTokens.GoTo(place);
        if (!tag.Type) {
            if (isNull) {
                FTokens.Drop();
                best = {&tag, FTokens.Start(), true};
            }
            continue;
        }
        TZOJsonDecoder trial(FTokens, FTexts, FDepth);
        trial.FVerdicts = FVerdicts;
        trial.FIsTrial = true;
        auto value = std::make_unique<TZOValueHolder>(tag.Type, true);
        const auto set = [&](bool has, void*& ref) { return value->SetValue(has, ref); };
        const bool fits = trial.FillSlot(tag.Type, set) && value->HasValue();
        if (fits && (!best.Tag || trial.FMisfits < bestMisfits)) {
            best = {&tag, FTokens.Start(), trial.FIsWhole};
            bestMisfits = trial.FMisfits;
            bestValue = std::move(value);
        }
        if (best.Tag && bestMisfits == 0)
            break;
    }
    if (!best.Tag || !best.IsWhole)
        return best;
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, best.Tag->Index, true, storage);
    void* value = nullptr;
    if (best.Tag->Type && bestValue->GetValue(value))
        ZOStorage::Swap(best.Tag->Type, storage, value);
    return best;
}

bool TZOJsonDecoder::FillChosen(const ZOUnion::TTag& ATag, ZOUnion* AUnion) {
    void* storage = nullptr;
    ZOUnion::TData::SetTag(AUnion, ATag.Index, true, storage);
    return ATag.Type ? Fill(ATag.Type, storage) : Skip();
}

bool TZOJsonDecoder::FailChoice(TPlace APlace) {
    return Fail(QStringLiteral("the value fits none of the alternatives that can stand here"), APlace);
}
