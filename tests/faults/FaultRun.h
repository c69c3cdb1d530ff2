// Runs a program once for each of its calls that can fail.
#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// What a run of the program left.
struct TFaultOutcome {
    QString Folder; ///< its own, which was named "run" while it ran
    int ExitCode = 0;
    QByteArray Output;
    QByteArray Errors;
    /// The call that failed and what it was on, as "pwrite64 /tmp/x/settings.db"; empty when none did.
    QByteArray Failed;
    /// All that failed, Failed first.
    QByteArrayList AllFailed;

    bool IsGood() const { return ExitCode == 0; }
    QString Path(const QString& AName) const { return Folder + u'/' + AName; }
    /// The content of the file of that name, or "(none)".
    QByteArray Content(const QString& AName) const;
    /// The names of all files, hidden ones included, in order.
    QStringList Files() const;
};

/// A program, what it finds when it starts, and what has to hold when it has ended.
struct TFaultScript {
    QString Program;
    /// "%1" is the folder.
    QStringList Arguments;
    /// Puts into the folder what the program finds there.
    std::function<void(const QString& AFolder)> Prepare;
    /// Besides what holds for every run.
    std::function<void(const TFaultOutcome& AOutcome)> Check;
    /// Called again and again while the program runs; may be empty.
    std::function<void(const QString& AFolder)> Meanwhile = {};
    /// It fails even where no call does.
    bool AlwaysComplains = false;
};

/// Runs AScript with its first call of a kind failing, then its second, and so on until nothing failed, for
/// each of AKinds ("open", "read", "write", "fsync", "rename", "unlink", "connect", "send", "recv"). No run
/// may crash or leak, one that fails has to say why, and the one in which nothing failed has to be good.
/// Where AIsLasting, all is done once more with every later call of the kind failing, too.
void RunWithEveryFault(const TFaultScript& AScript, const std::vector<const char*>& AKinds,
                       bool AIsLasting = false);
