#pragma once

#include <QWidget>

#include <cstdint>

class QCheckBox;
class QDateEdit;

/// A stretch of time, both ends included, as Apple absolute seconds.
struct DateRange
{
    std::int64_t from = INT64_MIN;
    std::int64_t to = INT64_MAX;

    bool isAll() const { return from == INT64_MIN && to == INT64_MAX; }
    bool contains(std::int64_t date) const { return date >= from && date <= to; }
    bool operator==(const DateRange &) const = default;
};

/// Lets the user keep to the days between two dates, in local time.
class DateRangeEdit : public QWidget
{
    Q_OBJECT

public:
    explicit DateRangeEdit(QWidget *parent = nullptr);

    /// The days that there is anything for: what the fields start with.
    void setBounds(const DateRange &bounds);
    DateRange range() const;
    void setRange(const QDate &from, const QDate &to);

signals:
    void rangeChanged();

private:
    QCheckBox *m_only;
    QDateEdit *m_from;
    QDateEdit *m_to;
};
