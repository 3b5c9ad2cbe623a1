#include "views/web_views.h"

#include <QCoreApplication>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlScheme>
#include <QWebEngineUrlSchemeHandler>

#ifdef Q_OS_LINUX
#include <unistd.h>
#endif

namespace {
class OwnSchemeOnly : public QWebEngineUrlRequestInterceptor
{
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo &info) override
    {
        info.block(info.requestUrl().scheme() != QLatin1String(conversationScheme));
    }
};
} // namespace

QString prepareWebViews()
{
    QWebEngineUrlScheme scheme(conversationScheme);
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Host);
    scheme.setFlags(QWebEngineUrlScheme::SecureScheme);
    QWebEngineUrlScheme::registerScheme(scheme);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts); // the engine draws into the window's
#ifdef Q_OS_LINUX
    // The web engine's own sandbox cannot be set up by root, and without one it ends the whole program. What
    // it shows here runs no script and loads nothing from outside, so looking at messages is still safe.
    if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX")) {
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        return QStringLiteral("Conversations are shown without the web engine's sandbox, which does not work "
                              "for root. Run the program as another user.");
    }
#endif
    return {};
}

QWebEngineProfile *makeClosedProfile(QWebEngineUrlSchemeHandler *files)
{
    auto *profile = new QWebEngineProfile; // without a name it keeps nothing
    profile->installUrlSchemeHandler(conversationScheme, files);
    profile->setUrlRequestInterceptor(new OwnSchemeOnly(profile));
    profile->setSpellCheckEnabled(false);
    QWebEngineSettings *settings = profile->settings();
    for (const QWebEngineSettings::WebAttribute off :
         {QWebEngineSettings::JavascriptEnabled, QWebEngineSettings::JavascriptCanOpenWindows,
          QWebEngineSettings::JavascriptCanAccessClipboard, QWebEngineSettings::PluginsEnabled,
          QWebEngineSettings::PdfViewerEnabled, QWebEngineSettings::LocalStorageEnabled,
          QWebEngineSettings::LocalContentCanAccessRemoteUrls,
          QWebEngineSettings::LocalContentCanAccessFileUrls, QWebEngineSettings::HyperlinkAuditingEnabled,
          QWebEngineSettings::DnsPrefetchEnabled, QWebEngineSettings::WebGLEnabled,
          QWebEngineSettings::AutoLoadIconsForPage, QWebEngineSettings::NavigateOnDropEnabled,
          QWebEngineSettings::ErrorPageEnabled, QWebEngineSettings::FocusOnNavigationEnabled})
        settings->setAttribute(off, false);
    return profile;
}
