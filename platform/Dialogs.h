// The dialogs that ask the user for a file or a text, and the way out to the file manager: one seam, so that
// a test or another host can answer instead.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

class QWidget;

/// What the user is asked. The base class asks with the desktop's dialogs; AParent may be null. Captions,
/// prompts and names are shown as plain text.
class TZODialogs {
public:
    virtual ~TZODialogs() = default;

    /// An existing file's path; nothing when the user cancelled. AInitial is a file or folder, or empty.
    virtual std::optional<QString> OpenFile(QWidget* AParent, const QString& ACaption,
                                            const QString& AInitial = {}, const QString& AFilter = {});
    /// The same for any number of files; empty when the user cancelled.
    virtual QStringList OpenFiles(QWidget* AParent, const QString& ACaption, const QString& AInitial = {},
                                  const QString& AFilter = {});
    /// A path to write to, whose overwriting the user has agreed to; nothing when the user cancelled.
    virtual std::optional<QString> SaveFile(QWidget* AParent, const QString& ACaption,
                                            const QString& AInitial = {}, const QString& AFilter = {});
    /// A line of text that starts as AValue; nothing when the user cancelled.
    virtual std::optional<QString> InputQuery(QWidget* AParent, const QString& ACaption,
                                              const QString& APrompt, const QString& AValue = {});
    /// Whether the user agrees to what AQuestion asks.
    virtual bool Confirm(QWidget* AParent, const QString& ACaption, const QString& AQuestion);
    /// Opens the file manager with AFileName selected, or its folder where there is no file manager that can.
    /// Returns at once.
    virtual void RevealFile(const QString& AFileName);
};

/// The dialogs in use.
TZODialogs& Dialogs();
/// Puts ADialogs in the place of those in use and returns the ones that were set before, null for the
/// desktop's. ADialogs is not owned; null goes back to the desktop's.
TZODialogs* SetDialogs(TZODialogs* ADialogs);
