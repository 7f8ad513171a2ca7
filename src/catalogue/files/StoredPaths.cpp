#include "catalogue/files/StoredPaths.h"

#include "catalogue/files/Log.h"
#include "support/files/FileLock.h"

#include <QFileInfo>

#include <algorithm>

using PropertyList::State;

StoredPaths::StoredPaths(QString path, PathFile::Shape shape, Writing writing)
    : _path(std::move(path))
    , _shape(shape)
    , _writing(writing)
{ }

void StoredPaths::read()
{
    PathFile::Document document = PathFile::read(_path, _shape);
    if (document.state == State::Damaged && _writing == Writing::Allowed) {
        // Another program may be mending it. One that hangs must not keep the damaged file in
        // place.
        FileLock lock(QFileInfo(_path).absolutePath());
        lock.lock();
        document = PathFile::read(_path, _shape);
        if (document.state == State::Damaged && PropertyList::setAside(_path, document.error)) {
            _isUnwritten = _isUnwritten || _isKnown || !document.paths.isEmpty();
        }
    } else if (document.state == State::Damaged) {
        qCWarning(lcCatalogue, "cannot use %s: %s", qUtf8Printable(_path),
            qUtf8Printable(document.error));
    }
    if (document.state == State::Read || !document.paths.isEmpty()) {
        takeOver(document.paths);
    }
}

void StoredPaths::readAgain()
{
    const PathFile::Document document = PathFile::read(_path, _shape);
    if (document.state == State::Read) {
        takeOver(document.paths);
    }
}

PathBunches StoredPaths::former() const
{
    return standardized(PathFile::read(FileReplacement::formerPath(_path), _shape).paths);
}

// A flat list stays one bunch.
void StoredPaths::setPaths(const PathBunches &paths)
{
    const QStringList flat = flattened(paths);
    if (_shape == PathFile::Shape::Bunched) {
        _paths = paths;
    } else {
        _paths = flat.isEmpty() ? PathBunches() : PathBunches { flat };
    }
}

void StoredPaths::takeOver(const PathBunches &theirs)
{
    const PathBunches before = _paths;
    const PathBunches inFile = standardized(theirs);
    if (!_isKnown || inFile != _inFile) {
        setPaths(merged(inFile, _paths, _changed));
        _inFile = inFile;
    }
    _isKnown = true;
    _isChangedOutside = _isChangedOutside || _paths != before;
}

void StoredPaths::change(const PathBunches &mine, const QSet<QString> &changed)
{
    const QSet<QString> before = pathsOf(_paths);
    const QSet<QString> now = pathsOf(mine);
    const QSet<QString> mineAlone = changed + (now - before);
    _changed += mineAlone;
    // As a rule memory leaves out nothing.
    const bool isWhole = (now + changed).contains(before);
    setPaths(isWhole ? mine : merged(_paths, mine, mineAlone));
    _isKnown = true;
    _isUnwritten = true;
}

void StoredPaths::add(const QStringList &paths)
{
    const QSet<QString> added = pathsOf({ paths }) - pathsOf(_paths);
    setPaths(merged(_paths, { flattened(_paths) + paths }, added));
    _changed += added;
}

void StoredPaths::restore(const PathBunches &paths)
{
    change(paths, pathsOf(paths));
}

bool StoredPaths::write(QString *error)
{
    const PathFile::Document document = PathFile::read(_path, _shape);
    if (document.state == State::Damaged && !PropertyList::setAside(_path, document.error)) {
        *error =
            QStringLiteral(QT_TRANSLATE_NOOP("Reason", "the damaged file cannot be moved away"));
        return false;
    }
    if (document.state == State::Read || !document.paths.isEmpty()) {
        takeOver(document.paths);
    }
    const bool isWritten = document.state == State::Read && document.paths == _paths;
    if (!isWritten
        && !PropertyList::writeFile(_path, PathFile::propertyList(_paths, _shape),
            PropertyList::Former::KeptForADay, error)) {
        return false;
    }
    _inFile = _paths;
    _isUnwritten = false;
    _changed.clear();
    return true;
}
