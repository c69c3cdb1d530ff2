#include "pages/HttpDetails.h"

#include "pages/TransferText.h"

#include "runtime/http/HttpRecord.h"

#include "platform/Fonts.h"
#include "platform/VisibleText.h"

#include <QEvent>
#include <QStringList>
#include <QTextBlock>

#include <cmath>
#include <utility>

namespace {

constexpr int Padding = 8;

void AppendHead(QStringList& ALines, const QByteArray& AFirst, const QList<TZOHttpHeader>& AHeaders) {
    if (AFirst.isEmpty())
        return;
    if (!ALines.isEmpty())
        ALines.append(QString());
    ALines.append(QString::fromUtf8(AFirst));
    for (const TZOHttpHeader& header : AHeaders)
        ALines.append(QString::fromUtf8(header.Name + ": " + header.Value));
}

} // namespace

TZOHttpDetails::TZOHttpDetails(QWidget* AParent) : QPlainTextEdit(AParent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFont(UiFont(QStringLiteral("Courier New"), 13));
    document()->setDocumentMargin(Padding);
    setAccessibleName(QStringLiteral("Request and response headers"));
}

void TZOHttpDetails::SetRecord(const TZOHttpRecord& ARecord) {
    QStringList lines;
    for (const TZOHttpHop& hop : ARecord.Hops) {
        AppendHead(lines, hop.RequestLine, hop.RequestHeaders);
        AppendHead(lines, hop.StatusLine, hop.ResponseHeaders);
    }
    if (lines.isEmpty())
        lines.append(QStringLiteral("Nothing was sent."));
    setPlainText(VisibleLines(lines.join(u'\n')));
    updateGeometry();
}

QString TZOHttpDetails::Summary(const TZOHttpRecord& ARecord) {
    QStringList parts;
    const QByteArray status = ARecord.Hops.isEmpty() ? QByteArray() : ARecord.Hops.last().StatusLine;
    const bool isAnswered = !status.isEmpty();
    if (isAnswered)
        parts.append(QString::fromUtf8(status.mid(status.indexOf(' ') + 1)));
    parts.append(TransferText::Duration((ARecord.TotalMicros + 500) / 1000));
    if (isAnswered)
        parts.append(TransferText::Size(ARecord.BytesReceived));
    return parts.join(QStringLiteral(", "));
}

QSize TZOHttpDetails::sizeHint() const {
    double height = Padding; // the last block brings the lower one along
    for (QTextBlock block = document()->firstBlock(); block.isValid() && height < MaxHeight;
         block = block.next())
        height += blockBoundingRect(block).height();
    // The bar asks for one pixel more than the text is high.
    return {QPlainTextEdit::sizeHint().width(), qMin(static_cast<int>(std::ceil(height)) + 1, MaxHeight)};
}

void TZOHttpDetails::resizeEvent(QResizeEvent* AEvent) {
    QPlainTextEdit::resizeEvent(AEvent);
    // Another width wraps other lines.
    if (const int height = sizeHint().height(); std::exchange(FHeight, height) != height)
        updateGeometry();
}

void TZOHttpDetails::changeEvent(QEvent* AEvent) {
    QPlainTextEdit::changeEvent(AEvent);
    if (AEvent->type() == QEvent::FontChange)
        updateGeometry();
}
