// The marks of a search, under the text of a chunk.
#pragma once

#include <QColor>
#include <QString>

class QPainter;
class TZORowChunk;

struct TZOMarks {
    QString Text; ///< empty: none
    QColor Color;

    /// Fills the ground of each place of AShown, what the chunk shows of its text, that holds Text. Where all
    /// of them are out of sight at the right, a mark stands there.
    void Draw(QPainter& APainter, const TZORowChunk& AChunk, const QString& AShown, int ARowWidth) const;
};
