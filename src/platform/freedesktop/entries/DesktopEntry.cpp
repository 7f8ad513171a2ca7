#include "platform/freedesktop/entries/DesktopEntry.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/entries/EntryText.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <glib.h>

using namespace EntryText;

namespace {

constexpr qsizetype longestName = 300;

// A text in one line that has an end, whatever the file's author made of it.
QString presentable(QString text)
{
    for (QChar &character : text) {
        const QChar::Category category = character.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line
            || category == QChar::Separator_Paragraph) {
            character = QLatin1Char(' ');
        }
    }
    text = std::move(text).trimmed();
    if (text.size() > longestName) {
        text.truncate(text.at(longestName - 1).isHighSurrogate() ? longestName - 1 : longestName);
    }
    return text;
}

QString textOf(const RawValue &value)
{
    return QString::fromUtf8(unescaped(value.text)).trimmed();
}

// Takes a command line apart by the rules of the shell. False when its quotes do not match.
bool takeCommandLine(DesktopEntry &entry, const QByteArray &commandLine)
{
    int count = 0;
    char **words = nullptr;
    GError *error = nullptr;
    if (g_shell_parse_argv(commandLine.constData(), &count, &words, &error) == FALSE) {
        const bool isEmpty = g_error_matches(error, G_SHELL_ERROR, G_SHELL_ERROR_EMPTY_STRING);
        g_error_free(error);
        return isEmpty;
    }
    entry.program = QFile::decodeName(words[0]);
    entry.hasArguments =
        std::any_of(words + 1, words + count, [](const char *word) { return word[0] != '%'; });
    g_strfreev(words);
    return true;
}

// Takes the values over and says what they make of the entry.
DesktopEntry::Kind filled(DesktopEntry &entry, const Values &values)
{
    // Stateless, so that a character cut off at the end is an error too.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    entry.name = presentable(decoder(unescaped(values[Name].text)));
    const bool isNameDamaged = decoder.hasError();
    entry.genericName = presentable(QString::fromUtf8(unescaped(values[GenericName].text)));
    entry.icon = textOf(values[Icon]);
    entry.tryExec = textOf(values[TryExec]);
    entry.startupWMClass = textOf(values[StartupWMClass]);
    entry.onlyShowIn = listIn(values[OnlyShowIn].text);
    entry.notShowIn = listIn(values[NotShowIn].text);
    entry.isNoDisplay = isTrue(values[NoDisplay].text);
    entry.isHidden = isTrue(values[Hidden].text);
    entry.isDBusActivatable = isTrue(values[DBusActivatable].text);
    entry.isTerminal = isTrue(values[Terminal].text);
    entry.flatpakId = textOf(values[Flatpak]);
    entry.snapName = textOf(values[SnapInstanceName]);
    const std::string_view types = values[MimeType].text;
    entry.documentTypes = QByteArray(types.data(), qsizetype(types.size()));

    const std::string_view type = values[Type].text;
    if (type != "Application" && (!type.empty() || entry.isHidden)) {
        return DesktopEntry::Kind::Other;
    }
    if (type.empty()) {
        entry.problem = QStringLiteral("no Type");
        return DesktopEntry::Kind::Broken;
    }
    if (!takeCommandLine(entry, unescaped(values[Exec].text))) {
        entry.problem = QStringLiteral("the quotes in Exec do not match");
        return DesktopEntry::Kind::Broken;
    }
    if (entry.program.isEmpty() && !entry.isDBusActivatable && !entry.isHidden) {
        entry.problem = QStringLiteral("no Exec");
        return DesktopEntry::Kind::Broken;
    }
    if (isNameDamaged) {
        entry.problem = QStringLiteral("the name is not in UTF-8");
    }
    return DesktopEntry::Kind::Application;
}

} // namespace

DesktopEntry DesktopEntry::fromFile(const QString &path, const QList<QByteArray> &languages)
{
    QString problem;
    const std::optional<QByteArray> data = readSmallFile(path, maximumSize, &problem);
    if (data) {
        return fromData(*data, languages);
    }
    DesktopEntry entry;
    entry.problem = problem;
    return entry;
}

DesktopEntry DesktopEntry::fromData(const QByteArray &data, const QList<QByteArray> &languages)
{
    DesktopEntry entry;
    Values values;
    if (data.isEmpty()) {
        entry.problem = QStringLiteral("empty");
    } else if (data.contains('\0')) {
        entry.problem = QStringLiteral("binary");
    } else if (readValues(
                   { data.constData(), size_t(data.size()) }, languages, values, &entry.problem)) {
        entry.kind = filled(entry, values);
    }
    return entry;
}

bool DesktopEntry::isShownIn(const QStringList &desktops) const
{
    for (const QString &desktop : desktops) {
        if (onlyShowIn.contains(desktop)) {
            return true;
        }
        if (notShowIn.contains(desktop)) {
            return false;
        }
    }
    return onlyShowIn.isEmpty();
}
