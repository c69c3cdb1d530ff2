// The styles in which a parameter is written: RFC 6570's, and those that APIs have added.
#pragma once

#include "runtime/service/HttpBinding.h"
#include "runtime/service/ParamText_p.h"

namespace ParamStyles {

/// One "name=value" of a query, a cookie or a form; not encoded.
struct TPair {
    QByteArray Name; ///< encoded when it may have to be
    QByteArray Value;
};

using TEncoder = QByteArray (*)(const QString& AText);

/// What stands for a parameter in a path (psSimple, psLabel, psMatrix) or header (psSimple). AEncode is
/// applied to names and values, not to what stands between them.
QByteArray Expand(const TZOParamText& AText, const QByteArray& AName, TZOParamStyle AStyle, bool AExplode,
                  TEncoder AEncode);

/// The pairs of a parameter in a query, a cookie or a form (all other styles), encoded by AEncode. A
/// container without entries has none.
std::vector<TPair> Pairs(const TZOParamText& AText, const QByteArray& AName, TZOParamStyle AStyle,
                         bool AExplode, TEncoder AEncode);

/// The pairs as one text.
QByteArray Join(const std::vector<TPair>& APairs, const char* ASeparator);

} // namespace ParamStyles
