#pragma once

#include <QHash>
#include <QString>

class FileSource;

/// Puts names to numbers: number suffix -> name of the person that has it, of every multi-value of an address
/// book. Built once; without an address book every look-up gives an empty text.
class NumberNames
{
public:
    explicit NumberNames(FileSource &source);

    /// The name of the person that owns a number or address, empty when nobody does or it has neither digits
    /// nor letters.
    QString nameOfNumber(const QString &address) const;

private:
    QHash<QString, QString> m_names;
};
