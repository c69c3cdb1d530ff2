#include "hosts/standalone/ProblemWindow.h"

#include "platform/TipText.h"
#include "platform/VisibleText.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

TZOProblemWindow::TZOProblemWindow(QWidget* AParent) : QDialog(AParent), FList(new QTreeWidget) {
    setWindowTitle(QStringLiteral("Problems of documents"));
    FList->setHeaderLabels({QStringLiteral("File"), QStringLiteral("Place"), QStringLiteral("Problem")});
    FList->setRootIsDecorated(false);
    FList->setUniformRowHeights(true);
    FList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    FList->setTextElideMode(Qt::ElideMiddle); // of a pointer, both ends tell most
    // By itself the list would copy one cell.
    FList->installEventFilter(this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this, &TZOProblemWindow::Copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(FList);
    layout->addWidget(buttons);
    resize(1000, 400);
    FList->header()->resizeSection(0, 130);
    FList->header()->resizeSection(1, 270);
}

void TZOProblemWindow::SetProblems(const TZOApiProblems& AProblems) {
    FProblems = AProblems;
    FList->clear();
    QList<QTreeWidgetItem*> items;
    for (const TZOApiProblem& problem : FProblems) {
        QStringList place;
        if (problem.Line > 0)
            place.append(QStringLiteral("line %1").arg(problem.Line));
        if (!problem.Pointer.isEmpty())
            place.append(problem.Pointer);
        const QStringList texts = {QFileInfo(problem.File).fileName(), place.join(QStringLiteral(", ")),
                                   problem.Message};
        QStringList shown;
        for (const QString& text : texts)
            shown.append(VisibleText(text));
        auto* item = new QTreeWidgetItem(shown);
        for (int column = 0; column < texts.size(); ++column)
            item->setToolTip(column, TipText(texts[column]));
        items.append(item);
    }
    FList->addTopLevelItems(items);
    if (!items.isEmpty())
        FList->setCurrentItem(items.first(), 0, QItemSelectionModel::NoUpdate);
}

bool TZOProblemWindow::eventFilter(QObject* AWatched, QEvent* AEvent) {
    if (AEvent->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(AEvent)->matches(QKeySequence::Copy)) {
        Copy();
        return true;
    }
    return QDialog::eventFilter(AWatched, AEvent);
}

void TZOProblemWindow::Copy() const {
    QStringList lines;
    const bool takesAll = FList->selectedItems().isEmpty();
    for (int i = 0; i < FList->topLevelItemCount(); ++i) {
        if (takesAll || FList->topLevelItem(i)->isSelected())
            lines.append(FProblems[static_cast<std::size_t>(i)].ToText());
    }
    QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}
