#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <memory>

class IWebEngine;

/// The browser surface: shows a page, makes it editable, and hands its text in and out as synchronous calls.
/// The engine is a module of its own, loaded when the first page is shown. A call runs a nested loop without
/// the person's input, has a time limit, and fails cleanly when the page or the program goes away meanwhile;
/// while one runs, a second is refused. Local paths go in in backslash form; local resources are reported,
/// and taken back, as "file:///Z:/…". Pages are decoded as GB18030 unless they say otherwise.
class CWebBrowser2Ex : public QWidget {
    Q_OBJECT
public:
    explicit CWebBrowser2Ex(QWidget* pParent = nullptr);
    ~CWebBrowser2Ex() override;

    /// What a page may load from the disk: these folders and nothing else, canonical paths compared by
    /// component. While bEditing, pictures and media from anywhere on the machine too.
    void SetAllowedFolders(const QStringList& folders, bool bEditing);

    /// Loads a path or URL and returns when loading has ended. False when it failed or the time limit passed.
    bool NavigateAndWait(const QString& strUrl);
    bool SetBrowserDesignMode(bool bOn);
    /// "about:blank" while nothing is loaded; for a local page "file://Z:\…\Content.htm".
    bool GetURL(QString& strUrl);
    bool GetBrowserBodyInnerHTML(QString& strHtml);
    bool SetBrowserBodyInnerHTML(const QString& strHtml);
    bool ExecuteIHTMLDocumentCmd(const QString& strCommand, bool bShowUi, const QVariant& value);
    bool InsertBrowserText(const QString& strHtml);
    bool HasSelection();
    bool GetSelectedText(QString& strText);
    bool GetAllImageSrc(QStringList& list);
    bool GetAllEmbededSrc(QStringList& list);
    bool GetAllAnchorHref(QStringList& list);
    /// A script URL ("javascript: …"), run in the page.
    bool ExecuteScript(const QString& strScript);

    /// The words that the engine's commands report as in force at the caret: "bold", "italic" and so on.
    bool QueryCommandState(const QString& strCommand, bool& bOn);

Q_SIGNALS:
    /// The caret moved or the text changed; coalesced, at most some ten times a second.
    void SelectionChanged();
    void NavigateComplete(const QString& strUrl);

protected:
    void resizeEvent(QResizeEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;

private:
    bool EnsureEngine();
    std::unique_ptr<IWebEngine> m_pEngine;
};
