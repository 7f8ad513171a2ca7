// The information property list: what the program says about itself.
//
// It is compiled in. A file of the user's may give keys another value, or add some. That file is
// only read: one that is damaged is named in the log and left where it is, and so is a key whose
// type cannot stand for the one it has here; what is compiled in then holds.

#pragma once

#include <QString>
#include <QVariant>
#include <QVariantMap>

class InfoDictionary final
{
public:
    // Without a path, or where there is no file, what is compiled in.
    explicit InfoDictionary(const QString &overridingFile = {});

    // The types are those of PropertyList; invalid for a key that is not there.
    QVariant objectForKey(const QString &key) const { return _values.value(key); }
    // Empty unless the value is a string.
    QString stringForKey(const QString &key) const;
    // False unless the value is a boolean, or a number or a word that stands for one.
    bool boolForKey(const QString &key) const;

    QString bundleIdentifier() const;

private:
    void overrideKey(const QString &key, const QVariant &value, const QString &path);

    QVariantMap _values;
};
