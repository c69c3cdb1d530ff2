#include "jsoneditor/view/AccessibleView_p.h"

#include "jsoneditor/view/AccessibleRow_p.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"

#include <QAccessibleWidget>
#include <QScrollBar>

#include <algorithm>

namespace {

/// The view as a list whose children are the rows that are laid out, then the open editor and the scroll
/// bar. As a table of one column it answers for every row, one at a time.
class TZOAccessibleView : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    TZOAccessibleView(TZORestView* AView, TZOAccessibleRows* ARows)
        : QAccessibleWidget(AView, QAccessible::List), FView(AView), FRows(ARows) {}

    int childCount() const override { return int(Widgets().size()) + FView->Layouts().GetCount(); }

    QAccessibleInterface* child(int AIndex) const override {
        if (AIndex < 0)
            return nullptr;
        for (const TZOViewRowLayout* layout = FView->Layouts().GetFirst(); layout; layout = layout->Next()) {
            if (AIndex-- == 0)
                return FRows->Of(layout->Row());
        }
        const std::vector<QWidget*> widgets = Widgets();
        return AIndex < int(widgets.size()) ? QAccessible::queryAccessibleInterface(widgets[size_t(AIndex)])
                                            : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* AChild) const override {
        if (!AChild)
            return -1;
        int index = 0;
        for (const TZOViewRowLayout* layout = FView->Layouts().GetFirst(); layout;
             layout = layout->Next(), ++index) {
            if (FRows->Of(layout->Row()) == AChild)
                return index;
        }
        for (const QWidget* widget : Widgets()) {
            if (widget == AChild->object())
                return index;
            ++index;
        }
        return -1;
    }

    QAccessibleInterface* childAt(int AX, int AY) const override {
        const QPoint point = FView->mapFromGlobal(QPoint(AX, AY));
        if (!FView->rect().contains(point))
            return nullptr;
        for (QWidget* widget : Widgets()) {
            if (widget->geometry().contains(point))
                return QAccessible::queryAccessibleInterface(widget);
        }
        const TZOHitTest hit = FView->GetHitTest(point);
        return hit.Flags.testFlag(htRow) ? FRows->Of(hit.Row) : nullptr;
    }

    QAccessibleInterface* focusChild() const override {
        if (FView->Editor()->hasFocus())
            return QAccessible::queryAccessibleInterface(FView->Editor());
        return FView->hasFocus() ? FRows->Of(FView->Selected()) : nullptr;
    }

    void* interface_cast(QAccessible::InterfaceType AType) override {
        if (AType == QAccessible::TableInterface)
            return static_cast<QAccessibleTableInterface*>(this);
        return QAccessibleWidget::interface_cast(AType);
    }

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int ARow, int AColumn) const override {
        return AColumn == 0 ? FRows->Of(FView->RowAt(ARow)) : nullptr;
    }
    int selectedCellCount() const override { return selectedRowCount(); }
    QList<QAccessibleInterface*> selectedCells() const override {
        if (QAccessibleInterface* selected = FRows->Of(FView->Selected()))
            return {selected};
        return {};
    }
    QString columnDescription(int) const override { return {}; }
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return FView->Selected() ? 1 : 0; }
    int columnCount() const override { return 1; }
    int rowCount() const override { return FView->GetRowCount(); }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override {
        if (!FView->Selected())
            return {};
        return {FView->IndexOfRow(FView->Selected())};
    }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int ARow) const override {
        return FView->Selected() && FView->RowAt(ARow) == FView->Selected();
    }
    bool selectRow(int ARow) override {
        QAccessibleInterface* row = cellAt(ARow, 0);
        if (!row)
            return false;
        row->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        return isRowSelected(ARow);
    }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override {}

private:
    /// The editor that follows the mouse looks like the text it covers and is no object of its own.
    std::vector<QWidget*> Widgets() const {
        std::vector<QWidget*> widgets;
        if (FView->EditorShown())
            widgets.push_back(FView->Editor());
        auto* bar = FView->findChild<QScrollBar*>(QString(), Qt::FindDirectChildrenOnly);
        if (bar && !bar->isHidden())
            widgets.push_back(bar);
        return widgets;
    }

    TZORestView* FView;
    TZOAccessibleRows* FRows;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* AObject) {
    auto* view = qobject_cast<TZORestView*>(AObject);
    return view && view->AccessibleRows() ? new TZOAccessibleView(view, view->AccessibleRows()) : nullptr;
}

/// The factory stands while there are views, so that none is left behind when a plug-in is unloaded.
int ViewCount = 0;

TZOAnnouncer& Announcer() {
    static TZOAnnouncer announcer;
    return announcer;
}

bool IsHeard() { return Announcer() || QAccessible::isActive(); }

void Announce(QAccessibleEvent& AEvent) {
    if (Announcer())
        Announcer()(AEvent);
    else
        QAccessible::updateAccessibility(&AEvent);
}

bool IsSeparator(QChar AChar) {
    return AChar.isSpace() || AChar == QLatin1Char(':') || AChar == QLatin1Char('=');
}

} // namespace

TZOAnnouncer SetAnnouncer(TZOAnnouncer AAnnouncer) {
    return std::exchange(Announcer(), std::move(AAnnouncer));
}

TZORowSpeech SpeechOf(const TZOViewRowLayout& ALayout) {
    TZORowSpeech speech;
    for (int i = 0; i < ALayout.GetChunkCount(); ++i) {
        const QString& text = ALayout.GetChunks(i)->Text();
        if (speech.Name.isEmpty())
            speech.Name = text.trimmed();
        else
            speech.Value += text;
    }
    const auto start = std::find_if_not(speech.Value.cbegin(), speech.Value.cend(), IsSeparator);
    speech.Value = speech.Value.mid(start - speech.Value.cbegin()).trimmed();
    return speech;
}

TZOAccessibleRows::TZOAccessibleRows(TZORestView* AView) : FView(AView) {
    if (ViewCount++ == 0)
        QAccessible::installFactory(MakeAccessible);
}

TZOAccessibleRows::~TZOAccessibleRows() {
    for (const auto& [row, id] : FIds)
        QAccessible::deleteAccessibleInterface(id);
    if (--ViewCount == 0)
        QAccessible::removeFactory(MakeAccessible);
}

QAccessibleInterface* TZOAccessibleRows::Of(TZOViewRow* ARow) {
    if (FView->IndexOfRow(ARow) >= FView->GetRowCount())
        return nullptr;
    const auto found = FIds.find(ARow);
    if (found != FIds.end())
        return QAccessible::accessibleInterface(found->second);
    QAccessibleInterface* made = new TZOAccessibleRow(FView, ARow);
    FIds.emplace(ARow, QAccessible::registerAccessibleInterface(made));
    return made;
}

void TZOAccessibleRows::Forget(const TZOViewRow* ARow) {
    const auto found = FIds.empty() ? FIds.end() : FIds.find(ARow);
    if (found == FIds.end())
        return;
    const QAccessible::Id id = found->second;
    FIds.erase(found);
    QAccessible::deleteAccessibleInterface(id);
}

void TZOAccessibleRows::Updated() {
    if (FIds.empty() && !IsHeard())
        return;
    for (auto each = FIds.begin(); each != FIds.end();) {
        if (each->first->Layout() || each->first == FView->Selected()) {
            ++each;
            continue;
        }
        const QAccessible::Id id = each->second;
        each = FIds.erase(each);
        QAccessible::deleteAccessibleInterface(id);
    }
    std::vector<const TZOViewRow*> inSight;
    for (const TZOViewRowLayout* layout = FView->Layouts().GetFirst(); layout; layout = layout->Next())
        inSight.push_back(layout->Row());
    if (inSight == FInSight)
        return;
    FInSight = std::move(inSight);
    QAccessibleEvent event(FView, QAccessible::ObjectReorder);
    Announce(event);
}

void TZOAccessibleRows::AnnounceSelection() {
    if (!IsHeard())
        return;
    QAccessibleInterface* row = Of(FView->Selected());
    if (!row)
        return;
    QAccessibleEvent selection(row, QAccessible::Selection);
    Announce(selection);
    // In the editor, it is the editor that is read.
    if (!FView->hasFocus())
        return;
    QAccessibleEvent focus(row, QAccessible::Focus);
    Announce(focus);
}

void TZOAccessibleRows::AnnounceEdit(TZOViewRow* ARow) {
    if (!IsHeard())
        return;
    QAccessibleInterface* row = Of(ARow);
    if (!row)
        return;
    QAccessibleEvent name(row, QAccessible::NameChanged);
    Announce(name);
    QAccessibleValueChangeEvent value(row, row->text(QAccessible::Value));
    Announce(value);
}
