#include "backup/plist_guard.h"

#include "backup/binary_plist.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace {
constexpr qsizetype maximumSize = qsizetype{256} * 1024 * 1024;
constexpr std::uint32_t maximumDepth = 512;
// A node of the library's tree takes about this much besides its content.
constexpr std::uint64_t nodeBytes = 160;
// Names are stored once and referred to a thousand times, so that a tree is larger than its bytes.
constexpr std::uint64_t treeBytesPerByte = 256;
constexpr std::uint64_t treeBytesAtLeast = 32 * 1024 * 1024;
constexpr std::uint64_t treeBytesAtMost = std::uint64_t{2} * 1024 * 1024 * 1024;
// Steps of what the library does once for each earlier key of a dictionary, or once for each 64 bytes of a
// text and each entity in it: some seconds at most.
constexpr std::uint64_t maximumWork = 1'000'000'000;

using Object = BinaryPlist::Object;
using Kind = BinaryPlist::Kind;

/// Visits what the top object reaches, each object once, with a stack of its own.
class BinaryCheck
{
public:
    BinaryCheck(QByteArrayView bytes, std::uint64_t limit) : m_bytes(bytes), m_limit(limit) {}

    bool run()
    {
        if (!m_plist.open(m_bytes) || m_plist.objectCount() > m_limit / nodeBytes)
            return false;
        m_visited.resize(m_plist.objectCount());
        if (!enter(m_plist.top()))
            return false;
        while (!m_stack.empty()) {
            if (!step())
                return false;
        }
        return m_visited[m_plist.top()].treeBytes <= m_limit;
    }

private:
    /// What is known of an object: how large and how deep its tree is.
    struct Visited
    {
        std::uint64_t treeBytes = 0; // 0 while it is unknown
        std::uint32_t depth = 0;
        bool open = false; // an ancestor of the object at hand
    };
    struct Frame
    {
        std::uint64_t index;
        Object object;
        std::uint64_t items;
        std::uint64_t next;
        std::uint64_t treeBytes;
        std::uint32_t depth;
    };

    QByteArrayView m_bytes;
    std::uint64_t m_limit;
    BinaryPlist m_plist;
    std::vector<Visited> m_visited;
    std::vector<Frame> m_stack;
    std::uint64_t m_references = 0;

    bool enter(std::uint64_t index);
    bool step();
    bool isReadable(const Object &object) const;
};

/// What the library's own reader would refuse or read wrongly.
bool BinaryCheck::isReadable(const Object &object) const
{
    switch (object.kind) {
    case Kind::Simple:
        return object.count == 8 || object.count == 9;
    case Kind::Real:
        return object.count == 4 || object.count == 8;
    case Kind::Date:
        return object.count == 8;
    case Kind::Ascii: // a text with a NUL has two lengths there, by count and by terminator
        return !object.bytes().contains('\0');
    case Kind::Utf16:
        for (std::uint64_t i = 0; i < object.count; ++i) {
            if (object.payload[2 * i] == 0 && object.payload[2 * i + 1] == 0)
                return false;
        }
        return true;
    default:
        return true;
    }
}

/// Begins an object that has not been visited.
bool BinaryCheck::enter(std::uint64_t index)
{
    Object object;
    if (m_stack.size() >= maximumDepth || !m_plist.object(index, object) || !isReadable(object))
        return false;
    std::uint64_t items = 0;
    std::uint64_t content = 0;
    switch (object.kind) {
    case Kind::Array:
    case Kind::Set:
        items = object.count;
        break;
    case Kind::Dictionary:
        items = 2 * object.count;
        break;
    case Kind::Utf16:
        content = 4 * object.count;
        break;
    default:
        content = object.count;
        break;
    }
    // Objects do not overlap in an honest file, so its references are fewer than its bytes.
    m_references += items;
    if (m_references > static_cast<std::uint64_t>(m_bytes.size()))
        return false;
    m_visited[index].open = true;
    m_stack.push_back({index, object, items, 0, nodeBytes + content, 1});
    return true;
}

/// Takes the next item of the object at hand, or ends it.
bool BinaryCheck::step()
{
    Frame &frame = m_stack.back();
    if (frame.next == frame.items) {
        m_visited[frame.index] = {frame.treeBytes, frame.depth, false};
        m_stack.pop_back();
        return true;
    }
    const std::uint64_t child = m_plist.reference(frame.object, frame.next);
    if (child >= m_plist.objectCount() || m_visited[child].open)
        return false;
    const Visited &known = m_visited[child];
    if (known.treeBytes == 0)
        return enter(child);
    frame.treeBytes += known.treeBytes;
    frame.depth = std::max(frame.depth, known.depth + 1);
    ++frame.next;
    return frame.treeBytes <= m_limit && m_stack.size() + known.depth <= maximumDepth;
}

/// Finds the tags of XML the way the library does, knowing only what can hide one: comments, CDATA,
/// instructions and quotes.
class XmlCheck
{
public:
    explicit XmlCheck(QByteArrayView text) : m_text(text) {}

    bool run()
    {
        if (m_text.contains('\0'))
            return false;
        qsizetype at = 0;
        for (;;) {
            const qsizetype markup = m_text.indexOf('<', at);
            if (markup < 0)
                return true;
            countEntities(m_text.sliced(at, markup - at));
            at = afterMarkup(markup);
            if (at < 0 || m_depth > maximumDepth || m_work > maximumWork ||
                m_nodes > treeBytesAtMost / nodeBytes)
                return false;
        }
    }

private:
    QByteArrayView m_text;
    std::uint32_t m_depth = 0;
    std::uint64_t m_nodes = 0;
    std::uint64_t m_work = 0;
    std::array<std::uint64_t, maximumDepth + 2> m_keys = {}; // of the dictionary at each depth

    bool startsAt(qsizetype at, QByteArrayView word) const { return m_text.sliced(at).startsWith(word); }

    qsizetype after(qsizetype at, QByteArrayView end) const
    {
        const qsizetype found = m_text.indexOf(end, at);
        return found < 0 ? -1 : found + end.size();
    }

    /// The library moves the rest of a text for each entity in it.
    void countEntities(QByteArrayView text)
    {
        m_work += static_cast<std::uint64_t>(text.count('&')) * static_cast<std::uint64_t>(text.size() / 64);
    }

    /// The position behind the markup at `at`, -1 when it has no end or is not allowed.
    qsizetype afterMarkup(qsizetype at)
    {
        if (startsAt(at, "<!--"))
            return after(at + 4, "-->");
        if (startsAt(at, "<![CDATA["))
            return after(at + 9, "]]>");
        const qsizetype end = after(at, ">");
        if (end < 0)
            return -1;
        const QByteArrayView markup = m_text.sliced(at, end - at);
        if (markup.count('"') % 2 != 0) // an end inside quotes is none
            return -1;
        if (markup.startsWith("<!"))
            return markup.contains('[') ? -1 : end;
        if (markup.startsWith("<?"))
            return markup.endsWith("?>") ? end : -1;
        if (markup.startsWith("</"))
            m_depth -= m_depth > 0 ? 1 : 0;
        else
            open(markup);
        return end;
    }

    void open(QByteArrayView tag)
    {
        ++m_nodes;
        if (tag.startsWith("<key"))
            m_work += m_keys[m_depth]++;
        if (tag.endsWith("/>"))
            return;
        ++m_depth;
        if (m_depth <= maximumDepth)
            m_keys[m_depth] = 0;
    }
};
} // namespace

bool isSafeBinaryPlist(QByteArrayView bytes)
{
    const auto size = static_cast<std::uint64_t>(bytes.size());
    return isSafeBinaryPlist(bytes, std::min(treeBytesAtLeast + treeBytesPerByte * size, treeBytesAtMost));
}

bool isSafeBinaryPlist(QByteArrayView bytes, std::uint64_t treeBytes)
{
    return bytes.size() <= maximumSize && BinaryCheck(bytes, treeBytes).run();
}

bool isSafeXmlPlist(QByteArrayView bytes)
{
    return bytes.size() <= maximumSize && XmlCheck(bytes).run();
}
