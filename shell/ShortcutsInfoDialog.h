// What can be done in the request and response editors by keyboard and mouse.
#pragma once

#include <QDialog>

#include <memory>

class TZOIdeTheming;
namespace Ui {
class ShortcutsInfo;
}

/// A modal list of the editor's gestures and their meanings. Show it with exec(), which returns mrClose
/// whichever way the user closes it.
class TZOShortcutsInfoDialog final : public QDialog {
    Q_OBJECT

public:
    static constexpr int mrClose = 8;

    /// Stands in the middle of AOwner's window, or of the screen.
    explicit TZOShortcutsInfoDialog(QWidget* AOwner = nullptr);
    ~TZOShortcutsInfoDialog() override;

    void reject() override;

private:
    void IdeThemeChanged(TZOIdeTheming* ATheming);

    std::unique_ptr<Ui::ShortcutsInfo> FUi;
};
