#pragma once

#include "platform/ui/AccessRules.h"

#include <QElapsedTimer>
#include <QSet>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>

class QWebEngineNewWindowRequest;

/// Lets a page's requests through, refuses or redirects them, as the rules say, and tells the gate to the
/// network which of them may pass.
class CRequestGuard : public QWebEngineUrlRequestInterceptor {
    Q_OBJECT
public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    ~CRequestGuard() override;

    void SetRules(const CAccessRules& rules);
    const CAccessRules& Rules() const { return m_rules; }
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;

private:
    CAccessRules m_rules;
};

/// A page that is a stranger: it asks the person nothing, opens nothing, keeps nothing and goes nowhere but
/// where the rules let it.
class CSurfacePage : public QWebEnginePage {
    Q_OBJECT
public:
    CSurfacePage(QWebEngineProfile* pProfile, CRequestGuard& guard, QObject* pParent);

    /// While a page is being edited it stays where it is, unless a click on a link may lead on.
    void SetEditing(bool bEditing, bool bFollowsLinks);
    /// Holds from the next load on: media that can't be played give way to cards.
    void SetMediaReplaced(bool bReplaced);
    /// Holds from the next load on: a page without the network can call nobody.
    void SetCalling(bool bMayCall);
    /// The program's own loads are told apart from those that the page starts.
    void SetProgramLoads(bool bLoads) { m_bProgramLoads = bLoads; }
    /// For a moment a new window is the program's wish and not the page's.
    void ExpectNewWindow();
    /// Of what the engine could only put on the disk, and doesn't; the program's own load tells that itself.
    void TellOfDownload(const QUrl& url);
    /// The console line by which the editor's own script tells of a moved caret.
    const QString& Token() const { return m_strToken; }

Q_SIGNALS:
    void CaretMoved();
    void WantsPaste(IWebEngine::EPaste what);
    /// A frame of the page shows another document.
    void FrameShown();
    /// bByPerson: the person has clicked for it; else it is the page's own wish.
    void WantsNewWindow(const QUrl& url, bool bByPerson);
    /// The person has clicked on a link to a file of the course that isn't there.
    void LinkMissing(const QUrl& url);
    /// A document of the web is there, though perhaps not yet the whole of it.
    void Begun();

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool bMainFrame) override;
    void javaScriptAlert(const QUrl& origin, const QString& strText) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& strText) override;
    bool javaScriptPrompt(const QUrl& origin, const QString& strText, const QString& strDefault,
                          QString* pResult) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& strText, int nLine,
                                  const QString& strSource) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& types) override;

private:
    void RefuseWishes();
    void ReportFrames();
    void ReportClicks();
    void ReportBeginnings();
    void SettleAtAnchors();
    void KeepOpen();
    bool LeaveToProgram(const QUrl& url, bool bByClick);
    void TellOfRefused(const QUrl& url);
    /// True once, shortly after the person has clicked in the page.
    bool TakeClick();
    bool GoToMeant(const QUrl& url);
    QString ClickToken() const { return m_strToken + QStringLiteral("-click"); }
    QString FrameToken() const { return m_strToken + QStringLiteral("-frame"); }
    QString BeginningToken() const { return m_strToken + QStringLiteral("-begun"); }
    /// Before the URL of a medium that the person clicked on.
    QString MediaToken() const { return m_strToken + QStringLiteral("-media "); }
    /// Before the URL of a file that a frame names: the engine shows it there, or a card stands for it.
    QString NamedToken() const { return m_strToken + QStringLiteral("-named "); }
    void TellMedium(const QUrl& url);
    void TellUnlessNamed(const QUrl& url, bool bByClick, int nTries);
    void OnNewWindow(const QWebEngineNewWindowRequest& request);

    CRequestGuard& m_guard;
    QString m_strToken;
    /// The files that frames of the page name, by their native paths.
    QSet<QString> m_named;
    int m_nLoads = 0;
    QElapsedTimer m_expected;
    QElapsedTimer m_clicked;
    bool m_bEditing = false;
    bool m_bFollowsLinks = false;
    bool m_bProgramLoads = false;
};
