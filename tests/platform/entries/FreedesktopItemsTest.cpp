#include "platform/freedesktop/entries/FreedesktopItems.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\nName=A\n";
const QByteArray runnable = start + "Exec=present %U\n";
const QByteArray script = "#!/bin/sh\n";

QByteArray listWith(const QByteArray &key, const QByteArray &value)
{
    return "<plist version=\"1.0\"><dict><key>" + key + "</key><string>" + value
        + "</string></dict></plist>";
}

// Items over a tree whose data folders are `home`, `local` and `system`.
class Desk final
{
public:
    FileTree tree;
    DesktopEntryIndex index { { "de" } };
    FreedesktopItems items { index,
        { tree.path(u"home"_s), tree.path(u"local"_s), tree.path(u"system"_s) }, { u"KDE"_s } };

    QString flags(const QString &path) const
    {
        const ItemFlags flags = items.flagsOf(path);
        QString words;
        for (const auto &[isSet, word] : { std::pair(flags.isInvisible, "invisible "),
                 std::pair(flags.isAlias, "alias "), std::pair(flags.isApplication, "application "),
                 std::pair(flags.isClassicApp, "classic "),
                 std::pair(flags.isContainer, "container "),
                 std::pair(flags.isPackage, "package ") }) {
            words += QLatin1String(isSet ? word : "");
        }
        return words.trimmed();
    }
    QString flagsOfNew(const QString &relative, const QByteArray &content = runnable)
    {
        return flags(tree.add(relative, content));
    }
};

} // namespace

class FreedesktopItemsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // $PATH holds one program for the whole run.
    void initTestCase()
    {
        static FileTree programs;
        programs.add(u"present"_s, script, 0755);
        programs.add(u"not-executable"_s, script);
        qputenv("PATH", QFile::encodeName(programs.path()));
    }

    void entries()
    {
        const std::pair<QByteArray, QString> rows[] { { "[Desktop Entry]\nType=Link\nURL=x\n", {} },
            { runnable + "NoDisplay=true\n", u"invisible application"_s },
            { "[Desktop Entry]\nHidden=true\n", u"invisible"_s },
            { runnable + "OnlyShowIn=GNOME;\n", u"invisible application"_s },
            { runnable + "OnlyShowIn=KDE;\n", u"application"_s },
            { start + "Exec=not-executable\n", u"application classic"_s },
            { runnable + "TryExec=absent\n", u"application classic"_s },
            { runnable + "TryExec=present\n", u"application"_s },
            { start + "DBusActivatable=true\n", u"application"_s } };
        for (const auto &[content, expected] : rows) {
            QCOMPARE(Desk().flagsOfNew(u"a.desktop"_s, content), expected);
        }
    }

    void damagedEntry_givesOneLineAContent()
    {
        Desk desk;
        const QString path = desk.tree.path(u"a.desktop"_s);
        const QByteArray content = runnable + "Name=Caf\xe9\n";
        expectWarning(u"^%1: the name is not in UTF-8$"_s.arg(path));
        QCOMPARE(desk.flagsOfNew(u"a.desktop"_s, content), u"application"_s);
        QCOMPARE(desk.items.displayName(path), u"Caf\uFFFD"_s);
        desk.items.willScan();
        QCOMPARE(desk.flags(path), u"application"_s);
        expectWarning(u"b.desktop: larger than 1048576 bytes$"_s);
        QCOMPARE(desk.flagsOfNew(u"b.desktop"_s, QByteArray((1 << 20) + 1, '\n')), QString());
    }

    void linksAndWhatOnlyLooksLikeEntries()
    {
        Desk desk;
        const QString entry = desk.tree.add(u"a.desktop"_s, runnable);
        const QString hidden = desk.tree.add(u"h.desktop"_s, runnable + "NoDisplay=true\n");
        const QString page = desk.tree.add(u"p.desktop"_s, "[Desktop Entry]\nType=Link\nName=A\n");
        for (const auto &[link, target, flags] :
            { std::tuple(u"1.desktop"_s, entry, u"application"_s),
                std::tuple(u"2.desktop"_s, hidden, u"invisible application"_s),
                std::tuple(u"3.desktop"_s, page, u"alias"_s),
                std::tuple(u"4.desktop"_s, u"/nowhere"_s, u"alias"_s),
                std::tuple(u"6"_s, entry, u"alias"_s) }) {
            QCOMPARE(desk.flags(desk.tree.addLink(link, target)), flags);
        }
        QCOMPARE(desk.items.displayName(page), u"p"_s);
        const QString pipe = desk.tree.addPipe(u"pipe.desktop"_s);
        QCOMPARE(desk.flags(pipe), QString());
        QCOMPARE(desk.items.displayName(pipe), u"pipe"_s);
        QCOMPARE(desk.flags(desk.tree.addFolder(u"folder.desktop"_s)), u"container"_s);
        QCOMPARE(desk.flagsOfNew(u"a.desktop.bak"_s), QString());
        QCOMPARE(desk.flags(desk.tree.path(u"absent.desktop"_s)), QString());
    }

    void bundles()
    {
        const QString runs = u"application container package"_s;
        const QString cannotRun = u"application classic container package"_s;
        const QString noApplication = u"container package"_s;
        const QString inContents = u"C.app/Contents/MacOS/run me"_s;
        // A file, in a bundle unless it is one, what is seen, and what the file holds; a file
        // without content cannot be executed.
        const std::tuple<QString, QString, QByteArray> rows[] {
            { u"X.APPDIR/AppRun"_s, runs, script }, { u"X.AppDir/AppRun"_s, cannotRun, {} },
            { u"X.AppDir/other"_s, noApplication, script }, { inContents, runs, script },
            { inContents, runs, "\177ELF\2" }, { inContents, cannotRun, "\xcf\xfa\xed\xfe" },
            { u"G.app/G"_s, runs, script }, { u"G.app/g"_s, cannotRun, script },
            { u"N.app/N"_s, noApplication, script }, { u"X.Plugin/x"_s, noApplication, script },
            { u"X.framework/x"_s, u"container"_s, script },
            { u"x.appimage"_s, u"application"_s, script }, { u"x.AppImage"_s, {}, {} }
        };
        for (const auto &[file, expected, content] : rows) {
            Desk desk;
            desk.tree.add(u"C.app/Contents/Info.plist"_s, listWith("CFBundleExecutable", "run me"));
            desk.tree.add(u"G.app/Resources/Info-gnustep.plist"_s, "{ NSIcon = g; }");
            desk.tree.add(file, content, content.isEmpty() ? 0644 : 0755);
            QCOMPARE(desk.flags(desk.tree.path(file.section(u'/', 0, 0))), expected);
        }
    }

    void invisibleNames()
    {
        Desk desk;
        FileTree &tree = desk.tree;
        const QString listed = tree.add(u"f/listed.desktop"_s, runnable);
        const QString other = tree.add(u"f/other.desktop"_s, runnable);
        tree.add(u"f/.hidden"_s, "Other.desktop\nlisted.desktop\nfolder");
        QCOMPARE(desk.flags(listed), u"invisible application"_s);
        QCOMPARE(desk.flags(other), u"application"_s);
        QCOMPARE(desk.flags(tree.addFolder(u"f/folder"_s)), u"invisible container"_s);
        QCOMPARE(desk.flagsOfNew(u"f/.dot.desktop"_s), u"invisible application"_s);
        // The list counts as it was until the next scan.
        tree.add(u"f/.hidden"_s, "other.desktop\n");
        QCOMPARE(desk.flags(other), u"application"_s);
        desk.items.willScan();
        QCOMPARE(desk.flags(other), u"invisible application"_s);
        QCOMPARE(desk.flags(listed), u"application"_s);

        tree.add(u"g/.hidden"_s, QByteArray(2'000'000, 'x'));
        expectWarning(u"g/.hidden: larger than 1048576 bytes$"_s);
        QCOMPARE(desk.flagsOfNew(u"g/a.desktop"_s), u"application"_s);
    }

    void shadowedEntries()
    {
        Desk desk;
        FileTree &tree = desk.tree;
        const QString own = tree.add(u"home/applications/a.desktop"_s, runnable);
        const QString sameName = tree.add(u"system/applications/a.desktop"_s, runnable);
        tree.add(u"local/applications/kde-b.desktop"_s, "broken, but it counts");
        QCOMPARE(desk.flags(own), u"application"_s);
        QCOMPARE(desk.flags(sameName), u"invisible application"_s);
        QCOMPARE(
            desk.flagsOfNew(u"system/applications/kde/b.desktop"_s), u"invisible application"_s);
        QCOMPARE(desk.flagsOfNew(u"system/applications/kde/a.desktop"_s), u"application"_s);
        QCOMPARE(desk.flagsOfNew(u"elsewhere/a.desktop"_s), u"application"_s);
        // Each of the two shows as the one that counts, unless that is none or deletes the other.
        const auto shown = [&](const QString &path) { return desk.items.standInFor(path); };
        const QString broken = tree.path(u"system/applications/kde/b.desktop"_s);
        expectWarning(u"kde-b.desktop: line 1"_s);
        QCOMPARE(QStringList({ shown(own), shown(sameName), shown(broken) }),
            QStringList({ own, own, broken }));
        QCOMPARE(shown(u"/elsewhere/a.desktop"_s), u"/elsewhere/a.desktop"_s);
        QVERIFY(QFile::remove(own));
        QCOMPARE(desk.flags(sameName), u"invisible application"_s);
        desk.items.willScan();
        QCOMPARE(desk.flags(sameName), u"application"_s);
        QCOMPARE(shown(own), sameName);
        desk.flagsOfNew(u"home/applications/a.desktop"_s, runnable + "Hidden=true\n");
        desk.items.willScan();
        QCOMPARE(shown(sameName), sameName);
    }

    void shadowing_seesThroughLinksAndLoops()
    {
        Desk desk;
        FileTree &tree = desk.tree;
        const QString real = tree.addFolder(u"real"_s);
        for (const QString &link :
            { u"home/applications"_s, u"local/applications"_s, u"real/loop"_s }) {
            tree.addLink(link, real);
        }
        // The one folder under its three names: an entry is there once.
        QCOMPARE(desk.flagsOfNew(u"real/sub/a.desktop"_s), u"application"_s);
        const QString shadowed = u"invisible application"_s;
        QCOMPARE(desk.flags(tree.path(u"home/applications/sub/a.desktop"_s)), u"application"_s);
        QCOMPARE(desk.flags(tree.path(u"local/applications/sub/a.desktop"_s)), shadowed);
        QCOMPARE(desk.flagsOfNew(u"system/applications/sub-a.desktop"_s), shadowed);
    }

    void namesAndPrograms_standUntilAScan()
    {
        Desk desk;
        const QString program = desk.tree.path(u"late"_s);
        const QString path = desk.tree.add(u"x.y.desktop"_s,
            start + "Exec=" + QFile::encodeName(program) + "\nName=Mail\nName[de]=Post\n");
        QCOMPARE(desk.flags(path), u"application classic"_s);
        QCOMPARE(desk.items.displayName(path), u"Post"_s);
        desk.tree.add(u"late"_s, script, 0755);
        QCOMPARE(desk.flags(path), u"application classic"_s);
        desk.items.willScan();
        QCOMPARE(desk.flags(path), u"application"_s);
        desk.items.willScan();
        desk.tree.add(u"x.y.desktop"_s, "[Desktop Entry]\nType=Application\nExec=present\n");
        QCOMPARE(desk.items.displayName(path), u"x.y"_s);
        QCOMPARE(desk.items.displayName(u"/nowhere/My.App.AppImage"_s), u"My.App"_s);
    }

    void kindsOfApplications()
    {
        Desk desk;
        const std::pair<QByteArray, QString> rows[] {
            { runnable + "GenericName[de]=Texteditor\nGenericName=x\n", u"Texteditor"_s },
            { runnable, u""_s },
            // What is no application is known by its path.
            { "[Desktop Entry]\nType=Link\nGenericName=x\n", u"(none)"_s }
        };
        for (const auto &[content, kind] : rows) {
            const QString entry = desk.tree.add(u"%1.desktop"_s.arg(kind), content);
            QCOMPARE(desk.items.genericNameOf(entry).value_or(u"(none)"_s), kind);
        }
    }

    void wordsToFindBy()
    {
        Desk desk;
        const ItemWords words = desk.items.wordsOf(desk.tree.add(u"a.desktop"_s,
            "[Desktop Entry]\nType=Application\nName[de]=Dateien\nName=Files\nName[fr]=Fichiers\n"
            "GenericName=Manager\nGenericName[de]=\nKeywords=folder;disk\\;s;;\n"
            "Keywords[de]=Ordner;\nExec=env A=b -u \"/usr/bin/files one\" %U\n"
            "TryExec=/usr/bin/nautilus\nActions=new;\n[Desktop Action new]\nName=New\n"));
        QCOMPARE(words.untranslatedName, u"Files"_s);
        QCOMPARE(words.genericName + words.untranslatedGenericName, u"ManagerManager"_s);
        QCOMPARE(words.keywords, QStringList { u"Ordner"_s });
        QCOMPARE(words.untranslatedKeywords, QStringList({ u"folder"_s, u"disk;s"_s }));
        QCOMPARE(words.commands, QStringList({ u"files one"_s, u"nautilus"_s }));
        QVERIFY(words.hasActions);
        // What is broken or gone says nothing.
        QVERIFY(desk.items.wordsOf(desk.tree.add(u"b.desktop"_s, "\0Name=x\nExec=\""))
                    .commands.isEmpty());
        QVERIFY(desk.items.wordsOf(u"/nowhere.desktop"_s).untranslatedName.isEmpty());
    }

    void iconNames()
    {
        Desk desk;
        FileTree &tree = desk.tree;
        const auto iconOf = [&desk](const QString &path) { return desk.items.iconNameOf(path); };
        QCOMPARE(
            iconOf(tree.add(u"a.desktop"_s, runnable + "Icon=mail\nIcon[de]=post\n")), u"post"_s);

        tree.add(u"X.AppDir/AppRun"_s, script, 0755);
        const QString appDir = tree.path(u"X.AppDir"_s);
        QCOMPARE(iconOf(appDir), QString());
        tree.add(u"X.AppDir/x.desktop"_s, runnable + "Icon=org.x\n");
        const QString svg = tree.add(u"X.AppDir/org.x.svg"_s, "<svg/>");
        QCOMPARE(iconOf(appDir), svg);
        const QString own = tree.add(u"X.AppDir/.DirIcon"_s, "x");
        QCOMPARE(iconOf(appDir), own);

        const QString icns = tree.add(u"C.app/Contents/Resources/pic.icns"_s, "x");
        const QString tiff = tree.add(u"G.app/Resources/g.tiff"_s, "x");
        const QString info = u"C.app/Contents/Info.plist"_s;
        const QString gnustep = u"G.app/Resources/Info-gnustep.plist"_s;
        const QByteArray pic = listWith("CFBundleIconFile", "pic");
        for (const auto &[list, content, icon] :
            { std::tuple(info, pic, icns), std::tuple(gnustep, listWith("NSIcon", "g.tiff"), tiff),
                std::tuple(gnustep, listWith("NSIcon", "../Resources/g.tiff"), QString()) }) {
            tree.add(list, content);
            QCOMPARE(iconOf(tree.path(list.section(u'/', 0, 0))), icon);
        }
    }

    void manyThreads_readTheSameEntries()
    {
        Desk desk;
        QStringList paths;
        for (int i = 0; i < 100; ++i) {
            paths.append(desk.tree.add(u"system/applications/%1.desktop"_s.arg(i), runnable));
        }
        std::atomic<int> applications = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i) {
            threads.emplace_back([&, i] {
                for (const QString &path : paths) {
                    if (i == 0) {
                        desk.items.willScan();
                    }
                    const bool isApplication = desk.items.flagsOf(path).isApplication;
                    applications += isApplication && desk.items.displayName(path) == u"A" ? 1 : 0;
                }
            });
        }
        std::for_each(threads.begin(), threads.end(), std::mem_fn(&std::thread::join));
        QCOMPARE(applications.load(), 800);
    }
};

QTEST_GUILESS_MAIN(FreedesktopItemsTest)
#include "FreedesktopItemsTest.moc"
