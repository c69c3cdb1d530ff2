#include "runtime/json/JsonCodec.h"

#include "runtime/json/JsonDecoder_p.h"

#include <algorithm>

namespace {

constexpr qsizetype MaxCopiedBytes = 16 * 1024;

/// "line 3, column 14", both from 1, columns in characters.
QString PlaceText(const QByteArray& AJson, qsizetype AOffset) {
    const QByteArrayView before = QByteArrayView(AJson).first(qMin(AOffset, AJson.size()));
    const qsizetype lineStart = before.lastIndexOf('\n') + 1;
    const QString line = QString::fromUtf8(before.sliced(lineStart));
    return QStringLiteral("line %1, column %2").arg(before.count('\n') + 1).arg(line.size() + 1);
}

/// " (/list/3/name)"; of a long pointer its two ends.
QString PointerText(const QString& APointer) {
    constexpr qsizetype startChars = 60;
    constexpr qsizetype endChars = 20;
    if (APointer.isEmpty())
        return {};
    const bool isLong = APointer.size() > 4 * startChars;
    const QString shown =
        isLong ? APointer.left(startChars) + QStringLiteral("...") + APointer.right(endChars) : APointer;
    return QStringLiteral(" (%1)").arg(shown);
}

/// The parser reads beyond the end. What stands there decides nothing, and is written all the same where that
/// costs next to nothing: tools that watch for memory that never was would find it here.
void GiveParserRoom(QByteArray& AJson) {
    constexpr auto room = qsizetype(simdjson::SIMDJSON_PADDING);
    const bool isCheap = AJson.isDetached() || AJson.size() <= MaxCopiedBytes;
    if (AJson.capacity() >= AJson.size() + room && !isCheap)
        return;
    AJson.reserve(AJson.size() + room);
    std::fill_n(AJson.data() + AJson.size(), room, '\0');
}

} // namespace

void TZOJson::Decode(QByteArray AJson, TZOValueHolder& ADest) {
    ADest.Clear();
    GiveParserRoom(AJson);
    TZOJsonTokens tokens(AJson.constData(), static_cast<std::size_t>(AJson.size()));
    TZOJsonTexts texts;
    TZOJsonDecoder decoder(tokens, texts);
    if (decoder.Decode(ADest.Type(), ADest))
        return;
    ADest.Clear();
    const QString place = PlaceText(AJson, static_cast<qsizetype>(decoder.ErrorOffset()));
    const QString message = QStringLiteral("The JSON text is not as expected at %1%2: %3.")
                                .arg(place, PointerText(decoder.Pointer()), decoder.Message());
    if (decoder.IsTooDeep())
        throw EZOJsonDepthError(message);
    throw EZOJsonError(message);
}
