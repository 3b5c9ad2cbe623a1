#pragma once

/// Starts the program, runs it until the window is closed, and gives the exit status.
int runApplication(int &argc, char **argv);
