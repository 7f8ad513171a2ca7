#include "grid/typing/AppFinder.h"

#include "catalogue/OTApp.h"
#include "catalogue/OTAppManager.h"
#include "platform/Desktop.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>
#include <QDateTime>

#include <vector>

namespace {

namespace Key {
const QString matchesMoreThanNames = QStringLiteral("matchesMoreThanNames");
const QString remembersUse = QStringLiteral("remembersUse");
} // namespace Key

// Empty for a catalogue that writes nothing.
QString pathOfUses(const OTAppManager &appManager)
{
    const QString folder =
        appManager.desktop().searchPaths().applicationSupportFolder(SearchPaths::Domain::User);
    return folder.isEmpty() || appManager.use() != OTAppManager::Use::Normal
        ? QString()
        : folder + QStringLiteral("/Ortu/Use.plist");
}

} // namespace

AppFinder::AppFinder(OTAppManager &appManager, QObject *parent)
    : QObject(parent)
    , _appManager(appManager)
    , _uses(pathOfUses(appManager))
{
    _thread.setMaxThreadCount(1);
    _readingDelay.setSingleShot(true);
    _readingDelay.setInterval(ReadingDelay);
    connect(&_readingDelay, &QTimer::timeout, this, &AppFinder::read);
    connect(
        &UserDefaults::standard(), &UserDefaults::changed, this, &AppFinder::preferenceDidChange);
    connect(&appManager, &OTAppManager::isBusyScanningChanged, this, [this](bool isBusy) {
        if (!isBusy) {
            scanDidEnd();
        }
    });
    const NotificationCenter &center = NotificationCenter::defaultCenter();
    connect(&center, &NotificationCenter::N_AppWasUsed, this, &AppFinder::appWasUsed);
    connect(&center, &NotificationCenter::N_ForgetUses, this, [this] {
        _uses.forget();
        forgetResult();
    });
    takePreferences();
}

AppFinder::~AppFinder()
{
    _isEnding = true;
    _thread.waitForDone();
}

void AppFinder::registerDefaults()
{
    UserDefaults::standard().registerDefaults(
        { { Key::matchesMoreThanNames, false }, { Key::remembersUse, true } });
}

void AppFinder::preferenceDidChange(const QString &key)
{
    if (key == Key::matchesMoreThanNames || key == Key::remembersUse) {
        takePreferences();
        forgetResult();
        Q_EMIT findsOthers();
    }
}

// Where use makes no difference, none is noted.
void AppFinder::takePreferences()
{
    const UserDefaults &defaults = UserDefaults::standard();
    _isOn = defaults.boolForKey(Key::matchesMoreThanNames);
    _uses.setOn(_isOn && defaults.boolForKey(Key::remembersUse));
    if (_isOn) {
        _readingDelay.start();
    } else {
        _readingDelay.stop();
        _known.clear();
    }
}

void AppFinder::appWasUsed(const AppRef &app)
{
    _uses.note(app->path(), double(QDateTime::currentSecsSinceEpoch()));
    forgetResult();
}

// Entries may say something else now.
void AppFinder::scanDidEnd()
{
    ++_scanCount;
    for (Known &known : _known) {
        known.isRead = false;
    }
    if (_isOn) {
        _readingDelay.start();
    }
}

void AppFinder::setApps(const AppArray &apps)
{
    _apps = apps;
    forgetResult();
    if (_isOn) {
        _readingDelay.start();
    }
}

void AppFinder::read()
{
    if (_isReading) {
        _readingDelay.start();
        return;
    }
    _readingDelay.stop();
    _uses.read();
    QList<Reading> readings;
    for (const AppRef &app : _apps.apps()) {
        const auto known = _known.constFind(app->path());
        if (known == _known.cend() || !known->isRead || known->name != app->displayName()) {
            readings.append({ app->path(), app->displayName(), nullptr });
        }
    }
    if (!readings.isEmpty()) {
        _isReading = true;
        _scanCountRead = _scanCount;
        _thread.start([this, readings] { readOnThread(readings); });
    }
}

void AppFinder::readOnThread(QList<Reading> readings)
{
    Desktop &desktop = _appManager.desktop();
    for (Reading &reading : readings) {
        if (_isEnding) {
            return;
        }
        const ItemWords words = desktop.items().wordsOf(reading.path);
        reading.item = std::make_shared<const Findable>(reading.name, words,
            words.hasActions ? desktop.applicationActions().actionsOf(reading.path)
                             : QList<ApplicationActions::Action>());
    }
    QMetaObject::invokeMethod(
        this, [this, readings] { takeReadings(readings); }, Qt::QueuedConnection);
}

void AppFinder::takeReadings(const QList<Reading> &readings)
{
    _isReading = false;
    if (!_isOn) {
        return;
    }
    for (const Reading &reading : readings) {
        _known.insert(reading.path, { reading.name, reading.item, _scanCountRead == _scanCount });
    }
    forgetResult();
    Q_EMIT findsOthers();
}

AppFinder::Item AppFinder::itemOf(const AppRef &app)
{
    Known &known = _known[app->path()];
    if (!known.item || known.name != app->displayName()) {
        const QString name = app->displayName();
        known = { name, std::make_shared<const Findable>(name), false };
    }
    return known.item;
}

void AppFinder::find(const QString &typed)
{
    if (_typed == typed) {
        return;
    }
    if (_readingDelay.isActive() && !_isReading) {
        read();
    }
    _typed = typed;
    _found.clear();
    _best = nullptr;
    const AppList apps = _apps.apps();
    std::vector<Item> items;
    std::vector<Candidate> candidates;
    for (const AppRef &app : apps) {
        items.push_back(itemOf(app));
        candidates.push_back({ items.back().get(), _uses.of(app->path()) });
    }
    const std::vector<Hit> hits = ranked(Query(typed), candidates);
    for (const Hit &hit : hits) {
        _found.insert(apps[qsizetype(hit.index)]->path(), hit.match.action);
    }
    if (!hits.empty()) {
        _best = apps[qsizetype(hits.front().index)];
    }
}

bool AppFinder::isFound(const QString &typed, const AppRef &app)
{
    if (typed.isEmpty()) {
        return true;
    }
    find(typed);
    return _found.contains(app->path());
}

AppRef AppFinder::best(const QString &typed)
{
    if (typed.isEmpty() || !_isOn) {
        return nullptr;
    }
    find(typed);
    return _best;
}

AppRef AppFinder::bestAtLast(const QString &typed)
{
    if (best(typed) || !_isReading) {
        return _best;
    }
    _thread.waitForDone(LongestWait);
    QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
    return best(typed);
}

std::optional<ApplicationActions::Action> AppFinder::actionOf(
    const QString &typed, const AppRef &app)
{
    if (typed.isEmpty() || !_isOn || !isFound(typed, app)) {
        return std::nullopt;
    }
    const int action = _found.value(app->path());
    return action < 0 ? std::nullopt
                      : std::optional(_known[app->path()].item->actions()[size_t(action)].action);
}
