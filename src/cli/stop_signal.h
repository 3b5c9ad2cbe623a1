#pragma once

/// Ctrl-C and a request to end set a flag that jobs ask for; the second one ends the process at once. A
/// reader of standard output that goes away becomes a write error instead of ending the process, and the
/// three standard streams are made sure to exist, so that no file of ours ever takes their place. Call once,
/// first of all.
void installStopSignals();

bool stopRequested();

/// From here on a stop ends the process at once: for jobs that leave nothing behind to clean up.
void endAtOnceOnStop();
