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

// "x.app" is an application, a folder or not; "classic" and "hidden" in its name say the rest.
class FakeItems final : public Items
{
public:
    QHash<QString, QString> displayNames;

    ItemFlags flagsOf(const QString &path) const override
    {
        const QString name = path.mid(path.lastIndexOf(u'/') + 1);
        ItemFlags flags = Items::flagsOf(path);
        flags.isApplication = name.endsWith(u".app") && !flags.isAlias;
        flags.isPackage = name.endsWith(u".pkg");
        flags.isClassicApp = name.contains(u"classic");
        flags.isInvisible = name.contains(u"hidden");
        return flags;
    }
    QString displayName(const QString &path) const override
    {
        return displayNames.value(path, nameOf(path));
    }
};

// One colour fills each icon, red unless another is given for the bundle's name.
class FakeIcons final : public IconProvider
{
public:
    QHash<QString, QColor> colors;

    // In the order in which threads came to ask.
    QStringList asked() const
    {
        const QMutexLocker lock(&_mutex);
        return _asked;
    }

    IconSource resolve(const QString &bundlePath, int) const override
    {
        const QMutexLocker lock(&_mutex);
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
    mutable QMutex _mutex;
    mutable QStringList _asked;
};

class FakeLauncher final : public Launcher
{
public:
    LaunchStatus answer = LaunchStatus::Launched;
    // Each as "path" or "path <- document document".
    QStringList launches;

    LaunchStatus open(
        const QString &bundlePath, const std::optional<QList<QUrl>> &documents) override
    {
        const QList<QUrl> urls = documents.value_or(QList<QUrl>());
        launches.append(
            bundlePath + (documents ? u" <- "_s + QUrl::toStringList(urls).join(u' ') : QString()));
        return answer;
    }
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

class FakeDesktop final : public Desktop, public SearchPaths
{
public:
    ~FakeDesktop() override { IconLoader::sharedIconLoader().cancelAll(); }

    FileTree tree;
    FakeItems fakeItems;
    FakeIcons fakeIcons;
    FakeLauncher fakeLauncher;
    FakeRunning running;
    // Below the tree; empty for a desktop without one.
    QString userFolder = u"user"_s;

    QString applicationSupportFolder(Domain domain) const override
    {
        const QString name = domain == Domain::User ? userFolder : u"local"_s;
        return name.isEmpty() ? QString() : tree.path(name);
    }

    const SearchPaths &searchPaths() const override { return *this; }
    Items &items() override { return fakeItems; }
    IconProvider &icons() override { return fakeIcons; }
    Launcher &launcher() override { return fakeLauncher; }
    RunningApplications &runningApplications() override { return running; }
};
