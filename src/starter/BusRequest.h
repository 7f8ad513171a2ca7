// Asks the Ortu that runs for something, in words that InstanceMessage of the bus room has as well,
// and before any library is loaded: a key that the desktop binds to `ortu --toggle` waits for it.
//
// Speaks to a bus at a plain local socket only, and leaves everything that is out of the ordinary
// to the program itself.

#pragma once

namespace BusRequest {

enum class Outcome {
    // What was asked for is done.
    Done,
    // No Ortu runs.
    NoneRuns,
    // The one that runs got the request and does not answer.
    NoAnswer,
    // Nothing was done. The program has to ask in its own way.
    Unknown,
};

// `action` is one of the actions of the program, null for a start without arguments.
Outcome ask(const char *action);

} // namespace BusRequest
