// An nginx with the sites that a test or benchmark wants.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <memory>

class TServerProcess;

/// Starts an nginx that keeps its files in AFolder, for which FOLDER stands in ASites, its server blocks.
/// Returns when it listens on each of APorts. Raises std::runtime_error with its words when it does not.
std::unique_ptr<TServerProcess> StartNginx(const QString& AFolder, const QByteArray& ASites,
                                           const QList<int>& APorts);
