// What assistive technology sees of a view: a list of the rows in sight.
#pragma once

#include <QAccessible>
#include <QString>

#include <functional>
#include <unordered_map>
#include <vector>

class TZORestView;
class TZOViewRow;
class TZOViewRowLayout;

/// What is read out for a row: its first text, and all that follows it.
struct TZORowSpeech {
    QString Name;
    QString Value;
};
/// Where events for assistive technology go; nothing leaves it to the platform, which hears them while such
/// technology runs. Answers what was set before.
using TZOAnnouncer = std::function<void(QAccessibleEvent&)>;
TZOAnnouncer SetAnnouncer(TZOAnnouncer AAnnouncer);

TZORowSpeech SpeechOf(const TZOViewRowLayout& ALayout);

/// The accessible objects of one view's rows, made when they are asked for. Those of rows that have left the
/// sight go with the next update, so their number is bounded by what is visible.
class TZOAccessibleRows {
public:
    explicit TZOAccessibleRows(TZORestView* AView);
    ~TZOAccessibleRows();
    TZOAccessibleRows(const TZOAccessibleRows&) = delete;
    TZOAccessibleRows& operator=(const TZOAccessibleRows&) = delete;

    /// Null for a row that is not in the view.
    QAccessibleInterface* Of(TZOViewRow* ARow);
    /// The row is about to go.
    void Forget(const TZOViewRow* ARow);
    /// The view has laid out its rows anew.
    void Updated();

    void AnnounceSelection();
    void AnnounceEdit(TZOViewRow* ARow);

private:
    TZORestView* FView;
    std::unordered_map<const TZOViewRow*, QAccessible::Id> FIds;
    std::vector<const TZOViewRow*> FInSight;
};
