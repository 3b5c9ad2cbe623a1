#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>

// Passwords and keys do not stay in memory once nobody needs them: what is freed may be written to a swap file,
// and is handed out again as it is.

/// Overwrites memory, in a way that a compiler does not leave out.
void wipe(void *bytes, std::size_t size);

/// Overwrites a text and empties it. One that somebody else shares is only let go of: it is theirs to wipe.
void wipe(QByteArray &bytes);
void wipe(QString &text);

/// Wipes what it was given when it goes.
template <typename Text> class WipedAtEnd
{
public:
    explicit WipedAtEnd(Text &text) : m_text(text) {}
    ~WipedAtEnd() { wipe(m_text); }
    WipedAtEnd(const WipedAtEnd &) = delete;
    WipedAtEnd &operator=(const WipedAtEnd &) = delete;

private:
    Text &m_text;
};
