// Places in a value, named so that they can be found again when everything around them has moved.
#pragma once

#include "runtime/types/Object.h"
#include "runtime/types/Union.h"
#include "runtime/types/ValueHolder.h"

#include <QString>

#include <vector>

/// One step from a container to a value in it. Exactly one of the members says which.
struct TZOPathStep {
    PProperty Prop = nullptr;
    PTag Tag = nullptr;
    int Index = -1;
    QString Key = {};
    /// The placeholder for an element or item that is not stored yet: no value stands there.
    bool IsNew = false;
};

/// The steps from the outermost value down.
using TZOValuePath = std::vector<TZOPathStep>;

/// A place where a value may stand: the holder's own, or one in a container. Valid until the containers
/// around it change.
class TZOValueSlot {
public:
    explicit TZOValueSlot(TZOValueHolder* AHolder) : FHolder(AHolder), FType(AHolder->Type()) {}

    const TZOTypeInfo* Type() const { return FType; }
    bool Get(void*& ARef) const;
    bool Set(bool AHasValue, void*& ARef);
    /// Goes on to a place in the value that stands here; false, and nothing happens, when it has none such.
    bool Descend(const TZOPathStep& AStep);
    /// All steps of APath.
    bool Descend(const TZOValuePath& APath);

private:
    TZOValueHolder* FHolder;
    const TZOTypeInfo* FType;
    const TZOTypeInfo* FContainerType = nullptr; // null: the holder's own place
    void* FContainer = nullptr;
    TZOPathStep FStep;
};

/// A value taken out of its place, or none. Taking and giving back cost nothing in the value's size.
class TZOHeldValue {
public:
    explicit TZOHeldValue(const TZOTypeInfo* AType) : FType(AType) {}
    TZOHeldValue(const TZOHeldValue&) = delete;
    TZOHeldValue& operator=(const TZOHeldValue&) = delete;
    ~TZOHeldValue();

    const TZOTypeInfo* Type() const { return FType; }
    bool HasValue() const { return FHasValue; }
    const void* Storage() const { return FBuffer; }
    /// Holds a deep copy of ASource. Nothing must be held before.
    void Copy(const void* ASource);
    /// Takes the value at ASource and leaves a new, empty one there. Nothing must be held before.
    void Take(void* ASource);
    /// Puts what is held in the place of the value at ADest, and holds nothing any more.
    void GiveTo(void* ADest);
    /// Exchanges what is held with what is in ASlot, which is of the same type. False: nothing happened.
    bool Exchange(TZOValueSlot& ASlot);

private:
    const TZOTypeInfo* FType;
    bool FHasValue = false;
    alignas(ZOStorage::MaxAlign) std::byte FBuffer[ZOStorage::MaxSize];
};
