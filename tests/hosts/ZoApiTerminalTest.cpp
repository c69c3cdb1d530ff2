// Documents and servers whose texts a terminal would obey: what zoapi shows of them there, and what it hands
// to other programs.
#include "tests/servers/RawServer.h"

#include "platform/VisibleText.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

// As JSON writes it: an escape sequence, a bell, a mark that turns what follows, a control of one byte more,
// a line break.
constexpr const char* Evil = R"(a\u001b]0;x\u0007\u202eb\u009b31m\nc)";
// The same as bytes, and as it may be seen.
constexpr const char* EvilBytes = "a\x1b]0;x\a\u202Eb\u009B31m\nc";
constexpr const char* EvilShown = "a␛]0;x␇\\u202Eb\\u009B31m␊c";

/// A terminal of 80 columns that does nothing to what is written to it.
class TTerminal {
public:
    TTerminal() : FMaster(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        EXPECT_TRUE(FMaster >= 0 && ::grantpt(FMaster) == 0 && ::unlockpt(FMaster) == 0);
        FSlave = ::open(::ptsname(FMaster), O_RDWR | O_NOCTTY | O_CLOEXEC);
        EXPECT_GE(FSlave, 0);
        termios settings{};
        EXPECT_EQ(::tcgetattr(FSlave, &settings), 0);
        ::cfmakeraw(&settings);
        EXPECT_EQ(::tcsetattr(FSlave, TCSANOW, &settings), 0);
    }
    ~TTerminal() {
        CloseSlave();
        ::close(FMaster);
    }
    TTerminal(const TTerminal&) = delete;
    TTerminal& operator=(const TTerminal&) = delete;

    int Slave() const { return FSlave; }
    /// All that is written to it until the last program that has it ends; this one lets go of it.
    QByteArray ReadAll() {
        CloseSlave();
        QByteArray text;
        for (pollfd there{FMaster, POLLIN, 0}; ::poll(&there, 1, 30000) > 0;) {
            char piece[4096];
            const ssize_t size = ::read(FMaster, piece, sizeof piece);
            if (size <= 0)
                return text;
            text.append(piece, size);
        }
        ADD_FAILURE() << "The program does not end.";
        return text;
    }

private:
    void CloseSlave() {
        if (FSlave >= 0)
            ::close(std::exchange(FSlave, -1));
    }

    int FMaster;
    int FSlave = -1;
};

class ZoApiTerminal : public testing::Test {
protected:
    void SetUp() override {
        Write("evil.json", QByteArray(R"({"openapi": "3.0.0", "info": {"title": "EVIL", "version": "EVIL"},
  "paths": {"/x": 5, "/a": {"get": {"operationId": "EVIL", "summary": "EVIL",
    "parameters": [{"name": "EVIL", "in": "query", "description": "EVIL", "schema": {"type": "string", "enum": ["EVIL"]}}],
    "responses": {"200": {"description": "d", "content": {"application/json": {"schema": {"$ref": "#/components/schemas/EVIL"}}}}}}},
    "/get": {"get": {"operationId": "get", "responses": {"200": {"description": "d", "content": {"application/json": {}}}}}},
    "/file": {"get": {"operationId": "file", "responses": {"200": {"description": "d", "content": {"image/png": {}}}}}}},
  "components": {"schemas": {"EVIL": {"type": "object", "properties": {"EVIL": {"type": "string"}}}}}})")
                               .replace("EVIL", Evil));
    }
    void Write(const char* AName, const QByteArray& AText) const {
        QFile file(Folder.filePath(QLatin1String(AName)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(AText);
    }
    /// Runs the program with pipes; returns its exit code.
    int Run(const QStringList& AArguments) {
        QProcess process;
        Start(process, AArguments);
        return Finish(process);
    }
    /// The same with standard output and standard error on a terminal: what it gets.
    QByteArray Shown(const QStringList& AArguments) {
        TTerminal terminal;
        QProcess process;
        process.setChildProcessModifier([&terminal] {
            ::dup2(terminal.Slave(), STDOUT_FILENO);
            ::dup2(terminal.Slave(), STDERR_FILENO);
        });
        Start(process, AArguments);
        const QByteArray shown = terminal.ReadAll();
        Finish(process);
        EXPECT_EQ(Output + Errors, QByteArray());
        return shown;
    }
    QStringList Call(const QStringList& AArguments) const {
        return QStringList{QStringLiteral("call"), QStringLiteral("evil.json")} + AArguments +
               QStringList{QStringLiteral("--server"), QString::fromLatin1(Server.Url({}))};
    }

    QTemporaryDir Folder;
    QByteArray Answer;
    TRawServer Server{TRawServer::Answering([this](const QByteArray&) { return Answer; })};
    QByteArray Output;
    QByteArray Errors;

private:
    void Start(QProcess& AProcess, const QStringList& AArguments) const {
        AProcess.setWorkingDirectory(Folder.path());
        AProcess.start(QStringLiteral(ZO_ZOAPI), AArguments);
    }
    int Finish(QProcess& AProcess) {
        EXPECT_TRUE(AProcess.waitForFinished(30000)) << AProcess.errorString().toStdString();
        Output = AProcess.readAllStandardOutput();
        Errors = AProcess.readAllStandardError();
        return AProcess.exitCode();
    }
};

bool Acts(const QByteArray& AText) {
    const QString text = QString::fromUtf8(AText);
    return VisibleLines(text) != text;
}

} // namespace

TEST_F(ZoApiTerminal, TablesAreVisibleTextWhereverTheyGo) {
    const QByteArray evil = EvilShown;
    // Where texts are put on one line, their line breaks are blanks.
    const QByteArray flat = QByteArray(evil).replace("␊", " ");
    Run({"operations", "evil.json"});
    EXPECT_EQ(Output.left(Output.indexOf('\n')), evil + "  GET  /a  " + flat);
    const QByteArray operations = Output;
    EXPECT_EQ(Shown({"operations", "evil.json"}), operations);
    Run({"import", "evil.json"});
    EXPECT_TRUE(Output.startsWith(flat + "  " + flat + "  openapi-3.0  3 operations"))
        << Output.toStdString();
    EXPECT_FALSE(Acts(Output)) << Output.toStdString();
    EXPECT_EQ(Run({"describe", "evil.json", "GET /a"}), 0);
    EXPECT_TRUE(
        Output.startsWith("request\n  " + evil + ": string [" + evil + "] - " + flat + "\nresponse: object "))
        << Output.toStdString();
    EXPECT_TRUE(Output.endsWith("\n  " + evil + ": string\n")) << Output.toStdString();
    EXPECT_FALSE(Acts(Output)) << Output.toStdString();
}

TEST_F(ZoApiTerminal, ListsForOtherProgramsAreExactAndOnlyATerminalDoesNotObeyThem) {
    // Titles have no line breaks.
    const QByteArray exact =
        QByteArray(EvilBytes).replace("\x1b", "\\u001b").replace("\a", "\\u0007").chopped(2);
    for (const char* command : {"operations", "import"}) {
        Run({command, "--json", "evil.json"});
        const QByteArray listed = Output;
        EXPECT_TRUE(listed.contains('"' + exact)) << listed.toStdString();
        const QByteArray shown = Shown({command, "--json", "evil.json"});
        EXPECT_FALSE(Acts(shown)) << shown.toStdString();
        EXPECT_EQ(shown, VisibleText(QString::fromUtf8(listed).chopped(1)).toUtf8() + '\n');
    }
}

TEST_F(ZoApiTerminal, AnswersAreExactAndOnlyATerminalDoesNotObeyThem) {
    const QByteArray json = R"({"a":"b)"
                            "\u202E\u009B31m\x7F"
                            R"("})";
    Answer = TRawServer::Answer(json, "application/json");
    EXPECT_EQ(Run(Call({"get"})), 0);
    EXPECT_EQ(Output, json + '\n');
    EXPECT_EQ(Shown(Call({"get"})), R"({"a":"b\u202E\u009B31m␡"})"
                                    "\n");
}

TEST_F(ZoApiTerminal, DownloadsAreExactAndOnlyATerminalDoesNotObeyThem) {
    // Longer than any buffer, so that pieces end within characters and between the two of a line's end.
    QByteArray file = "\x1b[2J";
    QByteArray shown = "␛[2J";
    for (int i = 0; i < 40000; ++i) {
        file += "\u202Eä\r\n";
        shown += "\\u202Eä\n";
    }
    file += "\x9b"
            "31m";
    shown += "\uFFFD31m";
    Answer = TRawServer::Answer(file, "image/png");
    EXPECT_EQ(Run(Call({"file", "--output", "-"})), 0);
    EXPECT_EQ(Output, file);
    EXPECT_EQ(Shown(Call({"file", "--output", "-"})), shown);
    Run(Call({"file", "--output", "kept"}));
    QFile kept(Folder.filePath(QStringLiteral("kept")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), file);
}

TEST_F(ZoApiTerminal, FailuresAreVisibleTextWhereverTheyGo) {
    Answer = TRawServer::Answer(QByteArray(R"({"detail": "EVIL"})").replace("EVIL", Evil),
                                "application/problem+json", "403 Forbidden");
    EXPECT_EQ(Run(Call({"get"})), 1);
    EXPECT_TRUE(Errors.startsWith("EZOHttpStatusError\n403 Forbidden\na")) << Errors.toStdString();
    EXPECT_FALSE(Acts(Errors)) << Errors.toStdString();
    const QByteArray failure = Errors;
    EXPECT_EQ(Shown(Call({"get"})), failure);
    EXPECT_EQ(Run({"describe", "evil.json", QLatin1Char('x') + QString::fromUtf8(EvilBytes)}), 2);
    const QByteArray evil = QByteArray(EvilShown).replace("␊", "\n");
    EXPECT_EQ(Errors, "evil.json has no operation \"x" + evil + "\".\nTry 'zoapi --help'.\n");
    Write("bad.json", QByteArray(R"({"swagger": "EVIL"})").replace("EVIL", Evil));
    EXPECT_EQ(Run({"operations", "bad.json"}), 2);
    EXPECT_FALSE(Acts(Errors)) << Errors.toStdString();
}

TEST_F(ZoApiTerminal, TracesAreExactAndOnlyATerminalDoesNotObeyThem) {
    Answer = TRawServer::Answer("1", "application/json", "200 OK", "X-Evil: \x1b[31m\u202E\r\n");
    EXPECT_EQ(Run(Call({"get", "--verbose"})), 0);
    EXPECT_TRUE(Errors.contains("X-Evil: \x1b[31m\u202E\n")) << Errors.toStdString();
    const QByteArray shown = Shown(Call({"get", "--verbose"}));
    EXPECT_TRUE(shown.contains("X-Evil: ␛[31m\\u202E\n")) << shown.toStdString();
    EXPECT_FALSE(Acts(shown)) << shown.toStdString();
}
