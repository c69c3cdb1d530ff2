#include "runtime/json/JsonCodec.h"

#include "runtime/json/JsonDecoder_p.h"

namespace {

/// "line 3, column 14", both from 1, columns in characters.
QString PlaceText(const QByteArray& AJson, qsizetype AOffset) {
    const QByteArrayView before = QByteArrayView(AJson).first(qMin(AOffset, AJson.size()));
    const qsizetype lineStart = before.lastIndexOf('\n') + 1;
    const QString line = QString::fromUtf8(before.sliced(lineStart));
    return QStringLiteral("line %1, column %2").arg(before.count('\n') + 1).arg(line.size() + 1);
}

} // namespace

void TZOJson::Decode(QByteArray AJson, TZOValueHolder& ADest) {
    ADest.Clear();
    // The parser reads beyond the end; a text with room there need not be copied.
    if (AJson.capacity() < AJson.size() + qsizetype(simdjson::SIMDJSON_PADDING))
        AJson.reserve(AJson.size() + qsizetype(simdjson::SIMDJSON_PADDING));
    TZOJsonTokens tokens(AJson.constData(), static_cast<std::size_t>(AJson.size()));
    TZOJsonTexts texts;
    TZOJsonDecoder decoder(tokens, texts);
    if (decoder.Decode(ADest.Type(), ADest))
        return;
    ADest.Clear();
    const QString pointer =
        decoder.Pointer().isEmpty() ? QString() : QStringLiteral(" (%1)").arg(decoder.Pointer());
    const QString place = PlaceText(AJson, static_cast<qsizetype>(decoder.ErrorOffset()));
    const QString message = QStringLiteral("The JSON text is not as expected at %1%2: %3.")
                                .arg(place, pointer, decoder.Message());
    if (decoder.IsTooDeep())
        throw EZOJsonDepthError(message);
    throw EZOJsonError(message);
}
