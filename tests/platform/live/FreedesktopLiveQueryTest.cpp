#include "platform/freedesktop/live/FreedesktopLiveQuery.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"
#include "platform/freedesktop/entries/FreedesktopItems.h"

#include <unistd.h>

namespace {

const QByteArray entry = "[Desktop Entry]\nType=Application\nName=A\nExec=present\n";
const QByteArray bundleList =
    "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>b</string></dict></plist>";
const QByteArray script = "#!/bin/sh\n";

LiveQuery::Kind kindOf(const ItemFlags &flags)
{
    if (flags.isInvisible || flags.isAlias || flags.isClassicApp) {
        return LiveQuery::Kind::Neither;
    }
    return flags.isApplication                  ? LiveQuery::Kind::Result
        : flags.isContainer && !flags.isPackage ? LiveQuery::Kind::Folder
                                                : LiveQuery::Kind::Neither;
}

} // namespace

// A query over folders of a real file system, whose results are named by what follows the
// temporary folder: "r/a t/b" without the ends of entries.
class FreedesktopLiveQueryTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        TestCase::init();
        _query.reset();
        _tree = std::make_unique<FileTree>();
        _index = std::make_unique<DesktopEntryIndex>(QList<QByteArray>());
        const QStringList dataFolders { _tree->path(u"home"_s), _tree->path(u"system"_s) };
        _items = std::make_unique<FreedesktopItems>(*_index, dataFolders, QStringList());
        _tree->add(u"bin/present"_s, script, 0755);
        qputenv("PATH", QFile::encodeName(_tree->path(u"bin"_s)));
    }

    void theStart_tellsWhatIsOtherThanKnown()
    {
        add(u"r/a r/t/b r/t/u/c q/d r/t/u/v/e"_s);
        start(u"r q r/t/u"_s, 2, { { u"r/a"_s, u"r/x"_s }, { u"y"_s } });
        QTRY_COMPARE(told(), u"+q/d +r/t/b +r/t/u/c +r/t/u/v/e -r/x -y"_s);
        // The same in other bunches: something has changed all the same.
        start(u"r q"_s, 2, { { u"r/a"_s, u"r/t/b"_s, u"q/d"_s } });
        QTRY_COMPARE(told(), u"?"_s);
        start(u"r q"_s, 2, { { u"q/d"_s }, { u"r/t/b"_s, u"r/a"_s } });
        add(u"r/f"_s);
        QTRY_COMPARE(told(), u"+r/f"_s);
    }

    void items_comeGoAndChange()
    {
        add(u"r/a"_s);
        QFile half;
        start(u"r"_s, 3, { { u"r/a"_s } });
        const std::initializer_list<std::tuple<const char *, std::function<void()>, QString>>
            steps {
                { "new", [&] { add(u"r/b"_s); }, u"+r/b"_s },
                // Read as it is now, it would be called empty.
                { "being written",
                    [&] {
                        half.setFileName(_tree->path(u"r/half.desktop"_s));
                        QVERIFY(half.open(QIODevice::WriteOnly));
                        add(u"r/after"_s);
                    },
                    u"+r/after"_s },
                { "written", [&] { half.write(entry), half.close(); }, u"+r/half"_s },
                { "no application",
                    [&] {
                        _tree->add(u"r/text"_s, {});
                        add(u"r/c"_s);
                    },
                    u"+r/c"_s },
                { "in place", [&] { edit(u"r/a"_s, "Icon=x\n"); }, u"~r/a"_s },
                { "replaced", [&] { add(u"r/a"_s, "Icon=y\n"); }, u"~r/a"_s },
                { "renamed", [&] { move(u"r/b.desktop"_s, u"r/d.desktop"_s); }, u"+r/d -r/b"_s },
                { "gone", [&] { remove(u"r/d.desktop"_s); }, u"-r/d"_s },
                { "come and gone",
                    [&] {
                        add(u"r/e"_s);
                        remove(u"r/e.desktop"_s);
                        add(u"r/f"_s);
                    },
                    u"+r/f"_s },
                { "hidden in place", [&] { edit(u"r/f"_s, "NoDisplay=true\n"); }, u"-r/f"_s },
                { "shown in place", [&] { edit(u"r/f"_s); }, u"+r/f"_s },
                { "folders made at once", [&] { add(u"r/t/u/g r/t/u/v/deep"_s); }, u"+r/t/u/g"_s },
                { "in a new folder", [&] { add(u"r/t/u/h"_s); }, u"+r/t/u/h"_s },
                { "folder moved away", [&] { move(u"r/t"_s, u"t"_s); }, u"-r/t/u/g -r/t/u/h"_s },
                { "and changed there",
                    [&] {
                        add(u"t/u/i"_s);
                        move(u"t"_s, u"r/w"_s);
                    },
                    u"+r/w/u/g +r/w/u/h +r/w/u/i"_s },
                { "removed with its content",
                    [&] { QDir(_tree->path(u"r/w"_s)).removeRecursively(); },
                    u"-r/w/u/g -r/w/u/h -r/w/u/i"_s },
                { "link", [&] { _tree->addLink(u"r/l.desktop"_s, _tree->path(u"r/a.desktop"_s)); },
                    u"+r/l"_s },
                { "linked folder",
                    [&] {
                        _tree->addLink(u"r/loop"_s, _tree->path(u"r"_s));
                        add(u"r/m"_s);
                    },
                    u"+r/m"_s },
                { "list of hidden names",
                    [&] { _tree->add(u"r/.hidden"_s, "m.desktop\nl.desktop\n"); }, u"-r/l -r/m"_s },
                { "and without it", [&] { remove(u"r/.hidden"_s); }, u"+r/l +r/m"_s },
                // Installers write entries before programs, and this file when all is done.
                { "program missing",
                    [&] {
                        _tree->add(u"r/n.desktop"_s, entry + "TryExec=late\n");
                        add(u"r/o"_s);
                    },
                    u"+r/o"_s },
                { "program come",
                    [&] {
                        _tree->add(u"bin/late"_s, script, 0755);
                        _tree->add(u"r/mimeinfo.cache"_s, {});
                    },
                    u"+r/n"_s },
                { "bundle",
                    [&] {
                        _tree->addFolder(u"r/x.app"_s);
                        add(u"r/p"_s);
                    },
                    u"+r/p"_s },
                { "half copied",
                    [&] {
                        _tree->add(u"r/x.app/Contents/Info.plist"_s, bundleList);
                        add(u"r/q"_s);
                    },
                    u"+r/q"_s },
                { "copied", [&] { _tree->add(u"r/x.app/Contents/MacOS/b"_s, script, 0755); },
                    u"+r/x.app"_s },
            };
        for (const auto &[name, act, expected] : steps) {
            _told.clear();
            act();
            const bool isTold =
                QTest::qWaitFor([&, expected = expected] { return told() == expected; });
            QVERIFY2(isTold, qPrintable(QLatin1String(name) + u": "_s + told()));
        }
    }

    // Whatever it says, the user's entry stands in front of the system's.
    void anEntryOfTheUser_hidesTheSystems()
    {
        add(u"system/applications/a system/applications/b"_s);
        start(u"home/applications system/applications"_s, 2,
            { { u"system/applications/a"_s, u"system/applications/b"_s } });
        add(u"home/applications/a"_s, "Hidden=true\n");
        QTRY_COMPARE(told(), u"-system/applications/a"_s);
        remove(u"home/applications/a.desktop"_s);
        QTRY_COMPARE(told(), u"+system/applications/a"_s);
        // So does a folder of them.
        move(u"home/applications"_s, u"away"_s);
        add(u"away/b"_s, "Hidden=true\n");
        move(u"away"_s, u"home/applications"_s);
        QTRY_COMPARE(told(), u"-system/applications/b"_s);
        move(u"home/applications"_s, u"away"_s);
        QTRY_COMPARE(told(), u"+system/applications/b"_s);
    }

    void foldersOfTheScope_mayComeAndGo()
    {
        start(u"x/y/r"_s, 2, {});
        add(u"x/y/r/a"_s);
        QTRY_COMPARE(told(), u"+x/y/r/a"_s);
        move(u"x"_s, u"z"_s);
        QTRY_COMPARE(told(), u"-x/y/r/a"_s);
        add(u"z/y/r/b"_s);
        move(u"z"_s, u"x"_s);
        QTRY_COMPARE(told(), u"+x/y/r/a +x/y/r/b"_s);
        move(u"x/y/r"_s, u"away"_s);
        _tree->add(u"x/y/r"_s, "a file");
        QTRY_COMPARE(told(), u"-x/y/r/a -x/y/r/b"_s);
        remove(u"x/y/r"_s);
        add(u"q/c p/d"_s);
        _tree->addLink(u"x/y/r"_s, _tree->path(u"q"_s));
        QTRY_COMPARE(told(), u"+x/y/r/c"_s);
        add(u"q/e"_s);
        QTRY_COMPARE(told(), u"+x/y/r/e"_s);
        remove(u"x/y/r"_s);
        _tree->addLink(u"x/y/r"_s, _tree->path(u"p"_s));
        QTRY_COMPARE(told(), u"+x/y/r/d -x/y/r/c -x/y/r/e"_s);
        const QString p = _tree->path(u"p"_s);
        if (::geteuid() != 0) {
            _told.clear();
            QVERIFY(QFile::setPermissions(p, {}));
            QTRY_COMPARE(told(), u"-x/y/r/d"_s);
            _told.clear();
            QVERIFY(
                QFile::setPermissions(p, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
            QTRY_COMPARE(told(), u"+x/y/r/d"_s);
        }
    }

    void withoutWatches_foldersAreLookedAtNowAndThen()
    {
        expectWarning(u"^cannot watch all folders: "_s);
        add(u"r/t/a"_s);
        start(u"r"_s, 3, { { u"r/t/a"_s } }, { 1, std::chrono::milliseconds(20) });
        add(u"r/t/u/b"_s);
        QTRY_COMPARE(told(), u"+r/t/u/b"_s);
        add(u"r/t/a"_s, "Icon=x\n");
        QTRY_COMPARE(told(), u"~r/t/a"_s);
    }

    // More than the kernel keeps, which then tells nothing of the rest.
    void afterAFlood_nothingIsMissing()
    {
        _tree->addFolder(u"r"_s);
        start(u"r"_s, 2, { {} });
        const int queue = load(u"/proc/sys/fs/inotify/max_queued_events"_s).trimmed().toInt();
        const QString a = _tree->path(u"r/a"_s), b = _tree->path(u"r/b"_s);
        _tree->add(u"r/a"_s, {});
        for (int i = 0; i < queue; ++i) {
            QFile::rename(i % 2 == 0 ? a : b, i % 2 == 0 ? b : a);
        }
        add(u"r/c"_s);
        QTRY_VERIFY(_told.contains(u"+r/c"_s));
    }

    void aStoppedQuery_isSilent()
    {
        start(u"r"_s, 2, {});
        add(u"r/a"_s);
        _query->stop();
        start(u"q"_s, 2, {});
        add(u"r/b q/c"_s);
        QTRY_COMPARE(told(), u"+q/c"_s);
    }

private:
    // Each is complete when it appears, since a test does not know when it is read.
    void add(const QString &names, const QByteArray &more = {})
    {
        for (const QString &name : names.split(u' ')) {
            _tree->add(u"written"_s, entry + more);
            _tree->addFolder(QFileInfo(name).path());
            move(u"written"_s, name + u".desktop"_s);
        }
    }
    void edit(const QString &name, const QByteArray &more = {}) const
    {
        _tree->add(name + u".desktop"_s, entry + more);
    }
    void move(const QString &from, const QString &to)
    {
        _told.clear();
        QCOMPARE(
            ::rename(QFile::encodeName(_tree->path(from)), QFile::encodeName(_tree->path(to))), 0);
    }
    void remove(const QString &name)
    {
        _told.clear();
        QVERIFY(QFile::remove(_tree->path(name)));
    }

    void start(const QString &folders, int levels, const QList<QStringList> &known,
        const FolderQuery::Limits &limits = {})
    {
        _told.clear();
        if (!_query) {
            _query = std::make_unique<FreedesktopLiveQuery>(*_items, limits);
            connect(_query.get(), &LiveQuery::didUpdate, this, &FreedesktopLiveQueryTest::take);
        }
        LiveQuery::Scope scope;
        scope.levels = levels;
        scope.kindOf = [this](const QString &path) { return kindOf(_items->flagsOf(path)); };
        for (const QString &folder : folders.split(u' ')) {
            const bool isNested = folder.startsWith(folders.section(u' ', 0, 0) + u'/');
            (isNested ? scope.nested : scope.folders).append(_tree->path(folder));
        }
        QList<QStringList> paths;
        for (const QStringList &names : known) {
            paths.append(QStringList());
            for (const QString &name : names) {
                paths.last().append(_tree->path(name + u".desktop"_s));
            }
        }
        _query->start(scope, paths);
    }
    void take(const LiveQuery::Update &update)
    {
        const auto note = [this](const QStringList &paths, QChar sign) {
            for (QString name : paths) {
                name.remove(0, _tree->path().size() + 1);
                name.remove(u".desktop"_s);
                _told.append(sign + name);
            }
        };
        note(update.added, u'+');
        note(update.changed, u'~');
        note(update.removed, u'-');
        if (update.isIncomplete) {
            _told.append(u"?"_s);
        }
    }
    // Since the last change that this test made.
    QString told() const
    {
        QStringList sorted = _told;
        sorted.sort();
        return sorted.join(u' ');
    }

    std::unique_ptr<FileTree> _tree;
    std::unique_ptr<DesktopEntryIndex> _index;
    std::unique_ptr<FreedesktopItems> _items;
    std::unique_ptr<FreedesktopLiveQuery> _query;
    QStringList _told;
};

QTEST_GUILESS_MAIN(FreedesktopLiveQueryTest)
#include "FreedesktopLiveQueryTest.moc"
