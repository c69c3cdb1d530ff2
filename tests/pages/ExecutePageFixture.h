// A service over a loopback server that answers what the tests of the execute page need.
#pragma once

#include "tests/pages/PagesFixture.h"

#include "jsoneditor/view/InplaceEditor.h"
#include "jsoneditor/view/RestView.h"

#include <QPushButton>

#include <functional>
#include <string>

/// Runs while it lives. Paths: /echo?text= (an object), /nothing (204), /file?bytes= (that many bytes),
/// /store (a POST, the length and first bytes of its body), /fail (a 404 with a message of two lines),
/// /halves?bytes= (that many bytes, in two parts), /chunks (400,000 bytes in
/// two parts, of unknown length), /slowstore (a POST whose body is read after OnHalf).
class TTestServer {
public:
    TTestServer();
    ~TTestServer();
    QString Url() const;
    /// Called on the server's thread while a request to /echo is being answered.
    std::function<void()> OnEcho;
    /// What /echo answers instead, unless empty.
    std::string Answer;
    /// The same, between the two parts of what comes in parts.
    std::function<void()> OnHalf;

private:
    class TImpl;
    std::unique_ptr<TImpl> FImpl;
};

class ExecutePageTest : public PagesTest {
protected:
    ExecutePageTest();

    /// Opens an operation of the service, which has its API key.
    void ShowOperation(const QString& AName);
    TZORestView* ReqView() const { return View("ReqPanel"); }
    TZORestView* RespView() const { return View("RespPanel"); }
    QPushButton* ExecButton() const { return Find<QPushButton>("ExecButton"); }
    /// The texts of the rows on screen, indented by their level.
    static QStringList Lines(const TZORestView* AView);
    /// The colour class of the first chunk of a row.
    static TZOChunkToken Token(const TZORestView* AView, int ARow);
    /// Selects the request's row that starts with AKey, types into its value and accepts it.
    void Fill(const QString& AKey, const QString& AText);
    /// Goes to the request's row that starts with AKey by the keyboard.
    void GoTo(const QString& AKey);
    void Execute();
    QString WriteFile(const QString& AName, const QByteArray& AContent) const;
    QByteArray ReadFile(const QString& AName) const;
    /// From the server's thread: runs AWhat on the explorer's, and waits for it.
    static void OnGui(const std::function<void()>& AWhat);
    /// A click that comes through the window, as the display server's do.
    void ClickInWindow(const QWidget* AWidget) const;
    void KeyInWindow(Qt::Key AKey, Qt::KeyboardModifiers AModifiers = {}) const;

    TTestServer Server;

private:
    TZORestView* View(const char* APanel) const;
};
