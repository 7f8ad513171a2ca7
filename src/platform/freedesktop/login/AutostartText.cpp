#include "platform/freedesktop/login/AutostartText.h"

#include "platform/freedesktop/base/KeyFile.h"

#include <QFile>

#include <utility>

namespace {

// Both levels of
// https://specifications.freedesktop.org/desktop-entry-spec/latest/exec-variables.html: what the
// quotes of Exec need is escaped first, then what any value needs.
QByteArray valueText(const QByteArray &text)
{
    QByteArray result = text;
    result.replace('\\', "\\\\").replace('\n', "\\n").replace('\t', "\\t").replace('\r', "\\r");
    return result;
}

QByteArray quoted(const QByteArray &argument)
{
    constexpr std::string_view reserved = " \t\n\r\"'\\><~|&;$*?#()`";
    constexpr std::string_view escaped = "\"`$\\";
    const bool needsQuotes = argument.isEmpty()
        || std::string_view(argument.constData(), size_t(argument.size())).find_first_of(reserved)
            != std::string_view::npos;
    QByteArray result;
    for (const char character : argument) {
        if (escaped.find(character) != std::string_view::npos) {
            result.append('\\');
        }
        result.append(character == '%' ? QByteArrayLiteral("%%") : QByteArray(1, character));
    }
    return needsQuotes ? '"' + result + '"' : result;
}

} // namespace

QByteArray AutostartText::commandLine(const LoginItem &item)
{
    QByteArray line = quoted(QFile::encodeName(item.program));
    for (const QString &argument : item.arguments) {
        line += ' ' + quoted(argument.toLocal8Bit());
    }
    return valueText(line);
}

QByteArray AutostartText::entryFor(const LoginItem &item)
{
    return "[Desktop Entry]\nType=Application\nName=" + valueText(item.name.toUtf8())
        + "\nIcon=" + valueText(item.icon.toUtf8()) + "\nExec=" + commandLine(item)
        + "\nTerminal=false\nStartupNotify=false\n";
}

QByteArray AutostartText::withValue(
    const QByteArray &text, std::string_view key, const std::optional<QByteArray> &value)
{
    QByteArray result;
    // Where the first value stood, or just below the beginning of the group.
    qsizetype place = -1;
    bool isFound = false;
    bool isInMainGroup = false;
    for (qsizetype start = 0, end = 0; start < text.size(); start = end) {
        end = text.indexOf('\n', start) + 1;
        end = end > 0 ? end : text.size();
        const std::string_view line(text.constData() + start, size_t(end - start));
        KeyFileReader reader(line);
        const bool isGroup = reader.readNext() && reader.line() == KeyFileReader::Line::Group;
        const bool isValue =
            isInMainGroup && reader.line() == KeyFileReader::Line::Pair && reader.key() == key;
        if (isValue && !std::exchange(isFound, true)) {
            place = result.size();
        }
        if (!isValue) {
            result.append(line.data(), qsizetype(line.size()));
        }
        if (isGroup) {
            isInMainGroup = reader.group() == "Desktop Entry";
            place = isInMainGroup && place < 0 ? result.size() : place;
        }
    }
    if (value && place >= 0) {
        const char *const lineEnd = result.left(place).endsWith('\n') ? "" : "\n";
        result.insert(
            place, lineEnd + QByteArray(key.data(), qsizetype(key.size())) + '=' + *value + '\n');
    }
    return result;
}
