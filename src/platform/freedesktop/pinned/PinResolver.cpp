#include "platform/freedesktop/pinned/PinResolver.h"

#include "platform/freedesktop/base/GioPointer.h"
#include "platform/freedesktop/base/KeyFile.h"

#include <QUrl>

namespace {

// The ID of what opens such documents when the user says no more; empty when nothing does.
QString defaultFor(const char *type)
{
    const GioPointer<GAppInfo> info(g_app_info_get_default_for_type(type, FALSE));
    const char *const id = info ? g_app_info_get_id(info.get()) : nullptr;
    return QString::fromUtf8(id);
}

} // namespace

PinResolver::PinResolver(const QStringList &dataFolders, QString configurationHome)
    : _ids(dataFolders)
    , _pathsById(_ids.pathsById())
    , _configurationHome(std::move(configurationHome))
{ }

QString PinResolver::pathOf(const QString &pin)
{
    if (pin.startsWith(u'/')) {
        return _ids.pathThatCounts(pin);
    }
    const QUrl url(pin, QUrl::StrictMode);
    const QString scheme = url.scheme();
    if (scheme == u"file") {
        const QString path = url.toLocalFile();
        return path.startsWith(u'/') ? _ids.pathThatCounts(path) : QString();
    }
    if (scheme == u"preferred") {
        return pathOfPreferred(url.host());
    }
    if (scheme == u"applications" || scheme == u"application") {
        // Behind two slashes the ID is where a host would be, without its upper case.
        return pathOfId(
            QUrl::fromPercentEncoding(pin.section(u':', 1).section(u'?', 0, 0).toUtf8()));
    }
    return pathOfId(pin);
}

QString PinResolver::pathOfId(QString id) const
{
    while (id.startsWith(u'/')) {
        id.remove(0, 1);
    }
    return _pathsById.value(id.replace(u'/', u'-'));
}

QString PinResolver::pathOfPreferred(const QString &kind) const
{
    if (kind == u"browser") {
        const QString browser = defaultFor("x-scheme-handler/http");
        return pathOfId(browser.isEmpty() ? defaultFor("text/html") : browser);
    }
    if (kind == u"mailer") {
        return pathOfId(defaultFor("x-scheme-handler/mailto"));
    }
    if (kind == u"filemanager") {
        return pathOfId(defaultFor("inode/directory"));
    }
    if (kind == u"terminal") {
        const QByteArray settings = readKeyFile(_configurationHome + QStringLiteral("/kdeglobals"));
        const QString chosen = keyFileValue(settings, "General", "TerminalService");
        return pathOfId(chosen.isEmpty() ? QStringLiteral("org.kde.konsole.desktop") : chosen);
    }
    return {};
}
