// An independent account of what edits do to a value: a plain JSON tree, changed by what stands on screen.
#pragma once

#include <QJsonValue>
#include <QStringList>

#include <utility>
#include <vector>

/// One row as it is read from the screen (see TValueView::Rows).
struct TScreenRow {
    explicit TScreenRow(const QString& ALine);

    bool IsOpener() const { return Text == "[" || Text == "{"; }
    bool IsCloser() const { return Text == "]" || Text == "}"; }
    bool IsChoice() const { return Text.startsWith("> "); }
    bool IsTag() const { return HasKey && (Key == "kind" || Key == "type"); }
    bool IsHint(const char* AHint) const { return Gray && !Editable && Text == AHint; }

    int Level = 0;
    bool Gray = false;
    bool HasKey = false;
    bool KeyEditable = false;
    bool Editable = false; // the value is
    QString Key;
    QString Text;
    QString Line; // without indentation
};

/// A JSON value that can be changed in place.
struct TNode {
    enum TKind { Null, Number, Text, List, Object };
    TKind Kind = Null;
    int Number_ = 0;
    QString Text_;
    std::vector<TNode> Items;
    std::vector<std::pair<QString, TNode>> Fields;

    TNode* Field(const QString& AKey);
    TNode& EnsureField(const QString& AKey);
    void RemoveField(const QString& AKey);
    QJsonValue ToJson() const;
};

/// The rows on screen and the value they should stand for.
class TScreenModel {
public:
    void Read(const QStringList& ALines);
    const std::vector<TScreenRow>& Rows() const { return FRows; }
    /// The row of the container that row ARow stands in; -1 for the outermost.
    int ParentOf(int ARow) const;

    /// The node that row ARow stands for, made together with everything around it that is not there yet.
    /// Null where the editor refuses: an item without a key, or with one that is taken.
    TNode* Store(int ARow);
    /// What typing AText into the value chunk does.
    void Type(int ARow, const QString& AText);
    /// What Ctrl+Delete does.
    void Delete(int ARow);
    /// What the menu's "Delete Element" does.
    void DeleteElement(int ARow);
    /// Whether row ARow is an element of a list, stored or not.
    bool IsElement(int ARow) const;
    /// What choosing the choice row ARow does.
    void Choose(int ARow);

    TNode Root;

private:
    int TagRowOf(int AContainer) const;
    int ElementIndex(int ARow) const;
    bool IsMapRow(int ARow) const;

    std::vector<TScreenRow> FRows;
};
