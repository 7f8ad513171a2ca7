// A document to leaf through on the screen: each source is one page of a fixed size, with a picture
// over a heading and a few sentences.
//
// A source is Markdown. Its first picture goes to the top, over the whole width; a line "free: N"
// keeps N points at the lower edge of the page empty, for what the program shows there.

#pragma once

#include <QPdfWriter>
#include <QString>
#include <QStringList>

#include <utility>

class QPainter;

class Slides final
{
public:
    explicit Slides(QStringList sources)
        : _sources(std::move(sources))
    { }

    // False when a source or a picture cannot be read, or a page holds more text than fits; the
    // reason is in the log.
    bool write(QPdfWriter &writer) const;

private:
    static bool paint(const QString &source, QPainter &painter);

    QStringList _sources;
};
