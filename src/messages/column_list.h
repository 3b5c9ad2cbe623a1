#pragma once

#include <initializer_list>

/// One column of a table and the field of a record that it stands for.
template <typename Record, typename Field>
struct ColumnField
{
    const char *column;
    Field Record::*field;
};

template <typename Record, typename Field>
using ColumnList = std::initializer_list<ColumnField<Record, Field>>;
