// A home of its own with so many desktop entries, whose icons are those of the Papirus theme.

#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

class ThemedHome final
{
public:
    explicit ThemedHome(int entryCount)
    {
        const QDir home(_folder.path());
        home.mkpath(QStringLiteral("applications"));
        home.mkpath(QStringLiteral("gtk-3.0"));
        _isWritten = write(home.filePath(QStringLiteral("gtk-3.0/settings.ini")),
                         "[Settings]\ngtk-icon-theme-name=Papirus\n")
            && writeEntries(home.filePath(QStringLiteral("applications")), entryCount);
        qputenv("XDG_DATA_HOME", QFile::encodeName(_folder.path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_folder.path()));
    }

    // False when the theme is not installed.
    bool isWritten() const { return _isWritten; }

private:
    static bool write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
    }

    static bool writeEntries(const QDir &folder, int count)
    {
        const QDir apps(QStringLiteral("/usr/share/icons/Papirus/64x64/apps"));
        const QStringList icons =
            apps.entryList({ QStringLiteral("*.svg") }, QDir::Files | QDir::NoSymLinks);
        bool isWritten = !icons.isEmpty();
        for (int i = 0; i < count && isWritten; ++i) {
            const QString icon = icons[i * 7 % icons.size()].chopped(4);
            isWritten = write(folder.filePath(QStringLiteral("entry%1.desktop").arg(i)),
                "[Desktop Entry]\nType=Application\nExec=/bin/true\nName=Entry "
                    + QByteArray::number(i) + "\nIcon=" + icon.toUtf8() + "\n");
        }
        return isWritten;
    }

    QTemporaryDir _folder;
    bool _isWritten = false;
};
