#include "platform/freedesktop/FreedesktopWording.h"

#include "TestCase.h"

class FreedesktopWordingTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // A null text stands as it is.
    void words_areThoseOfTheDesktop()
    {
        const std::pair<const char *, QString> rows[] { { "Show in Finder",
                                                            u"Show in File Manager"_s },
            { "double-clicking the application icon in the Finder.",
                u"double-clicking the application icon in the file manager."_s },
            { "\u2303 control + \u2325 option + \u2318 command + \u21e7 shift + Tab",
                u"\u2303 control + \u2325 Alt + \u2318 Super + \u21e7 shift + Tab"_s },
            { "option", u"Alt"_s }, { "Command", u"Super"_s },
            { "\u2318 command:", u"\u2318 Super:"_s }, { "Pathfinder: Finders Keepers", {} },
            { "You must restart Ortu for this option to take effect.", {} }, { "options + ", {} },
            { "command line", {} }, { "", {} } };
        for (const auto &[text, ours] : rows) {
            const QString said = FreedesktopWording().translate("OTController", text, nullptr, -1);
            QCOMPARE(said, ours);
            QCOMPARE(said.isNull(), ours.isNull());
        }
    }
};

QTEST_GUILESS_MAIN(FreedesktopWordingTest)
#include "FreedesktopWordingTest.moc"
