// Real applications of the system, clicked in the real program on a real display.

#include "desktop/ProgramRunner.h"
#include "platform/FileTree.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

namespace {

// Where the grid begins in the panel.
constexpr QPoint gridInPanel(18, 30);

QString outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// What the window manager lists, a line for each window with its class.
QStringList windows()
{
    return outputOf(QStringLiteral("wmctrl"), { QStringLiteral("-lx") })
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList windowsOfClass(const QString &part)
{
    return windows().filter(part, Qt::CaseInsensitive);
}

bool isProcessRunning(const QString &name)
{
    return !outputOf(QStringLiteral("pgrep"), { QStringLiteral("-x"), name }).isEmpty();
}

void closeWindowsOfClass(const QString &part)
{
    const QStringList lines = windowsOfClass(part);
    for (const QString &line : lines) {
        outputOf(QStringLiteral("wmctrl"),
            { QStringLiteral("-ic"), line.section(QLatin1Char(' '), 0, 0) });
    }
}

} // namespace

class LaunchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void aClickLaunchesTheApplicationUnderIt_data();
    void aClickLaunchesTheApplicationUnderIt();
    void whatIsLaunchedOutlivesTheProgram();
    void aBundleThatIsGone_leavesTheGrid();
    void keysAndMenu_driveTheGrid();

private:
    // The grid as the window shows it on this screen.
    QJsonObject shownLayout() const;
    // The middle of an application's cell on the screen.
    QPoint middleOnScreen(const QString &name) const;
    void click(const QString &name, int button = 1) const;
    // Keys by their X names, as to the window that has the keyboard.
    static void press(const QStringList &keys);
    // The window as it stands on the screen.
    QImage picture() const;
    void link(const QString &id) const;
    void showGrid(qsizetype cellCount);
    // Again, after a launch has hidden it.
    void showPanel() const;

    FileTree _programs;
    std::unique_ptr<ProgramRunner> _runner;
    QProcess _ortu;
    QSize _size;
};

void LaunchTest::init()
{
    _runner = std::make_unique<ProgramRunner>();
    // What runs in a terminal runs in the first one that is found.
    _runner->set("PATH",
        _programs.addPrograms(QStringLiteral("bin"),
            { QStringLiteral("xterm"), QStringLiteral("mousepad"), QStringLiteral("htop"),
                QStringLiteral("baobab"), QStringLiteral("touch") }));
    _runner->scanOnlyOwnApplications();
}

void LaunchTest::cleanup()
{
    _ortu.terminate();
    _ortu.waitForFinished();
    QTRY_VERIFY(windowsOfClass(QStringLiteral("ortu")).isEmpty());
}

void LaunchTest::link(const QString &id) const
{
    const QString entry = QStringLiteral("/usr/share/applications/%1.desktop").arg(id);
    QVERIFY2(QFile::exists(entry), qPrintable(entry));
    QVERIFY(QFile::link(entry, _runner->path(QStringLiteral("apps/%1.desktop").arg(id))));
}

QJsonObject LaunchTest::shownLayout() const
{
    return _runner
        ->run({ QStringLiteral("--layout"), QStringLiteral("1"), QStringLiteral("--bounds"),
            QStringLiteral("1212x704"), QStringLiteral("--json") })
        .json()
        .object();
}

void LaunchTest::showGrid(qsizetype cellCount)
{
    _runner->start(_ortu, {});
    QTRY_COMPARE_WITH_TIMEOUT(windowsOfClass(QStringLiteral("ortu")).size(), 1, 20'000);
    const QJsonObject layout = shownLayout();
    QVERIFY(layout[QStringLiteral("cells")].toArray().size() >= cellCount);
    const QJsonArray size = layout[QStringLiteral("viewSize")].toArray();
    _size = QSize(size[0].toInt(), size[1].toInt());
}

void LaunchTest::showPanel() const
{
    const auto isVisible = [this] {
        return _runner->run({ QStringLiteral("--status"), QStringLiteral("--json") })
            .json()[QStringLiteral("visible")]
            .toBool();
    };
    QTRY_VERIFY(!isVisible());
    QCOMPARE(_runner->run({ QStringLiteral("--show") }).exitCode, 0);
    QTRY_COMPARE(windowsOfClass(QStringLiteral("ortu")).size(), 1);
}

QPoint LaunchTest::middleOnScreen(const QString &name) const
{
    const QJsonObject layout = shownLayout();
    const QJsonArray cells = layout[QStringLiteral("cells")].toArray();
    for (const QJsonValue &cell : cells) {
        if (cell[QStringLiteral("app")].toString().endsWith(name + QLatin1String(".desktop"))) {
            const QJsonArray rect = cell[QStringLiteral("rect")].toArray();
            const double x = rect[0].toDouble() + rect[2].toDouble() / 2;
            const double y = rect[1].toDouble() + rect[3].toDouble() / 2;
            return QPointF(x, _size.height() - y).toPoint() + gridInPanel;
        }
    }
    return { -1, -1 };
}

void LaunchTest::click(const QString &name, int button) const
{
    const QPoint point = middleOnScreen(name);
    QVERIFY2(point.x() >= 0, qPrintable(name));
    const QString window =
        windowsOfClass(QStringLiteral("ortu")).value(0).section(QLatin1Char(' '), 0, 0);
    outputOf(QStringLiteral("xdotool"),
        { QStringLiteral("windowactivate"), QStringLiteral("--sync"), window,
            QStringLiteral("mousemove"), QStringLiteral("--window"), window,
            QString::number(point.x()), QString::number(point.y()), QStringLiteral("click"),
            QString::number(button) });
}

void LaunchTest::press(const QStringList &keys)
{
    outputOf(QStringLiteral("xdotool"), QStringList { QStringLiteral("key") } + keys);
}

QImage LaunchTest::picture() const
{
    const QString window =
        windowsOfClass(QStringLiteral("ortu")).value(0).section(QLatin1Char(' '), 0, 0);
    const QString file = _runner->path(QStringLiteral("picture.png"));
    outputOf(QStringLiteral("import"),
        { QStringLiteral("-silent"), QStringLiteral("-window"), window, file });
    return QImage(file);
}

void LaunchTest::aClickLaunchesTheApplicationUnderIt_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("windowClass");
    QTest::addColumn<QString>("process");

    QTest::newRow("a terminal") << "debian-xterm"
                                << "xterm.XTerm"
                                << "xterm";
    QTest::newRow("an editor") << "org.xfce.mousepad"
                               << "mousepad"
                               << "mousepad";
    QTest::newRow("one that runs in a terminal") << "htop"
                                                 << "xterm"
                                                 << "htop";
    QTest::newRow("one that the session bus starts") << "org.gnome.baobab"
                                                     << "baobab"
                                                     << "baobab";
}

void LaunchTest::aClickLaunchesTheApplicationUnderIt()
{
    QFETCH(const QString, id);
    QFETCH(const QString, windowClass);
    QFETCH(const QString, process);
    for (const char *linked : { "debian-xterm", "org.xfce.mousepad", "htop", "org.gnome.baobab" }) {
        link(QLatin1String(linked));
    }
    showGrid(4);
    QVERIFY(windowsOfClass(windowClass).isEmpty());

    click(id);

    QTRY_VERIFY_WITH_TIMEOUT(!windowsOfClass(windowClass).isEmpty(), 30'000);
    QTRY_VERIFY(isProcessRunning(process));
    closeWindowsOfClass(windowClass);
    QTRY_VERIFY_WITH_TIMEOUT(windowsOfClass(windowClass).isEmpty(), 20'000);
}

void LaunchTest::whatIsLaunchedOutlivesTheProgram()
{
    link(QStringLiteral("debian-xterm"));
    showGrid(1);
    click(QStringLiteral("debian-xterm"));
    QTRY_VERIFY_WITH_TIMEOUT(!windowsOfClass(QStringLiteral("xterm.XTerm")).isEmpty(), 30'000);

    _ortu.kill();
    QVERIFY(_ortu.waitForFinished());

    QTRY_VERIFY(windowsOfClass(QStringLiteral("ortu")).isEmpty());
    QVERIFY(isProcessRunning(QStringLiteral("xterm")));
    QVERIFY(!windowsOfClass(QStringLiteral("xterm.XTerm")).isEmpty());
    closeWindowsOfClass(QStringLiteral("xterm.XTerm"));
}

void LaunchTest::aBundleThatIsGone_leavesTheGrid()
{
    _runner->writeEntry(QStringLiteral("Gone"));
    _runner->writeEntry(QStringLiteral("Here"));
    showGrid(2);
    const QPoint onGone = middleOnScreen(QStringLiteral("Gone"));
    QVERIFY(onGone.x() >= 0);
    QVERIFY(QFile::remove(_runner->path(QStringLiteral("apps/Gone.desktop"))));

    click(QStringLiteral("Gone"));

    const auto saved = [this] {
        return _runner->read(QStringLiteral("data/Ortu/AllApplications.plist"));
    };
    QTRY_VERIFY(!saved().contains("Gone.desktop"));
    QVERIFY(saved().contains("Here.desktop"));
    QByteArray log;
    const auto isReported = [&] {
        log += _ortu.readAllStandardError();
        return log.contains("LSOpenCFURLRef() returned err: -43 for URL: file://");
    };
    QTRY_VERIFY2(isReported(), log.constData());
}

void LaunchTest::keysAndMenu_driveTheGrid()
{
    const QString started = _runner->path(QStringLiteral("started"));
    for (const char *name : { "alpha", "beta", "bet" }) {
        _runner->write(QStringLiteral("apps/%1.desktop").arg(QLatin1String(name)),
            QByteArray("[Desktop Entry]\nType=Application\nIcon=xterm\nName=") + name
                + "\nExec=touch " + QFile::encodeName(started) + '-' + name + '\n');
    }
    showGrid(3);
    const auto colorOf = [this](const QString &name) {
        return picture().pixelColor(middleOnScreen(name));
    };
    const QString alpha = QStringLiteral("alpha");
    const QString beta = QStringLiteral("beta");
    const auto excluded = [this] {
        return _runner->read(QStringLiteral("data/Ortu/ExcludedApplications.plist"));
    };
    // Away from every icon, with the keyboard in the window.
    outputOf(QStringLiteral("wmctrl"), { QStringLiteral("-xa"), QStringLiteral("ortu") });
    outputOf(QStringLiteral("xdotool"),
        { QStringLiteral("mousemove"), QStringLiteral("3"), QStringLiteral("3") });
    const QColor shown = colorOf(beta);
    QTRY_COMPARE(colorOf(alpha), shown);

    press({ QStringLiteral("b") });
    QTRY_VERIFY(colorOf(alpha) != shown);
    QCOMPARE(colorOf(beta), shown);
    press({ QStringLiteral("Escape") });
    QTRY_COMPARE(colorOf(alpha), shown);
    press({ QStringLiteral("b"), QStringLiteral("e"), QStringLiteral("t"), QStringLiteral("a"),
        QStringLiteral("Return") });
    QTRY_VERIFY(QFile::exists(started + QStringLiteral("-beta")));
    showPanel();

    click(alpha, 3);
    press({ QStringLiteral("Down"), QStringLiteral("Return") });
    QTRY_VERIFY(excluded().contains("alpha.desktop"));
    outputOf(QStringLiteral("xdotool"),
        { QStringLiteral("keydown"), QStringLiteral("alt"), QStringLiteral("key"),
            QStringLiteral("Home"), QStringLiteral("key"), QStringLiteral("Menu"),
            QStringLiteral("keyup"), QStringLiteral("alt") });
    press({ QStringLiteral("Down"), QStringLiteral("Return") });
    QTRY_VERIFY(!excluded().contains("alpha.desktop"));
    // By the arrow keys, whatever the pointer is over.
    press({ QStringLiteral("Home"), QStringLiteral("Return") });
    QTRY_VERIFY(QFile::exists(started + QStringLiteral("-alpha")));
    QVERIFY(!QFile::exists(started + QStringLiteral("-bet")));
}

QTEST_GUILESS_MAIN(LaunchTest)

#include "LaunchTest.moc"
