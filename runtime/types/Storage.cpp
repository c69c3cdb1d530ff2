#include "runtime/types/Storage.h"

#include "runtime/types/Any.h"
#include "runtime/types/List.h"
#include "runtime/types/Map.h"
#include "runtime/types/Object.h"
#include "runtime/types/Streams.h"
#include "runtime/types/Union.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace {

/// Calls AVisit with the C++ type that stands behind values of AKind, as a null pointer to it.
template <class F>
auto WithStorageType(TZOValueKind AKind, F&& AVisit) {
    switch (AKind) {
    case vkString:
        return AVisit(static_cast<QString*>(nullptr));
    case vkInteger:
        return AVisit(static_cast<qint32*>(nullptr));
    case vkInt64:
        return AVisit(static_cast<qint64*>(nullptr));
    case vkBoolean:
        return AVisit(static_cast<quint8*>(nullptr));
    case vkFloat:
    case vkDateTime:
    case vkDate:
        return AVisit(static_cast<double*>(nullptr));
    case vkAny:
        return AVisit(static_cast<ZOAny*>(nullptr));
    case vkUpload:
        return AVisit(static_cast<ZOUpload*>(nullptr));
    case vkDownload:
        return AVisit(static_cast<ZODownload*>(nullptr));
    case vkList:
        return AVisit(static_cast<ZOList*>(nullptr));
    case vkMap:
        return AVisit(static_cast<ZOMap*>(nullptr));
    case vkObject:
        return AVisit(static_cast<ZOObject**>(nullptr));
    case vkUnion:
        return AVisit(static_cast<ZOUnion**>(nullptr));
    case vkService:
        break;
    }
    Q_UNREACHABLE();
}

template <class T>
using TPlain = std::remove_pointer_t<T>;

} // namespace

std::size_t ZOStorage::Size(const TZOTypeInfo* AType) {
    return WithStorageType(AType->Kind(), [](auto* AKind) {
        static_assert(sizeof(*AKind) <= MaxSize && alignof(TPlain<decltype(AKind)>) <= MaxAlign);
        return sizeof(*AKind);
    });
}

std::size_t ZOStorage::Align(const TZOTypeInfo* AType) {
    return WithStorageType(AType->Kind(), [](auto* AKind) { return alignof(TPlain<decltype(AKind)>); });
}

void ZOStorage::ConstructOther(const TZOTypeInfo* AType, void* AStorage) {
    WithStorageType(AType->Kind(), [&](auto* AKind) {
        using T = TPlain<decltype(AKind)>;
        if constexpr (std::is_same_v<T, ZOList>)
            new (AStorage) ZOList(static_cast<const ZOList::TTypeInfo*>(AType));
        else if constexpr (std::is_same_v<T, ZOMap>)
            new (AStorage) ZOMap(static_cast<const ZOMap::TTypeInfo*>(AType));
        else if constexpr (std::is_same_v<T, ZOObject*>)
            new (AStorage) T(static_cast<const ZOObject::TTypeInfo*>(AType)->CreateInstance().release());
        else if constexpr (std::is_same_v<T, ZOUnion*>)
            new (AStorage) T(static_cast<const ZOUnion::TTypeInfo*>(AType)->CreateInstance().release());
        else
            new (AStorage) T();
    });
}

void ZOStorage::DestroyOther(const TZOTypeInfo* AType, void* AStorage) noexcept {
    WithStorageType(AType->Kind(), [&](auto* AKind) {
        using T = TPlain<decltype(AKind)>;
        if constexpr (std::is_pointer_v<T>)
            delete *static_cast<T*>(AStorage);
        else
            std::destroy_at(static_cast<T*>(AStorage));
    });
}

void ZOStorage::Renew(const TZOTypeInfo* AType, void* AStorage) {
    // Made aside, so that a failure keeps the old value.
    alignas(MaxAlign) std::byte fresh[MaxSize];
    Construct(AType, fresh);
    Destroy(AType, AStorage);
    std::copy_n(fresh, Size(AType), static_cast<std::byte*>(AStorage));
}

void ZOStorage::CopyConstruct(const TZOTypeInfo* AType, void* AStorage, const void* ASource) {
    WithStorageType(AType->Kind(), [&](auto* AKind) {
        using T = TPlain<decltype(AKind)>;
        const T& source = *static_cast<const T*>(ASource);
        if constexpr (std::is_same_v<T, ZOObject*>)
            new (AStorage) T(ZOObject::TData::Clone(source).release());
        else if constexpr (std::is_same_v<T, ZOUnion*>)
            new (AStorage) T(ZOUnion::TData::Clone(source).release());
        else
            new (AStorage) T(source);
    });
}

void ZOStorage::Swap(const TZOTypeInfo* AType, void* AFirst, void* ASecond) noexcept {
    auto* first = static_cast<std::byte*>(AFirst);
    std::swap_ranges(first, first + Size(AType), static_cast<std::byte*>(ASecond));
}
