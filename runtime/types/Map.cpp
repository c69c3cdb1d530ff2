#include "runtime/types/Map.h"

#include "runtime/types/SlotArray.h"

#include <QHash>

namespace {

/// Below this a walk over the keys is quicker than hashing, and a small map needs no index.
constexpr int IndexedFrom = 9;

} // namespace

struct ZOMap::TItems {
    QStringList Keys;
    TZOSlotArray Values;
    QHash<QString, int> Index; // empty while small, and after a removal until the next look-up

    int Find(const QString& AKey) {
        if (Keys.size() < IndexedFrom)
            return static_cast<int>(Keys.indexOf(AKey));
        if (Index.isEmpty()) {
            Index.reserve(Keys.size());
            for (int i = 0; i < Keys.size(); ++i)
                Index.insert(Keys.at(i), i);
        }
        return Index.value(AKey, -1);
    }

    int Append(const TZOTypeInfo* AType, const QString& AKey, bool AHasValue) {
        const int index = static_cast<int>(Keys.size());
        Values.Insert(AType, index, AHasValue);
        Keys.append(AKey);
        if (!Index.isEmpty())
            Index.insert(AKey, index);
        return index;
    }
};

ZOMap::ZOMap(const TTypeInfo* AType) : FType(AType) {}

ZOMap::ZOMap(const ZOMap& ASource) : FType(ASource.FType) {
    if (!ASource.FItems)
        return;
    FItems = std::make_unique<TItems>();
    FItems->Keys = ASource.FItems->Keys;
    FItems->Values.CopyFrom(FType->ItemType(), ASource.FItems->Values);
}

ZOMap::~ZOMap() {
    if (FItems)
        FItems->Values.Clear(FType->ItemType());
}

int ZOMap::Count() const noexcept { return FItems ? static_cast<int>(FItems->Keys.size()) : 0; }

QStringList ZOMap::Keys() const { return FItems ? FItems->Keys : QStringList(); }

int ZOMap::IndexOf(const QString& AKey) const { return FItems ? FItems->Find(AKey) : -1; }

bool ZOMap::ContainsKey(const QString& AKey) const { return IndexOf(AKey) >= 0; }

bool ZOMap::GetItem(const QString& AKey, void*& ARef) const { return GetItemAt(IndexOf(AKey), ARef); }

bool ZOMap::GetItemAt(int AIndex, void*& ARef) const {
    if (AIndex < 0 || AIndex >= Count() || !FItems->Values.IsPresent(AIndex))
        return false;
    ARef = FItems->Values.At(AIndex);
    return true;
}

void ZOMap::GetByRef(const QString& AKey, void*& ARef) { SetItem(AKey, true, ARef); }

bool ZOMap::SetItem(const QString& AKey, bool AHasValue, void*& ARef) {
    if (!FItems)
        FItems = std::make_unique<TItems>();
    int index = FItems->Find(AKey);
    if (index < 0)
        index = FItems->Append(FType->ItemType(), AKey, AHasValue);
    else
        FItems->Values.SetPresent(FType->ItemType(), index, AHasValue);
    if (AHasValue)
        ARef = FItems->Values.At(index);
    return true;
}

bool ZOMap::Insert(int APlace, const QString& AKey, bool AHasValue, void*& ARef) {
    if (APlace < 0 || APlace > Count() || ContainsKey(AKey))
        return false;
    if (APlace == Count())
        return SetItem(AKey, AHasValue, ARef);
    FItems->Values.Insert(FType->ItemType(), APlace, AHasValue);
    FItems->Keys.insert(APlace, AKey);
    FItems->Index.clear();
    if (AHasValue)
        ARef = FItems->Values.At(APlace);
    return true;
}

void ZOMap::Remove(const QString& AKey) {
    const int index = IndexOf(AKey);
    if (index < 0)
        return;
    FItems->Values.Delete(FType->ItemType(), index);
    FItems->Keys.removeAt(index);
    FItems->Index.clear();
}
