// What is measured of an icon, and where its colours put it.

#include "TestCase.h"
#include "colour/BitmapText.h"
#include "colour/ClosedForms.h"
#include "icons/IconMeasurement.h"
#include "icons/SpectrumIcon.h"

using namespace ClosedForms;

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
IconParameters parametersFrom(const QString &text)
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

IconParameters asked(float wrapHue = 0, bool graysBySecondaryColor = false)
{
    return { .grayThreshold = 0.05F,
        .graysBySecondaryColor = graysBySecondaryColor,
        .wrapHue = wrapHue,
        .minSaturation = 0.14F };
}

QImage image(const QString &text, QImage::Format format = QImage::Format_ARGB32)
{
    const BitmapText::Picture picture = BitmapText::picture(text);
    QImage result(picture.width, picture.height(), QImage::Format_ARGB32);
    for (int i = 0; i < int(picture.pixels.size()); ++i) {
        const auto [red, green, blue, alpha] = picture.pixels[std::size_t(i)];
        result.setPixel(i % picture.width, i / picture.width, qRgba(red, green, blue, alpha));
    }
    return result.convertToFormat(format);
}

} // namespace

class IconColorsTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    // Where a red icon with a little blue stands when the user says which colour counts.
    void aCorrectedColour_standsWhereItBelongs()
    {
        const QList<std::pair<SortedColor, double>> rows { { { 0, 0, 1 }, 265.87 / 360 },
            { { 1, 0, 0 }, 12.17 / 360 }, { { 1, 1, 1 }, 1.0 }, { { 0, 0, 0 }, 1.5 } };
        const IconMeasurement measured = measureIcon(image(u"rrrrrrrrrb"_s), asked());
        QVERIFY(measured.colors.size() > 1);
        for (const auto &[color, expected] : rows) {
            const ColorKey key = pickCorrectedColor(measured.colors, asked(), color);
            QVERIFY(std::abs(key.colorSortValue - expected) < 0.001);
            QVERIFY(key.sortedColors.first().looksLike(color));
            QCOMPARE(key.sortedColors.size(), qsizetype(measured.colors.size()) + 1);
        }
        const ColorKey black = pickCorrectedColor({}, asked(0, true), { 0, 0, 0 });
        QVERIFY(black.colorSortValue == 2.0 && black.sortedColors.size() == 1);
    }

    void formats_areMeasuredAlike()
    {
        const QString picture = u"rrr.b/nbrrr/nr..b"_s, found = u"r1785 b765 n510"_s;
        const std::tuple<QImage::Format, QString, QString> rows[] { { QImage::Format_ARGB32,
                                                                        picture, found },
            { QImage::Format_ARGB32_Premultiplied, picture, found },
            { QImage::Format_RGBA8888, picture, found },
            { QImage::Format_Indexed8, picture, found },
            { QImage::Format_Grayscale8, u"ggg/ggg"_s, u"g1530"_s },
            { QImage::Format_Mono, u"kw/wk/kw"_s, u"h1530"_s } };
        for (const auto &[format, pixels, expected] : rows) {
            const IconMeasurement measured = measureIcon(image(pixels, format), asked());
            QVERIFY(measured.isMeasured);
            QVERIFY2(areColors(measured.colors, expected), qPrintable(expected));
        }
    }

    void nothingToMeasure_isMeasuredToo()
    {
        QTest::ignoreMessage(
            QtWarningMsg, "Invalid image size for creating new bitmap in bitmapImageRep");
        for (const QImage &nothing : { QImage(), image(u"../.."_s) }) {
            const IconMeasurement measured = measureIcon(nothing, asked());
            QVERIFY(measured.isMeasured && measured.colors.isEmpty());
        }
    }

    void shownColors_areThoseOfTheIcon()
    {
        const HclColors colors = measureIcon(image(u"gb"_s), asked()).colors;
        const SortedColors shown = colorArrayForPrimaryIndex(colors, 0, 1, -1);
        QCOMPARE(shown[0].color().rgba(), qRgba(0, 0, 255, 255));
        QCOMPARE(shown[1].color().rgba(), qRgba(128, 128, 128, 255));
        QCOMPARE(shown[1].count, quint64(255));
        QVERIFY(colorArrayForPrimaryIndex(colors, 0, qsizetype(colors.size()), -1).isEmpty());
    }

    void spectrumIcon_isARingAndAPie()
    {
        // Half green on top, then blue to its left, and black.
        const QImage icon =
            spectrumIcon({ { 1, 0, 0, 7 }, { 0, 1, 0, 10 }, { 0, 0, 1, 5 }, { 0, 0, 0, 5 } }, 100);
        QCOMPARE(icon.size(), QSize(100, 100));
        for (const auto &[place, color] :
            { std::pair(QPoint(50, 5), Qt::red), std::pair(QPoint(5, 50), Qt::red),
                std::pair(QPoint(94, 50), Qt::red), std::pair(QPoint(50, 15), Qt::green),
                std::pair(QPoint(15, 45), Qt::green), std::pair(QPoint(84, 45), Qt::green),
                std::pair(QPoint(45, 84), Qt::blue), std::pair(QPoint(15, 55), Qt::blue),
                std::pair(QPoint(54, 84), Qt::black), std::pair(QPoint(84, 55), Qt::black),
                std::pair(QPoint(2, 97), Qt::transparent) }) {
            QCOMPARE(icon.pixelColor(place), QColor(color));
        }
        QVERIFY(spectrumIcon({}, 100).isNull());
        QVERIFY(spectrumIcon({ { 1, 0, 0, 1 } }, 0).isNull());
        // One colour is a ring around nothing.
        QCOMPARE(spectrumIcon({ { 1, 0, 0, 1 } }, 100).pixel(50, 50), qRgba(0, 0, 0, 0));
    }

    // An icon, what is asked, its key, and the order of its colours.
    void icons_standByTheirColors()
    {
        const std::tuple<const char *, const char *, double, const char *> rows[] {
            // White, black and greys, and what lies beyond them.
            { "0 0 1 9", "", 1.0, "9 9" }, { "0 0 1 9", "secondary 1", 1.5, "9 9" },
            { "0 0 0 9", "", 1.5, "9 9" }, { "0 0 0 9", "secondary 1", 2.0, "9 9" },
            { "0 0 0.25 9", "", 1.375, "9 9" }, { "0 0 0.5 9, 0 0 1 90", "", 1.25, "9 9 90" },
            // Hues on either side of the cut, and cuts in another turn, or nowhere.
            { "0 1 0.5 9", "", 0.0, "9 9" }, { "20 1 0.5 9", "cut 30", 1 - 10.0 / 360, "9 9" },
            { "30 1 0.5 9", "cut 30", 0.0, "9 9" }, { "120 1 0.5 9", "cut 30", 0.25, "9 9" },
            { "120 1 0.5 9", "cut 390", 0.25, "9 9" }, { "90 1 0.5 9", "cut nan", 0.25, "9 9" },
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
            { "90 1 0.5 9", "threshold 1", 10, "" }, { "0 0 0 9", "saturation 0", 10, "" }
        };
        for (const auto &[icon, parameters, key, order] : rows) {
            const ColorKey found = pickAndSortColors(
                colors(QLatin1String(icon)), parametersFrom(QLatin1String(parameters)));
            QVERIFY2(isNear(found.colorSortValue, key), icon);
            QVERIFY2(counts(found.sortedColors) == QLatin1String(order), icon);
            QCOMPARE(found.problem, Problem::None);
        }
    }

    void whatCannotBeJudged_isTold()
    {
        for (const auto &[icon, problem] : { std::pair(u""_s, Problem::NoColors),
                 std::pair(u"0 1 1 0"_s, Problem::ZeroPixelQuantity) }) {
            const ColorKey key = pickAndSortColors(colors(icon), parametersFrom({}));
            QCOMPARE(key.problem, problem);
            QVERIFY(key.colorSortValue == 10.0 && key.sortedColors.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(IconColorsTest)
#include "IconColorsTest.moc"
