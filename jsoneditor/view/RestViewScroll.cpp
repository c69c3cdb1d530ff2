// Scrolling: by its own bar, by the wheel, to a row, and in the scroll areas around the view.
#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/ScrollMath_p.h"
#include "platform/ExceptionDisplay.h"

#include <QApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

namespace {

constexpr int WheelNotch = 120;

} // namespace

TZOScrollSizes TZORestView::ScrollSizes() const { return {FYScroll, FContentHeight, ClientRect().height()}; }

int TZORestView::AdjustScrollOffset(int AOffset) const { return ClampScrollOffset(AOffset, ScrollSizes()); }

void TZORestView::ScrollTo(int AOffset) {
    SetScrollTask([AOffset] { return AOffset; });
}

void TZORestView::ScrollTo(TZOViewRow* ARow) {
    const int index = IndexOfRow(ARow);
    FExposeRow = index < FRows.GetCount() ? ARow : nullptr;
    SetScrollTask([this, index] { return OffsetToShow(FRowHeight * index, FRowHeight, ScrollSizes()); });
    if (FUpdateCount < 1 && HandleExists())
        ExposeRow();
}

void TZORestView::SetScrollTask(std::function<int()> ATask) {
    FYScrollTask = std::move(ATask);
    if (HandleExists() && FYScrollTask && AdjustScrollOffset(FYScrollTask()) == FYScroll)
        return;
    RequestUpdate();
}

void TZORestView::ExposeRow() {
    if (!FExposeRow || !isVisible())
        return;
    const int index = IndexOfRow(std::exchange(FExposeRow, nullptr));
    // The new height reaches the scroll areas through layouts that are put off until the next event.
    for (QWidget* widget = parentWidget(); widget;
         widget = widget->isWindow() ? nullptr : widget->parentWidget())
        QCoreApplication::sendPostedEvents(widget, QEvent::LayoutRequest);
    for (QWidget* widget = parentWidget(); widget; widget = widget->parentWidget()) {
        auto* area = qobject_cast<QScrollArea*>(widget);
        if (!area)
            continue;
        const int top = mapTo(area->viewport(), QPoint(0, index * FRowHeight - FYScroll)).y();
        QScrollBar* bar = area->verticalScrollBar();
        // The row's place in the content of the area, which begins where the bar stands at 0.
        const TZOScrollSizes sizes{bar->value(), 0, area->viewport()->height()};
        bar->setValue(OffsetToShow(bar->value() + top, FRowHeight, sizes));
    }
}

void TZORestView::UpdateScrollBar() {
    if (!HandleExists())
        return;
    const TZOScrollSizes sizes = ScrollSizes();
    FScrollBar->setRange(0, qMax(0, sizes.ContentHeight - sizes.ClientHeight));
    FScrollBar->setPageStep(sizes.ClientHeight);
    FScrollBar->setSingleStep(FScrollStep);
    FScrollBar->setValue(FYScroll);
}

void TZORestView::ScrollBarAction(int AAction) {
    const int offset = OffsetAfterAction(static_cast<QAbstractSlider::SliderAction>(AAction),
                                         FScrollBar->sliderPosition(), FScrollStep, ScrollSizes());
    GuardedCall(this, [this, offset] { ScrollTo(offset); });
    // The bar goes on to its slider's position when this returns.
    FScrollBar->setSliderPosition(FYScroll);
}

void TZORestView::wheelEvent(QWheelEvent* AEvent) {
    const int delta = AEvent->angleDelta().y();
    if ((delta < 0) != (FWheelRest < 0))
        FWheelRest = 0;
    FWheelRest += delta;
    const bool down = FWheelRest < 0;
    // Parts of a notch belong to whoever will scroll when it is complete.
    bool handled = delta != 0 && qAbs(FWheelRest) < WheelNotch && CanScroll(down);
    for (; qAbs(FWheelRest) >= WheelNotch; FWheelRest += down ? WheelNotch : -WheelNotch) {
        GuardedCall(this, [&] {
            if (DoMouseWheel(down, AEvent->modifiers(), AEvent->position().toPoint()))
                handled = true;
        });
    }
    AEvent->setAccepted(handled);
}

bool TZORestView::DoMouseWheel(bool ADown, Qt::KeyboardModifiers AShift, const QPoint& APoint) {
    const auto& handler = ADown ? OnMouseWheelDown : OnMouseWheelUp;
    if (handler && handler(AShift, APoint))
        return true;
    const int before = FYScroll;
    ScrollTo(FYScroll + (ADown ? FMouseWheelStep : -FMouseWheelStep));
    return FYScroll != before;
}

bool TZORestView::CanScroll(bool ADown) const {
    return ADown ? FYScroll < AdjustScrollOffset(FContentHeight) : FYScroll > 0;
}

bool TZORestView::eventFilter(QObject* AObject, QEvent* AEvent) {
    if (AObject == FScrollBar && AEvent->type() == QEvent::Wheel) {
        // Ignored and taken from the bar: it travels on to the view.
        AEvent->ignore();
        return true;
    }
    return QWidget::eventFilter(AObject, AEvent);
}
