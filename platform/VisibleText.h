// Texts from outside as they may be shown: seen, not obeyed.
#pragma once

#include <QString>

/// AText with a picture or an escape ("\u202E") for each character that would act instead of being seen:
/// controls, marks that turn the direction of what follows, line and paragraph separators, byte order marks.
/// For what is painted or shown on one line; never for what is stored, sent or edited.
QString VisibleText(const QString& AText);
/// The same, but lines end where they do in AText.
QString VisibleLines(const QString& AText);
