#include "runtime/service/ServerMessage_p.h"

#include "runtime/service/HtmlText_p.h"
#include "runtime/service/ResponseText_p.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/TypeLibrary.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr qsizetype MaxPageChars = 500;

/// A JSON object, or what stands in its place: nothing.
class TMembers {
public:
    explicit TMembers(const QByteArray& AJson) : FValue(FTypes.NewMap(TZOTypeLibrary::Scalar(vkAny)), true) {
        try {
            TZOJson::Decode(AJson, FValue);
        } catch (const EZOJsonError&) {
            FValue.Clear();
        }
    }

    QStringList Names() const {
        void* ref = nullptr;
        return FValue.GetValue(ref) ? static_cast<const ZOMap*>(ref)->Keys() : QStringList();
    }
    bool Has(const char* AName) const { return Names().contains(QLatin1String(AName)); }
    /// The member's JSON text; empty when it is absent or null.
    QByteArray Json(const QString& AName) const {
        void* ref = nullptr;
        if (!FValue.GetValue(ref) || !static_cast<const ZOMap*>(ref)->GetItem(AName, ref))
            return {};
        return static_cast<const ZOAny*>(ref)->GetJsonUtf8();
    }
    /// The text of a member that is a string; empty for any other.
    QString Text(const char* AName) const {
        const QByteArray json = Json(QLatin1String(AName));
        if (!json.startsWith('"'))
            return {};
        TZOValueHolder value(TZOTypeLibrary::Scalar(vkString), true);
        TZOJson::Decode(json, value);
        void* ref = nullptr;
        return value.GetValue(ref) ? *static_cast<const QString*>(ref) : QString();
    }

private:
    TZOTypeLibrary FTypes;
    TZOValueHolder FValue;
};

/// "/amount: must be positive" for each of a list of errors, as the RFC's own example has them; nothing when
/// it is another kind of list.
QStringList ErrorLines(const QByteArray& AJson) {
    TZOTypeLibrary types;
    TZOValueHolder value(types.NewList(TZOTypeLibrary::Scalar(vkAny)), true);
    try {
        TZOJson::Decode(AJson, value);
    } catch (const EZOJsonError&) {
        return {};
    }
    QStringList lines;
    void* ref = nullptr;
    const auto* list = value.GetValue(ref) ? static_cast<const ZOList*>(ref) : nullptr;
    for (int i = 0; list && i < list->Count(); ++i) {
        void* item = nullptr;
        const TMembers error(list->GetItem(i, item) ? static_cast<const ZOAny*>(item)->GetJsonUtf8()
                                                    : QByteArray());
        const QString detail = error.Text("detail");
        const QString pointer = error.Text("pointer");
        if (detail.isEmpty())
            return {};
        lines.append(pointer.isEmpty() ? detail : pointer + QStringLiteral(": ") + detail);
    }
    return lines;
}

bool IsProblem(const QByteArray& AMediaType, const TMembers& AMembers) {
    return AMediaType == "application/problem+json" ||
           (AMembers.Has("title") &&
            (AMembers.Has("detail") || AMembers.Has("status") || AMembers.Has("type")));
}

QString ProblemText(const TMembers& AProblem) {
    static const QStringList known = {QStringLiteral("type"), QStringLiteral("title"),
                                      QStringLiteral("status"), QStringLiteral("detail"),
                                      QStringLiteral("instance")};
    QStringList lines = {AProblem.Text("title"), AProblem.Text("detail")};
    for (const QString& name : AProblem.Names()) {
        const QByteArray json = AProblem.Json(name);
        const QStringList errors = name == QLatin1String("errors") ? ErrorLines(json) : QStringList();
        if (!errors.isEmpty())
            lines += errors;
        else if (!known.contains(name) && !json.isEmpty())
            lines.append(name + QStringLiteral(": ") + QString::fromUtf8(json));
    }
    lines.removeAll(QString());
    return lines.join(QLatin1Char('\n'));
}

/// Empty for an object that has more to say.
QString OAuthText(const TMembers& AMembers) {
    static const QStringList known = {QStringLiteral("error"), QStringLiteral("error_description"),
                                      QStringLiteral("error_uri"), QStringLiteral("state")};
    const QStringList names = AMembers.Names();
    if (!std::all_of(names.begin(), names.end(), [](const QString& n) { return known.contains(n); }))
        return {};
    const QString error = AMembers.Text("error");
    const QString description = AMembers.Text("error_description");
    return description.isEmpty() ? error : error + QStringLiteral(": ") + description;
}

bool IsPage(const QByteArray& AMediaType, const QString& AText) {
    const QString start = AText.left(200).trimmed().toLower();
    return AMediaType == "text/html" || AMediaType == "application/xhtml+xml" ||
           start.startsWith(QLatin1String("<!doctype html")) || start.startsWith(QLatin1String("<html"));
}

QString BinarySummary(const TZOHttpResponse& AResponse, const QByteArray& AMediaType) {
    const QString type = AMediaType.isEmpty() ? QStringLiteral("unnamed type")
                                              : ResponseText::ForDisplay(QString::fromUtf8(AMediaType));
    return QStringLiteral("(%1 bytes of %2)")
        .arg(qMax(AResponse.Body.size(), AResponse.Header("Content-Length").toLongLong()))
        .arg(type);
}

} // namespace

QString ServerMessage::Of(const TZOHttpResponse& AResponse) {
    if (AResponse.Body.isEmpty())
        return {};
    const QByteArray type = ResponseText::MediaType(AResponse);
    const auto text = ResponseText::BodyText(AResponse);
    if (!text)
        return BinarySummary(AResponse, type);
    if (IsPage(type, *text))
        return ResponseText::ForDisplay(HtmlText::Of(*text), MaxPageChars);
    if (text->trimmed().startsWith(QLatin1Char('{'))) {
        const TMembers members(text->toUtf8());
        const QString said = IsProblem(type, members) ? ProblemText(members) : OAuthText(members);
        if (!said.isEmpty())
            return ResponseText::ForDisplay(said);
    }
    return ResponseText::ForDisplay(*text);
}
