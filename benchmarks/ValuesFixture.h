// An answer of many records, and one long list, as JSON and as types.
#pragma once

#include "runtime/types/TypeLibrary.h"

#include <QByteArray>

/// A list of records with strings, integers, floats, dates, a map and a nested object, each of which is shown
/// as RowsPerRecord rows.
class TRecordsFixture {
public:
    static constexpr int RowsPerRecord = 16;
    /// The place, in a record's rows, of its "title".
    static constexpr int TitleRow = 2;

    /// As many records as make about ARows rows.
    explicit TRecordsFixture(int ARows);

    const QByteArray& Json() const { return FJson; }
    const ZOList::TTypeInfo* Type() const { return FType; }
    int Records() const { return FRecords; }
    /// With the brackets of the list.
    int Rows() const { return FRecords * RowsPerRecord + 2; }

private:
    TZOTypeLibrary FTypes;
    const ZOList::TTypeInfo* FType = nullptr;
    QByteArray FJson;
    int FRecords;
};
