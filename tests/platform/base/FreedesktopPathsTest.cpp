#include "platform/freedesktop/base/FreedesktopPaths.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/base/IconPlaces.h"

using Domain = SearchPaths::Domain;

class FreedesktopPathsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        TestCase::init();
        qputenv("HOME", "/home/ann");
        for (const char *name : { "FLATPAK_USER_DIR", "FLATPAK_SYSTEM_DIR" }) {
            qputenv(name, "/nowhere");
        }
        for (const char *name :
            { "DATA_HOME", "DATA_DIRS", "STATE_HOME", "CONFIG_HOME", "CACHE_HOME" }) {
            qunsetenv(QByteArray("XDG_").append(name).constData());
        }
    }

    void unsetVariables_standForTheUsualFolders()
    {
        qputenv("XDG_CONFIG_HOME", "relative/folder");
        const FreedesktopPaths paths;
        QCOMPARE(paths.applicationSupportFolder(Domain::User), u"/home/ann/.local/share"_s);
        QCOMPARE(paths.applicationSupportFolder(Domain::Local), u"/usr/local/share"_s);
        QCOMPARE(paths.libraryFolder(Domain::User), u"/home/ann/.local/state/Ortu"_s);
        QCOMPARE(paths.libraryFolder(Domain::Local), u"/var/lib/Ortu"_s);
        QCOMPARE(paths.configurationFolder(), u"/home/ann/.config/Ortu"_s);
        QCOMPARE(paths.cacheFolder(), u"/home/ann/.cache/Ortu"_s);
    }

    void setVariables_areFollowed()
    {
        qputenv("XDG_DATA_HOME", "/data/with:colon/");
        qputenv("XDG_STATE_HOME", "/state//x/..");
        qputenv("XDG_CONFIG_HOME", "~/configuration");
        qputenv("XDG_CACHE_HOME", "/cache");
        const FreedesktopPaths paths;
        QCOMPARE(paths.applicationSupportFolder(Domain::User), u"/data/with:colon"_s);
        QCOMPARE(paths.libraryFolder(Domain::User), u"/state/Ortu"_s);
        QCOMPARE(paths.configurationFolder(), u"/home/ann/configuration/Ortu"_s);
        QCOMPARE(paths.cacheFolder(), u"/cache/Ortu"_s);
    }

    void applicationFolders()
    {
        const auto foldersFor = [](const char *dataHome, const char *dataFolders) {
            qputenv("XDG_DATA_HOME", dataHome);
            qputenv("XDG_DATA_DIRS", dataFolders);
            return FreedesktopPaths().applicationFolders().join(u' ');
        };
        const QString usual = u"~/.local/share/applications ~/Applications "_s;
        QCOMPARE(foldersFor("", "x:y"),
            usual + u"/usr/local/share/applications /usr/share/applications"_s);
        QCOMPARE(foldersFor("/home/ann/.local/share", "/a/:../y:~/.local/share/:/a/b/..::/a"),
            usual + u"/a/applications"_s);
        QCOMPARE(foldersFor("/home/anna", "/a"),
            u"/home/anna/applications ~/Applications /a/applications"_s);
    }

    // Each once, whether or not the session names it.
    void foldersOfExports_areAmongTheDataFolders()
    {
        FileTree tree;
        const QString home = tree.path(u"home"_s);
        const QString user = tree.addFolder(u"home/flatpak/exports/share"_s);
        const QString system = tree.addFolder(u"system/exports/share"_s);
        qputenv("XDG_DATA_HOME", QFile::encodeName(home));
        qputenv("FLATPAK_SYSTEM_DIR", QFile::encodeName(tree.path(u"system"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(system + u"/:/a"_s));
        QCOMPARE(FreedesktopPaths().dataFolders(), QStringList({ home, system, u"/a"_s }));
        qunsetenv("FLATPAK_USER_DIR");
        QCOMPARE(FreedesktopPaths().dataFolders(), QStringList({ home, system, u"/a"_s, user }));
        QCOMPARE(FreedesktopPaths().applicationFolders().last(), user + u"/applications"_s);
        QVERIFY(IconPlaces::fromEnvironment().baseFolders.contains(user + u"/icons"_s));
        qputenv("XDG_DATA_DIRS", "/a");
        QCOMPARE(FreedesktopPaths().dataFolders(), QStringList({ home, u"/a"_s, user, system }));
    }
};

QTEST_GUILESS_MAIN(FreedesktopPathsTest)
#include "FreedesktopPathsTest.moc"
