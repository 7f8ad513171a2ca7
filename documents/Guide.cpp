#include "Guide.h"

#include <QAbstractTextDocumentLayout>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextTable>

namespace {

// Formats of a text document count in pixels of 96 an inch, whatever device it is painted on.
constexpr double pixelsPerPoint = 96.0 / 72;
constexpr double pictureScale = 96.0 / 192;

constexpr double sideMargin = 62; // points
constexpr double topMargin = 60;
constexpr double bottomMargin = 72;
constexpr int dotsPerInch = 600;

const QColor headingColor(0x1f, 0x3b, 0x57);
const QColor ruleColor(0xc9, 0xd3, 0xdd);
const QColor footerColor(0x70, 0x7a, 0x84);

const QString contentsMark = QStringLiteral("[contents]");

QFont footerFont()
{
    return QFont(QStringLiteral("DejaVu Sans"), 8);
}

int toDots(double points)
{
    return qRound(points * dotsPerInch / 72);
}

// By the level of a heading; 0 is text.
double fontSize(int level)
{
    switch (level) {
    case 0:
        return 9.5;
    case 1:
        return 24;
    case 2:
        return 15;
    default:
        return 11;
    }
}

// The title of a picture, "60 %", says how much of the width it may take.
double shareOfWidth(const QTextImageFormat &format)
{
    const QString title = format.stringProperty(QTextFormat::ImageTitle);
    return title.endsWith(u'%') ? title.chopped(1).trimmed().toDouble() / 100 : 1;
}

QTextBlockFormat blockFormat(const QTextBlock &block)
{
    QTextBlockFormat format = block.blockFormat();
    const int level = format.headingLevel();
    const bool isItem = block.textList() != nullptr;
    format.setTopMargin((level == 0 ? 0 : level == 2 ? 20 : 12) * pixelsPerPoint);
    format.setBottomMargin((level == 0 ? (isItem ? 3 : 7) : 6) * pixelsPerPoint);
    if (level == 0) {
        format.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
    }
    return format;
}

} // namespace

Guide::Guide(const QStringList &sources)
    : _sources(sources)
{ }

bool Guide::write(QPdfWriter &writer)
{
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins({});
    writer.setResolution(dotsPerInch);
    _area = QSizeF(writer.width() - 2 * toDots(sideMargin),
        writer.height() - toDots(topMargin) - toDots(bottomMargin));
    if (!read()) {
        return false;
    }
    setStyle();
    setTableStyle();
    _text.documentLayout()->setPaintDevice(&writer);
    _text.setPageSize(_area);
    if (!sizePictures()) {
        return false;
    }
    // The list of contents takes its room before the pages are known.
    fillContents();
    keepHeadingsWithText();
    fillContents();
    paint(writer);
    return true;
}

bool Guide::read()
{
    QString markdown;
    for (const QString &source : _sources) {
        QFile file(source);
        if (!file.open(QIODevice::ReadOnly)) {
            qWarning().noquote() << "cannot read" << source + ":" << file.errorString();
            return false;
        }
        markdown += QString::fromUtf8(file.readAll()) + QStringLiteral("\n\n");
    }
    _text.setDocumentMargin(0);
    _text.setUseDesignMetrics(true);
    _text.setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    _text.setBaseUrl(QUrl::fromLocalFile(QFileInfo(_sources.value(0)).absolutePath() + u'/'));
    _text.setMarkdown(markdown);
    return true;
}

void Guide::setStyle()
{
    for (QTextBlock block = _text.begin(); block.isValid(); block = block.next()) {
        QTextCursor cursor(block);
        cursor.setBlockFormat(blockFormat(block));
        const int level = block.blockFormat().headingLevel();
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            QTextCharFormat format = fragment.charFormat();
            const bool isCode = format.fontFixedPitch();
            const QString family =
                isCode ? QStringLiteral("DejaVu Sans Mono") : QStringLiteral("DejaVu Sans");
            format.setFontFamilies({ family });
            format.clearProperty(QTextFormat::FontSizeAdjustment);
            format.setFontPointSize(fontSize(level) - (isCode ? 0.5 : 0));
            if (level > 0) {
                format.setForeground(headingColor);
            }
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
        }
    }
}

bool Guide::sizePictures()
{
    const double widest = _area.width() * 96 / dotsPerInch;
    for (QTextBlock block = _text.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (!fragment.charFormat().isImageFormat()) {
                continue;
            }
            QTextImageFormat format = fragment.charFormat().toImageFormat();
            const QUrl url = _text.baseUrl().resolved(QUrl(format.name()));
            const QImage picture(url.toLocalFile());
            if (picture.isNull()) {
                qWarning().noquote() << "cannot read" << url.toLocalFile();
                return false;
            }
            QSizeF size = QSizeF(picture.size()) * pictureScale;
            const double room = widest * shareOfWidth(format);
            if (size.width() > room) {
                size *= room / size.width();
            }
            format.setWidth(size.width());
            format.setHeight(size.height());
            QTextCursor cursor(&_text);
            cursor.setPosition(fragment.position());
            cursor.setPosition(fragment.position() + fragment.length(), QTextCursor::KeepAnchor);
            cursor.setCharFormat(format);
            QTextBlockFormat blockFormat = block.blockFormat();
            blockFormat.setAlignment(Qt::AlignHCenter);
            blockFormat.setLineHeight(0, QTextBlockFormat::SingleHeight);
            cursor.setBlockFormat(blockFormat);
            // The iterator does not outlive the change.
            break;
        }
    }
    return true;
}

void Guide::setTableStyle()
{
    for (QTextFrame *const frame : _text.rootFrame()->childFrames()) {
        auto *const table = qobject_cast<QTextTable *>(frame);
        if (table == nullptr) {
            continue;
        }
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(0.5);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(ruleColor);
        format.setCellPadding(4 * pixelsPerPoint);
        format.setCellSpacing(0);
        format.setBottomMargin(9 * pixelsPerPoint);
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        table->setFormat(format);
        for (int row = 0; row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                QTextCursor cursor = table->cellAt(row, column).firstCursorPosition();
                QTextBlockFormat cellFormat = cursor.blockFormat();
                cellFormat.setBottomMargin(0);
                cursor.setBlockFormat(cellFormat);
            }
        }
    }
}

int Guide::pageOf(const QTextBlock &block) const
{
    const QRectF place = _text.documentLayout()->blockBoundingRect(block);
    return int((place.top() + 1) / _area.height());
}

// The first call replaces the mark, each later one the list that is there.
void Guide::fillContents()
{
    QTextBlock mark = _text.begin();
    while (mark.isValid() && mark.text() != contentsMark
        && mark.userState() != int(contentsMark.size())) {
        mark = mark.next();
    }
    if (!mark.isValid()) {
        return;
    }
    QStringList lines;
    for (QTextBlock block = _text.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 2) {
            lines += block.text() + u'\t' + QString::number(pageOf(block) + 1);
        }
    }
    QTextBlockFormat format = mark.blockFormat();
    QTextOption::Tab tab;
    tab.position = _area.width() * 96 / dotsPerInch;
    tab.type = QTextOption::RightTab;
    format.setTabPositions({ tab });
    format.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
    QTextCursor cursor(mark);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.insertText(lines.join(QChar::LineSeparator));
    cursor.setBlockFormat(format);
    cursor.block().setUserState(int(contentsMark.size()));
}

// A heading at the foot of a page goes to the next one, and so does a line that announces a picture
// or a table which no longer fits.
void Guide::keepHeadingsWithText()
{
    for (QTextBlock block = _text.begin(); block.isValid(); block = block.next()) {
        const QTextBlock next = block.next();
        if (block.blockFormat().headingLevel() > 0 && next.isValid()
            && pageOf(next) != pageOf(block)) {
            QTextBlockFormat format = block.blockFormat();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            QTextCursor(block).setBlockFormat(format);
        }
    }
}

void Guide::paint(QPdfWriter &writer) const
{
    QPainter painter(&writer);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    const int pages = _text.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0) {
            writer.newPage();
        }
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, Qt::black);
        context.clip = QRectF(QPointF(0, page * _area.height()), _area);
        painter.save();
        painter.translate(toDots(sideMargin), toDots(topMargin) - page * _area.height());
        painter.setClipRect(context.clip);
        _text.documentLayout()->draw(&painter, context);
        painter.restore();

        painter.setFont(footerFont());
        painter.setPen(footerColor);
        const QRectF footer(toDots(sideMargin), writer.height() - toDots(bottomMargin) * 0.6,
            _area.width(), toDots(12));
        painter.drawText(footer, Qt::AlignLeft, writer.title());
        painter.drawText(footer, Qt::AlignRight, QString::number(page + 1));
    }
}
