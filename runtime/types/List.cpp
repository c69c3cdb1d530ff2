#include "runtime/types/List.h"

#include "platform/Exceptions.h"

ZOList::ZOList(const TTypeInfo* AType) : FType(AType) {}

ZOList::ZOList(const ZOList& ASource) : FType(ASource.FType) {
    FSlots.CopyFrom(FType->ItemType(), ASource.FSlots);
}

ZOList::~ZOList() { FSlots.Clear(FType->ItemType()); }

void ZOList::CheckIndex(int AIndex) const {
    if (AIndex < 0 || AIndex >= Count())
        throw EListError(QStringLiteral("List index out of bounds (%1)").arg(AIndex));
}

bool ZOList::GetItem(int AIndex, void*& ARef) const {
    if (AIndex < 0 || AIndex >= Count() || !FSlots.IsPresent(AIndex))
        return false;
    ARef = FSlots.At(AIndex);
    return true;
}

void ZOList::GetByRef(int AIndex, void*& ARef) {
    CheckIndex(AIndex);
    SetItem(AIndex, true, ARef);
}

bool ZOList::SetItem(int AIndex, bool AHasValue, void*& ARef) {
    if (AIndex < 0 || AIndex >= Count())
        return false;
    FSlots.SetPresent(FType->ItemType(), AIndex, AHasValue);
    if (AHasValue)
        ARef = FSlots.At(AIndex);
    return true;
}

bool ZOList::Insert(int AIndex, bool AHasValue, void*& ARef) {
    if (AIndex < 0 || AIndex > Count())
        return false;
    FSlots.Insert(FType->ItemType(), AIndex, AHasValue);
    if (AHasValue)
        ARef = FSlots.At(AIndex);
    return true;
}

void* ZOList::Append() { return FSlots.Append(FType->ItemType()); }

void ZOList::Delete(int AIndex) {
    CheckIndex(AIndex);
    FSlots.Delete(FType->ItemType(), AIndex);
}

void ZOList::Reserve(int ACount) { FSlots.Reserve(FType->ItemType(), ACount); }
