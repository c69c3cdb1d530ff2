#include "tests/hosts/SentValues.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowChunk.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

using TJson = nlohmann::ordered_json;

/// "True" on the screen is "true" on its way.
std::string Plain(const std::string& AText) {
    return AText == "True" ? "true" : AText == "False" ? "false" : AText;
}

void Flatten(const TJson& AJson, const std::string& APath, const TValueTexts& AShown, TValueTexts& AValues) {
    const bool isWhole = AShown.count(APath) > 0;
    if (AJson.is_object() && !isWhole) {
        for (const auto& [key, value] : AJson.items())
            Flatten(value, APath + '/' + key, AShown, AValues);
    } else if (AJson.is_array() && !isWhole) {
        for (std::size_t i = 0; i < AJson.size(); ++i)
            Flatten(AJson[i], APath + '/' + std::to_string(i), AShown, AValues);
    } else {
        AValues[APath] = AJson.is_string() ? AJson.get<std::string>() : AJson.dump();
    }
}

void AddPathValues(const std::string& ATemplate, const std::string& APath, TValueTexts& AValues) {
    const std::size_t open = ATemplate.find('{');
    if (open == std::string::npos)
        return;
    const std::size_t close = ATemplate.find('}');
    const std::size_t tail = ATemplate.size() - close - 1;
    // The path begins with the service's own.
    const std::size_t start = APath.find(ATemplate.substr(0, open)) + open;
    AValues[ATemplate.substr(open + 1, close - open - 1)] = APath.substr(start, APath.size() - tail - start);
}

void AddParams(const TSampleRequest& ARequest, const TPlaces& APlaces, const TValueTexts& AShown,
               TValueTexts& AValues) {
    std::map<std::string, int> counts;
    for (const auto& [key, value] : ARequest.Params) {
        std::string path = key;
        if (const std::size_t open = key.find('['); open != std::string::npos)
            path = key.substr(0, open) + '/' + key.substr(open + 1, key.size() - open - 2);
        if (key == APlaces.Piped) {
            int place = 0;
            for (const QString& element : QString::fromStdString(value).split('|'))
                AValues[path + '/' + std::to_string(place++)] = element.toStdString();
        } else if (ARequest.Params.count(key) > 1 || AShown.count(key + "/0") > 0) {
            AValues[path + '/' + std::to_string(counts[key]++)] = value;
        } else {
            AValues[path] = value;
        }
    }
}

std::string CookieOf(const TSampleRequest& ARequest, const std::string& AName) {
    const auto found = ARequest.Headers.find("Cookie");
    const std::string text = found == ARequest.Headers.end() ? "" : found->second;
    return QUrl::fromPercentEncoding(
               QByteArray::fromStdString(text.substr(text.find(AName + '=') + AName.size() + 1)))
        .toStdString();
}

/// A file that arrived whole stands for the path that was shown.
std::string TextOf(const TSampleRequest::TPart& APart, const std::string& AShown) {
    if (APart.FileName.empty())
        return APart.Content;
    QFile file(QString::fromStdString(AShown));
    const bool isSame = file.open(QIODevice::ReadOnly) && file.readAll().toStdString() == APart.Content &&
                        QFileInfo(file).fileName().toStdString() == APart.FileName;
    return isSame ? AShown : "another file: " + APart.FileName;
}

} // namespace

TValueTexts ShownValues(const TZORestView& AView) {
    TValueTexts values;
    struct TOpen {
        std::string Path;
        int Elements;
    };
    std::vector<TOpen> open; // the containers around the row, by level
    for (const TZOViewRow* row = AView.GetFirst(); row; row = row->Next()) {
        const TZOViewRowLayout* layout = row->Layout();
        if (!layout)
            throw std::runtime_error("a row is out of sight");
        const int count = layout->GetChunkCount();
        const TZORowChunk* last = layout->GetChunks(count - 1);
        const std::string text = last->Text().toStdString();
        if (last->TextToken() == ctGray || text == "]" || text == "}")
            continue;
        open.resize(static_cast<std::size_t>(row->Level()));
        std::string path;
        if (!open.empty()) {
            const std::string key = count > 1 ? layout->GetChunks(0)->Text().toStdString()
                                              : std::to_string(open.back().Elements++);
            path = open.back().Path.empty() ? key : open.back().Path + '/' + key;
        }
        if (text == "[" || text == "{")
            open.push_back({path, 0});
        else if (!text.empty() && (text.front() == '{' || text.front() == '['))
            values[path] = TJson::parse(text).dump();
        else
            values[path] = Plain(text);
    }
    return values;
}

TValueTexts SentValues(const TSampleRequest& ARequest, const TPlaces& APlaces, const TValueTexts& AShown) {
    TValueTexts values;
    AddPathValues(APlaces.Path, ARequest.Path, values);
    AddParams(ARequest, APlaces, AShown, values);
    for (const auto& [name, place] : APlaces.Properties) {
        if (place == TPlaces::Body) {
            Flatten(TJson::parse(ARequest.Body), name, AShown, values);
        } else if (place == TPlaces::Header) {
            const auto found = ARequest.Headers.find(APlaces.HeaderNames.at(name));
            if (found != ARequest.Headers.end())
                values[name] = found->second;
        } else if (place == TPlaces::Cookie) {
            values[name] = CookieOf(ARequest, name);
        } else if (place == TPlaces::Part) {
            const auto part = ARequest.Parts.find(name);
            if (part != ARequest.Parts.end())
                values[name] = TextOf(part->second, AShown.count(name) ? AShown.at(name) : "");
        }
    }
    return values;
}

void AddJsonValues(const std::string& AJson, const std::string& APath, const TValueTexts& AShown,
                   TValueTexts& AValues) {
    if (TJson::accept(AJson))
        Flatten(TJson::parse(AJson), APath, AShown, AValues);
    else
        AValues[APath] = AJson;
}
