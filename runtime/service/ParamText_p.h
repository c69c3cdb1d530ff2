// Typed values as the texts that stand in paths, queries, headers, cookies and form fields.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <QByteArray>
#include <QString>

#include <vector>

/// What a parameter has to say: one text, several, or several with names.
struct TZOParamText {
    struct TEntry {
        QString Key; ///< of ptMembers
        QString Text;
        /// The type and value that Text came from; null for an absent element or item.
        const TZOTypeInfo* Type = nullptr;
        const void* Value = nullptr;
    };
    enum TShape { ptScalar, ptList, ptMembers };

    TShape Shape = ptScalar;
    QString Text;                ///< ptScalar
    std::vector<TEntry> Entries; ///< ptList and ptMembers
};

namespace ParamText {

/// Reads a present value. Containers inside containers become JSON text; absent properties are left out,
/// absent elements and items are empty texts. A bare union counts as the value under its tag. Raises
/// EZORequestValueError, which names AProperty, for uploads and downloads and for numbers without text.
TZOParamText Of(const TZOTypeInfo* AType, const void* AValue, const QString& AProperty);

/// The text of one value; of a container its JSON.
QString Scalar(const TZOTypeInfo* AType, const void* AValue, const QString& AProperty);

/// Takes AType and AValue through bare unions to the value that is sent; false when there is none.
bool SkipUnions(const TZOTypeInfo*& AType, const void*& AValue);

/// Percent-encodes all but the unreserved characters of RFC 3986.
QByteArray Encode(const QString& AText);
/// Percent-encodes what may not stand in an address at all; what has a meaning there keeps it.
QByteArray EncodeReserved(const QString& AText);

} // namespace ParamText
