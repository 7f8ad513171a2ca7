#include "Slides.h"

#include <QAbstractTextDocumentLayout>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>

#include <optional>

namespace {

// In points. A viewer shows a point as a 72nd of an inch of the screen.
constexpr QSizeF pageSize(480, 320);
constexpr double sideMargin = 30;
constexpr double aboveText = 14;
constexpr double belowText = 12;
// A picture lower than this shows nothing.
constexpr double lowestPicture = 80;

constexpr int dotsPerInch = 600;
constexpr double dotsPerPoint = dotsPerInch / 72.0;
constexpr double pixelsPerPoint = 96.0 / 72;

const QColor headingColor(0x1f, 0x3b, 0x57);

struct Slide
{
    QString picture;
    double free = 0; // points
    QString markdown;
};

std::optional<Slide> readSlide(const QString &source)
{
    QFile file(source);
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "cannot read" << source + ":" << file.errorString();
        return std::nullopt;
    }
    static const QRegularExpression pictureLine(QStringLiteral("^!\\[[^]]*\\]\\(([^)]+)\\)$"));
    static const QRegularExpression freeLine(QStringLiteral("^free: *(\\d+)$"));
    Slide slide;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString &line : lines) {
        if (const auto match = pictureLine.match(line); match.hasMatch()) {
            slide.picture = QFileInfo(source).absolutePath() + u'/' + match.captured(1);
        } else if (const auto room = freeLine.match(line); room.hasMatch()) {
            slide.free = room.captured(1).toDouble();
        } else {
            slide.markdown += line + u'\n';
        }
    }
    return slide;
}

void setText(QTextDocument &text, const QString &markdown)
{
    text.setDocumentMargin(0);
    text.setUseDesignMetrics(true);
    text.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    text.setMarkdown(markdown);
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        const bool isHeading = block.blockFormat().headingLevel() > 0;
        QTextBlockFormat blockFormat = block.blockFormat();
        blockFormat.setTopMargin(0);
        blockFormat.setBottomMargin((isHeading ? 5 : 3) * pixelsPerPoint);
        blockFormat.setLineHeight(isHeading ? 100 : 118, QTextBlockFormat::ProportionalHeight);
        QTextCursor(block).setBlockFormat(blockFormat);
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QTextCharFormat format = fragment.charFormat();
            format.setFontFamilies({ QStringLiteral("DejaVu Sans") });
            format.clearProperty(QTextFormat::FontSizeAdjustment);
            format.setFontPointSize(isHeading ? 16 : 9.5);
            if (isHeading) {
                format.setForeground(headingColor);
            }
            QTextCursor cursor(&text);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
        }
    }
}

// As large as fits, on the colour of the picture's corner, so that it seems to fill the area.
void paintPicture(QPainter &painter, const QRectF &area, const QImage &picture)
{
    painter.fillRect(area, picture.pixelColor(0, 0));
    const QSizeF size = QSizeF(picture.size()).scaled(area.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(area.center());
    painter.drawImage(place, picture);
}

} // namespace

bool Slides::write(QPdfWriter &writer) const
{
    writer.setPageSize(QPageSize(pageSize, QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    writer.setResolution(dotsPerInch);
    QPainter painter(&writer);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    for (const QString &source : _sources) {
        if (source != _sources.constFirst()) {
            writer.newPage();
        }
        if (!paint(source, painter)) {
            return false;
        }
    }
    return true;
}

bool Slides::paint(const QString &source, QPainter &painter)
{
    const std::optional<Slide> slide = readSlide(source);
    if (!slide) {
        return false;
    }
    const QImage picture(slide->picture);
    if (picture.isNull()) {
        qWarning().noquote() << "cannot read the picture of" << source + ":" << slide->picture;
        return false;
    }
    QTextDocument text;
    setText(text, slide->markdown);
    text.documentLayout()->setPaintDevice(painter.device());
    text.setTextWidth((pageSize.width() - 2 * sideMargin) * dotsPerPoint);
    const double textHeight = text.size().height() / dotsPerPoint;
    const double textTop = pageSize.height() - slide->free - belowText - textHeight;
    const double pictureHeight = textTop - aboveText;
    if (pictureHeight < lowestPicture) {
        qWarning().noquote() << "too much text for a page:" << source;
        return false;
    }
    painter.save();
    paintPicture(painter,
        QRectF(0, 0, pageSize.width() * dotsPerPoint, pictureHeight * dotsPerPoint), picture);
    painter.translate(sideMargin * dotsPerPoint, textTop * dotsPerPoint);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette.setColor(QPalette::Text, Qt::black);
    text.documentLayout()->draw(&painter, context);
    painter.restore();
    return true;
}
