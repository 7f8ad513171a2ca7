// Icons of earlier runs, ready to be shown, with their colours: in one file of the user's cache
// folder, which may be deleted at any time.
//
// A picture is used only while every file that it was made from is as it was: place, time, size,
// number and the time of the record. Before the first frame of a start, the entry of an application
// and the files of its picture are looked at in the same way, and the theme by the states of its
// files; then the icon is at hand without the theme being asked. What that may overlook is found
// after the first frame, when the theme is asked for every icon that was at hand.
//
// A file that has changed within the last two seconds may change again without another time, so
// nothing of it is kept.
//
// Safe to use from any thread.

#pragma once

#include "icons/store/StoreFile.h"

#include <QHash>
#include <QString>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

class IconStore final
{
public:
    // How long a start waits for what is at hand. Reading takes some milliseconds; a disk that does
    // not answer must not hold up the panel.
    static constexpr std::chrono::milliseconds LongestWait { 200 };

    // Keeps its file in a folder, which is made when something is to be kept. Nothing is read yet.
    explicit IconStore(QString folder);
    Q_DISABLE_COPY_MOVE(IconStore)

    QString path() const { return _folder + QStringLiteral("/icons"); }

    // Says that atHand() has to wait for prepare().
    void willPrepare();
    // Reads the file, and finds out which icons are at hand.
    void prepare(const IconProvider &provider);
    // The icon of a bundle, null for one that has none; nothing when it is not at hand.
    std::optional<KeptIcon> atHand(const QString &bundle, int size);
    // From now on every icon comes by way of the theme.
    void endAtHand();
    // Another theme, or other files in it.
    void forgetThemed();

    // The picture of a source, when it is kept and its files are as they were.
    std::optional<KeptIcon> find(const IconSource &source, int size);
    // Keeps a picture, null for one that could not be made. `before` is FileStamp::now() before its
    // source was looked for.
    void keep(const IconSource &source, int size, const DecodedIcon &icon, qint64 before);
    // Keeps the colours of the picture with this cacheKey().
    void keepColors(qint64 picture, const HclColors &colors, const ColorQuestion &question);
    // The picture with this cacheKey(), drawn smaller or larger; null when that is not kept.
    QImage findScaled(qint64 picture, int edge);
    // Keeps one, a square.
    void keepScaled(qint64 picture, const QImage &scaled);
    // Keeps the source of a bundle; null for a bundle without an icon. Stamp and time are of before
    // it was looked for.
    void keepAnswer(const QString &bundle, const FileStamp &stamp, int size,
        const IconSource &source, qint64 before);

    // Whether write() would have something to do.
    bool isChanged() const;
    // Writes what is kept to the file, and sees it there from then on. One log line in each run
    // when that fails.
    void write(const IconProvider &provider);

    // The picture of the file that is the same as one made in this run; null when there is none.
    QImage kept(qint64 picture) const;
    // Forgets what it knows of the file, unless that has to be written, until it is asked again.
    void rest();

    // Lets go of the file, which another program has damaged.
    void forgetFile();

private:
    struct Entry
    {
        PictureRecord record;
        // Null until it is used; not of the file when it has been made in this run.
        QImage image;
        std::optional<ColorQuestion> question;
        QList<HclColor> colors;
        bool isInFile = false;
        bool isUsed = false;
    };
    struct Answer
    {
        FileStamp stamp;
        // No file for a bundle without an icon.
        PictureKey picture;
        // The theme has given it in this run.
        bool isConfirmed = false;
    };
    using Place = std::pair<QString, int>;
    // What goes into the file.
    struct Contents
    {
        StoreIndex index;
        QList<KeptIcon> icons;
    };

    enum class Run { Present, Former };

    void open(Run lastWriter);
    void wake();
    bool areOriginsUnchanged(const PictureRecord &record) const;
    void collectAtHand(const StoreFile &file);
    std::optional<KeptIcon> iconOf(Entry &entry) const;
    Contents contents(const QByteArray &circumstances);
    void takeOver(const std::shared_ptr<const StoreFile> &file);

    const QString _folder;

    // Those of the standard library: the thread sanitizer does not see QWaitCondition unlock.
    mutable std::mutex _mutex;
    std::condition_variable _hasPrepared;
    bool _isPreparing = false;
    bool _hasWaited = false;
    std::shared_ptr<const StoreFile> _file;
    QHash<PictureKey, Entry> _entries;
    QHash<Place, Answer> _answers;
    QHash<Place, KeptIcon> _atHand;
    // Keys of pictures by cacheKey().
    QHash<qint64, PictureKey> _keys;
    bool _isResting = false;
    bool _isChanged = false;
    // Anything has been asked of it in this run.
    bool _isUsed = false;
    bool _hasFailed = false;
};
