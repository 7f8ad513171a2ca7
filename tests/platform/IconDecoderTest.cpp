#include "platform/freedesktop/IconDecoder.h"

#include "platform/freedesktop/FreedesktopIcons.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImageWriter>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <sys/stat.h>
#include <thread>

static QByteArray encoded(const QImage &image, const char *format = "PNG")
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

static QImage plain(int width, int height, QColor color = Qt::red)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

static QByteArray little(quint32 number)
{
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i) {
        bytes[i] = char(number >> (8 * i));
    }
    return bytes;
}

static QByteArray gzipped(const QByteArray &text)
{
    quint32 sum = ~0U;
    for (const char c : text) {
        sum ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ (0xedb88320U & (0U - (sum & 1)));
        }
    }
    // The same compression inside a zlib stream, whose head and tail are taken off.
    return QByteArray("\x1f\x8b\x08\0\0\0\0\0\0\3", 10) + qCompress(text).mid(6).chopped(4)
        + little(~sum) + little(quint32(text.size()));
}

static QByteArray svg(
    const QByteArray &content, const QByteArray &attributes = "viewBox='0 0 64 64'")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        + attributes + '>' + content + "</svg>";
}

static const QByteArray square = "<rect width='64' height='64' fill='#ff0000'/>";

// Ten levels of ten uses each.
static QByteArray multiplyingUses()
{
    QByteArray text = "<defs><rect id='a0' width='9' height='9'/>";
    for (int level = 1; level <= 10; ++level) {
        const QByteArray use = "<use xlink:href='#a" + QByteArray::number(level - 1) + "'/>";
        text += "<g id='a" + QByteArray::number(level) + "'>" + use.repeated(10) + "</g>";
    }
    return text + "</defs><use xlink:href='#a10'/>";
}

static QByteArray chainOfUses(int length)
{
    QByteArray text = "<rect id='a0' width='9' height='9'/>";
    for (int i = 1; i <= length; ++i) {
        text += "<use id='a" + QByteArray::number(i) + "' xlink:href='#a"
            + QByteArray::number(i - 1) + "'/>";
    }
    return text;
}

static QByteArray multiplyingEntities()
{
    QByteArray text = "<!DOCTYPE svg [<!ENTITY a0 '<rect width=\"9\" height=\"9\"/>'>";
    for (int level = 1; level <= 9; ++level) {
        const QByteArray entity = "&a" + QByteArray::number(level - 1) + ';';
        text += "<!ENTITY a" + QByteArray::number(level) + " '" + entity.repeated(10) + "'>";
    }
    return text + "]>" + svg("&a9;");
}

static QByteArray utf16(const QByteArray &text)
{
    const QString wide = QString::fromUtf8(text);
    return "\xff\xfe"
        + QByteArray(
            reinterpret_cast<const char *>(wide.utf16()), wide.size() * qsizetype(sizeof(QChar)));
}

static QByteArray embedded(const QByteArray &type, const QByteArray &data)
{
    return svg("<image width='64' height='64' xlink:href='data:" + type + ";base64,"
        + data.toBase64() + "'/>");
}

class IconDecoderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void everyKindOfFile_data();
    void everyKindOfFile();
    void widePicture_isCentred_data();
    void widePicture_isCentred();
    void fineDetail_isAveraged();
    void fileOfSeveralSizes_givesTheNearest();
    void animatedPicture_decodesOnAnyThread();
    void nothingAsked_isSilent();
    void hostileFile_givesOneLine_data();
    void hostileFile_givesOneLine();
    void hostilePlace_givesOneLine_data();
    void hostilePlace_givesOneLine();
    void truncatedPicture_neverWarnsTwice();

private:
    QString write(const QByteArray &bytes, const QString &name = QStringLiteral("icon"));

    QTemporaryDir _folder;
};

void IconDecoderTest::initTestCase()
{
    quietImageLibraries();
}

void IconDecoderTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

QString IconDecoderTest::write(const QByteArray &bytes, const QString &name)
{
    QFile file(_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
        qFatal("cannot write a test file");
    }
    return file.fileName();
}

void IconDecoderTest::everyKindOfFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray png = encoded(plain(64, 64));
    const QByteArray group = "<g id='a'>" + square + "</g>";
    const auto row = [](const char *title, const char *name, const QByteArray &bytes) {
        QTest::newRow(title) << QString::fromLatin1(name) << bytes;
    };
    row("PNG of the size", "icon.png", png);
    row("PNG to enlarge", "icon.png", encoded(plain(32, 32)));
    row("PNG to reduce a lot", "icon.png", encoded(plain(700, 700)));
    row("PNG without alpha", "icon.png",
        encoded(plain(64, 64).convertToFormat(QImage::Format_RGB32)));
    row("PNG called SVG", "icon.svg", png);
    row("PNG without an extension", "icon", png);
    row("XPM", "icon.xpm",
        "/* XPM */\nstatic char *x[] = {\n\"2 2 1 1\",\n\"a c #ff0000\",\n\"aa\",\n\"aa\"\n};\n");
    row("SVG", "icon.svg", svg(square));
    row("SVG called PNG", "icon.png", svg(square));
    row("SVG with a byte order mark", "icon.svg",
        "\xef\xbb\xbf<?xml version='1.0'?>" + svg(square));
    row("SVG in UTF-16", "icon.svg", utf16(svg(square)));
    row("SVG in Latin 1", "icon.svg",
        "<?xml version='1.0' encoding='ISO-8859-1'?><!-- \xe4 -->" + svg(square));
    row("SVG with size and no view box", "icon.svg", svg(square, "width='64px' height='64px'"));
    row("SVG as wide as its place", "icon.svg",
        svg(square, "width='100%' height='100%' viewBox='0,0 64,64'"));
    row("SVG with harmless references", "icon.svg",
        svg("<defs>" + group + "</defs><use xlink:href='#a'/><use xlink:href='#nobody'/>"));
    row("SVG with entities", "icon.svg",
        "<!DOCTYPE svg [<!ENTITY red '#ff0000'>]>"
            + svg("<rect width='64' height='64' fill='&red;'/>"));
    row("SVG with a picture inside", "icon.svg", embedded("image/png", png));
    row("SVG with usual dashes", "icon.svg",
        svg(square + "<path d='M9 9h40' stroke='#ff0000' stroke-dasharray='1, 0.5'/>"));
    row("SVGZ", "icon.svgz", gzipped(svg(square)));
    row("SVGZ called SVG", "icon.svg", gzipped(svg(square)));
    if (QImageWriter::supportedImageFormats().contains("icns")) {
        row("ICNS", "icon.icns", encoded(plain(128, 128), "ICNS"));
    }
}

void IconDecoderTest::everyKindOfFile()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);

    const QImage icon = decodeIcon(write(bytes, name), 64);

    QCOMPARE(icon.size(), QSize(64, 64));
    QCOMPARE(icon.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(icon.pixelColor(32, 32), QColor(Qt::red));
    QCOMPARE(icon.pixelColor(2, 61), QColor(Qt::red));
}

void IconDecoderTest::widePicture_isCentred_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("PNG") << encoded(plain(200, 100));
    QTest::newRow("small PNG") << encoded(plain(8, 4));
    QTest::newRow("SVG") << svg(square, "viewBox='0 0 64 32'");
    QTest::newRow("SVG elsewhere") << svg(
        "<rect x='-90' y='-70' width='64' height='32' fill='red'/>", "viewBox='-90 -70 64 32'");
}

void IconDecoderTest::widePicture_isCentred()
{
    QFETCH(QByteArray, bytes);

    const QImage icon = decodeIcon(write(bytes), 64);

    QCOMPARE(icon.size(), QSize(64, 64));
    QCOMPARE(icon.pixelColor(32, 14).alpha(), 0);
    QCOMPARE(icon.pixelColor(32, 18), QColor(Qt::red));
    QCOMPARE(icon.pixelColor(1, 45), QColor(Qt::red));
    QCOMPARE(icon.pixelColor(62, 49).alpha(), 0);
}

void IconDecoderTest::fineDetail_isAveraged()
{
    // Black and white lines of one pixel: whatever skips lines makes stripes of them.
    QImage lines = plain(600, 600, Qt::white);
    for (int y = 0; y < lines.height(); y += 2) {
        memset(lines.scanLine(y), 0, size_t(lines.bytesPerLine()));
        for (int x = 0; x < lines.width(); ++x) {
            lines.setPixelColor(x, y, Qt::black);
        }
    }
    const QImage icon = decodeIcon(write(encoded(lines)), 64);
    for (int y = 4; y < 60; ++y) {
        const int lightness = icon.pixelColor(20, y).lightness();
        QVERIFY2(std::abs(lightness - 127) < 24, qPrintable(QString::number(lightness)));
    }
}

void IconDecoderTest::fileOfSeveralSizes_givesTheNearest()
{
    // An icon file of 16, 64 and 256 pixels, each of its own colour.
    const std::array<std::pair<int, QColor>, 3> pictures { { { 16, Qt::green }, { 64, Qt::red },
        { 256, Qt::blue } } };
    QByteArray head = QByteArray("\0\0\1\0\3\0", 6);
    QByteArray body;
    for (const auto &[size, color] : pictures) {
        const QByteArray png = encoded(plain(size, size, color));
        const char extent = char(size); // 256 is written as 0
        head += QByteArray(1, extent) + QByteArray(1, extent) + QByteArray("\0\0\1\0\x20\0", 6)
            + little(quint32(png.size())) + little(quint32(6 + 3 * 16 + body.size()));
        body += png;
    }
    const QString file = write(head + body, QStringLiteral("icon.ico"));
    QCOMPARE(decodeIcon(file, 64).pixelColor(9, 9), QColor(Qt::red));
    QCOMPARE(decodeIcon(file, 65).pixelColor(9, 9), QColor(Qt::blue));
    QCOMPARE(decodeIcon(file, 512).pixelColor(9, 9), QColor(Qt::blue));
    QCOMPARE(decodeIcon(file, 8).pixelColor(4, 4), QColor(Qt::green));
}

void IconDecoderTest::animatedPicture_decodesOnAnyThread()
{
    const QString file = write(svg("<rect width='64' height='64' fill='#ff0000'>"
                                   "<animateTransform attributeName='transform' type='scale' "
                                   "from='1' to='2' begin='0s' dur='9s'/></rect>"));
    QImage icon;
    // A thread that Qt did not start: it has no timers.
    std::thread([&] { icon = decodeIcon(file, 64); }).join();
    QCOMPARE(icon.pixelColor(32, 32), QColor(Qt::red));
}

void IconDecoderTest::nothingAsked_isSilent()
{
    QVERIFY(decodeIcon(QString(), 64).isNull());
    QVERIFY(decodeIcon(write(svg(square)), 0).isNull());
    QVERIFY(decodeIcon(write(svg(square)), -1).isNull());
    QVERIFY(decodeIcon(write(svg(square)), 1'000'000).isNull());
}

void IconDecoderTest::hostileFile_givesOneLine_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray png = encoded(plain(64, 64));
    const QByteArray elsewhere = QFile::encodeName(_folder.filePath(QStringLiteral("pipe")));
    const auto row = [](const char *title, const QByteArray &bytes) {
        QTest::newRow(title) << bytes;
    };
    row("empty", {});
    row("one byte", "<");
    row("text", "Hello");
    row("zeros", QByteArray(4096, '\0'));
    row("garbage", qCompress(QByteArray(5000, 'x') + png));
    row("PNG of the first half", png.first(png.size() / 2));
    row("PNG of the head alone", png.first(40));
    row("PNG 20,000 pixels wide", encoded(QImage(20'000, 1'000, QImage::Format_Mono)));
    row("XPM that promises much", "/* XPM */\nstatic char *x[] = {\n\"30000 30000 99999999 4\",\n");
    row("gzip of a blank", gzipped(" "));
    row("gzip cut off", gzipped(svg(square)).chopped(12));
    row("gzip of 20 MB", gzipped("<svg>" + QByteArray(20'000'000, ' ')));
    row("SVG too long", svg(QByteArray(9'000'000, ' ')));
    row("SVG cut off", svg(square).chopped(4));
    row("SVG not well-formed", svg("<g><rect></g></rect>"));
    row("another XML", "<html xmlns='http://www.w3.org/1999/xhtml'><body/></html>");
    row("use of itself", svg("<use id='a' xlink:href='#a'/>"));
    row("use of its group", svg("<g id='a'><g><use xlink:href='#a'/></g></g>"));
    row("use of each other",
        svg("<g id='a'><use xlink:href='#b'/></g><g id='b'><use href='#a'/></g>"));
    row("use under another prefix",
        svg("<g id='a'><s:use xmlns:s='http://www.w3.org/2000/svg' x:href='#a' "
            "xmlns:x='http://www.w3.org/1999/xlink'/></g>"));
    row("use behind character references", svg("<g id='&#97;'><use xlink:href='&#35;a'/></g>"));
    row("uses of uses", svg(multiplyingUses()));
    row("uses of uses in UTF-16", utf16(svg(multiplyingUses())));
    row("uses of uses, packed", gzipped(svg(multiplyingUses())));
    row("uses in a long chain", svg(chainOfUses(50'000)));
    row("uses of a long path",
        svg("<path id='a' d='" + QByteArray("M0 0L9 9").repeated(10'000) + "'/>"
            + QByteArray("<use xlink:href='#a'/>").repeated(10'000)));
    row("uses of a long text",
        svg("<text id='a'>" + QByteArray(10'000, 'x') + "</text>"
            + QByteArray("<use xlink:href='#a'/>").repeated(1'000)));
    row("entities of entities", multiplyingEntities());
    row("100,000 groups",
        svg(QByteArray("<g>").repeated(100'000) + QByteArray("</g>").repeated(100'000)));
    row("100,000 groups never closed", "<svg>" + QByteArray("<g>").repeated(100'000));
    row("groups after a comment",
        svg("<!-- < --><![CDATA[<]]>" + QByteArray("<g>").repeated(100'000)));
    row("gradient of itself",
        svg("<linearGradient id='a' xlink:href='#b'/><linearGradient id='b' xlink:href='#a'/>"
            "<rect width='64' height='64' fill='url(#a)'/>"));
    row("pattern of itself",
        svg("<pattern id='a'><rect width='9' height='9' fill='url(#a)'/></pattern>"));
    row("mask of itself",
        svg("<mask id='a'><rect width='9' height='9' style='mask:url( \"#a\" )'/></mask>"));
    row("enormous width", svg(square, "width='1e9' height='1' viewBox='0 0 64 64'"));
    row("enormous view box", svg(square, "viewBox='0 0 1e9 1e9'"));
    row("infinite view box", svg(square, "viewBox='0 0 1e999 1e999'"));
    row("enormous without a size", svg("<rect width='1e9' height='1e9'/>", {}));
    row("width that is no number", svg(square, "width='NaN' height='nan'"));
    row("view box that is no number", svg(square, "viewBox='0 0 NaN NaN'"));
    row("size zero", svg(square, "width='0' height='0'"));
    row("view box of zero", svg(square, "viewBox='0 0 0 0'"));
    row("size below zero", svg(square, "width='-5' height='-5'"));
    row("nothing in it", svg({}, {}));
    row("picture in another file",
        svg("<image width='9' height='9' xlink:href='" + elsewhere + "'/>"));
    row("picture in another file, as URL",
        svg("<image width='9' height='9' href='file://" + elsewhere + "'/>"));
    row("picture on the net",
        svg("<image width='9' height='9' xlink:href='http://127.0.0.1:9/a.png'/>"));
    row("data that leads to a file",
        svg("<image width='9' height='9' xlink:href='data/../../../../../.." + elsewhere + "'/>"));
    row("style sheet in another file",
        "<?xml-stylesheet type='text/css' href='" + elsewhere + "'?>" + svg(square));
    row("picture inside that is SVG", embedded("image/png", svg(multiplyingUses())));
    row("picture inside of 20 million pixels",
        embedded("image/png", encoded(QImage(20'000, 1'000, QImage::Format_Mono))));
    row("dashes beyond number", svg("<path d='M0 0h1e9' stroke='red' stroke-dasharray='.001'/>"));
    row("dashes in a style",
        svg("<path d='M0 0h60000' style='stroke:red;stroke-dasharray:0.001,0.001;fill:none'/>"));
    row("dashes in a style, disguised",
        svg("<path d='M0 0h60000' style='stroke:red;stroke-d&#97;sharray:0.001'/>"));
    row("dashes in a style sheet",
        svg("<style>.a{stroke:red;stroke-dasharray:.001}</style><path class='a' d='M0 0h60000'/>"));
    row("rules for every element",
        svg("<style>" + QByteArray("g.a{fill:red}").repeated(20'000) + "</style>"
            + QByteArray("<g class='b'/>").repeated(20'000)));
    row("font inside",
        svg("<font horiz-adv-x='9'><font-face font-family='f' units-per-em='0'/>"
            "<glyph unicode='a' d='M0 0h9'/></font><text font-family='f'>a</text>"));
}

void IconDecoderTest::hostileFile_givesOneLine()
{
    QFETCH(QByteArray, bytes);
    const QString file = write(bytes, QStringLiteral("hostile"));
    // Whoever opens this one waits for ever.
    ::mkfifo(QFile::encodeName(_folder.filePath(QStringLiteral("pipe"))).constData(), 0600);
    QTest::ignoreMessage(QtWarningMsg,
        QRegularExpression(
            QLatin1String("^cannot read icon %1: [^\\n]+$").arg(QRegularExpression::escape(file))));
    QElapsedTimer timer;
    timer.start();

    QVERIFY(decodeIcon(file, 64).isNull());

    QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
}

void IconDecoderTest::hostilePlace_givesOneLine_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("missing") << _folder.filePath(QStringLiteral("missing.png"));
    QTest::newRow("folder") << _folder.path();
    QTest::newRow("pipe") << _folder.filePath(QStringLiteral("pipe.png"));
    QTest::newRow("device") << QStringLiteral("/dev/zero");
    QTest::newRow("17 MiB") << _folder.filePath(QStringLiteral("large.png"));
    QTest::newRow("line break") << _folder.filePath(QStringLiteral("a\nb.png"));
}

void IconDecoderTest::hostilePlace_givesOneLine()
{
    QFETCH(QString, file);
    ::mkfifo(QFile::encodeName(_folder.filePath(QStringLiteral("pipe.png"))).constData(), 0600);
    QFile large(_folder.filePath(QStringLiteral("large.png")));
    QVERIFY(large.open(QIODevice::WriteOnly) && large.resize(17 * 1024 * 1024));
    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression(QStringLiteral("^cannot read icon [^\\n]+: [^\\n]+$")));

    QVERIFY(decodeIcon(file, 64).isNull());
}

static int countedLines = 0;

void IconDecoderTest::truncatedPicture_neverWarnsTwice()
{
    const QByteArrayList wholes { encoded(plain(16, 16)), gzipped(svg(square)),
        svg("<defs><g id='a'>" + square + "</g></defs><use xlink:href='#a'/>"),
        encoded(plain(32, 32), "BMP"), encoded(plain(16, 16), "JPG") };
    for (const QByteArray &whole : wholes) {
        QFile file(write(whole, QStringLiteral("short")));
        for (qsizetype length = whole.size() - 1; length >= 0; --length) {
            QVERIFY(file.resize(length));
            countedLines = 0;
            const QtMessageHandler before = qInstallMessageHandler(
                [](QtMsgType, const QMessageLogContext &, const QString &) { ++countedLines; });
            const QImage icon = decodeIcon(file.fileName(), 16);
            qInstallMessageHandler(before);
            QCOMPARE(countedLines, icon.isNull() ? 1 : 0);
        }
    }
}

QTEST_MAIN(IconDecoderTest)
#include "IconDecoderTest.moc"
