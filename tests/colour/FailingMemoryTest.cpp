#include "colour/BitmapText.h"
#include "colour/DominantColors.h"

#include <QRegularExpression>
#include <QTest>

#include <cstdio>
#include <new>
#include <unistd.h>

using namespace BitmapText;
using namespace Qt::Literals::StringLiterals;

namespace {

int requests = 0;
// The request that gets no memory, counted from 1; none when 0.
int failingRequest = 0;

// What the work writes to standard error.
template <typename Work> QString written(const Work &work)
{
    std::FILE *file = std::tmpfile();
    const int usual = dup(STDERR_FILENO);
    dup2(fileno(file), STDERR_FILENO);
    work();
    std::fflush(stderr);
    dup2(usual, STDERR_FILENO);
    close(usual);
    std::rewind(file);
    QByteArray text(1024, '\0');
    text.resize(qsizetype(std::fread(text.data(), 1, std::size_t(text.size()), file)));
    std::fclose(file);
    return QString::fromLatin1(text);
}

} // namespace

void *operator new[](std::size_t size, const std::nothrow_t & /*unused*/) noexcept
{
    return ++requests == failingRequest ? nullptr : ::operator new[](size);
}

class FailingMemoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void eachFailure_givesNothing_andOneLine()
    {
        const std::tuple<int, int, QString> rows[] {
            { 1, 2, u"\nout of memory allocating hash table\n"_s },
            { 2, 2, u"\nout of memory computing hash table\n"_s },
            { 3, 2000, u"\nout of memory computing hash table\n"_s },
            { 3, 257, u"\nout of memory computing hash table\n"_s },
            { 3, 256, u"\nout of memory generating histogram\n"_s },
            { 4, 256, u"\nout of memory generating histogram\n"_s },
            { 5, 2, u"\nout of memory making color spectrum\n"_s },
            { 6, 2, {} },
        };
        for (const auto &[request, colors, expected] : rows) {
            Picture picture { colors, {} };
            for (int i = 0; i < colors; ++i) {
                picture.pixels.push_back({ std::uint8_t(i >> 8), std::uint8_t(i), 255, 255 });
            }
            const Bitmap bitmap(picture);
            QCOMPARE(measured(bitmap.view, request), expected);
            QVERIFY(_colors.isEmpty());
            QCOMPARE(requests, request);

            QCOMPARE(measured(bitmap.view), QString());
            QVERIFY(!_colors.isEmpty());
        }
    }

    void nothingToMeasure_isTold()
    {
        const Bitmap transparent(u".."_s);
        QCOMPARE(measured(transparent.view), u"\nzero colors specified for histogram\n"_s);
        QVERIFY(_colors.isEmpty());
        QCOMPARE(written([] { createColorSpectrumFromHistogram({}); }),
            u"\nbad color spectrum parameter\n"_s);
    }

    void whatCannotBeRead_isNotTold()
    {
        Bitmap bitmap(u"rr"_s);
        bitmap.view.colorSpaceModel = ColorSpaceModel::CMYK;
        QCOMPARE(measured(bitmap.view), QString());
        QVERIFY(_colors.isEmpty());
    }

private:
    // Returns what was written meanwhile.
    QString measured(const BitmapView &view, int request = 0)
    {
        return written([&] {
            requests = 0;
            failingRequest = request;
            _colors = createDominantColorsWithCount(view, 6, 0.14, 0, 50);
            failingRequest = 0;
        });
    }

    HclColors _colors;
};

QTEST_APPLESS_MAIN(FailingMemoryTest)
#include "FailingMemoryTest.moc"
