#pragma once

#include <QString>

class QWebEngineProfile;
class QWebEngineUrlSchemeHandler;

/// The address scheme that conversations are shown under. Nothing else is ever loaded.
inline constexpr char conversationScheme[] = "quillbarrow";

/// Makes ready what pages are shown with. To be called once, before the application object is made. Gives a
/// sentence for the log when something had to be done that lowers the protection; empty otherwise.
QString prepareWebViews();

/// Settings under which a page runs no script and reaches nothing but what `files` serves. The result belongs
/// to the caller, who deletes it after the pages that use it; it keeps nothing on the disk.
QWebEngineProfile *makeClosedProfile(QWebEngineUrlSchemeHandler *files);
