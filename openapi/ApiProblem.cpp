#include "openapi/ApiProblem.h"

QString TZOApiProblem::ToText() const {
    QString text = File;
    if (Line > 0)
        text += u':' + QString::number(Line);
    text += QStringLiteral(": ");
    if (!Pointer.isEmpty())
        text += Pointer + QStringLiteral(": ");
    return text + Message;
}
