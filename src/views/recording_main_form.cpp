#include "views/recording_main_form.h"

#include "views/item_model_recording.h"
#include "work/load_sounds_thread.h"

RecordingMainForm::RecordingMainForm(OpenBackupPtr backup, QWidget *parent)
    : SoundMainForm(std::move(backup),
                    {"IDS_RECORDINGS", "IDS_FILTER_RECORDINGS", "IDS_NO_RECORDINGS", "IDS_NO_RECORDING_FILE",
                     "IDS_EXTRACTING_RECORDING", "IDS_SUC_EXTRACTED_%1_RECORDINGS"},
                    parent)
{
    RecordingMainForm::reload();
}

void RecordingMainForm::reload()
{
    auto worker = std::make_unique<LoadRecordingsThread>(backup(), readRecordings);
    const LoadRecordingsThread *loading = worker.get();
    load(
        std::move(worker),
        [this, loading] {
            setReport(loading->report());
            return std::make_unique<ItemModelRecording>(backup(), loading->items());
        },
        hasRecordings(backup()->manifest()));
}
