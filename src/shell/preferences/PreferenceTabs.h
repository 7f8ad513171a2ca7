// The tabs of the preferences: which preference stands where, and in what words.

#pragma once

#include <functional>

class Items;
class PreferenceControls;
class SettingsButtons;
struct HotKeyChoice;
class QWidget;

namespace PreferenceTabs {

// Whether there is a feed of newer versions.
enum class UpdateChecks { Absent, Offered };

// Each makes the page of a tab, without a parent. What it holds belongs to it; the controls outlive
// the page.
QWidget *general(PreferenceControls &controls, UpdateChecks updates);
QWidget *appearance(PreferenceControls &controls);
QWidget *groupsAndOrder(
    PreferenceControls &controls, const std::function<void()> &openColorSortingOptions);
QWidget *folders(PreferenceControls &controls, const Items &items);
QWidget *triggers(PreferenceControls &controls, const HotKeyChoice &hotKey);
// With the buttons for all settings at its end.
QWidget *advanced(PreferenceControls &controls, SettingsButtons *settings);

} // namespace PreferenceTabs
