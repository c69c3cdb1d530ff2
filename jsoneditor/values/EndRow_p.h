// The closing row of a container.
#pragma once

#include "jsoneditor/values/DataRow_p.h"

/// Shows "]" or "}" at the level of its parent, the container; grey exactly when the container is.
class TZOObjectDataSource::TEOf : public TRow {
public:
    explicit TEOf(TDataRow* AContainer);
    ~TEOf() override;

    void Update();
    void KeyDown(TZORestView* AView, int& AKey, Qt::KeyboardModifiers AShift) override;
    void DblClick(TZORestView* AView) override;
};
