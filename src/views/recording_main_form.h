#pragma once

#include "views/sound_main_form.h"

/// The voice recordings of one backup.
class RecordingMainForm : public SoundMainForm
{
    Q_OBJECT

public:
    explicit RecordingMainForm(OpenBackupPtr backup, QWidget *parent = nullptr);

    void reload() override;
};
