// A document to read and to print: Markdown flows over A4 pages, which are numbered.
//
// A paragraph "[contents]" is replaced by a list of the headings of the second level with their
// pages. Pictures count as taken at 192 dots per inch and are no wider than the text, or than the
// share of it that their title names, as in ![…](… "60 %"). A picture is all of its paragraph.

#pragma once

#include <QPdfWriter>
#include <QString>
#include <QStringList>
#include <QTextDocument>

class Guide final
{
public:
    // The sources are read one after the other; names of pictures count from the folder of the
    // first.
    explicit Guide(const QStringList &sources);

    // False when a source or a picture cannot be read, or the writer cannot write; the reason is in
    // the log.
    bool write(QPdfWriter &writer);

private:
    bool read();
    void setStyle();
    bool sizePictures();
    void setTableStyle();
    void fillContents();
    void keepHeadingsWithText();
    void paint(QPdfWriter &writer) const;
    int pageOf(const QTextBlock &block) const;

    QStringList _sources;
    QTextDocument _text;
    // The area of the text on a page, in dots of the writer.
    QSizeF _area;
};
