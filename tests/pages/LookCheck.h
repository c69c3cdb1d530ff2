// What can be said of a window's looks without looking.
#pragma once

#include <QString>

class QWidget;

namespace LookCheck {

/// Expects that nothing in the window is clipped, nothing overlaps, and every text stands out from its
/// ground. With ZO_PICTURES set, a picture of it goes into that folder.
void See(QWidget* AWindow, const QString& AName);
/// Only the picture, of what is not drawn by us.
void Keep(QWidget* AWindow, const QString& AName);

} // namespace LookCheck
