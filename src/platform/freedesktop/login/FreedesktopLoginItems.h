// Autostart entries: desktop entries in the `autostart` folder of the user's configuration and of
// the shared ones, of which one in an earlier folder takes the place of those of its name in later
// ones (https://specifications.freedesktop.org/autostart-spec/latest/).
//
// An entry belongs to an item when its name is the item's ID or when it starts the item's program,
// for other tools rename entries and change them; all that belong to it count. What this object has
// not written itself it switches on and off, and leaves the rest of it as it stands.

#pragma once

#include "platform/LoginItems.h"
#include "platform/freedesktop/entries/DesktopEntry.h"
#include "support/files/FileReplacement.h"

#include <memory>
#include <vector>

class FileWatch;

class FreedesktopLoginItems final : public LoginItems
{
    Q_OBJECT

public:
    // The names of the running desktop, the most particular one first. Reads from the environment
    // where the folders are.
    explicit FreedesktopLoginItems(QStringList desktops);
    ~FreedesktopLoginItems() override;

    bool contains(const LoginItem &item) const override;
    QString setContained(const LoginItem &item, bool isContained) override;
    void setWatched(bool isWatched) override;

private:
    // The entry that counts among those of one name.
    struct Entry
    {
        QString fileName;
        QByteArray text;
        DesktopEntry content;
        // The file is in the user's own folder, and a link there.
        bool isUsers = false;
        bool isLink = false;
        // The text of the entry that would count without the user's own; empty when there is none.
        QByteArray sharedText;
    };

    std::vector<Entry> entriesOf(const LoginItem &item) const;
    Entry read(const QString &fileName) const;
    bool isEnabled(const Entry &entry) const;
    QByteArray enabledText(const Entry &entry, const LoginItem &item) const;
    QString enable(const LoginItem &item) const;
    QString disable(const Entry &entry, const LoginItem &item) const;
    QString write(const QString &fileName, const QByteArray &text,
        FileReplacement::Former former = FileReplacement::Former::Dropped) const;
    QString remove(const QString &fileName) const;
    QString userPath(const QString &fileName) const;
    void watch();

    // The user's own first.
    QStringList _folders;
    QStringList _desktops;
    std::vector<std::unique_ptr<FileWatch>> _watches;
};
