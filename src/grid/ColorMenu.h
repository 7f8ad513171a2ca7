// The menu of an application's colours: which of them counts in the order by colour.

#pragma once

#include "icons/ColorKey.h"

#include <QCoreApplication>

#include <functional>
#include <optional>

class OTApp;
class QMenu;

class ColorMenu final
{
    Q_DECLARE_TR_FUNCTIONS(ColorMenu)

public:
    // No colour stands for what is measured.
    using Choose = std::function<void(const std::optional<SortedColor> &)>;

    // What was measured of the icon, each with a field of the colour and its name, the one that
    // counts marked, and the way back to what is measured. Null when nothing was measured; the
    // caller owns the menu.
    static QMenu *of(const OTApp &app, qreal devicePixelRatio, const Choose &choose);
};
