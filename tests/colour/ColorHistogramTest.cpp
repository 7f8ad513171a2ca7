#include "colour/ColorHistogram.h"

#include "TestCase.h"
#include "colour/BitmapText.h"

#include <set>

using namespace BitmapText;

class ColorHistogramTest : public TestCase
{
    Q_OBJECT
private Q_SLOTS:
    void layouts_areReadAlike()
    {
        constexpr BitmapFormat AlphaFirst { true, false, false };
        constexpr BitmapFormat Nonpremultiplied { false, true, false };
        constexpr BitmapFormat Words { false, false, true };
        const Layout rows[] { { "RGBA", {} }, { "RGBA", Nonpremultiplied }, { "ARGB", AlphaFirst },
            { "BGRA", { true, false, true } }, { "ABGR", Words },
            // Padded rows, padded pixels, planes.
            { "RGBA", {}, false, 5 }, { "RGBAxx", {} }, { "RGBA", {}, true },
            { "ARGB", AlphaFirst, true, 3 },
            // No alpha, even where it is said to be first.
            { "RGB", {} }, { "RGBx", {}, false, 1 }, { "RGBx", AlphaFirst }, { "xBGR", Words },
            // Greys.
            { "W", {} }, { "Wx", {}, false, 3 }, { "WA", {} }, { "AW", AlphaFirst, true },
            { "xxAW", Words } };
        for (const Layout &layout : rows) {
            const bool hasAlpha = layout.samples.contains('A');
            // Each grey has a chain of its own, in their order.
            const bool isGray = layout.samples.contains('W');
            const Bitmap bitmap(isGray ? u"ggw/kkG"_s : u"rrn/b.R"_s, layout);
            const QString expected = isGray ? (hasAlpha ? u"k510 g638 w255"_s : u"k2 g3 w1"_s)
                                            : (hasAlpha ? u"b255 r638 n255"_s : u"b1 r3 .1 n1"_s);
            QVERIFY2(text(createColorHistogram(bitmap.view)) == expected, layout.samples);
        }
    }

    void whatCannotBeRead_givesNothing()
    {
        const Bitmap bitmap(u"rrn/b.R"_s, { "RGBAx", {} });
        const auto isReadWith = [&bitmap](auto BitmapView::*figure, auto... values) {
            BitmapView view = bitmap.view;
            return ((view.*figure = values, !createColorHistogram(view).isEmpty()) || ...);
        };
        using Model = ColorSpaceModel;
        QVERIFY(isReadWith(&BitmapView::colorSpaceModel, Model::RGB));
        QVERIFY(!isReadWith(&BitmapView::colorSpaceModel, Model::Gray, Model::CMYK));
        QVERIFY(!isReadWith(&BitmapView::samplesPerPixel, 0, 3, 5));
        QVERIFY(!isReadWith(&BitmapView::bitsPerPixel, -40, 0, 24, 44));
        QVERIFY(!isReadWith(&BitmapView::pixelsWide, 0, -2));
        QVERIFY(!isReadWith(&BitmapView::pixelsHigh, 0, -2));
        QVERIFY(!isReadWith(&BitmapView::bitsPerSample, 16));
        QVERIFY(!isReadWith(&BitmapView::bytesPerRow, bitmap.view.bytesPerRow - 1));
        // Three planes are missing.
        QVERIFY(!isReadWith(&BitmapView::isPlanar, true));
        for (const Layout &notWords : { Layout { "RGB", { false, false, true } },
                 { "RGBA", { false, false, true }, true } }) {
            QVERIFY(createColorHistogram(Bitmap(u"rr"_s, notWords).view).isEmpty());
        }
    }

    void entries_standByChain_newestFirst()
    {
        const std::pair<QString, QString> rows[] {
            { u"ewgrnbk"_s, u"k255 b255 w255 r255 n255 g255 e255"_s }, // all chains
            { u"rcdcr"_s, u"d255 c510 r510"_s }, // one chain
            { u"dcrdc"_s, u"c510 d510 r255"_s },
            { u"rrwr/rrwr"_s, u"w510 r1530"_s }, // broken by another, and by nothing
            { u"rr.R/.r.r"_s, u"r1148"_s },
            { u"..kk/k.K."_s, u"k893"_s },
            { u"Kr/rr"_s, u"k128 r765"_s },
        };
        for (const auto &[picture, expected] : rows) {
            QCOMPARE(text(createColorHistogram(Bitmap(picture).view)), expected);
        }
    }

    void manyColors_areCountedEach()
    {
        constexpr std::uint32_t Colors = 120'000, Step = 139;
        Picture picture { 600, {} };
        for (std::uint32_t i = 0; i < 2 * Colors; ++i) {
            const std::uint32_t color = i % Colors * Step;
            picture.pixels.push_back(
                { std::uint8_t(color >> 16), std::uint8_t(color >> 8), std::uint8_t(color), 255 });
        }
        const Bitmap bitmap(picture);
        const ColorHistogram histogram = createColorHistogram(bitmap.view);
        std::set<std::uint32_t> found;
        for (const auto &[red, green, blue, alpha, count] : histogram) {
            const std::uint32_t color = std::uint32_t(red) << 16 | std::uint32_t(green) << 8 | blue;
            QVERIFY(alpha == 255 && count == 510 && color % Step == 0 && color < Colors * Step);
            QVERIFY(found.insert(color).second);
        }
        QCOMPARE(found.size(), std::size_t(Colors));
    }
};

QTEST_APPLESS_MAIN(ColorHistogramTest)
#include "ColorHistogramTest.moc"
