// Replaces files as wholes: whatever fails, and whenever the program is killed, a file is the old
// one or the new one.
//
// The new content goes to a file beside the old one (NAME.XXXXXX), reaches the disk, and takes the
// old one's place in one step. A link stays one: the file that it leads to is replaced.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

namespace FileReplacement {

// Whether the file as it was before stays as NAME.previous. One from the last day stays instead, so
// that a mishap followed by many changes does not use it up.
enum class Former { Dropped, KeptForADay };

// Empty on success, otherwise the reason; the old file is then as it was, and no other is left.
// When only making the replacement itself last has failed, the file is the new one all the same.
QString replace(const QString &path, const QByteArray &data, Former former = Former::Dropped);

QString formerPath(const QString &path);
// Where a file stays that the user has had replaced on purpose, until the next time.
QString beforePath(const QString &path);

// New content on the disk beside the file that it is to replace: to put it in place takes no room
// any more, so that several files are replaced together or none is. What never came to its place
// is deleted.
class Staged final
{
public:
    Staged(const QString &path, const QByteArray &data, Former former = Former::Dropped);
    ~Staged();
    Staged(Staged &&other) noexcept;
    Staged &operator=(Staged &&other) noexcept;

    const QString &path() const { return _path; }
    // Why it is not on the disk; empty when it is.
    const QString &error() const { return _error; }
    // Once, and only without an error. As replace().
    QString takePlace();

private:
    class NewFile;

    QString _path;
    Former _former;
    std::unique_ptr<NewFile> _file;
    QString _error;
};

// Deletes what programs that were killed have left beside these files of one folder, unless another
// program holds its lock and may be about to put it in place.
void removeStrays(const QStringList &paths);

} // namespace FileReplacement
