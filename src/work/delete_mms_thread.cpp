#include "work/delete_mms_thread.h"

#include "base/texts.h"
#include "messages/save_messages.h"

DeleteMMSThread::DeleteMMSThread(QString folder, std::vector<qint64> rowids)
    : m_folder(std::move(folder)), m_rowids(std::move(rowids))
{
}

QString DeleteMMSThread::work(Progress &progress)
{
    return textFor("IDS_SUC_DELETED_%1_MESSAGES").arg(removeMessages(m_folder, m_rowids, progress));
}
