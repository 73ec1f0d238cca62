#pragma once

#include <QBasicTimer>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariant>
#include <QWidget>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

class IWebEngine;
class QJsonArray;
class QLabel;
struct SEngineAnswer;
struct SPastedData;

/// The browser surface: shows a page, makes it editable, and hands its text in and out as synchronous calls.
///
/// The engine is a module of its own, loaded when the first page is shown; making the surface costs nothing.
/// A call runs a nested loop without the person's input, has a time limit, and fails cleanly when the page or
/// the program goes away meanwhile; while one runs in any surface, every other is refused (IsCallRunning).
/// After a call returns, the surface itself may be gone: a caller that goes on using it guards it.
///
/// Local paths go in in backslash form. Absolute local references stand in the page's text, and are reported,
/// as "file:///Z:/…" (see SurfaceUrls.h). Pages are decoded as GB18030 unless they say otherwise.
///
/// Every function that answers a bool answers false when it could not do its work; its out-parameters are
/// then left as they were.
///
/// The menu at the mouse holds the widget's own actions, or copying and selecting all where it has none.
class CWebBrowser2Ex : public QWidget {
    Q_OBJECT
public:
    explicit CWebBrowser2Ex(QWidget* pParent = nullptr);
    ~CWebBrowser2Ex() override;

    /// True while any surface waits for its engine. Closing a window and switching nodes wait for false.
    static bool IsCallRunning();

    /// What a page may load from the disk: these folders and nothing else, canonical paths compared by
    /// component. While bEditing, pictures and media from anywhere on the machine too, and no script of a
    /// page runs. Holds from the next navigation on. The page that NavigateAndWait names may always load.
    void SetAllowedFolders(const QStringList& folders, bool bEditing);
    /// Lets a click on a link lead on while bEditing as well, for a preview of what is edited. Holds from the
    /// next navigation on; off at first.
    void SetFollowsLinks(bool bFollows);
    const QStringList& GetAllowedFolders() const { return m_allowedFolders; }
    /// Lets pages use the network: for a node for which the teacher allowed it, and for external links.
    /// Without it an http address is refused. Web pages stand in a profile of their own, which shares nothing
    /// with the course and reads nothing from the disk. Holds from the next navigation on; off at first.
    void SetNetworkAllowed(bool bAllowed);

    /// A page that is edited shows its media as they stand in it; any other has cards in place of those that
    /// the engine can't play, whose click asks for a new window with the file. True: also the page of a
    /// surface that is set to editing, because it is only looked at. Holds from the next navigation on.
    void SetMediaReplaced(bool bReplaced) { m_bReplaceMedia = bReplaced; }

    /// Loads a path, a file URL or "about:blank" and returns when loading has ended, or when of a page that
    /// isn't edited only pictures and the like fail to come. False when it failed or the time limit passed;
    /// the surface then shows a page that says so, and GetURL gives "about:blank". Also false when such a
    /// page doesn't answer for some seconds: it may still come, as one of the web does.
    ///
    /// A web address is only begun, since its server may take its time: true, and GetURL gives the address.
    /// NavigateComplete2 comes when its page shows, or a text that says why it doesn't. Until then the other
    /// calls fail as without a page.
    bool NavigateAndWait(const QString& strUrl);
    /// Shows this text as the body of the page with that path, which loads first unless it stands there.
    /// Returns when the text's beginning is there: the rest of a long one follows from the event loop, and is
    /// not to be read before.
    bool ShowTextAt(const QString& strPath, const QString& strHtml);
    /// False when no page is loaded. Off without a page is a success.
    bool SetBrowserDesignMode(bool bOn);
    /// "about:blank" while nothing is loaded; for a local page "file://Z:\…\Content.htm", as it stands on the
    /// disk but for "%" and "#", which are escaped, with "#…" behind it when the page stands at a place of
    /// its own.
    bool GetURL(QString& strUrl);
    bool GetBrowserBodyInnerHTML(QString& strHtml);
    bool SetBrowserBodyInnerHTML(const QString& strHtml);
    /// The same for the text that the page has with other references, as a save makes them. No step to be
    /// undone: earlier ones are renamed too, and the caret stays. A text that differs in more is put in as a
    /// step.
    bool WriteBackBody(const QString& strHtml);
    /// Asks for the body's text without waiting, whatever else runs. The answer comes at once or from the
    /// event loop: the text, or nothing when it has not changed since the last asking or there is no page. It
    /// may never come when the surface goes away first. References that came in by pasting may still have
    /// another form than GetBrowserBodyInnerHTML gives them.
    void AskChangedHtml(std::function<void(std::optional<QString>)> answer);
    /// Empties the body without waiting, whatever else runs: what the page shows and plays ends.
    void ClearLater();
    /// Runs a named editing command on the selection. A colour comes as a number with the low byte red.
    /// "CreateLink" with bShowUi asks for the address.
    bool ExecuteIHTMLDocumentCmd(const QString& strCommand, bool bShowUi, const QVariant& value);
    /// Inserts the fragment at the caret in place of the selection. It stands in the page as it came in, but
    /// for local paths, which become file URLs. It can be undone. pbLate: set where the page has not answered
    /// in time, and still takes it in.
    bool InsertBrowserText(const QString& strHtml, bool* pbLate = nullptr);
    /// Late: the page has not answered in time, and still takes it in.
    enum class EPasted { No, Yes, Late };
    /// The same for what a person pastes: what begins and ends it may join the paragraphs around it. A copy
    /// that was made in a surface stands as it stood there.
    EPasted PasteBrowserText(const QString& strHtml);
    /// Has pasted (see PasteWanted) what the person wanted and what still waits: before the page is read to
    /// be saved or left. What waits when the page goes is dropped.
    void FinishPastes();
    /// Whether markup was copied in a surface of this run.
    bool IsOwnCopy(const QString& strHtml) const;
    /// True when text or an element is selected.
    bool HasSelection();
    /// The selected content as markup text to be put inside an element.
    bool GetSelectedText(QString& strText);

    /// The parameters of a table, as its attributes say them.
    struct STableInfo {
        int nRows = 0;
        int nColumns = 0;
        QString strWidth;
        QString strBackground;
        QString strBorderColour;
        QString strBorder;
        QString strCellSpacing;
        QString strCellPadding;
    };
    /// The table that is selected or in which the caret stands.
    bool HasSelectTable();
    bool GetSelectedTableInfo(STableInfo& info);
    /// Sets the attributes, and adds or drops rows and cells at the end to reach the counts. False for a new
    /// count below 1 or above 1000. pbLate: as for InsertBrowserText.
    bool EditSelectedTable(const STableInfo& info, bool* pbLate = nullptr);

    /// The references of the body's img, embed and a elements in document order: an absolute reference as it
    /// stands in the text of GetBrowserBodyInnerHTML, a relative one resolved.
    bool GetAllImageSrc(QStringList& list);
    bool GetAllEmbededSrc(QStringList& list);
    bool GetAllAnchorHref(QStringList& list);
    /// A script URL ("javascript: …"), run in the page.
    bool ExecuteScript(const QString& strScript);
    /// Where the slide frame of a presentation's frame page stands, in the form of GetURL. False when the
    /// page has no such frame.
    bool GetSlideFrameLocation(QString& strLocation);
    /// Steps to an anchor of the page by its name, or in a presentation's frame page to a slide by its file's
    /// name, as a click on a link there would.
    bool GoTo(const QString& strName);

    /// What holds at the caret.
    struct SCaretState {
        /// Those of the asked commands that are in force.
        QStringList Pressed;
        /// The first font family that is asked for there, and the size from "1" to "7"; empty where the
        /// selection holds several.
        QString strFont;
        QString strSize;
        bool bCanUndo = false;
        bool bCanRedo = false;
        /// Also words in a field of the page.
        bool bHasSelection = false;
        /// The caret stands in a link, or the selection holds one.
        bool bInLink = false;
    };
    /// Asks without waiting, whatever else runs, which of the commands ("bold", "italic" and so on) are in
    /// force at the caret, for the font there, and for what else there is to work on. The answer comes from
    /// the event loop, or never when there is no page or the surface goes away first.
    void AskCaretState(const QStringList& commands, std::function<void(const SCaretState&)> answer);

Q_SIGNALS:
    /// The caret moved or the text changed; coalesced, at most some ten times a second.
    void SelectionChanged();
    /// The person pastes into the page that is edited, or drops something on it. The surface has done nothing
    /// but put the caret where it was dropped. Comes when no call runs and no box
    /// stands in front of the page.
    void PasteWanted(const SPastedData& data);
    /// The page stands at another place: another page or an anchor, or a frame of it shows another document.
    /// Comes behind each step, also during a call, and as often as the page likes.
    void NavigateComplete2();
    /// The process that showed the page has ended. GetURL gives "about:blank" until the next navigation,
    /// which starts another.
    void PageLost();
    /// A page, or ExecuteScript, wants a new window, or a link leads to the web while there is no network, to
    /// a mail address, or to a file that the engine doesn't show. The URL comes from the page and is not to
    /// be trusted; a local one is a file inside the allowed folders. bByPerson: the person's click has led
    /// there; else the page did by itself, and nothing is to open unasked.
    void NewWindowRequested(const QString& strUrl, bool bByPerson);
    /// The file that the program navigated to is none that the engine shows; a text stands in its place.
    void FileNotShown(const QString& strPath);
    /// The person has clicked on a link to a file of the allowed folders that isn't there.
    void LinkMissing(const QString& strPath);

protected:
    void resizeEvent(QResizeEvent* pEvent) override;
    void focusInEvent(QFocusEvent* pEvent) override;
    void timerEvent(QTimerEvent* pEvent) override;

private:
    class CCallGuard;

    bool EnsureEngine();
    /// Makes the engine if need be, with a document in it.
    bool EnsureDocument();
    void ShowMissingEngine();
    void ConnectEngine();
    void ApplyAccess(bool bWebPage);
    /// bForText: the body's text is replaced behind it, so that it need not be put there.
    bool NavigateNow(const QString& strUrl, bool bForText = false);
    void ShowMoreLater();
    /// The engine guesses the encoding of a page that says none, and guesses wrong where there is little
    /// text: the page is then put in its place once more. And what a file that is a body's text begins with
    /// may have gone to the head, where an edited page would lose it; a declaration of the encoding, which
    /// saving would make untrue, is taken out. False when a page to be edited stays misread.
    bool MendPage(const QString& strNativeFile, bool bLate = false);
    /// How long the page that shows may take for an answer, in ms: not long where it runs its own scripts.
    int Patience() const;
    SEngineAnswer Ask(const QString& strFunction, const QJsonArray& arguments);
    /// Replaces the body's text, with its local references in the one form.
    bool PutBody(const QString& strFunction, const QJsonArray& arguments);
    bool ShowFailure(const QString& strText);
    bool BeginWebPage(const QUrl& url);
    void AwaitPage(const QUrl& url);
    void EndWaiting(const QUrl& url, const SEngineAnswer& answer);
    /// A text in front of the engine's view; none for an empty one.
    void ShowNote(const QString& strText, const QString& strUrl = {});
    bool ListReferences(const QString& strSelector, const QString& strAttribute, QStringList& list);
    bool CreateLinkWithDialog();
    void PasteWhenFree(std::function<SPastedData()> read, std::optional<QPoint> place = {});
    void HearOfPastes();
    void PasteNext();
    void ForgetPastes();
    bool IsFreeToPaste() const;
    int BeginPaste(std::optional<QPoint> place);

    std::unique_ptr<IWebEngine> m_pEngine;
    QLabel* m_pMissing = nullptr;
    QLabel* m_pNote = nullptr;
    /// The page of the web that has been begun and isn't there yet.
    QUrl m_waiting;
    QStringList m_allowedFolders;
    bool m_bEditing = false;
    bool m_bNetwork = false;
    bool m_bFollowsLinks = false;
    bool m_bReplaceMedia = false;
    /// Whether the engine holds a document that the program asked for: false before the first page and while
    /// the page of a failure shows.
    bool m_bPageLoaded = false;
    struct SPaste {
        std::function<SPastedData()> Read;
        /// Where it was dropped.
        std::optional<QPoint> Place;
    };
    /// What the person wants to be pasted, in her order.
    std::deque<SPaste> m_pastes;
    bool m_bPasting = false;
    QBasicTimer m_toPaste;
};
