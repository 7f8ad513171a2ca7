// Lists of applications: one flat list, or bunches of them.
//
// Two entries with the same path are the same application, whichever objects they are; every search
// here goes by that.

#pragma once

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class OTApp;

using AppRef = std::shared_ptr<OTApp>;
using AppList = QList<AppRef>;
using BunchList = QList<AppList>;

// The paths of some applications, to ask often whether one of them is among them.
class PathSet
{
public:
    PathSet() = default;
    explicit PathSet(const AppList &apps);

    bool contains(const AppRef &app) const;
    void insert(const AppRef &app);

private:
    QSet<QString> _paths;
};

// The place of an application in a list, or -1.
qsizetype indexOfApp(const AppList &list, const AppRef &app);

// Takes every application of the set out of a list; returns whether any was there.
bool removeFromList(AppList &list, const PathSet &apps);

// Whether both hold the same applications, in whatever order and however often.
bool haveSameApps(const AppList &one, const AppList &other);

// The bunches in order, in one list.
AppList flattened(const BunchList &bunches);

QStringList pathsFromApps(const AppList &apps);
QList<QStringList> pathArraysFromAppArrays(const BunchList &bunches);
