// The command line, turned into what it asks for.

#pragma once

#include <QList>
#include <QPair>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>

// How --colors measures and judges; where empty, as the preferences have it.
struct ColorOptions
{
    std::optional<qsizetype> count;
    std::optional<double> deltaE;
    std::optional<double> grayThreshold;
    std::optional<double> wrapHue;
    std::optional<double> minSaturation;
    std::optional<double> minLuminosity;
    bool graysBySecondaryColor = false;
    // Edge in pixels.
    std::optional<int> size;
};

// One call of the program. Only the members that go with its verb are ever set.
struct Invocation
{
    enum class Verb {
        Start,
        // Those that speak to the running program.
        Toggle,
        Show,
        Hide,
        Preferences,
        Rescan,
        Quit,
        Status,
        List,
        Colors,
        Layout,
        Defaults,
        Screenshot,
        Export,
        Import,
        Help,
        Version,
    };

    Verb verb = Verb::Start;
    // What is wrong with the call, in one line; empty when nothing is.
    QString error;

    // --set KEY=VALUE, in the order given.
    QList<QPair<QString, QString>> settings;
    bool isJson = false;
    // --service: a start that waits to be asked for something.
    bool isService = false;
    // --list: scan instead of reading the saved scan result.
    bool isFresh = false;
    // The group that is listed, laid out or drawn, as it was typed.
    std::optional<QString> group;
    // The largest grid allowed, in points.
    std::optional<QSizeF> bounds;
    // --layout: the points to be looked up, y upwards; a forced shape, where not 0.
    QList<QPointF> points;
    int rows = 0;
    int columns = 0;
    // --defaults
    std::optional<QString> key;
    std::optional<QString> value;
    std::optional<QString> resetKey;
    // --screenshot, --export and --import; for the last two "-" is standard output and input.
    QString file;
    double scale = 1.0;
    // What is opened by a start, or the pictures and applications of --colors, as typed.
    QStringList files;
    // --colors: the picture that is made of them, if any.
    QString sheet;
    ColorOptions colors;
};

// Reads the arguments that follow the program's name.
Invocation parseCommandLine(const QStringList &arguments);

// What --help prints.
QString commandLineHelp();
