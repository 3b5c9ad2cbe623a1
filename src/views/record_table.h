#pragma once

#include "work/record_source.h"

#include <QVariant>

#include <functional>
#include <vector>

/// One column of a list of records.
struct RecordColumn
{
    const char *title; // key of a text
    int width;         // 0: takes what is left
    bool alignRight;
    std::function<QString(int row)> text;
    std::function<QVariant(int row)> sortKey;
};

/// How the records of a class are shown in a list with a detail beside it. Keeps the records alive.
struct RecordTable
{
    RecordsPtr records;
    int rows = 0;
    std::vector<RecordColumn> columns;
    std::function<QString(int row)> searchText;
    std::function<QString(int row)> detail;
    std::function<QString(int row)> identity;
    std::function<QString(int row)> group;    // null: the records stand in one list
    std::function<QVariant(int row)> picture; // beside the first column; null: none
};

/// The table of contacts, calls, notes or calendar events.
RecordTable makeRecordTable(DataClass dataClass, const RecordsPtr &records);

/// "2:05" of 125 seconds.
QString durationText(int seconds);
