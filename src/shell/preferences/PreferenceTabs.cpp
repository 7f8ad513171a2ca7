#include "shell/preferences/PreferenceTabs.h"

#include "catalogue/OTAppManager.h"
#include "shell/preferences/ColorWell.h"
#include "shell/preferences/HotKeyControl.h"
#include "shell/preferences/PreferenceControls.h"
#include "shell/preferences/ScanFolderTable.h"
#include "support/UserDefaults.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>

namespace {

using Range = PreferenceControls::Range;

QString tr(const char *text)
{
    return QCoreApplication::translate("PreferenceTabs", text);
}

// A label with its control, which its mnemonic leads to.
void addRow(QFormLayout &form, const QString &label, QWidget *control)
{
    form.addRow(label, control);
    if (control->accessibleName().isEmpty()) {
        control->setAccessibleName(QString(label).remove(u'&').remove(u':'));
    }
}

// Between rows that belong together.
void addGap(QFormLayout &form)
{
    auto *const gap = new QWidget;
    gap->setFixedHeight(gap->fontMetrics().height() / 2);
    form.addRow(gap);
}

QFormLayout *formOn(QWidget *page)
{
    auto *const form = new QFormLayout(page);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    return form;
}

} // namespace

QWidget *PreferenceTabs::general(PreferenceControls &controls)
{
    auto *const page = new QWidget;
    QFormLayout &form = *formOn(page);
    addRow(form, tr("Group shown when the panel &opens:"),
        controls.comboBox(QStringLiteral("groupToShowWhenWindowOpens"),
            { { tr("The one shown last"), -1 }, { tr("Running"), RunningGroup },
                { tr("Included"), IncludedGroup }, { tr("Excluded"), ExcludedGroup },
                { tr("All"), AllGroup }, { tr("Favorites"), UserGroup } }));
    addGap(form);
    form.addRow(controls.checkBox(
        QStringLiteral("showWindowAtLaunch"), tr("Show the &panel when Ortu starts")));
    form.addRow(controls.checkBox(
        QStringLiteral("showOnBecomeActive"), tr("Show the panel whene&ver Ortu becomes active")));
    form.addRow(controls.checkBox(QStringLiteral("hideOnResignActive"),
        tr("&Hide a moved panel as soon as Ortu is no longer active")));
    form.addRow(controls.checkBox(
        QStringLiteral("nonActivatingPanel"), tr("Keep the panel above other &windows")));
    addGap(form);
    form.addRow(controls.checkBox(
        QStringLiteral("reverseScrollWheel"), tr("&Turn the wheel the other way round")));
    form.addRow(controls.checkBox(
        QStringLiteral("animateWindowResizing"), tr("Change the panel's size in &steps")));
    return page;
}

QWidget *PreferenceTabs::appearance(PreferenceControls &controls)
{
    auto *const page = new QWidget;
    QFormLayout &form = *formOn(page);
    const auto slider = [&](const char *key, const QString &label, const Range &range) {
        addRow(form, label,
            controls.slider(QLatin1String(key), range, QString(label).remove(u'&').remove(u':')));
    };
    slider("maximumIconSize", tr("&Largest icon:"), { 16, 128 });
    slider("iconPadding", tr("&Margin of icons:"), { 2, 8 });
    slider("iconSpacing", tr("Space &between icons:"), { 0, 8 });
    slider(
        "excludedIconAlpha", tr("Opacity of dimmed &icons:"), { 0, 100, Range::Unit::Hundredths });
    addGap(form);
    addRow(form, tr("&Panel:"),
        controls.colorWell(QStringLiteral("windowColor"), tr("Colour of the Panel")));
    slider("windowAlpha", tr("&Opacity of the panel:"), { 0, 100, Range::Unit::Hundredths });
    form.addRow(controls.checkBox(
        QStringLiteral("drawWindowBorder"), tr("Draw a bo&rder round the panel")));
    addRow(form, tr("Bord&er:"),
        controls.colorWell(QStringLiteral("windowBorderColor"), tr("Colour of the Border")));
    addGap(form);
    form.addRow(controls.checkBox(
        QStringLiteral("drawFilledIconHighlight"), tr("Fill the &cells of what runs")));
    form.addRow(controls.checkBox(
        QStringLiteral("drawStrokedIconHighlight"), tr("Ou&tline the cells of what runs")));
    addRow(form, tr("&Highlight:"),
        controls.colorWell(QStringLiteral("iconHighlightColor"), tr("Colour of What Runs")));
    return page;
}

QWidget *PreferenceTabs::groupsAndOrder(PreferenceControls &controls)
{
    auto *const page = new QWidget;
    QFormLayout &form = *formOn(page);
    addRow(form, tr("Order of &icons:"),
        controls.comboBox(QStringLiteral("groupContentsSortOrder"),
            { { tr("By folder"), 0 }, { tr("By name"), 1 }, { tr("By colour"), 2 } }));
    form.addRow(controls.checkBox(
        QStringLiteral("sortRunningByLaunchOrder"), tr("What &runs in the order of its launch")));
    addGap(form);
    addRow(form, tr("&Bunches:"),
        controls.comboBox(QStringLiteral("groupOrientation"),
            { { tr("None, one list"), 0 }, { tr("One below the other"), 1 },
                { tr("Side by side"), 2 } }));
    addRow(form, tr("Icons follo&w each other:"),
        controls.comboBox(QStringLiteral("iconReadingOrder"),
            { { tr("Across, then down"), 1 }, { tr("Down, then across"), 2 } }));
    return page;
}

QWidget *PreferenceTabs::folders(PreferenceControls &controls, const Items &items)
{
    auto *const page = new QWidget;
    auto *const layout = new QVBoxLayout(page);
    auto *const intro =
        new QLabel(tr("Applications are looked for in these folders, and in what is "
                      "below them."));
    intro->setWordWrap(true);
    layout->addWidget(intro);
    layout->addWidget(new ScanFolderTable(UserDefaults::standard(), items));
    controls.addReset(
        [] { UserDefaults::standard().removeObject(QStringLiteral("searchDirectories")); });
    return page;
}

QWidget *PreferenceTabs::triggers(PreferenceControls &controls, const HotKeyChoice &hotKey)
{
    auto *const page = new QWidget;
    QFormLayout &form = *formOn(page);
    auto *const hotKeyControl = new HotKeyControl(hotKey);
    addRow(form, tr("Hot &key:"), hotKeyControl);
    controls.addReset([hotKeyControl] { hotKeyControl->reset(); });
    addGap(form);
    form.addRow(controls.checkBox(
        QStringLiteral("showAppInStatusBar"), tr("Show Ortu among the &status icons")));
    form.addRow(controls.checkBox(QStringLiteral("statusBarTogglesWindow"),
        tr("A &click on that icon shows the panel, not the menu")));
    form.addRow(
        controls.checkBox(QStringLiteral("showIconInDock"), tr("List Ortu in the &task bar")));
    addGap(form);
    addRow(form, tr("Screen &edge:"),
        controls.comboBox(QStringLiteral("cursorHotSpotLocation"),
            { { tr("None"), 0 }, { tr("Top left corner"), 1 }, { tr("Left edge"), 2 },
                { tr("Bottom left corner"), 3 }, { tr("Bottom edge"), 4 },
                { tr("Bottom right corner"), 5 }, { tr("Right edge"), 6 },
                { tr("Top right corner"), 7 } }));
    addRow(form, tr("After a &rest of:"),
        controls.slider(QStringLiteral("cursorHotSpotDelay"), { 0, 200, Range::Unit::Seconds },
            tr("How long the pointer rests")));
    form.addRow(controls.checkBox(
        QStringLiteral("highlightHotSpots"), tr("Sho&w the place while the pointer is there")));
    addGap(form);
    form.addRow(controls.checkBox(QStringLiteral("showNoMouseAccessWarning"),
        tr("Warn at the start when onl&y the hot key shows the panel")));
    form.addRow(controls.checkBox(QStringLiteral("showNoUIAccessWarning"),
        tr("Warn at the start when nothing sh&ows the panel")));
    return page;
}
