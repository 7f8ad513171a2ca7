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
#include <QTextLayout>
#include <QTextTable>

#include <utility>

namespace {

// Formats of a text document count in pixels of 96 an inch, whatever device it is painted on.
constexpr double pixelsPerPoint = 96.0 / 72;
constexpr double pictureScale = 96.0 / 192;

constexpr double sideMargin = 62; // points
constexpr double topMargin = 60;
constexpr double bottomMargin = 72;
constexpr int dotsPerInch = 600;
// A paragraph of so many lines is not torn apart.
constexpr int fewLines = 3;
// Of two in a table, in percent.
constexpr double firstColumn = 40;

// Of layouts until the pages stay as they are.
constexpr int mostRounds = 100;

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

struct Range
{
    int position;
    int length;
    QTextCharFormat format;
};

// Collected before they are changed, which moves their limits.
QList<Range> rangesOf(const QTextBlock &block)
{
    QList<Range> ranges;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        ranges.append({ fragment.position(), fragment.length(), fragment.charFormat() });
    }
    return ranges;
}

void setFormat(QTextDocument &text, const Range &range)
{
    QTextCursor cursor(&text);
    cursor.setPosition(range.position);
    cursor.setPosition(range.position + range.length, QTextCursor::KeepAnchor);
    cursor.setCharFormat(range.format);
}

void setStyle(QTextDocument &text)
{
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        QTextCursor(block).setBlockFormat(blockFormat(block));
        const int level = block.blockFormat().headingLevel();
        const QList<Range> ranges = rangesOf(block);
        for (Range range : ranges) {
            const bool isCode = range.format.fontFixedPitch();
            range.format.setFontFamilies(
                { isCode ? QStringLiteral("DejaVu Sans Mono") : QStringLiteral("DejaVu Sans") });
            range.format.clearProperty(QTextFormat::FontSizeAdjustment);
            range.format.setFontPointSize(fontSize(level) - (isCode ? 0.5 : 0));
            if (level > 0) {
                range.format.setForeground(headingColor);
            }
            setFormat(text, range);
        }
    }
}

QList<QTextTable *> tablesOf(const QTextDocument &text)
{
    QList<QTextTable *> tables;
    for (QTextFrame *const frame : text.rootFrame()->childFrames()) {
        if (auto *const table = qobject_cast<QTextTable *>(frame)) {
            tables.append(table);
        }
    }
    return tables;
}

QTextTableCellFormat cellFormat(bool isHeading)
{
    QTextTableCellFormat format;
    format.setBottomBorder(1);
    format.setBottomBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBottomBorderBrush(isHeading ? headingColor : ruleColor);
    format.setTopPadding(3 * pixelsPerPoint);
    format.setBottomPadding(3 * pixelsPerPoint);
    format.setRightPadding(8 * pixelsPerPoint);
    return format;
}

void setTableStyle(const QTextDocument &text)
{
    const QList<QTextTable *> tables = tablesOf(text);
    for (QTextTable *const table : tables) {
        QTextTableFormat format = table->format();
        format.setBorderCollapse(true);
        format.setBorder(0);
        format.setCellPadding(0);
        format.setCellSpacing(0);
        format.setTopMargin(4 * pixelsPerPoint);
        format.setBottomMargin(10 * pixelsPerPoint);
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        format.setColumnWidthConstraints({ QTextLength(QTextLength::PercentageLength, firstColumn),
            QTextLength(QTextLength::PercentageLength, 100 - firstColumn) });
        table->setFormat(format);
        for (int row = 0; row < table->rows(); ++row) {
            for (int column = 0; column < table->columns(); ++column) {
                QTextTableCell cell = table->cellAt(row, column);
                cell.setFormat(cellFormat(row == 0));
                QTextCursor cursor = cell.firstCursorPosition();
                QTextBlockFormat blockFormat = cursor.blockFormat();
                blockFormat.setBottomMargin(0);
                cursor.setBlockFormat(blockFormat);
            }
        }
    }
}

void breakBefore(QTextDocument &text, const QSet<int> &blocks)
{
    for (const int number : blocks) {
        QTextCursor cursor(text.findBlockByNumber(number));
        if (QTextTable *const table = cursor.currentTable()) {
            QTextTableFormat format = table->format();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            table->setFormat(format);
        } else {
            QTextBlockFormat format = cursor.blockFormat();
            format.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
            cursor.setBlockFormat(format);
        }
    }
}

} // namespace

Guide::Guide(QStringList sources)
    : _sources(std::move(sources))
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
    // The list of contents takes its room before its pages are known, and each heading that goes to
    // the next page moves what follows.
    Pages pages;
    for (int round = 0; round < mostRounds; ++round) {
        const std::unique_ptr<QTextDocument> text = laidOut(writer, pages);
        if (!text) {
            return false;
        }
        const Pages found = pagesOf(*text, pages);
        if (found == pages) {
            paint(*text, writer);
            return true;
        }
        pages = found;
    }
    qWarning("the pages do not settle");
    return false;
}

bool Guide::read()
{
    for (const QString &source : _sources) {
        QFile file(source);
        if (!file.open(QIODevice::ReadOnly)) {
            qWarning().noquote() << "cannot read" << source + ":" << file.errorString();
            return false;
        }
        _markdown += QString::fromUtf8(file.readAll()) + QStringLiteral("\n\n");
    }
    return true;
}

std::unique_ptr<QTextDocument> Guide::laidOut(QPdfWriter &writer, const Pages &pages) const
{
    auto text = std::make_unique<QTextDocument>();
    text->setDocumentMargin(0);
    text->setUseDesignMetrics(true);
    text->setIndentWidth(20 * pixelsPerPoint);
    text->setDefaultFont(QFont(QStringLiteral("DejaVu Sans"), 10));
    text->setBaseUrl(QUrl::fromLocalFile(QFileInfo(_sources.value(0)).absolutePath() + u'/'));
    text->setMarkdown(_markdown);
    setStyle(*text);
    setTableStyle(*text);
    if (!sizePictures(*text)) {
        return nullptr;
    }
    breakBefore(*text, pages.breaks);
    fillContents(*text, pages.contents);
    text->documentLayout()->setPaintDevice(&writer);
    text->setPageSize(_area);
    return text;
}

bool Guide::sizePictures(QTextDocument &text) const
{
    const double widest = _area.width() * 96 / dotsPerInch;
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        const QList<Range> ranges = rangesOf(block);
        for (const Range &range : ranges) {
            if (!range.format.isImageFormat()) {
                continue;
            }
            QTextImageFormat format = range.format.toImageFormat();
            const QString path = text.baseUrl().resolved(QUrl(format.name())).toLocalFile();
            const QImage picture(path);
            if (picture.isNull()) {
                qWarning().noquote() << "cannot read" << path;
                return false;
            }
            QSizeF size = QSizeF(picture.size()) * pictureScale;
            const double room = widest * shareOfWidth(format);
            if (size.width() > room) {
                size *= room / size.width();
            }
            format.setWidth(size.width());
            format.setHeight(size.height());
            setFormat(text, { range.position, range.length, format });
            QTextBlockFormat blockFormat = block.blockFormat();
            blockFormat.setAlignment(Qt::AlignHCenter);
            blockFormat.setLineHeight(0, QTextBlockFormat::SingleHeight);
            QTextCursor(block).setBlockFormat(blockFormat);
        }
    }
    return true;
}

void Guide::fillContents(QTextDocument &text, const QStringList &lines) const
{
    const QTextCursor mark = text.find(contentsMark);
    if (mark.isNull()) {
        return;
    }
    QTextOption::Tab tab;
    tab.position = _area.width() * 96 / dotsPerInch;
    tab.type = QTextOption::RightTab;
    QTextCursor cursor(mark);
    QTextBlockFormat format = cursor.blockFormat();
    format.setTabPositions({ tab });
    format.setBottomMargin(0);
    format.setLineHeight(150, QTextBlockFormat::ProportionalHeight);
    cursor.setBlockFormat(format);
    cursor.removeSelectedText();
    for (const QString &line : lines) {
        if (line != lines.constFirst()) {
            cursor.insertBlock();
        }
        cursor.insertText(line);
    }
}

// Numbers of blocks are those of the document without its list of contents.
Guide::Pages Guide::pagesOf(const QTextDocument &text, const Pages &asked) const
{
    Pages pages { .contents = {}, .breaks = asked.breaks };
    for (QTextBlock block = text.begin(); block.isValid(); block = block.next()) {
        const int level = block.blockFormat().headingLevel();
        if (level == 2) {
            pages.contents += block.text() + u'\t' + QString::number(pageOf(block) + 1);
        }
    }
    // Without the list of contents, everything is on another page.
    if (pages.contents.size() != asked.contents.size()) {
        return pages;
    }
    if (const QTextBlock torn = firstTorn(text); torn.isValid()) {
        const int listLength = qMax(int(asked.contents.size()), 1) - 1;
        pages.breaks.insert(torn.blockNumber() - listLength);
    }
    return pages;
}

// The first alone, since what follows moves with it.
QTextBlock Guide::firstTorn(const QTextDocument &text) const
{
    QTextBlock block = text.begin();
    while (block.isValid() && !isTorn(block)) {
        block = block.next();
    }
    const QTextBlock before = block.previous();
    return before.isValid() && before.blockFormat().headingLevel() > 0 ? before : block;
}

bool Guide::isTorn(const QTextBlock &block) const
{
    const QTextBlock next = block.next();
    if (block.blockFormat().headingLevel() > 0) {
        return next.isValid() && pageOf(next) != pageOf(block);
    }
    if (const QTextTable *const table = QTextCursor(block).currentTable()) {
        return block == table->firstCursorPosition().block()
            && pageOf(block) != pageOf(table->lastCursorPosition().block());
    }
    const int lines = block.layout()->lineCount();
    return lines > 1 && lines <= fewLines && firstPageOf(block) != pageOf(block);
}

int Guide::pageOf(const QTextBlock &block) const
{
    const QRectF place = block.document()->documentLayout()->blockBoundingRect(block);
    // Its margin may hang over the end of the page before.
    return int((place.bottom() - 1) / _area.height());
}

int Guide::firstPageOf(const QTextBlock &block) const
{
    const QTextLayout &layout = *block.layout();
    return int((layout.position().y() + layout.lineAt(0).rect().bottom() - 1) / _area.height());
}

void Guide::paint(const QTextDocument &text, QPdfWriter &writer) const
{
    QPainter painter(&writer);
    painter.setRenderHint(QPainter::LosslessImageRendering);
    const int pages = text.pageCount();
    for (int page = 0; page < pages; ++page) {
        if (page > 0) {
            writer.newPage();
        }
        QAbstractTextDocumentLayout::PaintContext context;
        context.palette.setColor(QPalette::Text, Qt::black);
        context.clip = QRectF(QPointF(0, page * _area.height()), _area);
        painter.save();
        painter.translate(toDots(sideMargin), toDots(topMargin) - page * _area.height());
        // A picture at the top of the next page reaches over a little.
        painter.setClipRect(context.clip.adjusted(0, 0, 0, -toDots(2)));
        text.documentLayout()->draw(&painter, context);
        painter.restore();

        painter.setFont(footerFont());
        painter.setPen(footerColor);
        const QRectF footer(toDots(sideMargin), writer.height() - toDots(bottomMargin) * 0.6,
            _area.width(), toDots(12));
        painter.drawText(footer, Qt::AlignLeft, writer.title());
        painter.drawText(footer, Qt::AlignRight, QString::number(page + 1));
    }
}
