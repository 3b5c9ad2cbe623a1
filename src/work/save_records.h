#pragma once

#include "base/progress.h"
#include "base/report.h"
#include "personal/data_class.h"
#include "personal/scope.h"

#include <QString>
#include <QStringList>

class PersonalSource;

/// What saving into a local database did with the records of a class.
struct SaveResult
{
    qint64 handled = 0; // added + merged; folders of bookmarks do not count
    qint64 added = 0;
    qint64 merged = 0; // was there already, changed or not
    Report report;     // what the source could not give
};

/// Saves every record of a class of the source into the local database in `folder`, in one transaction: a
/// cancel or an error leaves the store as it was. Throws Error and Cancelled.
SaveResult saveRecords(DataClass dataClass, PersonalSource &source, Scope scope, const QString &folder,
                       Progress &progress);

/// The text that ends such a job, with its number.
QString saveText(DataClass dataClass, const SaveResult &result);

/// Removes records of a local database by the identities that it shows them under, all or none: an identity
/// that is not there is an Error, and nothing is removed. Throws Error and Cancelled.
void removeRecords(DataClass dataClass, const QString &folder, const QStringList &ids, Progress &progress);
