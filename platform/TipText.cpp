#include "platform/TipText.h"

#include "platform/VisibleText.h"

QString TipText(const QString& AText) {
    return QStringLiteral("<p style='white-space: pre-wrap'>%1</p>").arg(VisibleLines(AText).toHtmlEscaped());
}
