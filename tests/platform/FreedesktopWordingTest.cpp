#include "platform/freedesktop/FreedesktopWording.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

class FreedesktopWordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void words_areThoseOfTheDesktop_data()
    {
        QTest::addColumn<QString>("ours"); // Null: stands as it is.
        const auto row = [](const char *text, const QString &ours = {}) {
            QTest::newRow(text) << ours;
        };
        row("Show in Finder", u"Show in File Manager"_s);
        row("double-clicking the application icon in the Finder.",
            u"double-clicking the application icon in the file manager."_s);
        row("Pathfinder: Finders Keepers");
        row("\u2303 control + \u2325 option + \u2318 command + \u21e7 shift + Tab",
            u"\u2303 control + \u2325 Alt + \u2318 Super + \u21e7 shift + Tab"_s);
        row("option", u"Alt"_s);
        row("Command", u"Super"_s);
        row("\u2318 command:", u"\u2318 Super:"_s);
        row("You must restart Ortu for this option to take effect.");
        row("options + ");
        row("command line");
        row("");
    }
    void words_areThoseOfTheDesktop()
    {
        const FreedesktopWording wording;
        QFETCH(QString, ours);
        const QString text =
            wording.translate("OTController", QTest::currentDataTag(), nullptr, -1);
        QCOMPARE(text, ours);
        QCOMPARE(text.isNull(), ours.isNull());
    }
};

QTEST_GUILESS_MAIN(FreedesktopWordingTest)
#include "FreedesktopWordingTest.moc"
