// The execute page's request: its execution, and the files that it sends and writes.
#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "jsoneditor/view/RestView.h"

#include "runtime/types/Failures.h"
#include "runtime/types/Object.h"

#include "platform/Dialogs.h"

#include <QFile>

namespace {

QStringList Lines(QString AText) {
    AText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    AText.replace(u'\r', u'\n');
    if (AText.endsWith(u'\n'))
        AText.chop(1);
    return AText.isEmpty() ? QStringList() : AText.split(u'\n');
}

} // namespace

void TZOExecutePage::Execute() {
    const QPointer<TZOExecutePage> self(this);
    // The page or its service may go while the user chooses a file.
    if (!DownloadSaveAs(false) || !self || !Service())
        return;
    const bool hadFocus = FUi->ExecButton->hasFocus();
    // A button that is disabled gives the focus to the next control, which would be scrolled to.
    if (hadFocus)
        FUi->ScrollBox->setFocus();
    FUi->ExecButton->setText(QStringLiteral("Executing..."));
    FUi->ExecButton->setEnabled(false);
    FUi->ExecButton->repaint(); // this thread paints nothing more until the request is done
    try {
        RunRequest();
    } catch (const std::exception& e) {
        if (FResponse)
            FResponse->Clear();
        FErrorMessage = Lines(ExceptionMessage(e));
        FErrorMessage.prepend(ExceptionClassName(e));
    }
    FUi->ExecButton->setText(QStringLiteral("Execute"));
    FUi->ExecButton->setEnabled(true);
    if (hadFocus)
        FUi->ExecButton->setFocus();
    FExecuted = true;
    UpdateView();
    ScrollToResponse();
}

void TZOExecutePage::RunRequest() {
    FRespView->SetDataSource(nullptr); // its rows read the response that is cleared here
    SetUploadStream();
    SetDownloadStream();
    FErrorMessage.clear();
    FResponseFilePath.clear();
    FResponseFileSize = 0;
    if (FResponse) {
        if (!IsDownload())
            FResponse->Clear();
        FRequest->ExecRequest(FResponse.get());
    } else {
        FRequest->ExecRequest();
    }
    if (IsDownload())
        FormatDownloadResponse();
    ResetDownloadStream();
    ResetUploadStream();
}

void TZOExecutePage::RequestGetValue(const TZOTypeInfo* AType, bool AHasValue, QString& AText) const {
    if (AType->Kind() == vkUpload)
        AText = AHasValue ? FUploadFileName : QStringLiteral("file");
}

void TZOExecutePage::RequestSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue,
                                     bool& AHandled) {
    if (AType->Kind() != vkUpload)
        return;
    FUploadFileName = AText;
    static_cast<ZOUpload*>(AValue)->SetStream(nullptr);
    AHandled = true;
}

void TZOExecutePage::RequestUploadDialog(ZOUpload& AUpload, bool& AHandled) {
    const QString initial = AUpload.GetStream() ? FUploadFileName : QString();
    const auto name = Dialogs().OpenFile(this, QStringLiteral("Select file to upload"), initial);
    if (!name)
        return;
    FUploadFileName = *name;
    AUpload.SetStream(&FStreamMark);
    AHandled = true;
}

bool TZOExecutePage::FindUpload(const QIODevice* AStream, ZOUpload*& AUpload) {
    const ZOObject* request = *static_cast<ZOObject**>(FRequest->Data());
    if (!request || !AStream)
        return false;
    for (const ZOObject::TGroup& group : FOperation->Request->Groups()) {
        for (const ZOObject::TProperty& property : group.Properties) {
            void* value = nullptr;
            if (property.Type->Kind() != vkUpload ||
                !ZOObject::TData::GetProp(request, property.Name, value) ||
                static_cast<ZOUpload*>(value)->GetStream() != AStream)
                continue;
            AUpload = static_cast<ZOUpload*>(value);
            return true;
        }
    }
    return false;
}

void TZOExecutePage::SetUploadStream() {
    // An execution that failed has left its stream open, at its end perhaps.
    ResetUploadStream();
    ZOUpload* upload = nullptr;
    if (!FindUpload(&FStreamMark, upload))
        return;
    FUploadStream = std::make_unique<QFile>(FUploadFileName);
    if (!FUploadStream->open(QIODevice::ReadOnly))
        throw EFOpenError(
            QStringLiteral("Cannot open file \"%1\". %2").arg(FUploadFileName, FUploadStream->errorString()));
    upload->SetMimeType(QString());
    upload->SetStream(FUploadStream.get());
}

void TZOExecutePage::ResetUploadStream() {
    ZOUpload* upload = nullptr;
    if (FindUpload(FUploadStream.get(), upload)) {
        upload->SetMimeType(QString());
        upload->SetStream(&FStreamMark);
    }
    FUploadStream.reset();
}

bool TZOExecutePage::DownloadSaveAs(bool AForce) {
    if (!IsDownload() || (!AForce && !FUi->DownloadEdit->text().isEmpty()))
        return true;
    const QPointer<TZOExecutePage> self(this);
    const auto name = Dialogs().SaveFile(this, QStringLiteral("Download to file"), FUi->DownloadEdit->text());
    if (!name || !self)
        return false;
    FUi->DownloadEdit->setText(*name);
    return true;
}

ZODownload* TZOExecutePage::DownloadValue() {
    void* value = nullptr;
    return IsDownload() && FResponse->GetValue(value) ? static_cast<ZODownload*>(value) : nullptr;
}

void TZOExecutePage::SetDownloadStream() {
    if (!IsDownload())
        return;
    ResetDownloadStream();
    FDownloadStream = std::make_unique<QFile>(FUi->DownloadEdit->text());
    if (!FDownloadStream->open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2")
                                .arg(FDownloadStream->fileName(), FDownloadStream->errorString()));
    void* value = nullptr;
    FResponse->GetByRef(value);
    static_cast<ZODownload*>(value)->SetStream(FDownloadStream.get());
}

void TZOExecutePage::ResetDownloadStream() {
    if (ZODownload* download = DownloadValue())
        download->SetStream(nullptr);
    FDownloadStream.reset();
}

void TZOExecutePage::FormatDownloadResponse() {
    const ZODownload* download = DownloadValue();
    auto* file = download ? qobject_cast<QFile*>(download->GetStream()) : nullptr;
    if (!file)
        return;
    // What is still buffered may find the disk full.
    if (!file->flush())
        throw EZODownloadError(
            QStringLiteral("Cannot write file \"%1\". %2").arg(file->fileName(), file->errorString()));
    FResponseFilePath = file->fileName();
    FResponseFileSize = static_cast<qint32>(file->size());
}
