#include "platform/freedesktop/FreedesktopItems.h"

#include "platform/FileTree.h"
#include "platform/freedesktop/DesktopEntryIndex.h"

#include <QRegularExpression>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <sys/stat.h>
#include <vector>

class FreedesktopItemsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void entry_data();
    void entry();
    void brokenEntry_givesNoFlagsAndOneLine_data();
    void brokenEntry_givesNoFlagsAndOneLine();
    void itemsThatOnlyLookLikeEntries();
    void links();
    void bundles_data();
    void bundles();
    void invisibleNames();
    void shadowedEntries();
    void shadowing_seesThroughLinksAndLoops();
    void programs_areLookedForAfreshByAScan();
    void names_standUntilAScan();
    void badEncoding_isPutUpWithAndSaidOnce();
    void iconNames();
    void manyThreads_readTheSameEntries();
};

namespace {

const QByteArray start = "[Desktop Entry]\nType=Application\nName=A\n";
const QByteArray runnable = start + "Exec=present %U\n";

QString text(const ItemFlags &flags)
{
    QStringList words;
    const auto add = [&words](bool isSet, const char *word) {
        if (isSet) {
            words.append(QLatin1String(word));
        }
    };
    add(flags.isInvisible, "invisible");
    add(flags.isAlias, "alias");
    add(flags.isApplication, "application");
    add(flags.isClassicApp, "classic");
    add(flags.isContainer, "container");
    add(flags.isPackage, "package");
    return words.join(QLatin1Char(' '));
}

// Items over a tree whose data folders are `home`, `local` and `system`.
class Desk final
{
public:
    FileTree tree;
    DesktopEntryIndex index { { "de" } };
    FreedesktopItems items { index,
        { tree.path(QStringLiteral("home")), tree.path(QStringLiteral("local")),
            tree.path(QStringLiteral("system")) },
        { QStringLiteral("KDE") } };

    QString flags(const QString &path) { return text(items.flagsOf(path)); }
};

} // namespace

// $PATH holds one program for the whole run.
void FreedesktopItemsTest::initTestCase()
{
    static FileTree programs;
    programs.add(QStringLiteral("present"), "#!/bin/sh\n", 0755);
    programs.add(QStringLiteral("not-executable"), "#!/bin/sh\n");
    programs.addFolder(QStringLiteral("folder"));
    qputenv("PATH", QFile::encodeName(programs.path()));
}

void FreedesktopItemsTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void FreedesktopItemsTest::entry_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const QByteArray &content, const char *expected) {
        QTest::newRow(name) << content << QString::fromUtf8(expected);
    };
    row("plain", runnable, "application");
    row("a link to a page", "[Desktop Entry]\nType=Link\nURL=x\n", "");
    row("not displayed", runnable + "NoDisplay=true\n", "invisible application");
    row("deleted", runnable + "Hidden=true\n", "invisible application");
    row("deleted and nothing else", "[Desktop Entry]\nHidden=true\n", "invisible");
    row("for another desktop", runnable + "OnlyShowIn=GNOME;\n", "invisible application");
    row("for every other desktop", runnable + "NotShowIn=KDE;\n", "invisible application");
    row("for this desktop", runnable + "OnlyShowIn=KDE;\n", "application");
    row("program missing", start + "Exec=absent\n", "application classic");
    row("program missing by path", start + "Exec=/nowhere/present\n", "application classic");
    row("program not executable", start + "Exec=not-executable\n", "application classic");
    row("program is a folder", start + "Exec=folder\n", "application classic");
    row("condition not met", runnable + "TryExec=absent\n", "application classic");
    row("condition met", runnable + "TryExec=present\n", "application");
    row("on the bus only", start + "DBusActivatable=true\n", "application");
}

void FreedesktopItemsTest::entry()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, expected);
    Desk desk;
    QCOMPARE(desk.flags(desk.tree.add(QStringLiteral("a.desktop"), content)), expected);
}

void FreedesktopItemsTest::brokenEntry_givesNoFlagsAndOneLine_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("reason");

    QTest::newRow("empty") << QByteArray() << QStringLiteral("empty");
    QTest::newRow("binary") << QByteArray(100, '\0') << QStringLiteral("binary");
    QTest::newRow("huge") << QByteArray(50 * 1024 * 1024, 'x')
                          << QStringLiteral("larger than 1048576 bytes");
    QTest::newRow("no program") << start << QStringLiteral("no Exec");
    QTest::newRow("open quote") << start + "Exec=\"present\n"
                                << QStringLiteral("the quotes in Exec do not match");
}

void FreedesktopItemsTest::brokenEntry_givesNoFlagsAndOneLine()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, reason);
    Desk desk;
    const QString path = desk.tree.add(QStringLiteral("a.desktop"), content);
    const QByteArray line = (path + QStringLiteral(": ") + reason).toUtf8();
    QTest::ignoreMessage(QtWarningMsg, line.constData());
    QCOMPARE(desk.flags(path), QString());
    QCOMPARE(desk.items.displayName(path), QStringLiteral("a"));
    desk.items.willScan();
    QCOMPARE(desk.flags(path), QString());

    // The same reason for another content is said again.
    desk.tree.add(QStringLiteral("a.desktop"), runnable);
    desk.items.willScan();
    QCOMPARE(desk.flags(path), QStringLiteral("application"));
    desk.tree.add(QStringLiteral("a.desktop"), content);
    desk.items.willScan();
    QTest::ignoreMessage(QtWarningMsg, line.constData());
    QCOMPARE(desk.flags(path), QString());
}

void FreedesktopItemsTest::itemsThatOnlyLookLikeEntries()
{
    Desk desk;
    const QString pipe = desk.tree.path(QStringLiteral("pipe.desktop"));
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(desk.flags(pipe), QString());
    QCOMPARE(desk.items.displayName(pipe), QStringLiteral("pipe"));
    QCOMPARE(desk.flags(desk.tree.addFolder(QStringLiteral("folder.desktop"))),
        QStringLiteral("container"));
    QCOMPARE(desk.flags(desk.tree.add(QStringLiteral("a.desktop.bak"), runnable)), QString());
    QCOMPARE(desk.flags(desk.tree.path(QStringLiteral("absent.desktop"))), QString());
}

void FreedesktopItemsTest::links()
{
    Desk desk;
    FileTree &tree = desk.tree;
    const QString entry = tree.add(QStringLiteral("a.desktop"), runnable);
    const QString hidden = tree.add(QStringLiteral("h.desktop"), runnable + "NoDisplay=true\n");
    const QString page = tree.add(QStringLiteral("p.desktop"), "[Desktop Entry]\nType=Link\n");
    const auto flagsOfLinkTo = [&desk](const char *name, const QString &target) {
        return desk.flags(desk.tree.addLink(QLatin1String(name), target));
    };
    QCOMPARE(flagsOfLinkTo("1.desktop", entry), QStringLiteral("application"));
    QCOMPARE(flagsOfLinkTo("2.desktop", tree.path(QStringLiteral("1.desktop"))),
        QStringLiteral("application"));
    QCOMPARE(flagsOfLinkTo("3.desktop", hidden), QStringLiteral("invisible application"));
    QCOMPARE(flagsOfLinkTo("4.desktop", page), QStringLiteral("alias"));
    QCOMPARE(flagsOfLinkTo("5.desktop", QStringLiteral("/nowhere")), QStringLiteral("alias"));
    QCOMPARE(flagsOfLinkTo("6.desktop", tree.path(QStringLiteral("6.desktop"))),
        QStringLiteral("alias"));
    QCOMPARE(flagsOfLinkTo("7.desktop", QStringLiteral("/dev/null")), QStringLiteral("alias"));
    QCOMPARE(flagsOfLinkTo("8", entry), QStringLiteral("alias"));
    const QString bundle = tree.path(QStringLiteral("B.AppDir"));
    tree.add(QStringLiteral("B.AppDir/AppRun"), "#!/bin/sh\n", 0755);
    QCOMPARE(flagsOfLinkTo("9.AppDir", bundle), QStringLiteral("alias"));
}

void FreedesktopItemsTest::bundles_data()
{
    QTest::addColumn<QString>("bundle");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isExecutable");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *bundle, const char *file,
                         const QByteArray &content, bool isExecutable, const char *expected) {
        QTest::newRow(name) << QString::fromUtf8(bundle) << QString::fromUtf8(file) << content
                            << isExecutable << QString::fromUtf8(expected);
    };
    const QByteArray script = "#!/bin/sh\n";
    row("AppDir", "X.AppDir", "AppRun", script, true, "application container package");
    row("AppDir in capitals", "X.APPDIR", "AppRun", script, true, "application container package");
    row("AppDir that cannot run", "X.AppDir", "AppRun", script, false,
        "application classic container package");
    row("AppDir without a start", "X.AppDir", "other", script, true, "container package");
    row("script in Contents", "C.app", "Contents/MacOS/run me", script, true,
        "application container package");
    row("ELF in Contents", "C.app", "Contents/MacOS/run me",
        "\x7f"
        "ELF\2",
        true, "application container package");
    row("foreign program in Contents", "C.app", "Contents/MacOS/run me", "\xcf\xfa\xed\xfe", true,
        "application classic container package");
    row("nothing in Contents", "C.app", "Contents/MacOS/other", script, true,
        "application classic container package");
    row("program in Resources", "G.app", "G", script, true, "application container package");
    row("program in Resources missing", "G.app", "g", script, true,
        "application classic container package");
    row("no list of its own", "N.app", "N", script, true, "container package");
    row("plug-in", "X.Plugin", "x", script, true, "container package");
    row("framework", "X.framework", "x", script, true, "container");
    row("AppImage", "", "x.appimage", script, true, "application");
    row("AppImage that is not executable", "", "x.AppImage", script, false, "");
}

void FreedesktopItemsTest::bundles()
{
    QFETCH(QString, bundle);
    QFETCH(QString, file);
    QFETCH(QByteArray, content);
    QFETCH(bool, isExecutable);
    QFETCH(QString, expected);
    Desk desk;
    desk.tree.add(QStringLiteral("C.app/Contents/Info.plist"),
        "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>run "
        "me</string></dict></plist>");
    desk.tree.add(QStringLiteral("G.app/Resources/Info-gnustep.plist"), "{ NSIcon = g; }");
    const QString folder = bundle.isEmpty() ? QStringLiteral("folder") : bundle;
    const QString path =
        desk.tree.add(folder + QLatin1Char('/') + file, content, isExecutable ? 0755 : 0644);
    QCOMPARE(desk.flags(bundle.isEmpty() ? path : desk.tree.path(bundle)), expected);
}

void FreedesktopItemsTest::invisibleNames()
{
    Desk desk;
    FileTree &tree = desk.tree;
    const QString listed = tree.add(QStringLiteral("f/listed.desktop"), runnable);
    const QString other = tree.add(QStringLiteral("f/other.desktop"), runnable);
    tree.add(QStringLiteral("f/.hidden"), "Listed.desktop\nlisted.desktop\nfolder");
    QCOMPARE(desk.flags(listed), QStringLiteral("invisible application"));
    QCOMPARE(desk.flags(other), QStringLiteral("application"));
    QCOMPARE(desk.flags(tree.addFolder(QStringLiteral("f/folder"))),
        QStringLiteral("invisible container"));
    QCOMPARE(desk.flags(tree.add(QStringLiteral("f/.dot.desktop"), runnable)),
        QStringLiteral("invisible application"));

    // The list counts as it was until the next scan.
    tree.add(QStringLiteral("f/.hidden"), "other.desktop\n");
    QCOMPARE(desk.flags(other), QStringLiteral("application"));
    desk.items.willScan();
    QCOMPARE(desk.flags(other), QStringLiteral("invisible application"));
    QCOMPARE(desk.flags(listed), QStringLiteral("application"));

    const QString huge = tree.add(QStringLiteral("g/.hidden"), QByteArray(2'000'000, 'x'));
    QTest::ignoreMessage(
        QtWarningMsg, qUtf8Printable(huge + QStringLiteral(": larger than 1048576 bytes")));
    QCOMPARE(desk.flags(tree.add(QStringLiteral("g/a.desktop"), runnable)),
        QStringLiteral("application"));
    const QString pipe = tree.addFolder(QStringLiteral("h")) + QStringLiteral("/.hidden");
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(desk.flags(tree.add(QStringLiteral("h/a.desktop"), runnable)),
        QStringLiteral("application"));
}

void FreedesktopItemsTest::shadowedEntries()
{
    Desk desk;
    FileTree &tree = desk.tree;
    const auto add = [&tree](const char *relative, const QByteArray &content) {
        return tree.add(QLatin1String(relative), content);
    };
    const QString own = add("home/applications/a.desktop", runnable);
    const QString sameName = add("system/applications/a.desktop", runnable);
    const QString sameId = add("system/applications/kde/b.desktop", runnable);
    add("local/applications/kde-b.desktop", "broken, but it counts");
    const QString alone = add("system/applications/kde/a.desktop", runnable);
    const QString elsewhere = add("elsewhere/a.desktop", runnable);
    QCOMPARE(desk.flags(own), QStringLiteral("application"));
    QCOMPARE(desk.flags(sameName), QStringLiteral("invisible application"));
    QCOMPARE(desk.flags(sameId), QStringLiteral("invisible application"));
    QCOMPARE(desk.flags(alone), QStringLiteral("application"));
    QCOMPARE(desk.flags(elsewhere), QStringLiteral("application"));

    QVERIFY(QFile::remove(own));
    QCOMPARE(desk.flags(sameName), QStringLiteral("invisible application"));
    desk.items.willScan();
    QCOMPARE(desk.flags(sameName), QStringLiteral("application"));
}

void FreedesktopItemsTest::shadowing_seesThroughLinksAndLoops()
{
    Desk desk;
    FileTree &tree = desk.tree;
    tree.addLink(QStringLiteral("home/applications"), tree.addFolder(QStringLiteral("real")));
    tree.addLink(QStringLiteral("real/loop"), tree.path(QStringLiteral("real")));
    tree.addLink(QStringLiteral("real/dangling.desktop"), QStringLiteral("/nowhere"));
    tree.addLink(QStringLiteral("real/masked.desktop"), QStringLiteral("/dev/null"));
    const QString own = tree.add(QStringLiteral("real/sub/a.desktop"), runnable);
    tree.addLink(QStringLiteral("local/applications"), tree.path(QStringLiteral("real")));
    const auto flagsOf = [&desk](const char *relative, const QByteArray &content) {
        return desk.flags(desk.tree.add(QLatin1String(relative), content));
    };
    QCOMPARE(flagsOf("system/applications/sub-a.desktop", runnable),
        QStringLiteral("invisible application"));
    QCOMPARE(flagsOf("system/applications/masked.desktop", runnable),
        QStringLiteral("invisible application"));
    QCOMPARE(
        flagsOf("system/applications/dangling.desktop", runnable), QStringLiteral("application"));
    // The one folder under its three names: an entry is there once.
    QCOMPARE(desk.flags(own), QStringLiteral("application"));
    QCOMPARE(desk.flags(tree.path(QStringLiteral("home/applications/sub/a.desktop"))),
        QStringLiteral("application"));
    QCOMPARE(desk.flags(tree.path(QStringLiteral("local/applications/sub/a.desktop"))),
        QStringLiteral("invisible application"));
}

void FreedesktopItemsTest::programs_areLookedForAfreshByAScan()
{
    Desk desk;
    const QString program = desk.tree.path(QStringLiteral("late"));
    const QString entry =
        desk.tree.add(QStringLiteral("a.desktop"), start + "Exec=" + program.toUtf8() + '\n');
    QCOMPARE(desk.flags(entry), QStringLiteral("application classic"));
    desk.tree.add(QStringLiteral("late"), "#!/bin/sh\n", 0755);
    desk.items.willScan();
    QCOMPARE(desk.flags(entry), QStringLiteral("application"));
}

void FreedesktopItemsTest::names_standUntilAScan()
{
    Desk desk;
    const QByteArray names = "Name=Mail\nName[de]=Post\n";
    const QString path = desk.tree.add(QStringLiteral("x.y.desktop"), runnable + names);
    QCOMPARE(desk.items.displayName(path), QStringLiteral("Post"));
    QVERIFY(QFile::remove(path));
    QCOMPARE(desk.items.displayName(path), QStringLiteral("Post"));
    desk.items.willScan();
    QCOMPARE(desk.items.displayName(path), QStringLiteral("x.y"));
    desk.tree.add(
        QStringLiteral("x.y.desktop"), "[Desktop Entry]\nType=Application\nExec=present\n");
    QCOMPARE(desk.items.displayName(path), QStringLiteral("x.y"));
    QCOMPARE(desk.items.displayName(QStringLiteral("/nowhere/My.App.AppImage")),
        QStringLiteral("My.App"));
}

void FreedesktopItemsTest::badEncoding_isPutUpWithAndSaidOnce()
{
    Desk desk;
    const QString path = desk.tree.add(QStringLiteral("a.desktop"), runnable + "Name=Caf\xe9\n");
    QTest::ignoreMessage(
        QtWarningMsg, qUtf8Printable(path + QStringLiteral(": the name is not in UTF-8")));
    QCOMPARE(desk.flags(path), QStringLiteral("application"));
    QCOMPARE(desk.items.displayName(path), QStringLiteral("Caf\uFFFD"));
}

void FreedesktopItemsTest::iconNames()
{
    Desk desk;
    FileTree &tree = desk.tree;
    const auto iconOf = [&desk](const QString &bundle) { return desk.items.iconNameOf(bundle); };
    QCOMPARE(iconOf(tree.add(QStringLiteral("a.desktop"), runnable + "Icon=mail\nIcon[de]=post\n")),
        QStringLiteral("post"));

    tree.add(QStringLiteral("X.AppDir/AppRun"), "#!/bin/sh\n", 0755);
    const QString appDir = tree.path(QStringLiteral("X.AppDir"));
    QCOMPARE(iconOf(appDir), QString());
    tree.add(QStringLiteral("X.AppDir/x.desktop"), runnable + "Icon=../x\n");
    QCOMPARE(iconOf(appDir), QString());
    tree.add(QStringLiteral("X.AppDir/x.desktop"), runnable + "Icon=org.x\n");
    const QString svg = tree.add(QStringLiteral("X.AppDir/org.x.svg"), "<svg/>");
    QCOMPARE(iconOf(appDir), svg);
    const QString own = tree.add(QStringLiteral("X.AppDir/.DirIcon"), "x");
    QCOMPARE(iconOf(appDir), own);

    const auto list = [](const QByteArray &key, const QByteArray &value) {
        return "<plist version=\"1.0\"><dict><key>" + key + "</key><string>" + value
            + "</string></dict></plist>";
    };
    tree.add(QStringLiteral("C.app/Contents/Info.plist"), list("CFBundleIconFile", "pic"));
    const QString icns = tree.add(QStringLiteral("C.app/Contents/Resources/pic.icns"), "x");
    QCOMPARE(iconOf(tree.path(QStringLiteral("C.app"))), icns);
    tree.add(QStringLiteral("G.app/Resources/Info-gnustep.plist"), list("NSIcon", "g.tiff"));
    const QString tiff = tree.add(QStringLiteral("G.app/Resources/g.tiff"), "x");
    QCOMPARE(iconOf(tree.path(QStringLiteral("G.app"))), tiff);
    tree.add(QStringLiteral("G.app/Resources/Info-gnustep.plist"),
        list("NSIcon", "../Resources/g.tiff"));
    QCOMPARE(iconOf(tree.path(QStringLiteral("G.app"))), QString());
    QCOMPARE(iconOf(tree.add(QStringLiteral("x.AppImage"), "x", 0755)), QString());
}

void FreedesktopItemsTest::manyThreads_readTheSameEntries()
{
    Desk desk;
    QStringList paths;
    for (int i = 0; i < 100; ++i) {
        paths.append(
            desk.tree.add(QStringLiteral("system/applications/%1.desktop").arg(i), runnable));
    }
    std::atomic<int> applications = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back(QThread::create([&desk, &paths, &applications, i] {
            for (const QString &path : paths) {
                if (i == 0) {
                    desk.items.willScan();
                }
                applications += desk.items.flagsOf(path).isApplication
                        && desk.items.displayName(path) == QLatin1String("A")
                    ? 1
                    : 0;
            }
        }));
        threads.back()->start();
    }
    for (const std::unique_ptr<QThread> &thread : threads) {
        QVERIFY(thread->wait(30'000));
    }
    QCOMPARE(applications.load(), 800);
}

QTEST_GUILESS_MAIN(FreedesktopItemsTest)
#include "FreedesktopItemsTest.moc"
