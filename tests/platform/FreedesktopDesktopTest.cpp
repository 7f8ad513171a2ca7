#include "platform/freedesktop/FreedesktopDesktop.h"

#include "platform/FileTree.h"

#include <QImage>
#include <QRegularExpression>
#include <QTest>

class FreedesktopDesktopTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void environment_reachesEveryPart();
};

void FreedesktopDesktopTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
}

void FreedesktopDesktopTest::environment_reachesEveryPart()
{
    FileTree tree;
    QImage picture(8, 8, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(tree.path(QStringLiteral("red.png"))));
    const QByteArray entry = "[Desktop Entry]\nType=Application\nExec=true\nOnlyShowIn=GNOME;\n"
                             "Name=Mail\nName[de]=Post\nIcon="
        + QFile::encodeName(tree.path(QStringLiteral("red.png"))) + '\n';
    const QString own = tree.add(QStringLiteral("home/applications/a.desktop"), entry);
    const QString shadowed = tree.add(QStringLiteral("system/applications/a.desktop"), entry);
    qputenv("XDG_DATA_HOME", QFile::encodeName(tree.path(QStringLiteral("home"))));
    qputenv("XDG_DATA_DIRS", QFile::encodeName(tree.path(QStringLiteral("system"))));
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    qputenv("LANGUAGE", "de");

    const std::unique_ptr<Desktop> desktop = makeFreedesktopDesktop();
    QVERIFY(desktop->searchPaths().applicationFolders().contains(QFileInfo(own).path()));
    const ItemFlags flags = desktop->items().flagsOf(own);
    QVERIFY(flags.isApplication && !flags.isInvisible && !flags.isClassicApp);
    QVERIFY(desktop->items().flagsOf(shadowed).isInvisible);
    QCOMPARE(desktop->items().displayName(own), QStringLiteral("Post"));
    const IconSource icon = desktop->icons().resolve(own, 8);
    QCOMPARE(icon.file, tree.path(QStringLiteral("red.png")));
    QCOMPARE(desktop->icons().decode(icon, 8).pixelColor(4, 4), QColor(Qt::red));
    QCOMPARE(desktop->launcher().open(tree.path(QStringLiteral("absent.desktop")), {}),
        LaunchStatus::FileNotFound);
}

QTEST_GUILESS_MAIN(FreedesktopDesktopTest)
#include "FreedesktopDesktopTest.moc"
