#include "platform/WrappedText.h"

#include "platform/VisibleText.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>

namespace {

// What can be seen of a text at all: a character is at least a pixel wide.
QString VisiblePart(const QString& AText, int AWidth, int AMaxLines) {
    const qsizetype limit = (qsizetype(AWidth) + 1) * AMaxLines + 1;
    const QString text = AText.size() > limit ? AText.left(limit) + QChar(0x2026) : AText;
    return VisibleLines(text).replace(u'\n', QChar::LineSeparator);
}

} // namespace

QStringList WrapText(const QString& AText, const QFont& AFont, int AWidth, int AMaxLines) {
    QStringList lines;
    if (AText.isEmpty() || AWidth <= 0 || AMaxLines <= 0)
        return lines;
    const QString text = VisiblePart(AText, AWidth, AMaxLines);
    QTextLayout layout(text, AFont);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(AWidth);
        const int start = line.textStart();
        const int end = start + line.textLength();
        if (lines.size() + 1 == AMaxLines && end < text.size()) {
            QString rest = text.mid(start);
            rest.replace(QChar::LineSeparator, u' ');
            // A rest that fits by itself was cut by a line end: it must not look complete.
            const QFontMetrics metrics(AFont);
            const QString cut = text.mid(start, line.textLength()).trimmed() + QChar(0x2026);
            const bool isCutByBreak = text[end - 1] == QChar::LineSeparator;
            lines.append(isCutByBreak ? metrics.elidedText(cut, Qt::ElideRight, AWidth)
                                      : metrics.elidedText(rest, Qt::ElideRight, AWidth));
            break;
        }
        lines.append(text.mid(start, line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

void DrawWrappedText(QPainter& APainter, const QRect& ARect, const QString& AText) {
    if (ARect.isEmpty())
        return;
    const int height = APainter.fontMetrics().height();
    QRect line(ARect.left(), ARect.top(), ARect.width(), height);
    for (const QString& text :
         WrapText(AText, APainter.font(), ARect.width(), std::max(1, ARect.height() / height))) {
        APainter.drawText(line, Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, text);
        line.translate(0, height);
    }
}
