#include "pages/SearchList.h"

#include "pages/ListRowDelegate.h"

#include "shell/ShellFrame.h"

#include "platform/IdeTheming.h"
#include "platform/VisibleText.h"
#include "platform/WrappedText.h"

#include <QAbstractListModel>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>

namespace {

// What a list box calls a character: typed without a command key, and above the space.
bool IsCharacter(const QKeyEvent* AEvent) {
    constexpr auto typing = Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier;
    const QString text = AEvent->text();
    if (text.isEmpty() || (AEvent->modifiers() & ~typing))
        return false;
    const QChar first = text.front();
    return first.unicode() > 32 && (first.isPrint() || first.isSurrogate());
}

bool IsReturn(const QKeyEvent* AEvent) {
    return AEvent->key() == Qt::Key_Return || AEvent->key() == Qt::Key_Enter;
}

} // namespace

class TZOSearchList::TModel final : public QAbstractListModel {
public:
    const std::vector<TRow>& Rows() const { return FRows; }

    void SetRows(std::vector<TRow> ARows) {
        beginResetModel();
        FRows = std::move(ARows);
        endResetModel();
    }

    int rowCount(const QModelIndex& AParent) const override {
        return AParent.isValid() ? 0 : static_cast<int>(FRows.size());
    }

    QVariant data(const QModelIndex& AIndex, int ARole) const override {
        // Copying asks for the current row, which there may not be.
        if (!AIndex.isValid())
            return {};
        const TRow& row = FRows[static_cast<std::size_t>(AIndex.row())];
        switch (ARole) {
        case Qt::DisplayRole:
            return row.Name;
        case Qt::AccessibleTextRole:
            return VisibleText(row.Name);
        case Qt::AccessibleDescriptionRole:
            return VisibleLines(row.Description);
        case TZOListRowDelegate::DescriptionRole:
            return row.Description;
        case TZOListRowDelegate::IsCategoryRole:
            return row.IsCategory;
        default:
            return {};
        }
    }

private:
    std::vector<TRow> FRows;
};

TZOSearchList::TZOSearchList(QWidget* AParent)
    : QListView(AParent), FModel(std::make_unique<TModel>()), FDelegate(new TZOListRowDelegate(this)) {
    setItemDelegate(FDelegate);
    setModel(FModel.get());
    setFrameShape(QFrame::NoFrame);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(TZOListRowDelegate::RowHeight);
    // Not activated, which comes after a single click on some desktops.
    connect(this, &QListView::doubleClicked, this, &TZOSearchList::Chosen);
}

TZOSearchList::~TZOSearchList() { setModel(nullptr); }

void TZOSearchList::SetSearchEdit(QLineEdit* AEdit) {
    FSearchEdit = AEdit;
    AEdit->installEventFilter(this);
    connect(AEdit, &QLineEdit::textChanged, this, &TZOSearchList::SearchChanged);
}

void TZOSearchList::UpdateSearchEditColor(const TZOIdeTheming* ATheming) {
    SetBackColor(FSearchEdit, ATheming->GetSystemColor(ATheming->IsDarkTheme() ? clBtnFace : clWindow));
}

void TZOSearchList::SetFonts(const QFont& AName, const QFont& ACategory) {
    FDelegate->SetNameFont(AName);
    FDelegate->SetCategoryFont(ACategory);
    viewport()->update();
}

void TZOSearchList::SetRows(std::vector<TRow> ARows) { FModel->SetRows(std::move(ARows)); }

int TZOSearchList::ItemIndex() const { return currentIndex().row(); }

bool TZOSearchList::Matches(const QString& AName, const QString& ASearch) {
    return AName.contains(ASearch, Qt::CaseInsensitive);
}

void TZOSearchList::StartSearch(const QKeyEvent* ATyped) {
    FSearchEdit->setFocus();
    FSearchEdit->selectAll();
    const std::unique_ptr<QKeyEvent> typed(ATyped->clone());
    QCoreApplication::sendEvent(FSearchEdit, typed.get());
}

void TZOSearchList::CancelSearch() {
    FSearchEdit->clear();
    setFocus();
}

void TZOSearchList::keyboardSearch(const QString&) {}

void TZOSearchList::focusInEvent(QFocusEvent* AEvent) {
    // The base class makes a row current that the user has not chosen; the next arrow key would skip it.
    const bool hadCurrent = currentIndex().isValid();
    QListView::focusInEvent(AEvent);
    if (!hadCurrent)
        selectionModel()->clearCurrentIndex();
}

void TZOSearchList::keyPressEvent(QKeyEvent* AEvent) {
    if (IsReturn(AEvent))
        Q_EMIT Chosen();
    else if (AEvent->key() == Qt::Key_Down && ItemIndex() < 0)
        SelectFirstEntry();
    else if (AEvent->key() == Qt::Key_Escape)
        CancelSearch();
    else if (IsCharacter(AEvent))
        StartSearch(AEvent);
    else if (AEvent->key() != Qt::Key_Space)
        QListView::keyPressEvent(AEvent);
}

void TZOSearchList::mouseDoubleClickEvent(QMouseEvent* AEvent) {
    // The base class calls it a double click whatever the button.
    if (AEvent->button() == Qt::LeftButton)
        QListView::mouseDoubleClickEvent(AEvent);
}

QString TZOSearchList::ShownHint() const {
    const QString search = FSearchEdit ? FSearchEdit->text() : QString();
    return FModel->Rows().empty() && !search.isEmpty() ? FEmptyHint.arg(search) : QString();
}

void TZOSearchList::paintEvent(QPaintEvent* AEvent) {
    QListView::paintEvent(AEvent);
    const QString hint = ShownHint();
    if (hint.isEmpty())
        return;
    QPainter painter(viewport());
    painter.setFont(font());
    painter.setPen(TZOIdeTheming::GetSystemColor(TZOShellFrame::GRAY_COLORS[TZOIdeTheming::IsDarkTheme()]));
    // Where the first row would be.
    DrawWrappedText(painter, viewport()->rect().adjusted(32, 4, -24, -4), hint);
}

bool TZOSearchList::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (AObject == FSearchEdit && AEvent->type() == QEvent::KeyPress)
        return SearchEditKeyDown(static_cast<QKeyEvent*>(AEvent));
    return QListView::eventFilter(AObject, AEvent);
}

bool TZOSearchList::SearchEditKeyDown(const QKeyEvent* AEvent) {
    switch (AEvent->key()) {
    case Qt::Key_Escape:
        CancelSearch();
        return true;
    case Qt::Key_Down:
        SelectFirstEntry();
        return true;
    default:
        return false;
    }
}

void TZOSearchList::SelectFirstEntry() {
    const std::vector<TRow>& rows = FModel->Rows();
    std::size_t row = 0;
    while (row < rows.size() && rows[row].IsCategory)
        ++row;
    if (row == rows.size())
        return;
    setCurrentIndex(FModel->index(static_cast<int>(row)));
    setFocus();
}
