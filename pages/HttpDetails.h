// What went over the wire, for people to read.
#pragma once

#include <QPlainTextEdit>

struct TZOHttpRecord;

/// Shows the heads of a request's messages and answers as text that can be selected, as high as it is up to a
/// bound. Promote a QPlainTextEdit to it in a form.
class TZOHttpDetails : public QPlainTextEdit {
    Q_OBJECT

public:
    /// The greatest height, in pixels.
    static constexpr int MaxHeight = 400;

    explicit TZOHttpDetails(QWidget* AParent = nullptr);

    void SetRecord(const TZOHttpRecord& ARecord);
    /// "200 OK, 35 ms, 1.2 KiB"; without an answer only the time.
    static QString Summary(const TZOHttpRecord& ARecord);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent* AEvent) override;
    void changeEvent(QEvent* AEvent) override;

private:
    int FHeight = 0;
};
