// What the sample library holds: the same for every new server.
#pragma once

#include "samples/SampleHttp_p.h"

#include <map>
#include <memory>

/// A picture, as it was sent or painted.
struct TCoverFile {
    std::string Content;
    std::string ContentType;
};

/// The library's records, as the JSON objects that the service answers with.
struct TLibraryCatalogue {
    /// Fills the catalogue.
    TLibraryCatalogue();

    std::map<int64_t, TJson> Media;
    std::map<int64_t, TJson> Authors;
    std::map<std::string, TJson> Readers; ///< by card
    std::map<int64_t, TJson> Loans;
    std::map<int64_t, TCoverFile> Covers; ///< only those that were uploaded

    /// Copies of a medium that are in the house.
    int64_t CopiesLeft(int64_t AMediumId) const;
    /// The journal of 100,000 checkouts as JSON text; made when it is first asked for.
    std::shared_ptr<const std::string> Checkouts();

    static const std::vector<std::string>& Genres();
    static const std::vector<std::string>& Branches();
    static const std::vector<std::string>& Kinds();

private:
    std::shared_ptr<const std::string> FCheckouts;
};

/// A small PNG picture (RFC 2083) whose colours follow from AMediumId.
std::string PaintCover(int64_t AMediumId);

/// An ISBN of 13 digits from the first 12.
std::string CompleteIsbn(const std::string& AFirst12);
