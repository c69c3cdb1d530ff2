// The service classes of a form editor.
#pragma once

#include <QStringList>

namespace DesignerServices {

/// Loads the service plug-ins; does nothing the second time. They are stopped when the application object
/// goes, unless components are left that the editor has not deleted by then.
void Start();
/// One sentence for each that was skipped.
QStringList Failures();

/// To be called by components as they come and go.
void ComponentMade();
void ComponentGone();

} // namespace DesignerServices
