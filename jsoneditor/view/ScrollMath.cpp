#include "jsoneditor/view/ScrollMath_p.h"

#include <algorithm>

int ClampScrollOffset(int AOffset, const TZOScrollSizes& ASizes) {
    return std::clamp(AOffset, 0, std::max(0, ASizes.ContentHeight - ASizes.ClientHeight));
}

int OffsetToShow(int ATop, int AHeight, const TZOScrollSizes& ASizes) {
    int offset = ASizes.Offset;
    if (ATop + AHeight > ASizes.ClientHeight + offset)
        offset = ATop + AHeight - ASizes.ClientHeight;
    return std::min(offset, ATop);
}

int OffsetAfterAction(QAbstractSlider::SliderAction AAction, int ATracking, int AStep,
                      const TZOScrollSizes& ASizes) {
    switch (AAction) {
    case QAbstractSlider::SliderSingleStepSub:
        return ASizes.Offset - AStep;
    case QAbstractSlider::SliderSingleStepAdd:
        return ASizes.Offset + AStep;
    case QAbstractSlider::SliderPageStepSub:
        return ASizes.Offset - ASizes.ClientHeight;
    case QAbstractSlider::SliderPageStepAdd:
        return ASizes.Offset + ASizes.ClientHeight;
    case QAbstractSlider::SliderMove:
        return ATracking;
    case QAbstractSlider::SliderToMinimum:
        return 0;
    case QAbstractSlider::SliderToMaximum:
        return ASizes.ContentHeight - ASizes.ClientHeight;
    case QAbstractSlider::SliderNoAction:
        break;
    }
    return ASizes.Offset;
}

TZORowRange RowsWithin(int ATop, int ABottom, int ARowHeight, int ARowCount) {
    if (ARowHeight <= 0 || ABottom <= ATop || ABottom <= 0)
        return {};
    return {std::max(0, ATop / ARowHeight), std::min((ABottom - 1) / ARowHeight, ARowCount - 1)};
}
