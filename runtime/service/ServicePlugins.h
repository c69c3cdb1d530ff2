// Service plug-ins: shared libraries that register service classes.
#pragma once

#include <QList>
#include <QString>

#include <memory>
#include <vector>

class QLibrary;

/// Takes the classes of a plug-in out again. No instance of them is left by then.
using TZOStopServices = void (*)();

/// Begins the one function that a service plug-in exports. It registers its classes and returns what takes
/// them out again, or null where there is nothing to do. What it raises is the reason for skipping it.
#define ZO_START_SERVICES extern "C" Q_DECL_EXPORT TZOStopServices ZOStartServices()

/// The service plug-ins of a program, from when they are loaded until this dies.
class TZOServicePlugins {
public:
    struct TFailure {
        QString FileName; ///< with its path
        QString Reason;
        /// One sentence for the user.
        QString ToText() const;
    };

    TZOServicePlugins();
    TZOServicePlugins(const TZOServicePlugins&) = delete;
    TZOServicePlugins& operator=(const TZOServicePlugins&) = delete;
    /// Stops the plug-ins, the last one first. Their code stays in memory.
    ~TZOServicePlugins();

    /// Loads the shared libraries of a folder by name; one that fails is skipped. A missing folder is an
    /// empty one, and a file whose name was loaded from another folder before is left alone.
    void Load(const QString& AFolder);
    /// Loads the user's folder, then the installed one.
    void LoadAll();

    /// What could not be loaded.
    const QList<TFailure>& Failures() const noexcept { return FFailures; }

    /// Beside the runtime's own library.
    static QString InstalledFolder();
    /// In the user's data folder: "zobridgework/services".
    static QString UserFolder();

private:
    struct TPlugin;

    void LoadFile(const QString& AFileName);

    std::vector<TPlugin> FPlugins;
    QList<TFailure> FFailures;
};
