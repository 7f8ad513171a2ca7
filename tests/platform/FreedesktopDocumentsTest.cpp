#include "platform/freedesktop/FreedesktopDocuments.h"

#include "platform/FileTree.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <memory>

class FreedesktopDocumentsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void canAccept_data();
    void canAccept();
    void applicationsFor_data();
    void applicationsFor();

private:
    void addEntry(const char *name, const QByteArray &types);
    QString entry(const char *name) const
    {
        return _tree->path(QStringLiteral("data/applications/") + QLatin1String(name));
    }

    std::unique_ptr<FileTree> _tree;
};

void FreedesktopDocumentsTest::addEntry(const char *name, const QByteArray &types)
{
    _tree->add(QStringLiteral("data/applications/") + QLatin1String(name),
        "[Desktop Entry]\nType=Application\nName=A\nExec=true %U\nMimeType=" + types + "\n");
}

// GIO reads the folders and the tables when it is first asked, so all of them are made before. The
// system's folder is kept because it holds the table of types.
void FreedesktopDocumentsTest::initTestCase()
{
    _tree = std::make_unique<FileTree>();
    qputenv("XDG_DATA_HOME", QFile::encodeName(_tree->path(QStringLiteral("data"))));
    qputenv(
        "XDG_CONFIG_HOME", QFile::encodeName(_tree->addFolder(QStringLiteral("configuration"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(_tree->addFolder(QStringLiteral("shared"))));
    _tree->addLink(QStringLiteral("shared/mime"), QStringLiteral("/usr/share/mime"));
    addEntry("text.desktop", "text/plain;");
    addEntry("python.desktop", "text/x-python;");
    addEntry("picture.desktop", "image/png;x-scheme-handler/gallery;");
    addEntry("other.desktop", "image/png;");
    addEntry("associated.desktop", "");
    _tree->add(QStringLiteral("configuration/mimeapps.list"),
        "[Added Associations]\ntext/x-python=associated.desktop;\n"
        "[Default Applications]\nimage/png=picture.desktop;\n");
    QCOMPARE(QProcess::execute(QStringLiteral("update-desktop-database"),
                 { _tree->path(QStringLiteral("data/applications")) }),
        0);
    _tree->addLink(QStringLiteral("exports/link.desktop"), entry("associated.desktop"));
    _tree->add(QStringLiteral("exports/unlisted.desktop"),
        "[Desktop Entry]\nType=Application\nExec=true %U\nMimeType=text/plain;\n");

    _tree->add(QStringLiteral("d/it's 100% #ü.py"), "print(1)\n");
    _tree->add(QStringLiteral("d/script"), "#!/usr/bin/env python3\nprint(1)\n");
    _tree->add(QStringLiteral("d/picture"), "\x89PNG\r\n\x1a\n" + QByteArray(16, '\0'));
    _tree->add(QStringLiteral("d/nothing.odd"), QByteArray("\x01\x00\x02", 3));
}

void FreedesktopDocumentsTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void FreedesktopDocumentsTest::canAccept_data()
{
    QTest::addColumn<QString>("bundle");
    QTest::addColumn<QUrl>("document");
    QTest::addColumn<bool>("isAccepted");

    const auto row = [this](const char *name, const QString &bundle, const char *document,
                         bool isAccepted) {
        const QString text = QString::fromUtf8(document);
        QTest::newRow(name) << bundle
                            << (text.contains(QLatin1Char(':'))
                                       ? QUrl(text)
                                       : QUrl::fromLocalFile(_tree->path(text)))
                            << isAccepted;
    };
    row("by its own type", entry("python.desktop"), "d/it's 100% #ü.py", true);
    row("by a parent type", entry("text.desktop"), "d/it's 100% #ü.py", true);
    row("by content", entry("python.desktop"), "d/script", true);
    row("picture by content", entry("picture.desktop"), "d/picture", true);
    row("picture as text", entry("text.desktop"), "d/picture", false);
    row("parent as child", entry("python.desktop"), "d/nothing.odd", false);
    row("associated by the user", entry("associated.desktop"), "d/it's 100% #ü.py", true);
    row("associated, found by a link", _tree->path(QStringLiteral("exports/link.desktop")),
        "d/it's 100% #ü.py", true);
    row("in no table", _tree->path(QStringLiteral("exports/unlisted.desktop")), "d/it's 100% #ü.py",
        true);
    row("scheme", entry("picture.desktop"), "gallery:1", true);
    row("another scheme", entry("picture.desktop"), "mailto:ann@example.org", false);
    row("no document", entry("text.desktop"), "d/absent.txt", false);
    row("no application", entry("absent.desktop"), "d/it's 100% #ü.py", false);
    row("a bundle folder", _tree->addFolder(QStringLiteral("X.AppDir")), "d/it's 100% #ü.py",
        false);
}

void FreedesktopDocumentsTest::canAccept()
{
    QFETCH(QString, bundle);
    QFETCH(QUrl, document);
    QFETCH(bool, isAccepted);
    QCOMPARE(FreedesktopDocuments().canAccept(bundle, document), isAccepted);
}

void FreedesktopDocumentsTest::applicationsFor_data()
{
    QTest::addColumn<QUrl>("document");
    QTest::addColumn<QString>("expected");

    const auto file = [this](const char *name) {
        return QUrl::fromLocalFile(_tree->path(QString::fromUtf8(name)));
    };
    QTest::newRow("preferred one first") << file("d/picture") << QStringLiteral("picture other");
    QTest::newRow("parent types last")
        << file("d/script") << QStringLiteral("associated python text");
    QTest::newRow("scheme") << QUrl(QStringLiteral("gallery:1")) << QStringLiteral("picture");
    QTest::newRow("nobody") << file("d/nothing.odd") << QString();
    QTest::newRow("no document") << file("d/absent") << QString();
    QTest::newRow("nothing") << QUrl() << QString();
}

void FreedesktopDocumentsTest::applicationsFor()
{
    QFETCH(QUrl, document);
    QFETCH(QString, expected);
    QStringList names;
    const QStringList paths = FreedesktopDocuments().applicationsFor(document);
    for (const QString &path : paths) {
        QCOMPARE(QFileInfo(path).absolutePath(), _tree->path(QStringLiteral("data/applications")));
        names.append(QFileInfo(path).completeBaseName());
    }
    QCOMPARE(names.join(QLatin1Char(' ')), expected);
}

QTEST_GUILESS_MAIN(FreedesktopDocumentsTest)
#include "FreedesktopDocumentsTest.moc"
