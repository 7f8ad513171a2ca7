#include "catalogue/Favourites.h"

#include "catalogue/BunchText.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class FavouritesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A move is written "a>1.0" (bunch and index), "a>1" (flat order) or "a>|1" (new bunch). Before
    // it stand the bunches and the flat order, after it what comes of both, or "=" where nothing
    // changes; a flat order like the bunches is left out.
    void move()
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
            Favourites favourites;
            favourites.setBunches(BunchText::bunches(part[0], _desktop));
            favourites.setFlat(BunchText::apps(part[1], _desktop));
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
            QCOMPARE(BunchText::text(favourites.bunches()), part[isExpected ? 3 : 0]);
            QCOMPARE(BunchText::text(favourites.flat()), part[isExpected ? 4 : 1]);
        }
    }

    void remove()
    {
        const QStringList rows { u"ab|c| a b|c| b|c|"_s, u"|a|bc|| ab |c|| ||c||"_s,
            u"ab|c| cab  ||"_s };
        for (const QString &row : rows) {
            const QStringList part = row.split(u' ');
            const PathSet removed(BunchText::apps(part[1], _desktop));
            Favourites favourites;
            favourites.setBunches(BunchText::bunches(part[0], _desktop));
            favourites.flattenBunches();
            Favourites keeping = favourites;
            QVERIFY(favourites.removeApps(removed) && keeping.removeAppsKeepingBunches(removed));
            QCOMPARE(BunchText::text(favourites.bunches()), part[2]);
            QCOMPARE(BunchText::text(keeping.bunches()), part[3]);
            QCOMPARE(BunchText::text(favourites.flat()), QString(part[2]).remove(u'|'));
            QCOMPARE(BunchText::text(keeping.flat()), QString(part[2]).remove(u'|'));
            QVERIFY(!favourites.removeApps(removed));
        }
    }

    void storedOrders_dropSecondMentionsAndKeepEmptyBunches()
    {
        Favourites favourites;
        favourites.setBunches(BunchText::bunches(u"aba||cb|"_s, _desktop));
        favourites.setFlat(BunchText::apps(u"cacb"_s, _desktop));
        QCOMPARE(BunchText::text(favourites.bunches()), u"ab||c|"_s);
        QCOMPARE(BunchText::text(favourites.flat()), u"cab"_s);
    }

private:
    Desktop _desktop;
};

QTEST_GUILESS_MAIN(FavouritesTest)
#include "FavouritesTest.moc"
