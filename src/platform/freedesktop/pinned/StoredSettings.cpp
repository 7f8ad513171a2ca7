#include "platform/freedesktop/pinned/StoredSettings.h"

#include "platform/freedesktop/base/GioPointer.h"

// The reading of one value belongs to what is declared for those who write back ends.
#define G_SETTINGS_ENABLE_BACKEND
#include <gio/gsettingsbackend.h>

namespace {

struct Unref
{
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
    void operator()(GSettingsSchemaKey *key) const { g_settings_schema_key_unref(key); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
};
template <typename T> using Owned = std::unique_ptr<T, Unref>;

std::optional<QStringList> stringsIn(GVariant *value)
{
    if (value == nullptr || !g_variant_is_of_type(value, G_VARIANT_TYPE_STRING_ARRAY)) {
        return std::nullopt;
    }
    QStringList strings;
    for (gsize i = 0; i < g_variant_n_children(value); ++i) {
        const Owned<GVariant> child(g_variant_get_child_value(value, i));
        strings.append(QString::fromUtf8(g_variant_get_string(child.get(), nullptr)));
    }
    return strings;
}

} // namespace

std::optional<QStringList> StoredSettings::chosenList(const QString &path)
{
    const GioPointer<GSettingsBackend> backend(g_settings_backend_get_default());
    const Owned<GVariant> value(G_SETTINGS_BACKEND_GET_CLASS(backend.get())
                                    ->read(backend.get(), path.toUtf8().constData(),
                                        G_VARIANT_TYPE_STRING_ARRAY, /*default_value=*/FALSE));
    return stringsIn(value.get());
}

QStringList StoredSettings::standardList(const char *schema, const char *key)
{
    GSettingsSchemaSource *const source = g_settings_schema_source_get_default();
    const Owned<GSettingsSchema> installed(source != nullptr
            ? g_settings_schema_source_lookup(source, schema, /*recursive=*/TRUE)
            : nullptr);
    // To ask for a key that is not there would end the process.
    if (!installed || !g_settings_schema_has_key(installed.get(), key)) {
        return {};
    }
    const Owned<GSettingsSchemaKey> description(g_settings_schema_get_key(installed.get(), key));
    const Owned<GVariant> value(g_settings_schema_key_get_default_value(description.get()));
    return stringsIn(value.get()).value_or(QStringList());
}
