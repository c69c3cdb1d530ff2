// The files that the execute page's request sends and writes.
#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "runtime/types/Failures.h"
#include "runtime/types/Object.h"

#include "platform/Dialogs.h"

#include <QFile>
#include <QFileInfo>

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
    FOverwriteName = *name; // the dialog has asked
    return true;
}

bool TZOExecutePage::AgreeToOverwrite() {
    const QString name = FUi->DownloadEdit->text();
    if (!IsDownload() || name == FOverwriteName || !QFileInfo(name).isFile())
        return true;
    const QPointer<TZOExecutePage> self(this);
    const bool isAgreed = Dialogs().Confirm(
        this, QStringLiteral("Download to file"),
        QStringLiteral("The file \"%1\" exists already. Do you want to replace it?").arg(name));
    if (isAgreed && self)
        FOverwriteName = name;
    return isAgreed;
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
    FOverwriteName = FDownloadStream->fileName(); // what is written over next is our own
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
    FResponseFilePath = file->fileName();
    FResponseFileSize = static_cast<qint32>(file->size());
}
