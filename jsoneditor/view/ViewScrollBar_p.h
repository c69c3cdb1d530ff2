// The scroll bar of a view.
#pragma once

#include <QScrollBar>

/// Repaints what a new value or range changes, which is the slider. The base class paints the whole bar again
/// for every step of a wheel: on a high one, its gradients take longer than the rows that come into sight.
class TZOViewScrollBar : public QScrollBar {
    Q_OBJECT
public:
    explicit TZOViewScrollBar(QWidget* AParent);

protected:
    void sliderChange(SliderChange AChange) override;

private:
    /// What the slider's place and length follow from.
    struct TPlace {
        int Minimum = 0, Maximum = 0, Page = 0, Value = 0;

        bool IsEverything() const { return Minimum == Maximum; }
    };

    /// What looks different with the slider there: the slider, and a button that it has come to.
    QRegion PartsAt(const TPlace& APlace) const;

    TPlace FShown;
};
