#include "platform/freedesktop/icons/IconWatcher.h"

#include "platform/freedesktop/icons/IconThemeName.h"

#include <QFileInfo>
#include <QSet>

#include <chrono>

constexpr std::chrono::milliseconds burstLength(200);
// Far above any real setting; keeps a strange theme from using up the user's watches.
constexpr qsizetype mostWatches = 1000;

static QString existing(QString path)
{
    while (!path.isEmpty() && !QFileInfo::exists(path)) {
        path.truncate(path.lastIndexOf(u'/'));
    }
    return path;
}

IconWatcher::IconWatcher(const QString &schema, QObject *parent)
    : QObject(parent)
{
    _timer.setSingleShot(true);
    _timer.setInterval(burstLength);
    connect(&_timer, &QTimer::timeout, this, &IconWatcher::touched);
    connect(&_files, &QFileSystemWatcher::fileChanged, this, &IconWatcher::startTimer);
    connect(&_files, &QFileSystemWatcher::directoryChanged, this, &IconWatcher::startTimer);
    if (schema.isEmpty()) {
        return;
    }
    _settings.reset(g_settings_new(schema.toUtf8().constData()));
    const QByteArray signal = QByteArray("changed::") + IconThemeName::settingName;
    const auto changed = +[](GSettings *, const char *, gpointer self) {
        static_cast<IconWatcher *>(self)->startTimer();
    };
    _connection = g_signal_connect(_settings.get(), signal.constData(), G_CALLBACK(changed), this);
    // The signal comes only for a setting that has been read since.
    g_free(g_settings_get_string(_settings.get(), IconThemeName::settingName));
}

IconWatcher::~IconWatcher()
{
    if (_connection != 0) {
        g_signal_handler_disconnect(_settings.get(), _connection);
    }
}

void IconWatcher::watch(const QStringList &paths)
{
    QSet<QString> wanted;
    for (const QString &path : paths) {
        const QString real = existing(path);
        if (!real.isEmpty() && wanted.size() < mostWatches) {
            wanted.insert(real);
        }
        // A file replaced by another one of its name is seen only by the folder.
        if (QFileInfo(real).isFile()) {
            wanted.insert(real.left(real.lastIndexOf(u'/')));
        }
    }
    const QStringList known = _files.files() + _files.directories();
    const QSet<QString> watched(known.begin(), known.end());
    const QSet<QString> superfluous = watched - wanted;
    const QSet<QString> added = wanted - watched;
    if (!superfluous.isEmpty()) {
        _files.removePaths(superfluous.values());
    }
    if (!added.isEmpty()) {
        _files.addPaths(added.values());
    }
}

void IconWatcher::startTimer()
{
    if (!_timer.isActive()) {
        _timer.start();
    }
}
