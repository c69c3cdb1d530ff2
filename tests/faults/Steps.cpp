// What the explorer does with settings and files, one step per run: fault_steps STEP [ADDRESS].
#include "pages/ExecutePage.h"
#include "pages/Pages.h"

#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "jsoneditor/view/RestView.h"
#include "jsoneditor/view/RowChunk.h"
#include "jsoneditor/view/ViewRow.h"
#include "jsoneditor/view/ViewRowLayout.h"

#include "runtime/service/ServiceBuilder.h"

#include "platform/Dialogs.h"
#include "platform/ExceptionDisplay.h"
#include "platform/Exceptions.h"
#include "platform/LinkLabel.h"
#include "platform/Registry.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <cstdio>
#include <map>

namespace {

bool GHasComplained = false;

void Complain(const QString& AText) {
    GHasComplained = true;
    std::fprintf(stderr, "%s\n", qUtf8Printable(AText));
}

std::unique_ptr<TZORestServiceClass> MakeClass(const QString& AName, const QString& AServer = {}) {
    using P = TZOServiceParam;
    TZOServiceBuilder service(AName, {}, AServer);
    TZOTypeLibrary& types = service.Types();
    service.Operation(QStringLiteral("Read"), {}, "GET", QStringLiteral("/read"), {}, types.Scalar(vkAny));
    service.Operation(QStringLiteral("Get"), {}, "GET", QStringLiteral("/get"), {}, types.Scalar(vkDownload));
    service.Operation(QStringLiteral("Put"), {}, "PUT", QStringLiteral("/put"),
                      {P::InPart(QStringLiteral("file"), types.Scalar(vkUpload), {})}, nullptr);
    return std::make_unique<TZORestServiceClass>(AName, service.Build());
}

class TItem {
public:
    explicit TItem(const QString& AName) : FClass(MakeClass(AName)), FItem(nullptr, FClass.get()) {}

    void SaveNewOptions() {
        TZORestService& service = *FItem.Component();
        service.SetApiKey(QStringLiteral("new key"));
        service.SetClientId(QStringLiteral("new client"));
        service.SetSecret(QStringLiteral("new secret"));
        service.SetRedirectUrl(QStringLiteral("new address"));
        service.Scopes() = QStringList{QStringLiteral("new scope")};
        FItem.OptionsModified();
    }
    void ChangeKey() {
        FItem.Component()->SetApiKey(QStringLiteral("new key"));
        FItem.OptionsModified();
    }
    void SaveNewToken() { FItem.Component()->SetToken(QStringLiteral("new token"), {}, 0); }

private:
    std::unique_ptr<TZORestServiceClass> FClass;
    TZOServiceItem FItem;
};

void SaveOptions(const QString&) { TItem(QStringLiteral("TFirst")).SaveNewOptions(); }
void ChangeKey(const QString&) { TItem(QStringLiteral("TFirst")).ChangeKey(); }
void SaveToken(const QString&) { TItem(QStringLiteral("TFirst")).SaveNewToken(); }

void SaveTwo(const QString&) {
    TItem(QStringLiteral("TFirst")).SaveNewOptions();
    TItem(QStringLiteral("TSecond")).SaveNewOptions();
}

/// Answers every question with the file "out", or "in".
class TFileDialogs final : public TZODialogs {
    std::optional<QString> OpenFile(QWidget*, const QString&, const QString&, const QString&) override {
        return QStringLiteral("in");
    }
    std::optional<QString> SaveFile(QWidget*, const QString&, const QString&, const QString&) override {
        return QStringLiteral("out");
    }
    bool Confirm(QWidget*, const QString&, const QString&) override { return true; }
};

/// A shell in a window, from its start to its end.
class TExplorer {
public:
    explicit TExplorer(const QString& AServer)
        : FFirst(MakeClass(QStringLiteral("TFirst"), AServer)),
          FSecond(MakeClass(QStringLiteral("TSecond"), AServer)) {
        TZORestServiceClass::Register(FFirst.get());
        TZORestServiceClass::Register(FSecond.get());
        SetDialogs(&FDialogs);
        StartPages();
        FShell = std::make_unique<TZOShellFrame>();
        FShell->resize(800, 600);
        FShell->show();
        QCoreApplication::processEvents();
    }
    ~TExplorer() {
        FShell.reset();
        StopPages();
        SetDialogs(nullptr);
        TZORestServiceClass::Unregister(FSecond.get());
        TZORestServiceClass::Unregister(FFirst.get());
    }
    TExplorer(const TExplorer&) = delete;
    TExplorer& operator=(const TExplorer&) = delete;

    const TZORestService& Service() const { return *FShell->GetServices(0)->Component(); }

    /// Opens the operation of that name; its response is shown.
    void Execute(const QString& AName) {
        TZOServiceItem* item = FShell->GetServices(0);
        for (const TZORestService::TOper& oper : item->TypeInfo()->Opers()) {
            if (oper.Name == AName)
                FShell->NavigateAsync(TZOExecutePage::Make(FShell.get(), item, &oper));
        }
        QCoreApplication::processEvents();
        if (AName == QStringLiteral("Put"))
            ChooseUpload();
        QTest::mouseClick(Find<QPushButton>("ExecButton"), Qt::LeftButton);
        QCoreApplication::processEvents();
        ReportFailure();
    }

    void SaveJson() {
        if (!GHasComplained)
            QTest::mouseClick(Find<TZOLinkLabel>("SaveJsonLabel"), Qt::LeftButton);
    }

private:
    template <class T>
    T* Find(const char* AName) const {
        return FShell->GetNavStackTop()->Frame()->findChild<T*>(QLatin1String(AName));
    }

    TZORestView* View(const char* APanel) const { return Find<QWidget>(APanel)->findChild<TZORestView*>(); }

    void ChooseUpload() {
        TZORestView* view = View("ReqPanel");
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Home, Qt::ControlModifier);
        for (int i = 0; i < view->GetRowCount(); ++i) {
            TZOViewRowLayout* layout = view->RowAt(i)->Layout();
            if (layout->GetChunks(0)->Text() != QStringLiteral("file")) {
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
                continue;
            }
            const QRect row = layout->Bounds();
            QTest::mouseDClick(view, Qt::LeftButton, {}, QPoint(row.left() + 40, row.center().y()));
            return;
        }
        Complain(QStringLiteral("there is no row for the file"));
    }

    void ReportFailure() {
        const TZORestView* view = View("RespPanel");
        for (auto* layout = view->Layouts().GetFirst(); layout; layout = layout->Next()) {
            if (layout->GetChunks(0)->TextToken() == ctError)
                Complain(layout->GetChunks(0)->Text());
        }
    }

    TFileDialogs FDialogs;
    std::unique_ptr<TZORestServiceClass> FFirst, FSecond;
    std::unique_ptr<TZOShellFrame> FShell;
};

void StartAndEnd(const QString& AServer) {
    const TExplorer explorer(AServer);
    std::printf("%s %s\n", qUtf8Printable(explorer.Service().GetApiKey()),
                qUtf8Printable(explorer.Service().GetToken()));
}

void SaveResponse(const QString& AServer) {
    TExplorer explorer(AServer);
    explorer.Execute(QStringLiteral("Read"));
    explorer.SaveJson();
}

void Download(const QString& AServer) { TExplorer(AServer).Execute(QStringLiteral("Get")); }
void Upload(const QString& AServer) { TExplorer(AServer).Execute(QStringLiteral("Put")); }

} // namespace

int main(int AArgc, char** AArgv) {
    const std::map<QString, void (*)(const QString&)> steps = {
        {QStringLiteral("save-options"), SaveOptions},  {QStringLiteral("change-key"), ChangeKey},
        {QStringLiteral("save-token"), SaveToken},      {QStringLiteral("save-two"), SaveTwo},
        {QStringLiteral("start-and-end"), StartAndEnd}, {QStringLiteral("save-response"), SaveResponse},
        {QStringLiteral("download"), Download},         {QStringLiteral("upload"), Upload},
    };
    QApplication application(AArgc, AArgv);
    TRegistry::SetReportHandler(Complain);
    SetExceptionDisplay(
        [](QWidget*, const std::exception& AException) { Complain(ExceptionMessage(AException)); });
    try {
        steps.at(application.arguments().value(1))(application.arguments().value(2));
    } catch (const std::exception& e) {
        Complain(ExceptionMessage(e));
    }
    SetExceptionDisplay({});
    return GHasComplained ? 1 : 0;
}
