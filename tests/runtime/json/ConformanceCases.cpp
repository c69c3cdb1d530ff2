#include "tests/runtime/json/ConformanceCases.h"

#include <QStringEncoder>

namespace {

/// A piece of a text, and whether the grammar has it in that place.
struct TPiece {
    const char* Text;
    bool IsValid;
};

class TCases {
public:
    void Add(const std::string& AName, const QByteArray& AText, bool AIsTaken) {
        FCases.append({AName + ": " + AText.left(60).toStdString(), AText, AIsTaken});
    }
    void Taken(const std::string& AName, const QList<QByteArray>& ATexts) {
        for (const QByteArray& text : ATexts)
            Add(AName, text, true);
    }
    void Refused(const std::string& AName, const QList<QByteArray>& ATexts) {
        for (const QByteArray& text : ATexts)
            Add(AName, text, false);
    }
    void Choice(const std::string& AName, const QByteArray& AText, bool AIsTaken) {
        Add(AName, AText, AIsTaken);
        FCases.last().IsChoice = true;
    }
    void HalfCharacter(const std::string& AName, const QByteArray& AText) {
        Choice(AName, AText, true);
        FCases.last().HasHalfCharacter = true;
    }
    QList<TJsonCase> Take() { return std::move(FCases); }

private:
    QList<TJsonCase> FCases;
};

QByteArray Hex(int AByte) { return "0x" + QByteArray::number(AByte, 16); }
QByteArray Byte(int AByte) { return QByteArray(1, static_cast<char>(AByte)); }
QByteArray Quoted(const QByteArray& AContent) { return '"' + AContent + '"'; }

void AddEscapes(TCases& ACases) {
    for (int sign = 0; sign < 256; ++sign) {
        const bool isKnown = sign != 0 && QByteArray("\"\\/bfnrt").contains(static_cast<char>(sign));
        ACases.Add("escape of " + Hex(sign).toStdString(), Quoted('\\' + Byte(sign)), isKnown);
    }
    ACases.Taken("four hexadecimal digits",
                 {R"("\u0000")", R"("\u001f")", R"("\u00e9")", R"("\u20AC")", R"("\uFfFf")", R"("\ufdd0")",
                  R"("\u00410")", R"("\u0022")", R"("\u005C")", R"("\u002f")", R"("\\u12")", R"("\uFEFF")"});
    ACases.Refused("no four hexadecimal digits",
                   {R"("\u")", R"("\u1")", R"("\u12")", R"("\u123")", R"("\u123g")", R"("\ug123")",
                    R"("\u 123")", R"("\u+123")", R"("\u-123")", R"("\U0041")", R"("\u{41}")", R"("\x41")",
                    R"("\u00
41")",
                    "\"\\u00\xC3\xA9\"", R"("\u123)", R"("\ud83d\u")", R"("\ud83d\u12")"});
    ACases.Taken("a pair of halves", {R"("\ud800\udc00")", R"("\uD83D\uDE00")", R"("\udbff\udfff")"});
    for (const char* text :
         {R"("\ud800")", R"("\udbff")", R"("\udc00")", R"("\udfff")", R"("\ud800x")", R"("\udc00\ud800")",
          R"("\ud800\ud800\udc00")", R"("\ud800\n")", R"("\ud83d\u0041")", R"("\ud800\\udc00")"})
        ACases.HalfCharacter("half a character", text);
}

void AddUtf8(TCases& ACases) {
    ACases.Taken("a character",
                 {"\"\x7F\"", "\"\xC2\x80\"", "\"\xDF\xBF\"", "\"\xE0\xA0\x80\"", "\"\xED\x9F\xBF\"",
                  "\"\xEE\x80\x80\"", "\"\xEF\xBF\xBD\"", "\"\xEF\xBF\xBF\"", "\"\xF0\x90\x80\x80\"",
                  "\"\xF4\x8F\xBF\xBF\"", "\"\xE2\x80\xA8\"", "\"\xE2\x80\xA9\"", "\"\xEF\xBB\xBF\"",
                  "\"\xEF\xB7\x90\"", "\"e\xCC\x81\""});
    ACases.Refused("more bytes than needed",
                   {"\"\xC0\x80\"", "\"\xC0\xAF\"", "\"\xC1\xBF\"", "\"\xE0\x80\x80\"", "\"\xE0\x9F\xBF\"",
                    "\"\xF0\x80\x80\x80\"", "\"\xF0\x8F\xBF\xBF\"", "\"\xF8\x88\x80\x80\x80\"",
                    "\"\xFC\x84\x80\x80\x80\x80\""});
    ACases.Refused("half a character in bytes", {"\"\xED\xA0\x80\"", "\"\xED\xAF\xBF\"", "\"\xED\xB0\x80\"",
                                                 "\"\xED\xBF\xBF\"", "\"\xED\xA0\xBD\xED\xB8\x80\""});
    ACases.Refused("beyond the last character", {"\"\xF4\x90\x80\x80\"", "\"\xF5\x80\x80\x80\"",
                                                 "\"\xF7\xBF\xBF\xBF\"", "\"\xFF\xFF\xFF\xFF\""});
    ACases.Refused("a character that is cut off",
                   {"\"\xC3\"", "\"\xE2\x82\"", "\"\xE2\"", "\"\xF0\x9F\x98\"", "\"\xF0\x9F\"", "\"\xF0\"",
                    "\"\xC3", "\"\xE2\x82x\"", "\"\xC3\\\"\"", "\"\xC3\xC3\xA9\""});
    for (int byte = 0x80; byte < 0x100; ++byte)
        ACases.Add("one byte " + Hex(byte).toStdString(), Quoted(Byte(byte)), false);
}

QByteArray Nested(const QByteArray& AOpen, const QByteArray& AClose, int ADepth) {
    return AOpen.repeated(ADepth) + '0' + AClose.repeated(ADepth);
}

} // namespace

QList<TJsonCase> JsonCases::Numbers() {
    static const TPiece signs[] = {{"", true}, {"-", true}, {"+", false}, {"--", false}, {"- ", false}};
    static const TPiece wholes[] = {
        {"0", true},    {"7", true},        {"10", true},  {"9876543210987654321098", true},
        {"", false},    {"00", false},      {"01", false}, {"0x1", false},
        {"1_0", false}, {"\xD9\xA1", false}};
    static const TPiece fractions[] = {{"", true},     {".0", true},   {".1250", true}, {".", false},
                                       {"..5", false}, {".5.", false}, {".-5", false},  {" .5", false}};
    static const TPiece exponents[] = {{"", true},      {"e0", true},   {"E5", true},  {"e+05", true},
                                       {"E-3", true},   {"e", false},   {"E+", false}, {"e--1", false},
                                       {"e1.5", false}, {"ee1", false}, {"e 1", false}};
    TCases cases;
    for (const TPiece& sign : signs) {
        for (const TPiece& whole : wholes) {
            for (const TPiece& fraction : fractions) {
                for (const TPiece& exponent : exponents) {
                    const QByteArray text =
                        QByteArray(sign.Text) + whole.Text + fraction.Text + exponent.Text;
                    if (!text.trimmed().isEmpty())
                        cases.Add("number", text,
                                  sign.IsValid && whole.IsValid && fraction.IsValid && exponent.IsValid);
                }
            }
        }
    }
    cases.Taken("number of any size",
                {"1e400", "-1e400", "1e-400", "123456789012345678901234567890.5e-999999999999",
                 QByteArray(10'000, '7'), "0." + QByteArray(10'000, '0') + "1"});
    cases.Refused("no number", {"NaN",
                                "nan",
                                "-NaN",
                                "Infinity",
                                "-Infinity",
                                "inf",
                                "1f",
                                "1L",
                                "0b1",
                                "0o7",
                                "1,5",
                                "1'000",
                                "1 000",
                                "1/2",
                                "1%",
                                "$1",
                                "#1",
                                "1a",
                                "a1",
                                "-a",
                                "1-1",
                                "1+1",
                                "\xEF\xBC\x91",
                                "\xE2\x88\x92"
                                "1",
                                "1e\xEF\xBC\x91",
                                "-"});
    return cases.Take();
}

QList<TJsonCase> JsonCases::Literals() {
    TCases cases;
    for (const QByteArray word : {"true", "false", "null"}) {
        cases.Add("literal", word, true);
        for (qsizetype length = 1; length < word.size(); ++length)
            cases.Add("part of a literal", word.left(length), false);
        for (const char sign : {'x', '0', '"', '_', '.', '-', '\\', '\x01', '\x7F'})
            cases.Add("more than a literal", word + sign, false);
        QByteArray capital = word;
        capital[0] = static_cast<char>(capital[0] - 32);
        cases.Refused("no literal", {capital, word.toUpper(), word + word, "-" + word, word + '\0',
                                     QByteArray(word).replace(1, 1, "\\u0072")});
    }
    cases.Refused("no literal",
                  {"yes", "undefined", "None", "nil", "void 0", "<html>", "&", "\\n", "'a'", "a"});
    return cases.Take();
}

QList<TJsonCase> JsonCases::Strings() {
    TCases cases;
    for (int sign = 0; sign < 0x80; ++sign)
        cases.Add("one sign " + Hex(sign).toStdString(), Quoted(Byte(sign)),
                  sign >= 0x20 && sign != '"' && sign != '\\');
    cases.Refused("no end",
                  {"\"", "\"a", "\"a\\\"", "\"\\", "\"\\\\\\\"", "a\"", "\"a\"b", "\"a\"\"", "\"a'"});
    cases.Taken("string", {R"("")", R"("a")", R"("\\\\")", R"("\\\"")", R"("a/b")", R"("[1,2]{}:")",
                           Quoted(QByteArray(100'000, 'a')), Quoted(QByteArray("\\n").repeated(10'000))});
    AddEscapes(cases);
    AddUtf8(cases);
    return cases.Take();
}

QList<TJsonCase> JsonCases::Structures() {
    TCases cases;
    cases.Taken("array", {"[]", "[0]", "[[]]", "[[],[]]", "[0,1]", "[null,true,\"a\",{},[1]]", "[\"]\"]"});
    cases.Refused("array", {"[",     "]",        "[0",     "0]",    "[0,",           "[,",        "[,]",
                            "[0,]",  "[,0]",     "[0,,1]", "[0 1]", "[0;1]",         "[0:1]",     "[[0]",
                            "[0]]",  "[0}",      "{0]",    "(0)",   "<0>",           "[*]",       "[\"a\"",
                            "[\"a]", "[0,1,2,]", "[-]",    "[:]",   "[\"a\" \"b\"]", "[][]",      "[1]x",
                            "[1],",  "[a]",      "[...]",  "[0]0",  "[\\]",          "[\"\\x\"]", "[\xFF]"});
    cases.Taken("object", {"{}", R"({"":0})", R"({"a":0})", R"({"a":0,"b":1})", R"({"a":{"a":{}}})",
                           R"({"\u0061":[]})", R"({"a":"}"})", R"({"{":"["})", "{\"\xC3\xA9\":0}"});
    cases.Refused("object", {"{",
                             "}",
                             R"({"a")",
                             R"({"a":)",
                             R"({"a":0)",
                             R"({"a":0,)",
                             R"({"a":0,})",
                             R"({"a"})",
                             R"({"a":})",
                             R"({:0})",
                             R"({"a"0})",
                             R"({"a",0})",
                             R"({"a"=0})",
                             R"({"a"::0})",
                             R"({"a":0 "b":1})",
                             R"({"a":0;"b":1})",
                             R"({"a":0,,"b":1})",
                             R"({,"a":0})",
                             R"({a:0})",
                             R"({'a':0})",
                             R"({0:0})",
                             R"({null:0})",
                             R"({[]:0})",
                             R"({{}:0})",
                             R"({"a":0}})",
                             R"({"a":0]})",
                             R"({"a":[0})",
                             R"({"a":0}x)",
                             R"({"a":0}{})",
                             R"({"a" "b":0})",
                             R"({"a":0 1})",
                             R"({"a":"b":0})",
                             R"({"a":"b)",
                             R"({"\x":0})",
                             R"({"a
":0})",
                             "{\"\xFF\":0}",
                             R"({"a":00})",
                             R"({"a":tru})",
                             "{,}",
                             "{*}",
                             "{\"a\":0,\"b\"}"});
    cases.Refused("more than JSON", {"//a\n0", "0//a", "/**/0", "[0/*a*/]", "#a\n0", "{}//", "{}/", "{}#",
                                     "0 0", "[] {}", "\"a\" \"b\"", "0,0", ",0", "0,", "{}}", "null null"});
    cases.Refused("nothing", {"", " ", "\n", "\t\r\n "});
    cases.Taken("keys that are repeated", {R"({"a":1,"a":2})", R"({"a":1,"\u0061":2})", R"({"":1,"":2})"});
    cases.Choice("as deep as is read", Nested("[", "]", 1000), true);
    cases.Choice("deeper than is read", Nested("[", "]", 1001), false);
    cases.Choice("as deep as is read", Nested("{\"\":", "}", 1000), true);
    cases.Choice("deeper than is read", Nested("{\"\":", "}", 1001), false);
    cases.Refused("deep without an end", {QByteArray(100'000, '['), QByteArray("{\"\":").repeated(50'000),
                                          QByteArray("[{\"\":").repeated(50'000), QByteArray(100'000, ']')});
    return cases.Take();
}

QList<TJsonCase> JsonCases::WhiteSpace() {
    TCases cases;
    for (int sign = 0; sign < 256; ++sign) {
        const bool isSpace = sign == ' ' || sign == '\t' || sign == '\n' || sign == '\r';
        const std::string name = "white space of " + Hex(sign).toStdString();
        const QByteArray space = Byte(sign);
        // Signs that are something else in that place stand elsewhere.
        if (!QByteArray("[{\"-0123456789").contains(space))
            cases.Add(name, '[' + space + "0]", isSpace);
        if (!QByteArray("0123456789.eE").contains(space))
            cases.Add(name, '0' + space, isSpace);
        if (sign != ']')
            cases.Add(name, "[]" + space, isSpace);
        if (sign != ',' && sign != '}')
            cases.Add(name, "{\"a\"" + space + ":0}", isSpace);
    }
    cases.Taken("white space everywhere",
                {" \t\r\n[ \t\r\n0 \t\r\n, \t\r\n1 \t\r\n] \t\r\n", "\n{\r\"a\"\t:  0\n,\n\"b\":\n{ } } ",
                 QByteArray(5000, ' ') + "0"});
    cases.Refused("no white space", {"\xC2\xA0[]", "[]\xC2\xA0", "[\xE2\x80\x83]", "\xE2\x80\xA8[]",
                                     "[\xE3\x80\x80"
                                     "0]",
                                     "[\xE1\x9A\x80]", "\xC2\x85[]", "[\\n]"});
    return cases.Take();
}

QList<TJsonCase> JsonCases::Encodings() {
    TCases cases;
    const QByteArray mark = "\xEF\xBB\xBF";
    for (const QByteArray text : {"[]", "{}", "0", "\"a\"", ""})
        cases.Choice("byte order mark", mark + text, false);
    cases.Refused("byte order mark elsewhere", {"[]" + mark, '[' + mark + ']', mark.left(2) + "{}"});
    const QString text = QStringLiteral("[\"h\u00e9\",0]");
    for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE,
                                QStringConverter::Utf32LE, QStringConverter::Utf32BE}) {
        for (const auto flag : {QStringConverter::Flag::Default, QStringConverter::Flag::WriteBom}) {
            QStringEncoder encoder(encoding, flag);
            const QByteArray bytes = encoder.encode(text);
            cases.Refused("another encoding", {bytes});
        }
    }
    cases.Refused("another encoding",
                  {text.toLatin1(), "[\"\xA4\"]",
                   "[\x93"
                   "a\x94]",
                   "\"\x1B$B\"", "[\"\xE9\"]", "\xFE\xFF", "\xFF\xFE", QByteArray("[\"a\0b\"]", 7),
                   QByteArray("[]\0", 3), QByteArray("\0[]", 3), QByteArray(64, '\0')});
    return cases.Take();
}

QList<TJsonCase> JsonCases::All() {
    return Numbers() + Literals() + Strings() + Structures() + WhiteSpace() + Encodings();
}
