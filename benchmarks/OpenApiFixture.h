// The large document, in JSON and in YAML, and what is measured outside this program or in its window.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace OpenApiFixture {

/// Raise std::runtime_error when the packages are not installed.
QString JsonFile();
/// The same document in YAML, made by a library of node's at first use.
QString YamlFile();
/// Its bytes, with room behind them for simdjson.
const QByteArray& Json();
const QByteArray& Yaml();

/// Milliseconds of a clock that never jumps.
double Now();
/// The median of ACount runs, in milliseconds.
double Median(int ACount, const std::function<void()>& AStep);

/// Milliseconds of a task of openapi-peers.mjs, without the start of node.
double Node(const char* ATask);
/// Milliseconds of a run of "zoapi operations", with the start of the process.
double ZoApi();

/// Medians in the explorer's window, in milliseconds.
struct TWindowTimes {
    double ListPainted = 0;    ///< from the drop of the file to its operations being painted
    double RequestPainted = 0; ///< from choosing an operation to its page being painted
    double KeyPainted = 0;     ///< from a key in the search to the list being painted
};
/// Measured once.
const TWindowTimes& Window();
/// One run, in settings of its own.
TWindowTimes WindowOnce();

} // namespace OpenApiFixture
