// The values that a row may have, as a list below its editor.
#pragma once

#include <QListWidget>
#include <QPointer>
#include <QStringList>

class TZORestView;

/// A list over the window of a view, that never takes the focus: the editor keeps it, and the data source
/// passes on the keys that belong to the list while it is open. It closes with the editor.
class TZOChoiceList : public QListWidget {
    Q_OBJECT
public:
    /// Opens below AView's editor, which must be shown, on the choice that starts with its text.
    TZOChoiceList(TZORestView* AView, const QStringList& AChoices);

    /// Up, Down, Enter and Escape; false for any other key, and for Enter when the text in the editor is the
    /// beginning of none of the values.
    bool TakeKey(int AKey, Qt::KeyboardModifiers AShift);

signals:
    /// The user has made his choice, one of the values as it is; the list closes.
    void Chosen(const QString& AText);
    /// The list has lost its editor, or the user does not want it any more.
    void Closed();

protected:
    bool eventFilter(QObject* AObject, QEvent* AEvent) override;

private:
    void Place();
    /// The part of the window that is on the screen.
    QRect Room() const;
    /// Goes along with the editor; closes when it has left the window.
    void Follow();
    void MoveToTyped(const QString& ATyped);
    void Choose();

    /// The values; the items show them as visible text.
    QStringList FChoices;
    /// As a widget: events of its end come when it is no more than that.
    QPointer<QWidget> FEditor;
};
