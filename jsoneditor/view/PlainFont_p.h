// Text that needs no shaping.
#pragma once

#include <QColor>
#include <QList>
#include <QPoint>
#include <QRawFont>
#include <QStringView>

#include <array>
#include <memory>
#include <vector>

class QFont;
class QPainter;

/// A font of fixed pitch whose file knows no ligatures and no kerning: there, each printable character of
/// ASCII is one glyph, whatever stands beside it, and as wide as any other.
class TZOPlainFont {
public:
    static constexpr char16_t First = u' ', Last = u'~';

    /// Null for any other font.
    static std::shared_ptr<const TZOPlainFont> Of(const QFont& AFont);

    /// Whether AText has nothing but printable characters of ASCII.
    static bool Holds(QStringView AText);
    /// Of AText, which the font holds, in pixels. The last character's ink counts where it stands out.
    int Width(QStringView AText) const;
    /// How far the ink of any character reaches above the base line, and below it.
    int InkAbove() const { return FInkAbove; }
    int InkBelow() const { return FInkBelow; }

private:
    friend class TZOPlainTexts;

    QRawFont FFont;
    std::array<quint32, Last - First + 1> FGlyphs;
    std::array<qreal, Last - First + 1> FOverhangs;
    qreal FAdvance = 0;
    int FInkAbove = 0, FInkBelow = 0;
};

/// Plain texts that are painted in one go: calling for each of them would cost as much as its glyphs.
class TZOPlainTexts {
public:
    /// AText, which AFont holds, from ABaseLine on to the right; what begins at ARight or beyond it is left
    /// out. AFont must live until the texts are drawn.
    void Add(const TZOPlainFont& AFont, QStringView AText, const QColor& AColor, const QPoint& ABaseLine,
             int ARight);
    void Draw(QPainter& APainter) const;

private:
    struct TRun {
        const TZOPlainFont* Font;
        QColor Color;
        std::vector<quint32> Glyphs;
        std::vector<QPointF> Places;
    };

    TRun& RunOf(const TZOPlainFont& AFont, const QColor& AColor);

    std::vector<TRun> FRuns;
};
