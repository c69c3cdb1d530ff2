#include "pages/ListRowDelegate.h"

#include "shell/ShellFrame.h"

#include "platform/IdeTheming.h"
#include "platform/VisibleText.h"
#include "platform/WrappedText.h"

#include <QPainter>

namespace {

constexpr int NameLeft = 32;
constexpr int DescriptionLeft = 300;
constexpr int DescriptionRight = 24;
constexpr int Vertical = 4;

// From where a name starts on; it runs under the description if it is longer than its column.
void DrawName(QPainter& APainter, const QRect& ARow, const QFont& AFont, const QColor& AColor,
              const QString& AName) {
    APainter.setFont(AFont);
    APainter.setPen(AColor);
    APainter.drawText(ARow.adjusted(NameLeft, Vertical, 0, 0),
                      Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine, VisibleText(AName));
}

} // namespace

void TZOListRowDelegate::paint(QPainter* APainter, const QStyleOptionViewItem& AOption,
                               const QModelIndex& AIndex) const {
    const QRect row = AOption.rect;
    const QString name = AIndex.data(Qt::DisplayRole).toString();
    const QColor text = TZOIdeTheming::GetSystemColor(clWindowText);
    APainter->save();
    APainter->setClipRect(row);
    if (AIndex.data(IsCategoryRole).toBool()) {
        APainter->fillRect(row, AOption.palette.color(QPalette::Base));
        DrawName(*APainter, row, FCategoryFont, text, name);
    } else {
        const bool isSelected = AOption.state & QStyle::State_Selected;
        const QColor selected = TZOIdeTheming::GetSystemColor(clHighlightText);
        const TColor gray = TZOShellFrame::GRAY_COLORS[TZOIdeTheming::IsDarkTheme()];
        const QColor ground =
            isSelected ? TZOIdeTheming::GetSystemColor(clHighlight) : AOption.palette.color(QPalette::Base);
        APainter->fillRect(row, ground);
        DrawName(*APainter, row, FNameFont, isSelected ? selected : text, name);
        // What runs under the description must not be read through it.
        APainter->setBackground(ground);
        APainter->setBackgroundMode(Qt::OpaqueMode);
        APainter->setFont(AOption.font);
        APainter->setPen(isSelected ? selected : TZOIdeTheming::GetSystemColor(gray));
        DrawWrappedText(*APainter, row.adjusted(DescriptionLeft, Vertical, -DescriptionRight, -Vertical),
                        AIndex.data(DescriptionRole).toString());
    }
    APainter->restore();
}

QSize TZOListRowDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    return {0, RowHeight};
}
