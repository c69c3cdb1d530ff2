// What a user waits for who has just started the program: one task in a process of its own, on a document
// whose bytes are not in the page cache.
#pragma once

namespace OpenApiCold {

/// Runs a task in this process, which does nothing else, and prints its milliseconds. Returns the process's
/// exit code: 1 for an unknown task.
///   dom      reads the document's bytes and parses them with simdjson
///   list     the document to its operations
///   all      the document to all of its types
///   first    the first use of an operation, after the list
///   window   from the drop of the document on the explorer's window to its operations being painted
int RunTask(const char* ATask);

/// The median of several runs of a task, in milliseconds, each after the document's pages were dropped.
double Time(const char* ATask);
/// The same for the whole process of "zoapi operations".
double ZoApi();

} // namespace OpenApiCold
