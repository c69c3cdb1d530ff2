// One run of text in a row, and the colour class it is painted in.
#pragma once

#include <QRect>
#include <QString>

/// Colour class of a chunk's text. The view maps it to a colour when it paints.
enum TZOChunkToken : int { ctNormal, ctGray, ctSymbol, ctError };

/// A run of text with one colour class, perhaps editable in place. Lives and dies with its row's layout.
class TZORowChunk {
public:
    explicit TZORowChunk(int AId) : FId(AId) {}

    /// The data source's column number: the same in every row for the same kind of field. Not necessarily
    /// unique in a row; look-ups then find the first.
    int Id() const { return FId; }
    /// In the coordinates of the row's layout; empty until the view has measured it.
    const QRect& Bounds() const { return FBounds; }
    bool IsEditable() const { return FIsEditable; }
    const QString& Text() const { return FText; }
    TZOChunkToken TextToken() const { return FTextToken; }

    void SetBounds(const QRect& ABounds) { FBounds = ABounds; }
    void SetEditable(bool AIsEditable) { FIsEditable = AIsEditable; }
    void SetText(const QString& AText) { FText = AText; }
    void SetTextToken(TZOChunkToken ATextToken) { FTextToken = ATextToken; }

private:
    int FId;
    QRect FBounds;
    bool FIsEditable = false;
    QString FText;
    TZOChunkToken FTextToken = ctNormal;
};
