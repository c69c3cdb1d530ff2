// The page on which one operation is tried out.
#pragma once

#include "pages/ServicePage.h"

#include "runtime/service/Request.h"
#include "runtime/types/Streams.h"
#include "runtime/types/ValueHolder.h"

#include <QBuffer>
#include <QString>
#include <QStringList>

#include <memory>

class QFile;
class TZOIdeTheming;
class TZOObjectDataSource;
class TZORestView;
namespace Ui {
class ExecutePage;
}

/// Shows the request of an operation as an editable tree, takes the files to send and to write, executes the
/// request, and shows what came of it: a value, a file, nothing, or a failure.
class TZOExecutePage final : public TZOServicePage {
    Q_OBJECT

public:
    class TInfoRow;
    class TInfoDataSource;

    /// AOper is one of the operations of AItem.
    static TZOShellPage* Make(TZOShellFrame* AShell, TZOServiceItem* AItem, POper AOper);
    ~TZOExecutePage() override;

    /// Whether the operation answers with a file.
    bool IsDownload() const;
    /// Executes the request on this thread, shows the outcome and scrolls to it. A download without a
    /// destination asks for one first; nothing happens when the user gives none.
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
    TZORestView* SetupRestView(QWidget* AParent);
    void InitRequest();
    void UpdateView();
    void ShowOutcome();
    void ScrollToResponse();
    void ShowInfo(const QStringList& ALines, bool AIsError);
    void SetShowFileVisible(bool AIsVisible);
    void UpdateButtons();
    void UpdateLabelColors(TZOIdeTheming* ATheming);
    void UpdateJsonColors(TZOIdeTheming* ATheming);
    void IdeThemeChanged(TZOIdeTheming* ATheming);
    void ExecButtonClick();
    void HelpLabelClick();

    // The request and its files (ExecuteRequest.cpp)
    void RunRequest();
    void RequestGetValue(const TZOTypeInfo* AType, bool AHasValue, QString& AText) const;
    void RequestSetValue(const TZOTypeInfo* AType, const QString& AText, void* AValue, bool& AHandled);
    void RequestUploadDialog(ZOUpload& AUpload, bool& AHandled);
    bool FindUpload(const QIODevice* AStream, ZOUpload*& AUpload);
    void SetUploadStream();
    void ResetUploadStream();
    bool DownloadSaveAs(bool AForce);
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
    QStringList FErrorMessage;
    bool FExecuted = false;
    TZORestView* FReqView = nullptr;
    TZORestView* FRespView = nullptr;
    TZOIdeTheming* FTheming = nullptr;
};
