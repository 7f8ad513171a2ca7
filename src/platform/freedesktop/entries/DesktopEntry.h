// A desktop entry: what one `.desktop` file says of the application it stands for.
//
// Only the main group and the keys used here are read; launching is left to GIO, which reads the
// file again. Escapes are resolved and texts are in the best of the wanted languages.

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

class DesktopEntry final
{
public:
    // Other: a link, a folder's description, or a file that only says that an entry is deleted.
    enum class Kind { Application, Other, Broken };

    // Files above this size are broken.
    static constexpr qint64 maximumSize = 1 << 20;

    // Reads a file. Logs nothing: `problem` says what there is to say.
    static DesktopEntry fromFile(const QString &path, const QList<QByteArray> &languages);
    static DesktopEntry fromData(const QByteArray &data, const QList<QByteArray> &languages);

    Kind kind = Kind::Broken;
    // Why the file is broken, or what was put up with.
    QString problem;

    // Without control characters and of a length that can be shown; empty when the file gives none.
    QString name;
    // What kind of application it is, such as "Text Editor"; as presentable as the name.
    QString genericName;
    // A name in the icon theme or an absolute path.
    QString icon;
    QString tryExec;
    // The first word of the command line; empty when there is none.
    QString program;
    QString startupWMClass;
    // The sandboxed application that the entry belongs to, by its name there.
    QString flatpakId;
    QString snapName;
    // The types of documents that it opens, between semicolons.
    QByteArray documentTypes;
    QStringList onlyShowIn;
    QStringList notShowIn;
    bool isNoDisplay = false;
    bool isHidden = false;
    bool isDBusActivatable = false;
    // To be run in a terminal.
    bool isTerminal = false;
    // Its command line has words besides the program and the places for documents.
    bool hasArguments = false;

    // Whether the entry is meant for a desktop that goes by these names, the most particular one
    // first.
    bool isShownIn(const QStringList &desktops) const;
};
