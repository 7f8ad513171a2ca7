// Replaces files as wholes: whatever fails, and whenever the program is killed, a file is the old
// one or the new one.
//
// The new content goes to a file beside the old one (NAME.XXXXXX), reaches the disk, and takes the
// old one's place in one step. A link stays one: the file that it leads to is replaced.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace FileReplacement {

// Whether the file as it was before stays as NAME.previous. One from the last day stays instead, so
// that a mishap followed by many changes does not use it up.
enum class Former { Dropped, KeptForADay };

// Empty on success, otherwise the reason; the old file is then as it was, and no other is left.
// When only making the replacement itself last has failed, the file is the new one all the same.
QString replace(const QString &path, const QByteArray &data, Former former = Former::Dropped);

QString formerPath(const QString &path);

// Deletes what programs that were killed have left beside these files of one folder, unless another
// program holds its lock and may be about to put it in place.
void removeStrays(const QStringList &paths);

} // namespace FileReplacement
