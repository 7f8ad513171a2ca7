#include "icons/ColorKey.h"

#include "TestCase.h"
#include "colour/ClosedForms.h"

using Problem = ColorKey::Problem;

namespace {

// "12 1.5 0.6 90, 0 0 1 10": hue, saturation, luminosity and count of each.
HclColors colors(const QString &text)
{
    const QStringList words = text.split(u',', Qt::SkipEmptyParts);
    auto result = HclColors::zeroed(std::size_t(words.size()));
    for (std::size_t i = 0; i < result.size(); ++i) {
        const QStringList figures = words[qsizetype(i)].simplified().split(u' ');
        result[i].hue = figures[0].toDouble();
        result[i].saturation = figures[1].toDouble();
        result[i].luminosity = figures[2].toDouble();
        result[i].count = figures[3].toULongLong();
    }
    return result;
}

QString counts(const SortedColors &list)
{
    QStringList words;
    for (const SortedColor &color : list) {
        words.append(QString::number(color.count));
    }
    return words.join(u' ');
}

// "cut 30 secondary 1": what differs from a threshold of 0.25 and a least saturation of 0.125.
IconParameters asked(const QString &text)
{
    const QStringList words = text.split(u' ');
    const auto value = [&words](const QString &name, float usual) {
        const qsizetype at = words.indexOf(name);
        return at < 0 ? usual : words[at + 1].toFloat();
    };
    return { .grayThreshold = value(u"threshold"_s, 0.25F),
        .graysBySecondaryColor = value(u"secondary"_s, 0) != 0,
        .wrapHue = value(u"cut"_s, 0),
        .minSaturation = value(u"saturation"_s, 0.125F) };
}

} // namespace

class ColorKeyTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    // An icon, what is asked, its key, and the order of its colours.
    void icons_standByTheirColors()
    {
        const std::tuple<const char *, const char *, double, const char *> rows[] {
            // White, black and greys, and what lies beyond them.
            { "0 0 1 9", "", 1.0, "9 9" }, { "0 0 1 9", "secondary 1", 1.5, "9 9" },
            { "0 0 1.0000001 9", "", 1.0, "9 9" }, { "0 0 0 9", "", 1.5, "9 9" },
            { "0 0 0 9", "secondary 1", 2.0, "9 9" }, { "0 0 -1 9", "", 1.5, "9 9" },
            { "0 0 0.25 9", "", 1.375, "9 9" }, { "0 0 0.5 9, 0 0 1 90", "", 1.25, "9 9 90" },
            // Hues on either side of the cut, and cuts in other turns, or nowhere.
            { "0 1 0.5 9", "", 0.0, "9 9" }, { "20 1 0.5 9", "cut 30", 1 - 10.0 / 360, "9 9" },
            { "30 1 0.5 9", "cut 30", 0.0, "9 9" }, { "120 1 0.5 9", "cut 30", 0.25, "9 9" },
            { "120 1 0.5 9", "cut 390", 0.25, "9 9" }, { "120 1 0.5 9", "cut -330", 0.25, "9 9" },
            { "90 1 0.5 9", "cut 360", 0.25, "9 9" }, { "90 1 0.5 9", "cut 720", 0.25, "9 9" },
            { "90 1 0.5 9", "cut nan", 0.25, "9 9" }, { "90 1 0.5 9", "cut inf", 0.25, "9 9" },
            // Shares of the threshold, of one and of two; too little saturation; scores.
            { "90 1 1 25, 0 0 0.5 75", "", 1.25, "75 75 25" },
            { "90 1 1 26, 0 0 0.5 74", "", 0.25, "26 26 74" },
            { "90 1 1 20, 0 0 0 74, 180 1 1 6", "", 0.25, "20 20 6 74" },
            { "90 0.125 0.5 9", "", 0.25, "9 9" }, { "90 0.1249 0.5 9", "", 1.25, "9 9" },
            { "90 1 0.5 4, 180 0.5 1.5 4, 270 0.5 0 10", "", 0.25, "4 4 10 4" },
            { "0 1 0 8, 90 0.5 0.9 7, 180 0.5 1.1 9", "", 0.5, "9 9 7 8" },
            // Accents.
            { "0 0 0.5 90, 180 1 1 5", "secondary 1", 1.25, "90 5 90" },
            { "0 0 0.5 90, 180 1 1 5", "", 1.25, "90 90 5" },
            { "0 1 0 3, 0 0 0.9 90, 90 1 1 5", "secondary 1", 1.125, "90 5 3 90" },
            { "0 0 0.5 90, 0 1 1 5", "cut 90 secondary 1", 1.375, "90 5 90" },
            // Odd limits.
            { "90 1 0.5 9", "threshold 1", 10, "" }, { "0 0 0 9", "saturation 0", 10, "" },
            { "90 1 1 9, 0 0 0.5 1", "threshold nan", 1.25, "1 1 9" },
            { "90 1 0.5 9", "saturation nan", 1.25, "9 9" }
        };
        for (const auto &[icon, parameters, key, order] : rows) {
            const ColorKey found =
                pickAndSortColors(colors(QLatin1String(icon)), asked(QLatin1String(parameters)));
            QVERIFY2(ClosedForms::isNear(found.colorSortValue, key), icon);
            QVERIFY2(counts(found.sortedColors) == QLatin1String(order), icon);
            QCOMPARE(found.problem, Problem::None);
        }
    }

    void whatCannotBeJudged_isTold()
    {
        for (const auto &[icon, problem] : { std::pair(u""_s, Problem::NoColors),
                 std::pair(u"0 1 1 0"_s, Problem::ZeroPixelQuantity) }) {
            const ColorKey key = pickAndSortColors(colors(icon), asked({}));
            QCOMPARE(key.problem, problem);
            QVERIFY(key.colorSortValue == 10.0 && key.sortedColors.isEmpty());
        }
    }

    // Rounding must not carry the last hue of the wheel among the greys.
    void hueNextBelowTheCut_isColorful()
    {
        HclColors icon = colors(u"0 1 1 9"_s);
        IconParameters parameters = asked({});
        for (float hue = 0.25F; hue <= 360; hue += 0.25F) {
            parameters.wrapHue = hue;
            icon[0].hue = std::nextafter(double(hue), 0.0);
            const double key = pickAndSortColors(icon, parameters).colorSortValue;
            QVERIFY(key == 0 || (key > 0.999 && key < 1));
        }
    }
};

QTEST_APPLESS_MAIN(ColorKeyTest)
#include "ColorKeyTest.moc"
