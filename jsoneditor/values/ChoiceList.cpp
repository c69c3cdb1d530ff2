#include "jsoneditor/values/ChoiceList_p.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/IdeTheming.h"
#include "platform/VisibleText.h"

#include <QEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace {

constexpr int MaxRows = 10;

} // namespace

TZOChoiceList::TZOChoiceList(TZORestView* AView, const QStringList& AChoices)
    : QListWidget(AView->window()), FChoices(AChoices), FEditor(AView->Editor()) {
    setObjectName(QStringLiteral("Choices"));
    setAccessibleName(tr("Allowed values"));
    setFocusPolicy(Qt::NoFocus);
    setUniformItemSizes(true);
    // The style's own frame is lost on a dark ground.
    setFrameStyle(QFrame::Box | QFrame::Plain);
    QPalette colours = palette();
    colours.setColor(QPalette::WindowText,
                     TZOIdeTheming::Blend(colours.color(QPalette::Base), colours.color(QPalette::Text), 2));
    setPalette(colours);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFont(AView->font());
    for (const QString& choice : AChoices)
        addItem(VisibleText(choice));
    MoveToTyped(AView->Editor()->text());
    if (currentRow() < 0)
        setCurrentRow(0);
    Place();
    show();
    raise();
    // A scroll box may carry the view along, which hears nothing of it.
    for (QWidget* widget = FEditor; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget())
        widget->installEventFilter(this);
    connect(AView->Editor(), &QLineEdit::textEdited, this, &TZOChoiceList::MoveToTyped);
    connect(this, &QListWidget::itemClicked, this, &TZOChoiceList::Choose);
}

void TZOChoiceList::Place() {
    const int rowHeight = sizeHintForRow(0);
    const int rows = std::min(count(), MaxRows);
    const QRect editor(FEditor->mapTo(parentWidget(), QPoint()), FEditor->size());
    const QRect room = Room();
    const int above = editor.top() - room.top();
    const int below = room.bottom() - editor.bottom();
    const int wanted = rows * rowHeight + 2 * frameWidth();
    const bool isBelow = wanted <= below || below >= above;
    const int height = std::min(wanted, std::max(isBelow ? below : above, rowHeight + 2 * frameWidth()));
    const bool scrolls = count() > rows || height < wanted;
    const int width = std::min(sizeHintForColumn(0) + 2 * frameWidth() + fontMetrics().averageCharWidth() +
                                   (scrolls ? verticalScrollBar()->sizeHint().width() : 0),
                               room.width());
    const int left = std::clamp(editor.left(), room.left(), room.right() + 1 - width);
    setGeometry(left, isBelow ? editor.bottom() + 1 : editor.top() - height, width, height);
}

QRect TZOChoiceList::Room() const {
    const QWidget* window = parentWidget();
    const QRect screen = window->screen()->availableGeometry();
    const QRect inSight = window->rect() & QRect(window->mapFromGlobal(screen.topLeft()), screen.size());
    return inSight.isEmpty() ? window->rect() : inSight;
}

void TZOChoiceList::MoveToTyped(const QString& ATyped) {
    qsizetype match = FChoices.indexOf(ATyped);
    if (match < 0) {
        const auto first = std::find_if(FChoices.cbegin(), FChoices.cend(), [&](const QString& AChoice) {
            return AChoice.startsWith(ATyped, Qt::CaseInsensitive);
        });
        match = first == FChoices.cend() ? -1 : first - FChoices.cbegin();
    }
    setCurrentRow(static_cast<int>(match));
    if (match < 0)
        clearSelection();
}

bool TZOChoiceList::TakeKey(int AKey, Qt::KeyboardModifiers AShift) {
    if (AShift != Qt::NoModifier)
        return false;
    switch (AKey) {
    case Qt::Key_Up:
        setCurrentRow((std::max(currentRow(), 0) + count() - 1) % count());
        return true;
    case Qt::Key_Down:
        setCurrentRow((currentRow() + 1) % count());
        return true;
    case Qt::Key_Return:
        // What was typed is none of these: the editor has it.
        if (!currentItem())
            return false;
        Choose();
        return true;
    case Qt::Key_Escape:
        emit Closed();
        return true;
    default:
        return false;
    }
}

void TZOChoiceList::Choose() { emit Chosen(FChoices[currentRow()]); }

bool TZOChoiceList::eventFilter(QObject* AObject, QEvent* AEvent) {
    const QEvent::Type type = AEvent->type();
    if (type == QEvent::Hide || (AObject == FEditor && type == QEvent::FocusOut))
        emit Closed();
    else if (type == QEvent::Move || type == QEvent::Resize)
        Follow();
    return QListWidget::eventFilter(AObject, AEvent);
}

void TZOChoiceList::Follow() {
    if (FEditor->visibleRegion().isEmpty())
        emit Closed();
    else
        Place();
}
