// The way out to the desktop's browser.
#pragma once

#include <QByteArray>
#include <QString>

/// Opens AAddress, percent-encoded, in the desktop's browser: an address of http or https only, since others
/// start programs. Returns an empty text when a browser has it, else a sentence that tells the user why not.
QString OpenInBrowser(const QByteArray& AAddress);
