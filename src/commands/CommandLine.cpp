#include "commands/CommandLine.h"

#include "commands/GroupNames.h"
#include "icons/IconParameters.h"

#include <QHash>

#include <cmath>
#include <limits>
#include <utility>

namespace {

using Verb = Invocation::Verb;

// Larger pictures and grids are mistakes: no screen is that wide.
constexpr double LargestBound = 100'000;
constexpr double LargestScale = 8;
constexpr int LargestIconSize = int(IconParameters::LargestIconSize);

std::optional<double> number(const QString &text)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

std::optional<QPair<double, double>> numberPair(const QString &text, QLatin1Char separator)
{
    const QStringList parts = text.split(separator);
    if (parts.size() != 2) {
        return std::nullopt;
    }
    const auto first = number(parts[0]);
    const auto second = number(parts[1]);
    return first && second ? std::optional(qMakePair(*first, *second)) : std::nullopt;
}

class Parser
{
public:
    explicit Parser(const QStringList &arguments)
        : _rest(arguments)
    { }

    Invocation parse()
    {
        while (!_rest.isEmpty() && _call.error.isEmpty()) {
            readOption(_rest.takeFirst());
        }
        if (_call.error.isEmpty()) {
            checkWhole();
        }
        return _call;
    }

private:
    void fail(const QString &why)
    {
        if (_call.error.isEmpty()) {
            _call.error = why;
        }
    }

    void setVerb(Verb verb, const QString &option)
    {
        if (!_verbOption.isEmpty()) {
            fail(QStringLiteral("%1 does not go with %2").arg(option, _verbOption));
        }
        _call.verb = verb;
        _verbOption = option;
    }

    // The next argument when it is no option; a negative number is none.
    std::optional<QString> operand()
    {
        if (_rest.isEmpty()) {
            return std::nullopt;
        }
        const QString &next = _rest.first();
        const bool isOption = next.size() > 1 && next.startsWith(QLatin1Char('-'))
            && !next[1].isDigit() && next[1] != QLatin1Char('.');
        return isOption ? std::nullopt : std::optional(_rest.takeFirst());
    }

    QString requiredOperand(const QString &option, const QString &what)
    {
        const auto given = operand();
        if (!given) {
            fail(QStringLiteral("%1 needs %2").arg(option, what));
        }
        return given.value_or(QString());
    }

    QString requiredFile(const QString &option)
    {
        const QString what = QStringLiteral("a file name");
        const QString file = requiredOperand(option, what);
        if (file.isEmpty()) {
            fail(QStringLiteral("%1 needs %2").arg(option, what));
        }
        return file;
    }

    void readOption(const QString &option)
    {
        if (option == QLatin1String("--")) {
            _call.files += std::exchange(_rest, {});
        } else if (!option.startsWith(QLatin1Char('-'))) {
            _call.files.append(option);
        } else if (!readVerb(option) && !readModifier(option) && !readColorOption(option)) {
            fail(QStringLiteral("unknown option %1").arg(option));
        }
    }

    bool readVerb(const QString &option)
    {
        static const QHash<QString, Verb> bare {
            { QStringLiteral("--toggle"), Verb::Toggle },
            { QStringLiteral("--show"), Verb::Show },
            { QStringLiteral("--hide"), Verb::Hide },
            { QStringLiteral("--preferences"), Verb::Preferences },
            { QStringLiteral("--rescan"), Verb::Rescan },
            { QStringLiteral("--quit"), Verb::Quit },
            { QStringLiteral("--status"), Verb::Status },
            { QStringLiteral("--colors"), Verb::Colors },
            { QStringLiteral("--help"), Verb::Help },
            { QStringLiteral("-h"), Verb::Help },
            { QStringLiteral("--version"), Verb::Version },
        };
        if (const auto verb = bare.constFind(option); verb != bare.constEnd()) {
            setVerb(*verb, option);
        } else if (option == QLatin1String("--list")) {
            setVerb(Verb::List, option);
            readGroup(operand());
        } else if (option == QLatin1String("--layout")) {
            setVerb(Verb::Layout, option);
            readGroup(requiredOperand(option, QStringLiteral("a group")));
        } else if (option == QLatin1String("--defaults")) {
            setVerb(Verb::Defaults, option);
            _call.key = operand();
            _call.value = _call.key ? rawOperand() : std::nullopt;
        } else if (option == QLatin1String("--screenshot")) {
            setVerb(Verb::Screenshot, option);
            _call.file = requiredFile(option);
        } else if (option == QLatin1String("--export")) {
            setVerb(Verb::Export, option);
            _call.file = requiredFile(option);
        } else if (option == QLatin1String("--import")) {
            setVerb(Verb::Import, option);
            _call.file = requiredFile(option);
        } else {
            return false;
        }
        return true;
    }

    // A preference's value may look like anything but one of the options that go with --defaults.
    std::optional<QString> rawOperand()
    {
        return _rest.isEmpty() || _rest.first().startsWith(QLatin1String("--"))
            ? std::nullopt
            : std::optional(_rest.takeFirst());
    }

    bool readModifier(const QString &option)
    {
        if (option == QLatin1String("--set")) {
            readSetting(_rest.isEmpty() ? QString() : _rest.takeFirst());
        } else if (option == QLatin1String("--json")) {
            _call.isJson = true;
            allow(option, { Verb::List, Verb::Colors, Verb::Layout, Verb::Defaults, Verb::Status });
        } else if (option == QLatin1String("--service")) {
            _call.isService = true;
            allow(option, { Verb::Start });
        } else if (option == QLatin1String("--fresh")) {
            _call.isFresh = true;
            allow(option, { Verb::List });
        } else if (option == QLatin1String("--group")) {
            readGroup(requiredOperand(option, QStringLiteral("a group")));
            allow(option, { Verb::Screenshot });
        } else if (option == QLatin1String("--bounds")) {
            readBounds(requiredOperand(option, QStringLiteral("WxH")));
            allow(option, { Verb::Layout, Verb::Screenshot });
        } else if (option == QLatin1String("--at")) {
            readPoints(option);
            allow(option, { Verb::Layout });
        } else if (option == QLatin1String("--rows") || option == QLatin1String("--columns")) {
            readCount(option);
            allow(option, { Verb::Layout });
        } else if (option == QLatin1String("--scale")) {
            readScale(requiredOperand(option, QStringLiteral("a number")));
            allow(option, { Verb::Screenshot });
        } else if (option == QLatin1String("--reset")) {
            _call.resetKey = requiredOperand(option, QStringLiteral("a key"));
            allow(option, { Verb::Defaults });
        } else {
            return false;
        }
        return true;
    }

    bool readColorOption(const QString &option)
    {
        ColorOptions &colors = _call.colors;
        if (option == QLatin1String("--sheet")) {
            _call.sheet = requiredFile(option);
        } else if (option == QLatin1String("--count")) {
            colors.count = readWhole(option, 0, std::numeric_limits<int>::max());
        } else if (option == QLatin1String("--size")) {
            colors.size = readWhole(option, 1, LargestIconSize);
        } else if (option == QLatin1String("--delta-e")) {
            colors.deltaE = readNumber(option);
        } else if (option == QLatin1String("--gray-threshold")) {
            colors.grayThreshold = readNumber(option);
        } else if (option == QLatin1String("--wrap-hue")) {
            colors.wrapHue = readNumber(option);
        } else if (option == QLatin1String("--min-saturation")) {
            colors.minSaturation = readNumber(option);
        } else if (option == QLatin1String("--min-luminosity")) {
            colors.minLuminosity = readNumber(option);
        } else if (option == QLatin1String("--grays-by-secondary-color")) {
            colors.graysBySecondaryColor = true;
        } else {
            return false;
        }
        allow(option, { Verb::Colors });
        return true;
    }

    // Options may stand before their verb, so what goes with what is judged at the end.
    void allow(const QString &option, const QList<Verb> &verbs)
    {
        _modifiers.append({ option, verbs });
    }

    void readGroup(const std::optional<QString> &text)
    {
        if (text && !groupFromText(*text)) {
            fail(QStringLiteral("no such group: %1").arg(*text));
        }
        _call.group = text;
    }

    void readSetting(const QString &text)
    {
        const qsizetype equals = text.indexOf(QLatin1Char('='));
        if (equals < 1) {
            fail(QStringLiteral("--set needs KEY=VALUE"));
            return;
        }
        _call.settings.append({ text.left(equals), text.mid(equals + 1) });
    }

    void readBounds(const QString &text)
    {
        const auto pair = numberPair(text, QLatin1Char('x'));
        if (!pair || pair->first <= 0 || pair->second <= 0 || pair->first > LargestBound
            || pair->second > LargestBound) {
            fail(QStringLiteral("--bounds needs WxH, both above 0: %1").arg(text));
            return;
        }
        _call.bounds = QSizeF(pair->first, pair->second);
    }

    void readPoints(const QString &option)
    {
        for (auto text = operand(); text; text = operand()) {
            const auto pair = numberPair(*text, QLatin1Char(','));
            if (!pair) {
                fail(QStringLiteral("--at needs X,Y: %1").arg(*text));
                return;
            }
            _call.points.append({ pair->first, pair->second });
        }
        if (_call.points.isEmpty()) {
            fail(QStringLiteral("%1 needs X,Y").arg(option));
        }
    }

    void readCount(const QString &option)
    {
        (option == QLatin1String("--rows") ? _call.rows : _call.columns) =
            readWhole(option, 1, std::numeric_limits<int>::max());
    }

    int readWhole(const QString &option, int least, int most)
    {
        const QString text = requiredOperand(option, QStringLiteral("a number"));
        bool isNumber = false;
        const int value = text.toInt(&isNumber);
        if (!isNumber || value < least || value > most) {
            fail(most == std::numeric_limits<int>::max()
                    ? QStringLiteral("%1 needs a whole number from %2: %3")
                          .arg(option)
                          .arg(least)
                          .arg(text)
                    : QStringLiteral("%1 needs a whole number from %2 to %3: %4")
                          .arg(option)
                          .arg(least)
                          .arg(most)
                          .arg(text));
        }
        return value;
    }

    std::optional<double> readNumber(const QString &option)
    {
        const QString text = requiredOperand(option, QStringLiteral("a number"));
        const std::optional<double> value = number(text);
        if (!value) {
            fail(QStringLiteral("%1 needs a number: %2").arg(option, text));
        }
        return value;
    }

    void readScale(const QString &text)
    {
        _call.scale = number(text).value_or(0);
        if (_call.scale <= 0 || _call.scale > LargestScale) {
            fail(QStringLiteral("--scale needs a number above 0, at most 8: %1").arg(text));
        }
    }

    void checkWhole()
    {
        for (const auto &[option, verbs] : std::as_const(_modifiers)) {
            if (!verbs.contains(_call.verb)) {
                fail(_verbOption.isEmpty()
                        ? QStringLiteral("%1 needs another option to go with").arg(option)
                        : QStringLiteral("%1 does not go with %2").arg(option, _verbOption));
            }
        }
        if (_call.isService && !_call.files.isEmpty()) {
            fail(QStringLiteral("--service does not go with files"));
        }
        const bool takesFiles = _call.verb == Verb::Colors || _call.verb == Verb::Start;
        if (!takesFiles && !_call.files.isEmpty()) {
            fail(QStringLiteral("unexpected argument %1").arg(_call.files.first()));
        }
        if (_call.verb == Verb::Colors && _call.files.isEmpty()) {
            fail(QStringLiteral("--colors needs a file"));
        }
        if (_call.verb == Verb::Layout && !_call.bounds) {
            fail(QStringLiteral("--layout needs --bounds WxH"));
        }
        if (_call.rows != 0 && _call.columns != 0) {
            fail(QStringLiteral("--rows does not go with --columns"));
        }
        if (_call.resetKey && _call.key) {
            fail(QStringLiteral("--reset does not go with a key to print or set"));
        }
    }

    Invocation _call;
    QString _verbOption;
    QList<QPair<QString, QList<Verb>>> _modifiers;
    QStringList _rest;
};

} // namespace

Invocation parseCommandLine(const QStringList &arguments)
{
    return Parser(arguments).parse();
}

QString commandLineHelp()
{
    return QStringLiteral(
        "Usage: ortu [option…] [FILE…]\n"
        "Shows the applications of this computer as a grid of icons; a click launches one. Started "
        "again,\n"
        "it tells the program that runs already.\n"
        "\n"
        "  --toggle, --show                    show the panel, or with --toggle hide it; starts "
        "the "
        "program\n"
        "  --preferences                       show the panel with its preferences; starts the "
        "program\n"
        "  --hide, --rescan, --quit            tell the running program\n"
        "  --service                           start and show nothing until asked for something\n"
        "  --status [--json]                   print what the running program shows\n"
        "  --list [GROUP] [--fresh] [--json]   print a group, or all ten; --fresh scans the "
        "folders\n"
        "  --colors FILE… [--json] [--sheet OUT.png]\n"
        "                                      measure the colours of pictures and applications\n"
        "    [--size N] [--count N] [--delta-e D] [--gray-threshold T] [--wrap-hue DEGREES]\n"
        "    [--min-saturation S] [--min-luminosity L] [--grays-by-secondary-color]\n"
        "  --layout GROUP --bounds WxH [--at X,Y …] [--rows N | --columns N] [--json]\n"
        "                                      lay a group out in a grid of at most that size\n"
        "  --defaults [KEY [VALUE]] [--json]   print the preferences or one of them, or set one\n"
        "  --defaults --reset KEY              go back to a preference's default\n"
        "  --screenshot FILE.png [--group GROUP] [--bounds WxH] [--scale F]\n"
        "                                      draw the grid into a picture; needs no display\n"
        "  --export FILE                       write favourites, exclusions, colours and "
        "preferences\n"
        "                                      to a file; - is standard output\n"
        "  --import FILE                       take them over; what was before stays as "
        "NAME.before\n"
        "  --set KEY=VALUE                     change a preference for this run alone\n"
        "  --help, --version\n"
        "\n"
        "A GROUP is a number or a name:\n"
        "  0 runningApps   1 includedApps    2 includedApps1D   3 excludedApps   4 excludedApps1D\n"
        "  5 allApps       6 allApps1D       7 missingApps      8 userApps       9 userApps1D\n");
}
