#pragma once

#include <QUrl>
#include <QWebEnginePage>

/// A page that goes nowhere by itself: what it asks for is told, and only what the program loads is shown.
class ConversationWebPage : public QWebEnginePage
{
    Q_OBJECT

public:
    using QWebEnginePage::QWebEnginePage;

    /// Loads an address of the program's own.
    void show(const QUrl &url)
    {
        m_allowed = url;
        load(url);
    }

signals:
    void linkClicked(const QUrl &url);

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override
    {
        if (type == NavigationTypeLinkClicked)
            emit linkClicked(url);
        return isMainFrame && type != NavigationTypeLinkClicked && url == m_allowed;
    }
    QWebEnginePage *createWindow(WebWindowType) override { return nullptr; }

private:
    QUrl m_allowed;
};
