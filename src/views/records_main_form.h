#pragma once

#include "export/record_export.h"
#include "views/data_view.h"
#include "work/record_source.h"

#include <QModelIndex>

#include <memory>

class BackgroundJob;
class LoadRecordsThread;
class MonthGrid;
class NoticeBar;
class QAbstractItemModel;
class QTreeView;
class RecordFilter;
class SafeTextBrowser;
class StateStack;
class ViewHeader;

/// The contacts, calls, notes, calendar events or bookmarks of one source: a list with a filter, the selected
/// record beside it, and what can be done with the records. Loads them on a worker when it is made and again
/// on reload().
class RecordsMainForm : public DataView
{
    Q_OBJECT

public:
    RecordsMainForm(RecordSource source, DataClass dataClass, QWidget *parent = nullptr);
    ~RecordsMainForm() override;

    QLineEdit *filterEdit() const override { return m_filter; }
    QAction *saveAction() const override;
    QAction *removeAction() const override;
    void reload() override;

    /// Writes the selected records, or all that are shown when none is selected, under the progress dialog.
    /// True when it was done.
    bool exportTo(const QString &format, const QString &target);
    /// Saves all records into the local database in `folder`. True when it was done.
    bool saveInto(const QString &folder);

signals:
    /// A local database has got new records, or lost some.
    void storeChanged(const QString &folder);
    /// Contacts out of a file of vCards are wanted in the local database in `folder`.
    void importRequested(const QString &folder);

protected:
    void exportSelection() override;

private:
    RecordSource m_source;
    DataClass m_class;
    RecordsPtr m_records;
    std::unique_ptr<BackgroundJob> m_job;
    std::unique_ptr<QAbstractItemModel> m_model;
    RecordFilter *m_proxy;
    Scope m_scope = Scope::Usual;
    ViewHeader *m_header = nullptr;
    NoticeBar *m_notices = nullptr;
    QLineEdit *m_filter = nullptr;
    QTreeView *m_list = nullptr;
    MonthGrid *m_month = nullptr; // of the calendar alone
    SafeTextBrowser *m_detail = nullptr;
    StateStack *m_states = nullptr;
    QAction *m_save;
    QAction *m_remove;
    QAction *m_import; // of the contacts of a local database

    void buildWidgets();
    void buildList();
    QWidget *buildDetail();
    void onLoaded(const LoadRecordsThread &worker);
    void onFailed(const QString &text);
    void showEmpty(const Report &report);
    void showRecords();
    void showDay(const QDate &day);
    void refresh();
    void showState(const QString &why);
    QModelIndexList selectedRows() const;
    RecordSelection selection() const;
    bool takesCards() const;
    bool isAllSelected() const;
    void saveToDatabase();
    void removeSelection();
};
