// Settings of a test's own.
#pragma once

#include "platform/IdeTheming.h"
#include "platform/Registry.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class HostTest : public testing::Test {
protected:
    HostTest() { qputenv("ZO_SETTINGS_FILE", SettingsFile().toUtf8()); }
    ~HostTest() override {
        TZOIdeTheming::SetTheme(thSystem);
        qunsetenv("ZO_SETTINGS_FILE");
    }

    QString SettingsFile() const { return Folder.filePath(QStringLiteral("settings.db")); }
    void DamageSettings() const {
        QFile file(SettingsFile());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray("SQLite format 3\0", 16) + QByteArray(4080, 'x'));
    }

    /// A YAML key and its list that even a machine of several times today's pace does not read at once.
    static QByteArray LongYaml() {
        const QByteArray line = "  - {name: some text, value: 12345, list: [a, b, c]}\n";
        return "x-more:\n" + line.repeated((qint64(64) << 20) / line.size());
    }

    QTemporaryDir Folder;
};
