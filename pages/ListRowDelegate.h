// How the rows of the service and operation lists look.
#pragma once

#include <QFont>
#include <QStyledItemDelegate>

/// Draws rows of one height: the name at the left, the description wrapped in a column of its own; category
/// rows show a name only and never look selected. Nothing is ever framed as focused.
class TZOListRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    /// Device-independent pixels, as all measures here.
    static constexpr int RowHeight = 42;

    /// What the model answers beside Qt::DisplayRole, the name.
    enum TRole {
        DescriptionRole = Qt::UserRole, ///< QString
        IsCategoryRole                  ///< bool
    };

    using QStyledItemDelegate::QStyledItemDelegate;

    void SetNameFont(const QFont& AFont) { FNameFont = AFont; }
    void SetCategoryFont(const QFont& AFont) { FCategoryFont = AFont; }

    void paint(QPainter* APainter, const QStyleOptionViewItem& AOption,
               const QModelIndex& AIndex) const override;
    QSize sizeHint(const QStyleOptionViewItem& AOption, const QModelIndex& AIndex) const override;

private:
    QFont FNameFont;
    QFont FCategoryFont;
};
