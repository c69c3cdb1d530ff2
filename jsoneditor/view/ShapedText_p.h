// A text that is shaped once, to be measured and then painted as often as it is in sight.
#pragma once

#include <QFont>
#include <QString>
#include <QTextLayout>

class QPainter;

class TZOShapedText {
public:
    TZOShapedText(const QString& AText, const QFont& AFont);

    /// In pixels, trailing blanks included.
    int Width() const;
    /// In the painter's pen, from ABaseLine on to the right.
    void Draw(QPainter& APainter, const QPoint& ABaseLine) const;

private:
    QTextLayout FLayout;
};
