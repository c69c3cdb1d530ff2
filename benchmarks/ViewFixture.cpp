#include "benchmarks/ViewFixture.h"

#include "jsoneditor/view/RestView.h"

#include <QSize>

namespace {

/// As wide in the first row as in the last, so that rows differ in nothing but their place.
QString Number(int APlace) { return QStringLiteral("%1").arg(APlace, 7, 10, QLatin1Char('0')); }

} // namespace

void TPlainSource::RefreshContent() {
    Clear();
    for (int i = 0; i < FCount; ++i)
        Add(new TZOViewRow(i % GroupSize == 0 ? 0 : 1));
}

void TPlainSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    const QString number = Number(View()->IndexOfRow(ARow));
    ALayout->AddChunk(1, QStringLiteral("row_") + number, true, ctNormal);
    ALayout->AddChunk(2, QStringLiteral(": "), false, ctNormal);
    ALayout->AddChunk(3, QStringLiteral("value_") + number, true, ctNormal);
}

QModelIndex TPlainModel::index(int ARow, int AColumn, const QModelIndex& AParent) const {
    return At(AParent.isValid() ? PlaceOf(AParent) + 1 + ARow : ARow * (FTree ? GroupSize : 1), AColumn);
}

QModelIndex TPlainModel::parent(const QModelIndex& AChild) const {
    const int place = PlaceOf(AChild);
    return !FTree || place % GroupSize == 0 ? QModelIndex() : At(place - place % GroupSize, 0);
}

int TPlainModel::PlaceOf(const QModelIndex& AIndex) { return int(AIndex.internalId() / Spread); }

QModelIndex TPlainModel::At(int APlace, int AColumn) const {
    const int inGroup = APlace % GroupSize;
    const int row = !FTree ? APlace : inGroup == 0 ? APlace / GroupSize : inGroup - 1;
    return createIndex(row, AColumn, quintptr(APlace) * Spread);
}

int TPlainModel::rowCount(const QModelIndex& AParent) const {
    if (!FTree)
        return AParent.isValid() ? 0 : FCount;
    if (!AParent.isValid())
        return FCount / GroupSize;
    return PlaceOf(AParent) % GroupSize == 0 ? GroupSize - 1 : 0;
}

QVariant TPlainModel::data(const QModelIndex& AIndex, int ARole) const {
    if (ARole == Qt::SizeHintRole)
        return QSize(200, RowHeight);
    if (ARole != Qt::DisplayRole)
        return {};
    const QString number = Number(PlaceOf(AIndex));
    return QString(QStringLiteral("row_") + number + QStringLiteral(": value_") + number);
}
