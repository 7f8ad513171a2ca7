#include "platform/freedesktop/entries/EntryWords.h"

#include "platform/freedesktop/base/FileState.h"
#include "platform/freedesktop/base/KeyFile.h"
#include "platform/freedesktop/entries/DesktopEntry.h"
#include "platform/freedesktop/entries/EntryText.h"

#include <glib.h>
#include <limits>
#include <optional>

namespace {

// The untranslated value, and the best translation; that is the former where there is none.
struct Translated
{
    std::string_view untranslated;
    std::string_view best;
    qsizetype rank = std::numeric_limits<qsizetype>::max();

    void take(std::string_view value, qsizetype newRank, qsizetype rankOfUntranslated)
    {
        if (newRank < 0 || value.empty()) {
            return;
        }
        if (newRank == rankOfUntranslated) {
            untranslated = value;
        }
        if (newRank <= rank) {
            best = value;
            rank = newRank;
        }
    }
};

struct RawWords
{
    Translated name;
    Translated genericName;
    Translated keywords;
    std::string_view exec;
    std::string_view tryExec;
    bool hasActions = false;
};

QString textOf(std::string_view value)
{
    return QString::fromUtf8(EntryText::unescaped(value));
}

QString fileNameOf(const QString &program)
{
    return program.section(QLatin1Char('/'), -1);
}

// Of a command line; that of the program which `env` starts.
QString programIn(const QByteArray &commandLine)
{
    int count = 0;
    char **words = nullptr;
    if (g_shell_parse_argv(commandLine.constData(), &count, &words, nullptr) == FALSE) {
        return {};
    }
    QString program = fileNameOf(QString::fromLocal8Bit(words[0]));
    for (int i = 1; i < count && program == QLatin1String("env"); ++i) {
        const QString word = QString::fromLocal8Bit(words[i]);
        if (!word.contains(QLatin1Char('=')) && !word.startsWith(QLatin1Char('-'))) {
            program = fileNameOf(word);
        }
    }
    g_strfreev(words);
    return program;
}

RawWords rawWordsIn(std::string_view text, const QList<QByteArray> &languages)
{
    RawWords words;
    KeyFileReader file(text);
    while (file.readNext()) {
        if (file.line() != KeyFileReader::Line::Pair || file.group() != "Desktop Entry") {
            continue;
        }
        std::string_view key = file.key();
        qsizetype rank = languages.size();
        const size_t bracket = key.find('[');
        if (bracket != std::string_view::npos && key.back() == ']') {
            const std::string_view language = key.substr(bracket + 1, key.size() - bracket - 2);
            rank = languages.indexOf(
                QByteArray::fromRawData(language.data(), qsizetype(language.size())));
            key = key.substr(0, bracket);
        }
        if (key == "Name") {
            words.name.take(file.value(), rank, languages.size());
        } else if (key == "GenericName") {
            words.genericName.take(file.value(), rank, languages.size());
        } else if (key == "Keywords") {
            words.keywords.take(file.value(), rank, languages.size());
        } else if (key == "Exec") {
            words.exec = file.value();
        } else if (key == "TryExec") {
            words.tryExec = file.value();
        } else if (key == "Actions") {
            words.hasActions = !file.value().empty();
        }
    }
    return words;
}

} // namespace

ItemWords EntryWords::in(const QByteArray &data, const QList<QByteArray> &languages)
{
    const RawWords raw = rawWordsIn({ data.constData(), size_t(data.size()) }, languages);
    ItemWords words;
    words.untranslatedName = textOf(raw.name.untranslated);
    words.genericName = textOf(raw.genericName.best);
    words.untranslatedGenericName = textOf(raw.genericName.untranslated);
    words.keywords = EntryText::listIn(raw.keywords.best);
    words.untranslatedKeywords = EntryText::listIn(raw.keywords.untranslated);
    words.commands = { programIn(EntryText::unescaped(raw.exec)), fileNameOf(textOf(raw.tryExec)) };
    words.commands.removeAll(QString());
    words.commands.removeDuplicates();
    words.hasActions = raw.hasActions;
    return words;
}

ItemWords EntryWords::at(const QString &path, const QList<QByteArray> &languages)
{
    QString problem;
    const std::optional<QByteArray> data = readSmallFile(path, DesktopEntry::maximumSize, &problem);
    return data ? in(*data, languages) : ItemWords();
}
