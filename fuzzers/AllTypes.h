// The types that values of any kind are read into and set.
#pragma once

#include "runtime/types/TypeLibrary.h"

#include <vector>

namespace Fuzz {

/// Content that is streamed is not part of a JSON text: it is read as nothing.
inline bool IsStreamed(const TZOTypeInfo* AType) {
    return AType->Kind() == vkUpload || AType->Kind() == vkDownload;
}

/// Types of all kinds, each alone, and all but streams in lists and maps and as properties of a record.
struct TAllTypes {
    TZOTypeLibrary Library;
    std::vector<const TZOTypeInfo*> All;

    TAllTypes() {
        for (int kind = vkString; kind <= vkDownload; ++kind)
            All.push_back(TZOTypeLibrary::Scalar(TZOValueKind(kind)));
        const TZOTypeInfo* string = All[vkString];
        const TZOTypeInfo* integer = All[vkInteger];
        const auto* circle = Library.NewObject(QStringLiteral("Circle"))
                                 .Property(QStringLiteral("r"), integer, {.Required = true})
                                 .Type();
        const auto* square =
            Library.NewObject(QStringLiteral("Square")).Property(QStringLiteral("kind"), string).Type();
        All.push_back(Library.NewObject(QStringLiteral("Shape"))
                          .Discriminator(QStringLiteral("kind"))
                          .Subtype(QStringLiteral("circle"), circle)
                          .Subtype(QStringLiteral("square"), square)
                          .Type());
        for (const TZOUnionForm form : {ufTagged, ufBare})
            All.push_back(Library.NewUnion(QStringLiteral("Choice"), QStringLiteral("tag"), form)
                              .Tag(QStringLiteral("i"), integer)
                              .Tag(QStringLiteral("circle"), circle)
                              .Tag(QStringLiteral("texts"), Library.NewList(string))
                              .Tag(QStringLiteral("none"), nullptr)
                              .Type());
        const std::size_t plain = All.size();
        for (std::size_t index = 0; index < plain; ++index) {
            if (IsStreamed(All[index]))
                continue;
            All.push_back(Library.NewList(All[index]));
            All.push_back(Library.NewMap(All[index]));
        }
        AddCircles(string, integer);
        TZOObjectBuilder record = Library.NewObject(QStringLiteral("Record"));
        const std::size_t count = All.size();
        for (std::size_t index = 0; index < count; ++index) {
            if (!IsStreamed(All[index]))
                record.Property(QString(QChar(char16_t('a' + index))), All[index]);
        }
        record.Property(QStringLiteral("self"), record.Type());
        All.push_back(record.Type());
    }

private:
    /// A list and a map of nothing but themselves, and two unions that stand inside each other.
    void AddCircles(const TZOTypeInfo* AString, const TZOTypeInfo* AInteger) {
        ZOList::TTypeInfo* lists = Library.NewOpenList();
        TZOTypeLibrary::SetItemType(lists, lists);
        All.push_back(lists);
        ZOMap::TTypeInfo* maps = Library.NewOpenMap();
        TZOTypeLibrary::SetItemType(maps, maps);
        All.push_back(maps);
        TZOUnionBuilder outer = Library.NewUnion(QStringLiteral("Outer"), QStringLiteral("tag"), ufBare);
        TZOUnionBuilder inner = Library.NewUnion(QStringLiteral("Inner"), QStringLiteral("tag"), ufBare);
        outer.Tag(QStringLiteral("text"), AString).Tag(QStringLiteral("inner"), inner.Type());
        inner.Tag(QStringLiteral("number"), AInteger).Tag(QStringLiteral("outer"), outer.Type());
        All.push_back(outer.Type());
    }
};

} // namespace Fuzz
