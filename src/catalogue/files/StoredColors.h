// The colours that the user gave to applications, by their paths, and the file in which they
// outlive the program: a property list that is a dictionary of dictionaries.
//
// What other programs change in the file is taken over whenever it is read, and before it is
// written. A file that is gone or damaged while the program runs takes nothing away.

#pragma once

#include "catalogue/files/StoredPaths.h"

#include <QMap>
#include <QString>

#include <optional>
#include <utility>

// In sRGB, each component 0 to 1.
struct StoredColor
{
    double red = 0, green = 0, blue = 0;

    friend bool operator==(const StoredColor &, const StoredColor &) = default;
};

class StoredColors final
{
public:
    using Writing = StoredPaths::Writing;
    using Colors = QMap<QString, StoredColor>;
    // An application without a colour loses its own.
    using Change = QMap<QString, std::optional<StoredColor>>;

    StoredColors(QString path, Writing writing);

    const QString &path() const { return _path; }
    const Colors &colors() const { return _colors; }

    // Reads the file. One that is damaged is set aside; what remains of it is to be written again.
    // One log line.
    void read();
    // Reads a file that another program may just be changing: a damaged one is left alone.
    void readAgain();
    // The file was read once; colours that were changed here alone make none known.
    bool isKnown() const { return _isKnown; }
    // What the file was before, as it is kept beside it.
    Colors former() const;

    // To be written.
    void change(const Change &change);
    // Something has not reached the file yet.
    bool isUnwritten() const { return _isUnwritten || !_changes.isEmpty(); }
    // Brings colours and file together; the caller holds the folder's lock. False and one log line
    // when the file cannot be written: the colours stay as they are and are tried again with the
    // next call. `error` receives the reason.
    bool write(QString *error);

    // Whether another program has changed the colours since the last call of the second.
    bool isChangedOutside() const { return _isChangedOutside; }
    bool takeOutsideChange() { return std::exchange(_isChangedOutside, false); }

private:
    void takeOver(const Colors &theirs);
    void apply(const Change &changes);

    QString _path;
    Writing _writing;
    Colors _colors;
    // By this program, and not written yet.
    Change _changes;
    bool _isKnown = false;
    // What remains of a damaged file, or was known before.
    bool _isUnwritten = false;
    bool _isChangedOutside = false;
};
