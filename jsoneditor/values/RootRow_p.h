// The row of the data source's own value.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

class TZOObjectDataSource::TRoot : public TDataRow {
public:
    explicit TRoot(const TZOTypeInfo* AType) : TDataRow(nullptr, rkRoot), FType(AType) {}

    TZOPathStep PathStep() const override { return {}; }
    const TZOTypeInfo* Type() const override { return FType; }

protected:
    bool DoGetValue(const void* AParentValue, void*& ARef) const override;
    bool DoGetByRef(void* AParentValue, void*& ARef) override;
    bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) override;
    bool DoGetInserting(bool) const override { return false; }

private:
    const TZOTypeInfo* FType;
};
