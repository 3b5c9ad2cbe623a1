#pragma once

#include <QString>

/// The pages of the maker's site that the window leads to; the only place that names them.
QString homePage();
QString helpPage();
QString feedbackPage();
/// The command line, the maker's other program.
QString commandLinePage();
