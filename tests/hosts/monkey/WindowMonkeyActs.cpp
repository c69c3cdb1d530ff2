// What the monkey does with keys and mouse, and in the window's surroundings.
#include "tests/hosts/monkey/WindowMonkey.h"
#include "tests/jsoneditor/view/MonkeyKeys.h"

#include "jsoneditor/view/RestView.h"

#include "pages/ExecutePage.h"
#include "pages/SearchList.h"

#include "shell/ShellFrame.h"

#include "platform/IdeTheming.h"
#include "platform/LinkLabel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QWheelEvent>

namespace {

/// Those of the row editor, and of the pages and menus around it.
const std::vector<QKeyCombination>& Keys() {
    static const std::vector<QKeyCombination> keys = [] {
        std::vector<QKeyCombination> all = MonkeyKeys();
        all.insert(all.end(), {Qt::Key_Return,
                               Qt::Key_Insert,
                               Qt::CTRL | Qt::Key_Y,
                               Qt::CTRL | Qt::SHIFT | Qt::Key_Z,
                               Qt::CTRL | Qt::SHIFT | Qt::Key_C,
                               Qt::CTRL | Qt::SHIFT | Qt::Key_V,
                               Qt::Key_F1,
                               Qt::Key_F2,
                               Qt::Key_F3,
                               Qt::SHIFT | Qt::Key_F3,
                               Qt::Key_F5,
                               Qt::Key_F6,
                               Qt::SHIFT | Qt::Key_F6,
                               Qt::CTRL | Qt::Key_F,
                               Qt::CTRL | Qt::Key_Space,
                               Qt::CTRL | Qt::Key_Down,
                               Qt::CTRL | Qt::Key_Up,
                               Qt::ALT | Qt::Key_Up,
                               Qt::ALT | Qt::Key_Down,
                               Qt::ALT | Qt::Key_F,
                               Qt::ALT | Qt::Key_V,
                               Qt::ALT | Qt::Key_Left,
                               Qt::CTRL | Qt::Key_O,
                               Qt::CTRL | Qt::Key_Insert,
                               Qt::SHIFT | Qt::Key_Insert,
                               Qt::Key_Menu});
        return all;
    }();
    return keys;
}

const QStringList& Texts() {
    static const QStringList texts{"a",
                                   "1",
                                   "-5",
                                   "true",
                                   "2024-02-29T13:30:00+01:00",
                                   "get",
                                   "post",
                                   "[",
                                   "{\"a\": [1, null]}",
                                   "1e999",
                                   "\"",
                                   " ",
                                   "<b>x</b>",
                                   "Zürich",
                                   "99999999999999999999",
                                   "@",
                                   "one",
                                   "fine"};
    return texts;
}

bool IsControl(const QWidget* AWidget) {
    return AWidget->isVisible() && AWidget->isEnabled() &&
           (qobject_cast<const QAbstractButton*>(AWidget) || qobject_cast<const TZOLinkLabel*>(AWidget) ||
            qobject_cast<const QLineEdit*>(AWidget) || qobject_cast<const QAbstractItemView*>(AWidget) ||
            qobject_cast<const TZORestView*>(AWidget));
}

/// As it comes from the window system; what is sent by a program does not travel on to the parents.
void SendSpontaneous(QObject* AObject, QEvent& AEvent) {
    QSpontaneKeyEvent::setSpontaneous(&AEvent);
    QCoreApplication::instance()->notify(AObject, &AEvent);
}

} // namespace

QPoint TWindowMonkey::AnyPoint(const QWindow* AWindow) {
    return {Random(qMax(1, AWindow->width())), Random(qMax(1, AWindow->height()))};
}

void TWindowMonkey::Press(Qt::Key AKey, Qt::KeyboardModifiers AModifiers, const QString& AText) {
    // Between the two the window may go, or another one come.
    if (QWindow* window = Target())
        qt_handleKeyEvent(window, QEvent::KeyPress, AKey, AModifiers, AText);
    if (QWindow* window = Target())
        qt_handleKeyEvent(window, QEvent::KeyRelease, AKey, AModifiers, AText);
}

void TWindowMonkey::Mouse(QWindow* AWindow, QEvent::Type AType, const QPoint& APlace,
                          Qt::MouseButton AButton) {
    if (!AWindow)
        return;
    if (AType != QEvent::MouseMove)
        FButtons.setFlag(AButton, AType == QEvent::MouseButtonPress);
    qt_handleMouseEvent(AWindow, APlace, AWindow->mapToGlobal(APlace), FButtons,
                        AType == QEvent::MouseMove ? Qt::NoButton : AButton, AType, {},
                        static_cast<int>(FClock.elapsed()));
}

void TWindowMonkey::ClickAt(QWindow* AWindow, const QPoint& APlace, Qt::MouseButton AButton) {
    const QPointer<QWindow> window = AWindow;
    Mouse(window, QEvent::MouseMove, APlace, Qt::NoButton);
    Mouse(window, QEvent::MouseButtonPress, APlace, AButton);
    Mouse(window, QEvent::MouseButtonRelease, APlace, AButton);
    FButtons = {};
}

void TWindowMonkey::PressKey() {
    const QKeyCombination key = Keys()[static_cast<std::size_t>(Random(int(Keys().size())))];
    // The keyboard says a character with those that have one.
    const QString text = key.key() == Qt::Key_Return ? QStringLiteral("\r")
                         : key.key() < Qt::Key_Escape && !key.keyboardModifiers()
                             ? QString(QChar(static_cast<ushort>(key.key())))
                             : QString();
    Press(key.key(), key.keyboardModifiers(), text);
}

void TWindowMonkey::TypeText() {
    for (const QChar character : Texts()[Random(int(Texts().size()))]) {
        const ushort code = character.toUpper().unicode();
        Press(code < 256 ? static_cast<Qt::Key>(code) : Qt::Key_unknown, {}, character);
    }
    if (Random(2) == 0)
        Press(Qt::Key_Return, {}, QStringLiteral("\r"));
}

void TWindowMonkey::Execute() {
    const auto* page = FWindow->findChild<TZOExecutePage*>();
    FActs["requests"] += page && page->isVisible() ? 1 : 0;
    Press(Qt::Key_Return, Qt::ControlModifier);
}

void TWindowMonkey::Click(QWidget* AWidget, Qt::MouseButton AButton) {
    QWidget* top = AWidget->window();
    const QRect visible = AWidget->visibleRegion().boundingRect();
    if (!top->windowHandle() || visible.isEmpty())
        return;
    const QPoint place(visible.left() + Random(visible.width()), visible.top() + Random(visible.height()));
    ClickAt(top->windowHandle(), AWidget->mapTo(top, place), AButton);
}

void TWindowMonkey::UseMouse() {
    const QPointer<QWindow> window = Target();
    if (!window)
        return;
    const QPoint place = AnyPoint(window);
    const int what = Random(10);
    if (what < 5) {
        Mouse(window, QEvent::MouseMove, place, Qt::NoButton);
        return;
    }
    const Qt::MouseButton button = what == 5   ? Qt::RightButton
                                   : what == 6 ? Qt::MiddleButton
                                               : Qt::LeftButton;
    ClickAt(window, place, button);
    if (what == 9)
        ClickAt(window, place, button);
}

void TWindowMonkey::ClickControl() {
    const QWindow* window = Target();
    const QWidget* top = nullptr;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->windowHandle() == window)
            top = widget;
    }
    if (!top)
        return;
    QList<QWidget*> controls = top->findChildren<QWidget*>();
    controls.removeIf([](const QWidget* AWidget) { return !IsControl(AWidget); });
    if (!controls.isEmpty())
        Click(controls[Random(int(controls.size()))], Random(12) == 0 ? Qt::RightButton : Qt::LeftButton);
}

void TWindowMonkey::OpenRow() {
    for (const TZOSearchList* list : FWindow->findChildren<TZOSearchList*>()) {
        if (!list->isVisible() || QApplication::activePopupWidget() || QApplication::activeModalWidget())
            continue;
        const QPoint place =
            list->viewport()->mapTo(list->window(), QPoint(20, Random(qMax(1, list->viewport()->height()))));
        ClickAt(list->window()->windowHandle(), place, Qt::LeftButton);
        Press(Qt::Key_Return);
        return;
    }
    // Back, but not always.
    if (Random(3) == 0)
        Press(Qt::Key_Left, Qt::AltModifier);
}

void TWindowMonkey::Drag() {
    const QPointer<QWindow> window = Target();
    if (!window)
        return;
    Mouse(window, QEvent::MouseButtonPress, AnyPoint(window), Qt::LeftButton);
    for (int i = Random(5); i > 0 && window; --i)
        Mouse(window, QEvent::MouseMove, AnyPoint(window), Qt::LeftButton);
    if (window)
        Mouse(window, QEvent::MouseButtonRelease, AnyPoint(window), Qt::LeftButton);
    FButtons = {};
}

void TWindowMonkey::TurnWheel() {
    QWindow* window = Target();
    if (!window)
        return;
    const QPoint place = AnyPoint(window);
    QWheelEvent event(place, window->mapToGlobal(place), QPoint(), QPoint(0, (Random(9) - 4) * 60),
                      Qt::NoButton, Random(10) == 0 ? Qt::ControlModifier : Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    SendSpontaneous(window, event);
}

void TWindowMonkey::AskForMenu() {
    QWidget* focus = QApplication::focusWidget();
    if (!focus || IsBusy())
        return;
    const QPoint place(Random(qMax(1, focus->width())), Random(qMax(1, qMin(2000, focus->height()))));
    QContextMenuEvent event(Random(2) ? QContextMenuEvent::Keyboard : QContextMenuEvent::Mouse, place,
                            focus->mapToGlobal(place));
    SendSpontaneous(focus, event);
}

void TWindowMonkey::AskForTip() {
    const QPoint place = AnyPoint(FWindow->windowHandle());
    if (QWidget* widget = FWindow->childAt(place)) {
        QHelpEvent event(QEvent::ToolTip, widget->mapFrom(FWindow.get(), place), FWindow->mapToGlobal(place));
        SendSpontaneous(widget, event);
    }
}

void TWindowMonkey::Compose() {
    QObject* target = QApplication::focusObject();
    if (!target || IsBusy())
        return;
    QInputMethodEvent event(Random(2) ? QStringLiteral("にほ") : QString(), {});
    if (Random(2))
        event.setCommitString(QStringLiteral("日"));
    QCoreApplication::sendEvent(target, &event);
}

void TWindowMonkey::DropFiles() {
    const QPoint place = AnyPoint(FWindow->windowHandle());
    const QPointer<QWidget> widget = FWindow->childAt(place);
    if (!widget)
        return;
    QMimeData data;
    QList<QUrl> urls;
    for (int i = Random(3); i > 0; --i)
        urls.append(QUrl::fromLocalFile(FWorld.Documents().Any()));
    if (Random(6) == 0)
        urls.append(QUrl(QStringLiteral("https://127.0.0.1:1/x.yaml")));
    data.setUrls(urls);
    if (Random(5) == 0)
        data.setText(QStringLiteral("<b>text</b>"));
    const QPoint inside = widget->mapFrom(FWindow.get(), place);
    QDragEnterEvent enter(inside, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(widget, &enter);
    QDropEvent drop(inside, Qt::CopyAction, &data, Qt::LeftButton, {});
    if (widget && enter.isAccepted())
        QCoreApplication::sendEvent(widget, &drop);
}

void TWindowMonkey::RewriteFile() { FWorld.Documents().Rewrite(); }

void TWindowMonkey::Resize() { FWindow->resize(300 + Random(900), 200 + Random(700)); }

void TWindowMonkey::ChangeLook() {
    if (Random(2) == 0) {
        TZOIdeTheming::SetTheme(static_cast<TZOTheme>(Random(3)));
        return;
    }
    QFont font = QApplication::font();
    font.setPixelSize(9 + Random(12));
    QApplication::setFont(font);
}

void TWindowMonkey::FillClipboard() {
    static const QStringList more{"{\"text\":\"pasted\",\"tree\":{\"children\":[{},{\"name\":\"x\"}]}}",
                                  "[1,2,3]",
                                  "null",
                                  "\u202Eevil\u0007\n\n",
                                  "{\"pets\":[{\"kind\":\"Cat\",\"lives\":9},{\"kind\":\"Dog\"}]}",
                                  "{\"deep\":[[[[[[[[]]]]]]]]}",
                                  ""};
    QGuiApplication::clipboard()->setText(more[Random(int(more.size()))]);
}

void TWindowMonkey::SwitchWindow() {
    QList<QWidget*> windows = QApplication::topLevelWidgets();
    windows.removeIf([](const QWidget* AWidget) {
        return !AWidget->isVisible() || AWidget->windowType() == Qt::Popup ||
               AWidget->windowType() == Qt::ToolTip;
    });
    if (!windows.isEmpty())
        windows[Random(int(windows.size()))]->activateWindow();
}
