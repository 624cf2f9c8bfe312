#pragma once

namespace kalvaro {

// Lets happen all that is posted, what that posts in turn, and what is to be deleted later: enough
// turns of the event loop for a request to go through all its steps. No time passes.
void ereignisseAbarbeiten();

// The same for what is posted alone: sockets and timers of Qt's own have no turn. Asks the system
// for nothing, so a test can afford it a million times.
void postAbarbeiten();

} // namespace kalvaro
