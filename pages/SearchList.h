// The list of the service and operation pages, and the search that filters it.
#pragma once

#include <QListView>
#include <QString>

#include <memory>
#include <vector>

class QLineEdit;
class TZOIdeTheming;
class TZOListRowDelegate;

/// A list with type-ahead: a character typed into the list replaces the text of its search edit. Escape in
/// either clears the search and leaves the focus in the list; Down in the edit, or in the list while nothing
/// is selected, goes to the first row that is no category.
/// Filtering is the page's: it gives new rows at each SearchChanged. Promote a QListView to it in a form.
class TZOSearchList : public QListView {
    Q_OBJECT

public:
    struct TRow {
        QString Name;
        QString Description;
        bool IsCategory = false;
    };

    explicit TZOSearchList(QWidget* AParent = nullptr);
    ~TZOSearchList() override;

    /// AEdit must live as long as the list.
    void SetSearchEdit(QLineEdit* AEdit);
    /// The search edit stands out from a page in the window colour, whose frame is too faint for that where
    /// the theme is dark.
    void UpdateSearchEditColor(const TZOIdeTheming* ATheming);
    void SetFonts(const QFont& AName, const QFont& ACategory);
    /// What is painted, in grey, where a search matches nothing; "%1" stands for what was searched.
    void SetEmptyHint(const QString& AHint) { FEmptyHint = AHint; }
    /// Empty while there are rows, or nothing is searched.
    QString ShownHint() const;
    /// Replaces all rows; no row is selected then.
    void SetRows(std::vector<TRow> ARows);
    /// The row that is selected, from 0, categories counted; -1 when there is none.
    int ItemIndex() const;
    /// Whether AName holds ASearch anywhere, in any case. An empty ASearch is in every name.
    static bool Matches(const QString& AName, const QString& ASearch);

    /// Sends ATyped to the search edit, all of whose text is selected before.
    void StartSearch(const QKeyEvent* ATyped);
    void CancelSearch();

    void keyboardSearch(const QString& AText) override;

Q_SIGNALS:
    /// Enter, or a double click on a row: about the row of ItemIndex, which may be a category.
    void Chosen();
    void SearchChanged();

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;
    void focusInEvent(QFocusEvent* AEvent) override;
    void keyPressEvent(QKeyEvent* AEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* AEvent) override;
    void paintEvent(QPaintEvent* AEvent) override;

private:
    class TModel;

    bool SearchEditKeyDown(const QKeyEvent* AEvent);
    void SelectFirstEntry();

    std::unique_ptr<TModel> FModel;
    TZOListRowDelegate* FDelegate;
    QLineEdit* FSearchEdit = nullptr;
    QString FEmptyHint;
};
