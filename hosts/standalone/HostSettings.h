// What the window remembers from one start to the next. It stands beside the explorer's own settings.
#pragma once

#include "platform/IdeTheming.h"

#include <QByteArray>
#include <QStringList>

namespace HostSettings {

/// thSystem where none was stored.
TZOTheme Theme();
/// Raises ERegistryException when the settings cannot be written, as SetGeometry does.
void SetTheme(TZOTheme ATheme);

/// What QWidget::saveGeometry gave; empty where none was stored.
QByteArray Geometry();
void SetGeometry(const QByteArray& AGeometry);

/// The paths of the documents opened last, the latest first; empty where none were stored.
QStringList RecentDocuments();
/// Puts APath first among them, of which ten are kept.
void RememberDocument(const QString& APath);

} // namespace HostSettings
