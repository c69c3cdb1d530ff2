#include "runtime/types/TypeInfo.h"

#include "runtime/types/Any.h"
#include "runtime/types/Streams.h"
#include "runtime/types/TypeLibrary.h"

#include <QHash>

#include <array>
#include <typeindex>
#include <unordered_map>

namespace {

std::unordered_map<std::type_index, const TZOTypeInfo*>& CompiledTypes() {
    static std::unordered_map<std::type_index, const TZOTypeInfo*> types = {
        {typeid(QString), TZOTypeLibrary::Scalar(vkString)},
        {typeid(qint32), TZOTypeLibrary::Scalar(vkInteger)},
        {typeid(qint64), TZOTypeLibrary::Scalar(vkInt64)},
        {typeid(bool), TZOTypeLibrary::Scalar(vkBoolean)},
        {typeid(double), TZOTypeLibrary::Scalar(vkFloat)},
        {typeid(ZOAny), TZOTypeLibrary::Scalar(vkAny)},
        {typeid(ZOUpload), TZOTypeLibrary::Scalar(vkUpload)},
        {typeid(ZODownload), TZOTypeLibrary::Scalar(vkDownload)},
    };
    return types;
}

} // namespace

TZOTypeInfo::TZOTypeInfo(TZOValueKind AKind, const QString& AName, const QString& ADescription,
                         const QStringList& AAllowedValues)
    : FKind(AKind), FName(AName), FDescription(ADescription), FAllowedValues(AAllowedValues) {}

TZOTypeInfo::~TZOTypeInfo() = default;

const TZOTypeInfo* TZOTypeInfo::Get(const std::type_info& AType) {
    const auto found = CompiledTypes().find(AType);
    return found == CompiledTypes().end() ? nullptr : found->second;
}

void TZOTypeInfo::Register(const std::type_info& AType, const TZOTypeInfo* AInfo) {
    if (AInfo)
        CompiledTypes()[AType] = AInfo;
    else
        CompiledTypes().erase(AType);
}

QString KindName(TZOValueKind AKind) {
    static constexpr std::array<const char*, 15> names = {
        "string", "integer",  "int64", "boolean", "float",  "date-time", "date",   "any",
        "upload", "download", "list",  "map",     "object", "union",     "service"};
    return QString::fromLatin1(names[AKind]);
}
