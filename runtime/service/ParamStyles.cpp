#include "runtime/service/ParamStyles_p.h"

#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"

namespace {

using namespace ParamStyles;

/// a<,>b, or k<=>v<,>k<=>v for members.
QByteArray Joined(const TZOParamText& AText, const QByteArray& ABetween, const QByteArray& AAssign,
                  TEncoder AEncode) {
    if (AText.Shape == TZOParamText::ptScalar)
        return AEncode(AText.Text);
    QByteArrayList pieces;
    for (const TZOParamText::TEntry& entry : AText.Entries) {
        const QByteArray text = AEncode(entry.Text);
        pieces.append(AText.Shape == TZOParamText::ptMembers ? AEncode(entry.Key) + AAssign + text : text);
    }
    return pieces.join(ABetween);
}

QByteArray Matrix(const TZOParamText& AText, const QByteArray& AName, bool AExplode, TEncoder AEncode) {
    const bool isScalar = AText.Shape == TZOParamText::ptScalar;
    if (!isScalar && AText.Entries.empty())
        return {};
    if (AExplode && AText.Shape == TZOParamText::ptMembers)
        return ';' + Joined(AText, ";", "=", AEncode);
    if (AExplode && !isScalar)
        return ';' + AName + '=' + Joined(AText, ';' + AName + '=', "=", AEncode);
    const QByteArray value = Joined(AText, ",", ",", AEncode);
    return value.isEmpty() ? ';' + AName : ';' + AName + '=' + value;
}

bool IsContainer(const TZOTypeInfo* AType) {
    return AType && (AType->Kind() == vkList || AType->Kind() == vkMap || AType->Kind() == vkObject);
}

void AppendDeep(const TZOParamText& AText, const QByteArray& AName, TEncoder AEncode,
                std::vector<TPair>& APairs) {
    if (AText.Shape == TZOParamText::ptScalar) {
        APairs.push_back({AName, AEncode(AText.Text)});
        return;
    }
    for (const TZOParamText::TEntry& entry : AText.Entries) {
        const bool isMember = AText.Shape == TZOParamText::ptMembers;
        const QByteArray name = isMember ? AName + '[' + AEncode(entry.Key) + ']' : AName;
        if (IsContainer(entry.Type))
            AppendDeep(ParamText::Of(entry.Type, entry.Value, QString::fromUtf8(AName)), name, AEncode,
                       APairs);
        else
            APairs.push_back({name, AEncode(entry.Text)});
    }
}

std::vector<TPair> Exploded(const TZOParamText& AText, const QByteArray& AName, TEncoder AEncode) {
    std::vector<TPair> pairs;
    for (const TZOParamText::TEntry& entry : AText.Entries) {
        const bool isMember = AText.Shape == TZOParamText::ptMembers;
        pairs.push_back({isMember ? AEncode(entry.Key) : AName, AEncode(entry.Text)});
    }
    return pairs;
}

QByteArray SeparatorOf(TZOParamStyle AStyle) {
    switch (AStyle) {
    case psSpaceDelimited:
        return "%20";
    case psPipeDelimited:
        return "%7C";
    default:
        return ",";
    }
}

} // namespace

QByteArray ParamStyles::Expand(const TZOParamText& AText, const QByteArray& AName, TZOParamStyle AStyle,
                               bool AExplode, TEncoder AEncode) {
    if (AStyle == psMatrix)
        return Matrix(AText, AName, AExplode, AEncode);
    if (AStyle == psLabel) {
        const bool isEmpty = AText.Shape != TZOParamText::ptScalar && AText.Entries.empty();
        return isEmpty ? QByteArray()
                       : '.' + Joined(AText, AExplode ? "." : ",", AExplode ? "=" : ",", AEncode);
    }
    return Joined(AText, ",", AExplode ? "=" : ",", AEncode);
}

std::vector<TPair> ParamStyles::Pairs(const TZOParamText& AText, const QByteArray& AName,
                                      TZOParamStyle AStyle, bool AExplode, TEncoder AEncode) {
    if (AText.Shape == TZOParamText::ptScalar)
        return {{AName, AEncode(AText.Text)}};
    if (AText.Entries.empty())
        return {};
    std::vector<TPair> pairs;
    if (AStyle == psDeepObject)
        AppendDeep(AText, AName, AEncode, pairs);
    else if (AExplode)
        pairs = Exploded(AText, AName, AEncode);
    else
        pairs.push_back({AName, Joined(AText, SeparatorOf(AStyle), SeparatorOf(AStyle), AEncode)});
    return pairs;
}

QByteArray ParamStyles::Join(const std::vector<TPair>& APairs, const char* ASeparator) {
    QByteArray text;
    for (const TPair& pair : APairs) {
        if (!text.isEmpty())
            text += ASeparator;
        text += pair.Name + '=' + pair.Value;
    }
    return text;
}
