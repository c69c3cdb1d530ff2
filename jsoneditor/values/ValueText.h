// Typed values as a user reads and types them: the only place that knows the text form of each kind.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <QStringMatcher>

namespace ValueText {

/// Whether values of the kind are shown as rows of their own: lists, maps, objects and unions.
bool IsContainer(TZOValueKind AKind);
/// The text of a present value. Uploads and downloads have a fixed one, containers none.
QString ToText(const TZOTypeInfo* AType, const void* AValue);
/// What stands in the place of a value that is still to be entered.
QString Hint(TZOValueKind AKind);
/// Reads AText into the present value at AValue; leaves values of kinds that are not typed alone. Raises
/// EConvertError for a text that is none of the kind. 64-bit integers take 32-bit numbers only.
void FromText(const TZOTypeInfo* AType, const QString& AText, void* AValue);

/// Looks for a text in the texts of values, in any case, without making those where it can.
class TMatcher {
public:
    /// AText is not empty.
    explicit TMatcher(const QString& AText);

    bool Matches(QStringView AText) const { return FMatcher.indexIn(AText) >= 0; }
    /// Whether ToText(AType, AValue) holds the text.
    bool Matches(const TZOTypeInfo* AType, const void* AValue) const;

private:
    QStringMatcher FMatcher;
    bool FFitsIntegers;
    bool FFitsDates;
    bool FIsInTrue, FIsInFalse;
};

} // namespace ValueText
