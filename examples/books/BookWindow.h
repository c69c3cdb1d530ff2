// Lists the books of a library.
#pragma once

#include <QWidget>

#include <memory>

namespace Ui {
class BookWindow;
}

/// The form holds the library's service as a component, with the options that were typed in the form editor.
class TBookWindow final : public QWidget {
    Q_OBJECT

public:
    explicit TBookWindow(QWidget* AParent = nullptr);
    ~TBookWindow() override;

    /// What is shown, one book a line.
    QString Text() const;
    /// Clicks on the button.
    void List();

private:
    void ListButtonClick();
    void FillList();

    std::unique_ptr<Ui::BookWindow> FUi;
};
