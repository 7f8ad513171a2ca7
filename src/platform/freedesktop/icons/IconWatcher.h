// Notices that icons, or the choice among them, may have changed: by files, folders and a GSettings
// schema.
//
// Lives on the main thread. A burst of changes is told of once, a fifth of a second after it began.

#pragma once

#include "platform/freedesktop/base/GioPointer.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QStringList>
#include <QTimer>

class IconWatcher : public QObject
{
    Q_OBJECT

public:
    // An empty schema is none; any other must be installed and have the icon theme's setting.
    explicit IconWatcher(const QString &schema, QObject *parent = nullptr);
    ~IconWatcher() override;

    // From now on watches these paths and no others. For one that does not exist the nearest folder
    // above it stands in, until it is there; call again after each change.
    void watch(const QStringList &paths);

Q_SIGNALS:
    void touched();

private:
    void startTimer();

    QFileSystemWatcher _files;
    QTimer _timer;
    GioPointer<GSettings> _settings;
    gulong _connection = 0;
};
