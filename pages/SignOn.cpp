#include "pages/SignOn.h"

#include "pages/LongRequest.h"

#include "platform/Browser.h"
#include "platform/Fonts.h"
#include "platform/VisibleText.h"

#include <QClipboard>
#include <QDialog>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int WindowWidth = 480;
constexpr int Margin = 24;

/// What comes from a document or a server is text.
QLabel* MakeLabel(QWidget* AParent, const char* AName, const QString& AText) {
    auto* label = new QLabel(AParent);
    label->setObjectName(QLatin1String(AName));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(VisibleText(AText));
    return label;
}

QPushButton* MakeButton(QWidget* AParent, const char* AName, const QString& ACaption) {
    auto* button = new QPushButton(ACaption, AParent);
    button->setObjectName(QLatin1String(AName));
    button->setAutoDefault(true);
    return button;
}

} // namespace

TZOSignOn::TZOSignOn(QWidget* AOwner, TZOLongRequest& ARequest) : FOwner(AOwner), FRequest(ARequest) {}

TZOSignOn::~TZOSignOn() { End(); }

void TZOSignOn::Begin(const QString& AService, const QByteArray& AUrl) {
    FUrl = AUrl;
    FIsCancelled = false;
    MakeWindow(AService);
    FRequest.SetWindow(FWindow.get());
    FWindow->show();
    FWindow->activateWindow();
    OpenBrowser();
}

bool TZOSignOn::Wait() { return FRequest.Idle(0, 0) && !FIsCancelled; }

void TZOSignOn::End() {
    FRequest.SetWindow(nullptr);
    FWindow.reset();
}

void TZOSignOn::MakeWindow(const QString& AService) {
    FWindow = std::make_unique<QDialog>(FOwner->window());
    QDialog* window = FWindow.get();
    window->setObjectName(QStringLiteral("SignOnWindow"));
    window->setWindowTitle(QStringLiteral("Sign on"));
    window->setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    window->setFont(UiFont(QStringLiteral("Segoe UI"), 12));
    QObject::connect(window, &QDialog::rejected, window, [this] { FIsCancelled = true; });

    auto* header = MakeLabel(window, "HeaderLabel", QStringLiteral("Sign on in your browser"));
    header->setFont(UiFont(QStringLiteral("Segoe UI"), 16));
    // A name without blanks would not be broken into lines.
    const QFontMetrics metrics(window->font());
    const auto fit = [&](const QString& AName) {
        return metrics.elidedText(AName, Qt::ElideMiddle, WindowWidth - 2 * Margin);
    };
    auto* text = MakeLabel(window, "TextLabel",
                           QStringLiteral("%1 asks for your consent at %2. This window closes when you have "
                                          "answered there.")
                               .arg(fit(AService), fit(QUrl::fromEncoded(FUrl).host())));
    FStatusLabel = MakeLabel(window, "StatusLabel", QString());
    auto* open = MakeButton(window, "OpenButton", QStringLiteral("&Open browser again"));
    auto* copy = MakeButton(window, "CopyButton", QStringLiteral("Co&py address"));
    auto* cancel = MakeButton(window, "CancelButton", QStringLiteral("Cancel"));
    QObject::connect(open, &QPushButton::clicked, window, [this] { OpenBrowser(); });
    QObject::connect(copy, &QPushButton::clicked, window, [this] { CopyAddress(); });
    QObject::connect(cancel, &QPushButton::clicked, window, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    buttons->addWidget(open);
    buttons->addWidget(copy);
    buttons->addStretch();
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(Margin, 16, Margin, 16);
    layout->setSpacing(12);
    layout->addWidget(header);
    layout->addWidget(text);
    layout->addWidget(FStatusLabel);
    layout->addSpacing(4);
    layout->addLayout(buttons);
    window->setFixedWidth(WindowWidth);
}

void TZOSignOn::OpenBrowser() {
    const QString failure = OpenInBrowser(FUrl);
    FStatusLabel->setText(failure.isEmpty() ? QStringLiteral("Waiting for the browser...") : failure);
}

void TZOSignOn::CopyAddress() {
    QGuiApplication::clipboard()->setText(QString::fromUtf8(FUrl));
    FStatusLabel->setText(QStringLiteral("The address is in the clipboard. Waiting for the browser..."));
}
