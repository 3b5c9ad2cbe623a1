#pragma once

class QString;

/// Shows a folder in the desktop's file manager (the Windows Explorer at the product's home).
void openFolderInShell(const QString &path);

/// Hands a document or a web address to the desktop, as a double click would.
void openInShell(const QString &pathOrUrl);

/// Ends the running process at once, without asking anything of it.
void quitByTaskKill();
