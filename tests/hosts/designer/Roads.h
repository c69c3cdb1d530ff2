// What is done in the form editor, one road for each test.
#pragma once

#include <QString>

class TEditorUser;

namespace Roads {

/// Walks the road of that name; raises EZOTourError when the editor does not follow or knows no such road.
void Walk(const QString& AName, TEditorUser& AUser);

} // namespace Roads
