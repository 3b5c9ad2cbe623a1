#pragma once

#include "views/data_view.h"
#include "work/open_backup.h"

#include <QModelIndex>

#include <functional>
#include <memory>

class AbsSoundModel;
class BackgroundJob;
class FileOpener;
class NoticeBar;
class Report;
class QSortFilterProxyModel;
class QTreeView;
class SoundPlayer;
class StateStack;
class ViewHeader;
class WorkerThread;

/// The words of a list of sounds, as keys of texts.
struct SoundTexts
{
    const char *title;
    const char *filter;
    const char *empty;
    const char *withoutFile; // an item has no sound in the backup
    const char *extracting;
    const char *extracted;
};

/// What the views of voicemail and recordings have in common: the list, the player below it, opening and
/// exporting.
class SoundMainForm : public DataView
{
    Q_OBJECT

public:
    ~SoundMainForm() override;

    QLineEdit *filterEdit() const override { return m_filter; }
    /// Copies the selected sounds, or all when none is selected, into `folder` under the progress dialog.
    /// True when it was done.
    bool exportTo(const QString &folder);

protected:
    SoundMainForm(OpenBackupPtr backup, const SoundTexts &texts, QWidget *parent);

    const OpenBackupPtr &backup() const { return m_backup; }
    /// Runs the worker and then shows the model; `isThere` tells whether the backup has the database at all.
    void load(std::unique_ptr<WorkerThread> worker, std::function<std::unique_ptr<AbsSoundModel>()> makeModel,
              bool isThere);
    /// What the worker could not read.
    void setReport(const Report &report);
    void exportSelection() override;

private:
    OpenBackupPtr m_backup;
    SoundTexts m_texts;
    std::unique_ptr<BackgroundJob> m_job;
    std::unique_ptr<BackgroundJob> m_fetching;
    std::unique_ptr<AbsSoundModel> m_model;
    QSortFilterProxyModel *m_proxy;
    ViewHeader *m_header;
    NoticeBar *m_notices;
    QStringList m_problems;
    QLineEdit *m_filter;
    QTreeView *m_list;
    SoundPlayer *m_player;
    StateStack *m_states;
    FileOpener *m_opener;
    QAction *m_open;

    void buildList();
    void showModel(std::unique_ptr<AbsSoundModel> model);
    void onCurrentChanged();
    void refresh();
    void openCurrent();
    void fetchForPlaying();
    int currentRow() const;
    QList<int> chosenRows() const;
};
