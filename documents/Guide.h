// A document to read and to print: Markdown flows over A4 pages, which are numbered.
//
// A paragraph "[contents]" is replaced by a list of the headings of the second level with their
// pages. Pictures count as taken at 192 dots per inch and are no wider than the text, or than the
// share of it that their title names, as in ![…](… "60 %"). A picture is all of its paragraph.

#pragma once

#include <QPdfWriter>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTextDocument>

#include <memory>

class Guide final
{
public:
    // The sources are read one after the other; names of pictures count from the folder of the
    // first.
    explicit Guide(QStringList sources);

    // False when a source or a picture cannot be read, or the writer cannot write; the reason is in
    // the log.
    bool write(QPdfWriter &writer);

private:
    // What a layout told about the pages.
    struct Pages
    {
        // The lines of the list of contents.
        QStringList contents;
        // By their numbers, the headings that begin a page since their text does, and the tables
        // and short paragraphs that would be torn apart.
        QSet<int> breaks;

        bool operator==(const Pages &) const = default;
    };

    bool read();
    // Makes the document anew, complete before it is laid out: Qt places blocks wrongly that are
    // changed on a page which has been laid out. Empty when a picture cannot be read.
    std::unique_ptr<QTextDocument> laidOut(QPdfWriter &writer, const Pages &pages) const;
    bool sizePictures(QTextDocument &text) const;
    void fillContents(QTextDocument &text, const QStringList &lines) const;
    Pages pagesOf(const QTextDocument &text, const Pages &asked) const;
    // The heading, table or short paragraph that is to begin a page; invalid when all is well.
    QTextBlock firstTorn(const QTextDocument &text) const;
    bool isTorn(const QTextBlock &block) const;
    // The page with the end of a block, and the one with its first line.
    int pageOf(const QTextBlock &block) const;
    int firstPageOf(const QTextBlock &block) const;
    void paint(const QTextDocument &text, QPdfWriter &writer) const;

    QStringList _sources;
    QString _markdown;
    // The area of the text on a page, in dots of the writer.
    QSizeF _area;
};
