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

#include <string_view>

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
    /// The next value goes into the constructed value at AStorage.
    bool Fill(const TZOTypeInfo* AType, void* AStorage);
    bool FillString(QString& AString);
    bool FillBoolean(quint8& AValue);
    bool FillWholeNumber(qint64 AMin, qint64 AMax, qint64& ANumber);
    bool FillFloat(double& ANumber);
    bool FillDate(const TZOTypeInfo* AType, double& ADate);
    bool FillAny(QByteArray& AJson);
    bool FillList(ZOList& AList);
    bool FillMap(ZOMap& AMap);
    bool FillObject(const ZOObject::TTypeInfo* AType, ZOObject*& AObject);
    bool FillProperties(ZOObject* AObject, std::string_view ADiscriminator);
    bool FillProperty(const ZOObject::TTypeInfo* AType, ZOObject* AObject, int& AExpected);
    bool FillUnion(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillTagged(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillBare(const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
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
    bool TakeNull(const TZOTypeInfo* AType);
    /// Takes the key that is next, and its colon. AKey may hold escapes, all of them valid.
    bool Key(std::string_view& AKey);
    /// The text of the string that is next, for AType; AIsPlain when it had no escapes.
    bool Text(const TZOTypeInfo* AType, std::string_view& AText, bool& AIsPlain);
    /// ARaw without its escapes; good until the next call.
    std::string_view Unescaped(std::string_view ARaw);
    /// Reads the text under AKey of the object that is next, and stays before the object.
    bool PeekText(std::string_view AKey, QString& AText, bool& AFound);
    /// Goes behind the next value without looking into it.
    void Leap();

    bool Fail(const QString& AMessage, const char* APlace);
    /// The text cannot go on like this.
    bool FailSyntax();
    bool FailType(const TZOTypeInfo* AType, std::string_view AToken);
    /// The tokens have ended before the text.
    bool FailText();
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
    bool FCountsMisfits = false; ///< of required properties, which takes a look at each object's
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
