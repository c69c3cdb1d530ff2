#include "hosts/designer/ComponentClass.h"

#include <QByteArray>

namespace {

// The revision of the layout that Qt 6.4 writes; every later Qt 6 reads it. All counts are zero.
constexpr uint Data[] = {
    10,    // revision
    0,     // class name: the first string
    0,  0, // class info
    0,  0, // methods
    0,  0, // properties
    0,  0, // enumerations
    0,  0, // constructors
    0,     // flags
    0,     // signals
    0      // end
};

// The type of the class itself, which has none.
const QtPrivate::QMetaTypeInterface* const Types[] = {nullptr};

// One string: its place and length, then its bytes and a zero.
QByteArray StringData(const QByteArray& AName) {
    constexpr uint HeadSize = 2 * sizeof(uint);
    const uint head[] = {HeadSize, static_cast<uint>(AName.size())};
    QByteArray data(reinterpret_cast<const char*>(head), sizeof head);
    return data.append(AName).append('\0');
}

} // namespace

TZOComponentClass::TZOComponentClass(const QString& AName, const QMetaObject& ABase)
    : FStrings(StringData(AName.toLatin1())) {
    FMetaObject.d.superdata = &ABase;
    FMetaObject.d.stringdata = reinterpret_cast<const uint*>(FStrings.constData());
    FMetaObject.d.data = Data;
    FMetaObject.d.static_metacall = nullptr;
    FMetaObject.d.relatedMetaObjects = nullptr;
    FMetaObject.d.metaTypes = Types;
    FMetaObject.d.extradata = nullptr;
}
