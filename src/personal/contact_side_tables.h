#pragma once

#include "personal/contact_record.h"
#include "personal/scope.h"

#include <QHash>

#include <vector>

class Report;
class Sqlite3DB;

/// The labels of an address book: "home", or what the owner has typed.
class ContactLabels
{
public:
    ContactLabels(const Sqlite3DB &addressBook, Report &report);

    struct Label
    {
        QString type; // number, as the rows of a contact have it
        QString custom;
    };

    /// The label of a value of that kind, by its row id; null when there is none. Where labels were lost to
    /// damage, each that is not found may be one of them, and is the label "other".
    const Label *find(ContactDataKind kind, qint64 rowid);

private:
    bool m_isWhole = true;
    QHash<qint64, QString> m_texts;
    QMap<ContactDataKind, QHash<qint64, Label>> m_known;
};

/// The parts of the composed values of an address book: of addresses, and of names on other services.
class ContactParts
{
public:
    ContactParts(const Sqlite3DB &addressBook, Scope scope, Report &report);

    /// Both by the UID of the value.
    void fillAddress(ContactDataRow &row, qint64 uid);
    void fillInstantMessage(ContactDataRow &row, qint64 uid);
    /// Of a profile on another service: its address or user name, and the service as the label.
    void fillProfile(ContactDataRow &row, qint64 uid) const;
    /// Names what the values that were filled had no place for.
    void reportLeftOut(const QString &where, Report &report) const;

private:
    struct Part
    {
        qint64 value; // UID
        QString key;  // in lower case: devices have written either
        QString text;
    };

    template <typename Visit>
    void forEach(qint64 uid, Visit visit) const;

    Scope m_scope;
    std::vector<Part> m_parts; // by value
    qint64 m_countryCodes = 0;
    qint64 m_withoutPlace = 0;
    qint64 m_unknownServices = 0;
};
