#include "commands/MeasuredFile.h"

#include "support/Printable.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <numeric>

namespace {

constexpr int SignificantDigits = 17;
// Of a line's coloured blocks, in characters.
constexpr int BlockWidth = 24;
constexpr int TitleWidth = 24;

QString json(double number)
{
    return QString::number(number, 'g', SignificantDigits);
}

QString json(quint64 number)
{
    return QString::number(number);
}

QString json(const QString &text)
{
    const QByteArray array = QJsonDocument(QJsonArray { text }).toJson(QJsonDocument::Compact);
    return Printable::escaped(QString::fromUtf8(array.mid(1, array.size() - 2)));
}

template <typename Value> QString member(const char *name, const Value &value)
{
    return QStringLiteral("\"%1\":").arg(QLatin1String(name)) + json(value);
}

QString object(const QStringList &members)
{
    return u'{' + members.join(u',') + u'}';
}

QString object(const HclColor &color)
{
    return object({ member("L", color.color.L), member("u", color.color.u),
        member("v", color.color.v), member("count", quint64(color.count)), member("hue", color.hue),
        member("saturation", color.saturation), member("luminosity", color.luminosity) });
}

QString object(const SortedColor &color)
{
    return object({ member("red", color.red), member("green", color.green),
        member("blue", color.blue), member("count", color.count) });
}

template <typename List> QString array(const char *name, const List &list)
{
    QStringList objects;
    for (const auto &item : list) {
        objects.append(object(item));
    }
    return QStringLiteral("\"%1\":[%2]").arg(QLatin1String(name), objects.join(u','));
}

// The measured colours in their own order, without the repetitions of the sorted ones.
QList<SortedColor> shownColors(const HclColors &colors)
{
    QList<SortedColor> shown;
    for (const HclColor &color : colors) {
        shown.append(shownColor(color));
    }
    return shown;
}

QString titleColumn(const QString &title)
{
    if (title.size() <= TitleWidth) {
        return title.leftJustified(TitleWidth);
    }
    const bool isPairCut = title[TitleWidth - 2].isHighSurrogate();
    return title.left(isPairCut ? TitleWidth - 2 : TitleWidth - 1) + u'…';
}

// A run of blanks on a background of that colour.
QString block(const QColor &color, int width)
{
    if (width == 0) {
        return {};
    }
    return QStringLiteral("\x1b[48;2;%1;%2;%3m%4\x1b[0m")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(QString(width, u' '));
}

} // namespace

QString MeasuredFiles::jsonLine(const MeasuredFile &measured)
{
    if (!measured.error.isEmpty()) {
        return object({ member("file", measured.file), member("error", measured.error) }) + u'\n';
    }
    return object({ member("file", measured.file), member("count", quint64(measured.colors.size())),
               array("colors", measured.colors),
               member("colorSortValue", measured.key.colorSortValue),
               array("sortedColors", measured.key.sortedColors) })
        + u'\n';
}

QString MeasuredFiles::textLine(const MeasuredFile &measured, Blocks blocks)
{
    const QList<SortedColor> colors = shownColors(measured.colors);
    const double total = std::accumulate(colors.begin(), colors.end(), 0.0,
        [](double sum, const SortedColor &color) { return sum + double(color.count); });
    QString bar;
    QString figures;
    double covered = 0;
    int drawn = 0;
    for (const SortedColor &color : colors) {
        covered += double(color.count);
        const int end = qRound(covered / total * BlockWidth);
        bar += block(color.color(), end - drawn);
        drawn = end;
        figures += QStringLiteral("  %1 %2%")
                       .arg(color.color().name())
                       .arg(double(color.count) / total * 100, 0, 'f', 1);
    }
    bar += QString(BlockWidth - drawn, u' ');
    return QStringLiteral("%1  %2%3%4\n")
        .arg(measured.key.colorSortValue, 8, 'f', 4)
        .arg(blocks == Blocks::Colored ? bar + QStringLiteral("  ") : QString(),
            titleColumn(Printable::escaped(measured.title)),
            figures.isEmpty() ? QStringLiteral("  no colours") : figures);
}
