#pragma once

#include "backup/extract.h"
#include "personal/media_items.h"
#include "views/data_view.h"
#include "work/open_backup.h"

class BackgroundJob;
class FileOpener;
class ItemModelPhotoIcon;
class NoticeBar;
class PhotoGrid;
class QSlider;
class StateStack;
class ViewHeader;

/// The photos or the videos of one backup as a grid of small pictures. Needs a backup with an index.
class PhotosMainForm : public DataView
{
    Q_OBJECT

public:
    PhotosMainForm(OpenBackupPtr backup, CameraRollKind kind, QWidget *parent = nullptr);
    ~PhotosMainForm() override;

    QLineEdit *filterEdit() const override { return m_filter; }
    void reload() override;

    /// Copies the selected files, or all that are shown when none is selected, into `folder` under the
    /// progress dialog. True when it was done.
    bool exportTo(const QString &folder);

public slots:
    /// New thumbnails have come.
    void thumbnailRefresh();

protected:
    void exportSelection() override;

private:
    OpenBackupPtr m_backup;
    CameraRollKind m_kind;
    std::unique_ptr<ItemModelPhotoIcon> m_model;
    ViewHeader *m_header;
    QLineEdit *m_filter;
    PhotoGrid *m_grid;
    QSlider *m_size;
    StateStack *m_states;
    FileOpener *m_opener;
    NoticeBar *m_notices;
    std::unique_ptr<BackgroundJob> m_look; // for content that is missing
    QAction *m_open;

    void buildHeader();
    void buildGrid();
    void lookForContent();
    void applyFilter();
    QString noneText() const;
    void refresh();
    void showRows(int firstRow, int endRow);
    void openCurrent();
    QList<int> chosenRows() const;
};
