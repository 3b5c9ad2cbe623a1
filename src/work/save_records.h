#pragma once

#include "base/progress.h"
#include "base/save_report.h"
#include "personal/data_class.h"
#include "personal/scope.h"

#include <QString>
#include <QStringList>

class PersonalSource;

/// Saves every record of a class (folders of bookmarks do not count) of the source into the local database in
/// `folder`, in one transaction: a cancel or an error leaves the store as it was. Throws Error and Cancelled.
SaveReport saveRecords(DataClass dataClass, PersonalSource &source, Scope scope, const QString &folder,
                       Progress &progress);

/// The text that ends such a job, with its number.
QString saveText(DataClass dataClass, const SaveReport &result);

/// Removes records of a local database by the identities that it shows them under, all or none: an identity
/// that is not there is an Error, and nothing is removed. Throws Error and Cancelled.
void removeRecords(DataClass dataClass, const QString &folder, const QStringList &ids, Progress &progress);
