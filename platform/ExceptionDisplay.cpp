#include "platform/ExceptionDisplay.h"

#include "platform/Exceptions.h"
#include "platform/VisibleText.h"

#include <QGuiApplication>
#include <QMessageBox>

namespace {

TZOExceptionDisplay GDisplay;

void ShowMessageBox(QWidget* AParent, const std::exception& AException) {
    QMessageBox box(QMessageBox::Critical, QGuiApplication::applicationDisplayName(),
                    VisibleLines(ExceptionMessage(AException)), QMessageBox::Ok, AParent);
    // The text may come from a server or a document: it is text, never markup.
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace

TZOExceptionDisplay SetExceptionDisplay(TZOExceptionDisplay ADisplay) {
    return std::exchange(GDisplay, std::move(ADisplay));
}

void ShowException(QWidget* AParent, const std::exception& AException) noexcept {
    try {
        if (GDisplay)
            GDisplay(AParent, AException);
        else
            ShowMessageBox(AParent, AException);
    } catch (...) {
        qCritical("%s", AException.what());
    }
}
