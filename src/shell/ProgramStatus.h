// How things stand with the program, as it tells other starts that ask.

#pragma once

#include <QJsonObject>

class OTAppManager;
class OTWindow;
class Triggers;

QJsonObject programStatus(
    const OTWindow &panel, const OTAppManager &appManager, const Triggers &triggers, bool isActive);
