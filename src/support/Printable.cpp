#include "support/Printable.h"

#include <algorithm>

namespace {

// The marks that show the text after them in another order than it is stored in.
bool turnsDirection(QChar c)
{
    return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
}

bool isToBeEscaped(QChar c)
{
    const QChar::Category category = c.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line
        || category == QChar::Separator_Paragraph || turnsDirection(c);
}

QString escape(QChar c)
{
    switch (c.unicode()) {
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    case u'\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
    }
}

} // namespace

QString Printable::escaped(const QString &text)
{
    if (text.isValidUtf16() && std::none_of(text.begin(), text.end(), isToBeEscaped)) {
        return text;
    }
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result.append(c).append(text[++i]);
        } else if (c.isSurrogate() || isToBeEscaped(c)) {
            result += escape(c);
        } else {
            result += c;
        }
    }
    return result;
}
