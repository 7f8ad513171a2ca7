// Fills a catalogue in the way of a start of the program, for all commands alike.

#pragma once

#include <QString>

class OTAppManager;

namespace CatalogueSetup {

enum class Scan { OnlyWhenNothingIsSaved, Always };

// Reads the saved lists, or scans, and on the first launch of all excludes what is better not
// shown. The icons of the given group, if any are loaded, come first.
void fill(OTAppManager &manager, int prioritizedGroup, Scan scan);

// Whether the lists stand in an order that only the icons tell.
bool isOrderByColor();

// Waits until every icon has been loaded and, where that is the order, sorts the lists by their
// colours.
void waitForIcons(OTAppManager &manager);

} // namespace CatalogueSetup
