#include "runtime/service/ServicePlugins.h"

#include "runtime/service/RestService.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class ServicePlugins : public testing::Test {
protected:
    void TearDown() override { qunsetenv("ZO_TEST_PLUGIN"); }

    /// A folder of its own for each copy: a library is loaded once by its name.
    QString Put(const char* APlugin, const QString& AName) {
        const QString target = Folder.filePath(AName);
        EXPECT_TRUE(QFile::copy(QStringLiteral(ZO_TEST_PLUGINS "/") + QLatin1String(APlugin), target));
        return target;
    }

    static QStringList ClassNames() {
        QStringList names;
        for (const TZORestServiceClass* serviceClass : TZOTypeInfo::Services())
            names.append(serviceClass->ClassName());
        return names;
    }

    /// What is said of the one plug-in that is loaded and fails.
    QString Failure(const QString& AFileName) {
        TZOServicePlugins plugins;
        plugins.Load(Folder.path());
        EXPECT_EQ(ClassNames(), QStringList());
        EXPECT_EQ(plugins.Failures().size(), 1);
        const QString text = plugins.Failures().value(0).ToText();
        EXPECT_TRUE(text.contains(AFileName)) << text.toStdString();
        return text;
    }

    QTemporaryDir Folder;
};

} // namespace

TEST_F(ServicePlugins, RegisterTheirClassesUntilTheyAreStopped) {
    Put("greet.so", QStringLiteral("greet.so"));
    {
        TZOServicePlugins plugins;
        plugins.Load(Folder.path());
        EXPECT_TRUE(plugins.Failures().isEmpty());
        EXPECT_EQ(ClassNames(), QStringList{QStringLiteral("TGreetService")});
        // A file of a name that is loaded already is left alone.
        plugins.Load(Folder.path());
        EXPECT_EQ(ClassNames().size(), 1);
    }
    EXPECT_EQ(ClassNames(), QStringList());
}

TEST_F(ServicePlugins, AreNoneInAFolderThatIsNotThere) {
    TZOServicePlugins plugins;
    plugins.Load(Folder.filePath(QStringLiteral("missing")));
    EXPECT_TRUE(plugins.Failures().isEmpty());
}

TEST_F(ServicePlugins, ThatAreNoLibraryAreNamedAndSkipped) {
    const QString file = Folder.filePath(QStringLiteral("broken.so"));
    QFile broken(file);
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("This is no library.");
    broken.close();
    EXPECT_TRUE(Failure(file).contains(QStringLiteral("was skipped")));
}

TEST_F(ServicePlugins, WithoutAStartFunctionAreNamedAndSkipped) {
    const QString text = Failure(Put("silent.so", QStringLiteral("silent.so")));
    EXPECT_TRUE(text.contains(QStringLiteral("ZOStartServices"))) << text.toStdString();
}

TEST_F(ServicePlugins, ThatRaiseAreSkippedWithTheirReasonAndTheirClasses) {
    qputenv("ZO_TEST_PLUGIN", "raise");
    const QString text = Failure(Put("greet.so", QStringLiteral("raising.so")));
    EXPECT_TRUE(text.contains(QStringLiteral("The greeting is out of order."))) << text.toStdString();
}

TEST_F(ServicePlugins, ThatRegisterNothingAreNamedAndSkipped) {
    qputenv("ZO_TEST_PLUGIN", "nothing");
    const QString text = Failure(Put("greet.so", QStringLiteral("idle.so")));
    EXPECT_TRUE(text.contains(QStringLiteral("registered no service class"))) << text.toStdString();
}

TEST_F(ServicePlugins, DoNotKeepOthersFromLoading) {
    Put("silent.so", QStringLiteral("a.so"));
    Put("greet.so", QStringLiteral("b.so"));
    TZOServicePlugins plugins;
    plugins.Load(Folder.path());
    EXPECT_EQ(plugins.Failures().size(), 1);
    EXPECT_EQ(ClassNames(), QStringList{QStringLiteral("TGreetService")});
}
