#include "platform/freedesktop/entries/EntryReading.h"

#include "platform/freedesktop/entries/DesktopFileIds.h"

EntryReading::EntryReading(const QList<QByteArray> &languages)
    : _entries(languages)
{ }

EntryReading::~EntryReading()
{
    _isEnding = true;
    if (_thread.joinable()) {
        _thread.join();
    }
}

void EntryReading::start(const QStringList &dataFolders)
{
    _thread = std::thread([this, dataFolders] { read(dataFolders); });
}

void EntryReading::read(const QStringList &dataFolders)
{
    const QHash<QString, QString> paths = DesktopFileIds(dataFolders).pathsById();
    for (const QString &path : paths) {
        if (_isEnding) {
            return;
        }
        _entries.entryAt(path);
    }
}
