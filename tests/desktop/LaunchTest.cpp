// Real applications of the system, clicked in the real program on a real display.

#include "desktop/ProgramRunner.h"
#include "platform/FileTree.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

// Where the grid begins in the panel.
constexpr int topMargin = 30;

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
    return outputOf(u"wmctrl"_s, { u"-lx"_s }).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList windowsOfClass(const QString &part)
{
    return windows().filter(part, Qt::CaseInsensitive);
}

bool isProcessRunning(const QString &name)
{
    return !outputOf(u"pgrep"_s, { u"-x"_s, name }).isEmpty();
}

void closeWindowsOfClass(const QString &part)
{
    const QStringList lines = windowsOfClass(part);
    for (const QString &line : lines) {
        outputOf(u"wmctrl"_s, { u"-ic"_s, line.section(QLatin1Char(' '), 0, 0) });
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
        _programs.addPrograms(
            u"bin"_s, { u"xterm"_s, u"mousepad"_s, u"htop"_s, u"baobab"_s, u"touch"_s }));
    _runner->scanOnlyOwnApplications();
}

void LaunchTest::cleanup()
{
    _ortu.terminate();
    _ortu.waitForFinished();
    QTRY_VERIFY(windowsOfClass(u"ortu"_s).isEmpty());
}

void LaunchTest::link(const QString &id) const
{
    const QString entry = u"/usr/share/applications/%1.desktop"_s.arg(id);
    QVERIFY2(QFile::exists(entry), qPrintable(entry));
    QVERIFY(QFile::link(entry, _runner->path(u"apps/%1.desktop"_s.arg(id))));
}

QJsonObject LaunchTest::shownLayout() const
{
    return _runner->run({ u"--layout"_s, u"1"_s, u"--bounds"_s, u"1212x704"_s, u"--json"_s })
        .json()
        .object();
}

void LaunchTest::showGrid(qsizetype cellCount)
{
    _runner->start(_ortu, {});
    QTRY_COMPARE_WITH_TIMEOUT(windowsOfClass(u"ortu"_s).size(), 1, 20'000);
    const QJsonObject layout = shownLayout();
    QVERIFY(layout[u"cells"_s].toArray().size() >= cellCount);
    const QJsonArray size = layout[u"viewSize"_s].toArray();
    _size = QSize(size[0].toInt(), size[1].toInt());
}

void LaunchTest::showPanel() const
{
    const auto isVisible = [this] {
        return _runner->run({ u"--status"_s, u"--json"_s }).json()[u"visible"_s].toBool();
    };
    QTRY_VERIFY(!isVisible());
    QCOMPARE(_runner->run({ u"--show"_s }).exitCode, 0);
    QTRY_COMPARE(windowsOfClass(u"ortu"_s).size(), 1);
}

QPoint LaunchTest::middleOnScreen(const QString &name) const
{
    const QJsonObject layout = shownLayout();
    const QJsonArray cells = layout[u"cells"_s].toArray();
    for (const QJsonValue &cell : cells) {
        if (cell[u"app"_s].toString().endsWith(name + QLatin1String(".desktop"))) {
            const QJsonArray rect = cell[u"rect"_s].toArray();
            const double x = rect[0].toDouble() + rect[2].toDouble() / 2;
            const double y = rect[1].toDouble() + rect[3].toDouble() / 2;
            // A panel may be wider than its grid.
            const QPoint grid((picture().width() - _size.width()) / 2, topMargin);
            return QPointF(x, _size.height() - y).toPoint() + grid;
        }
    }
    return { -1, -1 };
}

void LaunchTest::click(const QString &name, int button) const
{
    const QPoint point = middleOnScreen(name);
    QVERIFY2(point.x() >= 0, qPrintable(name));
    const QString window = windowsOfClass(u"ortu"_s).value(0).section(QLatin1Char(' '), 0, 0);
    outputOf(u"xdotool"_s,
        { u"windowactivate"_s, u"--sync"_s, window, u"mousemove"_s, u"--window"_s, window,
            QString::number(point.x()), QString::number(point.y()), u"click"_s,
            QString::number(button) });
}

void LaunchTest::press(const QStringList &keys)
{
    outputOf(u"xdotool"_s, QStringList { u"key"_s } + keys);
}

QImage LaunchTest::picture() const
{
    const QString window = windowsOfClass(u"ortu"_s).value(0).section(QLatin1Char(' '), 0, 0);
    const QString file = _runner->path(u"picture.png"_s);
    outputOf(u"import"_s, { u"-silent"_s, u"-window"_s, window, file });
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
    link(u"debian-xterm"_s);
    showGrid(1);
    click(u"debian-xterm"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!windowsOfClass(u"xterm.XTerm"_s).isEmpty(), 30'000);

    _ortu.kill();
    QVERIFY(_ortu.waitForFinished());

    QTRY_VERIFY(windowsOfClass(u"ortu"_s).isEmpty());
    QVERIFY(isProcessRunning(u"xterm"_s));
    QVERIFY(!windowsOfClass(u"xterm.XTerm"_s).isEmpty());
    closeWindowsOfClass(u"xterm.XTerm"_s);
}

void LaunchTest::aBundleThatIsGone_leavesTheGrid()
{
    _runner->writeEntry(u"Gone"_s);
    _runner->writeEntry(u"Here"_s);
    showGrid(2);
    const QPoint onGone = middleOnScreen(u"Gone"_s);
    QVERIFY(onGone.x() >= 0);
    QVERIFY(QFile::remove(_runner->path(u"apps/Gone.desktop"_s)));

    click(u"Gone"_s);

    const auto saved = [this] { return _runner->read(u"data/Ortu/AllApplications.plist"_s); };
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
    const QString started = _runner->path(u"started"_s);
    for (const char *name : { "alpha", "beta", "bet" }) {
        _runner->write(u"apps/%1.desktop"_s.arg(QLatin1String(name)),
            QByteArray("[Desktop Entry]\nType=Application\nIcon=xterm\nName=") + name
                + "\nExec=touch " + QFile::encodeName(started) + '-' + name + '\n');
    }
    showGrid(3);
    const auto colorOf = [this](const QString &name) {
        return picture().pixelColor(middleOnScreen(name));
    };
    const QString alpha = u"alpha"_s;
    const QString beta = u"beta"_s;
    const auto excluded = [this] {
        return _runner->read(u"data/Ortu/ExcludedApplications.plist"_s);
    };
    // Away from every icon, with the keyboard in the window.
    outputOf(u"wmctrl"_s, { u"-xa"_s, u"ortu"_s });
    outputOf(u"xdotool"_s, { u"mousemove"_s, u"3"_s, u"3"_s });
    const QColor shown = colorOf(beta);
    QTRY_COMPARE(colorOf(alpha), shown);

    press({ u"b"_s });
    QTRY_VERIFY(colorOf(alpha) != shown);
    QCOMPARE(colorOf(beta), shown);
    press({ u"Escape"_s });
    QTRY_COMPARE(colorOf(alpha), shown);
    press({ u"b"_s, u"e"_s, u"t"_s, u"a"_s, u"Return"_s });
    QTRY_VERIFY(QFile::exists(started + u"-beta"_s));
    showPanel();

    click(alpha, 3);
    press({ u"Down"_s, u"Return"_s });
    QTRY_VERIFY(excluded().contains("alpha.desktop"));
    outputOf(u"xdotool"_s,
        { u"keydown"_s, u"alt"_s, u"key"_s, u"Home"_s, u"key"_s, u"Menu"_s, u"keyup"_s, u"alt"_s });
    press({ u"Down"_s, u"Return"_s });
    QTRY_VERIFY(!excluded().contains("alpha.desktop"));
    // By the arrow keys, whatever the pointer is over.
    press({ u"Home"_s, u"Return"_s });
    QTRY_VERIFY(QFile::exists(started + u"-alpha"_s));
    QVERIFY(!QFile::exists(started + u"-bet"_s));
}

QTEST_GUILESS_MAIN(LaunchTest)

#include "LaunchTest.moc"
