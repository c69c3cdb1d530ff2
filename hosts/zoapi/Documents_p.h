// What the commands share.
#pragma once

#include "openapi/ApiDocument.h"

namespace Documents {

constexpr int Success = 0;
constexpr int RequestFailed = 1;
constexpr int BadInput = 2;

/// A service that the user has named.
struct TSource {
    std::unique_ptr<TZOApiDocument> Document; ///< null for a class of a service plug-in
    const TZORestServiceClass* Class = nullptr;
};

/// The service of a document, or where there is no such file, the class of that name from a service plug-in.
/// Raises EZOUsageError, which holds the document's problems, when there is none.
TSource Load(const QString& AName);
/// All classes of service plug-ins. The plug-ins are loaded when this is first called, which tells on
/// standard error of those that were skipped; Commands::Done stops them.
QList<const TZORestServiceClass*> PluginClasses();
/// The operation of that name, or of "METHOD PATH", completed. Raises EZOUsageError when there is none.
POper FindOper(const TSource& ASource, const QString& AName);

} // namespace Documents
