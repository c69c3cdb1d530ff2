#include "runtime/service/HtmlText_p.h"

#include <QStringList>

#include <algorithm>

namespace {

/// Elements that stand within a line; all others end it.
bool IsInline(const QString& AName) {
    static const QStringList names = {
        QStringLiteral("a"),    QStringLiteral("abbr"), QStringLiteral("b"),      QStringLiteral("code"),
        QStringLiteral("em"),   QStringLiteral("font"), QStringLiteral("i"),      QStringLiteral("kbd"),
        QStringLiteral("span"), QStringLiteral("tt"),   QStringLiteral("strong"), QStringLiteral("u")};
    return names.contains(AName);
}

/// Elements whose content nobody sees.
bool IsHidden(const QString& AName) {
    static const QStringList names = {QStringLiteral("script"), QStringLiteral("style"),
                                      QStringLiteral("template"), QStringLiteral("svg")};
    return names.contains(AName);
}

/// The character that "&AName;" stands for; null for one that is not known.
QChar Entity(const QString& AName) {
    static const std::pair<const char*, char16_t> entities[] = {
        {"amp", u'&'}, {"lt", u'<'}, {"gt", u'>'}, {"quot", u'"'}, {"apos", u'\''}, {"nbsp", u' '}};
    if (AName.startsWith(QLatin1Char('#'))) {
        const bool isHex = AName.startsWith(QLatin1String("#x"), Qt::CaseInsensitive);
        const uint code = isHex ? AName.mid(2).toUInt(nullptr, 16) : AName.mid(1).toUInt();
        return code > 0 && code < 0xD800 ? QChar(static_cast<char16_t>(code)) : QChar();
    }
    const auto* found = std::find_if(std::begin(entities), std::end(entities),
                                     [&](const auto& e) { return AName == QLatin1String(e.first); });
    return found == std::end(entities) ? QChar() : QChar(found->second);
}

class THtmlReader {
public:
    explicit THtmlReader(const QString& AHtml) : FHtml(AHtml) {}

    QString Run() {
        while (FPlace < FHtml.size()) {
            const QChar c = FHtml.at(FPlace);
            if (c == QLatin1Char('<'))
                TakeTag();
            else if (c == QLatin1Char('&'))
                TakeEntity();
            else
                Take(c);
        }
        EndLine();
        return FLines.join(QLatin1Char('\n'));
    }

private:
    void Take(QChar AChar) {
        FLine += AChar;
        ++FPlace;
    }

    void TakeEntity() {
        constexpr qsizetype longest = 10;
        const qsizetype end = FHtml.indexOf(QLatin1Char(';'), FPlace);
        const QChar c = end > FPlace && end - FPlace <= longest
                            ? Entity(FHtml.mid(FPlace + 1, end - FPlace - 1))
                            : QChar();
        if (c.isNull())
            return Take(QLatin1Char('&'));
        FLine += c;
        FPlace = end + 1;
    }

    void TakeTag() {
        const bool isClosing = FHtml.mid(FPlace + 1, 1) == QLatin1String("/");
        const qsizetype start = FPlace + (isClosing ? 2 : 1);
        qsizetype end = start;
        while (end < FHtml.size() && FHtml.at(end).isLetterOrNumber())
            ++end;
        const QString name = FHtml.mid(start, end - start).toLower();
        const bool isMark = name.isEmpty() && FHtml.mid(start, 1) == QLatin1String("!");
        if (name.isEmpty() && !isMark)
            return Take(QLatin1Char('<'));
        if (!IsInline(name))
            EndLine();
        if (isMark && FHtml.mid(start, 3) == QLatin1String("!--"))
            return GoBehind(QStringLiteral("-->"));
        GoBehind(QStringLiteral(">"));
        if (!isClosing && IsHidden(name))
            GoBehind(QStringLiteral("</") + name);
    }

    void GoBehind(const QString& AText) {
        const qsizetype found = FHtml.indexOf(AText, FPlace, Qt::CaseInsensitive);
        FPlace = found < 0 ? FHtml.size() : found + AText.size();
        if (AText.startsWith(QLatin1String("</")) && found >= 0)
            GoBehind(QStringLiteral(">"));
    }

    void EndLine() {
        const QString line = FLine.simplified();
        FLine.clear();
        if (!line.isEmpty() && (FLines.isEmpty() || FLines.last() != line))
            FLines.append(line);
    }

    const QString& FHtml;
    qsizetype FPlace = 0;
    QString FLine;
    QStringList FLines;
};

} // namespace

QString HtmlText::Of(const QString& AHtml) { return THtmlReader(AHtml).Run(); }
