// A file of the user's own, seen as memory: pages of it are read when they are first used, and the
// system may drop them again.
//
// The system ends a program with SIGBUS that reads what another one has cut off, or what the disk
// cannot give. Here such a page reads as zeros instead, the file counts as damaged from then on,
// and alarm() says so: its owner must let go of it. A SIGBUS of any other memory goes to the
// handler that was there before.
//
// May be made, read and ended on any thread.

#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

struct MapGuard;

class MappedFile final
{
public:
    // Null, with the reason, for all but a regular file of this user that is no link, that no other
    // user may write to, and that is between `fewestBytes` and `mostBytes` long. The reason is
    // empty when there is no such file.
    static std::shared_ptr<const MappedFile> open(
        const QString &path, qint64 fewestBytes, qint64 mostBytes, QString *problem);
    ~MappedFile();
    Q_DISABLE_COPY_MOVE(MappedFile)

    const uchar *data() const { return _data; }
    qint64 size() const { return _size; }
    // Whether a part of it read as zeros that should not.
    bool isDamaged() const;

    // Bytes of the file as they are now, into memory that no other program can change; empty when
    // there are not so many.
    QByteArray copy(qint64 offset, qint64 count) const;

    // A descriptor that becomes readable when a file is damaged, and stays so until eight bytes
    // have been read from it; -1 when there is none. It belongs to this class.
    static int alarm();

private:
    MappedFile(int descriptor, const uchar *data, qint64 size, MapGuard &guard);

    int _descriptor;
    const uchar *_data;
    qint64 _size;
    MapGuard &_guard;
};
