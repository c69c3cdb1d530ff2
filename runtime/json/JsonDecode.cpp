#include "runtime/json/JsonCodec.h"

#include "runtime/json/JsonDecoder_p.h"

namespace {

bool IsContainer(const QByteArray& AJson) {
    for (const char c : AJson) {
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t')
            return c == '{' || c == '[';
    }
    return false;
}

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
    const bool isContainer = IsContainer(AJson);
    // A scalar is read as the only element of an array: the parser's roots are containers.
    if (!isContainer)
        AJson = "[" + AJson + "]";
    const auto size = static_cast<std::size_t>(AJson.size());
    // The parser reads beyond the end; a text with room there need not be copied.
    if (AJson.capacity() < AJson.size() + qsizetype(simdjson::SIMDJSON_PADDING))
        AJson.reserve(AJson.size() + qsizetype(simdjson::SIMDJSON_PADDING));
    TZOJsonDecoder decoder(AJson.constData(), size);
    if (isContainer ? decoder.Decode(ADest.Type(), ADest) : decoder.DecodeOnlyElement(ADest.Type(), ADest))
        return;
    ADest.Clear();
    auto offset = static_cast<qsizetype>(decoder.ErrorOffset());
    if (!isContainer) {
        AJson = AJson.sliced(1).chopped(1);
        offset = qBound(qsizetype(0), offset - 1, AJson.size());
    }
    const QString pointer =
        decoder.Pointer().isEmpty() ? QString() : QStringLiteral(" (%1)").arg(decoder.Pointer());
    const QString message = QStringLiteral("The JSON text is not as expected at %1%2: %3.")
                                .arg(PlaceText(AJson, offset), pointer, decoder.Message());
    if (decoder.IsTooDeep())
        throw EZOJsonDepthError(message);
    throw EZOJsonError(message);
}
