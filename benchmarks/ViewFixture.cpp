#include "benchmarks/ViewFixture.h"

#include "jsoneditor/view/RestView.h"

#include <QSize>

#include <algorithm>

namespace {

constexpr int Digits = 7;

/// ALead and the number of a row: as wide in the first row as in the last, so that rows differ in nothing but
/// their place.
QString Numbered(QLatin1String ALead, int APlace) {
    QString text(ALead.size() + Digits, Qt::Uninitialized);
    QChar* to = std::copy(ALead.begin(), ALead.end(), text.data()) + Digits;
    for (int i = 0; i < Digits; ++i, APlace /= 10)
        *--to = QLatin1Char(char('0' + APlace % 10));
    return text;
}

} // namespace

void TPlainSource::RefreshContent() {
    Clear();
    for (int i = 0; i < FCount; ++i)
        Add(new TZOViewRow(i % GroupSize == 0 ? 0 : 1));
}

void TPlainSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    const int place = View()->IndexOfRow(ARow);
    ALayout->AddChunk(1, Numbered(QLatin1String("row_"), place), true, ctNormal);
    ALayout->AddChunk(2, QStringLiteral(": "), false, ctNormal);
    ALayout->AddChunk(3, Numbered(QLatin1String("value_"), place), true, ctNormal);
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
    const int place = PlaceOf(AIndex);
    return Numbered(QLatin1String("row_"), place) + Numbered(QLatin1String(": value_"), place);
}
