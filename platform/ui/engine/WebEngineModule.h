#pragma once

#include "platform/ui/engine/BlockingCall.h"
#include "platform/ui/engine/SurfacePage.h"

#include <QPointer>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include <optional>

/// A view that hands to the program what is dropped from outside on a page that is edited.
class CDropView : public QWebEngineView {
    Q_OBJECT
public:
    using QWebEngineView::QWebEngineView;
    void SetEditing(bool bEditing) { m_bEditing = bEditing; }

Q_SIGNALS:
    void Dropped(const QMimeData& data, const QPoint& place);

protected:
    void dragEnterEvent(QDragEnterEvent* pEvent) override;
    void dragMoveEvent(QDragMoveEvent* pEvent) override;
    void dropEvent(QDropEvent* pEvent) override;

private:
    bool IsFromOutside(const QDropEvent& event) const;
    bool m_bEditing = false;
};

/// The engine of a surface: one view, and for each kind of access a profile and a page of its own.
class CWebEngine : public QObject, public IWebEngine {
    Q_OBJECT
public:
    explicit CWebEngine(QWidget* pParent);
    ~CWebEngine() override;

    QWidget* Widget() override;
    void SetAccess(const SEngineAccess& access) override;
    SEngineAnswer Load(const QUrl& url, int nMilliseconds) override;
    bool Begin(const QUrl& url, int nMilliseconds, std::function<void(const SEngineAnswer&)> told) override;
    void Await(int nMilliseconds, std::function<void(const SEngineAnswer&)> told) override;
    SEngineAnswer LoadDocument(const QString& strHtml, const QUrl& url, int nMilliseconds) override;
    SEngineAnswer ShowOwnPage(const QString& strHtml, int nMilliseconds) override;
    SEngineAnswer Call(const QString& strFunction, const QJsonArray& arguments, int nMilliseconds) override;
    void CallLater(const QString& strFunction, const QJsonArray& arguments,
                   std::function<void(const SEngineAnswer&)> answer) override;
    SEngineAnswer RunInPage(const QString& strScript, int nMilliseconds) override;
    QUrl Url() const override;
    int KeysGiven() const override { return m_nKeysGiven; }
    QString CopyMark() const override;

    /// Of what takes the view's keys.
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;

private:
    void MakeProfile();
    void RenewPage(bool bOtherProfile);
    void ConnectPage();
    void LeadKeysToPage();
    void AskForContextMenu(const QPoint& position);
    void ShowContextMenu(const QPoint& position);
    std::shared_ptr<CBlockingCall> BeginCall();
    void WatchWhileLoading(const std::shared_ptr<CBlockingCall>& pCall);
    void PreparePage(const QUrl& url);
    void TellOfEnd(int nMilliseconds, std::function<void(const SEngineAnswer&)> told);
    SEngineAnswer LoadAt(const QUrl& url, const std::function<void(CSurfacePage&)>& start, int nMilliseconds);
    SEngineAnswer LoadWith(const std::function<void(CSurfacePage&)>& start, const QUrl& url,
                           int nMilliseconds);
    SEngineAnswer RunScript(const QString& strScript, quint32 nWorld, int nMilliseconds);

    std::unique_ptr<CRequestGuard> m_pGuard;
    /// Keeps nothing on the disk.
    std::unique_ptr<QWebEngineProfile> m_pProfile;
    std::unique_ptr<CSurfacePage> m_pPage;
    QPointer<CDropView> m_pView;
    SEngineAccess m_access;
    /// What the page was loaded with.
    std::optional<SEngineAccess> m_pageAccess;
    /// The page didn't answer in time: the next load gets a fresh one, and a fresh process with it.
    bool m_bPageHangs = false;
    bool m_bPageHadScripts = false;
    QTimer m_caretTimer;
    int m_nMenusAsked = 0;
    int m_nKeysGiven = 0;
    std::weak_ptr<CBlockingCall> m_pCall;
    /// While a load runs that nobody waits for; what would tell its end is connected to this.
    std::unique_ptr<QObject> m_pBegun;
};
