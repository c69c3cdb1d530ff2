#include "jsoneditor/view/ChunkText_p.h"

#include "platform/VisibleText.h"

QString ChunkDisplayText(const QString& AText) { return VisibleText(AText); }
