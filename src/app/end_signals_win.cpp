#include "app/end_signals.h"

#include <QSocketNotifier>

// A program with windows is asked to end by messages there, which the toolkit takes.
EndSignals::EndSignals() = default;

EndSignals::~EndSignals() = default;

void EndSignals::end() {}
