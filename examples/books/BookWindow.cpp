#include "BookWindow.h"

#include "ui_BookWindow.h"

#include <platform/Exceptions.h>
#include <runtime/service/ServiceCall.h>

TBookWindow::TBookWindow(QWidget* AParent) : QWidget(AParent), FUi(std::make_unique<Ui::BookWindow>()) {
    FUi->setupUi(this);
    connect(FUi->ListButton, &QPushButton::clicked, this, &TBookWindow::ListButtonClick);
}

TBookWindow::~TBookWindow() = default;

void TBookWindow::List() { FUi->ListButton->click(); }

void TBookWindow::ListButtonClick() {
    // An exception may not leave a slot.
    try {
        FillList();
    } catch (const std::exception& e) {
        FUi->StatusLabel->setText(ExceptionMessage(e));
    }
}

void TBookWindow::FillList() {
    FUi->BookList->clear();
    TZOServiceCall search(FUi->libraryService->Service(), "SearchMedia");
    search.Set("kind", "book").Set("text", FUi->TitleEdit->text()).Set("pageSize", 5);
    const TZOValueRef page = search.Exec();
    for (const TZOValueRef book : page["items"])
        FUi->BookList->addItem(
            QStringLiteral("%1 (%2)").arg(book["title"].As<QString>()).arg(book["year"].As(0)));
    FUi->StatusLabel->setText(
        tr("%1 of %2 books").arg(page["items"].Count()).arg(page["total"].As<qint64>()));
}

QString TBookWindow::Text() const {
    QStringList lines;
    for (int i = 0; i < FUi->BookList->count(); ++i)
        lines.append(FUi->BookList->item(i)->text());
    lines.append(FUi->StatusLabel->text());
    return lines.join(u'\n');
}
