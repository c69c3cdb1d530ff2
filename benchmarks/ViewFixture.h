// A row editor and Qt's own views over the same rows: groups of one parent and nine children.
#pragma once

#include "jsoneditor/view/DataSource.h"

#include <QAbstractItemModel>

constexpr int GroupSize = 10;

/// Makes ACount plain rows; their text is their number.
class TPlainSource : public TZODataSource {
public:
    explicit TPlainSource(int ACount) : FCount(ACount) {}

    void RefreshContent() override;
    void ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) override;

private:
    int FCount;
};

/// The same rows as a list, or as a tree of two levels. Keeps nothing: texts are made when they are asked
/// for.
class TPlainModel : public QAbstractItemModel {
public:
    TPlainModel(int ACount, bool ATree) : FCount(ACount), FTree(ATree) {}

    QModelIndex index(int ARow, int AColumn, const QModelIndex& AParent) const override;
    QModelIndex parent(const QModelIndex& AChild) const override;
    int rowCount(const QModelIndex& AParent) const override;
    int columnCount(const QModelIndex&) const override { return 1; }
    QVariant data(const QModelIndex& AIndex, int ARole) const override;

    /// The height of every row, in pixels.
    int RowHeight = 20;

private:
    /// Identifiers are places times this: what hashes them finds them as far apart as pointers are.
    static constexpr quintptr Spread = 2654435761u;

    static int PlaceOf(const QModelIndex& AIndex);
    QModelIndex At(int APlace, int AColumn) const;

    int FCount;
    bool FTree;
};
