#pragma once

#include "personal/abs_local_db.h"

/// One job on a store, in one transaction: rolls back unless committed.
class StoreJob
{
public:
    explicit StoreJob(AbsLocalDb &store) : m_store(store) { m_store.begin(); }
    ~StoreJob()
    {
        if (!m_committed)
            m_store.rollback();
    }
    StoreJob(const StoreJob &) = delete;
    StoreJob &operator=(const StoreJob &) = delete;

    void commit()
    {
        m_store.commit();
        m_committed = true;
    }

private:
    AbsLocalDb &m_store;
    bool m_committed = false;
};
