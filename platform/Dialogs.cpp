#include "platform/Dialogs.h"

#include "platform/VisibleText.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace {

TZODialogs* GDialogs = nullptr;

std::optional<QString> Chosen(const QString& AFileName) {
    return AFileName.isEmpty() ? std::nullopt : std::optional(AFileName);
}

void OpenFolderOf(const QString& AFileName) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(AFileName).absolutePath()));
}

} // namespace

std::optional<QString> TZODialogs::OpenFile(QWidget* AParent, const QString& ACaption,
                                            const QString& AInitial, const QString& AFilter) {
    return Chosen(QFileDialog::getOpenFileName(AParent, ACaption, AInitial, AFilter));
}

QStringList TZODialogs::OpenFiles(QWidget* AParent, const QString& ACaption, const QString& AInitial,
                                  const QString& AFilter) {
    return QFileDialog::getOpenFileNames(AParent, ACaption, AInitial, AFilter);
}

std::optional<QString> TZODialogs::SaveFile(QWidget* AParent, const QString& ACaption,
                                            const QString& AInitial, const QString& AFilter) {
    return Chosen(QFileDialog::getSaveFileName(AParent, ACaption, AInitial, AFilter));
}

std::optional<QString> TZODialogs::InputQuery(QWidget* AParent, const QString& ACaption,
                                              const QString& APrompt, const QString& AValue) {
    QInputDialog dialog(AParent);
    dialog.setWindowTitle(ACaption);
    dialog.setLabelText(VisibleLines(APrompt));
    dialog.setTextValue(AValue);
    // The prompt may hold names from a document: they are text, never markup.
    for (QLabel* label : dialog.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    // The dialog's edit would cut a long value without a word.
    for (QLineEdit* edit : dialog.findChildren<QLineEdit*>()) {
        edit->setMaxLength(std::numeric_limits<int>::max());
        edit->setText(AValue);
        edit->selectAll();
    }
    // Keys and addresses are long.
    dialog.resize(std::max(420, dialog.sizeHint().width()), dialog.sizeHint().height());
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return dialog.textValue();
}

bool TZODialogs::Confirm(QWidget* AParent, const QString& ACaption, const QString& AQuestion) {
    QMessageBox box(QMessageBox::Question, ACaption, VisibleLines(AQuestion),
                    QMessageBox::Yes | QMessageBox::No, AParent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

void TZODialogs::RevealFile(const QString& AFileName) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList(
                QUrl::fromLocalFile(QFileInfo(AFileName).absoluteFilePath()).toString(QUrl::FullyEncoded))
         << QString();
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        OpenFolderOf(AFileName);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, AFileName] {
        if (watcher->isError())
            OpenFolderOf(AFileName);
        watcher->deleteLater();
    });
}

TZODialogs& Dialogs() {
    static TZODialogs desktop;
    return GDialogs ? *GDialogs : desktop;
}

TZODialogs* SetDialogs(TZODialogs* ADialogs) { return std::exchange(GDialogs, ADialogs); }
