// Items of a freedesktop system: desktop entries, AppImages and bundle folders are its
// applications.

#pragma once

#include "platform/Items.h"
#include "platform/freedesktop/base/Programs.h"
#include "platform/freedesktop/entries/DesktopFileIds.h"
#include "platform/freedesktop/entries/HiddenNames.h"

#include <memory>

class DesktopEntry;
class DesktopEntryIndex;

class FreedesktopItems final : public Items
{
public:
    // The index outlives this. Data folders: the one that counts most first. Desktops: the names by
    // which the running one goes, the most particular one first.
    FreedesktopItems(
        DesktopEntryIndex &entries, const QStringList &dataFolders, QStringList currentDesktops);

    void willScan() override;
    void lookAgainAt(const QStringList &paths) override;
    ItemFlags flagsOf(const QString &path) const override;
    QString displayName(const QString &path) const override;
    std::optional<QString> genericNameOf(const QString &path) const override;
    ItemWords wordsOf(const QString &path) const override;
    QString standInFor(const QString &path) const override;
    QString refusal(const QString &path) const override;

    // What the bundle says its icon is: a name in the icon theme or an absolute path. Empty when it
    // does not say.
    QString iconNameOf(const QString &bundlePath) const;

private:
    bool isInvisibleName(const QString &path) const;
    ItemFlags flagsOfFolder(const QString &path) const;
    ItemFlags flagsOfLink(const QString &path) const;
    ItemFlags flagsOfEntry(const QString &path) const;
    bool canRun(const DesktopEntry &entry) const;
    // The entry of an application at a path; null when there is none.
    std::shared_ptr<const DesktopEntry> applicationAt(const QString &path) const;

    DesktopEntryIndex &_entries;
    const QStringList _currentDesktops;
    mutable DesktopFileIds _ids;
    mutable HiddenNames _hiddenNames;
    mutable Programs _programs;
};
