#include "icons/ColorKey.h"

#include "colour/ClosedForms.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;
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
    IconParameters parameters;
    parameters.grayThreshold = value(u"threshold"_s, 0.25F);
    parameters.minSaturation = value(u"saturation"_s, 0.125F);
    parameters.wrapHue = value(u"cut"_s, 0);
    parameters.graysBySecondaryColor = value(u"secondary"_s, 0) != 0;
    return parameters;
}

} // namespace

class ColorKeyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void icons_standByTheirColors()
    {
        const struct
        {
            const char *name, *icon, *parameters;
            double key;
            const char *order;
        } rows[] {
            { "white", "0 0 1 9", "", 1.0, "9 9" },
            { "white, secondary", "0 0 1 9", "secondary 1", 1.5, "9 9" },
            { "lighter than white", "0 0 1.0000001 9", "", 1.0, "9 9" },
            { "black", "0 0 0 9", "", 1.5, "9 9" },
            { "black, secondary", "0 0 0 9", "secondary 1", 2.0, "9 9" },
            { "darker than black", "0 0 -1 9", "", 1.5, "9 9" },
            { "dark grey", "0 0 0.25 9", "", 1.375, "9 9" },
            { "the first of two greys", "0 0 0.5 9, 0 0 1 90", "", 1.25, "9 9 90" },

            { "red", "0 1 0.5 9", "", 0.0, "9 9" },
            { "hue below the cut", "20 1 0.5 9", "cut 30", 1 - 10.0 / 360, "9 9" },
            { "hue at the cut", "30 1 0.5 9", "cut 30", 0.0, "9 9" },
            { "hue above the cut", "120 1 0.5 9", "cut 30", 0.25, "9 9" },
            { "cut in the second turn", "120 1 0.5 9", "cut 390", 0.25, "9 9" },
            { "cut the other way", "120 1 0.5 9", "cut -330", 0.25, "9 9" },
            { "cut at the end", "90 1 0.5 9", "cut 360", 0.25, "9 9" },
            { "cut after two turns", "90 1 0.5 9", "cut 720", 0.25, "9 9" },
            { "cut at no number", "90 1 0.5 9", "cut nan", 0.25, "9 9" },
            { "cut at infinity", "90 1 0.5 9", "cut inf", 0.25, "9 9" },

            { "share of the threshold", "90 1 1 25, 0 0 0.5 75", "", 1.25, "75 75 25" },
            { "share above the threshold", "90 1 1 26, 0 0 0.5 74", "", 0.25, "26 26 74" },
            { "share of two", "90 1 1 20, 0 0 0 74, 180 1 1 6", "", 0.25, "20 20 6 74" },
            { "least saturation", "90 0.125 0.5 9", "", 0.25, "9 9" },
            { "too little saturation", "90 0.1249 0.5 9", "", 1.25, "9 9" },
            { "equal scores", "90 1 0.5 4, 180 0.5 1.5 4, 270 0.5 0 10", "", 0.25, "4 4 10 4" },
            { "the last stands out", "0 1 0 8, 90 0.5 0.9 7, 180 0.5 1.1 9", "", 0.5, "9 9 7 8" },

            { "accent", "0 0 0.5 90, 180 1 1 5", "secondary 1", 1.25, "90 5 90" },
            { "accent, not asked for", "0 0 0.5 90, 180 1 1 5", "", 1.25, "90 90 5" },
            { "best accent", "0 1 0 3, 0 0 0.9 90, 90 1 1 5", "secondary 1", 1.125, "90 5 3 90" },
            { "accent and cut", "0 0 0.5 90, 0 1 1 5", "cut 90 secondary 1", 1.375, "90 5 90" },

            { "no grey, too little colour", "90 1 0.5 9", "threshold 1", 10, "" },
            { "black as a colour", "0 0 0 9", "saturation 0", 10, "" },
            { "no threshold", "90 1 1 9, 0 0 0.5 1", "threshold nan", 1.25, "1 1 9" },
            { "saturation not a number", "90 1 0.5 9", "saturation nan", 1.25, "9 9" },
        };
        for (const auto &[name, icon, parameters, key, order] : rows) {
            const ColorKey found =
                pickAndSortColors(colors(QLatin1String(icon)), asked(QLatin1String(parameters)));
            QVERIFY2(ClosedForms::isNear(found.colorSortValue, key), name);
            QVERIFY2(counts(found.sortedColors) == QLatin1String(order), name);
            QCOMPARE(found.problem, Problem::None);
        }
    }

    void whatCannotBeJudged_isTold()
    {
        for (const auto &[icon, problem] : std::initializer_list<std::pair<QString, Problem>> {
                 { {}, Problem::NoColors }, { u"0 1 1 0"_s, Problem::ZeroPixelQuantity } }) {
            const ColorKey key = pickAndSortColors(colors(icon), asked({}));
            QCOMPARE(key.problem, problem);
            QCOMPARE(key.colorSortValue, 10.0);
            QVERIFY(key.sortedColors.isEmpty());
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

    void otherColors_followInReverse()
    {
        const HclColors icon = colors(u"0 0 0 0, 0 0 0 1, 0 0 0 2, 0 0 0 3"_s);
        const struct
        {
            int primary, secondary, gray;
            const char *expected;
        } rows[] { { 0, 0, 2, "0 0 3 1 2" }, { 3, 3, 0, "3 3 2 1 0" }, { 1, 1, 3, "1 1 2 0 3" },
            { 1, 1, -1, "1 1 3 2 0" }, { 2, 2, 2, "2 2 3 1 0" }, { 1, 3, 1, "1 3 2 0 1" },
            { 2, 0, 3, "2 0 2 1 3" }, { -1, 0, 0, "" }, { 4, 0, 0, "" }, { 0, -1, 0, "" },
            { 0, 4, 0, "" } };
        for (const auto &[primary, secondary, gray, expected] : rows) {
            QCOMPARE(counts(colorArrayForPrimaryIndex(icon, primary, secondary, gray)),
                QString::fromLatin1(expected));
        }
        QVERIFY(colorArrayForPrimaryIndex({}, 0, 0, 0).isEmpty());
    }
};

QTEST_APPLESS_MAIN(ColorKeyTest)
#include "ColorKeyTest.moc"
