#pragma once

#include "views/sound_main_form.h"

/// The voicemail of one backup.
class VoicemailMainForm : public SoundMainForm
{
    Q_OBJECT

public:
    explicit VoicemailMainForm(OpenBackupPtr backup, QWidget *parent = nullptr);

    void reload() override;
};
