// One run of text in a row, and the colour class it is painted in.
#pragma once

#include <QRect>
#include <QString>

#include <cstddef>
#include <memory>

class TZOPlainFont;
class TZOShapedText;
class TZOViewRowLayout;

/// Colour class of a chunk's text. The view maps it to a colour when it paints.
enum TZOChunkToken : int { ctNormal, ctGray, ctSymbol, ctError };

/// A run of text with one colour class, perhaps editable in place. Lives and dies with its row's layout.
class TZORowChunk {
public:
    explicit TZORowChunk(int AId);
    ~TZORowChunk();

    static void* operator new(std::size_t ASize);
    static void operator delete(void* AChunk, std::size_t ASize) noexcept;

    /// The data source's column number: the same in every row for the same kind of field. Not necessarily
    /// unique in a row; look-ups then find the first.
    int Id() const { return FId; }
    /// In the coordinates of the row's layout; empty while the source fills it. Measured when first asked
    /// for.
    const QRect& Bounds() const;
    bool IsEditable() const { return FIsEditable; }
    const QString& Text() const { return FText; }
    TZOChunkToken TextToken() const { return FTextToken; }

    void SetBounds(const QRect& ABounds) { FBounds = ABounds; }
    void SetEditable(bool AIsEditable) { FIsEditable = AIsEditable; }
    void SetText(const QString& AText);
    void SetTextToken(TZOChunkToken ATextToken) { FTextToken = ATextToken; }

    /// The text in the view's font, kept from measuring for painting; null for none, as of a very long text,
    /// and after the text was changed.
    const TZOShapedText* Shaped() const { return FShaped.get(); }
    void SetShaped(std::shared_ptr<const TZOShapedText> AShaped) { FShaped = std::move(AShaped); }
    /// Set instead, for a text that is painted without being shaped.
    const TZOPlainFont* PlainFont() const { return FPlainFont.get(); }
    void SetPlainFont(std::shared_ptr<const TZOPlainFont> AFont) { FPlainFont = std::move(AFont); }

private:
    friend class TZOViewRowLayout;

    TZOViewRowLayout* FLayout = nullptr;
    int FId;
    QRect FBounds;
    bool FIsEditable = false;
    QString FText;
    TZOChunkToken FTextToken = ctNormal;
    std::shared_ptr<const TZOShapedText> FShaped;
    std::shared_ptr<const TZOPlainFont> FPlainFont;
};
