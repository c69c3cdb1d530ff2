// JSON texts that a reader has to take, has to refuse, or may choose about (RFC 8259), made from the grammar.
#pragma once

#include <QByteArray>
#include <QList>

#include <string>

struct TJsonCase {
    std::string Name;
    QByteArray Text;
    /// Whether it is taken. Where RFC 8259 leaves that to the reader, this is what ours does.
    bool IsTaken = false;
    /// It leaves it to the reader.
    bool IsChoice = false;
    /// Taken, but only where its strings are not made into characters: one of them escapes half a character.
    bool HasHalfCharacter = false;
};

namespace JsonCases {

QList<TJsonCase> Numbers();
QList<TJsonCase> Literals();
/// Each is one string.
QList<TJsonCase> Strings();
QList<TJsonCase> Structures();
QList<TJsonCase> WhiteSpace();
/// Byte order marks and texts that are not UTF-8.
QList<TJsonCase> Encodings();
QList<TJsonCase> All();

} // namespace JsonCases
