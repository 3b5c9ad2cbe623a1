#pragma once

#include <QString>

/// What a person reads of a piece of HTML. Nothing is fetched or run.
QString plainTextOfHtml(const QString &html);
