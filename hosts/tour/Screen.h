// What a user sees on the explorer's windows, as text, and where on the screen it stands. For the user
// interface's thread.
#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>

#include <optional>

namespace Screen {

/// The texts of every visible window, a line each, from top to bottom; rows of lists and editors indented.
QStringList Lines();
/// Whether a line contains AText.
bool Shows(const QString& AText);
/// The middle, on the screen, of the lowest visible button, link, label, field, list row or editor row whose
/// text contains AText; of an editor row the place of the chunk that does.
std::optional<QPoint> Find(const QString& AText);
/// The class and text of the widget that has the focus: "TZORestView", "QLineEdit: lib"...
QString Focus();
/// The text of the current command of an open menu, of the current row of the focused list, of the selected
/// row of the focused editor, or nothing.
QString CurrentRow();
/// Puts the picture of the active window, without its frame, into a file; false when that failed.
bool Save(const QString& AFileName);

} // namespace Screen
