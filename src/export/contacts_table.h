#pragma once

#include "personal/contact_record.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A table of contacts whose columns come from the data: title -> the contact's value, several of one title
/// joined with ";".
class ContactsTable
{
public:
    explicit ContactsTable(const QList<ContactRecord> &contacts);

    /// Ordered by rank and then by first appearance.
    const QStringList &titles() const { return m_titles; }
    /// One cell for each title.
    QStringList cells(const ContactRecord &contact) const;

private:
    QStringList m_titles;
};
