// The types that the tests of this folder share.
#pragma once

#include "runtime/types/TypeLibrary.h"

/// One type of each kind, and some that refer to them.
struct TValueTypes {
    TZOTypeLibrary Library;
    const TZOTypeInfo* String = TZOTypeLibrary::Scalar(vkString);
    const TZOTypeInfo* Integer = TZOTypeLibrary::Scalar(vkInteger);
    const ZOList::TTypeInfo* Numbers = Library.NewList(Integer);
    const ZOMap::TTypeInfo* Scores = Library.NewMap(Integer);
    /// name: string, age: integer, id: integer, read-only
    const ZOObject::TTypeInfo* Person = Library.NewObject(QStringLiteral("Person"))
                                            .Property(QStringLiteral("name"), String)
                                            .Property(QStringLiteral("age"), Integer)
                                            .Property(QStringLiteral("id"), Integer, {.ReadOnly = true})
                                            .Type();
    const ZOObject::TTypeInfo* Circle =
        Library.NewObject(QStringLiteral("Circle")).Property(QStringLiteral("radius"), Integer).Type();
    const ZOObject::TTypeInfo* Square =
        Library.NewObject(QStringLiteral("Square")).Property(QStringLiteral("side"), Integer).Type();
    /// polymorphic: type = circle (radius) or square (side)
    const ZOObject::TTypeInfo* Shape = Library.NewObject(QStringLiteral("Shape"))
                                           .Property(QStringLiteral("title"), String)
                                           .Discriminator(QStringLiteral("type"))
                                           .Subtype(QStringLiteral("circle"), Circle)
                                           .Subtype(QStringLiteral("square"), Square)
                                           .Type();
    /// kind = number (integer), person (Person) or none
    const ZOUnion::TTypeInfo* Choice =
        Library.NewUnion(QStringLiteral("Choice"), QStringLiteral("kind"), ufTagged)
            .Tag(QStringLiteral("number"), Integer)
            .Tag(QStringLiteral("person"), Person)
            .Tag(QStringLiteral("none"), nullptr)
            .Type();

    /// An object with one property, p, of AType.
    const ZOObject::TTypeInfo* Holding(const TZOTypeInfo* AType) {
        return Library.NewObject(QStringLiteral("Holder")).Property(QStringLiteral("p"), AType).Type();
    }
};
