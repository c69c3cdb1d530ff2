// Start and stop of the explorer's pages.
#pragma once

/// Lets the shell make and recognise the pages. To be called before the first shell frame is made.
void StartPages();
/// Takes that back and frees the pages that were made and never shown. To be called after the last shell
/// frame is gone and before the application object is.
void StopPages();
