// How a host stops a call that takes too long.
#pragma once

namespace demo {

// Starts a correlation of many seconds with a host that asks to stop after so long, and prints what came of it.
void show_stop(double milliseconds);

}  // namespace demo
