#include "platform/freedesktop/icons/IconThemeName.h"

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/icons/IconTheme.h"

#include <QXmlStreamReader>

#include <vector>

namespace {

enum class Format { KeyFile, XfceChannel };

// A file that may name the theme. Group and key are of no interest in Xfce's format.
struct Setting
{
    QString file;
    Format format = Format::KeyFile;
    const char *group = "";
    const char *key = "";
};

bool runs(const IconPlaces &places, std::initializer_list<QLatin1String> desktops)
{
    return std::any_of(desktops.begin(), desktops.end(),
        [&places](QLatin1String desktop) { return places.desktops.contains(desktop); });
}

bool isKde(const IconPlaces &places)
{
    return runs(places, { QLatin1String("kde") });
}

// The same file in the user's and then in the system's folders.
void addEverywhere(std::vector<Setting> &settings, const IconPlaces &places, const Setting &setting)
{
    for (const QString &folder : QStringList { places.configHome } + places.configDirs) {
        Setting here = setting;
        here.file = folder + u'/' + setting.file;
        settings.push_back(here);
    }
}

std::vector<Setting> settingsOf(const IconPlaces &places)
{
    std::vector<Setting> settings;
    if (isKde(places)) {
        addEverywhere(
            settings, places, { QStringLiteral("kdeglobals"), Format::KeyFile, "Icons", "Theme" });
    }
    if (runs(places, { QLatin1String("xfce") })) {
        const QString channel = QStringLiteral("xfce4/xfconf/xfce-perchannel-xml/xsettings.xml");
        addEverywhere(settings, places, { channel, Format::XfceChannel });
    }
    if (runs(places, { QLatin1String("lxqt") })) {
        addEverywhere(settings, places,
            { QStringLiteral("lxqt/lxqt.conf"), Format::KeyFile, "General", "icon_theme" });
    }
    Setting toolkit { {}, Format::KeyFile, "Settings", "gtk-icon-theme-name" };
    for (const QLatin1String version : { QLatin1String("3.0"), QLatin1String("4.0") }) {
        toolkit.file = QLatin1String("gtk-%1/settings.ini").arg(version);
        addEverywhere(settings, places, toolkit);
        toolkit.file = QLatin1String("/etc/gtk-%1/settings.ini").arg(version);
        settings.push_back(toolkit);
    }
    return settings;
}

// `<property name="Net"> … <property name="IconThemeName" type="string" value="…"/>`
QString nameInXfceChannel(const QByteArray &text)
{
    QXmlStreamReader xml(text);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"property"
            && xml.attributes().value(QLatin1String("name")) == u"IconThemeName") {
            return xml.attributes().value(QLatin1String("value")).toString();
        }
    }
    return {};
}

QString nameIn(const Setting &setting)
{
    const QByteArray text = readKeyFile(setting.file);
    if (text.isEmpty()) {
        return {};
    }
    return setting.format == Format::XfceChannel ? nameInXfceChannel(text)
                                                 : keyFileValue(text, setting.group, setting.key);
}

// Making settings of a schema, or asking for a key, that is not installed would end the process.
bool hasSchema(const char *name)
{
    GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
    GSettingsSchema *const schema =
        source != nullptr ? g_settings_schema_source_lookup(source, name, TRUE) : nullptr;
    if (schema == nullptr) {
        return false;
    }
    bool isUsable = g_settings_schema_has_key(schema, IconThemeName::settingName);
    if (isUsable) {
        GSettingsSchemaKey *const key =
            g_settings_schema_get_key(schema, IconThemeName::settingName);
        isUsable =
            g_variant_type_equal(g_settings_schema_key_get_value_type(key), G_VARIANT_TYPE_STRING);
        g_settings_schema_key_unref(key);
    }
    isUsable = isUsable && g_settings_schema_get_path(schema) != nullptr;
    g_settings_schema_unref(schema);
    return isUsable;
}

QString nameInSchema(const QString &schema)
{
    const GioPointer<GSettings> settings(g_settings_new(schema.toUtf8().constData()));
    gchar *const value = g_settings_get_string(settings.get(), IconThemeName::settingName);
    const QString name = QString::fromUtf8(value);
    g_free(value);
    return name;
}

} // namespace

QString IconThemeName::schema(const IconPlaces &places)
{
    const char *name = nullptr;
    if (runs(places, { QLatin1String("x-cinnamon"), QLatin1String("cinnamon") })) {
        name = "org.cinnamon.desktop.interface";
    } else if (runs(places, { QLatin1String("mate") })) {
        name = "org.mate.interface";
    } else if (runs(places,
                   { QLatin1String("gnome"), QLatin1String("gnome-classic"),
                       QLatin1String("gnome-flashback"), QLatin1String("unity"),
                       QLatin1String("budgie"), QLatin1String("pantheon") })) {
        name = "org.gnome.desktop.interface";
    }
    return name != nullptr && hasSchema(name) ? QString::fromLatin1(name) : QString();
}

QString IconThemeName::current(const IconPlaces &places)
{
    const auto isInstalled = [&places](const QString &name) {
        return IconTheme::isInstalled(name, places.baseFolders);
    };
    if (const QString schemaName = schema(places); !schemaName.isEmpty()) {
        const QString name = nameInSchema(schemaName);
        if (isInstalled(name)) {
            return name;
        }
    }
    bool mayBeBreeze = isKde(places);
    for (const Setting &setting : settingsOf(places)) {
        // KDE writes no theme down while the user keeps its own.
        if (mayBeBreeze && !setting.file.endsWith(QLatin1String("/kdeglobals"))) {
            mayBeBreeze = false;
            if (isInstalled(QStringLiteral("breeze"))) {
                return QStringLiteral("breeze");
            }
        }
        const QString name = nameIn(setting);
        if (isInstalled(name)) {
            return name;
        }
    }
    const QString usual = QStringLiteral("Adwaita");
    return isInstalled(usual) ? usual : QStringLiteral("hicolor");
}

QStringList IconThemeName::files(const IconPlaces &places)
{
    QStringList files;
    for (const Setting &setting : settingsOf(places)) {
        files.append(setting.file);
    }
    return files;
}
