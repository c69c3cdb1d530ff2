// The execute page's request: its execution, and as a command for a shell.
#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "pages/LongRequest.h"
#include "pages/SignOn.h"
#include "pages/TransferText.h"

#include "shell/ShellFrame.h"

#include "jsoneditor/view/RestView.h"

#include "runtime/http/CurlCommand.h"
#include "runtime/http/HttpClient.h"
#include "runtime/json/JsonCodec.h"
#include "runtime/types/Failures.h"

#include "platform/ExceptionDisplay.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMenu>
#include <QScopeGuard>

#include <algorithm>

namespace {

QStringList Lines(QString AText) {
    AText.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    AText.replace(u'\r', u'\n');
    if (AText.endsWith(u'\n'))
        AText.chop(1);
    return AText.isEmpty() ? QStringList() : AText.split(u'\n');
}

} // namespace

TZOPageFrame::TPageMaker TZOExecutePage::MakerAgain() {
    if (!FRequest)
        return {};
    return [shell = Shell(), name = FOperation->Name, json = RequestJson(),
            target = FUi->DownloadEdit->text()](TZOServiceItem* AItem) -> TZOShellPage* {
        const auto& opers = AItem->TypeInfo()->Opers();
        const auto oper =
            std::find_if(opers.begin(), opers.end(), [&](const auto& A) { return A.Name == name; });
        if (oper == opers.end())
            return nullptr;
        TZOShellPage* page = Make(shell, AItem, &*oper);
        auto* frame = static_cast<TZOExecutePage*>(page->Frame());
        frame->SetRequestJson(json);
        frame->FUi->DownloadEdit->setText(target);
        return page;
    };
}

QByteArray TZOExecutePage::RequestJson() const {
    try {
        return TZOJson::Encode(TZOValueHolder(FRequest->Type(), FRequest->Data(), false));
    } catch (const std::exception&) {
        // A chosen file, or a number, that has no text.
        return {};
    }
}

void TZOExecutePage::SetRequestJson(const QByteArray& AJson) {
    if (AJson.isEmpty())
        return;
    FReqView->SetDataSource(nullptr);
    TZOValueHolder value(FRequest->Type(), FRequest->Data(), false);
    try {
        TZOJson::Decode(AJson, value);
        ShowRequest();
    } catch (const std::exception&) {
        InitRequest();
    }
}

void TZOExecutePage::Execute() {
    const QPointer<TZOExecutePage> self(this);
    // The page or its service may go while the user chooses a file.
    if (!DownloadSaveAs(false) || !AgreeToOverwrite() || !self || !Service())
        return;
    // Just after a dialog the window is not active yet, but knows which control will get the focus.
    const bool hadFocus = window()->focusWidget() == FUi->ExecButton;
    // A button that is disabled gives the focus to the next control, which would be scrolled to.
    if (hadFocus)
        FUi->ScrollBox->setFocus();
    FUi->ExecButton->setText(QStringLiteral("Executing..."));
    FUi->ExecButton->setEnabled(false);
    FUi->ExecButton->repaint(); // this thread paints nothing more until the request is done, or lasts
    try {
        RunRequest();
    } catch (const std::exception& e) {
        ShowFailure(e);
    }
    HideProgress();
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
    FRecord = TZOHttpRecord();
    SetUploadStream();
    SetDownloadStream();
    FErrorMessage.clear();
    FResponseFilePath.clear();
    FResponseFileSize = 0;
    SendRequest();
    if (IsDownload())
        FormatDownloadResponse();
    ResetDownloadStream();
    ResetUploadStream();
}

void TZOExecutePage::SendRequest() {
    TZOLongRequest longRequest(FUi->CancelButton, [this](const TZOLongRequest::TProgress& AProgress) {
        ShowProgress(AProgress.ElapsedMs, AProgress.BytesSent, AProgress.BytesReceived);
    });
    TZOHttpClient& client = Service()->Component()->HttpClient();
    client.SetIdle([&](qint64 ASent, qint64 AReceived) { return longRequest.Idle(ASent, AReceived); });
    TZOSignOn signOn(this, longRequest);
    Service()->Component()->SetAuthUI(&signOn);
    Shell()->SetBusy(true);
    const auto done = qScopeGuard([&] {
        Service()->Component()->SetAuthUI(nullptr);
        client.SetIdle({});
        Shell()->SetBusy(false);
    });
    if (!FResponse) {
        FRequest->ExecRequest();
        return;
    }
    if (!IsDownload())
        FResponse->Clear();
    FRequest->ExecRequest(FResponse.get());
}

void TZOExecutePage::ShowProgress(qint64 AElapsedMs, qint64 ABytesSent, qint64 ABytesReceived) {
    QStringList parts(TransferText::Duration(AElapsedMs));
    if (ABytesSent > 0)
        parts.append(QStringLiteral("%1 sent").arg(TransferText::Size(ABytesSent)));
    parts.append(QStringLiteral("%1 received").arg(TransferText::Size(ABytesReceived)));
    FUi->ProgressLabel->setText(parts.join(QStringLiteral(", ")));
    if (!FUi->CancelButton->isHidden())
        return;
    // The response before is gone; what was around it goes now that this is seen.
    FUi->RespPanel->hide();
    SetShowFileVisible(false);
    FUi->CancelButton->show();
    FUi->ProgressLabel->show();
    // The request may have been started from far away.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    FUi->ScrollBox->ensureWidgetVisible(FUi->ExecPanel, 0, 8);
}

void TZOExecutePage::HideProgress() {
    FUi->CancelButton->hide();
    FUi->ProgressLabel->hide();
}

void TZOExecutePage::ShowFailure(const std::exception& AException) {
    if (FResponse)
        FResponse->Clear();
    FErrorMessage = Lines(ExceptionMessage(AException));
    FErrorMessage.prepend(ExceptionClassName(AException));
    if (!FDownloadStream || !FDownloadStream->isOpen())
        return;
    FDownloadStream->flush();
    const qint64 written = QFileInfo(FDownloadStream->fileName()).size(); // on the disk, not on its way there
    const qint64 length = FRecord.ContentLength();
    if (written > 0 && length >= 0)
        FErrorMessage.append(QStringLiteral("%1 of %2 bytes written to %3")
                                 .arg(written)
                                 .arg(length)
                                 .arg(FDownloadStream->fileName()));
    else if (written > 0)
        FErrorMessage.append(
            QStringLiteral("%1 bytes written to %2").arg(written).arg(FDownloadStream->fileName()));
}

TZOHttpRequest TZOExecutePage::PreparedRequest(QFile& AUploadFile) {
    ZOUpload* upload = nullptr;
    const bool isMarked = FindUpload(&FStreamMark, upload);
    if (isMarked)
        upload->SetStream(&AUploadFile);
    const auto restore = qScopeGuard([&] {
        if (isMarked)
            upload->SetStream(&FStreamMark);
    });
    return FRequest->Prepare();
}

void TZOExecutePage::CopyCurlLabelClick() {
    if (!Service() || !FReqView->TryCloseEditor(true))
        return;
    QFile file(FUploadFileName);
    if (!TZOCurlCommand::HasCredentials(PreparedRequest(file))) {
        CopyCurl(false);
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const auto& [caption, isWith] : {std::pair(QStringLiteral("&Without credentials"), false),
                                          std::pair(QStringLiteral("With &credentials"), true)})
        connect(menu->addAction(caption), &QAction::triggered, this,
                [this, isWith = isWith] { GuardedCall(this, [&] { CopyCurl(isWith); }); });
    menu->popup(FUi->CopyCurlLabel->mapToGlobal(FUi->CopyCurlLabel->rect().bottomLeft()));
}

void TZOExecutePage::CopyCurl(bool AWithCredentials) {
    if (!Service())
        return;
    QFile file(FUploadFileName);
    const QString command =
        TZOCurlCommand::Of(PreparedRequest(file), {AWithCredentials, FUi->DownloadEdit->text()});
    QGuiApplication::clipboard()->setText(command);
    Flash(FUi->CopyCurlLabel, QStringLiteral("copied"));
}
