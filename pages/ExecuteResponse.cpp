// The execute page's response: what came of the request, and what can be done with it.
#include "pages/ExecutePage.h"

#include "ui_ExecutePage.h"

#include "pages/InfoDataSource_p.h"

#include "jsoneditor/values/ObjectDataSource.h"
#include "jsoneditor/view/RestView.h"

#include "runtime/json/JsonCodec.h"

#include "platform/Dialogs.h"
#include "platform/Exceptions.h"
#include "platform/SavedFile.h"
#include "platform/VisibleText.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QFileDevice>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int FlashMs = 1500;

void MoveToEnd(QBoxLayout* AStack, QWidget* APanel) {
    AStack->removeWidget(APanel);
    AStack->insertWidget(AStack->count() - 1, APanel); // above the filler
}

} // namespace

void TZOExecutePage::ShowOutcome() {
    if (FUi->RespPanel->isHidden()) {
        MoveToEnd(FUi->StackLayout, FUi->RespPanel);
        FUi->RespPanel->show();
    }
    UpdateSummary();
    if (!FErrorMessage.isEmpty()) {
        ShowInfo(FErrorMessage, true);
        SetShowFileVisible(false);
    } else if (HasResponseValue()) {
        FRespView->SetDataSource(new TZOObjectDataSource(FResponse.get(), false, false));
        SetShowFileVisible(false);
    } else if (!FResponseFilePath.isEmpty()) {
        ShowInfo({QStringLiteral("File downloaded to:"),
                  QStringLiteral("%1 (%2 bytes)").arg(FResponseFilePath, QString::number(FResponseFileSize))},
                 false);
        MoveToEnd(FUi->StackLayout, FUi->ShowFilePanel);
        SetShowFileVisible(true);
    } else {
        ShowInfo({QStringLiteral("Ok"), QStringLiteral("No response data")}, false);
        SetShowFileVisible(false);
    }
}

void TZOExecutePage::ScrollToResponse() {
    // Sizes are right only when the layouts have done what the new rows asked for.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const int half = std::min(FUi->RespPanel->height(), FUi->ScrollBox->viewport()->height() / 2) / 2;
    FUi->ScrollBox->ensureVisible(0, FUi->RespPanel->y() + half, 0, half);
}

void TZOExecutePage::ShowInfo(const QStringList& ALines, bool AIsError) {
    FRespView->SetDataSource(new TInfoDataSource(AIsError ? ctError : ctNormal, ALines));
}

void TZOExecutePage::SetShowFileVisible(bool AIsVisible) {
    FUi->ShowFilePanel->setVisible(AIsVisible);
    FUi->ShowFileLabel->setVisible(AIsVisible);
}

bool TZOExecutePage::HasResponseValue() const {
    return FErrorMessage.isEmpty() && !IsDownload() && FResponse && FResponse->HasValue();
}

void TZOExecutePage::UpdateSummary() {
    // A request that was not sent has nothing to tell beside its failure.
    const bool wasSent = !FRecord.Hops.isEmpty();
    FUi->SummaryLabel->setText(wasSent ? VisibleText(TZOHttpDetails::Summary(FRecord)) : QString());
    FUi->SummaryLabel->setVisible(wasSent);
    FUi->DetailsLabel->setVisible(wasSent);
    if (wasSent)
        FUi->DetailsBox->SetRecord(FRecord);
    ShowDetails(wasSent && !FUi->DetailsBox->isHidden());
    FUi->CopyJsonLabel->setVisible(HasResponseValue());
    FUi->SaveJsonLabel->setVisible(HasResponseValue());
}

void TZOExecutePage::ShowDetails(bool AAreShown) {
    FUi->DetailsBox->setVisible(AAreShown);
    FUi->DetailsLabel->setText(AAreShown ? QStringLiteral("hide details") : QStringLiteral("details"));
}

void TZOExecutePage::CopyJson() {
    if (!HasResponseValue())
        return;
    QGuiApplication::clipboard()->setText(QString::fromUtf8(TZOJson::Encode(*FResponse)));
    Flash(FUi->CopyJsonLabel, QStringLiteral("copied"));
}

void TZOExecutePage::SaveJson() {
    const QPointer<TZOExecutePage> self(this);
    const auto name = Dialogs().SaveFile(this, QStringLiteral("Save JSON to file"),
                                         FOperation->Name + QStringLiteral(".json"),
                                         QStringLiteral("JSON (*.json);;All files (*)"));
    if (!name || !self || !HasResponseValue())
        return;
    const std::unique_ptr<QFileDevice> file = OpenForSaving(*name);
    if (!file->isOpen())
        throw EFCreateError(QStringLiteral("Cannot create file \"%1\". %2").arg(*name, file->errorString()));
    const QByteArray json = TZOJson::Encode(*FResponse);
    const QString reason = file->write(json) == json.size() ? PutInPlace(*file) : file->errorString();
    if (!reason.isEmpty())
        throw EFCreateError(QStringLiteral("Cannot write file \"%1\". %2").arg(*name, reason));
    Flash(FUi->SaveJsonLabel, QStringLiteral("saved"));
}

void TZOExecutePage::Flash(TZOLinkLabel* ALabel, const QString& AText) {
    static const char* const property = "zoLinkText";
    if (!ALabel->property(property).isValid())
        ALabel->setProperty(property, ALabel->text());
    ALabel->setText(AText);
    QTimer::singleShot(FlashMs, ALabel, [ALabel] { ALabel->setText(ALabel->property(property).toString()); });
}
