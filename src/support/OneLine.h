// Text for a log or a terminal that comes from outside: names of files, reasons of libraries.

#pragma once

#include <QString>

// The text as one line that no terminal takes for an instruction: whatever breaks a line or
// controls the terminal becomes a question mark.
inline QString oneLine(QString text)
{
    for (QChar &c : text) {
        const QChar::Category category = c.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph) {
            c = QChar(u'?');
        }
    }
    return text;
}
