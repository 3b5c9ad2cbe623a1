#pragma once

#include "personal/data_class.h"

#include <QList>

/// The words of a class of records in its view, as keys of texts. For the classes of RecordsMainForm.
struct ClassTexts
{
    const char *title;
    const char *filter;
    const char *empty;
    const char *saveTitle;
    const char *confirmRemove;
    const char *removed;
    const char *confirmRemoveAll;
    const char *removedAll;
};
const ClassTexts &classTexts(DataClass dataClass);

/// One format that a class is written in.
struct ClassFormat
{
    const char *name;   // as exportRecords() knows it
    const char *label;  // key of a text
    const char *ending; // of the file; nullptr: a folder
};
const QList<ClassFormat> &classFormats(DataClass dataClass);
