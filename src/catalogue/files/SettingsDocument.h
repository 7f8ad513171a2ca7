// What users make of the program and take elsewhere, as one property list: favourites in bunches
// and as one list, exclusions, corrected colours of icons, and preferences.
//
// It is a dictionary with a format version and a part for each of these, called like the file that
// holds it. A part that is missing says nothing about it. Paths need not exist. Knows no file.

#pragma once

#include "catalogue/files/PathBunches.h"

#include <QString>
#include <QVariant>
#include <QVariantMap>

#include <optional>

class UserDefaults;

struct SettingsDocument
{
    // Raised when an older program would take a document for something that it is not.
    static constexpr qlonglong Version = 1;

    // What a document holds and this program cannot use.
    struct LeftOut
    {
        QString name;
        QString reason;
    };

    std::optional<PathBunches> favourites;
    std::optional<QStringList> favouritesInOneList;
    std::optional<QStringList> exclusions;
    // Dictionaries "red", "green", "blue" by the path of the application; these are reals from 0
    // to 1. Other keys of them are kept.
    std::optional<QVariantMap> colorCorrections;
    // Those that the user has set.
    std::optional<QVariantMap> preferences;

    QVariant propertyList() const;

    // Empty, and `error` has the reason, when the value is no such document, or a part of it is of
    // the wrong shape. What is mentioned twice in a list counts once. Parts, corrections and
    // preferences that are unknown or of no use are left out, and named.
    static std::optional<SettingsDocument> fromPropertyList(const QVariant &value,
        const UserDefaults &defaults, QString *error, QList<LeftOut> *leftOut);
};
