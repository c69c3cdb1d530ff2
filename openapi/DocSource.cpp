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
    if (file.size() > MaxFileSize) {
        AReason = QStringLiteral("The file is larger than can be read.");
        return {};
    }
    QByteArray text(file.size() + DocJson::Padding, Qt::Uninitialized);
    const qint64 size = file.read(text.data(), file.size());
    if (size < 0 || (size == 0 && file.isSequential())) {
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
    auto& known = file->second->References;
    const std::string key = AReference.toStdString();
    const auto found = known.find(key);
    if (found != known.end() && found->second)
        return found->second;
    const TDocView target = Follow(AView, AReference);
    known[key] = target;
    return target;
}

TDocView TDocSource::Follow(TDocView AView, const QString& AReference) {
    const qsizetype hash = AReference.indexOf(u'#');
    const QString file = hash < 0 ? AReference : AReference.left(hash);
    const QString pointer = hash < 0 ? QString() : AReference.mid(hash + 1);
    const TDocTree* tree = file.isEmpty() ? AView.Tree() : TreeFor(AView, file);
    return tree ? Walk(*tree, AView, AReference, QUrl::fromPercentEncoding(pointer.toUtf8())) : TDocView();
}

const TDocTree* TDocSource::TreeFor(TDocView AView, const QString& AFile) {
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
    const TFile* target = FileOf(path, {}, reason);
    if (!target)
        Report(AView, QStringLiteral("\"%1\": %2").arg(AFile, reason));
    return target ? &target->Tree : nullptr;
}

TDocView TDocSource::Walk(const TDocTree& ATree, TDocView AView, const QString& AReference,
                          const QString& APointer) {
    TDocView at = ATree.Root();
    const bool isPointer = APointer.isEmpty() || APointer.startsWith(u'/');
    const QStringList parts = APointer.isEmpty() ? QStringList() : APointer.mid(1).split(u'/');
    for (QString part : parts) {
        if (FWalks > MaxHops) {
            Report(AView, QStringLiteral("This $ref leads back to itself."));
            return {};
        }
        const QScopedValueRollback walks(FWalks, FWalks + 1);
        if (at["$ref"].IsString() && !at[part.toStdString()])
            at = Resolve(at);
        part.replace(QStringLiteral("~1"), QStringLiteral("/"))
            .replace(QStringLiteral("~0"), QStringLiteral("~"));
        at = at.IsArray() ? at.At(part.toInt()) : at[part.toStdString()];
    }
    if (!isPointer || !at) {
        Report(AView, QStringLiteral("\"%1\" refers to nothing.").arg(AReference));
        return {};
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
