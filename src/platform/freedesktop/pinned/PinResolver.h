// Finds the bundle that a pin stands for.

#pragma once

#include "platform/freedesktop/entries/DesktopFileIds.h"

class PinResolver final
{
public:
    // Of the data folders the one that counts most is the first. The configuration folder tells of
    // Plasma's terminal.
    PinResolver(const QStringList &dataFolders, QString configurationHome);

    // The absolute path of the entry or bundle; empty when there is none, or the name is none of
    // these: a desktop-file ID, also behind "applications:" or "application://"; a path or file
    // URL, which gives way to the entry that shadows it; "preferred://" with browser, mailer,
    // filemanager or terminal.
    QString pathOf(const QString &pin);

private:
    QString pathOfId(QString id) const;
    QString pathOfPreferred(const QString &kind) const;

    DesktopFileIds _ids;
    const QHash<QString, QString> _pathsById;
    const QString _configurationHome;
};
