#include "platform/freedesktop/FreedesktopWording.h"

#include <QRegularExpression>

#include <array>

namespace {

struct Wording
{
    QRegularExpression what;
    QString ours;
};

// The word for a key: one of a row that "+" joins, or alone, with at most a symbol beside it.
QRegularExpression key(const QString &word)
{
    return QRegularExpression(
        QStringLiteral(R"(\b%1\b(?=\s*\+)|^[^\pL]*\K\b%1\b(?=[^\pL]*$))").arg(word),
        QRegularExpression::CaseInsensitiveOption);
}

const std::array<Wording, 4> &wordings()
{
    static const std::array<Wording, 4> list { {
        { QRegularExpression(QStringLiteral(R"(\bthe Finder\b)")),
            QStringLiteral("the file manager") },
        { QRegularExpression(QStringLiteral(R"(\bFinder\b)")), QStringLiteral("File Manager") },
        { key(QStringLiteral("option")), QStringLiteral("Alt") },
        { key(QStringLiteral("command")), QStringLiteral("Super") },
    } };
    return list;
}

} // namespace

QString FreedesktopWording::translate(const char *, const char *sourceText, const char *, int) const
{
    const QString source = QString::fromUtf8(sourceText);
    QString text = source;
    for (const Wording &wording : wordings()) {
        text.replace(wording.what, wording.ours);
    }
    return text == source ? QString() : text;
}
