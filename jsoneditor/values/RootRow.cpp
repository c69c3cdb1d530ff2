#include "jsoneditor/values/RootRow_p.h"

bool TZOObjectDataSource::TRoot::DoGetValue(const void*, void*& ARef) const {
    return GetSource()->FValue->GetValue(ARef);
}

bool TZOObjectDataSource::TRoot::DoGetByRef(void*, void*& ARef) {
    GetSource()->FValue->GetByRef(ARef);
    return ARef;
}

bool TZOObjectDataSource::TRoot::DoSetValue(void*, bool AHasValue, void*& ARef) {
    return GetSource()->FValue->SetValue(AHasValue, ARef);
}
