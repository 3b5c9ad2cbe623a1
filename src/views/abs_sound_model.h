#pragma once

#include "backup/extract.h"
#include "views/record_roles.h"

#include <QAbstractTableModel>
#include <QDateTime>

/// A list of sounds: what voicemail and recordings have in common. Filtered and sorted by RecordRole.
class AbsSoundModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Title, Date, Duration, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    /// FileCatalogue::none when the backup has no file of the sound.
    virtual FileCatalogue::Index file(int row) const = 0;
    /// The name that the sound is exported under; of rows with a file.
    virtual QString exportedName(int row) const = 0;
    /// Tells the sound apart in a sentence.
    virtual QString description(int row) const = 0;

    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

protected:
    virtual QString title(int row) const = 0;
    virtual QDateTime date(int row) const = 0;
    virtual int durationSeconds(int row) const = 0;
    virtual QString toolTip(int row) const = 0;
    /// Key of a text.
    virtual const char *titleOfTitles() const = 0;

private:
    QString text(const QModelIndex &index) const;
    QVariant sortKey(const QModelIndex &index) const;
};
