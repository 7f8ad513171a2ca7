#include "platform/freedesktop/entries/FreedesktopDocuments.h"

#include "TestCase.h"
#include "platform/FileTree.h"
#include "platform/freedesktop/entries/DesktopEntryIndex.h"

#include <QDirIterator>

class FreedesktopDocumentsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // GIO reads the table of types, in the system's folder, when it is first asked.
    void initTestCase()
    {
        _tree = std::make_unique<FileTree>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->path(u"data"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(u"configuration"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->addFolder(u"shared"_s)));
        qputenv("XDG_CURRENT_DESKTOP", "Odd:GNOME");
        _tree->addLink(u"shared/mime"_s, u"/usr/share/mime"_s);
        addEntry(u"data/applications/text.desktop"_s, "text/plain;");
        addEntry(u"data/applications/perl.desktop"_s, "image/gif; application/x-perl");
        addEntry(u"data/applications/removed.desktop"_s, "application/x-perl;");
        addEntry(u"data/applications/picture.desktop"_s, "image/png;x-scheme-handler/gallery;");
        addEntry(u"data/applications/bytes.desktop"_s, "application/octet-stream;");
        addEntry(u"data/applications/folders.desktop"_s, "inode/directory;");
        addEntry(u"data/applications/kde/chosen.desktop"_s, "");
        addEntry(u"data/applications/default.desktop"_s, "");
        addEntry(u"data/applications/second.desktop"_s, "");
        _tree->add(u"configuration/mimeapps.list"_s,
            "[Removed Associations]\napplication/x-perl=removed.desktop;second.desktop;\n"
            "[Added Associations]\napplication/x-perl=kde-chosen.desktop;\n");
        _tree->add(u"shared/applications/mimeapps.list"_s,
            "[Added Associations]\napplication/x-perl=second.desktop;\n"
            "[Default Applications]\ninode/directory=second.desktop;\n");
        _tree->add(u"data/applications/gnome-mimeapps.list"_s,
            "[Added Associations]\nimage/png=second.desktop;\n"
            "[Default Applications]\nimage/png=absent.desktop;default.desktop;second.desktop;\n");
        const QString folder = _tree->path(u"data/applications"_s);
        _tree->addLink(u"exports/link.desktop"_s, folder + u"/kde/chosen.desktop"_s);
        addEntry(u"exports/deleted.desktop"_s, "text/plain;\nHidden=true");
        _tree->addFolder(u"X.AppDir"_s);

        _tree->add(u"it's 100% #ü.pl"_s, "print 1;\n");
        _tree->add(u"script"_s, "#!/usr/bin/perl\nprint 1;\n");
        _tree->add(u"secret.pl"_s, "print 1;\n", 0);
        _tree->add(u"picture"_s, "\x89PNG\r\n\x1a\n" + QByteArray(16, '\0'));
        _tree->addFolder(u"folder.pl"_s);
        _tree->addPipe(u"pipe.pl"_s);
        _documents = std::make_unique<FreedesktopDocuments>(
            _entries, QStringList { _tree->path(u"data"_s), _tree->path(u"shared"_s) });
    }

    void theApplicationsOfADocument()
    {
        // By its name, by its content, when it cannot be read.
        const QString perlTakers = u"bytes chosen link perl removed text"_s;
        for (const QString &perl : { u"it's 100% #ü.pl"_s, u"script"_s, u"secret.pl"_s }) {
            QCOMPARE(accepting(perl), perlTakers);
            QCOMPARE(preferring(perl), u"chosen link perl"_s);
        }
        const std::tuple<QString, QString, QString> rows[] {
            { u"picture"_s, u"bytes default picture"_s, u"default picture"_s },
            { u"gallery:1"_s, u"picture"_s, u"picture"_s },
            { u"mailto:ann@example.org"_s, {}, {} },
            { u"folder.pl"_s, u"folders second"_s, u"folders second"_s },
            { u"pipe.pl"_s, {}, {} },
            { u"absent.pl"_s, {}, {} },
            { u"file:"_s, {}, {} },
        };
        for (const auto &[document, able, meant] : rows) {
            QCOMPARE(document + u": "_s + accepting(document), document + u": "_s + able);
            QCOMPARE(document + u": "_s + preferring(document), document + u": "_s + meant);
        }
    }

private:
    void addEntry(const QString &path, const QByteArray &types)
    {
        _tree->add(path,
            "[Desktop Entry]\nType=Application\nName=A\nExec=true %U\nMimeType=" + types + "\n");
    }

    QString accepting(const QString &document) const
    {
        return namesOf(_documents->applicationsThatAccept(url(document), bundles()));
    }
    QString preferring(const QString &document) const
    {
        return namesOf(_documents->applicationsThatPrefer(url(document), bundles()));
    }

    // All that there are in the tree, and some that are none.
    QStringList bundles() const
    {
        QStringList paths { _tree->path(u"X.AppDir"_s), _tree->path(u"absent.desktop"_s) };
        QDirIterator entries(
            _tree->path(), { u"*.desktop"_s }, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            paths.append(entries.next());
        }
        return paths;
    }

    static QString namesOf(const QSet<QString> &paths)
    {
        QStringList names;
        for (const QString &path : paths) {
            names.append(QFileInfo(path).completeBaseName());
        }
        names.sort();
        return names.join(u' ');
    }

    // A file of the tree, or what has a scheme.
    QUrl url(const QString &document) const
    {
        return document.contains(u':') ? QUrl(document)
                                       : QUrl::fromLocalFile(_tree->path(document));
    }

    std::unique_ptr<FileTree> _tree;
    DesktopEntryIndex _entries { {} };
    std::unique_ptr<FreedesktopDocuments> _documents;
};

QTEST_GUILESS_MAIN(FreedesktopDocumentsTest)
#include "FreedesktopDocumentsTest.moc"
