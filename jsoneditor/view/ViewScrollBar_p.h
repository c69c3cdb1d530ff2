// The scroll bar of a view.
#pragma once

#include <QScrollBar>

/// Repaints what a new value changes, which is the slider. The base class paints the whole bar again for
/// every step of a wheel: on a high one, its gradients take longer than the rows that come into sight.
class TZOViewScrollBar : public QScrollBar {
    Q_OBJECT
public:
    explicit TZOViewScrollBar(QWidget* AParent);

protected:
    void sliderChange(SliderChange AChange) override;

private:
    /// What looks different with the slider at AValue: the slider, and a button that it has come to.
    QRegion PartsAt(int AValue) const;

    int FShownValue = 0;
};
