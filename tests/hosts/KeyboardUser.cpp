#include "tests/hosts/KeyboardUser.h"

#include "hosts/tour/Screen.h"

#include <QApplication>

namespace {

const QString Down = QStringLiteral("Down");
const QString Return = QStringLiteral("Return");

} // namespace

void TKeyboardUser::OpenOperation(const QString& AService, const QString& AOperation) {
    FDriver.Step(AOperation);
    FDriver.WaitFor(QStringLiteral("the window does not get the focus"),
                    [] { return Screen::Focus() != QStringLiteral("nothing"); });
    const std::pair<QString, QString> pages[] = {{AService, QStringLiteral("Operations")},
                                                 {AOperation, QStringLiteral("Request")}};
    FDriver.See(AService);
    for (const auto& [name, next] : pages) {
        FDriver.Type(name);
        FDriver.See(name); // in a long list not before
        FDriver.TabTo(QStringLiteral("TZOSearchList"));
        FDriver.PressUntilAt(Down, name);
        FDriver.Press({Return});
        FDriver.See(next);
    }
    FDriver.TabTo(QStringLiteral("TZORestView"));
    FDriver.Press({QStringLiteral("ctrl+Home")});
}

void TKeyboardUser::Set(const QString& AKey, const QString& AText) {
    Go(AKey + QStringLiteral(": "));
    Enter(AText);
}

void TKeyboardUser::Pick(const QString& AKey, int ANumber, const QString& AShown) {
    Go(AKey + QStringLiteral(": "));
    FDriver.Press({QStringLiteral("ctrl+space")});
    for (int i = 1; i < ANumber; ++i)
        FDriver.Press({Down});
    FDriver.Press({Return});
    FDriver.See(AKey + QStringLiteral(": ") + AShown);
}

void TKeyboardUser::Open(const QString& ARow) {
    Go(ARow);
    FDriver.Press({QStringLiteral("Insert")});
}

void TKeyboardUser::Enter(const QString& AText) {
    FDriver.Type(AText);
    FDriver.Press({Return});
}

void TKeyboardUser::EnterBelow(const QString& AText) {
    FDriver.Press({Down});
    Enter(AText);
}

void TKeyboardUser::FillList(const QStringList& ATexts) {
    for (int i = 0; i < ATexts.size(); ++i) {
        if (i > 0)
            ChooseFromMenu(QStringLiteral("Insert After"));
        EnterBelow(ATexts[i]);
        See(ATexts[i]);
    }
}

std::function<void(TKeyboardUser&)> TKeyboardUser::Texts(const QList<QPair<QString, QString>>& ATexts) {
    return [ATexts](TKeyboardUser& u) {
        for (const auto& [key, text] : ATexts)
            u.Set(key, text);
    };
}

void TKeyboardUser::ChooseFromMenu(const QString& ACommand) {
    FDriver.Press({QStringLiteral("shift+F10")});
    FDriver.WaitFor(QStringLiteral("no menu opens"), [] { return QApplication::activePopupWidget(); });
    FDriver.PressUntilAt(Down, ACommand);
    FDriver.Press({Return});
}

void TKeyboardUser::NameFile(const QString& APath) {
    FDriver.WaitFor(QStringLiteral("no file dialog opens"), [] {
        return Screen::Focus().startsWith(QStringLiteral("QLineEdit")) &&
               Screen::Shows(QStringLiteral("Cancel"));
    });
    FDriver.Type(APath);
    FDriver.Press({Return});
    FDriver.WaitFor(QStringLiteral("the file dialog stays"),
                    [] { return !Screen::Shows(QStringLiteral("Cancel")); });
}
