// Rules of lists and names that need no catalogue.

#include "FakeDesktop.h"
#include "TestCase.h"
#include "catalogue/AppSorting.h"
#include "catalogue/BestMatch.h"
#include "catalogue/BunchText.h"
#include "catalogue/Favourites.h"
#include "catalogue/InitialLetters.h"

class AppListsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void letters()
    {
        const std::pair<QString, const char *> rows[] { { QString(), "" },
            { u"Address Book"_s, "ab" }, { u"FontBook"_s, "fb" }, { u"iTunes"_s, "it" },
            { u"Text Template"_s, "t" }, { u"HTMLEdit"_s, "he" }, { u"GUIlt"_s, "gi" },
            { u"MPlayer"_s, "ml" }, { u"QTKit"_s, "qk" }, { u"OK"_s, "o" }, { u"Krita"_s, "k" },
            { u"Adobe (CS5)"_s, "ac5" }, { u"a (b) &c"_s, "a" }, { u"my-app_name.tool"_s, "mant" },
            { u"1Password"_s, "1p" }, { u"9chan"_s, "9" }, { u"2 3 2"_s, "23" },
            { u"Über Éclair"_s, "" }, { u"-_. (&)"_s, "" } };
        for (const auto &[name, letters] : rows) {
            QCOMPARE(initialLetters(name), QByteArray(letters));
        }
    }

    void sort()
    {
        _desktop.fakeItems.displayNames = { { u"/d/z.app"_s, u"Éclair"_s },
            { u"/d/y.app"_s, u"éclair"_s }, { u"/d/x.app"_s, u"Alpha"_s } };
        const QString shown = u"/d/z.app /d/y.app /d/x.app"_s;
        const QString shownSorted = u"/d/x.app /d/z.app /d/y.app"_s;
        const QString folders = u"/Users/adobe.app /Applications/Zoom.app"_s;
        const std::tuple<int, QString, QString> rows[] { { 1, folders, folders },
            { 0, folders, u"/Applications/Zoom.app /Users/adobe.app"_s },
            { 0, u"/b/A /B/b /a/C"_s, u"/a/C /b/A /B/b"_s }, { 1, shown, shownSorted },
            { 77, shown, shownSorted }, { -1, shown, shownSorted } };
        for (const auto &[preference, paths, sorted] : rows) {
            AppList list = apps(paths);
            sortApps(list, sortOrderFromPreference(preference));
            QCOMPARE(pathsFromApps(list).join(u' '), sorted);
        }
    }

    void bestMatch()
    {
        const std::pair<QString, int> rows[] { { u"/A/Editor.app /me/Tools/Editor.app"_s, 1 },
            { u"/a/Editor.app /b/Editor.app"_s, 0 }, { {}, -1 },
            { u"/Tools/Editors.app /editor.app"_s, -1 }, { u"/x/Y.app /Editor.AppImage"_s, 1 },
            { u"/Tools/Editor.a /Tools/Editor.b"_s, -1 }, { u"/Editor.app /Editor.a"_s, 0 } };
        const AppRef lost = apps(u"/Applications/Tools/Editor.app"_s).first();
        for (const auto &[candidates, best] : rows) {
            const AppList list = apps(candidates);
            const AppRef expected = best < 0 ? nullptr : list[best];
            QCOMPARE(bestMatchForApp(lost, AppArray(list)), expected);
        }
    }

    // A move is written "a>1.0" (bunch and index), "a>1" (flat order) or "a>|1" (new bunch). Before
    // it stand the bunches and the flat order, after it what comes of both, or "=" where nothing
    // changes; a flat order like the bunches is left out.
    void favourites_move()
    {
        const char *const rows[] {
            // Within a bunch, the gap behind itself among them, and to another one.
            "abcd| b>0.3 acbd|", "abcd| a>0.4 bcda|", "abc| a>0.1 abc|", "ab|c| b>1.1 a|cb|",
            "ab|c| a>1.9 b|ca|", "ab|c| a>1.-4 b|ac|", "ab|c| a>2.0 b|c|a|", "ab|c| a>-1.0 b|c|a|",
            // Alone, where its bunch goes; empty bunches stay.
            "a|bcd| a>1.0 abcd|", "a|bcd| a>1.2 bacd|", "a|b|cd| a>2.2 b|cda|", "a|b| a>0.5 a|b|",
            "a|b| a>2.0 b|a|", "a|b| b>2.0 a|b|", "|ab| a>0.0 a|b|", "a|| a>1.0 a|",
            // New among the favourites, and into a new bunch.
            "ab|c| n>0.0 nab|c|", "ab| n>7.3 ab|n|", " n>0.0 n|", "ab|c| a>|1 b|a|c|",
            "ab|c| a>|99 b|c|a|", "ab|c| a>|-1 b|c|a|", "a|b|c| a>|2 b|a|c|", "a|b|c| c>|0 c|a|b|",
            "ab| n>|0 n|ab|",
            // Its own place, the flat order, and what one order alone knows.
            "ab|c| cab b>0.1 =", "ab|c| cab c>1.0 =", "ab|c| cab c>0 =",
            "ab|cd| abcd b>3 ab|cd| acbd", "ab|cd| abcd d>0 ab|cd| dabc",
            "ab|cd| abcd a>99 ab|cd| bcda", "ab|cd| abcd d>-1 ab|cd| dabc",
            "ab|cd| abcd n>1 ab|cd|n| anbcd", "ab|c| cab b>1.0 a|bc| cab", "a| ab b>0.0 ba| ab",
            "a| ba b>|0 b|a| ba", "ab| a b>0 ab| ba"
        };
        for (const char *row : rows) {
            QStringList part = QString::fromLatin1(row).split(u' ');
            if (part.size() == 3) {
                const QString flat = QString(part[0]).remove(u'|');
                part.insert(1, flat);
                part.append(flat.contains(part[2][0]) ? flat : flat + part[2][0]);
            }
            Favourites favourites = stored(part[0], part[1]);
            const AppRef app = BunchText::app(part[2][0], _desktop);
            const QStringList to = part[2].mid(2).split(u'.');
            bool isChange = true;
            if (to[0].startsWith(u'|')) {
                favourites.moveAppNewBunchAtIndex(app, to[0].mid(1).toInt());
            } else if (to.size() == 2) {
                isChange = favourites.moveApp(app, to[0].toInt(), to[1].toInt());
            } else {
                isChange = favourites.moveAppInFlatOrder(app, to[0].toInt());
            }
            const bool isExpected = part.size() == 5;
            QVERIFY2(isChange == isExpected, row);
            QCOMPARE(text(favourites), part[isExpected ? 3 : 0] + u' ' + part[isExpected ? 4 : 1]);
        }
    }

    void favourites_remove()
    {
        for (const char *row : { "ab|c| a b|c| b|c|", "|a|bc|| ab |c|| ||c||", "ab|c| cab  ||" }) {
            const QStringList part = QString::fromLatin1(row).split(u' ');
            const PathSet removed(BunchText::apps(part[1], _desktop));
            Favourites favourites = stored(part[0], {}), keeping = favourites;
            favourites.flattenBunches();
            keeping.flattenBunches();
            QVERIFY(favourites.removeApps(removed) && keeping.removeAppsKeepingBunches(removed));
            const QString flat = QString(part[2]).remove(u'|');
            QCOMPARE(text(favourites), part[2] + u' ' + flat);
            QCOMPARE(text(keeping), part[3] + u' ' + flat);
            QVERIFY(!favourites.removeApps(removed));
        }
        // Second mentions are dropped, empty bunches are kept.
        QCOMPARE(text(stored(u"aba||cb|"_s, u"cacb"_s)), u"ab||c| cab"_s);
    }

private:
    AppList apps(const QString &paths)
    {
        AppList list;
        for (const QString &path : paths.split(u' ', Qt::SkipEmptyParts)) {
            list.append(std::make_shared<OTApp>(path, _desktop));
        }
        return list;
    }
    Favourites stored(const QString &bunches, const QString &flat)
    {
        Favourites favourites;
        favourites.setBunches(BunchText::bunches(bunches, _desktop));
        favourites.setFlat(BunchText::apps(flat, _desktop));
        return favourites;
    }
    static QString text(const Favourites &favourites)
    {
        return BunchText::text(favourites.bunches()) + u' ' + BunchText::text(favourites.flat());
    }

    FakeDesktop _desktop;
};

QTEST_GUILESS_MAIN(AppListsTest)
#include "AppListsTest.moc"
