// One pass over a JSON text that fills a typed value and checks everything on its way.
#pragma once

#include "runtime/json/ShortTexts_p.h"

#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/TypeInfo.h"
#include "runtime/types/Union.h"

#include <simdjson.h>

#include <QByteArray>
#include <QString>

#include <memory>
#include <string_view>

class TZOValueHolder;

/// Errors are values in here: a function that returns false has left message, place and pointer behind,
/// and each container on the way out puts its own step before the pointer.
class TZOJsonDecoder {
public:
    /// AText stays alive and has simdjson's padding behind its ASize bytes.
    TZOJsonDecoder(const char* AText, std::size_t ASize, int ADepth = 0);

    /// The text is an object or array, the root value.
    bool Decode(const TZOTypeInfo* AType, TZOValueHolder& ADest);
    /// The text is an array of one value, which is the root: how scalars are read, too.
    bool DecodeOnlyElement(const TZOTypeInfo* AType, TZOValueHolder& ADest);

    const QString& Message() const { return FMessage; }
    /// Bytes from the start of the text to the error.
    std::size_t ErrorOffset() const { return FErrorOffset; }
    /// Whether the error is that values nest too deep.
    bool IsTooDeep() const { return FIsTooDeep; }
    /// JSON pointer to the value in error.
    const QString& Pointer() const { return FPointer; }
    /// How badly a value that was read fits its type: properties skipped and required ones missed.
    int Misfits() const { return FMisfits; }
    /// Makes Misfits count required properties, which takes a look at each object's.
    void CountMisfits() { FCountsMisfits = true; }

private:
    using TValue = simdjson::ondemand::value;

    /// One value as it stands in the text: AToken is its first token, with nothing behind it.
    bool Fill(TValue& AValue, std::string_view AToken, const TZOTypeInfo* AType, void* AStorage);
    /// The text of a string token, in the document or unescaped beside it.
    bool Text(TValue& AValue, std::string_view AToken, std::string_view& AText);
    bool FillString(TValue& AValue, std::string_view AToken, QString& AString);
    bool FillWholeNumber(std::string_view AToken, qint64 AMin, qint64 AMax, qint64& ANumber);
    bool FillFloat(std::string_view AToken, double& ANumber);
    bool FillDate(TValue& AValue, std::string_view AToken, const TZOTypeInfo* AType, double& ADate);
    bool FillAny(TValue& AValue, std::string_view AToken, QByteArray& AJson);
    bool FillList(TValue& AValue, std::string_view AToken, ZOList& AList);
    bool FillMap(TValue& AValue, std::string_view AToken, ZOMap& AMap);
    bool FillObject(TValue& AValue, std::string_view AToken, const ZOObject::TTypeInfo* AType,
                    ZOObject*& AObject);
    bool FillProperties(simdjson::ondemand::object& AFields, ZOObject* AObject,
                        std::string_view ADiscriminator);
    bool FillProperty(simdjson::ondemand::field& AField, ZOObject* AObject, int& AExpected);
    /// Checks a value that the type has no place for.
    bool SkipField(simdjson::ondemand::field& AField, std::string_view AKey);
    bool FillUnion(TValue& AValue, std::string_view AToken, const ZOUnion::TTypeInfo* AType, ZOUnion* AUnion);
    bool FillTagged(TValue& AValue, std::string_view AToken, ZOUnion* AUnion);
    bool FillBare(TValue& AValue, std::string_view AToken, ZOUnion* AUnion);
    /// Checks a value that nobody wants.
    bool Skip(TValue& AValue, std::string_view AToken);
    bool SkipContainer(TValue& AValue, bool AIsObject);

    /// A present slot gets the value, an absent one nothing: ASet(bool, void*&) -> bool does the setting.
    template <class F>
    bool FillSlot(TValue& AValue, const TZOTypeInfo* AType, F&& ASet);

    bool Token(TValue& AValue, std::string_view& AToken);
    bool IsNull(std::string_view AToken, const TZOTypeInfo* AType) const;
    bool Key(simdjson::ondemand::field& AField, std::string_view& AKey);
    /// The text of a key's or tag's value, without consuming the field it stands in.
    bool PlainText(simdjson::ondemand::object& AFields, std::string_view AKey, QString& AText, bool& AFound);
    bool Enter(std::string_view AToken);
    bool CheckEnd();
    /// The text from AStart to the next token of the document, without blanks at its end.
    std::string_view TextSince(const char* AStart);

    bool Fail(const QString& AMessage, const char* APlace);
    bool FailSyntax(simdjson::error_code AError);
    bool FailType(const TZOTypeInfo* AType, std::string_view AToken);
    bool Step(QStringView AKey);
    bool Step(std::string_view AKey);
    bool Step(int AIndex);

    const char* FText;
    std::size_t FSize;
    int FDepth;
    simdjson::ondemand::parser FParser;
    simdjson::ondemand::document FDocument;
    QString FMessage;
    QString FPointer;
    std::size_t FErrorOffset = 0;
    int FMisfits = 0;
    int FShortTextCount = 0;
    std::unique_ptr<TZOShortTexts> FShortTexts; ///< none in a small response, which ends before it pays
    bool FCountsMisfits = false;
    bool FIsTooDeep = false;
};
