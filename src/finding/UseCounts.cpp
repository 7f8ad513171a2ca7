#include "finding/UseCounts.h"

#include "support/files/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVariantMap>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace {

// In bytes; more than the longest paths need.
constexpr qint64 LargestFile = 4 << 20;
// More uses than that mean that a clock was wrong.
constexpr double MostHalvings = 20;
constexpr QFile::Permissions UserAlone = QFile::ReadOwner | QFile::WriteOwner;

// Empty when the value is something else.
std::optional<QHash<QString, double>> momentsIn(const QVariant &value)
{
    if (value.typeId() != QMetaType::QVariantMap) {
        return std::nullopt;
    }
    QHash<QString, double> moments;
    const QVariantMap map = value.toMap();
    for (auto it = map.begin(); it != map.end(); ++it) {
        bool isNumber = false;
        const double moment = it->toDouble(&isNumber);
        if (!isNumber || !std::isfinite(moment) || !it.key().startsWith(QLatin1Char('/'))) {
            return std::nullopt;
        }
        moments.insert(it.key(), moment);
    }
    return moments;
}

void write(const QString &path, const QVariantMap &moments)
{
    if (moments.isEmpty()) {
        QFile::remove(path);
        return;
    }
    QDir().mkpath(QFileInfo(path).path());
    // Replacing a file keeps its permissions, so they are set while it is still empty.
    QFile file(path);
    if (!file.exists()) {
        (void)file.open(QIODevice::WriteOnly | QIODevice::NewOnly, UserAlone);
        file.close();
    }
    file.setPermissions(UserAlone);
    PropertyList::writeFile(path, moments);
}

} // namespace

UseCounts::UseCounts(QString path, QObject *parent)
    : QObject(parent)
    , _path(std::move(path))
{ }

UseCounts::~UseCounts()
{
    _writer.flush();
}

void UseCounts::setOn(bool isOn)
{
    if (_isOn && !isOn) {
        _writer.flush();
        _moments.clear();
        _isRead = false;
    }
    _isOn = isOn;
}

double UseCounts::of(const QString &path)
{
    if (!_isOn) {
        return 0;
    }
    read();
    return _moments.value(path, 0);
}

void UseCounts::note(const QString &path, double now)
{
    if (!_isOn || !PropertyList::canHold(path) || !path.startsWith(QLatin1Char('/'))) {
        return;
    }
    read();
    const auto known = _moments.constFind(path);
    double uses = 1;
    if (known != _moments.cend()) {
        uses += std::exp2(std::min((*known - now) / HalfLife, MostHalvings));
    }
    _moments.insert(path, now + HalfLife * std::log2(uses));
    dropLeast();
    _writer.request();
}

void UseCounts::forget()
{
    _moments.clear();
    _isRead = true;
    _mayWrite = true;
    _writer.request();
    _writer.flush();
    // What was set aside, and what a program that was killed has left, says it as well.
    if (_path.isEmpty()) {
        return;
    }
    const QFileInfo file(_path);
    for (const QString &copy : file.dir().entryList({ file.fileName() + QStringLiteral(".*") })) {
        QFile::remove(file.dir().filePath(copy));
    }
}

void UseCounts::read()
{
    if (!_isOn || _isRead) {
        return;
    }
    _isRead = true;
    if (_path.isEmpty()) {
        return;
    }
    PropertyList::Document document = PropertyList::readFile(_path, LargestFile);
    if (document.state == PropertyList::State::Read) {
        if (auto moments = momentsIn(document.value)) {
            _moments = *moments;
            dropLeast();
            return;
        }
        document.state = PropertyList::State::Damaged;
        document.error = QStringLiteral("not a dictionary of numbers");
    }
    if (document.state == PropertyList::State::Damaged) {
        _mayWrite = PropertyList::setAside(_path, document.error);
    }
}

void UseCounts::dropLeast()
{
    if (_moments.size() <= MostPaths) {
        return;
    }
    // A file may hold many more.
    QList<std::pair<double, QString>> uses;
    for (auto it = _moments.cbegin(); it != _moments.cend(); ++it) {
        uses.append({ it.value(), it.key() });
    }
    const auto firstKept = uses.end() - MostPaths;
    std::nth_element(uses.begin(), firstKept, uses.end());
    for (auto use = uses.begin(); use != firstKept; ++use) {
        _moments.remove(use->second);
    }
}

WriteBehind::Job UseCounts::nextJob()
{
    if (_path.isEmpty() || !_mayWrite) {
        return nullptr;
    }
    QVariantMap moments;
    for (auto it = _moments.cbegin(); it != _moments.cend(); ++it) {
        moments.insert(it.key(), it.value());
    }
    return [path = _path, moments]() -> WriteBehind::Conclusion {
        write(path, moments);
        return [] {};
    };
}
