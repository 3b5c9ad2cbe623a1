#include "messages/msg_records.h"

#include <algorithm>
#include <cstdlib>

namespace {
constexpr qint64 burstRowids = 20;
constexpr qint64 burstSeconds = 120;

// What the comparison looks at, side by side in memory.
struct Key
{
    qint64 sourceRowid;
    qint64 date;
    bool dateOnly;
    std::size_t index; // into the list that is sorted
};

bool precedes(const Key &a, const Key &b)
{
    const bool sameBurst = a.sourceRowid > 0 && b.sourceRowid > 0 && !a.dateOnly && !b.dateOnly &&
                           std::abs(a.sourceRowid - b.sourceRowid) <= burstRowids &&
                           std::abs(a.date - b.date) <= burstSeconds;
    return sameBurst ? a.sourceRowid < b.sourceRowid : a.date < b.date;
}

// The standard sorts may do anything when the order is not transitive. This one ends with the same result
// everywhere: halves are sorted first, and an element of the right half goes first only when it precedes.
void mergeSort(Key *keys, Key *scratch, std::size_t count)
{
    if (count < 2)
        return;
    const std::size_t middle = count / 2;
    mergeSort(keys, scratch, middle);
    mergeSort(keys + middle, scratch, count - middle);
    std::copy(keys, keys + middle, scratch);
    std::size_t left = 0;
    std::size_t right = middle;
    std::size_t out = 0;
    while (left < middle && right < count)
        keys[out++] = precedes(keys[right], scratch[left]) ? keys[right++] : scratch[left++];
    std::copy(scratch + left, scratch + middle, keys + out);
}
} // namespace

void sortForExport(std::vector<MessageRef> &refs)
{
    std::stable_sort(refs.begin(), refs.end(), [](const MessageRef &a, const MessageRef &b) {
        return a.message->rowid < b.message->rowid;
    });
    std::vector<Key> keys;
    keys.reserve(refs.size());
    for (std::size_t i = 0; i < refs.size(); ++i) {
        const _MsgMessage &message = *refs[i].message;
        keys.push_back({message.sourceRowid, message.date, message.dateOrderOnly, i});
    }
    std::vector<Key> scratch(keys.size());
    mergeSort(keys.data(), scratch.data(), keys.size());
    std::vector<MessageRef> sorted;
    sorted.reserve(refs.size());
    for (const Key &key : keys)
        sorted.push_back(refs[key.index]);
    refs = std::move(sorted);
}
