#include "jsoneditor/view/PlainFont_p.h"

#include <QFont>
#include <QFontMetrics>
#include <QGlyphRun>
#include <QPainter>
#include <QString>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// What makes a character look different beside another one, or stand elsewhere.
constexpr const char* ShapingTables[] = {"GSUB", "GPOS", "kern", "morx", "mort", "kerx"};

bool NeedsShaping(const QRawFont& AFont) {
    // A font that does not show its tables may have any.
    return AFont.fontTable("head").isEmpty() ||
           std::any_of(std::begin(ShapingTables), std::end(ShapingTables),
                       [&](const char* ATable) { return !AFont.fontTable(ATable).isEmpty(); });
}

QString AllCharacters() {
    QString all;
    for (char16_t c = TZOPlainFont::First; c <= TZOPlainFont::Last; ++c)
        all += QChar(c);
    return all;
}

/// AText on one line, as any other text is shaped.
QList<QGlyphRun> Shaped(const QString& AText, const QFont& AFont) {
    QTextLayout layout(AText, AFont);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LeftToRight);
    layout.setTextOption(option);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return layout.glyphRuns();
}

/// The distance between neighbours, or 0 where it is not always the same.
qreal Pitch(const QList<QPointF>& APlaces) {
    const qreal pitch = APlaces[1].x() - APlaces[0].x();
    for (qsizetype i = 0; i < APlaces.size(); ++i) {
        // Places are whole parts of a pixel: they add up without an error.
        if (APlaces[i] != APlaces[0] + QPointF(pitch * double(i), 0))
            return 0;
    }
    return pitch;
}

} // namespace

std::shared_ptr<const TZOPlainFont> TZOPlainFont::Of(const QFont& AFont) {
    if (AFont.underline() || AFont.overline() || AFont.strikeOut())
        return nullptr;
    const QString all = AllCharacters();
    // Characters that the font lacks would come from others, in runs of their own.
    const QList<QGlyphRun> runs = Shaped(all, AFont);
    if (runs.size() != 1 || runs[0].glyphIndexes().size() != all.size() || NeedsShaping(runs[0].rawFont()))
        return nullptr;
    auto font = std::make_shared<TZOPlainFont>();
    font->FAdvance = Pitch(runs[0].positions());
    if (font->FAdvance <= 0)
        return nullptr;
    const QFontMetricsF bearings(AFont);
    std::transform(all.cbegin(), all.cend(), font->FOverhangs.begin(),
                   [&](QChar AChar) { return std::max(0.0, -bearings.rightBearing(AChar)); });
    font->FFont = runs[0].rawFont();
    std::copy_n(runs[0].glyphIndexes().cbegin(), all.size(), font->FGlyphs.begin());
    const QRect ink = QFontMetrics(AFont).boundingRect(all);
    font->FInkAbove = 1 - ink.top();
    font->FInkBelow = ink.bottom() + 2;
    return font;
}

bool TZOPlainFont::Holds(QStringView AText) {
    return std::all_of(AText.utf16(), AText.utf16() + AText.size(),
                       [](char16_t AChar) { return AChar >= First && AChar <= Last; });
}

int TZOPlainFont::Width(QStringView AText) const {
    if (AText.isEmpty())
        return 0;
    const qreal width = FAdvance * double(AText.size()) + FOverhangs[AText.back().unicode() - First];
    return int(std::min<long long>(std::llround(width), std::numeric_limits<int>::max() / 4));
}

TZOPlainTexts::TRun& TZOPlainTexts::RunOf(const TZOPlainFont& AFont, const QColor& AColor) {
    const auto found = std::find_if(FRuns.begin(), FRuns.end(), [&](const TRun& ARun) {
        return ARun.Font == &AFont && ARun.Color == AColor;
    });
    if (found != FRuns.end())
        return *found;
    return FRuns.emplace_back(TRun{&AFont, AColor, {}, {}});
}

void TZOPlainTexts::Add(const TZOPlainFont& AFont, QStringView AText, const QColor& AColor,
                        const QPoint& ABaseLine, int ARight) {
    TRun& run = RunOf(AFont, AColor);
    const double left = ABaseLine.x(), y = ABaseLine.y();
    const double inSight = std::ceil(std::max(0.0, (ARight - left) / AFont.FAdvance));
    const auto count = static_cast<size_t>(std::min(double(AText.size()), inSight));
    const size_t start = run.Glyphs.size();
    run.Glyphs.resize(start + count);
    run.Places.resize(start + count);
    for (size_t i = 0; i < count; ++i) {
        run.Glyphs[start + i] = AFont.FGlyphs[AText.utf16()[i] - TZOPlainFont::First];
        run.Places[start + i] = QPointF(left + AFont.FAdvance * double(i), y);
    }
}

void TZOPlainTexts::Draw(QPainter& APainter) const {
    QGlyphRun glyphs;
    for (const TRun& run : FRuns) {
        glyphs.setRawFont(run.Font->FFont);
        glyphs.setRawData(run.Glyphs.data(), run.Places.data(), int(run.Glyphs.size()));
        APainter.setPen(run.Color);
        APainter.drawGlyphRun(QPointF(), glyphs);
    }
}
