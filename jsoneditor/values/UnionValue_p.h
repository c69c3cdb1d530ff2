// The value under a union's tag.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows the value of the tag that the union's tag row shows. It cannot be deleted.
class TZOObjectDataSource::TUnionValue : public TDataRow {
public:
    TUnionValue(TDataRow* AParent, PTag ATag) : TDataRow(AParent, rkUVal), FTag(ATag) {}

    PTag Tag() const { return FTag; }
    TZOPathStep PathStep() const override { return {.Tag = FTag}; }
    const TZOTypeInfo* Type() const override { return FTag->Type; }
    void DoEditAction(TEditAction AAction) override;

protected:
    bool DoGetValue(const void* AParentValue, void*& ARef) const override;
    bool DoGetByRef(void* AParentValue, void*& ARef) override;
    bool DoSetValue(void* AParentValue, bool AHasValue, void*& ARef) override;
    TDataRow* DoGetUpdateBase() override { return DataParent(); }
    bool DoGetInserting(bool) const override;
    QString KeyText() const override { return QStringLiteral("value"); }

private:
    TUnionTag* GetTagRow() const;
    bool EditingTag() const;
    bool SelectTag(ZOUnion* AUnion, bool AHasValue, void*& ARef);

    PTag FTag;
};
