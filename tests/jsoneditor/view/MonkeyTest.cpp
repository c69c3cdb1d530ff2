// A hundred thousand random events of every kind, after each of which the view must be whole.
#include "tests/jsoneditor/view/MonkeyKeys.h"
#include "tests/jsoneditor/view/TextView.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Of each of the two views.
constexpr int EventCount = 50000;

/// Refuses some texts, and changes rows while it takes others.
class TMonkeySource : public TTextSource {
public:
    explicit TMonkeySource(QRandomGenerator& ARandom) : FRandom(ARandom) {}

    void RefreshContent() override {
        Clear();
        for (int i = 0; i < 60; ++i)
            Add(Make());
    }
    void RowEdited(TZOViewRow* ARow, int AChunkId, const QString& AText) override {
        if (AText.contains(QLatin1Char('b'))) {
            if (FRandom.bounded(3) == 0)
                InsertAfter(ARow, Make());
            throw EConvertError(QStringLiteral("refused"));
        }
        switch (FRandom.bounded(12)) {
        case 0:
            Remove(ARow);
            return;
        case 1:
            if (ARow->Next())
                Remove(ARow->Next());
            break;
        case 2:
            InsertBefore(ARow, Make());
            break;
        default:
            break;
        }
        static_cast<TRow*>(ARow)->Chunks[static_cast<size_t>(AChunkId - 1)].Text = AText.left(30);
    }
    void KeyDown(int& AKey, Qt::KeyboardModifiers AShift) override {
        TZOViewRow* selected = View()->Selected();
        if (selected && AKey == Qt::Key_Insert)
            InsertAfter(selected, Make());
        else if (selected && AKey == Qt::Key_Delete && AShift.testFlag(Qt::ControlModifier))
            Remove(selected);
        else if (AKey == Qt::Key_F5)
            View()->RefreshContent();
    }
    TRow* Make() {
        static const QStringList shapes{QStringLiteral("[name] : [value]"), QStringLiteral("fixed"),
                                        QStringLiteral("  [only]"), QStringLiteral("    [a] [] [c] (kind)"),
                                        QStringLiteral("  [שלום] : [😀]")};
        return MakeRow(shapes[FRandom.bounded(int(shapes.size()))]);
    }

private:
    QRandomGenerator& FRandom;
};

struct TMonkeyCase {
    quint32 Seed;
    bool InScrollArea;
};

class Monkey : public testing::TestWithParam<TMonkeyCase> {
protected:
    Monkey();
    ~Monkey() override;

    int Random(int ABound) { return FRandom.bounded(ABound); }
    TZOViewRow* AnyRow() { return View->RowAt(Random(qMax(1, View->GetRowCount()))); }
    QPoint AnyPoint() { return {Random(Host.width()), Random(Host.height())}; }

    void Act();
    void PressAnyKey();
    void UseMouse();
    void ChangeRows();
    void MoveRun();
    void ChangeSurroundings();
    void Compose();

    void CheckLayouts();
    void CheckEditors();
    void CheckRows();
    void CheckScreen();
    bool MayHaveLayout(const TZOViewRowLayout* ALayout) const;

    QRandomGenerator FRandom{GetParam().Seed};
    QWidget Host;
    TMonkeySource Source{FRandom};
    QScrollArea* Area = nullptr;
    TZORestView* View = nullptr;
    TZOExceptionDisplay Previous;
    int FlashTime = QApplication::cursorFlashTime();
};

Monkey::Monkey() {
    Previous = SetExceptionDisplay([](QWidget*, const std::exception&) {});
    // A caret that does not blink looks the same whenever it is painted.
    QApplication::setCursorFlashTime(0);
    Host.resize(400, 300);
    View = new TZORestView;
    View->SetDataSource(&Source);
    if (GetParam().InScrollArea) {
        Area = new QScrollArea(&Host);
        Area->setWidgetResizable(true);
        View->SetAutoSize(true);
        Area->setWidget(View);
        Area->setGeometry(Host.rect());
    } else {
        View->setParent(&Host);
        View->setGeometry(Host.rect());
    }
    Host.show();
    Host.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&Host));
    View->setFocus();
}

Monkey::~Monkey() {
    View->SetDataSource(nullptr);
    QApplication::setCursorFlashTime(FlashTime);
    SetExceptionDisplay(std::move(Previous));
}

void Monkey::Act() {
    const int what = Random(1000);
    if (what < 500)
        PressAnyKey();
    else if (what < 680)
        UseMouse();
    else if (what < 780)
        TurnWheel(View, (Random(5) - 2) * 120);
    else if (what < 960)
        ChangeRows();
    else if (what < 980)
        Compose();
    else
        ChangeSurroundings();
}

void Monkey::PressAnyKey() {
    const std::vector<QKeyCombination>& keys = MonkeyKeys();
    QWidget* target = QApplication::focusWidget();
    const QKeyCombination key = keys[static_cast<size_t>(Random(int(keys.size())))];
    QTest::keyClick(target ? target : View, key.key(), key.keyboardModifiers());
}

void Monkey::UseMouse() {
    QWindow* window = Host.windowHandle();
    const QPoint point = AnyPoint();
    switch (Random(10)) {
    case 0:
        QTest::mouseDClick(window, Qt::LeftButton, Qt::NoModifier, point);
        break;
    case 1:
    case 2:
    case 3:
        QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, point);
        break;
    default:
        QCursor::setPos(Host.mapToGlobal(point));
        QTest::mouseMove(window, point);
        break;
    }
}

void Monkey::ChangeRows() {
    TZOViewRow* row = AnyRow();
    const int what = Random(12);
    if (!row || View->GetRowCount() < 20) {
        Source.Updating([&] {
            for (int i = 0; i < 30; ++i)
                Source.Add(Source.Make());
        });
    } else if (what == 0) {
        Source.InsertBefore(row, Source.Make());
    } else if (what == 1) {
        Source.InsertAfter(row, Source.Make());
    } else if (what < 5 || View->GetRowCount() > 300) {
        Source.Remove(row);
    } else if (what == 5) {
        row->SetLevel(Random(6));
    } else if (what == 6) {
        row->Changed();
    } else if (what == 7) {
        MoveRun();
    } else if (what == 8) {
        View->SelectRow(Random(8) == 0 ? nullptr : row, static_cast<TZOShowEditor>(Random(sePrevChunk + 1)));
    } else if (what == 9) {
        View->ScrollTo(row);
    } else if (what == 10) {
        // A row that is moved to where another one stands.
        if (TZOViewRow* other = AnyRow(); other != row)
            Source.InsertAfter(other, row);
    } else if (Random(20) == 0) {
        View->RefreshContent();
    }
}

void Monkey::MoveRun() {
    const int count = View->GetRowCount();
    const int first = Random(count);
    const int last = qMin(count - 1, first + Random(20));
    const int anchor = Random(count);
    if (anchor >= first && anchor <= last)
        return;
    if (Random(2))
        Source.MoveRangeBefore(View->RowAt(anchor), View->RowAt(first), View->RowAt(last));
    else
        Source.MoveRangeAfter(View->RowAt(anchor), View->RowAt(first), View->RowAt(last));
}

void Monkey::ChangeSurroundings() {
    switch (Random(8)) {
    case 0: {
        QFont font = View->font();
        font.setPointSize(7 + Random(8));
        View->setFont(font);
        break;
    }
    case 1:
    case 2: {
        Host.resize(200 + Random(300), 100 + Random(300));
        QWidget* outer = Area ? static_cast<QWidget*>(Area) : View;
        outer->setGeometry(Host.rect());
        break;
    }
    case 3:
        View->ScrollTo(Random(qMax(1, View->ContentHeight())));
        break;
    case 4:
        if (Area)
            Area->verticalScrollBar()->setValue(Random(qMax(1, Area->verticalScrollBar()->maximum())));
        break;
    case 5:
        View->InvalidateAllLayouts();
        break;
    default:
        View->setFocus();
        break;
    }
}

void Monkey::Compose() {
    QObject* target = QApplication::focusObject();
    if (!target)
        return;
    QInputMethodEvent event(Random(2) ? QStringLiteral("にほ") : QString(), {});
    if (Random(2))
        event.setCommitString(QStringLiteral("日"));
    QApplication::sendEvent(target, &event);
}

bool Monkey::MayHaveLayout(const TZOViewRowLayout* ALayout) const {
    const TZOViewRow* row = ALayout->Row();
    const int margin = Area ? 4 * View->RowHeight() : 0;
    return row == View->Selected() || (!View->Editor()->isHidden() && View->Editor()->Row() == row) ||
           (!View->Hover()->isHidden() && View->Hover()->Row() == row) ||
           ALayout->Bounds().intersects(View->ExposedRect().adjusted(0, -margin, 0, margin));
}

void Monkey::CheckLayouts() {
    const QRect shown = View->ExposedRect();
    int covered = 0;
    for (const TZOViewRowLayout* layout = View->Layouts().GetFirst(); layout; layout = layout->Next()) {
        ASSERT_EQ(layout->Row()->Layout(), layout);
        ASSERT_TRUE(MayHaveLayout(layout)) << testing::PrintToString(layout->Bounds()) << " is out of "
                                           << testing::PrintToString(View->ExposedRect());
        ASSERT_EQ(layout->Bounds().top(),
                  View->IndexOfRow(layout->Row()) * View->RowHeight() - View->YScroll());
        covered += (layout->Bounds() & shown).height();
    }
    ASSERT_EQ(covered,
              qMax(0, qMin(shown.bottom() + 1, View->ContentHeight() - View->YScroll()) - shown.top()))
        << "every row in sight has a layout";
    ASSERT_EQ(View->YScroll(), View->AdjustScrollOffset(View->YScroll()));
    ASSERT_EQ(View->ContentHeight(), View->GetRowCount() * View->RowHeight());
}

void Monkey::CheckEditors() {
    ASSERT_FALSE(View->Editor()->hasFocus() && View->Hover()->hasFocus());
    for (const TZOInplaceEditor* editor : {View->Editor(), View->Hover()}) {
        ASSERT_TRUE(!editor->isHidden() || !editor->Modified());
        ASSERT_TRUE(editor->isHidden() || View->IndexOfRow(editor->Row()) < View->GetRowCount());
    }
    ASSERT_TRUE(!View->EditorShown() || View->Editor()->Row() == View->Selected());
    ASSERT_TRUE(!View->Selected() || View->IndexOfRow(View->Selected()) < View->GetRowCount());
}

void Monkey::CheckRows() {
    int index = 0;
    const TZOViewRow* last = nullptr;
    for (TZOViewRow* row = View->GetFirst(); row; row = row->Next(), ++index) {
        ASSERT_EQ(row->Prev(), last);
        ASSERT_EQ(row->Source(), &Source);
        ASSERT_EQ(View->IndexOfRow(row), index);
        ASSERT_EQ(View->RowAt(index), row);
        ASSERT_TRUE(!row->Layout() || row->Layout()->List() == &View->Layouts());
        last = row;
    }
    ASSERT_EQ(index, View->GetRowCount());
    ASSERT_EQ(View->GetLast(), last);
}

void Monkey::CheckScreen() {
    QCoreApplication::processEvents();
    const QImage screen =
        Host.screen()->grabWindow(Host.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    const QImage fresh = Host.grab().toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_EQ(screen.size(), fresh.size());
    ASSERT_EQ(screen, fresh) << "what is on the screen is what painting everything anew gives";
}

} // namespace

TEST_P(Monkey, LeavesTheViewWhole) {
    for (int step = 0; step < EventCount; ++step) {
        SCOPED_TRACE(testing::Message() << "seed " << GetParam().Seed << ", event " << step);
        Act();
        CheckLayouts();
        CheckEditors();
        if (step % 100 == 0)
            CheckRows();
        if (step % 500 == 0)
            CheckScreen();
        if (HasFatalFailure())
            return;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeded, Monkey,
                         testing::Values(TMonkeyCase{20240, false}, TMonkeyCase{20241, true}));
