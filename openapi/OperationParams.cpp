#include "openapi/OperationMaker_p.h"

#include "platform/Utf8.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

const char* PlaceName(TZOParamPlace APlace) {
    switch (APlace) {
    case ppPath:
        return "path";
    case ppQuery:
        return "query";
    case ppHeader:
        return "header";
    case ppCookie:
        return "cookie";
    default:
        return "body";
    }
}

struct TStyleName {
    const char* Name;
    TZOParamStyle Style;
};

constexpr TStyleName Styles[] = {{"simple", psSimple},
                                 {"form", psForm},
                                 {"label", psLabel},
                                 {"matrix", psMatrix},
                                 {"spaceDelimited", psSpaceDelimited},
                                 {"pipeDelimited", psPipeDelimited},
                                 {"deepObject", psDeepObject}};

} // namespace

TOperationMaker::TOperationMaker(TApiModel& AModel, const TApiOperation& AOperation,
                                 TZORestService::TOper& AOper)
    : FModel(AModel), FOperation(AOperation), FOper(AOper) {}

void TOperationMaker::Run() {
    ReadParams();
    if (FModel.IsSwagger2())
        ReadSwaggerBody();
    else
        ReadBody();
    ReadResponse();
}

void TOperationMaker::Add(TProperty AProperty) {
    const QString wire = AProperty.Name;
    // Of one name from different places the later one says where it goes.
    if (FNames.contains(AProperty.Name))
        AProperty.Name += u'_' + QLatin1String(PlaceName(AProperty.Binding.Place));
    const QString base = AProperty.Name;
    for (int i = 2; !FNames.insert(AProperty.Name).second; ++i)
        AProperty.Name = base + QString::number(i);
    AProperty.Binding.Property = AProperty.Name;
    if (AProperty.Name != wire && AProperty.Binding.Place != ppBody)
        AProperty.Binding.WireName = wire.toUtf8();
    TZOObjectBuilder request = FOperation.Request;
    request.Property(AProperty.Name, AProperty.Type, AProperty.Options);
    FOper.Http.Params.push_back(std::move(AProperty.Binding));
}

void TOperationMaker::ReadParams() {
    std::vector<TDocView> params;
    CollectParams(FOperation.PathItem["parameters"], params);
    CollectParams(FOperation.Oper["parameters"], params);
    for (const TDocView& param : params)
        ReadParam(param);
    AddMissingPathParams();
}

void TOperationMaker::CollectParams(TDocView AParams, std::vector<TDocView>& AInto) {
    if (AParams && !AParams.IsArray())
        FModel.Source.Report(AParams, QStringLiteral("Parameters have to be a list."));
    for (const auto& [key, value] : AParams.IsArray() ? AParams.Entries() : TDocView().Entries()) {
        const TDocView param = FModel.Source.Resolve(value);
        if (!param)
            continue;
        const QString name = param["name"].Text();
        const QString place = param["in"].Text();
        if (name.isEmpty() || place.isEmpty()) {
            FModel.Source.Report(param, QStringLiteral("A parameter has to have a name and a place."));
            continue;
        }
        // An operation's own parameter takes the place of its path's.
        const auto same = std::find_if(AInto.begin(), AInto.end(), [&](TDocView p) {
            return p["name"].Text() == name && p["in"].Text() == place;
        });
        if (same == AInto.end())
            AInto.push_back(param);
        else
            *same = param;
    }
}

void TOperationMaker::ReadParam(TDocView AParam) {
    const QString place = AParam["in"].Text();
    const QString name = AParam["name"].Text();
    if (place == QStringLiteral("query")) {
        ReadHttpParam(AParam, ppQuery);
    } else if (place == QStringLiteral("cookie")) {
        ReadHttpParam(AParam, ppCookie);
    } else if (place == QStringLiteral("path")) {
        if (FOper.Http.Path.contains(u'{' + name + u'}'))
            ReadHttpParam(AParam, ppPath);
        else
            FModel.Source.Report(AParam, QStringLiteral("The path has no \"{%1}\".").arg(name));
    } else if (place == QStringLiteral("header")) {
        // These are told by the media types and security schemes.
        const bool isOurs = name.compare(QStringLiteral("Accept"), Qt::CaseInsensitive) == 0 ||
                            name.compare(QStringLiteral("Content-Type"), Qt::CaseInsensitive) == 0 ||
                            name.compare(QStringLiteral("Authorization"), Qt::CaseInsensitive) == 0;
        if (!isOurs || FModel.IsSwagger2())
            ReadHttpParam(AParam, ppHeader);
    } else if (FModel.IsSwagger2() &&
               (place == QStringLiteral("body") || place == QStringLiteral("formData"))) {
        FSwaggerBody.push_back(AParam);
    } else {
        FModel.Source.Report(AParam, QStringLiteral("There is no place \"%1\" for a parameter.").arg(place));
    }
}

void TOperationMaker::ReadHttpParam(TDocView AParam, TZOParamPlace APlace) {
    TProperty property;
    property.Name = AParam["name"].Text();
    property.Binding.Place = APlace;
    TDocView schema = FModel.IsSwagger2() ? AParam : AParam["schema"];
    const TDocView content = AParam["content"];
    if (content.Count() > 0) {
        const auto [media, value] = *content.Entries().begin();
        schema = value["schema"];
        property.Binding.Style = IsJson(media.Text()) ? psJson : psDefault;
    } else if (FModel.IsSwagger2()) {
        ReadCollectionFormat(AParam, property.Binding);
    } else {
        ReadStyle(AParam, property.Binding);
    }
    property.Type = schema ? FModel.Schemas->TypeOf(schema) : TZOTypeLibrary::Scalar(vkString);
    property.Options.Required = APlace == ppPath || AParam["required"].IsTrue();
    property.Options.Description = FModel.Schemas->TextOf(AParam, FModel.Source.Resolve(schema));
    Add(std::move(property));
}

void TOperationMaker::ReadStyle(TDocView AParam, TZOParamBinding& ABinding) {
    const bool isSimple = ABinding.Place == ppPath || ABinding.Place == ppHeader;
    bool explodes = !isSimple;
    if (const TDocView style = AParam["style"]) {
        const auto* found = std::find_if(std::begin(Styles), std::end(Styles),
                                         [&](const TStyleName& s) { return style.Is(s.Name); });
        if (found == std::end(Styles)) {
            FModel.Source.Report(style, QStringLiteral("There is no style of this name."));
        } else {
            ABinding.Style = found->Style;
            explodes = found->Style == psForm;
        }
    }
    const TDocView explode = AParam["explode"];
    ABinding.Explode = explode.Kind() == dkBoolean ? explode.IsTrue() : explodes;
}

void TOperationMaker::ReadCollectionFormat(TDocView AParam, TZOParamBinding& ABinding) {
    const TDocView format = AParam["collectionFormat"];
    ABinding.Explode = format.Is("multi");
    if (format.Is("ssv"))
        ABinding.Style = psSpaceDelimited;
    else if (format.Is("pipes"))
        ABinding.Style = psPipeDelimited;
    else if (format && !format.Is("csv") && !format.Is("multi"))
        FModel.Source.Report(format,
                             QStringLiteral("This format is not known; items are separated by commas."));
}

void TOperationMaker::AddMissingPathParams() {
    static const QRegularExpression pattern(QStringLiteral("\\{([^{}]*)\\}"));
    for (auto match = pattern.globalMatch(FOper.Http.Path); match.hasNext();) {
        const QString name = match.next().captured(1);
        const auto& params = FOper.Http.Params;
        const bool isKnown = std::any_of(params.begin(), params.end(), [&](const TZOParamBinding& b) {
            return b.Place == ppPath &&
                   (b.WireName.isEmpty() ? b.Property : TextFromUtf8(b.WireName)) == name;
        });
        if (isKnown)
            continue;
        FModel.Source.Report(
            FOperation.Oper,
            QStringLiteral("The path's \"{%1}\" is no parameter; it is taken for text.").arg(name));
        TProperty property;
        property.Name = name;
        property.Type = TZOTypeLibrary::Scalar(vkString);
        property.Options.Required = true;
        property.Binding.Place = ppPath;
        property.Binding.Explode = false;
        Add(std::move(property));
    }
}
