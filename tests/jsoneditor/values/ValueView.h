// A row editor over one typed value, driven by keys and mouse, its rows read as text.
#pragma once

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/RestView.h"
#include "platform/ExceptionDisplay.h"
#include "runtime/types/TypeLibrary.h"

#include <QStringList>
#include <QWidget>

#include <source_location>

/// Counts the rows that the view asks for.
class TCountingSource : public TZOObjectDataSource {
public:
    using TZOObjectDataSource::TZOObjectDataSource;
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;
    int Configured = 0;
};

/// A window with one value in it, high enough to show all its rows.
class TValueView {
public:
    /// The value starts as AJson has it; empty text leaves it absent.
    explicit TValueView(const TZOTypeInfo* AType, const QByteArray& AJson = {}, bool AInsertMode = false);
    /// Shows the same value as AHolder.
    explicit TValueView(TZOValueHolder* AHolder);
    ~TValueView();

    /// All rows: two blanks per level, "~" before what is grey, editable chunks in angle brackets.
    QString Rows() const;
    QStringList Lines() const;
    /// Both fail at the caller's line. AJson: the value now; "null" when absent.
    void Expect(const QString& ARows, std::source_location AWhere = std::source_location::current()) const;
    void ExpectJson(const QByteArray& AJson,
                    std::source_location AWhere = std::source_location::current()) const;
    QByteArray Json() const;
    /// Replaces the value behind the editor's back.
    void SetJson(const QByteArray& AJson);

    /// The row whose line, without its indentation, is ALine; the ANumber-th of these, from 1.
    TZOViewRow* Find(const QString& ALine, int ANumber = 1) const;
    QString LineOf(TZOViewRow* ARow) const;
    /// The line of the selected row, or "" when none is.
    QString Selected() const;

    // What a user does. Lines are found as by Find.

    /// Clicks to the right of the row's text, which selects it.
    void Click(const QString& ALine, int ANumber = 1);
    void DoubleClick(const QString& ALine, int ANumber = 1);
    /// Names as in shortcuts, parted by blanks: "Shift+Insert F5".
    void Press(const QString& AKeys);
    /// Clicks on the row, then presses AKeys.
    void PressOn(const QString& ALine, const QString& AKeys);
    /// Clicks into the row's first editable chunk and types AText in the place of what stands there.
    void Type(const QString& ALine, const QString& AText, int ANumber = 1);
    /// The same, and Return.
    void Enter(const QString& ALine, const QString& AText, int ANumber = 1);

    /// Messages that the user was shown.
    QStringList Shown;
    TZOValueHolder Holder;
    QWidget Window;
    TZORestView View;
    TCountingSource Source;

private:
    void Show();
    void ClickAt(TZOViewRow* ARow, bool ADouble);

    TZOExceptionDisplay FPrevious;
};
