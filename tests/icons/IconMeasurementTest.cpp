#include "icons/IconMeasurement.h"

#include "TestCase.h"
#include "colour/BitmapText.h"
#include "colour/ClosedForms.h"
#include "icons/SpectrumIcon.h"

using namespace ClosedForms;

namespace {

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

class IconMeasurementTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void formats_areMeasuredAlike()
    {
        const QString picture = u"rrr.b/nbrrr/nr..b"_s, found = u"r1785 b765 n510"_s;
        const std::tuple<QImage::Format, QString, QString> rows[] { { QImage::Format_ARGB32,
                                                                        picture, found },
            { QImage::Format_ARGB32_Premultiplied, picture, found },
            { QImage::Format_RGBA8888, picture, found }, { QImage::Format_RGBA64, picture, found },
            { QImage::Format_Indexed8, picture, found },
            { QImage::Format_RGB32, u"rrn"_s, u"r510 n255"_s },
            { QImage::Format_RGB888, u"rrn/rrn"_s, u"r1020 n510"_s },
            { QImage::Format_Grayscale8, u"ggg/ggg"_s, u"g1530"_s },
            { QImage::Format_Mono, u"kw/wk/kw"_s, u"h1530"_s },
            { QImage::Format_RGBA8888, u"kK."_s, u"k383"_s } };
        for (const auto &[format, pixels, expected] : rows) {
            const IconMeasurement measured = measureIcon(image(pixels, format), asked());
            QVERIFY(measured.isMeasured);
            QVERIFY2(areColors(measured.colors, expected), qPrintable(expected));
        }
    }

    void samples_countPremultiplied()
    {
        const HclColors half = measureIcon(image(u"RR"_s), asked()).colors;
        QCOMPARE(half[0].count, quint64(256));
        // (128, 0, 0) is as much darker than red as this grey is than white.
        QVERIFY(isNear(half[0].luminosity + 0.16,
            std::cbrt(0.21951971807486792) * (closedForm('r').L / 100 + 0.16)));
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

    void measurement_isForWhatItWasAsked()
    {
        const IconMeasurement measured = measureIcon(image(u"r"_s), asked());
        QVERIFY(measured.isFor(asked(30, true)));
        QVERIFY(!IconMeasurement().isFor({}));
        for (float IconParameters::*parameter :
            { &IconParameters::minSaturation, &IconParameters::minLuminosity }) {
            for (const float value : { 0.25F, std::nanf("") }) {
                IconParameters other = asked();
                other.*parameter = value;
                QVERIFY(!measured.isFor(other));
                QVERIFY(measureIcon(image(u"r"_s), other).isFor(other));
            }
        }
    }

    void shownColors_areThoseOfTheIcon()
    {
        const HclColors colors = measureIcon(image(u"gb"_s), asked()).colors;
        const SortedColors shown = colorArrayForPrimaryIndex(colors, 0, 1, -1);
        QCOMPARE(shown[0].color().rgba(), qRgba(0, 0, 255, 255));
        QCOMPARE(shown[1].color().rgba(), qRgba(128, 128, 128, 255));
        QCOMPARE(shown[1].count, quint64(255));
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
        // No line shows between two slices of one colour with a slanting edge.
        QImage plain(30, 28, icon.format());
        plain.fill(Qt::blue);
        QCOMPARE(
            spectrumIcon({ { 1, 0, 0, 9 }, { 0, 1, 0, 5 }, { 0, 0, 1, 2 }, { 0, 0, 1, 3 } }, 90)
                .copy(30, 47, 30, 28),
            plain);
    }

    void spectrumIcon_ofLittle()
    {
        const SortedColor red { 1, 0, 0, 1 }, none { 1, 0, 0, 0 };
        QVERIFY(spectrumIcon({}, 100).isNull());
        QVERIFY(spectrumIcon({ red }, 0).isNull());
        QCOMPARE(spectrumIcon({ red, red }, 1).size(), QSize(1, 1));
        for (const SortedColors &ringAlone : { SortedColors { red }, { none, none } }) {
            QCOMPARE(spectrumIcon(ringAlone, 100).pixel(50, 50), qRgba(0, 0, 0, 0));
            QCOMPARE(spectrumIcon(ringAlone, 100).pixel(50, 5), qRgb(255, 0, 0));
        }
    }
};

QTEST_GUILESS_MAIN(IconMeasurementTest)
#include "IconMeasurementTest.moc"
