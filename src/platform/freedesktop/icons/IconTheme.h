// One icon theme as its description tells of it, and the chain of themes in which an icon is looked
// for.
//
// A theme may be spread over several base folders; the first description found stands for all of
// them.

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// The kinds of picture file, as bits, with the numbers that theme caches use for them.
enum IconSuffix : unsigned {
    XpmSuffix = 1,
    SvgSuffix = 2,
    PngSuffix = 4,
    // Not in the standard nor in caches, but shipped by older themes.
    SvgzSuffix = 16,
};

// A folder of a theme that holds pictures drawn for one size or a range of sizes.
struct IconDirectory
{
    enum class Type { Fixed, Scalable, Threshold };

    // Below the theme's folder, in the encoding of the file system.
    QByteArray path;
    Type type = Type::Threshold;
    int size = 0;
    int scale = 1;
    int minSize = 0;
    int maxSize = 0;
    int threshold = 2;

    // Whether the pictures are meant for this size at scale 1.
    bool matches(int wanted) const;
    // How many pixels the pictures are off the wanted size.
    int distance(int wanted) const;
};

struct IconTheme
{
    QString name;
    // Those of its folders that exist, in the order of the base folders.
    QStringList folders;
    // Earlier directories win over later ones that fit as well.
    std::vector<IconDirectory> directories;
    QStringList inherits;

    // Nothing when the theme has no description in any base folder.
    static std::optional<IconTheme> load(const QString &name, const QStringList &baseFolders);

    // The theme, then the themes it inherits from in depth-first order, each once, and "hicolor"
    // last. Those that are not installed are left out.
    static std::vector<IconTheme> chain(const QString &name, const QStringList &baseFolders);

    // A name comes from settings and descriptions; one that would leave the base folder is
    // no theme's.
    static bool isInstalled(const QString &name, const QStringList &baseFolders);
};
