// How a service looks on a form and in lists of components.
#pragma once

#include <QString>

class QIcon;

/// A bridge with the first letter of the service class below it, drawn at whatever size is asked for.
QIcon ComponentIcon(const QString& AClassName);
