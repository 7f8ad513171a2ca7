// A desktop for tests. Its folders lie in a temporary one, it tells an item by its name, and it
// remembers what it was asked to do.

#pragma once

#include "TestCase.h"
#include "icons/IconLoader.h"
#include "platform/Desktop.h"
#include "platform/FileTree.h"

#include <QColor>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>

// What was asked for, in order; may be written to from any thread.
class RequestList final
{
public:
    QStringList lines() const
    {
        const QMutexLocker lock(&_mutex);
        return _lines;
    }
    void append(const QString &line)
    {
        const QMutexLocker lock(&_mutex);
        _lines.append(line);
    }
    QStringList take()
    {
        const QMutexLocker lock(&_mutex);
        return std::exchange(_lines, {});
    }

private:
    mutable QMutex _mutex;
    QStringList _lines;
};

// "x.app" is an application, a folder or not; "classic" and "hidden" in its name say the rest.
// Where all files are applications, the name says nothing.
class FakeItems final : public Items
{
public:
    QHash<QString, QString> displayNames;
    std::optional<QString> genericName;
    QHash<QString, QString> standIns;
    // By the bundle's name; to be filled before anything asks for them.
    QHash<QString, ItemWords> words;
    bool areFilesApplications = false;

    ItemFlags flagsOf(const QString &path) const override
    {
        const QString name = path.mid(path.lastIndexOf(u'/') + 1);
        ItemFlags flags = Items::flagsOf(path);
        flags.isApplication =
            areFilesApplications ? !flags.isContainer : name.endsWith(u".app") && !flags.isAlias;
        flags.isPackage = name.endsWith(u".pkg");
        flags.isClassicApp = name.contains(u"classic");
        flags.isInvisible = name.contains(u"hidden");
        return flags;
    }
    QString displayName(const QString &path) const override
    {
        return displayNames.value(path, nameOf(path));
    }
    QString standInFor(const QString &path) const override { return standIns.value(path, path); }
    std::optional<QString> genericNameOf(const QString &) const override { return genericName; }
    ItemWords wordsOf(const QString &path) const override { return words.value(nameOf(path)); }
};

// One colour fills each icon, red unless another is given for the bundle's name.
class FakeIcons final : public IconProvider
{
public:
    QHash<QString, QColor> colors;
    // In the order in which threads came to ask.
    QStringList asked() const { return _asked.lines(); }

    IconSource resolve(const QString &bundlePath, int) const override
    {
        _asked.append(bundlePath);
        return { bundlePath };
    }
    QImage decode(const IconSource &source, int size) const override
    {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(colors.value(Items::nameOf(source.file), Qt::red));
        return image;
    }

private:
    mutable RequestList _asked;
};

class FakeRunning final : public RunningApplications
{
public:
    QStringList paths;
    QString active, own;

    QStringList launchedApplications() const override { return paths; }
    QString activeApplication() const override { return active; }
    QString ownApplication() const override { return own; }

    void launch(const QStringList &nowRunning)
    {
        paths = nowRunning;
        Q_EMIT launched();
    }
    void bringToFront(const QString &path)
    {
        active = path;
        Q_EMIT frontSwitched();
    }
};

// What begins with the ending of a document's name prefers the document, and what contains it can
// open it.
class FakeDocuments final : public Documents
{
public:
    QSet<QString> applicationsThatAccept(
        const QUrl &document, const QStringList &paths) const override
    {
        return those(paths, [&](const QString &name) { return name.contains(endingOf(document)); });
    }
    QSet<QString> applicationsThatPrefer(
        const QUrl &document, const QStringList &paths) const override
    {
        return those(
            paths, [&](const QString &name) { return name.startsWith(endingOf(document)); });
    }

private:
    static QString endingOf(const QUrl &document) { return document.path().section(u'.', -1); }
    template <typename IsOne> static QSet<QString> those(const QStringList &paths, IsOne isOne)
    {
        QSet<QString> found;
        for (const QString &path : paths) {
            if (isOne(Items::nameOf(path))) {
                found.insert(path);
            }
        }
        return found;
    }
};

class FakePinned final : public PinnedApplications
{
public:
    QStringList pinned;

    QStringList paths() const override { return pinned; }
};

class FakeLiveQuery final : public LiveQuery
{
public:
    // As last started; no folders when it is stopped.
    Scope scope;
    QList<QStringList> known;

    void start(const Scope &newScope, const QList<QStringList> &newKnown) override
    {
        scope = newScope;
        known = newKnown;
    }
    void stop() override { scope = {}; }
};

class FakeDesktop : public Desktop,
                    public SearchPaths,
                    public Launcher,
                    public ApplicationControl,
                    public ApplicationActions
{
public:
    ~FakeDesktop() override { IconLoader::sharedIconLoader().cancelAll(); }

    FileTree tree;
    FakeItems fakeItems;
    FakeIcons fakeIcons;
    FakeDocuments fakeDocuments;
    FakeRunning running;
    FakePinned fakePinned;
    FakeLiveQuery fakeQuery;
    // What was launched, as "path" or "path <- document document", and what was done to what runs,
    // as "verb path".
    RequestList requests;
    LaunchStatus launchStatus = LaunchStatus::Launched;
    bool areWindowsShown = true;
    // Of every application.
    QList<Action> actions;
    bool hasNewWindows = false;
    QStringList folders;

    const SearchPaths &searchPaths() const override { return *this; }
    Items &items() override { return fakeItems; }
    IconProvider &icons() override { return fakeIcons; }
    Launcher &launcher() override { return *this; }
    const Documents &documents() const override { return fakeDocuments; }
    RunningApplications &runningApplications() override { return running; }
    LiveQuery &liveQuery() override { return fakeQuery; }
    ApplicationControl &applicationControl() override { return *this; }
    ApplicationActions &applicationActions() override { return *this; }
    const PinnedApplications &pinnedApplications() const override { return fakePinned; }

    QString applicationSupportFolder(Domain domain) const override
    {
        return tree.path(domain == Domain::User ? u"user"_s : u"local"_s);
    }
    QStringList applicationFolders() const override { return folders; }

    LaunchStatus open(const QString &path, const std::optional<QList<QUrl>> &documents) override
    {
        const QStringList urls = QUrl::toStringList(documents.value_or(QList<QUrl>()));
        requests.append(documents ? path + u" <- "_s + urls.join(u' ') : path);
        return launchStatus;
    }
    bool canOpenNewWindow(const QString &) const override { return hasNewWindows; }
    LaunchStatus openNewWindow(const QString &path) override
    {
        requests.append(u"window "_s + path);
        return launchStatus;
    }
    bool reveal(const QString &path) override
    {
        requests.append(u"reveal "_s + path);
        return true;
    }
    QList<Action> actionsOf(const QString &) const override { return actions; }
    bool perform(const QString &path, const QString &id) override
    {
        requests.append(id + u' ' + path);
        return true;
    }
    bool isVisible(const QString &) const override { return areWindowsShown; }
    void show(const QString &path) override { requests.append(u"show "_s + path); }
    void hide(const QString &path) override { requests.append(u"hide "_s + path); }
    void quit(const QString &path) override { requests.append(u"quit "_s + path); }
};
