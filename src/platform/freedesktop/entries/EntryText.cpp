#include "platform/freedesktop/entries/EntryText.h"

#include "platform/freedesktop/base/KeyFile.h"

#include <algorithm>

using namespace EntryText;

namespace {

struct KnownKey
{
    std::string_view name;
    bool isTranslated = false;
};

constexpr std::array<KnownKey, KeyCount> knownKeys { { { "Type" }, { "Name", true },
    { "GenericName", true }, { "Icon", true }, { "Exec" }, { "TryExec" }, { "NoDisplay" },
    { "Hidden" }, { "OnlyShowIn" }, { "NotShowIn" }, { "StartupWMClass" }, { "DBusActivatable" },
    { "Terminal" }, { "X-Flatpak" }, { "X-SnapInstanceName" }, { "MimeType" } } };

// Takes the raw values that are wanted.
class GroupReader final
{
public:
    GroupReader(const QList<QByteArray> &languages, Values &values)
        : _languages(languages)
        , _values(values)
    { }

    // False, with the reason, when the text is not what a desktop entry has to be.
    bool read(std::string_view text, QString *problem);

private:
    void readPair(std::string_view key, std::string_view value);
    qsizetype rankOf(std::string_view language) const;

    const QList<QByteArray> &_languages;
    Values &_values;
};

bool GroupReader::read(std::string_view text, QString *problem)
{
    KeyFileReader file(text);
    bool hasGroup = false;
    bool isInMainGroup = false;
    while (file.readNext()) {
        if (file.line() == KeyFileReader::Line::Group) {
            isInMainGroup = file.group() == "Desktop Entry";
            if (!hasGroup && !isInMainGroup) {
                // GIO and the entry standard both want the main group to come first.
                *problem = QStringLiteral("does not begin with [Desktop Entry]");
                return false;
            }
            hasGroup = true;
        } else if (!hasGroup || (isInMainGroup && file.line() != KeyFileReader::Line::Pair)) {
            *problem = QStringLiteral("line %1 is not KEY=VALUE").arg(file.lineNumber());
            return false;
        } else if (isInMainGroup) {
            readPair(file.key(), file.value());
        }
    }
    if (!hasGroup) {
        *problem = QStringLiteral("no [Desktop Entry]");
    }
    return hasGroup;
}

void GroupReader::readPair(std::string_view key, std::string_view value)
{
    std::string_view language;
    const size_t bracket = key.find('[');
    if (bracket != std::string_view::npos && key.back() == ']') {
        language = key.substr(bracket + 1, key.size() - bracket - 2);
        key = key.substr(0, bracket);
    }
    const auto known = std::find_if(
        knownKeys.begin(), knownKeys.end(), [key](const KnownKey &one) { return one.name == key; });
    if (known == knownKeys.end() || (!language.empty() && !known->isTranslated)) {
        return;
    }
    // Of equals the later one counts; a translation that was left blank is none.
    RawValue &current = _values[size_t(known - knownKeys.begin())];
    const qsizetype rank = rankOf(language);
    if (rank <= current.rank && rank >= 0 && !(known->isTranslated && value.empty())) {
        current = { value, rank };
    }
}

// The smaller the better; negative when the language is not wanted.
qsizetype GroupReader::rankOf(std::string_view language) const
{
    return language.empty()
        ? _languages.size()
        : _languages.indexOf(QByteArray::fromRawData(language.data(), qsizetype(language.size())));
}

} // namespace

bool EntryText::readValues(
    std::string_view text, const QList<QByteArray> &languages, Values &values, QString *problem)
{
    return GroupReader(languages, values).read(text, problem);
}

QByteArray EntryText::unescaped(std::string_view text)
{
    QByteArray result;
    result.reserve(qsizetype(text.size()));
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            result.append(text[i]);
            continue;
        }
        switch (text[++i]) {
        case 's':
            result.append(' ');
            break;
        case 'n':
            result.append('\n');
            break;
        case 't':
            result.append('\t');
            break;
        case 'r':
            result.append('\r');
            break;
        case '\\':
            result.append('\\');
            break;
        case ';':
            result.append(';');
            break;
        default:
            result.append('\\').append(text[i]);
        }
    }
    return result;
}

QStringList EntryText::listIn(std::string_view text)
{
    QStringList list;
    size_t start = 0;
    for (size_t i = 0; i <= text.size(); ++i) {
        if (i + 1 < text.size() && text[i] == '\\') {
            ++i;
        } else if (i == text.size() || text[i] == ';') {
            const QString item =
                QString::fromUtf8(unescaped(text.substr(start, i - start))).trimmed();
            if (!item.isEmpty()) {
                list.append(item);
            }
            start = i + 1;
        }
    }
    return list;
}

bool EntryText::isTrue(std::string_view text)
{
    return text == "true" || text == "1";
}
