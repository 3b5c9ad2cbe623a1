#include "messages/suspended_triggers.h"

SuspendedTriggers::SuspendedTriggers(Sqlite3DB &db, const QString &schema, const QString &only)
    : m_db(db), m_schema(schema)
{
    {
        Sqlite3Cursor row = db.queryThrow(
            Sqlite3Sql(QStringLiteral(
                           "select name, sql from %1.sqlite_master where type='trigger' and (?='' or name=?)")
                           .arg(schema))
                .addTextParam(only)
                .addTextParam(only));
        while (row.moveNext())
            m_triggers.append({row.getText(0), row.getText(1)});
    }
    for (const Trigger &trigger : std::as_const(m_triggers))
        db.executeThrow(QStringLiteral("drop trigger %1.\"%2\"").arg(schema, trigger.name));
}

void SuspendedTriggers::restore()
{
    for (Trigger &trigger : m_triggers) {
        qsizetype name = trigger.sql.indexOf(trigger.name);
        if (name > 0 && QStringLiteral("\"'`[").contains(trigger.sql[name - 1]))
            --name;
        m_db.executeThrow(trigger.sql.insert(name, m_schema + u'.'));
    }
    m_triggers.clear();
}
