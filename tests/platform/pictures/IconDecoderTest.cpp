#include "platform/freedesktop/pictures/IconDecoder.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/icons/FreedesktopIcons.h"
#include "platform/freedesktop/pictures/SvgFeatures.h"

#include <QBuffer>
#include <QGuiApplication>
#include <QProcess>

#include <cstring>
#include <dlfcn.h>
#include <sys/resource.h>
#include <thread>

namespace {

QByteArray encoded(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes;
}

QImage plain(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray svg(const QByteArray &content, const QByteArray &attributes = "viewBox='0 0 64 64'")
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        + attributes + '>' + content + "</svg>";
}

const QByteArray square = "<rect width='64' height='64' fill='#ff0000'/>";
const QByteArray useOfA = "<use xlink:href='#a'/>";

QByteArray image(const QByteArray &reference, const QByteArray &attribute = "xlink:href")
{
    return svg("<image width='64' height='64' " + attribute + "='" + reference + "'/>");
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
    // The sanitizers take more of both.
    const bool isSanitized = ::dlsym(RTLD_DEFAULT, "__asan_init") != nullptr
        || ::dlsym(RTLD_DEFAULT, "__tsan_init") != nullptr;
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

class IconDecoderTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { quietImageLibraries(); }

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
            clipped("<path d='M 0 0 L 64 64 L 0 64 Z M 0 0'/>") };
        // Used where nothing is drawn or not at all, or clipped to what it is anyway.
        const QByteArrayList right { circle + square, circle + "<g clip-path='url(#d)'/>",
            circle + "<defs><g clip-path='url(#c)'/></defs>",
            "<linearGradient id='c'/><pattern/><path fill='url(#c)'/>",
            clipped("<rect width='64' height='64'/>"),
            clipped("<path d='M 0.3 0.3 L 63.7,0.3 L 63.7 63.7 L 0.3 63.7 Z M 0.3 0.3'/>") };
        for (const QByteArray &content : flawed + right) {
            const bool isFlawed = flawed.contains(content);
            QVERIFY2(SvgFeatures::goBeyondRenderer(svg(content)) == isFlawed, content);
        }
    }

    // The names tell what comes of a file, and nothing of its kind.
    void filesOfTheFuzzTarget_areReadOrRefused()
    {
        const QStringList pictures = _files.entryList({ u"red-*"_s });
        const QStringList refused = _files.entryList({ u"refused-*"_s });
        QVERIFY(pictures.size() > 9 && refused.size() > 9);
        for (const QString &name : pictures) {
            QImage icon;
            // A thread that Qt did not start: it has no timers.
            std::thread([&] { icon = decodeIcon(_files.filePath(name), 64); }).join();
            QVERIFY2(icon.size() == QSize(64, 64), qPrintable(name));
            QCOMPARE(icon.format(), QImage::Format_ARGB32_Premultiplied);
            QCOMPARE(icon.pixelColor(32, 32), QColor(Qt::red));
            QCOMPARE(icon.pixelColor(2, 61), QColor(Qt::red));
        }
        for (const QString &name : refused) {
            const int lines = linesAndIconWithinLimits(_files.filePath(name));
            QVERIFY2(lines == 1, qPrintable(name + QString::number(lines)));
        }
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
        // 16 pixels are green, 64 red and 256 blue.
        const QString file = _files.filePath(u"three-sizes.ico"_s);
        QCOMPARE(decodeIcon(file, 64).pixelColor(9, 9), QColor(Qt::red));
        QCOMPARE(decodeIcon(file, 512).pixelColor(9, 9), QColor(Qt::blue));
        QCOMPARE(decodeIcon(file, 8).pixelColor(4, 4), QColor(Qt::green));
    }

    // Each would take too long, too much memory or another file. Small ones are for the fuzz
    // target.
    void hostileFile_givesOneLine()
    {
        const QByteArray farOff = "<path stroke='red' d='M-1e6 -1e6L1e6 1e6'/>";
        const QByteArray elsewhere = QFile::encodeName(_tree.addPipe(u"pipe"_s));
        const QByteArray manyPixels = encoded(QImage(20'000, 1'000, QImage::Format_Mono));
        const QString gzip = _tree.path(u"zeros.gz"_s);
        QProcess::execute(
            u"/bin/sh"_s, { u"-c"_s, u"head -c 20000000 /dev/zero | gzip >"_s + gzip });
        const QByteArray zeros = load(gzip);
        QByteArray attributes;
        for (int i = 0; i < 80'000; ++i) {
            attributes += " a" + QByteArray::number(i) + "='a'";
        }
        QByteArray chain = "<rect id='a0' width='9' height='9'/>";
        for (int i = 1; i <= 50'000; ++i) {
            const QByteArray before = QByteArray::number(i - 1);
            chain +=
                "<g id='a" + QByteArray::number(i) + "'><use xlink:href='#a" + before + "'/></g>";
        }
        for (const QByteArray &bytes :
            { manyPixels, svg("<rect" + attributes + "/>"), svg(farOff.repeated(40)),
                svg(QByteArray("<ellipse rx='9000' ry='9000'/>").repeated(10'000)), zeros,
                svg(QByteArray(9'000'000, ' ')), svg(chain),
                svg("<path id='a' d='" + QByteArray("M0 0L9 9").repeated(10'000) + "'/>"
                    + useOfA.repeated(10'000)),
                svg(QByteArray("<g>").repeated(100'000) + QByteArray("</g>").repeated(100'000)),
                image(elsewhere), image("data/../../../../../.." + elsewhere, "href"),
                "<?xml-stylesheet type='text/css' href='" + elsewhere + "'?>" + svg(square),
                image("data:image/png;base64," + manyPixels.toBase64()),
                svg("<style>" + QByteArray("g.a{fill:red}").repeated(20'000) + "</style>"
                    + QByteArray("<g class='b'/>").repeated(20'000)) }) {
            const int lines = linesAndIconWithinLimits(_tree.add(u"hostile"_s, bytes));
            QVERIFY2(lines == 1, QByteArray::number(lines) + ": " + bytes.left(400));
        }
    }

    // The largest picture that is read fits.
    void largeButHarmless_isRead()
    {
        for (const QImage &large :
            { plain(2'800, 2'800), plain(2'000, 2'000).convertToFormat(QImage::Format_RGBA64) }) {
            QCOMPARE(linesAndIconWithinLimits(_tree.add(u"large"_s, encoded(large))), 100);
        }
    }

    void hostilePlace_givesOneLine()
    {
        const QByteArray large(17 * 1024 * 1024, '\0');
        for (const QString &file : { _tree.addPipe(u"pipe.png"_s), u"/dev/zero"_s,
                 _tree.add(u"large.png"_s, large), _tree.path(u"missing\nfile.png"_s) }) {
            expectWarning(u"^cannot read icon /[^\\n]+: [^\\n]+$"_s);
            QVERIFY(decodeIcon(file, 64).isNull());
        }
    }

    void truncatedPicture_isNoneAndWarnsOnce()
    {
        for (const QString &name :
            { u"red-png.svg"_s, u"red-packed.svg"_s, u"red-use.svg"_s, u"red-ico.svg"_s }) {
            QFile file(_tree.add(u"short"_s, load(_files.filePath(name))));
            QCOMPARE(linesAndIcon(file.fileName(), 16), 100);
            for (qint64 length = file.size() - 1; length >= 0; --length) {
                QVERIFY(file.resize(length));
                QCOMPARE(linesAndIcon(file.fileName(), 16), 1);
            }
        }
    }

private:
    // Those of the fuzz target.
    const QDir _files { QFINDTESTDATA("../fuzz/corpus/Picture") };
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
