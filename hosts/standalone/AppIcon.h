// The program's icon.
#pragma once

class QIcon;

/// A bridge, drawn at whatever size is asked for.
QIcon AppIcon();
