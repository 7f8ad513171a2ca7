// The file of kept icons: a header, an index, and the pictures ready to be shown, which stay in the
// file and are seen through the memory that it is mapped to.
//
// Nothing in it is believed unless it is whole: header and index are checked and copied when it is
// opened, so that no other program can change them afterwards, and each picture is checked before
// it is used. Never changed once it is made, and safe to use from any thread.

#pragma once

#include "icons/store/StoreIndex.h"
#include "support/files/MappedFile.h"

#include <QImage>

#include <memory>
#include <utility>

// A picture with its colours; null where there is none.
struct KeptIcon
{
    QImage image;
    std::optional<ColorQuestion> question;
    QList<HclColor> colors;
};

class StoreFile final
{
public:
    // Of the pictures, and of the whole file.
    static constexpr qint64 MostPictureBytes = 64LL * 1024 * 1024;
    static constexpr qint64 MostBytes = MostPictureBytes + 16LL * 1024 * 1024;

    // Null when there is none that can be used; with a reason, when there is a file that another
    // program must have damaged or put there.
    static std::shared_ptr<const StoreFile> open(const QString &path, QString *problem);

    const StoreIndex &index() const { return _index; }
    // Whether it must not be used any more.
    bool isDamaged() const { return _file->isDamaged(); }

    enum class Check { Due, Done };

    // The picture of a record of the index, which shares the memory of the file and keeps that
    // open; null when it is damaged, as far as that is not known already.
    KeptIcon icon(const PictureRecord &record, Check check = Check::Due) const;

    // Writes a file: the records of an index and, in the same order, their pictures, null for those
    // that have none. Offsets, colours and hashes are filled in. Empty on success, otherwise the
    // reason; the file that was there then stays. No two threads or programs at once.
    static QString write(const QString &path, StoreIndex index, const QList<KeptIcon> &icons);

private:
    StoreFile(std::shared_ptr<const MappedFile> file, StoreIndex index)
        : _file(std::move(file))
        , _index(std::move(index))
    { }

    std::shared_ptr<const MappedFile> _file;
    StoreIndex _index;
};
