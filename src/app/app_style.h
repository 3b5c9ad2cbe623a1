#pragma once

class QApplication;

/// Gives the application its style sheet, its icon and its one accent colour, in a light palette as in a dark
/// one.
void installStyle(QApplication &application);
