#include "platform/freedesktop/entries/FreedesktopDocuments.h"

#include "TestCase.h"
#include "platform/FileTree.h"

#include <QProcess>

class FreedesktopDocumentsTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // GIO reads the folders and the tables when it is first asked, so all of them are made before.
    // The system's folder is kept because it holds the table of types.
    void initTestCase()
    {
        _tree = std::make_unique<FileTree>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->path(u"data"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(u"configuration"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->addFolder(u"shared"_s)));
        _tree->addLink(u"shared/mime"_s, u"/usr/share/mime"_s);
        addEntry(u"data/applications/text.desktop"_s, "text/plain;");
        addEntry(u"data/applications/python.desktop"_s, "text/x-python;");
        addEntry(u"data/applications/picture.desktop"_s, "image/png;x-scheme-handler/gallery;");
        addEntry(u"data/applications/other.desktop"_s, "image/png;");
        addEntry(u"data/applications/associated.desktop"_s, "");
        _tree->add(u"configuration/mimeapps.list"_s,
            "[Added Associations]\ntext/x-python=associated.desktop;\n"
            "[Default Applications]\nimage/png=picture.desktop;\n");
        const QString folder = _tree->path(u"data/applications"_s);
        QCOMPARE(QProcess::execute(u"update-desktop-database"_s, { folder }), 0);
        _tree->addLink(u"exports/link.desktop"_s, folder + u"/associated.desktop"_s);
        addEntry(u"exports/unlisted.desktop"_s, "text/plain;");
        _tree->addFolder(u"X.AppDir"_s);

        _tree->add(u"it's 100% #ü.py"_s, "print(1)\n");
        _tree->add(u"script"_s, "#!/usr/bin/env python3\nprint(1)\n");
        _tree->add(u"picture"_s, "\x89PNG\r\n\x1a\n" + QByteArray(16, '\0'));
        _tree->add(u"nothing.odd"_s, QByteArray("\x01\x00\x02", 3));
    }

    void canAccept()
    {
        const QString python = u"it's 100% #ü.py"_s;
        const QString text = u"data/applications/text.desktop"_s;
        const QString picture = u"data/applications/picture.desktop"_s;
        const std::tuple<QString, QString, bool> rows[] {
            { text, python, true }, // by a parent type
            { u"data/applications/python.desktop"_s, u"script"_s, true }, // by content
            { text, u"picture"_s, false },
            { u"exports/link.desktop"_s, python, true }, // associated, found by a link
            { u"exports/unlisted.desktop"_s, python, true }, // in no table
            { picture, u"gallery:1"_s, true },
            { picture, u"mailto:ann@example.org"_s, false },
            { text, u"absent.txt"_s, false },
            { u"data/applications/absent.desktop"_s, python, false },
            { u"X.AppDir"_s, python, false },
        };
        const FreedesktopDocuments documents;
        for (const auto &[bundle, document, isAccepted] : rows) {
            QVERIFY2(documents.canAccept(_tree->path(bundle), url(document)) == isAccepted,
                qPrintable(bundle + u' ' + document));
        }
    }

    void applicationsFor_orderByPreferenceAndNearness()
    {
        const auto namesFor = [](const QUrl &document) {
            QStringList names;
            for (const QString &path : FreedesktopDocuments().applicationsFor(document)) {
                names.append(path.section(u'/', -2));
            }
            return names.join(u' ');
        };
        QCOMPARE(namesFor(url(u"picture"_s)),
            u"applications/picture.desktop applications/other.desktop"_s);
        QCOMPARE(namesFor(url(u"script"_s)),
            u"applications/associated.desktop applications/python.desktop "
            "applications/text.desktop"_s);
        QCOMPARE(namesFor(url(u"gallery:1"_s)), u"applications/picture.desktop"_s);
        QCOMPARE(namesFor(url(u"nothing.odd"_s)), QString());
    }

private:
    void addEntry(const QString &path, const QByteArray &types)
    {
        _tree->add(path,
            "[Desktop Entry]\nType=Application\nName=A\nExec=true %U\nMimeType=" + types + "\n");
    }

    // A file of the tree, or what has a scheme.
    QUrl url(const QString &document) const
    {
        return document.contains(u':') ? QUrl(document)
                                       : QUrl::fromLocalFile(_tree->path(document));
    }

    std::unique_ptr<FileTree> _tree;
};

QTEST_GUILESS_MAIN(FreedesktopDocumentsTest)
#include "FreedesktopDocumentsTest.moc"
