// API documents that components stand for.
#pragma once

#include "openapi/ApiDocument.h"

#include <memory>

namespace SharedDocuments {

/// Where the user's documents are: "zobridgework/documents" in the user's data folder.
QString UserFolder();
/// The file of that name: as it is (a path or a resource), else in the folders "zobridgework/documents" of
/// the user's and the system's data, else beside the program. Empty when there is none.
QString Find(const QString& AName);
/// The document in a file, which is read once for all who hold it at a time. Raises nothing: see
/// TZOApiDocument::Load. For the user interface's thread.
std::shared_ptr<TZOApiDocument> Load(const QString& AFileName);

} // namespace SharedDocuments
