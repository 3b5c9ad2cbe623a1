#pragma once

/// One written format over one kind of record. A writer is made for each output: begin opens it, write takes
/// the records one by one, end finishes it. Destroyed without end, it leaves no half-written output behind.
template <typename Record>
class AbsFormatExport
{
public:
    AbsFormatExport() = default;
    virtual ~AbsFormatExport() = default;
    AbsFormatExport(const AbsFormatExport &) = delete;
    AbsFormatExport &operator=(const AbsFormatExport &) = delete;

    virtual void begin() = 0;
    virtual void write(const Record &record) = 0;
    virtual void end() = 0;
};
