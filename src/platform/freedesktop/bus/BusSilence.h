// A bus that is there and says nothing: a daemon that hangs or was stopped. The system goes on
// taking connections for it, and both libraries that speak to buses wait on such a one for minutes.

#pragma once

#include <QByteArray>

#include <chrono>

// Whether the bus at this address accepts a connection but says nothing for that long. False for
// one that is not there, and for addresses that are not a single local socket.
bool isBusSilent(const QByteArray &address, std::chrono::milliseconds patience);
