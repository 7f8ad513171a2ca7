#include "catalogue/files/StoredColors.h"

#include "catalogue/files/Log.h"
#include "catalogue/files/PathFile.h"
#include "support/files/FileLock.h"
#include "support/files/StandardPath.h"

#include <QFileInfo>

#include <array>

using PropertyList::State;

namespace {

const std::array<std::pair<QString, double StoredColor::*>, 3> components {
    std::pair { QStringLiteral("red"), &StoredColor::red },
    std::pair { QStringLiteral("green"), &StoredColor::green },
    std::pair { QStringLiteral("blue"), &StoredColor::blue },
};

// Empty for what is no colour.
std::optional<StoredColor> colorOf(const QVariant &value)
{
    const QVariantMap map = value.toMap();
    StoredColor color;
    for (const auto &[name, component] : components) {
        const QVariant stored = map.value(name);
        const bool isNumber =
            stored.typeId() == QMetaType::Double || stored.typeId() == QMetaType::LongLong;
        color.*component = isNumber ? stored.toDouble() : -1;
        if (!(color.*component >= 0 && color.*component <= 1)) {
            return {};
        }
    }
    return color;
}

struct Document
{
    State state = State::Absent;
    // Of a damaged file, what can be used.
    StoredColors::Colors colors;
    QString error;
};

Document readFile(const QString &path)
{
    const PropertyList::Document file = PropertyList::readFile(path);
    if (file.state != State::Read) {
        return { file.state, {}, file.error };
    }
    if (file.value.typeId() != QMetaType::QVariantMap) {
        return { State::Damaged, {}, QStringLiteral("not a dictionary") };
    }
    Document document { State::Read, {}, {} };
    const QVariantMap map = file.value.toMap();
    int rejected = 0;
    for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
        const std::optional<StoredColor> color = colorOf(entry.value());
        if (color && PathFile::isPath(entry.key())) {
            document.colors.insert(standardizedPath(entry.key()), *color);
        } else {
            ++rejected;
        }
    }
    if (rejected > 0) {
        document.state = State::Damaged;
        document.error = QStringLiteral("%1 of its entries are no colours").arg(rejected);
    }
    return document;
}

QVariant propertyList(const StoredColors::Colors &colors)
{
    QVariantMap map;
    for (auto color = colors.cbegin(); color != colors.cend(); ++color) {
        QVariantMap entry;
        for (const auto &[name, component] : components) {
            entry.insert(name, (*color).*component);
        }
        map.insert(color.key(), entry);
    }
    return map;
}

} // namespace

StoredColors::StoredColors(QString path, Writing writing)
    : _path(std::move(path))
    , _writing(writing)
{ }

void StoredColors::read()
{
    Document document = readFile(_path);
    if (document.state == State::Damaged && _writing == Writing::Allowed) {
        // As with the lists: another program may be mending it.
        FileLock lock(QFileInfo(_path).absolutePath());
        lock.lock();
        document = readFile(_path);
        if (document.state == State::Damaged && PropertyList::setAside(_path, document.error)) {
            _isUnwritten = !document.colors.isEmpty() || !_colors.isEmpty();
        }
    } else if (document.state == State::Damaged) {
        qCWarning(lcCatalogue, "cannot use %s: %s", qUtf8Printable(_path),
            qUtf8Printable(document.error));
    }
    if (document.state == State::Read || !document.colors.isEmpty()) {
        takeOver(document.colors);
    }
}

void StoredColors::readAgain()
{
    const Document document = readFile(_path);
    if (document.state == State::Read) {
        takeOver(document.colors);
    }
}

StoredColors::Colors StoredColors::former() const
{
    return readFile(FileReplacement::formerPath(_path)).colors;
}

void StoredColors::takeOver(const Colors &theirs)
{
    const Colors before = std::exchange(_colors, theirs);
    apply(_changes);
    _isKnown = true;
    _isChangedOutside = _isChangedOutside || _colors != before;
}

void StoredColors::change(const Change &change)
{
    apply(change);
    _changes.insert(change);
}

void StoredColors::apply(const Change &changes)
{
    for (auto changed = changes.cbegin(); changed != changes.cend(); ++changed) {
        if (*changed) {
            _colors.insert(changed.key(), **changed);
        } else {
            _colors.remove(changed.key());
        }
    }
}

bool StoredColors::write(QString *error)
{
    const Document document = readFile(_path);
    if (document.state == State::Damaged && !PropertyList::setAside(_path, document.error)) {
        *error =
            QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the damaged file cannot be moved away"));
        return false;
    }
    if (document.state == State::Read || !document.colors.isEmpty()) {
        takeOver(document.colors);
    }
    const bool isWritten = document.state == State::Read && document.colors == _colors;
    if (!isWritten
        && !PropertyList::writeFile(
            _path, propertyList(_colors), PropertyList::Former::KeptForADay, error)) {
        return false;
    }
    _changes.clear();
    _isUnwritten = false;
    return true;
}
