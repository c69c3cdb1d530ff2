#include "tests/jsoneditor/view/TextView.h"

#include "platform/Exceptions.h"

#include <QApplication>
#include <QCursor>
#include <QKeySequence>
#include <QRegularExpression>
#include <QTest>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

#include <gtest/gtest.h>

namespace {

QStringList Lines(const QString& AText) { return AText.split(QLatin1Char('\n'), Qt::SkipEmptyParts); }

/// Each line less the two characters that say whether it is selected.
QString WithoutMarks(const QString& AText) {
    QStringList lines = Lines(AText);
    for (QString& line : lines)
        line.remove(0, 2);
    return lines.join(QLatin1Char('\n'));
}

/// A modifier that is held down comes as a key of its own first.
bool IsModifier(int AKey) { return AKey == Qt::Key_Control || AKey == Qt::Key_Shift || AKey == Qt::Key_Alt; }

QString EditorText(const TZOInplaceEditor& AEditor) {
    QString text = AEditor.text();
    if (AEditor.hasSelectedText()) {
        text.insert(AEditor.selectionEnd(), QLatin1Char('>'));
        text.insert(AEditor.selectionStart(), QLatin1Char('<'));
    } else {
        text.insert(AEditor.cursorPosition(), QLatin1Char('|'));
    }
    return QLatin1Char('{') + text + QLatin1Char('}') +
           (AEditor.Modified() ? QStringLiteral("*") : QString());
}

} // namespace

void TTextSource::RefreshContent() {
    Clear();
    const QStringList lines = Lines(FText);
    for (const QString& line : lines)
        Add(MakeRow(line));
}

TTextSource::TRow* TTextSource::MakeRow(const QString& ALine) {
    qsizetype indent = 0;
    while (indent < ALine.size() && ALine[indent] == QLatin1Char(' '))
        ++indent;
    auto* row = new TRow(static_cast<int>(indent / 2));
    static const QRegularExpression chunk(QStringLiteral("\\[([^\\]]*)\\]|[^ \\[]+"));
    for (auto match = chunk.globalMatch(ALine); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const bool editable = found.captured(0).startsWith(QLatin1Char('['));
        row->Chunks.push_back({editable ? found.captured(1) : found.captured(0), editable});
    }
    return row;
}

void TTextSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    ++Configured;
    int id = 0;
    for (const TRow::TChunk& chunk : static_cast<TRow*>(ARow)->Chunks)
        ALayout->AddChunk(++id, chunk.Text, chunk.Editable, ctNormal);
}

void TTextSource::RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) {
    Edits.append(QStringLiteral("%1 %2 %3").arg(View()->IndexOfRow(ARow)).arg(AChunkId).arg(AText));
    if (AText == QStringLiteral("bad"))
        throw EConvertError(QStringLiteral("\"bad\" is refused"));
    auto& chunk = static_cast<TRow*>(ARow)->Chunks[static_cast<size_t>(AChunkId - 1)];
    chunk.Text = AText;
    if (OnEdited)
        OnEdited(ARow);
}

void TTextSource::KeyDown(int& AKey, Qt::KeyboardModifiers) {
    if (!IsModifier(AKey))
        Keys.push_back(AKey);
    if (AKey == KeyToConsume)
        AKey = 0;
}

TTextView::TTextView(const QString& ARows, const QSize& ASize) : Source(WithoutMarks(ARows)), View(&Host) {
    FPrevious = SetExceptionDisplay(
        [this](QWidget*, const std::exception& AException) { Shown.append(ExceptionMessage(AException)); });
    // Off the view, so that no editor follows the pointer before a test moves it.
    QCursor::setPos(2000, 2000);
    Host.resize(ASize);
    View.setGeometry(Host.rect());
    View.SetDataSource(&Source);
    Host.show();
    Host.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Host));
    View.setFocus();
    const QStringList lines = Lines(ARows);
    for (int i = 0; i < lines.size(); ++i) {
        if (lines[i].startsWith(QLatin1Char('>')))
            View.SelectRow(Row(i), seHide);
    }
}

TTextView::~TTextView() {
    View.SetDataSource(nullptr);
    SetExceptionDisplay(std::move(FPrevious));
}

void TTextView::Press(const QString& AKeys) {
    static const QRegularExpression word(QStringLiteral("'([^']*)'|[^ ]+"));
    for (auto match = word.globalMatch(AKeys); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        QWidget* target = QApplication::focusWidget();
        ASSERT_TRUE(target) << "nothing has the focus";
        if (found.captured(0).startsWith(QLatin1Char('\''))) {
            QTest::keyClicks(target, found.captured(1));
            continue;
        }
        const QKeySequence sequence(found.captured(0));
        ASSERT_EQ(sequence.count(), 1) << found.captured(0).toStdString();
        // A real keyboard sends Backtab for Tab with Shift.
        const bool backtab =
            sequence[0].key() == Qt::Key_Tab && sequence[0].keyboardModifiers() == Qt::ShiftModifier;
        QTest::keyClick(target, backtab ? Qt::Key_Backtab : sequence[0].key(),
                        sequence[0].keyboardModifiers());
    }
}

QString TTextView::Rows() const {
    QString all;
    for (TZOViewRow* row = View.GetFirst(); row; row = row->Next()) {
        QStringList words;
        int id = 0;
        for (const TTextSource::TRow::TChunk& chunk : static_cast<TTextSource::TRow*>(row)->Chunks) {
            ++id;
            if (View.Editor()->IsShownAt(row, id))
                words.append(EditorText(*View.Editor()));
            else
                words.append(chunk.Editable ? QLatin1Char('[') + chunk.Text + QLatin1Char(']') : chunk.Text);
        }
        all += row == View.Selected() ? QStringLiteral("> ") : QStringLiteral("  ");
        all += QString(row->Level() * 2, QLatin1Char(' ')) + words.join(QLatin1Char(' ')) + QLatin1Char('\n');
    }
    return all;
}

void TTextView::Expect(const QString& ARows, std::source_location AWhere) const {
    QString wanted = ARows;
    if (wanted.startsWith(QLatin1Char('\n')))
        wanted.remove(0, 1);
    if (Rows() != wanted)
        ADD_FAILURE_AT(AWhere.file_name(), static_cast<int>(AWhere.line()))
            << "expected:\n"
            << wanted.toStdString() << "found:\n"
            << Rows().toStdString();
}

QPoint TTextView::ChunkPoint(int ARow, int AChunkId) const {
    const TZOViewRowLayout* layout = Row(ARow)->Layout();
    TZORowChunk* chunk = nullptr;
    if (!layout || !layout->TryGetChunk(AChunkId, false, chunk)) {
        ADD_FAILURE() << "row " << ARow << " has no chunk " << AChunkId << " on screen";
        return {};
    }
    return chunk->Bounds().translated(layout->Bounds().topLeft()).center();
}

void TTextView::MoveMouse(const QPoint& APoint) {
    QCursor::setPos(View.mapToGlobal(APoint));
    QCoreApplication::processEvents();
}

void TTextView::Click(const QPoint& APoint) {
    MoveMouse(APoint);
    QTest::mouseClick(Host.windowHandle(), Qt::LeftButton, Qt::NoModifier, View.mapTo(&Host, APoint));
}

void TTextView::THost::keyPressEvent(QKeyEvent* AEvent) {
    if (!IsModifier(AEvent->key()))
        Keys.push_back(AEvent->key());
    QWidget::keyPressEvent(AEvent);
}

void TTextView::THost::wheelEvent(QWheelEvent* AEvent) {
    ++Wheels;
    AEvent->accept();
}

QString NumberedRows(int ACount) {
    QString rows;
    for (int i = 0; i < ACount; ++i)
        rows += QStringLiteral("  [row%1]\n").arg(i);
    return rows;
}

bool TPaintWatch::eventFilter(QObject*, QEvent* AEvent) {
    if (AEvent->type() == QEvent::Paint) {
        ++Paints;
        Painted += static_cast<QPaintEvent*>(AEvent)->region();
    }
    return false;
}

void TurnWheel(QWidget* AWidget, int ADelta) {
    const QPoint point = AWidget->rect().center();
    QWheelEvent wheel(point, AWidget->mapToGlobal(point), {}, QPoint(0, ADelta), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    // Only an event that seems to come from the window system travels on to parents.
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(AWidget, &wheel);
}

bool WaitFor(const std::function<bool()>& ACondition) { return QTest::qWaitFor(ACondition, 5000); }
