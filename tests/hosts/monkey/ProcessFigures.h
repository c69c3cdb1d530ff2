// What this process holds of its machine.
#pragma once

#include <QtGlobal>

#include <ostream>

struct TProcessFigures {
    /// Resident, in KiB.
    qint64 Memory = 0;
    /// Allocated and not freed, in KiB.
    qint64 Allocated = 0;
    int Descriptors = 0;
    int Threads = 0;

    static TProcessFigures Now();
};

std::ostream& operator<<(std::ostream& AStream, const TProcessFigures& AFigures);

/// Whether the memory of this process says something about the program: under a sanitizer it does not.
bool CountsMemory();
/// How many times slower than usual everything is.
int Slowness();
