// Files that are replaced whole or not at all.
#pragma once

#include <QString>

#include <memory>

class QFileDevice;

/// What to write the new content of AName to: an older file stays whole until PutInPlace, but a pipe or
/// device is written to, as it is not there to be replaced. Not open when that failed; errorString() tells
/// why.
std::unique_ptr<QFileDevice> OpenForSaving(const QString& AName);

/// Puts what was written to AFile, which OpenForSaving made, in the place of its target, once it is on disk:
/// QSaveFile by itself does not tell when the disk refuses. Returns why that could not be done, empty when it
/// was; a target that is a file is what it was before then, and AFile only good for being destroyed.
QString PutInPlace(QFileDevice& AFile);
