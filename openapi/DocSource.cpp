#include "openapi/DocSource_p.h"

#include <QFile>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QUrl>

namespace {

constexpr qint64 MaxFileSize = qint64(1) << 30;
constexpr std::size_t MaxProblems = 1000;
constexpr int MaxHops = 100;

bool IsYamlName(const QString& AFileName) {
    return AFileName.endsWith(QStringLiteral(".yaml"), Qt::CaseInsensitive) ||
           AFileName.endsWith(QStringLiteral(".yml"), Qt::CaseInsensitive);
}

bool StartsAsJson(const QByteArray& AText) {
    for (const char c : AText) {
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t' && c != '\xEF' && c != '\xBB' && c != '\xBF')
            return c == '{' || c == '[';
    }
    return false;
}

/// The file's bytes, followed by the zeros that the JSON reader wants.
QByteArray ReadFile(const QString& APath, QString& AReason) {
    QFile file(APath);
    if (!file.open(QIODevice::ReadOnly)) {
        AReason = QStringLiteral("The file cannot be opened: %1.").arg(file.errorString());
        return {};
    }
    const qint64 wanted = file.size();
    if (wanted > MaxFileSize) {
        AReason = QStringLiteral("The file is larger than can be read.");
        return {};
    }
    QByteArray text(wanted + DocJson::Padding, Qt::Uninitialized);
    // What came before the disk failed is returned like a whole file; only the next read tells.
    qint64 size = 0, count = 0;
    do {
        count = file.read(text.data() + size, wanted - size);
        size += qMax<qint64>(count, 0);
    } while (count > 0 && size < wanted);
    if (count < 0 || (size == 0 && file.isSequential())) {
        AReason = QStringLiteral("The file cannot be read: %1.").arg(file.errorString());
        return {};
    }
    text.resize(size + DocJson::Padding);
    std::fill(text.end() - DocJson::Padding, text.end(), '\0');
    return text;
}

} // namespace

bool TDocSource::Load(const QString& AFileName, const TDocProgress& AProgress) {
    const QFileInfo info(AFileName);
    FFolder = QFileInfo(info.absoluteFilePath()).dir().canonicalPath();
    QString reason;
    const QString path = info.exists() ? info.canonicalFilePath() : AFileName;
    // A link may stand in another folder than its file; what is beside the file counts then.
    if (info.exists())
        FFolder = QFileInfo(path).path();
    FRoot = FileOf(path, AProgress, reason);
    if (!FRoot) {
        TDocTree nothing;
        nothing.FileName = AFileName;
        AddProblem(&nothing, 0, {}, reason);
    }
    return !FIsEnded;
}

TDocView TDocSource::Root() const { return FRoot ? FRoot->Tree.Root() : TDocView(); }

QStringList TDocSource::Files() const {
    QStringList files;
    for (const auto& [path, file] : FFiles)
        files.append(path);
    return files;
}

TDocSource::TFile* TDocSource::FileOf(const QString& APath, const TDocProgress& AProgress, QString& AReason) {
    const auto [place, isNew] = FFiles.try_emplace(APath);
    if (!isNew) {
        if (!place->second)
            AReason = QStringLiteral("The file cannot be read.");
        return place->second.get();
    }
    auto file = std::make_unique<TFile>();
    file->Tree.FileName = APath;
    file->Tree.Id = static_cast<quint32>(FFiles.size());
    if (ReadInto(file->Tree, AProgress, AReason))
        place->second = std::move(file);
    return place->second.get();
}

bool TDocSource::ReadInto(TDocTree& ATree, const TDocProgress& AProgress, QString& AReason) {
    QByteArray text = ReadFile(ATree.FileName, AReason);
    if (text.isEmpty())
        return false;
    const bool isJson = StartsAsJson(text);
    if (isJson) {
        ATree.Text = text;
        FIsEnded = !DocJson::Parse(ATree, AProgress);
        if (FIsEnded)
            return true;
    }
    // YAML may be written in braces, too.
    if (!isJson || (!ATree.Errors.empty() && IsYamlName(ATree.FileName))) {
        TDocTree yaml;
        text.chop(DocJson::Padding);
        FIsEnded = !DocYaml::Parse(yaml, text, AProgress);
        if (!isJson || yaml.Errors.empty()) {
            ATree.Text = std::move(yaml.Text);
            ATree.Nodes = std::move(yaml.Nodes);
            ATree.Errors = std::move(yaml.Errors);
            ATree.MayHaveIds = yaml.MayHaveIds;
        }
    }
    for (const TDocError& error : ATree.Errors)
        AddProblem(&ATree, error.Line, {}, error.Message);
    if (ATree.Nodes.empty())
        AReason = QStringLiteral("The file holds neither JSON nor YAML.");
    return !ATree.Nodes.empty();
}

TDocView TDocSource::Resolve(TDocView AView) {
    for (int hops = 0; hops < MaxHops; ++hops) {
        const TDocView reference = AView["$ref"];
        if (!reference.IsString())
            return AView;
        AView = ResolveText(reference, reference.Text());
    }
    Report(AView, QStringLiteral("This $ref leads back to itself."));
    return {};
}

TDocView TDocSource::ResolveText(TDocView AView, const QString& AReference) {
    const auto file = FFiles.find(AView.Tree()->FileName);
    if (file == FFiles.end() || !file->second)
        return {};
    const std::pair key(IdsOf(*file->second).ResourceAt(AView.Node()), AReference);
    auto& known = file->second->References;
    const auto found = known.find(key);
    if (found != known.end() && found->second)
        return found->second;
    const TDocView target = Follow(*file->second, AView, AReference);
    known[key] = target;
    return target;
}

const TDocIds& TDocSource::IdsOf(TFile& AFile) {
    if (!AFile.Ids)
        AFile.Ids = std::make_unique<TDocIds>(
            AFile.Tree, [this](TDocView AView, const QString& AMessage) { Report(AView, AMessage); });
    return *AFile.Ids;
}

TDocView TDocSource::Follow(TFile& AFile, TDocView AView, const QString& AReference) {
    const qsizetype hash = AReference.indexOf(u'#');
    const QString name = hash < 0 ? AReference : AReference.left(hash);
    TFile* file = &AFile;
    int resource = IdsOf(AFile).ResourceAt(AView.Node());
    const bool isKnown =
        name.isEmpty() || FindResource(IdsOf(AFile).AddressOf(resource).resolved(QUrl(name)), file, resource);
    if (!isKnown) {
        file = FileFor(AView, name);
        resource = 0;
    }
    if (!file)
        return {};
    const QString fragment = hash < 0 ? QString() : AReference.mid(hash + 1);
    const auto target = Point(*file, resource, AView, QUrl::fromPercentEncoding(fragment.toUtf8()));
    if (target && !*target)
        Report(AView, QStringLiteral("\"%1\" refers to nothing.").arg(AReference));
    return target.value_or(TDocView());
}

bool TDocSource::FindResource(const QUrl& AAddress, TFile*& AFile, int& AResource) {
    for (const auto& [path, file] : FFiles) {
        const int found = file ? IdsOf(*file).Find(AAddress) : -1;
        if (found >= 0) {
            AFile = file.get();
            AResource = found;
            return true;
        }
    }
    return false;
}

std::optional<TDocView> TDocSource::Point(TFile& AFile, int AResource, TDocView AView,
                                          const QString& AFragment) {
    const TDocView root = IdsOf(AFile).RootOf(AResource);
    if (AFragment.isEmpty())
        return root;
    if (!AFragment.startsWith(u'/'))
        return IdsOf(AFile).Anchored(AResource, AFragment);
    const auto target = Walk(root, AView, AFragment);
    // Many documents give addresses to their schemas and go on counting from the file's start.
    const bool isFound = !target || *target;
    return isFound || AResource == 0 ? target : Walk(AFile.Tree.Root(), AView, AFragment);
}

TDocSource::TFile* TDocSource::FileFor(TDocView AView, const QString& AFile) {
    const QUrl url(AFile);
    if (!url.scheme().isEmpty() || AFile.startsWith(QStringLiteral("//"))) {
        Report(AView,
               QStringLiteral("\"%1\" is not a file beside the document; nothing is fetched.").arg(AFile));
        return nullptr;
    }
    const QFileInfo info(QFileInfo(AView.Tree()->FileName).dir(), QUrl::fromPercentEncoding(AFile.toUtf8()));
    const QString path = info.canonicalFilePath();
    // The name decides before the disk is asked, so that nothing is learnt about other folders.
    const QString plain = QDir::cleanPath(info.absoluteFilePath());
    const QString folder = FFolder.endsWith(u'/') ? FFolder : FFolder + u'/';
    if (!plain.startsWith(folder) || (!path.isEmpty() && !path.startsWith(folder))) {
        Report(AView, QStringLiteral("\"%1\" is outside the document's folder.").arg(AFile));
        return nullptr;
    }
    if (path.isEmpty()) {
        Report(AView, QStringLiteral("There is no file \"%1\" beside the document.").arg(AFile));
        return nullptr;
    }
    QString reason;
    TFile* target = FileOf(path, {}, reason);
    if (!target)
        Report(AView, QStringLiteral("\"%1\": %2").arg(AFile, reason));
    return target;
}

std::optional<TDocView> TDocSource::Walk(TDocView AFrom, TDocView AView, const QString& APointer) {
    TDocView at = AFrom;
    for (QString part : APointer.mid(1).split(u'/')) {
        if (FWalks > MaxHops) {
            Report(AView, QStringLiteral("This $ref leads back to itself."));
            return std::nullopt;
        }
        const QScopedValueRollback walks(FWalks, FWalks + 1);
        if (at["$ref"].IsString() && !at[part.toStdString()])
            at = Resolve(at);
        part.replace(QStringLiteral("~1"), QStringLiteral("/"))
            .replace(QStringLiteral("~0"), QStringLiteral("~"));
        at = at.IsArray() ? at.At(part.toInt()) : at[part.toStdString()];
    }
    return at;
}

void TDocSource::Report(TDocView AView, const QString& AMessage) {
    if (!AView) {
        AddProblem(FRoot ? &FRoot->Tree : nullptr, 0, {}, AMessage);
        return;
    }
    if (FProblems.size() >= MaxProblems)
        return;
    AddProblem(AView.Tree(), AView.Tree()->LineOf(AView.Node()), AView.Tree()->PointerOf(AView.Node()),
               AMessage);
}

void TDocSource::AddProblem(const TDocTree* ATree, int ALine, const QString& APointer,
                            const QString& AMessage) {
    const QString file = ATree ? ATree->FileName : QString();
    if (FProblems.size() >= MaxProblems ||
        !FReported.emplace(file + QString::number(ALine) + APointer, AMessage).second)
        return;
    FProblems.push_back({file, ALine, APointer, AMessage});
    if (FProblems.size() == MaxProblems)
        FProblems.push_back({file, 0, {}, QStringLiteral("There are more problems, which are not listed.")});
}
