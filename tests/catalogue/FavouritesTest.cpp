#include "catalogue/Favourites.h"

#include "catalogue/BunchText.h"

#include <QTest>

using namespace Qt::Literals::StringLiterals;

class FavouritesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A move is written "a>1.0" (bunch and index), "a>1" (flat order) or "a>|1" (new bunch). Where
    // the last column is missing nothing changes.
    void move_data()
    {
        QTest::addColumn<QString>("bunches");
        QTest::addColumn<QString>("flat");
        QTest::addColumn<QString>("move");
        QTest::addColumn<QString>("movedBunches");
        QTest::addColumn<QString>("movedFlat");
        QTest::addColumn<bool>("isChange");
        const auto bunched = [](const char *about, const QString &bunches, const QString &move,
                                 const QString &moved) {
            const QString flat = QString(bunches).remove(u'|');
            QTest::newRow(about) << bunches << flat << move << moved
                                 << (flat.contains(move[0]) ? flat : flat + move[0]) << true;
        };
        bunched("own bunch, forward", u"abcd|"_s, u"b>0.3"_s, u"acbd|"_s);
        bunched("own bunch, to the end", u"abcd|"_s, u"a>0.4"_s, u"bcda|"_s);
        bunched("own bunch, back", u"abc|"_s, u"c>0.0"_s, u"cab|"_s);
        bunched("own bunch, the gap behind it", u"abc|"_s, u"a>0.1"_s, u"abc|"_s);
        bunched("another bunch", u"ab|c|"_s, u"b>1.0"_s, u"a|bc|"_s);
        bunched("another bunch, at its end", u"ab|c|"_s, u"b>1.1"_s, u"a|cb|"_s);
        bunched("index too large", u"ab|c|"_s, u"a>1.9"_s, u"b|ca|"_s);
        bunched("negative index", u"ab|c|"_s, u"a>1.-4"_s, u"b|ac|"_s);
        bunched("alone, into the following bunch", u"a|bcd|"_s, u"a>1.0"_s, u"abcd|"_s);
        bunched("alone, further on there: one less", u"a|bcd|"_s, u"a>1.2"_s, u"bacd|"_s);
        bunched("alone, into a later bunch", u"a|b|cd|"_s, u"a>2.2"_s, u"b|cda|"_s);
        bunched("alone, into an earlier bunch", u"ab|c|"_s, u"c>0.1"_s, u"acb|"_s);
        bunched("alone, further on in its own", u"a|b|"_s, u"a>0.5"_s, u"a|b|"_s);
        bunched("past the end", u"ab|c|"_s, u"a>2.0"_s, u"b|c|a|"_s);
        bunched("alone, past the end", u"a|b|"_s, u"a>2.0"_s, u"b|a|"_s);
        bunched("alone and last, past the end", u"a|b|"_s, u"b>2.0"_s, u"a|b|"_s);
        bunched("the only one, past the end", u"a|"_s, u"a>1.0"_s, u"a|"_s);
        bunched("negative bunch", u"ab|c|"_s, u"a>-1.0"_s, u"b|c|a|"_s);
        bunched("alone, negative bunch", u"a|b|"_s, u"a>-1.0"_s, u"b|a|"_s);
        bunched("empty bunches stay", u"|ab|"_s, u"a>0.0"_s, u"a|b|"_s);
        bunched("alone, into an empty bunch", u"a||"_s, u"a>1.0"_s, u"a|"_s);
        bunched("new", u"ab|c|"_s, u"n>0.0"_s, u"nab|c|"_s);
        bunched("new, past the end", u"ab|"_s, u"n>7.3"_s, u"ab|n|"_s);
        bunched("new and first of all", {}, u"n>0.0"_s, u"n|"_s);

        bunched("new bunch in front", u"ab|c|"_s, u"b>|0"_s, u"b|a|c|"_s);
        bunched("new bunch between", u"ab|c|"_s, u"a>|1"_s, u"b|a|c|"_s);
        bunched("new bunch past the end", u"ab|c|"_s, u"a>|99"_s, u"b|c|a|"_s);
        bunched("new bunch, negative", u"ab|c|"_s, u"a>|-1"_s, u"b|c|a|"_s);
        bunched("new bunch, alone, forward", u"a|b|c|"_s, u"a>|2"_s, u"b|a|c|"_s);
        bunched("new bunch, alone, back", u"a|b|c|"_s, u"c>|0"_s, u"c|a|b|"_s);
        bunched("new bunch, alone, own place", u"a|b|"_s, u"a>|0"_s, u"a|b|"_s);
        bunched("new bunch, new", u"ab|"_s, u"n>|0"_s, u"n|ab|"_s);

        const auto row = [](const char *about, const char *all) {
            const QStringList part = QString::fromLatin1(all).split(u' ');
            const bool isChange = part.size() > 3;
            QTest::newRow(about) << part[0] << part[1] << part[2] << part[isChange ? 3 : 0]
                                 << part[isChange ? 4 : 1] << isChange;
        };
        row("own place", "ab|c| cab b>0.1");
        row("own place alone", "ab|c| cab c>1.0");
        row("flat: own place", "ab|c| cab c>0");
        row("flat: forward", "ab|cd| abcd b>3 ab|cd| acbd");
        row("flat: back", "ab|cd| abcd d>0 ab|cd| dabc");
        row("flat: too far", "ab|cd| abcd a>99 ab|cd| bcda");
        row("flat: negative", "ab|cd| abcd d>-1 ab|cd| dabc");
        row("flat: new", "ab|cd| abcd n>1 ab|cd|n| anbcd");
        row("flat order is left alone", "ab|c| cab b>1.0 a|bc| cab");
        row("known to the flat order only", "a| ab b>0.0 ba| ab");
        row("known to the flat order only, new bunch", "a| ba b>|0 b|a| ba");
        row("flat: known to the bunches only", "ab| a b>0 ab| ba");
    }

    void move()
    {
        QFETCH(QString, bunches);
        QFETCH(QString, flat);
        QFETCH(QString, move);
        Favourites favourites;
        favourites.setBunches(BunchText::bunches(bunches, _desktop));
        favourites.setFlat(BunchText::apps(flat, _desktop));

        const AppRef app = BunchText::app(move[0], _desktop);
        const QStringList to = move.mid(2).split(u'.');
        bool isChange = true;
        if (to[0].startsWith(u'|')) {
            favourites.moveAppNewBunchAtIndex(app, to[0].mid(1).toInt());
        } else if (to.size() == 2) {
            isChange = favourites.moveApp(app, to[0].toInt(), to[1].toInt());
        } else {
            isChange = favourites.moveAppInFlatOrder(app, to[0].toInt());
        }
        QTEST(BunchText::text(favourites.bunches()), "movedBunches");
        QTEST(BunchText::text(favourites.flat()), "movedFlat");
        QTEST(isChange, "isChange");
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
