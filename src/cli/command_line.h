#pragma once

/// Runs the whole program: understands the arguments, does what they ask for, and gives the exit status.
int runCommandLine(int argc, char **argv);
