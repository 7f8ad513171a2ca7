#include "platform/freedesktop/FreedesktopDesktop.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/FreedesktopWording.h"
#include "support/Translations.h"

class FreedesktopDesktopTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void environment_reachesEveryPart()
    {
        FileTree tree;
        const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=true\nOnlyShowIn=GNOME;\n"
                                 "Name=Mail\nName[de]=Post\nIcon=/proc/version\n";
        const QString own = tree.add(u"home/applications/a.desktop"_s, entry);
        const QString shadowed = tree.add(u"system/applications/a.desktop"_s, entry);
        qputenv("XDG_DATA_HOME", QFile::encodeName(tree.path(u"home"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(tree.path(u"system"_s)));
        qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
        qputenv("LANGUAGE", "de");

        const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
        QVERIFY(desktop->searchPaths().applicationFolders().contains(QFileInfo(own).path()));
        const ItemFlags flags = desktop->items().flagsOf(own);
        QVERIFY(flags.isApplication && !flags.isInvisible && !flags.isClassicApp);
        QVERIFY(desktop->items().flagsOf(shadowed).isInvisible);
        QCOMPARE(desktop->items().displayName(own), u"Post"_s);
        QCOMPARE(desktop->icons().resolve(own, 8).file, u"/proc/version"_s);
        LiveQuery &query = desktop->liveQuery();
        QSignalSpy updates(&query, &LiveQuery::didUpdate);
        query.start({ { tree.path(u"home"_s) }, {}, 1,
                        [](const QString &) { return LiveQuery::Kind::Result; } },
            {});
        QTRY_COMPARE(updates.size(), 1);
    }

    // A null text stands as it is.
    void words_areThoseOfTheDesktop()
    {
        const std::pair<const char *, QString> rows[] { { "Show in Finder",
                                                            u"Show in File Manager"_s },
            { "double-clicking the application icon in the Finder.",
                u"double-clicking the application icon in the file manager."_s },
            { "\u2303 control + \u2325 option + \u2318 command + \u21e7 shift + Tab",
                u"\u2303 control + \u2325 Alt + \u2318 Super + \u21e7 shift + Tab"_s },
            { "option", u"Alt"_s }, { "Pathfinder: Finders Keepers", {} },
            { "You must restart Ortu for this option to take effect.", {} } };
        for (const auto &[text, ours] : rows) {
            const QString said = FreedesktopWording().translate("OTController", text, nullptr, -1);
            QCOMPARE(said, ours);
            QCOMPARE(said.isNull(), ours.isNull());
        }
        // A translation goes before them.
        FreedesktopWording wording;
        QCoreApplication::installTranslator(&wording);
        for (const auto &[language, text] : { std::pair("en", u"Show in File Manager"_s),
                 std::pair("de", u"Im Dateimanager zeigen"_s) }) {
            const Translations translations({ language });
            QCOMPARE(QCoreApplication::translate("OTIconView", "Show in Finder"), text);
        }
    }
};

QTEST_GUILESS_MAIN(FreedesktopDesktopTest)
#include "FreedesktopDesktopTest.moc"
