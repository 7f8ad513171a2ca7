#include "icons/HueStrip.h"

#include "TestCase.h"
#include "icons/ColorNames.h"

#include <QColor>

using Kind = ColorNames::Kind;

namespace {

SortedColor color(const QString &text)
{
    const QColor color(text);
    return { color.redF(), color.greenF(), color.blueF(), 1 };
}

HueStrip strip(const QList<double> &keys)
{
    QList<HueStrip::Icon> icons;
    for (const double key : keys) {
        icons.append({ key, {}, icons.size() });
    }
    return HueStrip(icons);
}

} // namespace

class HueStripTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void icons_lieInTheirOrder_withoutTheUnknown()
    {
        const HueStrip icons =
            strip({ 1.2, 0.9, ColorKey::Unknown, 0.1, std::numeric_limits<double>::quiet_NaN() });
        QCOMPARE(icons.count(), 3);
        QCOMPARE(icons.icons()[0].source, 3);
        QVERIFY(icons.indexAt(-1) == 0 && icons.indexAt(0.34) == 1 && icons.indexAt(1) == 2);
        QVERIFY(icons.indexNearest(0.6) == 1 && icons.indexNearest(0.4) == 0);
        const HueStrip none = strip({});
        QVERIFY(!none.isOfUse() && none.indexAt(0.5) == -1 && none.indexNearest(1) == -1);
        QVERIFY(!strip({ 0.5 }).isOfUse() && strip({ 0.5, 0.5 }).isOfUse());
    }

    void aWindow_keepsColoursAndGreysApart()
    {
        const HueStrip icons = strip({ 0.5, 0.54, 0.56, 0.99, 1.0, 1.05, 1.3 });
        const HueWindow blue = icons.windowAt(0);
        QVERIFY(blue.holds(0.54) && !blue.holds(0.56));
        QCOMPARE(icons.spanOf(blue).to, 2.0 / 7);
        QVERIFY(!icons.windowAt(3).holds(1.0) && !icons.windowAt(4).holds(0.99));
        QVERIFY(icons.windowAt(4).holds(1.05));
        QCOMPARE(icons.spanOf({ 0.6, 0.9 }).to, 0);
        // Steps pass over what looks the same, and stop at the ends.
        QVERIFY(icons.indexAfter(0, 1) == 2 && icons.indexAfter(2, 1) == 3);
        QVERIFY(icons.indexAfter(3, 1) == 4 && icons.indexAfter(4, 1) == 6);
        QVERIFY(icons.indexAfter(6, 1) == 6 && icons.indexAfter(1, -1) == 0);
    }

    void colours_areCalledWhatPeopleCallThem()
    {
        const QList<std::pair<const char *, const char *>> rows { { "#ff0000", "red" },
            { "#800000", "dark red" }, { "#ffa500", "orange" }, { "#8b4513", "dark brown" },
            { "#ffff00", "yellow" }, { "#808000", "green" }, { "#00ff00", "green" },
            { "#008080", "turquoise" }, { "#0000ff", "blue" }, { "#000080", "dark blue" },
            { "#87ceeb", "light blue" }, { "#800080", "purple" }, { "#ff69b4", "pink" },
            { "#ffc0cb", "pink" } };
        for (const auto &[rgb, name] : rows) {
            QCOMPARE(ColorNames::description(color(QLatin1String(rgb)), Kind::Colorful),
                QLatin1String(name));
        }
        QCOMPARE(ColorNames::description(color(u"#ffffff"_s), Kind::Gray), u"white"_s);
        QCOMPARE(ColorNames::description(color(u"#808080"_s), Kind::Gray), u"grey"_s);
        QCOMPARE(ColorNames::description(color(u"#000000"_s), Kind::Gray), u"black"_s);
    }

    void typing_findsColoursByTheirBeginnings()
    {
        using Name = ColorNames::Name;
        QVERIFY(ColorNames::named(u"bl"_s).isEmpty() && ColorNames::named(u"blues"_s).isEmpty());
        QCOMPARE(ColorNames::named(u"Blu"_s), QList<Name> { Name::Blue });
        QCOMPARE(ColorNames::named(u"gray"_s), QList<Name> { Name::Gray });
        QCOMPARE(ColorNames::named(u"gre"_s), QList<Name>({ Name::Green, Name::Gray }));
        QCOMPARE(ColorNames::named(u"viol"_s), QList<Name> { Name::Purple });
    }
};

QTEST_GUILESS_MAIN(HueStripTest)
#include "HueStripTest.moc"
