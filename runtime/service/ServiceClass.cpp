#include "runtime/service/RestService.h"

namespace {

QList<const TZORestServiceClass*>& Registered() {
    static QList<const TZORestServiceClass*> classes;
    return classes;
}

} // namespace

TZORestServiceClass::TZORestServiceClass(const QString& AClassName,
                                         std::unique_ptr<TZORestService::TTypeInfo> ATypeInfo,
                                         TFactory AFactory)
    : FClassName(AClassName), FTypeInfo(std::move(ATypeInfo)), FFactory(std::move(AFactory)) {}

TZORestServiceClass::~TZORestServiceClass() { Unregister(this); }

std::unique_ptr<TZORestService> TZORestServiceClass::Create(QObject* AOwner) const {
    return FFactory ? FFactory(this, AOwner) : std::make_unique<TZORestService>(this, AOwner);
}

void TZORestServiceClass::Register(const TZORestServiceClass* AClass) {
    if (!Registered().contains(AClass))
        Registered().append(AClass);
}

void TZORestServiceClass::Unregister(const TZORestServiceClass* AClass) { Registered().removeAll(AClass); }

QList<const TZORestServiceClass*> TZOTypeInfo::Services() { return Registered(); }

const TZOTypeInfo* TZOTypeInfo::Get(const TZORestServiceClass& AClass) { return AClass.TypeInfo(); }
