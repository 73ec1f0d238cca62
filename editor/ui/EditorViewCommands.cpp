// The commands of the editor's toolbars.
#include "content/ui/InSiteLinkDialog.h"
#include "course/TemplateStore.h"
#include "editor/FileTask.h"
#include "editor/HtmlFragments.h"
#include "editor/Texts.h"
#include "editor/ui/EditorDialogs.h"
#include "editor/ui/EditorView.h"
#include "editor/ui/PasteTask.h"
#include "editor/ui/ShowFailure.h"
#include "foundation/Files.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"
#include "platform/ui/PageEncoding.h"
#include "platform/ui/SurfaceUrls.h"
#include "platform/ui/WebBrowser.h"

#include <QPointer>

using namespace EditorCommands;
using namespace Torvane::Dialog::MFC;

/// A larger table keeps the engine busy for longer than anybody waits.
static constexpr qint64 c_nMaxCells = 20'000;

bool CEditorView::IsCommandEnabled(int nCommand) const {
    return IsAllowed(nCommand, m_mode);
}

bool CEditorView::RunCommand(int nCommand) {
    const Command* pCommand = Find(nCommand);
    // A view behind another one has no page, whatever key the main window passes on.
    if (pCommand == nullptr || !IsCommandEnabled(nCommand) || m_pNode == nullptr || !isVisible())
        return false;
    const QPointer<CEditorView> pThis(this);
    switch (pCommand->Family) {
    case EFamily::Plain:
    case EFamily::Toggle:
        RunPlain(*pCommand);
        break;
    case EFamily::Colour:
        RunColour(*pCommand);
        break;
    case EFamily::Link:
        RunLink(*pCommand);
        break;
    case EFamily::Box:
        // Runs with the value chosen in its box.
        return false;
    case EFamily::Own:
        RunOwn(nCommand);
        break;
    case EFamily::Page:
        RunOnPage(nCommand);
        return true;
    }
    // Whoever was in the text goes on typing there.
    if (pThis && isVisible())
        FocusLive();
    if (pThis)
        ShowStates();
    return true;
}

void CEditorView::RunPlain(const Command& command) {
    m_pDesign->ExecuteIHTMLDocumentCmd(command.strName.toString(), false, QVariant());
}

void CEditorView::RunColour(const Command& command) {
    quint32& crColour = command.nId == Id::c_nForeColor ? m_crForeColor : m_crBackColor;
    if (const auto chosen = EditorDialogs::AskColour(crColour, this)) {
        crColour = *chosen;
        m_pDesign->ExecuteIHTMLDocumentCmd(command.strName.toString(), false, static_cast<int>(crColour));
    }
}

void CEditorView::RunLink(const Command& command) {
    const QPointer<CEditorView> pThis(this);
    m_pDesign->ExecuteIHTMLDocumentCmd(command.strName.toString(), true, QVariant());
    if (pThis)
        m_pDesign->ExecuteIHTMLDocumentCmd(QStringLiteral("UnSelect"), false, QVariant());
}

void CEditorView::RunBox(int nCommand, const QString& strValue) {
    m_pDesign->ExecuteIHTMLDocumentCmd(Find(nCommand)->strName.toString(), false, strValue);
}

void CEditorView::RunOwn(int nCommand) {
    switch (nCommand) {
    case Id::c_nImage:
        return InsertPicked(EditorTexts::c_strImageFilter, HtmlFragments::Image);
    case Id::c_nFlash:
        return InsertPicked(EditorTexts::c_strFlashFilter, HtmlFragments::Flash);
    case Id::c_nMedia:
        return InsertPicked(EditorTexts::c_strMediaFilter, HtmlFragments::Media);
    case Id::c_nOtherFile:
        return InsertOtherFile();
    case Id::c_nTable:
        return InsertTable();
    case Id::c_nEditTable:
        return EditTable();
    case Id::c_nMarquee:
        return InsertText(EditorTexts::c_strAskMarquee, HtmlFragments::Marquee);
    case Id::c_nLineBreak:
        // Like the plain commands it says nothing.
        m_pDesign->InsertBrowserText(HtmlFragments::LineBreak());
        return;
    case Id::c_nFloatingHelp:
        return InsertFloatingHelp();
    case Id::c_nInSiteLink:
        return InsertInSiteLink();
    case Id::c_nHelpMark:
        return InsertText(EditorTexts::c_strAskHelp, [](const QString& strText) {
            return HtmlFragments::HelpMark(CSysInfo::Instance().GetSysDataFolder(false), strText);
        });
    default:
        return;
    }
}

void CEditorView::RunOnPage(int nCommand) {
    switch (nCommand) {
    case Id::c_nSave:
        if (const QPointer<CEditorView> pThis(this); m_pDesign->FinishPastes(), !pThis)
            return;
        m_saver.SavePage(true, false, true);
        return;
    case Id::c_nQuit:
        return Quit();
    case Id::c_nSetTemplate:
        return SetTemplate();
    case Id::c_nClearContent:
        return ClearContent();
    case Id::c_nClearGarbage:
        return ClearGarbage();
    default:
        return;
    }
}

bool CEditorView::Insert(const QString& strHtml) {
    Torvane::Dialog::MFC::IPeople& people = m_people;
    bool bLate = false;
    if (m_pDesign->InsertBrowserText(strHtml, &bLate))
        return true;
    if (bLate)
        people.Warn(EditorTexts::c_strInsertLate);
    else
        people.Error(EditorTexts::c_strInsertFailed);
    return bLate;
}

void CEditorView::InsertPicked(const QString& strFilter, QString (*build)(const QString&)) {
    // As a reference: a plain path may hold what ends an attribute or reads as an entity.
    const auto path = m_people.PickOpenFile(QString(), QString(), strFilter);
    // It would show here, and no save could bring it into the course.
    if (path && Torvane::File::IsPathTooLong(*path))
        m_people.Error(EditorTexts::c_strFileTooDeep.arg(Platform::ToShown(*path)));
    else if (path)
        Insert(build(SurfaceUrls::PathToReference(*path)));
}

void CEditorView::InsertOtherFile() {
    const auto path = m_people.PickOpenFile(QString(), QString(), EditorTexts::c_strOtherFileFilter);
    if (!path)
        return;
    const QPointer<CEditorView> pThis(this);
    const QString strPage = m_saver.GetPagePath();
    const auto folders = m_saver.GetFolders();
    FileLink link;
    const QString strStatus = EditorTexts::c_strCopying.arg(Torvane::File::BareName(*path));
    const bool bCopied = CFileTask(m_people, strStatus, [&](Torvane::File::IWalkFilter* pFilter) {
                             link = LinkToFile(*path, folders, pFilter);
                         }).Run();
    // The windows were painted meanwhile, and whatever closes or changes the page may have come.
    const bool bHere = pThis && m_mode == EMode::Design && m_saver.GetPagePath() == strPage;
    if (!bCopied || !bHere || !Insert(link.strMarkup))
        RemoveCopies({link.strCopy});
}

/// Asks again while the table would be larger than the page can bear; one that is so already may stay.
std::optional<HtmlFragments::TableParameters>
CEditorView::AskTable(const HtmlFragments::TableParameters& shown) {
    const QPointer<CEditorView> pThis(this);
    auto typed = EditorDialogs::AskTable(shown, this);
    while (pThis && typed && qint64(typed->nRows) * typed->nColumns > c_nMaxCells &&
           (typed->nRows > shown.nRows || typed->nColumns > shown.nColumns)) {
        m_people.Warn(
            EditorTexts::c_strTableTooLarge.arg(typed->nRows).arg(typed->nColumns).arg(c_nMaxCells));
        if (pThis)
            typed = EditorDialogs::AskTable(*typed, this);
    }
    return pThis ? typed : std::nullopt;
}

void CEditorView::InsertTable() {
    if (const auto parameters = AskTable({}))
        Insert(HtmlFragments::Table(*parameters));
}

void CEditorView::EditTable() {
    if (!m_pDesign->HasSelectTable()) {
        m_people.Notice(EditorTexts::c_strNoTable);
        return;
    }
    HtmlFragments::TableParameters shown;
    CWebBrowser2Ex::STableInfo info;
    if (m_pDesign->GetSelectedTableInfo(info))
        shown = {info.nRows,          info.nColumns,       info.strWidth,        info.strBorder,
                 info.strCellSpacing, info.strCellPadding, info.strBorderColour, info.strBackground};
    const auto typed = AskTable(shown);
    if (!typed)
        return;
    info = {typed->nRows,           typed->nColumns,  typed->strWidth,       typed->strBackground,
            typed->strBorderColour, typed->strBorder, typed->strCellSpacing, typed->strCellPadding};
    Torvane::Dialog::MFC::IPeople& people = m_people;
    bool bLate = false;
    if (m_pDesign->EditSelectedTable(info, &bLate))
        return;
    if (bLate)
        people.Warn(EditorTexts::c_strTableLate);
    else
        people.Error(EditorTexts::c_strTableFailed);
}

void CEditorView::InsertText(const QString& strPrompt, QString (*build)(const QString&)) {
    const auto text = EditorDialogs::AskText(strPrompt, this);
    if (text && !text->isEmpty())
        Insert(build(*text));
}

void CEditorView::InsertFloatingHelp() {
    if (!m_pDesign->HasSelection()) {
        m_people.Notice(EditorTexts::c_strNoSelection);
        return;
    }
    const auto help = EditorDialogs::AskText(EditorTexts::c_strAskFloatingHelp, this);
    QString strSelected;
    if (help && !help->isEmpty() && m_pDesign->GetSelectedText(strSelected))
        Insert(HtmlFragments::FloatingHelp(*help, strSelected));
}

void CEditorView::InsertInSiteLink() {
    if (!m_pDesign->HasSelection()) {
        m_people.Notice(EditorTexts::c_strNoSelection);
        return;
    }
    const auto link = AskInSiteLink(*m_pNode, this);
    QString strSelected;
    if (link && m_pDesign->GetSelectedText(strSelected))
        Insert(HtmlFragments::InSiteLink(
            InSiteLink::PageReference(*link, m_saver.GetFolders().strNodeResourceFolder), strSelected));
}

void CEditorView::SetTemplate() {
    QString strHtml;
    if (GetCurrentHtml(strHtml) && !strHtml.isEmpty() &&
        m_people.Question(EditorTexts::c_strAskTemplate) != BoxAnswer::Ok)
        return;
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    const QString strFolder = store.GetPagesFolder(m_pNode->GetCourse().GetTemplateName());
    const auto path = m_people.PickOpenFile(
        QString(), strFolder, EditorTexts::c_strTemplateFilter.arg(EditorTexts::c_strTemplateExtension));
    if (!path)
        return;
    if (strFolder.isEmpty() || !Torvane::File::IsPathUnder(strFolder, *path, u'\\')) {
        m_people.Ask(EditorTexts::c_strBadTemplate, EditorTexts::c_strWarning, BoxButtons::Ok, BoxIcon::None);
        return;
    }
    ShowFailure(this, [&] {
        const QString strTemplate = JoinLines(PageEncoding::TextOf(ReadFileBytes(*path)));
        // Into the design surface even while the source holds the live text, which then goes before it.
        m_pDesign->SetBrowserBodyInnerHTML(strTemplate);
    });
}

void CEditorView::ClearContent() {
    if (m_people.Question(EditorTexts::c_strAskClear) == BoxAnswer::Ok && !SetCurrentHtml(QString()))
        m_people.Error(EditorTexts::c_strClearFailed);
}

void CEditorView::ClearGarbage() {
    const bool bCleared = m_saver.ClearGarbage();
    m_people.Ask(bCleared ? EditorTexts::c_strGarbageCleared : EditorTexts::c_strGarbageFailed,
                 bCleared ? EditorTexts::c_strSuccess : EditorTexts::c_strFailure, BoxButtons::Ok,
                 BoxIcon::Information);
}

void CEditorView::Quit() {
    ShowFailure(this, [this] {
        if (LeaveNode(true))
            m_host.ShowNodeView(KindView(*m_pNode), m_pNode);
    });
}
