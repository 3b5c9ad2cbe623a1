#pragma once

#include <QStringList>

/// A paragraph that says how many things were left out (the text of `key`, with numerus forms) and
/// names the first few. Empty when there are none. All of them go into the log.
QString listedProblems(const char *key, const QStringList &problems);

class Report;

/// A paragraph with the sentences of a report, what is damaged first; empty when there are none. All go into the log.
QString reportText(const Report &report);
