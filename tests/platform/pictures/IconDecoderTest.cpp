#include "platform/freedesktop/pictures/IconDecoder.h"

#include "platform/FileTree.h"
#include "platform/freedesktop/icons/FreedesktopIcons.h"
#include "platform/freedesktop/pictures/SvgFeatures.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QImageReader>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QtEndian>

#include <cstring>
#include <dlfcn.h>
#include <sys/resource.h>
#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray encoded(const QImage &image, const char *format = "PNG")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

QImage plain(int width, int height, QColor color = Qt::red)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QByteArray big(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray little(quint32 number)
{
    return big(qbswap(number));
}

quint32 checksum(const QByteArray &bytes)
{
    quint32 sum = ~0U;
    for (const char c : bytes) {
        sum ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ (0xedb88320U & (0U - (sum & 1)));
        }
    }
    return ~sum;
}

QByteArray pngChunk(const QByteArray &kind, const QByteArray &data)
{
    return big(quint32(data.size())) + kind + data + big(checksum(kind + data));
}

QByteArray gzipped(const QByteArray &text)
{
    // The same compression inside a zlib stream, whose head and tail are taken off.
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + qCompress(text).mid(6).chopped(4)
        + little(checksum(text)) + little(quint32(text.size()));
}

QByteArray utf16(const QByteArray &text)
{
    const QString wide = QString::fromUtf8(text);
    return "\xff\xfe"
        + QByteArray(
            reinterpret_cast<const char *>(wide.utf16()), wide.size() * qsizetype(sizeof(QChar)));
}

QByteArray svg(const QByteArray &content, const QByteArray &attributes = "viewBox='0 0 64 64'")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        + attributes + '>' + content + "</svg>";
}

const QByteArray square = "<rect width='64' height='64' fill='#ff0000'/>";
const QByteArray usedSquare = "<defs><g id='a'>" + square + "</g></defs><use xlink:href='#a'/>";
const QByteArray useOfA = "<use xlink:href='#a'/>";

// So many levels, each with so many uses of the one before.
QByteArray usesOfUses(int levels, int uses)
{
    QByteArray text = "<rect id='a0' width='9' height='9'/>";
    for (int level = 1; level <= levels; ++level) {
        const QByteArray use = "<use xlink:href='#a" + QByteArray::number(level - 1) + "'/>";
        text += "<g id='a" + QByteArray::number(level) + "'>" + use.repeated(uses) + "</g>";
    }
    return svg(text);
}

QByteArray image(const QByteArray &reference, const QByteArray &attribute = "xlink:href")
{
    return svg("<image width='64' height='64' " + attribute + "='" + reference + "'/>");
}

QByteArray embedded(const QByteArray &data)
{
    return image("data:image/png;base64," + data.toBase64());
}

// A PNG picture of one pixel, whose head claims a size, with chunks before the pixels.
QByteArray png(quint32 width, quint32 height, const QByteArray &chunks = {})
{
    const QByteArray bytes = encoded(plain(1, 1));
    return bytes.first(8) + pngChunk("IHDR", big(width) + big(height) + bytes.mid(24, 5)) + chunks
        + bytes.mid(33);
}

QByteArray ico(const QByteArray &picture)
{
    return QByteArray("\0\0\1\0\1\0\0\0\0\0\1\0\x20\0", 14) + little(quint32(picture.size()))
        + little(22) + picture;
}

QByteArray icnsPart(const QByteArray &kind, const QByteArray &part)
{
    return kind + big(quint32(8 + part.size())) + part;
}

// 30 times 8 MB, when it is unpacked.
QByteArray packedTexts()
{
    const QByteArray text = qCompress(QByteArray(8'000'000, 'a'), 9).sliced(4);
    return pngChunk("zTXt", QByteArray("a\0\0", 3) + text).repeated(30);
}

QByteArray manyAttributes(int count, const QByteArray &prefix)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        text += ' ' + prefix + QByteArray::number(i) + "='a'";
    }
    return text;
}

// How many lines decoding gives, and 100 more for an icon.
int linesAndIcon(const QString &file, int size)
{
    static int lines = 0;
    lines = 0;
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &) { ++lines; });
    const QImage icon = decodeIcon(file, size);
    qInstallMessageHandler(before);
    return lines + (icon.isNull() ? 0 : 100);
}

// The same in a process that has nothing else to do: 50 when that takes more than 64 MB. Two
// seconds end it.
int decodeWithinLimits(const QString &file)
{
    quietImageLibraries();
    // The address sanitizer takes more of both.
    const bool isSanitized = ::dlsym(RTLD_DEFAULT, "__asan_init") != nullptr;
    rusage before;
    rusage after;
    ::getrusage(RUSAGE_SELF, &before);
    if (!isSanitized) {
        const rlimit time { 2, 2 };
        ::setrlimit(RLIMIT_CPU, &time);
    }
    const int result = linesAndIcon(file, 64);
    ::getrusage(RUSAGE_SELF, &after);
    return !isSanitized && after.ru_maxrss - before.ru_maxrss > 64 * 1024 ? 50 : result;
}

int linesAndIconWithinLimits(const QString &file)
{
    return QProcess::execute(QCoreApplication::applicationFilePath(), { u"--decode"_s, file });
}

} // namespace

class IconDecoderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { quietImageLibraries(); }
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void whatTheRendererLeavesOut_isKnown()
    {
        const QByteArray circle = "<clipPath id='c'><circle r='9'/></clipPath>";
        const auto clipped = [](const char *shapes) {
            return "<clipPath id='c'>" + QByteArray(shapes) + "</clipPath><g clip-path='url(#c)'/>";
        };
        const QByteArrayList flawed { "<g clip-path='url(#c)'/>" + circle,
            circle + "<g style='fill:red; clip-path: url( \"#c\" )'/>",
            "<filter id='c'/><g filter='url(#c)'/>", "<mask id='c'/><g mask='url(#c)'/>",
            "<pattern id='c'/><path stroke='url(#c)'/>", clipped("<rect width='60' height='64'/>"),
            clipped("<rect width='64' height='64' rx='9'/>"),
            clipped("<path d='M 0 0 L 64 64 L 0 64 Z M 0 0'/>"),
            clipped("<rect width='64' height='64'/><rect width='9' height='9'/>") };
        // Used where nothing is drawn or not at all, or clipped to what it is anyway.
        const QByteArrayList right { circle + square, circle + "<g clip-path='url(#d)'/>",
            circle + "<defs><g clip-path='url(#c)'/></defs>",
            circle + "<g style='display:none'><g clip-path='url(#c)'/></g>",
            "<linearGradient id='c'/><pattern/><path fill='url(#c)'/>",
            clipped("<rect width='64' height='64'/>"),
            clipped("<path d='M 0.3 0.3 L 63.7,0.3 L 63.7 63.7 L 0.3 63.7 Z M 0.3 0.3'/>") };
        for (const QByteArray &content : flawed + right) {
            for (const QByteArray &text : { svg(content), utf16(svg(content)) }) {
                QVERIFY2(SvgFeatures::goBeyondRenderer(text) == flawed.contains(content), content);
            }
        }
    }

    void everyKindOfFile_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray png = encoded(plain(64, 64));
        const auto row = [](const char *title, const QString &name, const QByteArray &bytes) {
            QTest::newRow(title) << name << bytes;
        };
        const QString name = u"icon.svg"_s;
        row("PNG called SVG, to enlarge", name, encoded(plain(32, 32)));
        row("XPM", u"icon.xpm"_s,
            "/* XPM */\nstatic char *x[] = {\n\"2 2 1 1\",\n\"a c #ff0000\",\n\"aa\",\n\"aa\"\n};");
        row("SVG called PNG", u"icon.png"_s, svg(square));
        row("SVG with a byte order mark", name, "\xef\xbb\xbf<?xml version='1.0'?>" + svg(square));
        row("SVG in UTF-16", name, utf16(svg(square)));
        row("SVG with size and no view box", name, svg(square, "width='64px' height='64px'"));
        row("SVG as wide as its place", name,
            svg(square, "width='100%' height='100%' viewBox='0,0 64,64'"));
        row("SVG with harmless references", name, svg(usedSquare + "<use xlink:href='#nobody'/>"));
        row("SVG with entities", name,
            "<!DOCTYPE svg [<!ENTITY red '#ff0000'>]>"
                + svg("<rect width='64' height='64' fill='&red;'/>"));
        row("SVG with a picture inside", name, embedded(png));
        row("SVG with usual dashes", name,
            svg(square + "<path d='M9 9h40' stroke='#ff0000' stroke-dasharray='1, 0.5'/>"));
        row("animated SVG", name,
            svg("<rect width='64' height='64' fill='#ff0000'><animateTransform type='scale' "
                "attributeName='transform' from='1' to='2' begin='0s' dur='9s'/></rect>"));
        row("SVGZ", u"icon.svgz"_s, gzipped(svg(square)));
        row("ICO", name, encoded(plain(32, 32), "ICO"));
        row("ICNS", name, icnsPart("icns", icnsPart("TOC ", {}) + icnsPart("ic08", png)));
        if (QImageReader::supportedImageFormats().contains("icns")) {
            // Runs of 128 samples, one colour after the other.
            row("ICNS without PNG", name,
                icnsPart("icns",
                    icnsPart("il32",
                        QByteArray("\xfd\xff").repeated(8) + QByteArray("\xfd\0", 2).repeated(16))
                        + icnsPart("l8mk", QByteArray(1024, '\xff'))));
        }
    }
    void everyKindOfFile()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        QImage icon;
        // A thread that Qt did not start: it has no timers.
        std::thread([&] { icon = decodeIcon(_tree.add(name, bytes), 64); }).join();
        QCOMPARE(icon.size(), QSize(64, 64));
        QCOMPARE(icon.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(icon.pixelColor(32, 32), QColor(Qt::red));
        QCOMPARE(icon.pixelColor(2, 61), QColor(Qt::red));
    }

    void widePicture_isCentred()
    {
        // A drawing whose origin is elsewhere, and that is higher than its view box.
        const QByteArray drawing = svg(
            "<rect x='-90' y='-70' width='64' height='64' fill='red'/>", "viewBox='-90 -70 64 32'");
        for (const QByteArray &bytes : { encoded(plain(200, 100)), drawing }) {
            const QImage icon = decodeIcon(_tree.add(u"icon"_s, bytes), 64);
            QCOMPARE(icon.size(), QSize(64, 64));
            QCOMPARE(icon.pixelColor(32, 14).alpha(), 0);
            QCOMPARE(icon.pixelColor(32, 18), QColor(Qt::red));
            QCOMPARE(icon.pixelColor(1, 45), QColor(Qt::red));
            QCOMPARE(icon.pixelColor(62, 49).alpha(), 0);
        }
    }

    void fineDetail_isAveraged()
    {
        // Black and white lines of one pixel: whatever skips lines makes stripes of them.
        QImage lines(600, 600, QImage::Format_RGB32);
        lines.fill(Qt::white);
        for (int y = 0; y < lines.height(); y += 2) {
            std::memset(lines.scanLine(y), 0, size_t(lines.bytesPerLine()));
        }
        const QImage icon = decodeIcon(_tree.add(u"icon"_s, encoded(lines)), 64);
        for (int y = 4; y < 60; ++y) {
            const int lightness = icon.pixelColor(20, y).lightness();
            QVERIFY2(std::abs(lightness - 127) < 24, qPrintable(QString::number(lightness)));
        }
    }

    void fileOfSeveralSizes_givesTheNearest()
    {
        // Each of its own colour.
        QByteArray head("\0\0\1\0\3\0", 6);
        QByteArray body;
        for (const auto &[size, color] :
            { std::pair(16, Qt::green), std::pair(64, Qt::red), std::pair(256, Qt::blue) }) {
            const QByteArray picture = encoded(plain(size, size, color));
            head += QByteArray(4, '\0') + QByteArray("\1\0\x20\0", 4)
                + little(quint32(picture.size())) + little(quint32(6 + 3 * 16 + body.size()));
            body += picture;
        }
        const QString file = _tree.add(u"icon.ico"_s, head + body);
        QCOMPARE(decodeIcon(file, 64).pixelColor(9, 9), QColor(Qt::red));
        QCOMPARE(decodeIcon(file, 512).pixelColor(9, 9), QColor(Qt::blue));
        QCOMPARE(decodeIcon(file, 8).pixelColor(4, 4), QColor(Qt::green));
    }

    void nothingAsked_isSilent()
    {
        QVERIFY(decodeIcon(QString(), 64).isNull());
        const QString file = _tree.add(u"icon"_s, svg(square));
        for (const int size : { 0, -1, 1'000'000 }) {
            QVERIFY(decodeIcon(file, size).isNull());
        }
    }

    void hostileFile_givesOneLine_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray farOff = "<path stroke='red' d='M-1e6 -1e6L1e6 1e6'/>";
        const QByteArray elsewhere = QFile::encodeName(_tree.addPipe(u"pipe"_s));
        const QByteArray manyPixels = encoded(QImage(20'000, 1'000, QImage::Format_Mono));
        const auto row = [](const char *title, const QByteArray &bytes) {
            QTest::newRow(title) << bytes;
        };
        row("PNG 20,000 pixels wide", manyPixels);
        row("MNG", "\x8aMNG\r\n\x1a\n" + pngChunk("MHDR", big(30'000).repeated(7)));
        row("BMP, which icons do not come in", encoded(plain(16, 16), "BMP"));
        row("ICO with a large PNG inside", ico(png(20'000, 18'000)));
        row("ICO with a large bitmap inside",
            ico(little(40) + little(20'000) + little(40'000) + QByteArray("\1\0\x20", 3)
                + QByteArray(25, '\0')));
        row("ICNS with a large PNG inside",
            icnsPart("icns", icnsPart("ic10", png(20'000, 18'000))));
        const QByteArray jpeg = encoded(plain(1'200, 1'200), "JPG");
        row("JPEG of 20,000 scans",
            jpeg.chopped(2)
                + QByteArray::fromHex("ffda 000c 03 0100 0211 0311 003f00 ff00").repeated(20'000)
                + jpeg.last(2));
        row("80,000 attributes", svg("<rect" + manyAttributes(80'000, "a") + "/>"));
        row("attributes declared for every element",
            "<!DOCTYPE svg [<!ATTLIST svg" + manyAttributes(80'000, "a").replace('=', " CDATA ")
                + ">]>" + svg(square.repeated(2'000)));
        row("attributes from an entity",
            "<!DOCTYPE svg [<!ENTITY a \"&#60;g" + manyAttributes(400, "a").replace("=", "&#61;")
                + "/>\">]>" + svg(QByteArray("&a;").repeated(2'000)));
        row("20,000 namespaces",
            svg(("<g" + manyAttributes(400, "xmlns:a") + "/>").repeated(50) + square));
        row("lines far off", svg(farOff.repeated(40)));
        row("lines far off by transformation",
            svg(QByteArray("<g transform='scale(100)'>").repeated(3)
                + QByteArray(farOff).replace("1e6", "1").repeated(40)
                + QByteArray("</g>").repeated(3)));
        row("10,000 large ellipses",
            svg(QByteArray("<ellipse rx='9000' ry='9000'/>").repeated(10'000)));
        row("dashes declared again and again",
            svg("<style>" + QByteArray("dasharray ").repeated(400'000) + "</style>"));
        row("references begun again and again",
            svg("<g style='" + QByteArray("url(").repeated(60'000) + "#'/>"
                + useOfA.repeated(17'000)));
        row("picture inside with much text", embedded(png(1, 1, packedTexts())));
        row("picture inside that is cut off", embedded(encoded(plain(9, 9), "JPG").chopped(9)));
        row("XPM that promises much",
            "/* XPM */\nstatic char *x[] = {\n\"30000 30000 99999999 4\",\n");
        row("gzip of 20 MB", gzipped("<svg>" + QByteArray(20'000'000, ' ')));
        row("SVG too long", svg(QByteArray(9'000'000, ' ')));
        const QByteArray parts = QByteArray("0 ;").repeated(1'300'000);
        row("view box too long", svg({}, "viewBox='" + parts + "'"));
        row("style too long", svg("<g style='" + parts + "'/>"));
        row("use under another prefix",
            svg("<g id='a'><s:use xmlns:s='http://www.w3.org/2000/svg' x:href='#a' "
                "xmlns:x='http://www.w3.org/1999/xlink'/></g>"));
        row("uses of uses", usesOfUses(10, 10));
        row("uses in a long chain", usesOfUses(50'000, 1));
        row("uses of a long path",
            svg("<path id='a' d='" + QByteArray("M0 0L9 9").repeated(10'000) + "'/>"
                + useOfA.repeated(10'000)));
        row("100,000 groups",
            svg(QByteArray("<g>").repeated(100'000) + QByteArray("</g>").repeated(100'000)));
        row("gradient of itself",
            svg("<linearGradient id='a' xlink:href='#b'/><linearGradient id='b' xlink:href='#a'/>"
                "<rect width='64' height='64' fill='url(#a)'/>"));
        row("mask of itself",
            svg("<mask id='a'><rect width='9' height='9' style='mask:url( \"#a\" )'/></mask>"));
        row("enormous width", svg(square, "width='1e9' height='1' viewBox='0 0 64 64'"));
        row("enormous without a size", svg("<rect width='1e9' height='1e9'/>", {}));
        row("width that is no number", svg(square, "width='NaN' height='nan'"));
        row("nothing in it", svg({}, {}));
        row("picture in another file", image(elsewhere));
        row("data that leads to a file", image("data/../../../../../.." + elsewhere, "href"));
        row("style sheet in another file",
            "<?xml-stylesheet type='text/css' href='" + elsewhere + "'?>" + svg(square));
        row("picture inside that is SVG", embedded(usesOfUses(10, 10)));
        row("picture inside of 20 million pixels", embedded(manyPixels));
        row("dashes in a style, disguised",
            svg("<path d='M0 0h60000' style='stroke:red;stroke-d&#97;sharray:0.001'/>"));
        row("dashes in a style sheet",
            svg("<style>.a{stroke:red;stroke-dasharray:.001}</style>"
                "<path class='a' d='M0 0h60000'/>"));
        row("rules for every element",
            svg("<style>" + QByteArray("g.a{fill:red}").repeated(20'000) + "</style>"
                + QByteArray("<g class='b'/>").repeated(20'000)));
        row("font inside",
            svg("<font horiz-adv-x='9'><font-face font-family='f' units-per-em='0'/>"
                "<glyph unicode='a' d='M0 0h9'/></font><text font-family='f'>a</text>"));
    }
    void hostileFile_givesOneLine()
    {
        QFETCH(QByteArray, bytes);
        QCOMPARE(linesAndIconWithinLimits(_tree.add(u"hostile"_s, bytes)), 1);
    }

    // What stands beside the pixels does not count, and the largest picture that is read fits.
    void largeButHarmless_isRead()
    {
        const QByteArray wide = encoded(plain(2'800, 2'800)).insert(33, packedTexts());
        const QByteArray part = png(1, 1, packedTexts());
        for (const QByteArray &bytes : { wide, ico(part), icnsPart("icns", icnsPart("ic10", part)),
                 encoded(plain(2'000, 2'000).convertToFormat(QImage::Format_RGBA64)) }) {
            QCOMPARE(linesAndIconWithinLimits(_tree.add(u"large"_s, bytes)), 100);
        }
    }

    void hostilePlace_givesOneLine()
    {
        const QByteArray large(17 * 1024 * 1024, '\0');
        for (const QString &file : { _tree.addPipe(u"pipe.png"_s), u"/dev/zero"_s,
                 _tree.add(u"large.png"_s, large), _tree.path(u"missing\nfile.png"_s) }) {
            expectLine();
            QVERIFY(decodeIcon(file, 64).isNull());
        }
    }

    void truncatedPicture_isNoneAndWarnsOnce()
    {
        const QByteArray jpeg = encoded(plain(16, 16), "JPG");
        const QByteArray preview = "\xff\xe5" + big(quint32(jpeg.size() + 2)).last(2) + jpeg;
        // Four pixels by two, behind an extension that holds the marks of a picture and of the end.
        const QByteArray gif =
            QByteArray::fromHex("474946383961 0400 0200 800000 000000 ff0000 21fe022c3b00"
                                "2c 00000000 0400 0200 00 02 03 041a05 00");
        for (const QByteArray &whole :
            { encoded(plain(16, 16)), gzipped(svg(square)), svg(usedSquare), gif, jpeg,
                jpeg.first(2) + preview + jpeg.sliced(2), ico(encoded(plain(9, 9))) }) {
            QFile file(_tree.add(u"short"_s, whole + QByteArray("\xff\0;", 3)));
            QCOMPARE(linesAndIcon(file.fileName(), 16), whole.startsWith('<') ? 1 : 100);
            for (qsizetype length = whole.size() - 1; length >= 0; --length) {
                QVERIFY(file.resize(length));
                QCOMPARE(linesAndIcon(file.fileName(), 16), 1);
            }
        }
    }

private:
    static void expectLine()
    {
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(u"^cannot read icon /[^\\n]+: [^\\n]+$"_s));
    }

    FileTree _tree;
};

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--decode") == 0) {
        return decodeWithinLimits(QString::fromLocal8Bit(argv[2]));
    }
    IconDecoderTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "IconDecoderTest.moc"
