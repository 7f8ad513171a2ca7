// What a feed of releases says: RSS 2.0, or Atom as forges make it.
//
// The version of a release stands in an element or attribute `shortVersionString` of any namespace,
// else in one `version`, or else in its title ("Ortu 1.2: new", "v1.2"). Versions with a suffix
// ("1.2-rc1") are no releases yet. What the feed says comes from outside and is shown as plain
// text.

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVersionNumber>

#include <optional>

struct Release
{
    QVersionNumber version;
    // Where it can be downloaded or read about; empty, or an address of HTTP or HTTPS.
    QUrl link = {};
    // What is new in it.
    QString notes = {};
};

namespace UpdateFeed {

// More than this of the notes is not kept, in characters.
inline constexpr qsizetype MaxNotes = 20'000;

// The release with the highest version. None when the bytes are no feed to their very end, or it
// has no release with a version; `problem` then says so.
std::optional<Release> newestRelease(const QByteArray &feed, QString *problem);

// Null for a text that is no version, or one with a suffix. A leading "v" does not count.
QVersionNumber versionOf(const QString &text);

// 1.2 and 1.2.0 are the same.
bool isNewer(const QVersionNumber &one, const QVersionNumber &other);

} // namespace UpdateFeed
