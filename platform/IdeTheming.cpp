#include "platform/IdeTheming.h"

#include "platform/Contrast.h"
#include "platform/ExceptionDisplay.h"

#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QPointer>
#include <QStyle>
#include <QStyleFactory>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace {

TZOTheme GTheme = thSystem;

/// The darkest ground in a light theme that has grey text on it: desktops' greys are often too pale for it.
const QColor LightBar(0xD3D3D3);

struct TScheme {
    QColor Window, WindowText, Base, AlternateBase, Button, Highlight, HighlightedText, Disabled, Placeholder;
    QColor Link, LinkVisited, ToolTipBase, ToolTipText;
    QColor Light, Midlight, Mid, Dark, Shadow;
};

TScheme LightScheme() {
    return {.Window = 0xF3F4F6,
            .WindowText = 0x1B1F24,
            .Base = 0xFFFFFF,
            .AlternateBase = 0xF6F8FA,
            .Button = 0xF3F4F6,
            .Highlight = 0x0B62C4,
            .HighlightedText = 0xFFFFFF,
            .Disabled = 0x6E7681,
            .Placeholder = 0x4C525B,
            .Link = 0x0066CC,
            .LinkVisited = 0x6B4FBB,
            .ToolTipBase = 0xFFFFFF,
            .ToolTipText = 0x1B1F24,
            .Light = 0xFFFFFF,
            .Midlight = 0xF8F9FA,
            .Mid = 0xC4C9D0,
            .Dark = 0xA3A9B1,
            .Shadow = 0x6E7681};
}

TScheme DarkScheme() {
    return {.Window = 0x2B2D30,
            .WindowText = 0xDFE1E5,
            .Base = 0x1E1F22,
            .AlternateBase = 0x26282B,
            .Button = 0x393B40,
            .Highlight = 0x2E65B8,
            .HighlightedText = 0xFFFFFF,
            .Disabled = 0x7D8188,
            .Placeholder = 0x9DA1A8,
            .Link = 0x6CB2FF,
            .LinkVisited = 0xB39DF3,
            .ToolTipBase = 0x393B40,
            .ToolTipText = 0xDFE1E5,
            .Light = 0x4E5157,
            .Midlight = 0x43454A,
            .Mid = 0x232528,
            .Dark = 0x17181A,
            .Shadow = 0x0B0C0D};
}

QPalette MakePalette(const TScheme& AScheme) {
    QPalette palette;
    const std::pair<QPalette::ColorRole, QColor> colors[] = {
        {QPalette::Window, AScheme.Window},
        {QPalette::WindowText, AScheme.WindowText},
        {QPalette::Base, AScheme.Base},
        {QPalette::AlternateBase, AScheme.AlternateBase},
        {QPalette::Text, AScheme.WindowText},
        {QPalette::Button, AScheme.Button},
        {QPalette::ButtonText, AScheme.WindowText},
        {QPalette::BrightText, QColor(Qt::red)},
        {QPalette::Highlight, AScheme.Highlight},
        {QPalette::HighlightedText, AScheme.HighlightedText},
        {QPalette::Link, AScheme.Link},
        {QPalette::LinkVisited, AScheme.LinkVisited},
        {QPalette::ToolTipBase, AScheme.ToolTipBase},
        {QPalette::ToolTipText, AScheme.ToolTipText},
        {QPalette::PlaceholderText, AScheme.Placeholder},
        {QPalette::Light, AScheme.Light},
        {QPalette::Midlight, AScheme.Midlight},
        {QPalette::Mid, AScheme.Mid},
        {QPalette::Dark, AScheme.Dark},
        {QPalette::Shadow, AScheme.Shadow},
    };
    for (const auto& [role, color] : colors)
        palette.setColor(QPalette::All, role, color);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, AScheme.Disabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, AScheme.Mid);
    // A field that takes nothing looks like the page around it.
    palette.setColor(QPalette::Disabled, QPalette::Base, AScheme.Window);
    return palette;
}

// A palette's secondary text may be translucent; most places that ask for it cannot be.
QColor Over(const QColor& ATop, const QColor& AGround) {
    const auto mix = [&](float ATopPart, float AGroundPart) {
        return ATopPart * ATop.alphaF() + AGroundPart * (1 - ATop.alphaF());
    };
    return QColor::fromRgbF(mix(ATop.redF(), AGround.redF()), mix(ATop.greenF(), AGround.greenF()),
                            mix(ATop.blueF(), AGround.blueF()));
}

// A widget's palette does not tell the roles that were set on it from those that its parents were given, and
// setting the latter again would freeze them. So the widget remembers its own.
void SetOwnRoles(QWidget* AWidget, std::initializer_list<QPalette::ColorRole> ARoles, const QColor& AColor) {
    constexpr const char* property = "zoOwnColorRoles";
    QPalette changed;
    changed.setResolveMask(AWidget->property(property).toULongLong());
    QPalette palette = AWidget->palette();
    for (const QPalette::ColorRole role : ARoles) {
        changed.setColor(QPalette::All, role, AColor);
        palette.setColor(QPalette::All, role, AColor);
    }
    const QPalette::ResolveMask mask = changed.resolveMask();
    palette.setResolveMask(mask);
    AWidget->setProperty(property, QVariant::fromValue(mask));
    AWidget->setPalette(palette);
}

// Only the application itself hears of its new palette at once, and of nobody's own one.
class TZOPaletteWatcher : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    bool eventFilter(QObject* AObject, QEvent* AEvent) override {
        if (AEvent->type() == QEvent::ApplicationPaletteChange && AObject == QCoreApplication::instance())
            emit Changed();
        return false;
    }

signals:
    void Changed();
};

TZOPaletteWatcher& Watcher() {
    static QPointer<TZOPaletteWatcher> watcher;
    if (!watcher) {
        watcher = new TZOPaletteWatcher(QCoreApplication::instance());
        QCoreApplication::instance()->installEventFilter(watcher);
    }
    return *watcher;
}

} // namespace

TZOIdeTheming::TZOIdeTheming(QWidget* AComponent, TCallback ACallback)
    : QObject(AComponent), FCallback(std::move(ACallback)) {
    connect(&Watcher(), &TZOPaletteWatcher::Changed, this, &TZOIdeTheming::ThemeChanged);
}

TZOIdeTheming* TZOIdeTheming::ThemeComponent(QWidget* AComponent, TCallback ACallback) {
    std::unique_ptr<TZOIdeTheming> theming(new TZOIdeTheming(AComponent, std::move(ACallback)));
    if (theming->FCallback)
        theming->FCallback(theming.get());
    return theming.release();
}

void TZOIdeTheming::ThemeChanged() {
    if (FCallback)
        GuardedCall(static_cast<QWidget*>(parent()), [this] { FCallback(this); });
}

bool TZOIdeTheming::IsDarkTheme() {
    const QPalette palette = QApplication::palette();
    return palette.color(QPalette::WindowText).lightness() > palette.color(QPalette::Window).lightness();
}

QColor TZOIdeTheming::GetSystemColor(TColor AColor) {
    const QPalette palette = QApplication::palette();
    switch (AColor) {
    case clWindow:
        return palette.color(QPalette::Active, QPalette::Base);
    case clWindowText:
        return palette.color(QPalette::Active, QPalette::Text);
    case clHighlight:
        return palette.color(QPalette::Active, QPalette::Highlight);
    case clHighlightText:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    case clBtnFace:
        return palette.color(QPalette::Active, QPalette::Window);
    case clGrayText:
        return Contrast::Readable(Over(palette.color(QPalette::Active, QPalette::PlaceholderText),
                                       palette.color(QPalette::Active, QPalette::Base)),
                                  IsDarkTheme() ? palette.color(QPalette::Active, QPalette::Window)
                                                : LightBar,
                                  palette.color(QPalette::Active, QPalette::Text));
    case clBtnText:
        return palette.color(QPalette::Active, QPalette::ButtonText);
    default:
        return QColor(AColor & 0xFF, (AColor >> 8) & 0xFF, (AColor >> 16) & 0xFF);
    }
}

QColor TZOIdeTheming::Blend(const QColor& A, const QColor& B, int AWeight) {
    const auto mix = [AWeight](int AOne, int AOther) { return (AOne * AWeight + AOther) / (AWeight + 1); };
    return QColor(mix(A.red(), B.red()), mix(A.green(), B.green()), mix(A.blue(), B.blue()));
}

void TZOIdeTheming::SetTheme(TZOTheme ATheme) {
    GTheme = ATheme;
    // Other styles draw parts of their controls in colours of their own, whatever the palette says.
    if (ATheme != thSystem &&
        QApplication::style()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive))
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    if (ATheme == thSystem)
        QApplication::setPalette(QPalette());
    else
        QApplication::setPalette(MakePalette(ATheme == thDark ? DarkScheme() : LightScheme()));
}

TZOTheme TZOIdeTheming::Theme() { return GTheme; }

void SetFontColor(QWidget* AWidget, const QColor& AColor) {
    SetOwnRoles(AWidget, {QPalette::WindowText, QPalette::Text}, AColor);
}

void SetBackColor(QWidget* AWidget, const QColor& AColor) {
    AWidget->setAutoFillBackground(true);
    SetOwnRoles(AWidget, {AWidget->backgroundRole()}, AColor);
}

#include "IdeTheming.moc"
