#include "shell/preferences/PreferenceTabs.h"

#include "catalogue/OTAppManager.h"
#include "shell/preferences/HotKeyControl.h"
#include "shell/preferences/PreferenceRows.h"
#include "shell/preferences/ScanFolderTable.h"
#include "shell/preferences/SettingsButtons.h"
#include "support/NotificationCenter.h"
#include "support/UserDefaults.h"

#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

namespace {

using Unit = PreferenceControls::Range::Unit;

const QString searchDirectories = QStringLiteral("searchDirectories");

QString tr(const char *text)
{
    return QCoreApplication::translate("PreferenceTabs", text);
}

} // namespace

QWidget *PreferenceTabs::general(PreferenceControls &controls, UpdateChecks updates)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    rows.addComboBox("groupToShowWhenWindowOpens", tr("Group shown when the panel &opens:"),
        { { tr("The one shown last"), -1 }, { tr("Running"), RunningGroup },
            { tr("Included"), IncludedGroup }, { tr("Excluded"), ExcludedGroup },
            { tr("All"), AllGroup }, { tr("Favorites"), UserGroup } });
    rows.addGap();
    rows.addCheckBox("startAtLogin", tr("Start Ortu at &login"));
    rows.addCheckBox("showWindowAtLaunch", tr("Show the &panel when Ortu starts"));
    rows.addCheckBox("showOnBecomeActive", tr("Show the panel when&ever Ortu becomes active"));
    rows.addCheckBox(
        "hideOnResignActive", tr("&Hide a moved panel as soon as Ortu is no longer active"));
    rows.addCheckBox(
        "nonActivatingPanel", tr("Keep the panel above other &windows when they are used"));
    rows.addGap();
    rows.addCheckBox("matchesMoreThanNames",
        tr("&Typing finds by keywords, kinds, commands and actions as well as by names"));
    rows.addCheckBox("remembersUse", tr("What is started &most often is found first"));
    auto *const forget = new QPushButton(tr("&Clear What Was Started"));
    forget->setAutoDefault(false);
    QObject::connect(forget, &QPushButton::clicked, &NotificationCenter::defaultCenter(),
        &NotificationCenter::N_ForgetUses);
    rows.form().addRow({}, forget);
    if (updates == UpdateChecks::Offered) {
        rows.addGap();
        rows.addCheckBox("SUEnableAutomaticChecks", tr("Loo&k for new versions once a day"));
    }
    return page;
}

QWidget *PreferenceTabs::appearance(PreferenceControls &controls)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    rows.addSlider("maximumIconSize", tr("&Largest icon:"), { 16, 128 });
    rows.addSlider("iconPadding", tr("&Margin of icons:"), { 2, 8 });
    rows.addSlider("iconSpacing", tr("Space &between icons:"), { 0, 8 });
    rows.addSlider(
        "excludedIconAlpha", tr("Opacity of dimmed &icons:"), { 0, 100, Unit::Hundredths });
    rows.addGap();
    rows.addColorWell("windowColor", tr("&Panel:"), tr("Colour of the Panel"));
    rows.addSlider("windowAlpha", tr("&Opacity of the panel:"), { 0, 100, Unit::Hundredths });
    rows.addCheckBox("drawWindowBorder", tr("Draw a bo&rder round the panel"));
    rows.addColorWell("windowBorderColor", tr("Bord&er:"), tr("Colour of the Border"));
    rows.addGap();
    rows.addCheckBox("drawFilledIconHighlight", tr("Fill the &cells of running applications"));
    rows.addCheckBox("drawStrokedIconHighlight", tr("Ou&tline the cells of running applications"));
    rows.addColorWell(
        "iconHighlightColor", tr("&Highlight:"), tr("Colour of Running Applications"));
    rows.addGap();
    rows.addCheckBox("markNewApplications", tr("Mar&k new applications until they are started"));
    return page;
}

QWidget *PreferenceTabs::groupsAndOrder(
    PreferenceControls &controls, const std::function<void()> &openColorSortingOptions)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    rows.addComboBox("groupContentsSortOrder", tr("Order of &icons:"),
        { { tr("By folder"), 0 }, { tr("By name"), 1 }, { tr("By colour"), 2 } });
    auto *const options = new QPushButton(tr("Options of the Order by &Colour…"));
    options->setAutoDefault(false);
    QObject::connect(options, &QPushButton::clicked, page, openColorSortingOptions);
    rows.form().addRow({}, options);
    rows.addCheckBox("showHueBar", tr("&Show the colours in a bar beside the groups"));
    rows.addCheckBox(
        "sortRunningByLaunchOrder", tr("&Running applications in the order they were started"));
    rows.addGap();
    rows.addComboBox("groupOrientation", tr("&Bunches:"),
        { { tr("None, one list"), 0 }, { tr("One below the other"), 1 },
            { tr("Side by side"), 2 } });
    rows.addComboBox("iconReadingOrder", tr("Icons follo&w each other:"),
        { { tr("Across, then down"), 1 }, { tr("Down, then across"), 2 } });
    rows.addHiddenCheckBox("minimizeEmptyCells", tr("&Leave as few cells empty as possible"));
    return page;
}

QWidget *PreferenceTabs::folders(PreferenceControls &controls, const Items &items)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    auto *const intro =
        new QLabel(tr("Applications are looked for in these folders, and in what is "
                      "below them."));
    intro->setWordWrap(true);
    rows.form().addRow(intro);
    auto *const table = new ScanFolderTable(UserDefaults::standard(), items);
    PreferenceControls::disableIfFixed(*table, { searchDirectories });
    controls.addChooser([table] { table->closeOpenPanel(); });
    rows.form().addRow(table);
    rows.addHiddenStepper("maxFolderRecursionDepth", tr("Look into each folder to a d&epth of"),
        { 1, 99 }, tr("levels"));
    controls.addReset([] {
        if (!UserDefaults::standard().isFixedForThisRun(searchDirectories)) {
            UserDefaults::standard().removeObject(searchDirectories);
        }
    });
    return page;
}

QWidget *PreferenceTabs::triggers(PreferenceControls &controls, const HotKeyChoice &hotKey)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    auto *const hotKeyControl = new HotKeyControl(hotKey);
    rows.add(tr("Hot &key:"), hotKeyControl);
    controls.addReset([hotKeyControl] { hotKeyControl->reset(); });
    rows.addGap();
    rows.addCheckBox("showAppInStatusBar", tr("Show Ortu among the &status icons"));
    rows.addCheckBox(
        "statusBarTogglesWindow", tr("A &click on that icon shows the panel, not the menu"));
    rows.addCheckBox("showIconInDock", tr("List Ortu in the &task bar"));
    rows.addGap();
    rows.addComboBox("cursorHotSpotLocation", tr("Screen &edge or corner:"),
        { { tr("None"), 0 }, { tr("Top left corner"), 1 }, { tr("Left edge"), 2 },
            { tr("Bottom left corner"), 3 }, { tr("Bottom edge"), 4 },
            { tr("Bottom right corner"), 5 }, { tr("Right edge"), 6 },
            { tr("Top right corner"), 7 } });
    rows.addSlider("cursorHotSpotDelay", tr("De&lay there:"), { 0, 200, Unit::Seconds });
    rows.addCheckBox(
        "highlightHotSpots", tr("Sho&w the edge or corner while the pointer is there"));
    return page;
}

QWidget *PreferenceTabs::advanced(PreferenceControls &controls, SettingsButtons *settings)
{
    auto *const page = new QWidget;
    PreferenceRows rows(controls, *page);
    rows.addSlider("com.apple.springing.delay", tr("A dragged icon &opens a group after:"),
        { 0, 200, Unit::Seconds });
    rows.addCheckBox("reverseScrollWheel", tr("&Turn the wheel the other way round"));
    rows.addCheckBox("animateWindowResizing", tr("Change the panel's size in &steps"));
    rows.addGap();
    rows.addCheckBox("tabletMode", tr("Keep names away from the hand on a ta&blet"));
    rows.addComboBox(
        "tabletHandedness", tr("The &hand is the:"), { { tr("Left"), 0 }, { tr("Right"), 1 } });
    rows.addGap();
    rows.addCheckBox(
        "showNoMouseAccessWarning", tr("Warn at the start when onl&y the hot key shows the panel"));
    rows.addCheckBox(
        "showNoUIAccessWarning", tr("Warn at the start when nothing shows the &panel"));
    rows.addGap();
    rows.form().addRow(new QLabel(tr("Favorites, exclusions and preferences:")), settings);
    controls.addChooser([settings] { settings->closeFileDialog(); });
    return page;
}
