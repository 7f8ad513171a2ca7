// The least that a grid of pictures can take with Qt: a window that shows ready pictures from one
// mapped file, and nothing else. What a launcher takes beyond it is its own.
//
// BarePictures FILE EDGE: shows the pictures of the file in rows. They are square, of so many
// pixels, premultiplied, one below the other.
// BarePictures --make FILE COUNT ICON...: draws COUNT pictures of the icons in turn, as large as
// the window has room for, writes them and prints their edge. Needs no display.

#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QLoggingCategory>
#include <QPainter>
#include <QRasterWindow>

#include <cstdio>

namespace {

// About what the panel takes of the screen that is measured on.
constexpr QSize WindowSize(1200, 720);
constexpr int LargestEdge = 64;
constexpr auto Format = QImage::Format_ARGB32_Premultiplied;

int edgeFor(int count)
{
    int edge = LargestEdge;
    while (edge > 1 && (WindowSize.width() / edge) * (WindowSize.height() / edge) < count) {
        --edge;
    }
    return edge;
}

int make(const QString &path, int count, const QStringList &icons)
{
    const int edge = edgeFor(count);
    // Some icons refer to what they do not hold.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.svg*=false"));
    QFile file(path);
    if (icons.isEmpty() || !file.open(QIODevice::WriteOnly)) {
        return 1;
    }
    for (int i = 0; i < count; ++i) {
        QImageReader reader(icons[i % icons.size()]);
        reader.setScaledSize({ edge, edge });
        const QImage icon = reader.read().convertToFormat(Format);
        if (icon.isNull()
            || file.write(reinterpret_cast<const char *>(icon.constBits()), icon.sizeInBytes())
                != icon.sizeInBytes()) {
            return 1;
        }
    }
    std::printf("%d\n", edge);
    return file.flush() ? 0 : 1;
}

class Pictures final : public QRasterWindow
{
public:
    Pictures(const uchar *pixels, int edge, int count)
        : _pixels(pixels)
        , _edge(edge)
        , _count(count)
    {
        setFlags(Qt::FramelessWindowHint);
        resize(WindowSize);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(QRect({}, size()), Qt::black);
        const int columns = qMax(1, width() / _edge);
        for (int i = 0; i < _count; ++i) {
            const QImage picture(_pixels + qsizetype(i) * _edge * _edge * 4, _edge, _edge, Format);
            painter.drawImage(i % columns * _edge, i / columns * _edge, picture);
        }
    }

private:
    const uchar *_pixels;
    int _edge;
    int _count;
};

} // namespace

int main(int argc, char *argv[])
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == QLatin1String("--make")) {
        return make(arguments.value(2), arguments.value(3).toInt(), arguments.mid(4));
    }
    QFile file(arguments.value(1));
    const int edge = arguments.value(2).toInt();
    if (edge < 1 || !file.open(QIODevice::ReadOnly)) {
        return 2;
    }
    const uchar *const pixels = file.map(0, file.size());
    Pictures window(pixels, edge, pixels == nullptr ? 0 : int(file.size() / (edge * edge * 4)));
    window.show();
    return QCoreApplication::exec();
}
