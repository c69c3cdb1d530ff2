#include "jsoneditor/values/ChoiceList_p.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"

#include <QEvent>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int MaxRows = 10;

} // namespace

TZOChoiceList::TZOChoiceList(TZORestView* AView, const QStringList& AChoices)
    : QListWidget(AView->window()), FEditor(AView->Editor()) {
    setObjectName(QStringLiteral("Choices"));
    setAccessibleName(tr("Allowed values"));
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFont(AView->font());
    addItems(AChoices);
    MoveToTyped();
    Place();
    show();
    raise();
    FEditor->installEventFilter(this);
    AView->installEventFilter(this);
    connect(FEditor, &QLineEdit::textEdited, this, &TZOChoiceList::MoveToTyped);
    connect(this, &QListWidget::itemClicked, this, &TZOChoiceList::Choose);
}

void TZOChoiceList::Place() {
    const int rows = std::min(count(), MaxRows);
    const int height = rows * sizeHintForRow(0) + 2 * frameWidth();
    const int width = sizeHintForColumn(0) + 2 * frameWidth() +
                      (count() > rows ? verticalScrollBar()->sizeHint().width() : 0) +
                      fontMetrics().averageCharWidth();
    const QRect room = parentWidget()->rect();
    const QRect editor(FEditor->mapTo(parentWidget(), QPoint()), FEditor->size());
    const bool below = editor.bottom() + 1 + height <= room.bottom() || editor.top() - height < room.top();
    const int top = below ? editor.bottom() + 1 : editor.top() - height;
    const int left = std::clamp(editor.left(), 0, std::max(0, room.width() - width));
    setGeometry(left, top, std::min(width, room.width()), std::min(height, room.bottom() + 1 - top));
}

void TZOChoiceList::MoveToTyped() {
    const QString typed = FEditor->text();
    const auto matches = findItems(typed, Qt::MatchStartsWith);
    setCurrentItem(matches.isEmpty() ? item(0) : matches.first());
}

bool TZOChoiceList::TakeKey(int AKey, Qt::KeyboardModifiers AShift) {
    if (AShift != Qt::NoModifier)
        return false;
    switch (AKey) {
    case Qt::Key_Up:
        setCurrentRow((currentRow() + count() - 1) % count());
        return true;
    case Qt::Key_Down:
        setCurrentRow((currentRow() + 1) % count());
        return true;
    case Qt::Key_Return:
        Choose();
        return true;
    case Qt::Key_Escape:
        emit Closed();
        return true;
    default:
        return false;
    }
}

void TZOChoiceList::Choose() { emit Chosen(currentItem()->text()); }

bool TZOChoiceList::eventFilter(QObject* AObject, QEvent* AEvent) {
    const bool isEditor = AObject == FEditor;
    const QEvent::Type type = AEvent->type();
    if (type == QEvent::Hide || (isEditor && type == QEvent::FocusOut))
        emit Closed();
    else if (type == QEvent::Move || type == QEvent::Resize)
        Place();
    return QListWidget::eventFilter(AObject, AEvent);
}
