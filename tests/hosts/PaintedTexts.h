// What a widget paints as text.
#pragma once

#include <QStringList>

class QWidget;

/// The pieces of text that AWidget and all that is visible in it paint, in no order that matters. Rows of row
/// editors, which are painted off-screen first, are not among them.
QStringList PaintedTexts(QWidget* AWidget);
