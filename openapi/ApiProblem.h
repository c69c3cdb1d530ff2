// What is wrong with an API document.
#pragma once

#include <QString>

#include <vector>

/// One part of a document that could not be read, or not as it stands. The rest is imported without it.
struct TZOApiProblem {
    QString File; ///< the file's name with its path
    int Line = 0; ///< counts from 1; 0 where no line is known
    /// Where in the file, as a JSON pointer (RFC 6901); empty for the whole file.
    QString Pointer;
    QString Message; ///< a sentence

    /// "FILE:LINE: POINTER: MESSAGE", without what is not known.
    QString ToText() const;
};

using TZOApiProblems = std::vector<TZOApiProblem>;
