#include "views/voicemail_main_form.h"

#include "views/item_model_voicemail.h"

VoicemailMainForm::VoicemailMainForm(OpenBackupPtr backup, QWidget *parent)
    : SoundMainForm(std::move(backup),
                    {"IDS_VOICEMAIL", "IDS_FILTER_VOICEMAIL", "IDS_NO_VOICEMAIL", "IDS_NO_VOICEMAIL_FILE",
                     "IDS_EXTRACTING_VOICEMAIL", "IDS_SUC_EXTRACTED_%1_VOICEMAIL"},
                    parent)
{
    VoicemailMainForm::reload();
}

void VoicemailMainForm::reload()
{
    auto worker = std::make_unique<LoadVoicemailThread>(backup(), readNamedVoicemail);
    const LoadVoicemailThread *loading = worker.get();
    load(
        std::move(worker),
        [this, loading] {
            setReport(loading->report());
            return std::make_unique<ItemModelVoicemail>(backup(), loading->items());
        },
        hasVoicemail(backup()->manifest()));
}
