// Themes: who has to recolour itself, and which colours the theme in use
// offers.
#pragma once

#include <QColor>
#include <QObject>

#include <functional>

class QWidget;

/// A colour written $00BBGGRR, or one of TSystemColor, whose top byte is $FF.
using TColor = quint32;

/// The system colours in use here, by their traditional numbers.
enum TSystemColor : TColor {
    clWindow = 0xFF000005,        ///< background of lists and edits
    clWindowText = 0xFF000008,    ///< text on clWindow
    clHighlight = 0xFF00000D,     ///< background of what is selected
    clHighlightText = 0xFF00000E, ///< text on clHighlight
    clBtnFace = 0xFF00000F,       ///< background of panels and buttons
    clGrayText = 0xFF000011,      ///< disabled and secondary text
    clBtnText = 0xFF000012        ///< text on clBtnFace
};

enum TZOTheme { thLight, thDark, thSystem };

/// The theming of one component: a handle that lives as long as the component, by which it owns it.
class TZOIdeTheming : public QObject {
    Q_OBJECT

public:
    using TCallback = std::function<void(TZOIdeTheming* ATheming)>;

    /// Calls ACallback once before this returns and then at each change of the application's palette, until
    /// AComponent dies. What the callback raises ends in the exception display, but for the first call,
    /// whose exceptions reach the caller (no handle is left then). The handle belongs to AComponent.
    static TZOIdeTheming* ThemeComponent(QWidget* AComponent, TCallback ACallback);

    /// Whether the application's palette is light text on dark.
    static bool IsDarkTheme();
    /// The colour that AColor stands for in the theme in use; an ordinary colour stands for itself.
    static QColor GetSystemColor(TColor AColor);
    /// The mean of A and B in which A counts AWeight times: Blend(a, b, 3) is a quarter of b over a. AWeight
    /// must not be negative. The result is opaque.
    static QColor Blend(const QColor& A, const QColor& B, int AWeight);

    /// Sets the palette of the whole application, also of its open windows. A light or dark theme comes with
    /// the style that can show it; thSystem goes back to the palette of the desktop.
    static void SetTheme(TZOTheme ATheme);
    /// The last theme set; thSystem before that.
    static TZOTheme Theme();

private:
    TZOIdeTheming(QWidget* AComponent, TCallback ACallback);
    void ThemeChanged();

    TCallback FCallback;
};

/// Colours a widget's text, and only that: every other role keeps following the theme.
void SetFontColor(QWidget* AWidget, const QColor& AColor);
/// Fills a widget's background with AColor; its other roles keep following the theme.
void SetBackColor(QWidget* AWidget, const QColor& AColor);
