// Records as a server would send them, and the type to read them into.
#pragma once

#include "runtime/types/TypeLibrary.h"

#include <QByteArray>

class TJsonFixture {
public:
    /// At least AMegabytes million bytes of an array of records, the same for the same number.
    explicit TJsonFixture(int AMegabytes);

    const QByteArray& Json() const { return FJson; }
    int Count() const { return FCount; }
    /// The sum of all records' pages.
    qint64 Pages() const { return FPages; }
    const ZOList::TTypeInfo* Type() const { return FType; }
    /// The sum of all records' pages in a value of Type().
    static qint64 PagesOf(const ZOList& AList);

private:
    TZOTypeLibrary FTypes;
    const ZOList::TTypeInfo* FType = nullptr;
    QByteArray FJson;
    int FCount = 0;
    qint64 FPages = 0;
};
