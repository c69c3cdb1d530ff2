// One pass over a JSON text that fills a typed value and checks everything on its way.
#pragma once

#include "runtime/json/JsonTexts_p.h"
#include "runtime/json/JsonTokens_p.h"

#include "runtime/types/JsonText.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/TypeInfo.h"
#include "runtime/types/Union.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <string_view>
#include <unordered_map>
#include <utility>

class TZOValueHolder;

/// Errors are values in here: a function that returns false has left message, place and pointer behind,
/// and each container on the way out puts its own step before the pointer.
class TZOJsonDecoder {
public:
    /// Both stay alive; the decoder goes on from where ATokens stands.
    TZOJsonDecoder(TZOJsonTokens& ATokens, TZOJsonTexts& ATexts, int ADepth = 0);

    /// The whole text is one value.
    bool Decode(const TZOTypeInfo* AType, TZOValueHolder& ADest);

    const QString& Message() const { return FMessage; }
    /// Bytes from the start of the text to the error.
    std::size_t ErrorOffset() const { return FErrorOffset; }
    /// Whether the error is that values nest too deep.
    bool IsTooDeep() const { return FIsTooDeep; }
    /// JSON pointer to the value in error.
    const QString& Pointer() const { return FPointer; }

private:
    using TPlace = TZOJsonTokens::TPlace;

    /// What came out when the tags of a bare union were tried at a place.
    struct TVerdict {
        PTag Tag = nullptr; ///< the one that fits best; null when none does
        TPlace Behind = nullptr;
        bool IsWhole = true; ///< false: of a union inside, only the verdict was taken
    };
    using TTried = std::pair<TPlace, const ZOUnion::TTypeInfo*>;
    struct TTriedHash {
        std::size_t operator()(const TTried& ATried) const {
            return std::hash<TPlace>()(ATried.first) ^ (std::hash<const void*>()(ATried.second) >> 4);
        }
    };
    /// Every alternative of a union would try all of the unions inside again, and so would theirs.
    using TVerdicts = std::unordered_map<TTried, TVerdict, TTriedHash>;

    static bool IsString(std::string_view AToken) {
        return AToken.size() >= 2 && AToken.front() == '"' && AToken.back() == '"';
    }
    /// What stands between the quotes of a string token.
    static std::string_view Content(std::string_view AToken) { return AToken.substr(1, AToken.size() - 2); }

    /// The next value goes into the constructed value at AStorage.
    bool Fill(const TZOTypeInfo* AType, void* AStorage);
    bool FillString(QString& AString);
    bool FillBoolean(quint8& AValue);
    bool FillWholeNumber(qint64 AMin, qint64 AMax, qint64& ANumber);
    bool FillFloat(double& ANumber);
    /// The numbers that are not plain, or none.
    bool TakeWholeNumber(std::string_view AToken, qint64& ANumber);
    bool ReadFloat(std::string_view AToken, double& ANumber);
    bool FillDate(TZOValueKind AKind, double& ADate);
    bool FillAny(QByteArray& AJson);
    bool FillList(ZOList& AList);
    bool FillMap(ZOMap& AMap);
    bool FillObject(const ZOObject::TTypeInfo* AType, ZOObject*& AObject);
    bool FillProperties(ZOObject* AObject, std::string_view ADiscriminator);
    bool FillProperty(const ZOObject::TTypeInfo* AType, ZOObject* AObject, int& AExpected);
    bool FillUnion(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillTagged(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillBare(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    /// A union that was not tried at its place before.
    bool FillTried(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion, TVerdict& AVerdict);
    /// Finds the tag that fits best. AUnion gets it if the verdict is whole.
    TVerdict TryTags(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillChosen(const ZOUnion::TTag& ATag, ZOUnion* AUnion);
    /// Checks a value that nobody wants.
    bool Skip();
    bool SkipOpened(char AOpening);

    /// A present slot gets the value, an absent one nothing: ASet(bool, void*&) -> bool does the setting.
    template <class F>
    bool FillSlot(const TZOTypeInfo* AType, F&& ASet);
    /// Goes through the array or object that is next, with AOne() -> bool for each entry.
    template <class F>
    bool ForEach(char AClosing, F&& AOne);

    /// Takes the next value if it is null, and null means that AType's value is absent.
    bool TakeNull(const TZOTypeInfo* AType) { return FTokens.Peek() == 'n' && TakeWordNull(AType); }
    bool TakeWordNull(const TZOTypeInfo* AType);
    /// Takes the key that is next, and its colon. AKey may hold escapes, all of them valid.
    bool Key(std::string_view& AKey);
    /// The text of the string that is next, for a value of AKind; AIsPlain when it had no escapes.
    bool Text(TZOValueKind AKind, std::string_view& AText, bool& AIsPlain) {
        const std::string_view token = FTokens.Token();
        if (!IsString(token) || Words::MayHaveBackslash(token))
            return TextWithEscapes(AKind, AText, AIsPlain);
        AIsPlain = true;
        AText = Content(token);
        FTokens.Drop();
        return true;
    }
    bool TextWithEscapes(TZOValueKind AKind, std::string_view& AText, bool& AIsPlain);
    /// ARaw without its escapes; good until the next call.
    std::string_view Unescaped(std::string_view ARaw);
    /// Reads the text under AKey of the object that is next, and stays before the object.
    bool PeekText(std::string_view AKey, QString& AText, bool& AFound);
    /// Goes behind the next value without looking into it.
    void Leap();

    bool Fail(const QString& AMessage, const char* APlace);
    /// The text cannot go on like this.
    bool FailSyntax();
    bool FailType(TZOValueKind AKind, std::string_view AToken);
    /// The tokens have ended before the text.
    bool FailText();
    bool FailChoice(TPlace APlace);
    bool Step(QStringView AKey);
    /// The step to a key as it stands in the text.
    bool Step(std::string_view AKey);
    bool Step(int AIndex);

    TZOJsonTokens& FTokens;
    TZOJsonTexts& FTexts;
    int FDepth;
    QString FMessage;
    QString FPointer;
    std::size_t FErrorOffset = 0;
    int FMisfits = 0; ///< properties skipped and required ones missed: how badly a value fits its type
    bool FIsTooDeep = false;
    TVerdicts* FVerdicts = nullptr; ///< null outside of bare unions
    bool FIsTrial = false;   ///< of an alternative; counts the misfits, which takes a look at each object's
    bool FIsDecided = false; ///< the verdicts on all bare unions are known
    bool FIsWhole = true;    ///< false when a union was left without its value
};

template <class F>
bool TZOJsonDecoder::FillSlot(const TZOTypeInfo* AType, F&& ASet) {
    void* storage = nullptr;
    const bool hasValue = !TakeNull(AType);
    ASet(hasValue, storage);
    return !hasValue || Fill(AType, storage);
}

template <class F>
bool TZOJsonDecoder::ForEach(char AClosing, F&& AOne) {
    FIsTooDeep = ++FDepth > JsonText::MaxDepth;
    if (FIsTooDeep)
        return Fail(QStringLiteral("values nest more than %1 deep").arg(JsonText::MaxDepth), FTokens.Start());
    FTokens.Drop();
    if (!FTokens.Take(AClosing)) {
        do {
            if (!AOne())
                return false;
        } while (FTokens.Take(','));
        if (!FTokens.Take(AClosing))
            return FailSyntax();
    }
    --FDepth;
    return true;
}
