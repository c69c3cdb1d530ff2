#include "hosts/tour/Screen.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowChunk.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QScreen>
#include <QTextEdit>

#include <algorithm>
#include <functional>

namespace {

/// One text and the rectangle on the screen in which it stands.
struct TSeen {
    QString Text;
    QRect Place;
    int Indent = 0;
};

using TSeenList = QList<TSeen>;

QRect Global(const QWidget* AWidget, const QRect& ARect) {
    const QRect visible = AWidget->visibleRegion().boundingRect().intersected(ARect);
    return {AWidget->mapToGlobal(visible.topLeft()), visible.size()};
}

QString RowText(const TZOViewRowLayout* ALayout) {
    QString text;
    for (int i = 0; i < ALayout->GetChunkCount(); ++i)
        text += ALayout->GetChunks(i)->Text();
    return text;
}

void SeeEditor(const TZORestView* AView, TSeenList& ASeen) {
    for (auto* layout = AView->Layouts().GetFirst(); layout; layout = layout->Next()) {
        const QRect row = Global(AView, layout->Bounds());
        if (!row.isEmpty())
            ASeen.append({RowText(layout), row, layout->Row()->Level() + 1});
    }
}

void SeeList(const QAbstractItemView* AView, TSeenList& ASeen) {
    const auto* model = AView->model();
    for (int i = 0; model && i < model->rowCount(AView->rootIndex()); ++i) {
        const QModelIndex index = model->index(i, 0, AView->rootIndex());
        QString text = index.data(Qt::AccessibleTextRole).toString();
        if (text.isEmpty())
            text = index.data(Qt::DisplayRole).toString();
        const QRect row = Global(AView->viewport(), AView->visualRect(index));
        if (!row.isEmpty())
            ASeen.append({text, row, 1});
    }
}

QString TextOf(const QWidget* AWidget) {
    if (const auto* label = qobject_cast<const QLabel*>(AWidget))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(AWidget))
        return button->text();
    if (const auto* edit = qobject_cast<const QLineEdit*>(AWidget))
        return edit->text().isEmpty() ? edit->placeholderText() : edit->text();
    if (const auto* edit = qobject_cast<const QTextEdit*>(AWidget))
        return edit->toPlainText();
    return {};
}

void See(const QWidget* AWidget, TSeenList& ASeen) {
    if (!AWidget->isVisible())
        return;
    if (const auto* view = qobject_cast<const TZORestView*>(AWidget)) {
        SeeEditor(view, ASeen);
        return;
    }
    if (const auto* list = qobject_cast<const QAbstractItemView*>(AWidget)) {
        SeeList(list, ASeen);
        return;
    }
    const QString text = TextOf(AWidget);
    const QRect place = Global(AWidget, AWidget->rect());
    if (!text.trimmed().isEmpty() && !place.isEmpty())
        ASeen.append({text, place, 0});
    for (const QObject* child : AWidget->children()) {
        if (const auto* widget = qobject_cast<const QWidget*>(child))
            See(widget, ASeen);
    }
}

TSeenList SeeAll() {
    TSeenList seen;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        TSeenList ofWindow;
        See(window, ofWindow);
        std::stable_sort(ofWindow.begin(), ofWindow.end(), [](const TSeen& a, const TSeen& b) {
            return a.Place.center().y() / 8 != b.Place.center().y() / 8
                       ? a.Place.center().y() < b.Place.center().y()
                       : a.Place.left() < b.Place.left();
        });
        seen.append(ofWindow);
    }
    return seen;
}

std::optional<QPoint> ChunkPlace(const TZORestView* AView, const QString& AText) {
    for (auto* layout = AView->Layouts().GetFirst(); layout; layout = layout->Next()) {
        if (!RowText(layout).contains(AText))
            continue;
        for (int i = layout->GetChunkCount() - 1; i >= 0; --i) {
            const TZORowChunk* chunk = layout->GetChunks(i);
            const QRect place = Global(AView, chunk->Bounds().translated(layout->Bounds().topLeft()));
            if (chunk->Text().contains(AText) && !place.isEmpty())
                return place.center();
        }
        const QRect row = Global(AView, layout->Bounds());
        if (!row.isEmpty())
            return QPoint(row.left() + 16, row.center().y());
    }
    return {};
}

} // namespace

QStringList Screen::Lines() {
    QStringList lines;
    for (const TSeen& seen : SeeAll())
        lines.append(QString(seen.Indent * 2, QLatin1Char(' ')) + seen.Text);
    return lines;
}

bool Screen::Shows(const QString& AText) {
    const TSeenList seen = SeeAll();
    return std::any_of(seen.begin(), seen.end(), [&](const TSeen& s) { return s.Text.contains(AText); });
}

std::optional<QPoint> Screen::Find(const QString& AText) {
    const auto widgets = QApplication::allWidgets();
    for (const QWidget* widget : widgets) {
        const auto* view = qobject_cast<const TZORestView*>(widget);
        if (!view || !view->isVisible())
            continue;
        if (const auto place = ChunkPlace(view, AText))
            return place;
    }
    std::optional<QPoint> found;
    for (const TSeen& seen : SeeAll()) {
        if (seen.Text.contains(AText))
            found = seen.Place.center();
    }
    return found;
}

QString Screen::Focus() {
    const QWidget* widget = QApplication::focusWidget();
    if (!widget)
        return QStringLiteral("nothing");
    const QString name = QString::fromLatin1(widget->metaObject()->className());
    const QString text = TextOf(widget);
    return text.isEmpty() ? name : name + QStringLiteral(": ") + text;
}

QString Screen::CurrentRow() {
    if (const auto* menu = qobject_cast<const QMenu*>(QApplication::activePopupWidget()))
        return menu->activeAction() ? menu->activeAction()->text() : QString();
    QWidget* widget = QApplication::focusWidget();
    if (const auto* list = qobject_cast<QAbstractItemView*>(widget))
        return list->currentIndex().data(Qt::AccessibleTextRole).toString();
    for (; widget; widget = widget->parentWidget()) {
        const auto* view = qobject_cast<TZORestView*>(widget);
        if (!view || !view->Selected())
            continue;
        for (auto* layout = view->Layouts().GetFirst(); layout; layout = layout->Next()) {
            if (layout->Row() == view->Selected())
                return RowText(layout);
        }
    }
    return {};
}

bool Screen::Save(const QString& AFileName) {
    const QWidget* window = QApplication::activeModalWidget();
    if (!window)
        window = QApplication::activeWindow();
    const auto windows = QApplication::topLevelWidgets();
    for (auto any = windows.begin(); !window && any != windows.end(); ++any)
        window = (*any)->isVisible() ? *any : nullptr;
    if (!window)
        return false;
    const QWidget* whole = window;
    while (whole->parentWidget())
        whole = whole->parentWidget()->window();
    const QRect place = whole->geometry();
    return whole->screen()
        ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
        .save(AFileName);
}
