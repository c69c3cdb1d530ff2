// What the commands share.
#pragma once

#include "openapi/ApiDocument.h"

#include <cstdio>

namespace Documents {

constexpr int Success = 0;
constexpr int RequestFailed = 1;
constexpr int BadInput = 2;

/// The document with a service class; raises EZOUsageError, which holds its problems, when it has none.
std::unique_ptr<TZOApiDocument> Load(const QString& AFileName);
/// The operation of that name, or of "METHOD PATH", completed. Raises EZOUsageError when there is none.
POper FindOper(const TZOApiDocument& ADocument, const QString& AName);
/// Writes text and a line break in UTF-8.
void PrintLine(const QString& AText, std::FILE* AFile = stdout);

} // namespace Documents
