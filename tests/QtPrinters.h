// Readable Qt texts in GoogleTest's failure messages; included before everything else in every test.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <ostream>

inline void PrintTo(const QString& AText, std::ostream* AStream) {
    *AStream << '"' << AText.toStdString() << '"';
}
inline void PrintTo(const QByteArray& AText, std::ostream* AStream) {
    *AStream << '"' << AText.toStdString() << '"';
}
inline void PrintTo(const QStringList& ATexts, std::ostream* AStream) {
    *AStream << '[' << ATexts.join(QStringLiteral(", ")).toStdString() << ']';
}
