// What the program says on standard output and standard error.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <memory>

class QFileDevice;

/// Texts of documents and servers are seen on a terminal, never obeyed by it. What other programs read is
/// exact where it goes to a file or a pipe. Everything is UTF-8.
namespace Console {

/// A line of a table: no character of AText acts, wherever it goes.
void PrintRow(const QString& AText, std::FILE* AFile = stdout);
/// The same, but lines end where they do in AText.
void PrintLines(const QString& AText, std::FILE* AFile);
/// A line for other programs: as it is, but on a terminal no character acts.
void PrintExact(const QByteArray& ALine, std::FILE* AFile = stdout);
/// Standard output, to write a response to: the bytes go out as they are, but on a terminal no character
/// acts, except ends of lines.
std::unique_ptr<QFileDevice> OpenOutput();

} // namespace Console
