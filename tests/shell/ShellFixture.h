// What the shell's tests stand on: settings of their own, two registered service classes, and pages that
// write down what they are told.
#pragma once

#include "shell/PageFactory.h"
#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "platform/LinkLabel.h"
#include "platform/Registry.h"

#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A service that says when its token changed.
class TTestService : public TZORestService {
public:
    using TZORestService::TZORestService;
    std::function<void()> OnTokenChanged;

protected:
    void TokenChanged() override;
};

/// A class with the operation "Get" and the scopes "read" (default), "write" and "admin" (default).
std::unique_ptr<TZORestServiceClass> MakeServiceClass(const QString& AName, const QString& ADescription);

/// Where the settings of a class of that name are kept.
QString SettingsKey(const QString& AClassName);

class TTestPageFrame : public TZOPageFrame {
public:
    TTestPageFrame(const QString& ACaption, QStringList* ALog, bool AIsServiceList);
    ~TTestPageFrame() override;
    TPageMaker MakerAgain() override { return Again; }

    const QString Caption;
    QStringList* const Log;
    const bool IsServiceList;
    TZOAuthState State = asHidden;
    /// Called by the page's own Clicked-like action.
    std::function<void()> OnOptions;
    /// What its MakerAgain answers.
    TPageMaker Again;
};

class ShellTest : public testing::Test, public IZOPageFactory {
protected:
    ShellTest();
    ~ShellTest() override;

    TZOShellPage* MakeServiceList(TZOShellFrame* AShell) override;
    TZOShellPage* MakeOperationList(TZOShellFrame* AShell, TZOServiceItem* AItem) override;
    bool IsServiceList(const QWidget* AFrame) const override;

    TZOShellPage* MakePage(const QString& ACaption, bool AIsServiceList = false,
                           TZOServiceItem* AItem = nullptr);
    static TTestPageFrame* FrameOf(const TZOShellPage* APage);
    void MakeShell();
    /// Makes a shell with a window; the service list is on its stack.
    void ShowShell();
    /// Pushes pages of these captions.
    void Push(const QStringList& ACaptions);
    /// Lets the posted navigation happen.
    static void Settle();

    QStringList Stack() const;
    /// The texts of the visible part of the navigation bar, from left to right.
    QString Bar() const;
    template <class T>
    T* Find(const char* AName) const {
        auto* widget = Shell->findChild<T*>(QLatin1String(AName));
        EXPECT_TRUE(widget) << AName;
        return widget;
    }
    static QColor TextColor(const QWidget* AWidget);

    QTemporaryDir Folder;
    QStringList Reports;
    QStringList Log;
    QList<QPointer<TZOShellPage>> Pages;
    std::unique_ptr<TZORestServiceClass> First =
        MakeServiceClass(QStringLiteral("TFirstService"), QStringLiteral("The first"));
    std::unique_ptr<TZORestServiceClass> Second =
        MakeServiceClass(QStringLiteral("TSecondService"), QString());
    std::unique_ptr<TZOShellFrame> Shell;
};
