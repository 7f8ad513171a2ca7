#include "platform/freedesktop/DesktopMotion.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/x11/XSettings.h"

// The reading of one value belongs to what is declared for those who write back ends.
#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gsettingsbackend.h>
#include <optional>
#include <utility>
#include <vector>

namespace {

// Key files one below the other: the first that has the key counts.
class SettingsFiles
{
public:
    SettingsFiles(const char *group, const char *key)
        : _group(group)
        , _key(key)
    { }

    void add(const QString &path) { _files.push_back({ path, {}, {} }); }
    // The same file in the user's folder and then in the system's.
    void add(const IconPlaces &places, const QString &name)
    {
        for (const QString &folder : QStringList { places.configHome } + places.configDirs) {
            add(folder + u'/' + name);
        }
    }
    QString value()
    {
        for (File &file : _files) {
            if (const auto state = FileState::of(file.path); state != file.state) {
                file.state = state;
                file.value = state ? keyFileValue(readKeyFile(file.path), _group, _key) : QString();
            }
            if (!file.value.isEmpty()) {
                return file.value;
            }
        }
        return {};
    }

private:
    struct File
    {
        QString path;
        std::optional<FileState> state;
        QString value;
    };

    const char *_group;
    const char *_key;
    std::vector<File> _files;
};

// A truth value of GSettings.
class SchemaKey
{
public:
    SchemaKey(const char *schema, const char *key)
        : _key(key)
    {
        GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
        if (source != nullptr) {
            _schema.reset(g_settings_schema_source_lookup(source, schema, TRUE));
        }
        // To ask for a key that is not there would end the process.
        if (!_schema || g_settings_schema_get_path(_schema.get()) == nullptr
            || !g_settings_schema_has_key(_schema.get(), key)) {
            return;
        }
        const std::unique_ptr<GSettingsSchemaKey, Unref> description(
            g_settings_schema_get_key(_schema.get(), key));
        const Value standard(g_settings_schema_key_get_default_value(description.get()));
        _standard = truthOf(standard.get());
        if (_standard) {
            _backend.reset(g_settings_backend_get_default());
        }
    }

    // What the user or an administrator has set. Empty when the key has its default or does not
    // exist.
    std::optional<bool> chosen() const
    {
        if (!_backend) {
            return {};
        }
        const QByteArray path = QByteArray(g_settings_schema_get_path(_schema.get())) + _key;
        const Value value(G_SETTINGS_BACKEND_GET_CLASS(_backend.get())
                              ->read(_backend.get(), path.constData(), G_VARIANT_TYPE_BOOLEAN,
                                  /*default_value=*/FALSE));
        return truthOf(value.get());
    }
    // What holds otherwise.
    std::optional<bool> standard() const { return _standard; }

private:
    struct Unref
    {
        void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
        void operator()(GSettingsSchemaKey *key) const { g_settings_schema_key_unref(key); }
        void operator()(GVariant *value) const { g_variant_unref(value); }
    };
    using Value = std::unique_ptr<GVariant, Unref>;

    static std::optional<bool> truthOf(GVariant *value)
    {
        return value != nullptr && g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN)
            ? std::optional(g_variant_get_boolean(value) != FALSE)
            : std::nullopt;
    }

    const char *_key;
    std::unique_ptr<GSettingsSchema, Unref> _schema;
    GioPointer<GSettingsBackend> _backend;
    std::optional<bool> _standard;
};

const char *schemaOf(const QStringList &desktops)
{
    if (desktops.contains(QLatin1String("x-cinnamon"))
        || desktops.contains(QLatin1String("cinnamon"))) {
        return "org.cinnamon.desktop.interface";
    }
    return desktops.contains(QLatin1String("mate")) ? "org.mate.interface"
                                                    : "org.gnome.desktop.interface";
}

} // namespace

class DesktopMotion::Sources
{
public:
    Sources(const IconPlaces &places, XConnection *connection)
        : _key(schemaOf(places.desktops), "enable-animations")
    {
        if (places.desktops.contains(QLatin1String("kde"))) {
            _kdeFiles.add(places, QStringLiteral("kdeglobals"));
        }
        for (const QLatin1String version : { QLatin1String("3.0"), QLatin1String("4.0") }) {
            const QString name = QLatin1String("gtk-%1/settings.ini").arg(version);
            _toolkitFiles.add(places, name);
            _toolkitFiles.add(QLatin1String("/etc/") + name);
        }
        if (connection != nullptr && connection->isOpen()) {
            _daemon = std::make_unique<XSettings>(*connection);
        }
    }

    bool isReduced()
    {
        bool isNumber = false;
        const double factor = _kdeFiles.value().toDouble(&isNumber);
        if (isNumber) {
            return factor <= 0;
        }
        const auto daemon = _daemon ? _daemon->number("Gtk/EnableAnimations") : std::nullopt;
        if (daemon) {
            return *daemon == 0;
        }
        if (const std::optional<bool> chosen = _key.chosen()) {
            return !*chosen;
        }
        const QString toolkit = _toolkitFiles.value();
        return !_key.standard().value_or(true) || toolkit == QLatin1String("0")
            || toolkit.compare(QLatin1String("false"), Qt::CaseInsensitive) == 0;
    }

private:
    SettingsFiles _kdeFiles { "KDE", "AnimationDurationFactor" };
    SettingsFiles _toolkitFiles { "Settings", "gtk-enable-animations" };
    std::unique_ptr<XSettings> _daemon;
    const SchemaKey _key;
};

DesktopMotion::DesktopMotion(IconPlaces places, Display display)
    : _places(std::move(places))
    , _display(std::move(display))
{ }

DesktopMotion::~DesktopMotion() = default;

bool DesktopMotion::isReduced() const
{
    if (!_sources) {
        _sources = std::make_unique<Sources>(_places, _display());
    }
    return _sources->isReduced();
}
