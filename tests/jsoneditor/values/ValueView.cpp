#include "tests/jsoneditor/values/ValueView.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"
#include "runtime/json/JsonCodec.h"

#include <QApplication>
#include <QKeySequence>
#include <QTest>

#include <gtest/gtest.h>

void TCountingSource::ConfigureRow(TZOViewRow* ARow, TZOViewRowLayout* ALayout) {
    ++Configured;
    TZOObjectDataSource::ConfigureRow(ARow, ALayout);
}

TValueView::TValueView(const TZOTypeInfo* AType, const QByteArray& AJson, bool AInsertMode)
    : Holder(AType, true), View(&Window), Source(&Holder, false, AInsertMode) {
    if (!AJson.isEmpty())
        TZOJson::Decode(AJson, Holder);
    Show();
}

TValueView::TValueView(TZOValueHolder* AHolder)
    : Holder(AHolder, false), View(&Window), Source(&Holder, false, false) {
    Show();
}

void TValueView::Show() {
    FPrevious =
        SetExceptionDisplay([this](QWidget*, const std::exception& e) { Shown.append(ExceptionMessage(e)); });
    // Off the view, so that no editor follows the pointer before a test moves it.
    QCursor::setPos(5000, 5000);
    Window.resize(700, 4000);
    View.setGeometry(0, 0, 700, 4000);
    View.SetDataSource(&Source);
    Window.show();
    Window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Window));
    View.setFocus();
}

TValueView::~TValueView() {
    View.SetDataSource(nullptr);
    SetExceptionDisplay(FPrevious);
}

QString TValueView::LineOf(TZOViewRow* ARow) const {
    const TZOViewRowLayout* layout = ARow->Layout();
    if (!layout)
        return QStringLiteral("(no layout)");
    QString line;
    bool gray = true;
    for (int i = 0; i < layout->GetChunkCount(); ++i) {
        const TZORowChunk* chunk = layout->GetChunks(i);
        gray = gray && chunk->TextToken() == ctGray;
        line += chunk->IsEditable() ? QLatin1Char('<') + chunk->Text() + QLatin1Char('>') : chunk->Text();
    }
    line = (gray ? QStringLiteral("~") : QString()) + line;
    return line.endsWith(QLatin1Char(' ')) ? line.chopped(1) : line;
}

QStringList TValueView::Lines() const {
    QStringList lines;
    for (TZOViewRow* row = View.GetFirst(); row; row = row->Next())
        lines.append(QString(row->Level() * 2, QLatin1Char(' ')) + LineOf(row));
    return lines;
}

QString TValueView::Rows() const { return Lines().join(QLatin1Char('\n')); }

void TValueView::Expect(const QString& ARows, std::source_location AWhere) const {
    const testing::ScopedTrace trace(AWhere.file_name(), static_cast<int>(AWhere.line()), "expected rows");
    EXPECT_EQ(Rows().toStdString(), ARows.trimmed().toStdString());
}

void TValueView::ExpectJson(const QByteArray& AJson, std::source_location AWhere) const {
    const testing::ScopedTrace trace(AWhere.file_name(), static_cast<int>(AWhere.line()), "expected value");
    EXPECT_EQ(Json().toStdString(), AJson.toStdString());
}

QByteArray TValueView::Json() const { return TZOJson::Encode(Holder); }

void TValueView::SetJson(const QByteArray& AJson) { TZOJson::Decode(AJson, Holder); }

TZOViewRow* TValueView::Find(const QString& ALine, int ANumber) const {
    for (TZOViewRow* row = View.GetFirst(); row; row = row->Next()) {
        if (LineOf(row) == ALine && --ANumber == 0)
            return row;
    }
    ADD_FAILURE() << "no row '" << ALine.toStdString() << "' in\n" << Rows().toStdString();
    return nullptr;
}

QString TValueView::Selected() const { return View.Selected() ? LineOf(View.Selected()) : QString(); }

void TValueView::ClickAt(TZOViewRow* ARow, bool ADouble) {
    if (!ARow || !ARow->Layout())
        return;
    const QRect bounds = ARow->Layout()->Bounds();
    const QPoint point = View.mapTo(&Window, QPoint(bounds.right() - 40, bounds.center().y()));
    if (ADouble)
        QTest::mouseDClick(Window.windowHandle(), Qt::LeftButton, {}, point);
    else
        QTest::mouseClick(Window.windowHandle(), Qt::LeftButton, {}, point);
}

void TValueView::Click(const QString& ALine, int ANumber) { ClickAt(Find(ALine, ANumber), false); }

void TValueView::DoubleClick(const QString& ALine, int ANumber) { ClickAt(Find(ALine, ANumber), true); }

void TValueView::Press(const QString& AKeys) {
    for (const QString& name : AKeys.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QKeyCombination key = QKeySequence(name)[0];
        QWidget* target = QApplication::focusWidget();
        QTest::keyClick(target ? target : &View, key.key(), key.keyboardModifiers());
    }
}

void TValueView::PressOn(const QString& ALine, const QString& AKeys) {
    Click(ALine);
    Press(AKeys);
}

void TValueView::Type(const QString& ALine, const QString& AText, int ANumber) {
    TZOViewRow* row = Find(ALine, ANumber);
    TZORowChunk* chunk = nullptr;
    if (!row || !row->Layout()->TryGetFirstEditable(chunk)) {
        ADD_FAILURE() << "nothing to type into: " << ALine.toStdString();
        return;
    }
    const QPoint point = row->Layout()->Bounds().topLeft() + chunk->Bounds().center();
    // A pointer that is there already would not move.
    QTest::mouseMove(Window.windowHandle(), View.mapTo(&Window, point + QPoint(300, 0)));
    QTest::mouseMove(Window.windowHandle(), View.mapTo(&Window, point));
    QCoreApplication::processEvents();
    QTest::mouseClick(Window.windowHandle(), Qt::LeftButton, {}, View.mapTo(&Window, point));
    if (!View.EditorShown()) {
        ADD_FAILURE() << "no editor after a click into " << ALine.toStdString();
        return;
    }
    QTest::keyClick(View.Editor(), Qt::Key_A, Qt::ControlModifier);
    if (AText.isEmpty())
        QTest::keyClick(View.Editor(), Qt::Key_Delete);
    QTest::keyClicks(View.Editor(), AText);
}

void TValueView::Enter(const QString& ALine, const QString& AText, int ANumber) {
    Type(ALine, AText, ANumber);
    QTest::keyClick(View.Editor(), Qt::Key_Return);
}
