// A box for one value of a type that is known at run time only.
#pragma once

#include "runtime/types/Storage.h"
#include "runtime/types/TypeInfo.h"

/// Holds one value with its presence, or stands for a value that lives elsewhere.
class TZOValueHolder {
public:
    /// An empty holder. AOwns: the value is freed with the holder (else the caller takes it over).
    TZOValueHolder(const TZOTypeInfo* AType, bool AOwns);
    /// A holder of the present value at AValue, which must outlive the holder. AOwns: the holder frees what
    /// the value holds when it dies, not the memory it stands in. A null AValue is an absent value that
    /// cannot be set. An object or union reference that is null counts as absent.
    TZOValueHolder(const TZOTypeInfo* AType, const void* AValue, bool AOwns);
    /// A holder that passes everything on to ASource, which must outlive it. AOwns: ASource is deleted with
    /// the holder.
    TZOValueHolder(TZOValueHolder* ASource, bool AOwns);
    TZOValueHolder(const TZOValueHolder&) = delete;
    TZOValueHolder& operator=(const TZOValueHolder&) = delete;
    ~TZOValueHolder();

    const TZOTypeInfo* Type() const noexcept { return FType; }
    /// Whether the value is present; its storage in ARef then.
    bool GetValue(void*& ARef) const;
    /// The storage, made present first when absent; null when there is nowhere to store.
    void GetByRef(void*& ARef);
    /// Makes the value present (storage in ARef) or absent (freed at once). False when nothing could be
    /// written.
    bool SetValue(bool AHasValue, void*& ARef);
    bool HasValue() const;
    /// Makes the value absent.
    void Clear();

private:
    void Destroy();

    const TZOTypeInfo* FType;
    TZOValueHolder* FSource = nullptr;
    void* FStorage = nullptr;
    bool FHasValue = false;
    bool FOwns;
    alignas(ZOStorage::MaxAlign) std::byte FBuffer[ZOStorage::MaxSize];
};
