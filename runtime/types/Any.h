// Values of any JSON type.
#pragma once

#include <QByteArray>
#include <QString>

/// One JSON value kept as its own text (RFC 8259), so that no digit is rounded and no key moves. White
/// space between tokens is not kept.
class ZOAny {
public:
    /// The value null.
    ZOAny() = default;

    /// The value as JSON text.
    QString GetJson() const;
    /// The same in UTF-8.
    QByteArray GetJsonUtf8() const;

    /// Whether AText is one complete, valid JSON value.
    static bool IsValidJson(const QString& AText);
    /// The value that AText stands for. Call only when IsValidJson(AText).
    static ZOAny FromJson(const QString& AText);
    /// The same from UTF-8 that a decoder has already validated.
    static ZOAny FromValidUtf8(QByteArray AText);

private:
    QByteArray FJson; // empty means null
};
