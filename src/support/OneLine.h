// Text from outside that the panel shows in one line: names of applications, of folders.

#pragma once

#include <QString>

// The text with a question mark for whatever breaks a line or has no picture of its own.
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
