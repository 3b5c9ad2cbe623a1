#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QVarLengthArray>

/// The folder of the browsable tree under which a domain's files stand: empty for the domains that are merged
/// at the root, "Applications/<bundle id>" for an application's, the domain's own name for any other.
QByteArray virtualPrefix(QByteArrayView domain);

/// A record's place in the tree as one run of bytes: `prefix`, "/", relative path, without the "/" when
/// either is empty.
class VirtualPath
{
public:
    void set(QByteArrayView prefix, QByteArrayView relativePath);

    QByteArrayView bytes() const { return QByteArrayView(m_bytes.constData(), m_bytes.size()); }
    /// Where the relative path begins; bytes().size() when it is empty.
    qsizetype pathStart() const { return m_pathStart; }

private:
    QVarLengthArray<char, 512> m_bytes;
    qsizetype m_pathStart = 0;
};
