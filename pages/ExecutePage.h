// The page on which one operation is tried out.
#pragma once

#include "pages/ServicePage.h"

#include "runtime/http/HttpRecord.h"
#include "runtime/service/Request.h"
#include "runtime/types/Streams.h"
#include "runtime/types/ValueHolder.h"

#include <QBuffer>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;
class TZOIdeTheming;
class TZOLinkLabel;
class TZOObjectDataSource;
class TZORestView;
namespace Ui {
class ExecutePage;
}

/// Shows the request of an operation as an editable tree, takes the files to send and to write, executes the
/// request, and shows what came of it: a value, a file, nothing, or a failure. Ctrl+Enter executes from
/// anywhere on the page, F6 and Shift+F6 go round its parts, Ctrl+F, F3 and Shift+F3 find a text in it.
class TZOExecutePage final : public TZOServicePage {
    Q_OBJECT

public:
    class TInfoRow;
    class TInfoDataSource;

    /// AOper is one of the operations of AItem.
    static TZOShellPage* Make(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper);
    ~TZOExecutePage() override;
    /// For the operation of the same name. The request is taken over where it still fits and sends no file.
    TPageMaker MakerAgain() override;

    /// Whether the operation answers with a file.
    bool IsDownload() const;
    /// Executes the request on this thread, shows the outcome and scrolls to it. A download without a
    /// destination asks for one first, and before it replaces a file whose name was typed; nothing happens
    /// when the user refuses. A request that lasts shows how far it is and can be cancelled; nothing else of
    /// the application reacts then.
    void Execute();
    /// Refuses while the request's editor stands on a text that its value does not take.
    void ServiceOptions() override;

protected:
    void DoServiceRemoved() override;
    void showEvent(QShowEvent* AEvent) override;

private:
    TZOExecutePage(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper);

    // The form (ExecutePage.cpp)
    void InitFonts();
    void InitHandlers();
    void InitKeys();
    void InitTabOrder();
    TZORestView* ViewToFindIn() const;
    TZORestView* SetupRestView(QWidget* AParent);
    void InitRequest();
    void ShowRequest();
    QByteArray RequestJson() const;
    void SetRequestJson(const QByteArray& AJson);
    void UpdateView();
    void UpdateButtons();
    void UpdateLabelColors(TZOIdeTheming* ATheming);
    void UpdateJsonColors(TZOIdeTheming* ATheming);
    void IdeThemeChanged(TZOIdeTheming* ATheming);
    void ExecButtonClick();
    void HelpLabelClick();

    // The response (ExecuteResponse.cpp)
    void ShowOutcome();
    void ScrollToResponse();
    void ShowInfo(const QStringList& ALines, bool AIsError);
    void SetShowFileVisible(bool AIsVisible);
    void UpdateSummary();
    void ShowDetails(bool AAreShown);
    bool HasResponseValue() const;
    void CopyJson();
    void SaveJson();
    static void Flash(TZOLinkLabel* ALabel, const QString& AText);

    // The request (ExecuteRequest.cpp)
    void RunRequest();
    void SendRequest();
    void ShowProgress(qint64 AElapsedMs, qint64 ABytesSent, qint64 ABytesReceived);
    void HideProgress();
    void ShowFailure(const std::exception& AException);
    void CopyCurlLabelClick();
    void CopyCurl(bool AWithCredentials);
    TZOHttpRequest PreparedRequest(QFile& AUploadFile);

    // Its files (ExecuteFiles.cpp)
    void RequestGetValue(const TZOTypeInfo* AType, bool AHasValue, QString& AText) const;
    void RequestSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue, bool& AHandled);
    void RequestUploadDialog(ZOUpload& AUpload, bool& AHandled);
    bool FindUpload(const QIODevice* AStream, ZOUpload*& AUpload);
    void SetUploadStream();
    void ResetUploadStream();
    bool DownloadSaveAs(bool AForce);
    bool AgreeToOverwrite();
    ZODownload* DownloadValue();
    void SetDownloadStream();
    void ResetDownloadStream();
    void FormatDownloadResponse();

    std::unique_ptr<Ui::ExecutePage> FUi;
    POper FOperation;
    std::unique_ptr<ZORequest> FRequest;
    QString FUploadFileName;
    std::unique_ptr<QFile> FUploadStream; // open during an execution, and after one that failed
    QBuffer FStreamMark;                  // stands for the chosen file until it is opened
    std::unique_ptr<TZOValueHolder> FResponse;
    QString FResponseFilePath;
    qint32 FResponseFileSize = 0;
    std::unique_ptr<QFile> FDownloadStream; // as FUploadStream
    QString FOverwriteName;                 // the destination that the user has agreed to replace
    TZOHttpRecord FRecord;
    QStringList FErrorMessage;
    bool FExecuted = false;
    TZORestView* FReqView = nullptr;
    TZORestView* FRespView = nullptr;
    TZOIdeTheming* FTheming = nullptr;
};
