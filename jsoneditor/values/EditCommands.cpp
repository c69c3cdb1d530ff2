// Commands on the selected row: undo, copy and paste by key, and all of them in the context menu.
#include "jsoneditor/values/ChoiceList_p.h"
#include "jsoneditor/values/DataRow_p.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/Any.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>

namespace {

QString Tr(const char* AText) { return QCoreApplication::translate("TZOObjectDataSource", AText); }

bool IsUndoKey(int AKey, Qt::KeyboardModifiers AShift) {
    return AKey == Qt::Key_Z && AShift == Qt::ControlModifier;
}

bool IsRedoKey(int AKey, Qt::KeyboardModifiers AShift) {
    return (AKey == Qt::Key_Y && AShift == Qt::ControlModifier) ||
           (AKey == Qt::Key_Z && AShift == (Qt::ControlModifier | Qt::ShiftModifier));
}

bool IsClipboardKey(int AKey, Qt::KeyboardModifiers AShift) {
    return (AKey == Qt::Key_C || AKey == Qt::Key_V) && AShift == Qt::ControlModifier;
}

bool IsChoicesKey(int AKey, Qt::KeyboardModifiers AShift) {
    return AKey == Qt::Key_Space && AShift == Qt::ControlModifier;
}

} // namespace

TZOObjectDataSource::TDataRow* TZOObjectDataSource::SelectedDataRow() const {
    TRow* row = SelectedRow();
    if (row && row->Kind() == rkEOf)
        row = row->Parent();
    return row ? row->AsDataRow() : nullptr;
}

bool TZOObjectDataSource::WantsKey(int AKey, Qt::KeyboardModifiers AShift) const {
    const bool moves = (AKey == Qt::Key_Up || AKey == Qt::Key_Down) && AShift == Qt::AltModifier;
    return moves || IsUndoKey(AKey, AShift) || IsRedoKey(AKey, AShift) || IsClipboardKey(AKey, AShift) ||
           IsChoicesKey(AKey, AShift) || TZODataSource::WantsKey(AKey, AShift);
}

bool TZOObjectDataSource::EditKey(int AKey, Qt::KeyboardModifiers AShift) {
    const bool undoes = IsUndoKey(AKey, AShift);
    if (undoes || IsRedoKey(AKey, AShift)) {
        // Typed text is taken back letter by letter before the value is.
        if (View()->EditorShown() && View()->EditorModified())
            return false;
        View()->CancelEditing();
        undoes ? Undo() : Redo();
        return true;
    }
    if (IsChoicesKey(AKey, AShift)) {
        ShowChoices();
        return true;
    }
    if (!IsClipboardKey(AKey, AShift) || View()->EditorShown())
        return false;
    AKey == Qt::Key_C ? CopyJson() : PasteJson();
    return true;
}

void TZOObjectDataSource::ShowChoices() {
    CloseChoices();
    TRow* row = SelectedRow();
    const QStringList choices = row && row->AsDataRow() ? row->AsDataRow()->Choices() : QStringList();
    if (choices.isEmpty())
        return;
    TZORestView* view = View();
    if (!view->EditorShown())
        view->SelectRow(row, seLastChunk);
    // A row that needs its key first has no editor for its value.
    if (!view->EditorShown() || view->Editor()->ChunkId() != chValue)
        return;
    FChoices = new TZOChoiceList(view, choices);
    QObject::connect(FChoices, &TZOChoiceList::Closed, FChoices, [this] { CloseChoices(); });
    QObject::connect(FChoices, &TZOChoiceList::Chosen, FChoices, [this, view](const QString& AText) {
        CloseChoices();
        view->Editor()->setText(AText);
        view->TryCloseEditor(true);
    });
}

void TZOObjectDataSource::CloseChoices() {
    TZOChoiceList* choices = FChoices;
    FChoices = nullptr;
    if (!choices)
        return;
    // It may be in the middle of telling that it wants to go, and outlive this source.
    choices->disconnect();
    choices->hide();
    choices->deleteLater();
}

void TZOObjectDataSource::CopyJson() {
    TDataRow* row = SelectedDataRow();
    if (!row)
        return;
    void* value = nullptr;
    const QByteArray json = row->GetValue(value) ? TZOJson::Encode(row->Type(), value) : QByteArray("null");
    QApplication::clipboard()->setText(QString::fromUtf8(json));
}

void TZOObjectDataSource::PasteJson() {
    TDataRow* row = SelectedDataRow();
    const QMimeData* mime = QApplication::clipboard()->mimeData();
    if (!row || !mime || !mime->hasText())
        return;
    const QString text = mime->text();
    if (row->Type()->Kind() == vkString && !ZOAny::IsValidJson(text))
        row->Edited(chValue, text);
    else
        row->PasteJson(text.toUtf8());
}

void TZOObjectDataSource::AddCommand(QMenu* AMenu, const QString& ACaption, bool AEnabled,
                                     std::function<void()> ADo) {
    TZORestView* view = View();
    AMenu
        ->addAction(ACaption, view,
                    [this, view, ADo = std::move(ADo)] {
                        // The menu stays open while the program goes on: this source may be gone.
                        if (view->DataSource() == this)
                            GuardedCall(view, ADo);
                    })
        ->setEnabled(AEnabled);
}

void TZOObjectDataSource::FillMenu(QMenu* AMenu) {
    TDataRow* row = SelectedDataRow();
    const auto edit = [this](TEditAction AAction) {
        return [this, AAction] {
            TDataRow* selected = SelectedDataRow();
            if (selected && View()->TryCloseEditor(true))
                selected->DoEditAction(AAction);
        };
    };
    AMenu->addSeparator();
    AddCommand(AMenu, Tr("Undo Change"), CanUndo(), [this] { Undo(); });
    AddCommand(AMenu, Tr("Redo Change"), CanRedo(), [this] { Redo(); });
    AddCommand(AMenu, Tr("Copy as JSON"), row, [this] { CopyJson(); });
    AddCommand(AMenu, Tr("Paste JSON"), row, [this] { PasteJson(); });
    if (!row || SelectedRow() != row)
        return;
    if (row->Kind() == rkLElem) {
        AMenu->addSeparator();
        AddCommand(AMenu, Tr("Insert Before"), true, edit(eaInsertBefore));
        AddCommand(AMenu, Tr("Insert After"), true, edit(eaInsertAfter));
        AddCommand(AMenu, Tr("Delete Element"), true, [this] {
            if (TDataRow* selected = SelectedDataRow())
                selected->DeleteByUser(View());
        });
    }
    if (row->Type()->Kind() == vkUpload)
        AddCommand(AMenu, Tr("Choose file..."), true, [this] {
            if (TDataRow* selected = SelectedDataRow())
                selected->ShowUploadDialog();
        });
}
