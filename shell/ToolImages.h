// The images of the shell's tool bar.
#pragma once

class QIcon;

/// The back button's image, 32 by 32 pixels at any device pixel ratio, for a light or a dark background.
QIcon BackImage(bool AIsDark);
