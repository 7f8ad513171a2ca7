#include "platform/freedesktop/PictureWholeness.h"

#include "platform/FileTree.h"
#include "platform/freedesktop/IconDecoder.h"

#include <QBuffer>
#include <QDataStream>
#include <QImage>
#include <QTest>

#include <malloc.h>

namespace {

QByteArray encoded(const char *format, QImage::Format pixels = QImage::Format_RGB32)
{
    QImage image(19, 13, QImage::Format_RGB32);
    for (int i = 0; i < 19 * 13; ++i) {
        image.setPixel(i % 19, i / 19, QRgb(i * 0x030507));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.convertToFormat(pixels).save(&buffer, format);
    return bytes;
}

// Between head and pixels stand four colours, red first, which are masks as well.
QByteArray bmp(qint32 width, qint32 height, quint16 bits, quint32 compression, quint32 colors,
    const QByteArray &pixels)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    stream << quint16(0x4d42) << quint64(0) << quint32(70) << quint32(40) << width << height
           << quint16(1) << bits << compression << quint32(pixels.size()) << quint64(0) << colors
           << quint32(0);
    return bytes + QByteArray::fromHex("0000ff00 00ff0000 ff000000 00000000") + pixels;
}

// Two pixels by two in the short head's form.
const QByteArray shortBmp =
    QByteArray::fromHex("424d 0000000000000000 1a000000 0c000000 0200 0200 0100 1800")
    + QByteArray(16, '\1');
// Four pixels by two, behind an extension that holds the marks of a picture and of the end.
const QByteArray gif =
    QByteArray::fromHex("474946383961 0400 0200 800000 000000 ff0000 21fe022c3b00")
    + QByteArray::fromHex("2c 00000000 0400 0200 00 02 03 041a05 00");
const QByteArray fewRuns = QByteArray::fromHex("0201 0001");

// A JPEG with a whole one in a segment before its own pixels.
QByteArray withPreview(const QByteArray &jpeg)
{
    const qsizetype length = jpeg.size() + 2;
    return jpeg.first(2) + "\xff\xe5" + char(length >> 8) + char(length) + jpeg + jpeg.sliced(2);
}

} // namespace

class PictureWholenessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); }

    void whatIsCutOff_isNotWhole_data()
    {
        QTest::addColumn<QByteArray>("whole");
        const QByteArray pixels(32, '\1');
        QTest::newRow("PNG") << encoded("PNG");
        QTest::newRow("JPEG") << encoded("JPG");
        QTest::newRow("JPEG with a preview") << withPreview(encoded("JPG"));
        QTest::newRow("GIF") << gif;
        QTest::newRow("BMP of 24 bits") << encoded("BMP");
        QTest::newRow("BMP of 8 bits") << encoded("BMP", QImage::Format_Indexed8);
        QTest::newRow("BMP of 1 bit") << encoded("BMP", QImage::Format_Mono);
        QTest::newRow("BMP from the top") << bmp(8, -4, 8, 0, 4, pixels);
        QTest::newRow("BMP with masks") << bmp(4, 2, 32, 3, 0, pixels);
        QTest::newRow("BMP of runs") << bmp(4, 2, 8, 1, 4, fewRuns);
        QTest::newRow("BMP with the short head") << shortBmp;
    }

    // Cut anywhere, and with rubbish behind it.
    void whatIsCutOff_isNotWhole()
    {
        QFETCH(const QByteArray, whole);
        QVERIFY(!QImage::fromData(whole).isNull());
        QVERIFY(isWholePicture(whole));
        QVERIFY(isWholePicture(whole + QByteArray("\xff\0;", 3)));
        // Less than the mark of a PNG is of no kind.
        for (qsizetype length = whole.size() - 1; length >= 8; --length) {
            QVERIFY2(!isWholePicture(whole.first(length)), qPrintable(QString::number(length)));
        }
    }

    void lies_areSeenThrough()
    {
        const QByteArray pixels(32, '\1');
        QVERIFY(!isWholePicture(bmp(8, INT_MIN, 8, 0, 4, pixels)));
        QVERIFY(!isWholePicture(bmp(INT_MAX, 4, 32, 0, 0, pixels)));
        QVERIFY(!isWholePicture(bmp(8, 4, 8, 0, ~0U, pixels)));
        // That the pixels begin in the head.
        QVERIFY(!isWholePicture(encoded("BMP").replace(10, 4, QByteArray(4, '\0')).chopped(14)));
        QVERIFY(!isWholePicture(QByteArray::fromHex("ffd8 ffe00000 ffe00000 ffe00000")));
        QVERIFY(!isWholePicture(gif.first(25) + ';'));
    }

    void pixelsLeftOut_areTheFirstColour()
    {
        // Fresh memory is not blank by chance.
        ::mallopt(M_PERTURB, 0x55);
        FileTree tree;
        const QString file =
            tree.add(QStringLiteral("runs.bmp"), bmp(4, 2, 8, 1, 4, fewRuns + QByteArray(9, 'x')));
        QString problem;
        const QImage icon = tryDecodeIcon(file, 64, 128, &problem);
        QCOMPARE(problem, QString());
        QCOMPARE(icon.size(), QSize(4, 4));
        QCOMPARE(icon.pixelColor(0, 2), QColor(Qt::green));
        QCOMPARE(icon.pixelColor(3, 2), QColor(Qt::red));
        QCOMPARE(icon.pixelColor(0, 1), QColor(Qt::red));
    }
};

QTEST_MAIN(PictureWholenessTest)
#include "PictureWholenessTest.moc"
