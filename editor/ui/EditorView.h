#pragma once

#include "content/ui/BookShowView.h"
#include "editor/EditorCommands.h"
#include "editor/HtmlFragments.h"
#include "editor/PageKeeper.h"
#include "editor/PageSave.h"
#include "editor/ui/SourceReferences.h"
#include "platform/base/People.h"

#include <QElapsedTimer>

#include <memory>
#include <optional>

class CEditorToolBars;
class COfferBar;
class CSourceBox;
class CWebBrowser2Ex;
class CPasteTask;
class QTabBar;
struct SPastedData;

/// The built-in HTML editor: edits the page of a node in a browser surface in design mode, with the source in
/// a text box and a preview beside it. It has no document of its own: the live text stands in the design
/// surface or in the text box, and what has changed is found out by comparing with the file.
class CEditorView : public CBookShowView, private ILivePage {
    Q_OBJECT
public:
    CEditorView(INodeViewHost& host, Torvane::Dialog::MFC::IPeople& people, QWidget* pParent = nullptr);
    ~CEditorView() override;

    bool LeaveNode(bool bCanCancel) override;
    void ShowNode() override;

    /// The next page that is shown, if it is this one's, goes on with the kept text. Any other kept text of a
    /// node is asked about when its page is shown.
    void TakeUpNext(const KeptPage& kept) { m_takeUp = kept; }

    /// Whether an editing command is enabled, and running one by its id; false when it is disabled or none of
    /// the editor's.
    bool IsCommandEnabled(int nCommand) const;
    bool RunCommand(int nCommand);

Q_SIGNALS:
    /// Other commands are enabled than before.
    void CommandsChanged();

protected:
    void resizeEvent(QResizeEvent* pEvent) override;

private:
    // The live text, for the saver.
    bool GetCurrentHtml(QString& strHtml) override;
    bool SetCurrentHtml(const QString& strHtml) override;
    bool IsInSource() const override { return m_bInSource; }
    bool GetAllImageSrc(QStringList& list) override;
    bool GetAllEmbededSrc(QStringList& list) override;
    bool GetAllAnchorHref(QStringList& list) override;
    bool GetURL(QString& strUrl) override;
    std::shared_ptr<void> ShowBusy() override;
    const CSourceReferences& ReadSource();
    bool GetFromSource(QStringList CSourceReferences::*pReferences, QStringList& list);

    // Tabs and layout.
    void SwitchTo(EditorCommands::EMode mode);
    bool SwapToSource();
    bool SwapToDesign();
    void ShowPreview();
    void Blank(CWebBrowser2Ex& surface);
    void SetMode(EditorCommands::EMode mode);
    void LayOut();
    void FocusLive();
    void ShowStates();
    void UpdateOffered();

    // The text is kept while it is edited, and outlives the engine.
    void AskLiveText(const CPageKeeper::Answer& answer);
    void TellKeepFailure(const QString& strFailure);
    void BeginKeeping(bool bEditing);
    bool PutBack(const CPageKeeper::Text& text);
    void PageLost();
    void PreviewLost();
    void LeavePreviewWhenFree();
    void RecoverWhenFree();
    void RecoverPage();

    // Pasting.
    void Paste(const SPastedData& pasted);
    void PutPasted(CPasteTask& task);

    // Commands.
    void RunPlain(const EditorCommands::Command& command);
    void RunColour(const EditorCommands::Command& command);
    void RunLink(const EditorCommands::Command& command);
    void RunBox(int nCommand, const QString& strValue);
    void RunOwn(int nCommand);
    void RunOnPage(int nCommand);
    /// Also true when the page has not taken it in yet, but will.
    bool Insert(const QString& strHtml);
    void InsertPicked(const QString& strFilter, QString (*build)(const QString&));
    void InsertOtherFile();
    std::optional<HtmlFragments::TableParameters> AskTable(const HtmlFragments::TableParameters& shown);
    void InsertTable();
    void EditTable();
    void InsertText(const QString& strPrompt, QString (*build)(const QString&));
    void InsertFloatingHelp();
    void InsertInSiteLink();
    void SetTemplate();
    void ClearContent();
    void ClearGarbage();
    void Quit();

    Torvane::Dialog::MFC::IPeople& m_people;
    CEditorToolBars* m_pBars;
    QTabBar* m_pTabs;
    CSourceBox* m_pSource;
    CWebBrowser2Ex* m_pDesign;
    /// The preview, and above it what its page offers.
    QWidget* m_pPreviewPane;
    COfferBar* m_pOffer;
    CWebBrowser2Ex* m_pPreview;
    CPageSaver m_saver;
    EditorCommands::EMode m_mode = EditorCommands::EMode::Design;
    /// As the page has told last.
    EditorCommands::SAtCaret m_atCaret;
    /// The text box holds the live text. A move to the preview leaves it as it is.
    bool m_bInSource = false;
    /// The source box's text as it was read last, and what it says.
    QString m_strSourceRead;
    CSourceReferences m_source;
    CPageKeeper m_keeper;
    std::optional<KeptPage> m_takeUp;
    /// The preview stands at the page as it is on the disk.
    bool m_bPreviewLoaded = false;
    /// The engine went away with the preview, and its tab still shows.
    bool m_bPreviewLost = false;
    /// The engine went away with the page, and it has not been loaded anew.
    bool m_bPageLost = false;
    /// Since the page was loaded anew.
    QElapsedTimer m_recovered;
    /// The colours chosen last, red in the low byte.
    quint32 m_crForeColor = 0;
    quint32 m_crBackColor = 0;
};
