// The service classes of a form editor.
#pragma once

#include <QStringList>

#include <memory>
#include <vector>

class TZOApiDocument;

namespace DesignerServices {

/// Loads the service plug-ins and the user's API documents, and registers the documents' classes; does
/// nothing the second time. They are stopped when the application object goes, unless components are left
/// that the editor has not deleted by then.
void Start();
/// One sentence for each that was skipped.
QStringList Failures();

/// The user's documents that describe a service.
const std::vector<std::shared_ptr<TZOApiDocument>>& Documents();

/// A part of each component: tells that there is one.
struct TUser {
    TUser();
    ~TUser();
};

} // namespace DesignerServices
