// The values of a request, as texts by their places, on the screen and at the server.
#pragma once

#include "samples/SampleServer.h"

#include <map>
#include <string>

class TZORestView;

/// "medium/tracks/0/title" -> "Dawn".
using TValueTexts = std::map<std::string, std::string>;

/// Where each property of a request travels.
struct TPlaces {
    enum TPlace { Query, Header, Cookie, Body, Form, Part };
    /// With the properties that are in it: "/media/{id}".
    std::string Path;
    /// The rest; a header by the name it has in the explorer, behind it what it is called on its way.
    std::map<std::string, TPlace> Properties = {};
    std::map<std::string, std::string> HeaderNames = {};
    /// Lists whose elements travel in one text between bars.
    std::string Piped = {};
};

/// What the view shows, without what it only offers. Raises std::runtime_error when not all of it is in
/// sight.
TValueTexts ShownValues(const TZORestView& AView);
/// What arrived. AShown tells only which values are free JSON, which is shown as one text.
TValueTexts SentValues(const TSampleRequest& ARequest, const TPlaces& APlaces, const TValueTexts& AShown);
/// The values within a JSON text, as those of APath; AShown as above. A text that is no JSON is itself.
void AddJsonValues(const std::string& AJson, const std::string& APath, const TValueTexts& AShown,
                   TValueTexts& AValues);
