// Creating, copying and destroying the storage of a value of any kind: the only place that knows how.
// Every kind's storage is valid when filled with zero bytes only after Construct, and may be moved in
// memory with memmove.
#pragma once

#include "runtime/types/TypeInfo.h"

#include <QString>

#include <cstddef>
#include <memory>
#include <new>

namespace ZOStorage {

/// Bytes that a value of any kind takes at most, and the alignment that suits every kind.
inline constexpr std::size_t MaxSize = 32;
inline constexpr std::size_t MaxAlign = 8;

/// Bytes of a value's storage.
std::size_t Size(const TZOTypeInfo* AType);
/// Alignment of a value's storage, in bytes.
std::size_t Align(const TZOTypeInfo* AType);

/// Whether a value of AKind owns nothing, so that it needs no Destroy.
constexpr bool IsPlain(TZOValueKind AKind) { return AKind >= vkInteger && AKind <= vkDate; }

/// Makes the value of a slot that has just become present: empty text, zero, no entries; for objects and
/// unions a new empty instance of exactly the type AType.
inline void Construct(const TZOTypeInfo* AType, void* AStorage);
/// Frees what the value holds, at any depth. The storage is raw memory afterwards.
inline void Destroy(const TZOTypeInfo* AType, void* AStorage) noexcept;
/// What Construct makes, instead of a constructed value.
void Renew(const TZOTypeInfo* AType, void* AStorage);
/// Constructs AStorage as a deep copy of ASource. Streams of uploads and downloads are shared.
void CopyConstruct(const TZOTypeInfo* AType, void* AStorage, const void* ASource);
/// Exchanges two constructed values of one type, at any depth in constant time.
void Swap(const TZOTypeInfo* AType, void* AFirst, void* ASecond) noexcept;

/// What they do for kinds that are rarer or cost more than a call.
void ConstructOther(const TZOTypeInfo* AType, void* AStorage);
void DestroyOther(const TZOTypeInfo* AType, void* AStorage) noexcept;

inline void Construct(const TZOTypeInfo* AType, void* AStorage) {
    switch (AType->Kind()) {
    case vkString:
        new (AStorage) QString();
        break;
    case vkInteger:
        new (AStorage) qint32(0);
        break;
    case vkInt64:
        new (AStorage) qint64(0);
        break;
    case vkBoolean:
        new (AStorage) quint8(0);
        break;
    case vkFloat:
    case vkDateTime:
    case vkDate:
        new (AStorage) double(0);
        break;
    default:
        ConstructOther(AType, AStorage);
    }
}

inline void Destroy(const TZOTypeInfo* AType, void* AStorage) noexcept {
    if (AType->Kind() == vkString)
        std::destroy_at(static_cast<QString*>(AStorage));
    else if (!IsPlain(AType->Kind()))
        DestroyOther(AType, AStorage);
}

} // namespace ZOStorage
