// Settings when one of the calls fails that read or write them.
#include "tests/faults/FaultRun.h"

#include "platform/Registry.h"

#include <QFile>

#include <gtest/gtest.h>

namespace {

const QString Root = QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\APIExplorer\\");
const QStringList TextNames = {QStringLiteral("ApiKey"), QStringLiteral("ClientId"), QStringLiteral("Secret"),
                               QStringLiteral("RedirectUrl")};
const QString OldState =
    QStringLiteral("old key|old client|old secret|old address|old scope,other scope|token");
const QString NewState = QStringLiteral("new key|new client|new secret|new address|new scope|");
const QStringList OneFile = {QStringLiteral("settings.db")};
const std::vector<const char*> AllKinds = {"open", "read", "write", "fsync", "unlink"};

void UseFolder(const QString& AFolder) {
    qputenv("ZO_SETTINGS_FILE", QFile::encodeName(AFolder + QStringLiteral("/settings.db")));
}

/// What the explorer has stored for a class, as one text.
QString State(const QString& AClass) {
    TRegistry registry;
    if (!registry.OpenKeyReadOnly(Root + AClass))
        return registry.HasFailed() ? QStringLiteral("unreadable") : QStringLiteral("nothing");
    QStringList texts, scopes;
    for (const QString& name : TextNames)
        texts.append(registry.ReadString(name));
    const bool hasToken = registry.ValueExists(QStringLiteral("Token"));
    if (registry.OpenKeyReadOnly(QStringLiteral("Scopes"))) {
        for (const QString& name : registry.GetValueNames())
            scopes.append(registry.ReadString(name));
    }
    return texts.join(u'|') + u'|' + scopes.join(u',') + u'|' +
           (hasToken ? QStringLiteral("token") : QString());
}

void StoreOld(const QString& AClass) {
    TRegistry registry;
    registry.OpenKey(Root + AClass, true);
    const QStringList texts = OldState.split(u'|');
    for (qsizetype i = 0; i < TextNames.size(); ++i)
        registry.WriteString(TextNames[i], texts[i]);
    registry.WriteBinaryData(QStringLiteral("Token"), "bytes of a token");
    registry.OpenKey(QStringLiteral("Scopes"), true);
    registry.WriteString(QStringLiteral("0"), QStringLiteral("old scope"));
    registry.WriteString(QStringLiteral("1"), QStringLiteral("other scope"));
    registry.CloseKey();
}

class SettingsFaults : public testing::Test {
protected:
    ~SettingsFaults() override { qunsetenv("ZO_SETTINGS_FILE"); }

    static void Prepare(const QString& AFolder) {
        UseFolder(AFolder);
        StoreOld(QStringLiteral("TFirst"));
        StoreOld(QStringLiteral("TSecond"));
    }

    /// ACheck gets the state of TFirst, read as the next start does it.
    static TFaultScript Script(const QString& AStep,
                               const std::function<void(const TFaultOutcome&, const QString&)>& ACheck) {
        return {QStringLiteral(ZO_FAULT_STEPS),
                {AStep, QStringLiteral("http://127.0.0.1")},
                Prepare,
                [ACheck](const TFaultOutcome& AOutcome) {
                    UseFolder(AOutcome.Folder);
                    const QString state = State(QStringLiteral("TFirst"));
                    SCOPED_TRACE(state.toStdString());
                    EXPECT_EQ(AOutcome.Files(), OneFile);
                    EXPECT_TRUE(AOutcome.IsGood() || AOutcome.Errors.contains("settings.db"));
                    ACheck(AOutcome, state);
                }};
    }
};

TEST_F(SettingsFaults, OptionsAreSavedWholeOrNotAtAll) {
    const auto check = [](const TFaultOutcome& AOutcome, const QString& AState) {
        // What cannot be told to be on disk may be there all the same.
        EXPECT_TRUE(AState == NewState || (!AOutcome.IsGood() && AState == OldState));
    };
    RunWithEveryFault(Script(QStringLiteral("save-options"), check), AllKinds, true);
}

TEST_F(SettingsFaults, TheFirstOptionsAreSavedWholeOrNotAtAll) {
    TFaultScript script =
        Script(QStringLiteral("save-options"), [](const TFaultOutcome& AOutcome, const QString& AState) {
            EXPECT_TRUE(AState == NewState || (!AOutcome.IsGood() && AState == QStringLiteral("nothing")));
        });
    script.Prepare = [](const QString&) {};
    const auto check = std::exchange(script.Check, {});
    script.Check = [check](const TFaultOutcome& AOutcome) {
        if (!AOutcome.Files().isEmpty())
            check(AOutcome);
        EXPECT_TRUE(AOutcome.IsGood() || AOutcome.Errors.contains("settings.db"));
    };
    RunWithEveryFault(script, {"open", "write", "fsync", "unlink"}, true);
}

TEST_F(SettingsFaults, OptionsThatCouldNotBeReadAreNotOverwritten) {
    const auto check = [](const TFaultOutcome& AOutcome, const QString& AState) {
        const QString changed =
            QString(OldState).replace(QStringLiteral("old key"), QStringLiteral("new key"));
        EXPECT_TRUE(AState == changed.chopped(5) || (!AOutcome.IsGood() && AState == OldState));
    };
    RunWithEveryFault(Script(QStringLiteral("change-key"), check), AllKinds);
}

TEST_F(SettingsFaults, ATokenIsSavedWholeOrNotAtAll) {
    const auto check = [](const TFaultOutcome& AOutcome, const QString& AState) {
        EXPECT_EQ(AState, OldState);
        TRegistry registry;
        ASSERT_TRUE(registry.OpenKeyReadOnly(Root + QStringLiteral("TFirst")));
        const QByteArray token = registry.ReadBinaryData(QStringLiteral("Token"));
        EXPECT_TRUE(token.contains("new token") || (!AOutcome.IsGood() && token == "bytes of a token"))
            << token.toHex().constData();
    };
    RunWithEveryFault(Script(QStringLiteral("save-token"), check), AllKinds, true);
}

TEST_F(SettingsFaults, AStartThatCannotReadThemLosesNone) {
    const auto check = [](const TFaultOutcome& AOutcome, const QString& AState) {
        EXPECT_EQ(AState, OldState);
        EXPECT_TRUE(!AOutcome.IsGood() || AOutcome.Output == "old key \n");
    };
    RunWithEveryFault(Script(QStringLiteral("start-and-end"), check), {"open", "read"}, true);
}

TEST_F(SettingsFaults, AnotherWriterLosesNothingByThem) {
    int written = 0;
    TFaultScript script =
        Script(QStringLiteral("save-two"), [&](const TFaultOutcome& AOutcome, const QString& AState) {
            const QString second = State(QStringLiteral("TSecond"));
            EXPECT_TRUE(AState == NewState || (!AOutcome.IsGood() && AState == OldState));
            EXPECT_TRUE(second == NewState || (!AOutcome.IsGood() && second == OldState));
            TRegistry registry;
            EXPECT_TRUE(written == 0 || registry.OpenKeyReadOnly(QStringLiteral("Other")));
            EXPECT_EQ(registry.ReadString(QStringLiteral("Number")).toInt(), written);
            written = 0;
        });
    script.Meanwhile = [&](const QString&) {
        TRegistry registry;
        registry.OpenKey(QStringLiteral("Other"), true);
        registry.WriteString(QStringLiteral("Number"), QString::number(written + 1));
        registry.CloseKey();
        ++written;
    };
    RunWithEveryFault(script, {"open", "write", "fsync", "unlink"});
}

TEST_F(SettingsFaults, ADamagedFileIsNeverLost) {
    const QByteArray damaged = QByteArray("SQLite format 3\0", 16) + QByteArray(4080, 'x');
    TFaultScript script;
    script.Program = QStringLiteral(ZO_FAULT_STEPS);
    script.Arguments = QStringList{QStringLiteral("save-options")};
    script.AlwaysComplains = true;
    script.Prepare = [&](const QString& AFolder) {
        QFile file(AFolder + QStringLiteral("/settings.db"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        file.write(damaged);
    };
    script.Check = [&](const TFaultOutcome& AOutcome) {
        UseFolder(AOutcome.Folder);
        State(QStringLiteral("TFirst")); // as the next start does
        bool isThere = false;
        for (const QString& name : AOutcome.Files()) {
            isThere |= AOutcome.Content(name) == damaged;
            EXPECT_TRUE(name.startsWith(QStringLiteral("settings.db")));
        }
        EXPECT_TRUE(isThere);
        EXPECT_TRUE(AOutcome.Errors.contains("settings.db"));
        EXPECT_LE(AOutcome.Files().size(), 2);
    };
    RunWithEveryFault(script, {"open", "read", "rename", "write"});
}

} // namespace
