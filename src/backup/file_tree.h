#pragma once

#include "backup/file_catalogue.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

/// The browsable tree of a backup's files: the domains a person thinks of as the device's own disk merged at
/// the root, applications under "Applications/<bundle id>", other domains under their own name. Names are
/// stored once, children in a compact form; a node is an index.
class FileTree
{
public:
    using Node = std::uint32_t;
    static constexpr Node root = 0;
    static constexpr Node none = UINT32_MAX;

    FileTree();
    FileTree(FileTree &&) noexcept;
    FileTree &operator=(FileTree &&) noexcept;
    ~FileTree();

    /// Builds the tree of all records. It reads names out of the catalogue, which must neither move nor grow
    /// while the tree is in use.
    static FileTree build(const FileCatalogue &catalogue);

    QString name(Node node) const;
    Node parent(Node node) const;
    /// Children in name order.
    std::vector<Node> children(Node node) const;
    std::size_t childCount(Node node) const;
    bool isFolder(Node node) const;
    /// The record that a node stands for; FileCatalogue::none for a folder that only the tree has made up.
    FileCatalogue::Index record(Node node) const;
    /// "Library/SMS/sms.db"; empty for the root.
    QString path(Node node) const;
    /// The same in the bytes of the records, which need not be valid UTF-8.
    QByteArray pathUtf8(Node node) const;
    Node find(const QString &virtualPath) const;
    Node findUtf8(QByteArrayView virtualPath) const;
    std::size_t nodeCount() const;
    std::size_t memoryBytes() const;

    /// Where a record stands in the tree.
    static QByteArray virtualPath(QByteArrayView domain, QByteArrayView relativePath);

private:
    struct Data;
    std::unique_ptr<Data> d;
};
