#pragma once

#include <optional>

/// Answers a command line that wants no window: prints the help or the version, or names an argument that
/// there is none of. Gives the exit status, 0 or 2; nothing when the window is wanted. Needs no screen, and
/// the application object must not exist yet.
std::optional<int> answerArguments(int argc, char **argv);
