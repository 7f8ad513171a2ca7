#include "icons/store/StoreIndex.h"

#include <QDataStream>
#include <QIODevice>

#include <array>
#include <bit>
#include <cstring>

namespace {

constexpr int StreamVersion = QDataStream::Qt_6_4;
// An icon has six colours, and looks for a stand-in among the files of its name.
constexpr quint32 MostColors = 64;
constexpr quint32 MostOrigins = 32;
constexpr quint32 MostRecords = 100'000;

QDataStream &operator<<(QDataStream &stream, const PictureRecord &record)
{
    stream << record.key.file << record.key.name << qint32(record.key.size)
           << qint32(record.key.scaled) << quint32(record.origins.size());
    for (const IconOrigin &origin : record.origins) {
        stream << origin.file << origin.stamp;
    }
    const ColorQuestion question = record.question.value_or(ColorQuestion());
    return stream << record.isThemed << record.lastRun << record.offset << record.colorCount
                  << record.question.has_value() << question.minSaturation << question.minLuminosity
                  << record.hash;
}

QDataStream &operator>>(QDataStream &stream, PictureRecord &record)
{
    qint32 size = 0;
    qint32 scaled = 0;
    quint32 originCount = 0;
    stream >> record.key.file >> record.key.name >> size >> scaled >> originCount;
    record.key.size = size;
    record.key.scaled = scaled;
    if (originCount > MostOrigins) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return stream;
    }
    for (quint32 i = 0; i < originCount && stream.status() == QDataStream::Ok; ++i) {
        IconOrigin origin;
        stream >> origin.file >> origin.stamp;
        if (origin.file == record.key.file) {
            // One text instead of two.
            origin.file = record.key.file;
        }
        record.origins.append(origin);
    }
    bool isMeasured = false;
    ColorQuestion question;
    stream >> record.isThemed >> record.lastRun >> record.offset >> record.colorCount >> isMeasured
        >> question.minSaturation >> question.minLuminosity >> record.hash;
    if (isMeasured) {
        record.question = question;
    }
    return stream;
}

QDataStream &operator<<(QDataStream &stream, const AnswerRecord &record)
{
    return stream << record.bundle << record.stamp << qint32(record.size) << record.picture
                  << record.lastRun;
}

QDataStream &operator>>(QDataStream &stream, AnswerRecord &record)
{
    qint32 size = 0;
    stream >> record.bundle >> record.stamp >> size >> record.picture >> record.lastRun;
    record.size = size;
    return stream;
}

bool isInRange(const PictureRecord &record, qint64 first, qint64 end)
{
    if (record.key.size < 1 || record.key.size > StoreIndex::LargestSize || record.key.scaled < 0
        || record.key.scaled > StoreIndex::LargestSize || record.colorCount > MostColors
        || record.origins.isEmpty() || record.offset < 0) {
        return false;
    }
    return !record.hasPicture()
        || (record.offset >= first && record.offset % qint64(alignof(HclColor)) == 0
            && record.offset <= end && record.bytes() <= end - record.offset);
}

template <typename Record> bool readAll(QDataStream &stream, QList<Record> &records)
{
    quint32 count = 0;
    stream >> count;
    if (count > MostRecords) {
        return false;
    }
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        Record record;
        stream >> record;
        records.append(record);
    }
    return stream.status() == QDataStream::Ok;
}

quint64 wordAt(const uchar *bytes)
{
    quint64 word = 0;
    std::memcpy(&word, bytes, sizeof(word));
    return word;
}

// Each step can be undone, so that words that differ stay different.
constexpr quint64 FirstPrime = 0x9E3779B185EBCA87ULL;
constexpr quint64 SecondPrime = 0xC2B2AE3D27D4EB4FULL;

quint64 mixed(quint64 sum, quint64 word)
{
    return std::rotl(sum + word * SecondPrime, 31) * FirstPrime;
}

} // namespace

size_t qHash(const PictureKey &key, size_t seed)
{
    return qHashMulti(seed, key.file, key.name, key.size, key.scaled);
}

QByteArray StoreIndex::toBytes() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(StreamVersion);
    stream << run << circumstances << quint32(pictures.size());
    for (const PictureRecord &record : pictures) {
        stream << record;
    }
    stream << quint32(answers.size());
    for (const AnswerRecord &record : answers) {
        stream << record;
    }
    return bytes;
}

std::optional<StoreIndex> StoreIndex::fromBytes(const QByteArray &bytes, qint64 first, qint64 end)
{
    StoreIndex index;
    QDataStream stream(bytes);
    stream.setVersion(StreamVersion);
    stream >> index.run >> index.circumstances;
    if (!readAll(stream, index.pictures) || !readAll(stream, index.answers) || !stream.atEnd()) {
        return std::nullopt;
    }
    for (const PictureRecord &record : std::as_const(index.pictures)) {
        if (!isInRange(record, first, end)) {
            return std::nullopt;
        }
    }
    for (const AnswerRecord &record : std::as_const(index.answers)) {
        if (record.picture < -1 || record.picture >= index.pictures.size()) {
            return std::nullopt;
        }
    }
    return index;
}

// Four sums at once, as fast as memory is read.
quint64 storeHash(const void *bytes, qint64 count, quint64 seed)
{
    std::array<quint64, 4> sums { seed + FirstPrime, seed + SecondPrime, seed, seed - FirstPrime };
    const uchar *at = static_cast<const uchar *>(bytes);
    const uchar *const end = at + count;
    for (; end - at >= 32; at += 32) {
        for (size_t i = 0; i < sums.size(); ++i) {
            sums[i] = mixed(sums[i], wordAt(at + 8 * i));
        }
    }
    quint64 sum = quint64(count);
    for (size_t i = 0; i < sums.size(); ++i) {
        sum = mixed(sum, std::rotl(sums[i], int(7 * i)));
    }
    for (; end - at >= 8; at += 8) {
        sum = mixed(sum, wordAt(at));
    }
    for (; at < end; ++at) {
        sum = mixed(sum, *at);
    }
    sum ^= sum >> 33;
    sum *= SecondPrime;
    return sum ^ (sum >> 29);
}
