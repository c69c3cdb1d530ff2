// The class that a form editor takes a component for.
#pragma once

#include <QMetaObject>
#include <QString>

/// A meta object of its own for the components of one service class. A form editor knows widgets by the
/// names of their classes; those of service plug-ins are known only when they are loaded, so no compiler can
/// have made one. It is laid out as the compiler of meta objects does it. Must outlive its objects, and never
/// moves.
class TZOComponentClass {
public:
    /// AName becomes the name of the class, which adds nothing to ABase.
    TZOComponentClass(const QString& AName, const QMetaObject& ABase);
    TZOComponentClass(const TZOComponentClass&) = delete;
    TZOComponentClass& operator=(const TZOComponentClass&) = delete;

    const QMetaObject* MetaObject() const { return &FMetaObject; }

private:
    QByteArray FStrings;
    QMetaObject FMetaObject;
};
