#include "hosts/standalone/HostSettings.h"

#include "platform/Exceptions.h"
#include "platform/Registry.h"

namespace {

const QString Key = QStringLiteral("SOFTWARE\\Orvane Labs\\ZO-Tools 2020\\Bridgework\\Explorer");
const QString ThemeValue = QStringLiteral("Theme");
const QString RecentKey = QStringLiteral("RecentDocuments");
const QString GeometryValue = QStringLiteral("Geometry");

constexpr qsizetype MaxRecent = 10;

// In the order of TZOTheme.
const QString ThemeNames[] = {QStringLiteral("light"), QStringLiteral("dark"), QStringLiteral("system")};

template <class F>
void Write(F&& AWrite) {
    TRegistry registry;
    registry.OpenKey(Key, true);
    AWrite(registry);
    registry.CloseKey();
}

// A value of a strange type is as good as none: it only says how the window looks.
template <class F>
auto Read(F&& ARead) -> decltype(ARead(std::declval<TRegistry&>())) {
    try {
        TRegistry registry;
        if (registry.OpenKeyReadOnly(Key))
            return ARead(registry);
    } catch (const ERegistryException&) {
    }
    return {};
}

QStringList ReadList(const TRegistry& ARegistry) {
    QStringList texts;
    for (int i = 0; ARegistry.ValueExists(QString::number(i)); ++i)
        texts.append(ARegistry.ReadString(QString::number(i)));
    return texts;
}

} // namespace

TZOTheme HostSettings::Theme() {
    const QString name = Read([](TRegistry& ARegistry) { return ARegistry.ReadString(ThemeValue); });
    for (const TZOTheme theme : {thLight, thDark})
        if (name == ThemeNames[theme])
            return theme;
    return thSystem;
}

void HostSettings::SetTheme(TZOTheme ATheme) {
    Write([&](TRegistry& ARegistry) { ARegistry.WriteString(ThemeValue, ThemeNames[ATheme]); });
}

QByteArray HostSettings::Geometry() {
    return Read([](TRegistry& ARegistry) { return ARegistry.ReadBinaryData(GeometryValue); });
}

void HostSettings::SetGeometry(const QByteArray& AGeometry) {
    Write([&](TRegistry& ARegistry) { ARegistry.WriteBinaryData(GeometryValue, AGeometry); });
}

QStringList HostSettings::RecentDocuments() {
    return Read([](TRegistry& ARegistry) {
        return ARegistry.OpenKeyReadOnly(RecentKey) ? ReadList(ARegistry) : QStringList();
    });
}

void HostSettings::RememberDocument(const QString& APath) {
    Write([&](TRegistry& ARegistry) {
        ARegistry.OpenKey(RecentKey, true);
        QStringList paths = ReadList(ARegistry);
        paths.removeAll(APath);
        paths.prepend(APath);
        paths = paths.mid(0, MaxRecent);
        for (qsizetype i = 0; i < paths.size(); ++i)
            ARegistry.WriteString(QString::number(i), paths[i]);
    });
}
