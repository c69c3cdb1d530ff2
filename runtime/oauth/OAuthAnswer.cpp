#include "runtime/oauth/OAuthAnswer_p.h"

#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"
#include "runtime/types/Failures.h"
#include "runtime/types/TypeLibrary.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace {

constexpr qsizetype MaxShownChars = 500;
/// Longer lives are as good as none; the number still has to fit when it is counted in milliseconds.
constexpr double MaxSeconds = 1e9;

/// The seconds that a token lives; 0 when nothing usable is said. Some servers send the number as text.
qint64 Seconds(const OAuthAnswer::TMembers& AMembers) {
    const auto text = OAuthAnswer::Text(AMembers, "expires_in");
    bool isNumber = false;
    const double seconds =
        text ? text->toDouble(&isNumber) : AMembers.value(QStringLiteral("expires_in")).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(seconds) || seconds <= 0)
        return 0;
    return static_cast<qint64>(std::min(seconds, MaxSeconds));
}

QString WithoutControls(QString AText) {
    for (QChar& c : AText) {
        if (c.category() == QChar::Other_Control || c.category() == QChar::Other_Format ||
            c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = u' ';
    }
    AText = AText.simplified();
    if (AText.size() > MaxShownChars)
        AText = AText.left(MaxShownChars) + u'\u2026';
    return AText;
}

[[noreturn]] void RaiseNoAnswer(const TZOHttpResponse& AResponse, const QString& APlace,
                                const QString& AWhy) {
    throw EZOTokenAnswerError(QStringLiteral("The authorization server at %1 gave no token: %2 (status %3).")
                                  .arg(APlace, AWhy)
                                  .arg(AResponse.Status));
}

void RaiseError(const OAuthAnswer::TMembers& AMembers, const QString& AError, const QString& APlace) {
    const QString description = OAuthAnswer::Text(AMembers, "error_description").value_or(QString());
    const QString message = QStringLiteral("The authorization server at %1 gave no token. It says: %2.")
                                .arg(APlace, OAuthAnswer::ErrorText(AError, description));
    if (AError == QStringLiteral("invalid_grant"))
        throw EZOGrantError(message);
    throw EZOTokenRefusedError(message);
}

/// A token goes into a header as it is (RFC 6750, section 2.1).
bool IsTokenText(const QString& AText) {
    return !AText.isEmpty() && std::all_of(AText.begin(), AText.end(),
                                           [](QChar c) { return c.unicode() > 0x20 && c.unicode() < 0x7F; });
}

} // namespace

std::optional<OAuthAnswer::TMembers> OAuthAnswer::Members(const QByteArray& ABody) {
    TZOTypeLibrary types;
    TZOValueHolder holder(types.NewMap(TZOTypeLibrary::Scalar(vkAny)), true);
    try {
        TZOJson::Decode(ABody, holder);
    } catch (const EZOJsonError&) {
        return std::nullopt;
    }
    void* ref = nullptr;
    if (!holder.GetValue(ref))
        return std::nullopt;
    const auto* map = static_cast<const ZOMap*>(ref);
    TMembers members;
    const QStringList keys = map->Keys();
    for (int i = 0; i < map->Count(); ++i) {
        void* item = nullptr;
        if (map->GetItemAt(i, item))
            members.insert(keys[i], static_cast<const ZOAny*>(item)->GetJsonUtf8());
    }
    return members;
}

std::optional<QString> OAuthAnswer::Text(const TMembers& AMembers, const char* AName) {
    const QByteArray json = AMembers.value(QLatin1String(AName));
    if (!json.startsWith('"'))
        return std::nullopt;
    TZOValueHolder holder(TZOTypeLibrary::Scalar(vkString), true);
    TZOJson::Decode(json, holder);
    void* ref = nullptr;
    holder.GetValue(ref);
    return *static_cast<const QString*>(ref);
}

QStringList OAuthAnswer::Texts(const TMembers& AMembers, const char* AName) {
    TZOTypeLibrary types;
    TZOValueHolder holder(types.NewList(TZOTypeLibrary::Scalar(vkString)), true);
    try {
        TZOJson::Decode(AMembers.value(QLatin1String(AName)), holder);
    } catch (const EZOJsonError&) {
        return {};
    }
    void* ref = nullptr;
    if (!holder.GetValue(ref))
        return {};
    const auto* list = static_cast<const ZOList*>(ref);
    QStringList texts;
    for (int i = 0; i < list->Count(); ++i) {
        void* item = nullptr;
        if (list->GetItem(i, item))
            texts.append(*static_cast<const QString*>(item));
    }
    return texts;
}

bool OAuthAnswer::IsTrue(const TMembers& AMembers, const char* AName) {
    return AMembers.value(QLatin1String(AName)) == "true";
}

QString OAuthAnswer::ErrorText(const QString& AError, const QString& ADescription) {
    const QString error = WithoutControls(AError);
    QString description = WithoutControls(ADescription);
    while (description.endsWith(u'.'))
        description.chop(1);
    if (description.isEmpty())
        return error;
    return QStringLiteral("%1 (%2)").arg(description, error);
}

TZOAuthToken OAuthAnswer::Token(const TZOHttpResponse& AResponse, const QString& APlace) {
    const auto members = Members(AResponse.Body);
    if (!members)
        RaiseNoAnswer(AResponse, APlace, QStringLiteral("its answer is no JSON object"));
    if (const auto error = Text(*members, "error"))
        RaiseError(*members, *error, APlace);
    if (AResponse.Status / 100 != 2)
        RaiseNoAnswer(AResponse, APlace, QStringLiteral("it does not say why"));
    TZOAuthToken token;
    token.AccessToken = Text(*members, "access_token").value_or(QString());
    if (token.AccessToken.isEmpty())
        RaiseNoAnswer(AResponse, APlace, QStringLiteral("its answer has no \"access_token\""));
    if (!IsTokenText(token.AccessToken))
        RaiseNoAnswer(AResponse, APlace,
                      QStringLiteral("its \"access_token\" holds characters that no token has"));
    const auto type = Text(*members, "token_type");
    if (!type)
        RaiseNoAnswer(AResponse, APlace, QStringLiteral("its answer has no \"token_type\""));
    if (type->compare(QStringLiteral("Bearer"), Qt::CaseInsensitive) != 0)
        RaiseNoAnswer(
            AResponse, APlace,
            QStringLiteral("its \"token_type\" is \"%1\", not \"Bearer\"").arg(ErrorText(*type, {})));
    token.RefreshToken = Text(*members, "refresh_token").value_or(QString());
    if (const qint64 seconds = Seconds(*members))
        token.ExpiresAtMs = QDateTime::currentMSecsSinceEpoch() + seconds * 1000;
    return token;
}
