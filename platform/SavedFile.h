// Files that are replaced whole or not at all.
#pragma once

#include <QString>

class QSaveFile;

/// Puts what was written to AFile in the place of its target, once it is on disk: QSaveFile by itself does
/// not tell when the disk refuses. Returns why that could not be done, empty when it was; the target is what
/// it was before then, and AFile only good for being destroyed.
QString PutInPlace(QSaveFile& AFile);
