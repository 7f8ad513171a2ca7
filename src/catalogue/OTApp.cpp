#include "catalogue/OTApp.h"

#include "catalogue/InitialLetters.h"
#include "catalogue/files/Log.h"
#include "icons/NamedImages.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"
#include "support/files/PropertyList.h"
#include "support/files/StandardPath.h"

#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QMap>
#include <QMimeData>
#include <QStringMatcher>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

// For people.
QString launchFailure(const QString &name, LaunchStatus status)
{
    switch (status) {
    case LaunchStatus::FileNotFound:
        return OTApp::tr("%1 cannot be started: it is no longer there.").arg(name);
    case LaunchStatus::CannotExecute:
        return OTApp::tr("%1 cannot be started: its program is missing or may not be run.")
            .arg(name);
    default:
        return OTApp::tr("%1 cannot be started.").arg(name);
    }
}

QStringList readExcludedNameSubstrings()
{
    QFile resource(QStringLiteral(":/ExcludedNameSubstrings.plist"));
    if (!resource.open(QIODevice::ReadOnly)) {
        return {};
    }
    return PropertyList::fromData(resource.readAll()).value_or(QVariant()).toStringList();
}

std::vector<QStringMatcher> matchersOf(const QStringList &words)
{
    std::vector<QStringMatcher> matchers;
    for (const QString &word : words) {
        matchers.emplace_back(word, Qt::CaseInsensitive);
    }
    return matchers;
}

} // namespace

OTApp::OTApp(const QString &path, Desktop &desktop)
    : _desktop(desktop)
    , _path(standardizedPath(path))
    , _icon(
          desktop.icons(), _path, [this] { return weak_from_this().lock(); },
          [this] {
              Q_EMIT NotificationCenter::defaultCenter().N_AppIconChanged(shared_from_this());
          })
{ }

QByteArray OTApp::encoded() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << QMap<QString, QString> { { QStringLiteral("path"), _path } };
    return bytes;
}

AppRef OTApp::decoded(const QByteArray &bytes, Desktop &desktop)
{
    QDataStream stream(bytes);
    stream.setVersion(QDataStream::Qt_6_4);
    // A map of strings and nothing else: variants from another process could hold anything.
    QMap<QString, QString> ivDict;
    stream >> ivDict;
    const auto path = ivDict.constFind(QStringLiteral("path"));
    if (stream.status() != QDataStream::Ok || !stream.atEnd() || path == ivDict.cend()) {
        return nullptr;
    }
    auto app = std::make_shared<OTApp>(QString(), desktop);
    app->_path = *path;
    app->_icon.forgetIcon();
    return app;
}

void OTApp::setPath(const QString &path)
{
    const QString standardized = standardizedPath(path);
    if (standardized == _path) {
        return;
    }
    _path = standardized;
    _displayName.clear();
    loadIconWithParameters(_icon.parameters());
}

QString OTApp::name() const
{
    return Items::nameOf(_path);
}

QString OTApp::displayName() const
{
    if (_displayName.isEmpty()) {
        _displayName = _desktop.items().displayName(_path);
    }
    return _displayName;
}

bool OTApp::renewDisplayName()
{
    const QString former = std::exchange(_displayName, {});
    return !former.isEmpty() && displayName() != former;
}

QVariant OTApp::attributeForKey(const QString &key) const
{
    return _attributes.value(key);
}

void OTApp::setAttribute(const QVariant &value, const QString &forKey)
{
    if (!forKey.isEmpty() && value.isValid()) {
        _attributes.insert(forKey, value);
    }
}

void OTApp::findLetters()
{
    _letters = initialLetters(displayName());
}

bool OTApp::containsLetter(char letter) const
{
    return letter != 0 && _letters.contains(letter);
}

const QStringList &OTApp::excludedNameSubstrings()
{
    static const QStringList words = readExcludedNameSubstrings();
    return words;
}

void OTApp::findExcludedStringsInName()
{
    // Prepared once: every name is searched for every word at each start.
    static const std::vector<QStringMatcher> words = matchersOf(excludedNameSubstrings());
    const QString shown = displayName();
    _containsExcludedKeywords = std::any_of(words.begin(), words.end(),
        [&shown](const QStringMatcher &word) { return word.indexIn(shown) >= 0; });
}

void OTApp::refreshNameAndPath()
{
    refreshName();
    _pathIsValid = QFile::exists(_path);
}

void OTApp::refreshName()
{
    _displayName.clear();
    if (displayName() != _indexedName) {
        _indexedName = displayName();
        findLetters();
        findExcludedStringsInName();
    }
}

QImage OTApp::icon() const
{
    return _icon.image().isNull() ? NamedImages::notfound() : _icon.image();
}

void OTApp::setIconParameters(const IconParameters &parameters)
{
    refreshName();
    QString error;
    const std::optional<quint64> fileNumber = Items::fileNumberOf(_path, &error);
    _pathIsValid = fileNumber.has_value();
    if (fileNumber) {
        _icon.load(_path, *fileNumber, parameters);
    } else {
        _icon.clear(parameters);
    }
}

void OTApp::loadIconWithParameters(const IconParameters &parameters)
{
    QString error;
    const std::optional<quint64> fileNumber = Items::fileNumberOf(_path, &error);
    if (fileNumber) {
        _icon.load(_path, *fileNumber, parameters);
    } else {
        qCWarning(lcCatalogue, "%s", qUtf8Printable(error));
        _icon.clear(parameters);
    }
}

std::optional<QList<QUrl>> OTApp::documentsOnPasteboard(const QMimeData *pasteboard)
{
    if (!pasteboard) {
        return std::nullopt;
    }
    QList<QUrl> files;
    const QList<QUrl> urls = pasteboard->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile()) {
            // As a URL it keeps names that are not UTF-8, which no QString can hold.
            files.append(url.adjusted(QUrl::NormalizePathSegments | QUrl::StripTrailingSlash));
        }
    }
    return files.isEmpty() ? urls.mid(0, 1) : files;
}

bool OTApp::launchWithPasteboard(const QMimeData *pasteboard) const
{
    return launchWithDocuments(documentsOnPasteboard(pasteboard));
}

bool OTApp::launchWithDocuments(const std::optional<QList<QUrl>> &documents) const
{
    return takeStatus(_desktop.launcher().open(_path, documents));
}

bool OTApp::openNewWindow() const
{
    return takeStatus(_desktop.launcher().openNewWindow(_path));
}

bool OTApp::canOpenNewWindow() const
{
    return _desktop.launcher().canOpenNewWindow(_path);
}

bool OTApp::takeStatus(LaunchStatus status) const
{
    if (status == LaunchStatus::Launched) {
        noteUseOnMainThread();
        announceUseOnMainThread();
        return true;
    }
    qCWarning(lcCatalogue, "LSOpenCFURLRef() returned err: %ld for URL: %s", long(status),
        qUtf8Printable(url().toString()));
    announceFailureOnMainThread(status);
    return false;
}

void OTApp::noteUseOnMainThread() const
{
    const AppRef app = std::const_pointer_cast<OTApp>(shared_from_this());
    QMetaObject::invokeMethod(QCoreApplication::instance(), [app] {
        app->setAttribute(QDateTime::currentDateTime(), QStringLiteral("kMDItemLastUsedDate"));
    });
}

void OTApp::announceUseOnMainThread() const
{
    const AppRef app = std::const_pointer_cast<OTApp>(shared_from_this());
    QMetaObject::invokeMethod(QCoreApplication::instance(),
        [app] { Q_EMIT NotificationCenter::defaultCenter().N_AppWasUsed(app); });
}

// The centre is looked up there too: it belongs to the thread that first asks.
void OTApp::announceFailureOnMainThread(LaunchStatus status) const
{
    const AppRef app = std::const_pointer_cast<OTApp>(shared_from_this());
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [app, status] { app->announceFailure(status); });
}

// The panel has gone by now, and what went wrong is said there.
void OTApp::announceFailure(LaunchStatus status)
{
    NotificationCenter &center = NotificationCenter::defaultCenter();
    Q_EMIT center.applicationOpenUntitledFile();
    if (status == LaunchStatus::FileNotFound) {
        Q_EMIT center.N_AppIsMissing(shared_from_this());
    }
    Q_EMIT center.N_UserMessage(launchFailure(displayName(), status));
}

QList<ApplicationActions::Action> OTApp::actions() const
{
    return _desktop.applicationActions().actionsOf(_path);
}

bool OTApp::performAction(const QString &id) const
{
    if (_desktop.applicationActions().perform(_path, id)) {
        announceUseOnMainThread();
        return true;
    }
    announceFailureOnMainThread(LaunchStatus::Failed);
    return false;
}

std::optional<qint64> OTApp::pid() const
{
    const std::optional<RunningProcess> process = _desktop.applicationControl().processOf(_path);
    return process ? std::optional(process->identifier) : std::nullopt;
}

ProcessSerialNumber OTApp::psn() const
{
    return _desktop.applicationControl().processOf(_path).value_or(RunningProcess()).serialNumber;
}

bool OTApp::isVisible() const
{
    return _desktop.applicationControl().isVisible(_path);
}

void OTApp::show() const
{
    _desktop.applicationControl().show(_path);
}

void OTApp::hide() const
{
    _desktop.applicationControl().hide(_path);
}

bool OTApp::activate() const
{
    return _desktop.applicationControl().activate(_path);
}

void OTApp::quit() const
{
    _desktop.applicationControl().quit(_path);
}

void OTApp::revealInFinder() const
{
    _desktop.launcher().reveal(_path);
}

bool OTApp::canAcceptURL(const QUrl &document) const
{
    return !_desktop.documents().applicationsThatAccept(document, { _path }).isEmpty();
}

bool OTApp::prefersURL(const QUrl &document) const
{
    return !_desktop.documents().applicationsThatPrefer(document, { _path }).isEmpty();
}
