#include "samples/LibraryRoutes_p.h"

#include <QCryptographicHash>

namespace {

constexpr std::size_t MaxCoverBytes = std::size_t(64) << 20;

/// The value of a multipart text field; nothing when it was not sent.
std::optional<std::string> Field(const TSampleCall& ACall, const std::string& AName) {
    if (!ACall.Request.has_file(AName))
        return {};
    return ACall.Request.get_file_value(AName).content;
}

void UploadCover(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const int64_t id = ACall.PathId();
    NeedMedium(ACatalogue, id);
    if (!ACall.Request.has_file("cover"))
        throw ERefusal::BadField("cover", "is missing");
    const auto [first, last] = ACall.Request.files.equal_range("cover");
    if (std::next(first) != last)
        throw ERefusal::BadField("cover", "was sent more than once");
    const httplib::MultipartFormData& cover = first->second;
    if (cover.content.size() > MaxCoverBytes)
        throw ERefusal(413, "A cover may have 64 MB at most.", "cover");
    TJson answer{{"mediumId", id}, {"fileName", cover.filename}, {"contentType", cover.content_type}};
    if (const auto caption = Field(ACall, "caption"))
        answer["caption"] = *caption;
    if (const auto front = Field(ACall, "front"))
        answer["front"] = SampleText::Boolean(*front, "front");
    answer["size"] = cover.content.size();
    const auto bytes = QByteArray::fromRawData(cover.content.data(), qsizetype(cover.content.size()));
    answer["sha256"] = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString();
    ACatalogue.Covers[id] = {cover.content, cover.content_type};
    ACall.Answer(answer, 201);
}

void DownloadCover(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    const int64_t id = ACall.PathId();
    NeedMedium(ACatalogue, id);
    const auto uploaded = ACatalogue.Covers.find(id);
    if (uploaded == ACatalogue.Covers.end())
        return ACall.AnswerShared(std::make_shared<const std::string>(PaintCover(id)), "image/png");
    const std::string& type = uploaded->second.ContentType;
    ACall.AnswerShared(std::make_shared<const std::string>(uploaded->second.Content),
                       type.empty() ? "application/octet-stream" : type);
}

std::string CsvCell(const TJson& AValue) {
    std::string text = AValue.is_string() ? AValue.get<std::string>() : AValue.is_null() ? "" : AValue.dump();
    if (text.find_first_of(",\"\r\n") == std::string::npos)
        return text;
    for (std::size_t i = 0; (i = text.find('"', i)) != std::string::npos; i += 2)
        text.insert(i, 1, '"');
    return '"' + text + '"';
}

void ExportCatalogue(TSampleCall& ACall, TLibraryCatalogue& ACatalogue) {
    static const std::vector<std::string> all = {"id", "kind", "title", "year", "genre", "rating"};
    const auto kind = ACall.Param("kind");
    if (kind)
        SampleText::OneOf(*kind, "kind", TLibraryCatalogue::Kinds());
    const auto names = ACall.Param("columns");
    const std::vector<std::string> columns = names ? SampleText::Split(*names, '|') : all;
    std::string text;
    for (const std::string& column : columns)
        text += (text.empty() ? "" : ",") + SampleText::OneOf(column, "columns", all);
    text += "\r\n";
    for (const auto& [id, medium] : ACatalogue.Media) {
        if (kind && medium["kind"] != *kind)
            continue;
        for (std::size_t i = 0; i < columns.size(); ++i)
            text += (i ? "," : "") + CsvCell(medium.value(columns[i], TJson()));
        text += "\r\n";
    }
    ACall.Response.set_header("Content-Disposition", "attachment; filename=\"catalogue.csv\"");
    ACall.AnswerShared(std::make_shared<const std::string>(std::move(text)), "text/csv; charset=utf-8");
}

} // namespace

void AddFileRoutes(TSampleRoutes& ARoutes, const PCatalogue& ACatalogue) {
    const auto with = [&](void (*AHandler)(TSampleCall&, TLibraryCatalogue&)) {
        return [ACatalogue, AHandler](TSampleCall& ACall) { AHandler(ACall, *ACatalogue); };
    };
    ARoutes.Add("POST", "/media/([^/]+)/cover", with(UploadCover));
    ARoutes.Add("GET", "/media/([^/]+)/cover", with(DownloadCover));
    ARoutes.Add("GET", "/export\\.csv", with(ExportCatalogue));
}
