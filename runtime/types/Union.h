// Unions: a value of one out of several types, told apart by a tag.
#pragma once

#include "runtime/types/Storage.h"
#include "runtime/types/TypeInfo.h"

#include <memory>
#include <vector>

/// One union value. The slot that holds the reference owns the instance.
class ZOUnion {
public:
    struct TTag;
    class TTypeInfo;
    class TData;

    ZOUnion(const ZOUnion&) = delete;
    ZOUnion& operator=(const ZOUnion&) = delete;
    ~ZOUnion();

private:
    explicit ZOUnion(const TTypeInfo* AType) : FType(AType) {}

    const TTypeInfo* FType;
    int FTag = -1;
    bool FHasValue = false;
    alignas(ZOStorage::MaxAlign) std::byte FStorage[ZOStorage::MaxSize];
};

using PTag = const struct ZOUnion::TTag*;

/// One alternative of a union.
struct ZOUnion::TTag {
    int Index = 0;
    QString Name;
    const TZOTypeInfo* Type = nullptr; ///< null: the tag carries no value
};

/// How a union's value looks in JSON.
enum TZOUnionForm {
    ufTagged, ///< {"<tag name>": "<tag>", "value": ...}, without "value" for a tag that carries none
    ufBare    ///< the value alone; read as the first alternative that it fits; null for a tag without value
};

class ZOUnion::TTypeInfo : public TZOTypeInfo {
public:
    /// The name of the tag: the key of the row that shows it.
    const QString& TagName() const noexcept { return FTagName; }
    const std::vector<TTag>& Tags() const noexcept { return FTags; }
    TZOUnionForm Form() const noexcept { return FForm; }
    /// The tag of that name, or null.
    PTag FindTag(QStringView AName) const;
    /// A new instance without a tag.
    std::unique_ptr<ZOUnion> CreateInstance() const;

private:
    friend class TZOTypeLibrary;
    friend class TZOUnionBuilder;
    TTypeInfo(const QString& AName, const QString& ADescription, const QString& ATagName, TZOUnionForm AForm)
        : TZOTypeInfo(vkUnion, AName, ADescription), FTagName(ATagName), FForm(AForm) {}

    QString FTagName;
    TZOUnionForm FForm;
    std::vector<TTag> FTags;
};

/// Access to a union's tag and value. ATag is TTag::Index.
class ZOUnion::TData {
public:
    static const TTypeInfo* Type(const ZOUnion* AUnion);
    /// The tag currently set; null when none is, or for a null union.
    static PTag GetTag(const ZOUnion* AUnion);
    /// Whether ATag is the tag set and carries a value that is present; its storage in ARef then.
    static bool GetTag(const ZOUnion* AUnion, int ATag, void*& ARef);
    /// Switches to ATag. With AHasValue its value is made (kept, if it was there) and ARef gets its
    /// storage. A tag that carries a value but is given none keeps the old tag and value: it is only
    /// set when its value is. False for a null union or an unknown tag, or for a value that the tag
    /// cannot carry.
    static bool SetTag(ZOUnion* AUnion, int ATag, bool AHasValue, void*& ARef);
    /// Storage of the tag's value, after switching to it and making it present when needed. Raises
    /// EListError for a tag that carries no value.
    static void GetByRef(ZOUnion* AUnion, int ATag, void*& ARef);
    /// A deep copy.
    static std::unique_ptr<ZOUnion> Clone(const ZOUnion* AUnion);
};
