// The texts that were shaped last.
#pragma once

#include "jsoneditor/view/PlainFont_p.h"
#include "jsoneditor/view/ShapedText_p.h"

#include <QFont>
#include <QHash>
#include <QString>

#include <memory>

/// Shapes texts and remembers them for a while: the same keys stand in row after row, and a view that gets
/// another width asks for all its rows again. Keeps a bounded number of short ones.
class TZOShapedTexts {
public:
    /// The texts kept are dropped when AFont is another than before.
    void UseFont(const QFont& AFont);
    /// The font in use, if it is a plain one: texts that it holds need no shaping.
    const std::shared_ptr<const TZOPlainFont>& PlainFont() const { return FPlainFont; }
    /// In the font in use.
    std::shared_ptr<const TZOShapedText> Get(const QString& AText);
    void Clear();

private:
    using TTexts = QHash<QString, std::shared_ptr<const TZOShapedText>>;

    QFont FFont;
    bool FKnowsFont = false;
    std::shared_ptr<const TZOPlainFont> FPlainFont;
    /// What was asked for since FRecent was last full stands there, what was before it in FEarlier.
    TTexts FRecent;
    TTexts FEarlier;
};
