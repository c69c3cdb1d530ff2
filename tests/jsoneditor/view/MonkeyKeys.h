// The keys that a row editor knows, for whoever presses any of them.
#pragma once

#include <QKeyCombination>

#include <vector>

/// Those that move and edit come more than once.
inline const std::vector<QKeyCombination>& MonkeyKeys() {
    static const std::vector<QKeyCombination> keys = {Qt::Key_Up,
                                                      Qt::Key_Down,
                                                      Qt::Key_Up,
                                                      Qt::Key_Down,
                                                      Qt::Key_Tab,
                                                      Qt::Key_Backtab,
                                                      Qt::Key_Tab,
                                                      Qt::Key_Return,
                                                      Qt::Key_Escape,
                                                      Qt::Key_Insert,
                                                      Qt::CTRL | Qt::Key_Delete,
                                                      Qt::CTRL | Qt::Key_Home,
                                                      Qt::CTRL | Qt::Key_End,
                                                      Qt::Key_PageUp,
                                                      Qt::Key_PageDown,
                                                      Qt::Key_Left,
                                                      Qt::SHIFT | Qt::Key_Right,
                                                      Qt::Key_Home,
                                                      Qt::Key_End,
                                                      Qt::Key_Delete,
                                                      Qt::Key_Backspace,
                                                      Qt::CTRL | Qt::Key_A,
                                                      Qt::CTRL | Qt::Key_C,
                                                      Qt::CTRL | Qt::Key_V,
                                                      Qt::CTRL | Qt::Key_X,
                                                      Qt::CTRL | Qt::Key_Z,
                                                      Qt::Key_A,
                                                      Qt::Key_A,
                                                      Qt::Key_B,
                                                      Qt::Key_Space};
    return keys;
}
