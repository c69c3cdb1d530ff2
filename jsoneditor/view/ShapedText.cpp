#include "jsoneditor/view/ShapedText_p.h"

#include <QPainter>
#include <QTextOption>

#include <cmath>

namespace {

constexpr qreal EndlessWidth = 1 << 22;

} // namespace

TZOShapedText::TZOShapedText(const QString& AText, const QFont& AFont) : FLayout(AText, AFont) {
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    option.setTextDirection(Qt::LeftToRight);
    option.setFlags(QTextOption::IncludeTrailingSpaces);
    FLayout.setTextOption(option);
    FLayout.setCacheEnabled(true);
    FLayout.beginLayout();
    if (QTextLine line = FLayout.createLine(); line.isValid())
        line.setLineWidth(EndlessWidth);
    FLayout.endLayout();
}

int TZOShapedText::Width() const {
    return FLayout.lineCount() ? int(std::lround(FLayout.lineAt(0).naturalTextWidth())) : 0;
}

void TZOShapedText::Draw(QPainter& APainter, const QPoint& ABaseLine) const {
    if (FLayout.lineCount())
        FLayout.draw(&APainter, QPointF(ABaseLine.x(), ABaseLine.y() - FLayout.lineAt(0).ascent()));
}
