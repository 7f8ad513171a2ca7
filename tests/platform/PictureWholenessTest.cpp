#include "platform/freedesktop/PictureWholeness.h"

#include <QBuffer>
#include <QImage>
#include <QTest>

namespace {

QByteArray encoded(const char *format)
{
    QImage image(19, 13, QImage::Format_RGB32);
    for (int i = 0; i < 19 * 13; ++i) {
        image.setPixel(i % 19, i / 19, QRgb(i * 0x030507));
    }
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return bytes;
}

// Four pixels by two, behind an extension that holds the marks of a picture and of the end.
const QByteArray gif =
    QByteArray::fromHex("474946383961 0400 0200 800000 000000 ff0000 21fe022c3b00")
    + QByteArray::fromHex("2c 00000000 0400 0200 00 02 03 041a05 00");

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
        QTest::newRow("PNG") << encoded("PNG");
        QTest::newRow("JPEG") << encoded("JPG");
        QTest::newRow("JPEG with a preview") << withPreview(encoded("JPG"));
        QTest::newRow("GIF") << gif;
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
        QVERIFY(!isWholePicture(QByteArray::fromHex("ffd8 ffe00000 ffe00000 ffe00000")));
        QVERIFY(!isWholePicture(gif.first(25) + ';'));
    }
};

QTEST_MAIN(PictureWholenessTest)
#include "PictureWholenessTest.moc"
