#include "jsoneditor/view/RestView.h"

#include "jsoneditor/view/AccessibleView_p.h"
#include "jsoneditor/view/DataSource.h"
#include "jsoneditor/view/ExposureWatch_p.h"
#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RowIndex_p.h"
#include "jsoneditor/view/RowMeasure_p.h"
#include "jsoneditor/view/ScrollMath_p.h"
#include "jsoneditor/view/ShapedTexts_p.h"
#include "jsoneditor/view/ViewScrollBar_p.h"
#include "platform/ExceptionDisplay.h"
#include "platform/TipText.h"

#include <QApplication>
#include <QEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>
#include <limits>

namespace {

constexpr int RowPadding = 12;
/// Rows beyond the exposed part of an auto-sized view that are laid out, too.
constexpr int ExposureMargin = 4;

QFont DefaultFont() {
    QFont font;
    font.setFamilies({QStringLiteral("Courier New"), QStringLiteral("Liberation Mono"),
                      QStringLiteral("DejaVu Sans Mono"), QStringLiteral("monospace")});
    font.setStyleHint(QFont::Monospace);
    font.setPointSize(10);
    return font;
}

} // namespace

TZORestView::TZORestView(QWidget* AParent)
    : QWidget(AParent),
      FRows([this] { RowsTouched(); }),
      FIndex(std::make_unique<TZORowIndex>()),
      FTexts(std::make_unique<TZOShapedTexts>()) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFont(DefaultFont());
    FScrollBar = new TZOViewScrollBar(this);
    FScrollBar->hide();
    FScrollBar->setCursor(Qt::ArrowCursor);
    PlaceScrollBar();
    // A wheel over the bar is the view's like any other.
    FScrollBar->installEventFilter(this);
    connect(FScrollBar, &QAbstractSlider::actionTriggered, this, &TZORestView::ScrollBarAction);
    FEditor = new TZOInplaceEditor(this);
    FHover = new TZOInplaceEditor(this);
    UpdateEditorsColor();
    FExposure = std::make_unique<TZOExposureWatch>(this, [this] { ExposureChanged(); });
    FAccessible = std::make_unique<TZOAccessibleRows>(this);
    // Fonts that come and go may be the ones that stand in for missing characters.
    connect(qApp, &QGuiApplication::fontDatabaseChanged, this, [this] { FTexts->Clear(); });
    connect(qApp, &QApplication::focusChanged, this, &TZORestView::FocusChanged);
}

TZORestView::~TZORestView() {
    // Nothing is shown from here on: the bracket stays open.
    ++FUpdateCount;
    disconnect(qApp, nullptr, this, nullptr);
    FExposure.reset();
    ClearRows();
    ClearLayouts();
    FAccessible.reset();
    delete FEditor;
    delete FHover;
    if (FDataSource) {
        FDataSource->FView = nullptr;
        if (FOwnDataSource)
            delete FDataSource;
    }
}

void TZORestView::UpdateView() {
    FRepaintAll = true;
    RequestUpdate();
}

void TZORestView::RunPutOffUpdate() {
    FNeedUpdate = false;
    RequestUpdate();
}

void TZORestView::RunUpdate() {
    const int oldScroll = FYScroll;
    const int oldBottom = FContentHeight - FYScroll;
    {
        // Changes of size and place that the preparation causes are all covered by the layout after it.
        ++FUpdateCount;
        const auto guard = qScopeGuard([this] { --FUpdateCount; });
        PrepareUpdate();
    }
    FNeedUpdate = false;
    CarryPainted(oldScroll, oldBottom);
    LayoutRows();
    UpdateEditor();
    UpdateTracking();
    UpdateScrollBar();
    FAccessible->Updated();
    if (std::exchange(FToldRevision, FRevision) != FRevision)
        Q_EMIT RowsChanged();
}

void TZORestView::CarryPainted(int AOldScroll, int AOldBottom) {
    const QRect client = ClientRect();
    const int delta = AOldScroll - FYScroll;
    FIsRepainting = std::exchange(FRepaintAll, false) || qAbs(delta) >= client.height();
    if (FIsRepainting) {
        // The bar sees to itself.
        update(client);
        return;
    }
    if (delta != 0) {
        // What is painted moves along with its rows; only rows that come into sight are painted.
        MovePicture(client, delta);
        for (TZOViewRowLayout* layout = FLayouts.GetFirst(); layout; layout = layout->Next())
            layout->FBounds.translate(0, delta);
    }
    const int bottom = FContentHeight - FYScroll;
    const int end = qMin(AOldBottom + delta, bottom);
    if (bottom != AOldBottom + delta && end <= client.bottom())
        update(client.adjusted(0, qMax(0, end), 0, 0));
}

void TZORestView::MovePicture(const QRect& AArea, int ADown) {
    // Qt moves no picture with a hole in it: it would paint all of it again.
    if (!FUncovered.isEmpty())
        repaint(std::exchange(FUncovered, {}));
    scroll(0, ADown, AArea);
    for (TZOInplaceEditor* editor : {FEditor, FHover}) {
        if (editor->isHidden())
            continue;
        update((editor->geometry() & AArea).translated(0, ADown));
    }
}

void TZORestView::CarryShifted(const TZORowRange& ARange, const QRect& AClient) {
    QRect longest, run;
    int down = 0, runDown = 0;
    const TZOViewRow* row = RowAt(ARange.First);
    for (int i = ARange.First; i <= ARange.Last && row; ++i, row = row->Next()) {
        const QRect bounds = BoundsOfRow(i, AClient);
        const QRect was = row->FLayout ? row->FLayout->FBounds : QRect();
        const int by = was.size() == bounds.size() ? bounds.top() - was.top() : 0;
        run = by != 0 && by == runDown ? run | bounds : bounds;
        runDown = by;
        if (by != 0 && run.height() > longest.height()) {
            longest = run;
            down = by;
        }
    }
    // Moved further than they are high, they would drag along what stands between.
    if (qAbs(down) >= longest.height())
        return;
    MovePicture((longest | longest.translated(0, -down)) & AClient, down);
    for (TZOViewRowLayout* layout = FLayouts.GetFirst(); layout; layout = layout->Next()) {
        const QRect now = layout->FBounds.translated(0, down);
        if (longest.contains(now))
            layout->FBounds = now;
    }
}

void TZORestView::PrepareUpdate() {
    FTextHeight = fontMetrics().height();
    FRowHeight = FTextHeight + RowPadding;
    FContentHeight = static_cast<int>(
        qMin<qint64>(qint64(FRows.GetCount()) * FRowHeight, std::numeric_limits<int>::max()));
    AdjustSize();
    FScrollBar->setVisible(FContentHeight > height() && !IsAsHighAsContent());
    if (FYScrollTask)
        FYScroll = std::exchange(FYScrollTask, nullptr)();
    FYScroll = AdjustScrollOffset(FYScroll);
    ExposeRow();
}

bool TZORestView::IsAsHighAsContent() const { return FAutoSize && FContentHeight <= MaxAutoHeight; }

TZORowRange TZORestView::RowsToLayOut() const {
    const int count = FRows.GetCount();
    if (FAutoSize) {
        const QRect exposed = ExposedRect();
        if (exposed.isEmpty())
            return {};
        const int margin = ExposureMargin * FRowHeight;
        return RowsWithin(exposed.top() + FYScroll - margin, exposed.bottom() + 1 + FYScroll + margin,
                          FRowHeight, count);
    }
    const int clientHeight = ClientRect().height();
    return RowsWithin(FYScroll, FYScroll + qMax(1, clientHeight), FRowHeight, count);
}

std::vector<int> TZORestView::ExtraRows(const TZORowRange& ARange) const {
    std::vector<int> extra;
    if (!FAutoSize)
        return extra;
    // The mouse editor stays on rows in sight, unless it is on its way to become the focused one.
    const std::initializer_list<const TZOViewRow*> kept = {FSelected,
                                                           FEditor->isHidden() ? nullptr : FEditor->Row(),
                                                           FHover->hasFocus() ? FHover->Row() : nullptr};
    for (const TZOViewRow* row : kept) {
        const int index = row ? IndexOfRow(row) : FRows.GetCount();
        if (index < FRows.GetCount() && (index < ARange.First || index > ARange.Last))
            extra.push_back(index);
    }
    std::sort(extra.begin(), extra.end());
    extra.erase(std::unique(extra.begin(), extra.end()), extra.end());
    return extra;
}

void TZORestView::LayoutRows() {
    const QRect client = ClientRect();
    const TZORowRange range = RowsToLayOut();
    if (!FIsRepainting)
        CarryShifted(range, client);
    const std::vector<TZOViewRowLayout*> old = FLayouts.ToArray();
    FLayouts.Clear();
    // Also when a source raises half-way: what was not shown again is dropped, never forgotten.
    const auto dropOld = qScopeGuard([&old] {
        for (TZOViewRowLayout* layout : old) {
            if (!layout->List())
                delete layout;
        }
    });
    const std::vector<int> extra = ExtraRows(range);
    FLaidOutRect = ExposedRect();
    auto next = extra.begin();
    for (; next != extra.end() && *next < range.First; ++next)
        PutLayout(RowAt(*next), *next, client);
    TZOViewRow* row = RowAt(range.First);
    for (int i = range.First; i <= range.Last && row; ++i, row = row->Next())
        PutLayout(row, i, client);
    for (; next != extra.end(); ++next)
        PutLayout(RowAt(*next), *next, client);
}

QRect TZORestView::BoundsOfRow(int AIndex, const QRect& AClient) const {
    return {AClient.left(), AClient.top() + AIndex * FRowHeight - FYScroll, AClient.width(), FRowHeight};
}

void TZORestView::PutLayout(TZOViewRow* ARow, int AIndex, const QRect& AClient) {
    const QRect bounds = BoundsOfRow(AIndex, AClient);
    TZOViewRowLayout* layout = ARow->FLayout;
    if (!layout) {
        auto made = std::make_unique<TZOViewRowLayout>(this, ARow);
        if (FDataSource)
            FDataSource->ConfigureRow(ARow, made.get());
        EditorSetModifiedToLayout(FEditor, made.get());
        made->Filled();
        layout = made.release();
    }
    if (!FIsRepainting && layout->FBounds != bounds)
        update(bounds);
    layout->FBounds = bounds;
    FLayouts.Add(layout);
}

void TZORestView::MeasureLayout(TZOViewRowLayout& ALayout) {
    MeasureRow(ALayout, *FTexts, font(), FRowHeight);
}

void TZORestView::InvalidateLayout(TZOViewRow* ARow) {
    ++FRevision;
    if (!ARow->FLayout)
        return;
    // The rest of the view stays as it is painted.
    delete ARow->FLayout;
    RequestUpdate();
}

void TZORestView::InvalidateAllLayouts() {
    ClearLayouts();
    UpdateView();
}

void TZORestView::ClearLayouts() {
    DoBeginUpdate();
    while (TZOViewRowLayout* first = FLayouts.GetFirst())
        delete first;
    DoEndUpdate();
}

void TZORestView::LayoutRemoved(TZOViewRowLayout* ALayout) {
    if (ALayout->FRow)
        ALayout->FRow->FLayout = nullptr;
    FLayouts.Remove(ALayout);
}

TZOHitTest TZORestView::GetHitTest(const QPoint& APoint) const {
    TZOHitTest hit;
    for (const TZOViewRowLayout* layout = FLayouts.GetFirst(); layout; layout = layout->Next()) {
        if (!layout->Bounds().contains(APoint))
            continue;
        hit.Flags |= htRow;
        hit.Row = layout->Row();
        if (layout->TryGetChunk(APoint - layout->Bounds().topLeft(), hit.Chunk))
            hit.Flags |= htChunk;
    }
    return hit;
}

QRect TZORestView::ClientRect() const {
    return FScrollBar->isHidden() ? rect() : rect().adjusted(0, 0, -FScrollBar->width(), 0);
}

QRect TZORestView::ExposedRect() const {
    QRect exposed = ClientRect();
    QPoint origin;
    for (const QWidget* widget = this; !widget->isWindow() && widget->parentWidget();) {
        exposed.translate(widget->pos());
        origin += widget->pos();
        widget = widget->parentWidget();
        exposed &= widget->rect();
    }
    return exposed.isEmpty() ? QRect() : exposed.translated(-origin);
}

void TZORestView::ExposureChanged() {
    if (!HandleExists() || !isVisible())
        return;
    if (FUpdateCount >= 1)
        FNeedUpdate = true;
    else if (FAutoSize && (ExposedRect() != FLaidOutRect || height() != WantedAutoHeight()))
        GuardedCall(this, [this] { RunUpdate(); });
    else
        UpdateTracking();
}

void TZORestView::SetAutoSize(bool AAutoSize) {
    if (FAutoSize == AAutoSize)
        return;
    FAutoSize = AAutoSize;
    if (!FAutoSize) {
        setMinimumHeight(0);
        setMaximumHeight(QWIDGETSIZE_MAX);
    }
    UpdateView();
}

void TZORestView::SetParentFont(bool AParentFont) { setFont(AParentFont ? QFont() : DefaultFont()); }

void TZORestView::AdjustSize() {
    if (!FAutoSize || !HandleExists())
        return;
    const QScopedValueRollback<bool> guard(FAdjustingSize, true);
    setFixedHeight(WantedAutoHeight());
}

int TZORestView::WantedAutoHeight() const {
    if (FContentHeight <= MaxAutoHeight)
        return FContentHeight;
    for (const QWidget* widget = parentWidget(); widget; widget = widget->parentWidget()) {
        if (const auto* area = qobject_cast<const QScrollArea*>(widget))
            return area->viewport()->height();
    }
    return parentWidget() ? parentWidget()->height() : height();
}

QSize TZORestView::sizeHint() const { return {320, FAutoSize ? height() : 240}; }

QSize TZORestView::minimumSizeHint() const {
    return {64, FAutoSize ? 0 : fontMetrics().height() + RowPadding};
}

bool TZORestView::event(QEvent* AEvent) {
    switch (AEvent->type()) {
    case QEvent::ParentChange:
        // The filters stand on the ancestors of the place the view has left.
        if (FExposure)
            FExposure->Hook();
        break;
    case QEvent::ShortcutOverride:
        if (ClaimKey(static_cast<QKeyEvent*>(AEvent)))
            return true;
        break;
    case QEvent::KeyPress:
        // Before the base class, which takes Tab for moving the focus.
        if (OfferKey(static_cast<QKeyEvent*>(AEvent))) {
            AEvent->accept();
            return true;
        }
        break;
    case QEvent::ToolTip:
        ShowRowHint(static_cast<QHelpEvent*>(AEvent));
        return true;
    default:
        break;
    }
    return QWidget::event(AEvent);
}

void TZORestView::ShowRowHint(const QHelpEvent* AEvent) {
    const TZOHitTest hit = GetHitTest(AEvent->pos());
    QString hint;
    if (FDataSource && hit.Row)
        GuardedCall(this, [&] { hint = FDataSource->RowHint(hit.Row); });
    if (hint.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(AEvent->globalPos(), TipText(hint), this, hit.Row->Layout()->Bounds());
}

void TZORestView::changeEvent(QEvent* AEvent) {
    QWidget::changeEvent(AEvent);
    // The base class reports changes while it is being built, too.
    if (!FEditor || !FHover)
        return;
    if (AEvent->type() == QEvent::FontChange) {
        FEditor->UpdateFont();
        FHover->UpdateFont();
        GuardedCall(this, [this] { InvalidateAllLayouts(); });
    } else if (AEvent->type() == QEvent::PaletteChange || AEvent->type() == QEvent::EnabledChange) {
        UpdateEditorsColor();
        update();
    } else if (AEvent->type() == QEvent::StyleChange) {
        PlaceScrollBar();
        GuardedCall(this, [this] { InvalidateAllLayouts(); });
    }
}

void TZORestView::PlaceScrollBar() {
    const int barWidth = FScrollBar->sizeHint().width();
    FScrollBar->setGeometry(width() - barWidth, 0, barWidth, height());
}

void TZORestView::moveEvent(QMoveEvent* AEvent) {
    QWidget::moveEvent(AEvent);
    ExposureChanged();
}

void TZORestView::resizeEvent(QResizeEvent* AEvent) {
    QWidget::resizeEvent(AEvent);
    PlaceScrollBar();
    // The view's own following of its content changes nothing in a row.
    if (!FAdjustingSize)
        GuardedCall(this, [this] { InvalidateAllLayouts(); });
}

void TZORestView::showEvent(QShowEvent* AEvent) {
    QWidget::showEvent(AEvent);
    GuardedCall(this, [this] { UpdateView(); });
}
