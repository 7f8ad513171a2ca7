#include "icons/store/StoreFile.h"

#include <QFile>

#include <array>
#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

static_assert(std::is_trivially_copyable_v<HclColor> && sizeof(HclColor) == 96,
    "colours are kept as they lie in memory");

namespace {

constexpr std::array Magic { 'O', 'r', 't', 'u', 'I', 'c', 'o', 'n' };
constexpr quint32 Version = 1;
// Reads as another number on a machine of the other byte order, whose pixels would look wrong.
constexpr quint32 ByteOrder = 0x01020304;
// A page, so that the system reads no more than what is shown.
constexpr qint64 FirstAlignment = 4096;
constexpr qint64 Alignment = 64;

struct Header
{
    std::array<char, 8> magic = Magic;
    quint32 version = Version;
    quint32 byteOrder = ByteOrder;
    quint64 program = 0;
    qint64 length = 0;
    qint64 indexLength = 0;
    quint64 indexHash = 0;
    quint64 unused = 0;
    // Of all before it.
    quint64 hash = 0;

    quint64 computedHash() const { return storeHash(this, offsetof(Header, hash)); }
};
static_assert(sizeof(Header) == 64);

qint64 aligned(qint64 offset, qint64 to)
{
    return (offset + to - 1) / to * to;
}

// Another build, or another Qt, may draw some icons otherwise.
quint64 thisProgram()
{
    // The file that this code is loaded from: the program is a module of the command.
    Dl_info self = {};
    ::dladdr(&Magic, &self);
    const FileStamp stamp = FileStamp::of(QFile::decodeName(self.dli_fname));
    const QByteArray text = QByteArray(ORTU_VERSION) + ' ' + qVersion() + ' '
        + QByteArray::number(stamp.size) + ' ' + QByteArray::number(stamp.modified);
    return storeHash(text.constData(), text.size());
}

quint64 hashOf(const uchar *pixels, qint64 pixelBytes, const void *colors, quint32 colorCount)
{
    return storeHash(colors, qint64(colorCount * sizeof(HclColor)), storeHash(pixels, pixelBytes));
}

// Holds the file open for as long as a copy of the picture is in use.
void releaseFile(void *owner)
{
    delete static_cast<std::shared_ptr<const MappedFile> *>(owner);
}

// The new file, until it is in place; deleted when it does not come to that.
class NewFile final
{
public:
    explicit NewFile(const QByteArray &target)
        : _target(target)
        , _name(target + ".new")
    { }
    ~NewFile()
    {
        if (_file >= 0) {
            ::close(_file);
            ::unlink(_name.constData());
        }
    }
    Q_DISABLE_COPY_MOVE(NewFile)

    // Each is false on failure; errno then has the reason.
    bool create()
    {
        // Left by a program that was killed.
        ::unlink(_name.constData());
        _file =
            ::open(_name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        return _file >= 0;
    }
    bool write(const void *bytes, qint64 count)
    {
        const char *at = static_cast<const char *>(bytes);
        while (count > 0) {
            const ssize_t written = ::write(_file, at, size_t(count));
            if (written < 0 && errno != EINTR) {
                return false;
            }
            const qint64 done = written > 0 ? written : 0;
            at += done;
            count -= done;
            _length += done;
        }
        return true;
    }
    bool fillTo(qint64 offset)
    {
        static constexpr std::array<char, FirstAlignment> zeros {};
        return offset - _length <= FirstAlignment && write(zeros.data(), offset - _length);
    }
    // Brought to the disk first: pages that are not there yet count as memory of the program.
    bool takePlace()
    {
        ::fdatasync(_file);
        if (::close(std::exchange(_file, -1)) == 0
            && ::rename(_name.constData(), _target.constData()) == 0) {
            return true;
        }
        const int error = errno;
        ::unlink(_name.constData());
        errno = error;
        return false;
    }

private:
    QByteArray _target;
    QByteArray _name;
    int _file = -1;
    qint64 _length = 0;
};

bool writeAll(NewFile &file, const Header &header, const QByteArray &bytes,
    const QList<PictureRecord> &records, const QList<KeptIcon> &icons)
{
    bool isWritten = file.create() && file.write(&header, sizeof(header))
        && file.write(bytes.constData(), bytes.size());
    for (qsizetype i = 0; isWritten && i < records.size(); ++i) {
        const PictureRecord &record = records[i];
        isWritten = !record.hasPicture()
            || (file.fillTo(record.offset)
                && file.write(icons[i].image.constBits(), record.pixelBytes())
                && file.write(icons[i].colors.constData(), record.bytes() - record.pixelBytes()));
    }
    return isWritten && file.takePlace();
}

} // namespace

std::shared_ptr<const StoreFile> StoreFile::open(const QString &path, QString *problem)
{
    auto file = MappedFile::open(path, sizeof(Header), MostBytes, problem);
    if (!file) {
        return nullptr;
    }
    Header header;
    const QByteArray first = file->copy(0, sizeof(header));
    if (first.size() == sizeof(header)) {
        std::memcpy(&header, first.constData(), sizeof(header));
    }
    if (header.magic != Magic || header.hash != header.computedHash()) {
        *problem = QStringLiteral("damaged");
        return nullptr;
    }
    if (header.version != Version || header.byteOrder != ByteOrder
        || header.program != thisProgram()) {
        return nullptr;
    }
    const QByteArray bytes = file->copy(sizeof(header), header.indexLength);
    std::optional<StoreIndex> index;
    if (header.length == file->size() && bytes.size() == header.indexLength
        && storeHash(bytes.constData(), bytes.size()) == header.indexHash) {
        index = StoreIndex::fromBytes(bytes, sizeof(header) + bytes.size(), file->size());
    }
    if (!index) {
        *problem = QStringLiteral("damaged");
        return nullptr;
    }
    return std::shared_ptr<const StoreFile>(new StoreFile(std::move(file), std::move(*index)));
}

KeptIcon StoreFile::icon(const PictureRecord &record, Check check) const
{
    if (!record.hasPicture()) {
        return {};
    }
    const uchar *const pixels = _file->data() + record.offset;
    const uchar *const colors = pixels + record.pixelBytes();
    const bool isWhole = check == Check::Done
        || hashOf(pixels, record.pixelBytes(), colors, record.colorCount) == record.hash;
    if (!isWhole || isDamaged()) {
        return {};
    }
    KeptIcon icon;
    const int size = record.key.edge();
    icon.image =
        QImage(pixels, size, size, qsizetype(size) * 4, QImage::Format_ARGB32_Premultiplied,
            releaseFile, new std::shared_ptr<const MappedFile>(_file));
    icon.question = record.question;
    if (record.colorCount > 0) {
        icon.colors.resize(record.colorCount);
        std::memcpy(icon.colors.data(), colors, record.colorCount * sizeof(HclColor));
    }
    return icon;
}

QString StoreFile::write(const QString &path, StoreIndex index, const QList<KeptIcon> &icons)
{
    for (PictureRecord &record : index.pictures) {
        record.offset = 0;
    }
    // Numbers take the same room whatever they are.
    qint64 length = qint64(sizeof(Header)) + index.toBytes().size();
    qint64 next = aligned(length, FirstAlignment);
    for (qsizetype i = 0; i < index.pictures.size(); ++i) {
        PictureRecord &record = index.pictures[i];
        const KeptIcon &icon = icons[i];
        record.question = icon.question;
        record.colorCount = quint32(icon.colors.size());
        if (icon.image.isNull()) {
            continue;
        }
        record.offset = next;
        record.hash = hashOf(icon.image.constBits(), record.pixelBytes(), icon.colors.constData(),
            record.colorCount);
        length = record.offset + record.bytes();
        next = aligned(length, Alignment);
    }
    const QByteArray bytes = index.toBytes();
    Header header;
    header.program = thisProgram();
    header.length = length;
    header.indexLength = bytes.size();
    header.indexHash = storeHash(bytes.constData(), bytes.size());
    header.hash = header.computedHash();
    NewFile file(QFile::encodeName(path));
    return writeAll(file, header, bytes, index.pictures, icons) ? QString()
                                                                : qt_error_string(errno);
}
