// How icons are ordered by colour: a sheet on the preferences. The order follows while the options
// are changed.

#pragma once

#include "shell/preferences/PreferenceControls.h"
#include "shell/preferences/Sheet.h"

class ColorSortingOptions final : public Sheet
{
    Q_OBJECT

public:
    explicit ColorSortingOptions(QWidget *parent);

Q_SIGNALS:
    void resetWanted();

private:
    PreferenceControls _controls;
};
