#include "platform/freedesktop/FreedesktopPaths.h"

#include <QRegularExpression>
#include <QTest>

class FreedesktopPathsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void unsetVariables_standForTheUsualFolders();
    void setVariables_areFollowed();
    void applicationFolders_data();
    void applicationFolders();
};

using Domain = SearchPaths::Domain;

void FreedesktopPathsTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    qputenv("HOME", "/home/ann");
    for (const char *name : { "DATA_HOME", "DATA_DIRS", "STATE_HOME", "CONFIG_HOME" }) {
        qunsetenv(QByteArray("XDG_").append(name).constData());
    }
}

void FreedesktopPathsTest::unsetVariables_standForTheUsualFolders()
{
    qputenv("XDG_STATE_HOME", "");
    qputenv("XDG_CONFIG_HOME", "relative/folder");
    const FreedesktopPaths paths;
    QCOMPARE(
        paths.applicationSupportFolder(Domain::User), QStringLiteral("/home/ann/.local/share"));
    QCOMPARE(paths.applicationSupportFolder(Domain::Local), QStringLiteral("/usr/local/share"));
    QCOMPARE(paths.libraryFolder(Domain::User), QStringLiteral("/home/ann/.local/state/Ortu"));
    QCOMPARE(paths.libraryFolder(Domain::Local), QStringLiteral("/var/lib/Ortu"));
    QCOMPARE(paths.configurationFolder(), QStringLiteral("/home/ann/.config/Ortu"));
}

void FreedesktopPathsTest::setVariables_areFollowed()
{
    qputenv("XDG_DATA_HOME", "/data/with:colon/");
    qputenv("XDG_STATE_HOME", "/state//x/..");
    qputenv("XDG_CONFIG_HOME", "~/configuration");
    const FreedesktopPaths paths;
    QCOMPARE(paths.applicationSupportFolder(Domain::User), QStringLiteral("/data/with:colon"));
    QCOMPARE(paths.libraryFolder(Domain::User), QStringLiteral("/state/Ortu"));
    QCOMPARE(paths.configurationFolder(), QStringLiteral("/home/ann/configuration/Ortu"));
}

void FreedesktopPathsTest::applicationFolders_data()
{
    QTest::addColumn<QByteArray>("dataHome");
    QTest::addColumn<QByteArray>("dataFolders");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *dataHome, const char *dataFolders,
                         const char *expected) {
        QTest::newRow(name) << QByteArray(dataHome) << QByteArray(dataFolders)
                            << QString::fromUtf8(expected);
    };
    row("none set", "", "",
        "~/.local/share/applications ~/Applications /usr/local/share/applications "
        "/usr/share/applications");
    row("spelled differently", "/home/ann/.local/share", "/a/:~/.local/share/:/a/b/..::/a",
        "~/.local/share/applications ~/Applications /a/applications");
    row("relative ones", "share", "x:../y:/a",
        "~/.local/share/applications ~/Applications /a/applications");
    row("only relative ones", "", "x:y",
        "~/.local/share/applications ~/Applications /usr/local/share/applications "
        "/usr/share/applications");
    row("beside the home folder", "/home/anna", "/a",
        "/home/anna/applications ~/Applications /a/applications");
}

void FreedesktopPathsTest::applicationFolders()
{
    QFETCH(QByteArray, dataHome);
    QFETCH(QByteArray, dataFolders);
    QFETCH(QString, expected);
    qputenv("XDG_DATA_HOME", dataHome);
    qputenv("XDG_DATA_DIRS", dataFolders);
    QCOMPARE(FreedesktopPaths().applicationFolders().join(QLatin1Char(' ')), expected);
}

QTEST_GUILESS_MAIN(FreedesktopPathsTest)
#include "FreedesktopPathsTest.moc"
