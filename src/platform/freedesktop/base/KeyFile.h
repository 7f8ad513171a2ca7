// Reading of key files: groups in brackets, one `key=value` a line, comments after `#`. Desktop
// entries, theme descriptions and the settings files of several desktops look like this.
//
// Values are handed on as they stand, without escapes resolved.

#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

// Goes through a text line by line. Nothing is copied: what it hands out points into the text.
class KeyFileReader final
{
public:
    enum class Line { Group, Pair, Other };

    // A byte order mark is left out.
    explicit KeyFileReader(std::string_view text);

    // Goes to the next line that is neither blank nor a comment. False at the end.
    bool readNext();

    Line line() const { return _line; }
    // The first line of the text has the number 1.
    int lineNumber() const { return _lineNumber; }
    // The group that the line begins or lies in; empty in front of the first one, and after a line
    // that begins a group and does not end its name.
    std::string_view group() const { return _group; }
    // Of a pair, without blanks around them; the key is not empty.
    std::string_view key() const { return _key; }
    std::string_view value() const { return _value; }

private:
    void take(std::string_view line);

    std::string_view _rest;
    std::string_view _group;
    std::string_view _key;
    std::string_view _value;
    Line _line = Line::Other;
    int _lineNumber = 0;
};

// The whole text of a regular file; empty when there is none, it cannot be read, or it is larger
// than any description or settings file (4 MiB).
QByteArray readKeyFile(const QString &path);

// The first value of a key that is not empty; an empty group means any group. Quotes around the
// value are taken off.
QString keyFileValue(const QByteArray &text, std::string_view group, std::string_view key);
