// What the pages' tests stand on: a shell with a window over settings and service classes of its own.
#pragma once

#include "pages/Pages.h"

#include "shell/PageFrame.h"
#include "shell/ServiceItem.h"
#include "shell/ShellFrame.h"
#include "shell/ShellPage.h"

#include "platform/Dialogs.h"
#include "platform/LinkLabel.h"
#include "platform/Registry.h"

#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

/// Answers dialogs from a list, and writes down what was asked.
class TTestDialogs : public TZODialogs {
public:
    std::optional<QString> OpenFile(QWidget*, const QString& ACaption, const QString& AInitial,
                                    const QString&) override {
        return Answer(QStringLiteral("open %1|%2").arg(ACaption, AInitial));
    }
    std::optional<QString> SaveFile(QWidget*, const QString& ACaption, const QString& AInitial,
                                    const QString&) override {
        return Answer(QStringLiteral("save %1|%2").arg(ACaption, AInitial));
    }
    std::optional<QString> InputQuery(QWidget*, const QString& ACaption, const QString& APrompt,
                                      const QString& AValue) override {
        return Answer(QStringLiteral("query %1|%2|%3").arg(ACaption, APrompt, AValue));
    }
    bool Confirm(QWidget*, const QString& ACaption, const QString& AQuestion) override {
        Asked.append(QStringLiteral("confirm %1|%2").arg(ACaption, AQuestion));
        return std::exchange(IsAgreed, false);
    }
    void RevealFile(const QString& AFileName) override {
        Asked.append(QStringLiteral("reveal ") + AFileName);
    }

    QStringList Asked;
    std::deque<std::optional<QString>> Answers; // none left: cancel
    std::function<void()> OnAsked;              // while a name is asked for
    bool IsAgreed = false;                      // to the next question

private:
    std::optional<QString> Answer(const QString& AQuestion) {
        Asked.append(AQuestion);
        if (OnAsked)
            OnAsked();
        if (Answers.empty())
            return std::nullopt;
        const std::optional<QString> answer = Answers.front();
        Answers.pop_front();
        return answer;
    }
};

/// An operation to declare: its name, description, and no properties.
struct TTestOper {
    QString Name;
    QString Description;
};

/// A class with the scopes "read" (default), "write" and "admin&all" (default) that needs credentials.
std::unique_ptr<TZORestServiceClass> MakeServiceClass(const QString& AName, const QString& ADescription,
                                                      const QList<TTestOper>& AOpers);

class PagesTest : public testing::Test {
protected:
    PagesTest();
    ~PagesTest() override;

    void Register(std::unique_ptr<TZORestServiceClass> AClass);
    /// Makes a shell with an active window; the service list is on its stack.
    void ShowShell();
    /// Lets the posted navigation happen.
    static void Settle();

    QStringList Stack() const;
    QWidget* Top() const { return Shell->GetNavStackTop()->Frame(); }
    template <class T>
    T* Find(const char* AName) const {
        auto* widget = Top()->findChild<T*>(QLatin1String(AName));
        EXPECT_TRUE(widget) << AName;
        return widget;
    }
    QListView* List() const { return Find<QListView>("ListBox"); }
    QLineEdit* Search() const { return Find<QLineEdit>("SearchEdit"); }
    /// The rows of the top page's list.
    QStringList Rows() const;
    /// Opens the row of that name by a double click.
    void Open(const QString& AName);
    void DoubleClickRow(const QString& AName, Qt::MouseButton AButton = Qt::LeftButton);
    void ClickRow(const QString& AName);
    static QColor TextColor(const QWidget* AWidget);
    /// The row as it is on screen.
    QImage RowImage(const QString& AName) const;

    QTemporaryDir Folder;
    QStringList Errors; // class names that the exception display showed
    TTestDialogs TestDialogs;
    std::vector<std::unique_ptr<TZORestServiceClass>> Classes;
    std::unique_ptr<TZOShellFrame> Shell;

private:
    QModelIndex Row(const QString& AName) const;
};
