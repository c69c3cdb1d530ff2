#include "shell/ShortcutsInfoDialog.h"

#include "ui_ShortcutsInfo.h"

#include "shell/ShellFrame.h"

#include "platform/Fonts.h"
#include "platform/IdeTheming.h"
#include "platform/WrappedText.h"

#include <QPainter>
#include <QStyledItemDelegate>

namespace {

constexpr int ItemHeight = 42;

// "Gesture | Meaning"
const char* const Items[] = {
    "Intert | Show available object properties or insert new array element after selected line",
    "Shift+Insert | Show available object properties or insert new array element before selected line",
    "DoubleClick | Show available object properties or insert new array element for object or array lines",
    "DoubleClick | Show file select dialog for upload line",
    "Enter | Accept currently editing value",
    "Escape | Cancel currently editing value",
    "Escape | Hide unspecified properties",
    "Ctrl+Delete | Reset property value to unspecified or remove array element",
    "Alt+Up | Move object property or array element up inside its parent",
    "Alt+Down | Move object property or array element down inside its parent",
};

/// Draws every line alike, whether it is selected or not.
class TShortcutDelegate final : public QStyledItemDelegate {
public:
    TShortcutDelegate(const QFont& AGestureFont, QObject* AOwner)
        : QStyledItemDelegate(AOwner), FGestureFont(AGestureFont) {}

    void paint(QPainter* APainter, const QStyleOptionViewItem& AOption,
               const QModelIndex& AIndex) const override {
        const QString text = AIndex.data().toString();
        const qsizetype bar = text.indexOf(u'|');
        const QRect row = AOption.rect;
        APainter->save();
        APainter->setClipRect(row);
        APainter->fillRect(row, TZOIdeTheming::GetSystemColor(clWindow));
        APainter->setFont(FGestureFont);
        APainter->setPen(
            TZOIdeTheming::GetSystemColor(TZOShellFrame::LINK_COLORS[TZOIdeTheming::IsDarkTheme()]));
        APainter->drawText(row.adjusted(32, 4, 0, 0), Qt::AlignLeft | Qt::AlignTop | Qt::TextSingleLine,
                           bar < 0 ? QString() : text.left(bar).trimmed());
        APainter->setFont(AOption.font);
        APainter->setPen(TZOIdeTheming::GetSystemColor(clWindowText));
        DrawWrappedText(*APainter, row.adjusted(128, 4, -32, -4), text.mid(bar + 1).trimmed());
        APainter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, ItemHeight}; }

private:
    QFont FGestureFont;
};

} // namespace

TZOShortcutsInfoDialog::TZOShortcutsInfoDialog(QWidget* AOwner)
    : QDialog(AOwner), FUi(std::make_unique<Ui::ShortcutsInfo>()) {
    FUi->setupUi(this);
    const QString family = QStringLiteral("Segoe UI");
    setFont(UiFont(family, 12));
    FUi->HeaderLabel->setFont(UiFont(family, 27));
    FUi->HeaderLabel->setForegroundRole(QPalette::Text); // clWindowText, as the ground is clWindow
    FUi->ShortcutFontLabel->setFont(UiFont(family, 12));
    layout()->setSizeConstraint(QLayout::SetNoConstraint);
    setFixedSize(588, 363);
    FUi->ListBox->setItemDelegate(new TShortcutDelegate(FUi->ShortcutFontLabel->font(), this));
    for (const char* item : Items) {
        auto* row = new QListWidgetItem(QLatin1String(item), FUi->ListBox);
        QString spoken = row->text();
        row->setData(Qt::AccessibleTextRole, spoken.replace(QLatin1String(" | "), QLatin1String(": ")));
    }
    connect(FUi->CloseButton, &QPushButton::clicked, this, [this] { done(mrClose); });
    TZOIdeTheming::ThemeComponent(this, [this](TZOIdeTheming* ATheming) { IdeThemeChanged(ATheming); });
}

TZOShortcutsInfoDialog::~TZOShortcutsInfoDialog() = default;

void TZOShortcutsInfoDialog::reject() { done(mrClose); }

void TZOShortcutsInfoDialog::IdeThemeChanged(TZOIdeTheming* ATheming) {
    SetBackColor(FUi->MainPanel, ATheming->GetSystemColor(clWindow));
    FUi->ListBox->viewport()->update();
}
