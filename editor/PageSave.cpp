#include "editor/PageSave.h"

#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"

#include <new>

using namespace Torvane::Dialog::MFC;
using namespace ResourceText;

namespace {

constexpr qsizetype c_nMaxNamesShown = 15;

QString ListOf(QStringList names) {
    if (names.size() > c_nMaxNamesShown) {
        names.erase(names.begin() + c_nMaxNamesShown, names.end());
        names.append(QStringLiteral("……"));
    }
    return names.join(u'\n');
}

} // namespace

CPageSaver::CPageSaver(ILivePage& page, IPeople& people, FetchFile fetch)
    : m_page(page), m_people(people), m_fetch(std::move(fetch)) {}

void CPageSaver::Open(const QString& strPagePath, const QString& strNodeResourceFolder, WritePage write) {
    m_strPagePath = strPagePath;
    m_folders = {ResFolderOfPage(strPagePath), strNodeResourceFolder};
    m_write = std::move(write);
    if (!m_page.GetURL(m_strLoadedUrl) || m_strLoadedUrl == QLatin1StringView("about:blank"))
        m_strLoadedUrl.clear();
    RememberAsLoaded();
}

bool CPageSaver::SurfaceHoldsPage() {
    const auto page = [](const QString& strUrl) { return strUrl.section(u'#', 0, 0); };
    QString strUrl;
    return !m_strLoadedUrl.isEmpty() && m_page.GetURL(strUrl) && page(strUrl) == page(m_strLoadedUrl);
}

bool CPageSaver::GetLiveText(QString& strHtml) {
    strHtml.clear();
    if (!m_page.GetCurrentHtml(strHtml))
        return false;
    // A surface that has lost the page (its engine went away, or shows a failure in its place) has a text
    // too, or none. Neither must ever be taken for what the teacher wrote.
    return m_page.IsInSource() || SurfaceHoldsPage();
}

bool CPageSaver::GetReferences(References& references, QString& strFailure) {
    if (!m_page.GetAllImageSrc(references.Images))
        strFailure = EditorTexts::c_strNoImages;
    else if (!m_page.GetAllEmbededSrc(references.Embeds))
        strFailure = EditorTexts::c_strNoEmbeds;
    else if (!m_page.GetAllAnchorHref(references.Anchors))
        strFailure = EditorTexts::c_strNoLinks;
    if (!strFailure.isEmpty())
        return false;
    // The source box outlives a surface that has lost the page.
    if (!SurfaceHoldsPage() || !m_page.GetURL(references.strDocumentUrl))
        references.strDocumentUrl.clear();
    return true;
}

void CPageSaver::RememberAsLoaded() {
    m_asLoaded.reset();
    QString strHtml, strFailure;
    References references;
    QList<ResourceCopy> copies;
    if (GetLiveText(strHtml) && GetReferences(references, strFailure))
        m_asLoaded = {strHtml, ProcessResources(strHtml, references, m_folders, copies),
                      ReadTextFile(m_strPagePath)};
}

/// A picture on the web is planned under another name each time. That alone is nothing to ask about on the
/// way out, while a save that was asked for tries to fetch it once more.
bool CPageSaver::HasChanged(const QString& strHtml, const QString& strText, const QString& strOnDisk,
                            bool bLeaving) const {
    const bool bUntouched = m_asLoaded && strOnDisk == m_asLoaded->strFile &&
                            (strText == m_asLoaded->strText || (bLeaving && strHtml == m_asLoaded->strHtml));
    return strText != strOnDisk && !bUntouched;
}

ESaveResult CPageSaver::SavePage(bool bWriteBack, bool bAsk, bool bCanCancel) {
    m_bSettled = false;
    try {
        return SaveLiveText(bWriteBack, bAsk, bCanCancel);
    } catch (const std::bad_alloc&) {
        m_people.Error(EditorTexts::c_strTooLong);
        return m_bSettled ? ESaveResult::Saved : ESaveResult::NotWritten;
    }
}

ESaveResult CPageSaver::SaveLiveText(bool bWriteBack, bool bAsk, bool bCanCancel) {
    QString strHtml;
    if (!GetLiveText(strHtml)) {
        m_people.Error(EditorTexts::c_strNoContent);
        return ESaveResult::NotSaved;
    }
    References references;
    QString strFailure;
    if (!GetReferences(references, strFailure)) {
        m_people.Error(strFailure);
        m_people.Error(EditorTexts::c_strResourcesFailed);
        return ESaveResult::NotSaved;
    }
    QList<ResourceCopy> copies;
    auto pBusy = m_page.ShowBusy();
    QList<Replacement> replacements = PlanReplacements(references, m_folders, copies);
    LeaveOutUnnamed(strHtml, replacements, copies);
    QString strText = ApplyReplacements(strHtml, replacements);
    pBusy.reset();
    const QString strOnDisk = ReadTextFile(m_strPagePath);
    m_bSettled = !HasChanged(strHtml, strText, strOnDisk, bAsk);
    if (m_bSettled)
        return ESaveResult::Saved;
    if (const ESaveResult answer = MayWrite(bAsk, bCanCancel); answer != ESaveResult::Saved)
        return answer;

    CResourceCopies task(m_people, copies, m_folders.strResFolder, m_fetch, bCanCancel);
    if (!task.Run()) {
        task.RemoveMade();
        return ESaveResult::Cancelled;
    }
    if (const QSet<qsizetype> failed = task.GetFailed(); !failed.isEmpty()) {
        replacements.removeIf([&](const Replacement& r) { return failed.contains(r.nCopy); });
        strText = ApplyReplacements(strHtml, replacements);
    }
    if (!Write(strText)) {
        // As long as the old page stands there, nothing refers to what was copied for the new one.
        if (ReadTextFile(m_strPagePath) == strOnDisk)
            task.RemoveMade();
        return ESaveResult::NotWritten;
    }
    m_bSettled = true;
    m_asLoaded.reset();
    const bool bWrittenBack = !bWriteBack || WriteBack(strHtml, strText);
    QStringList names = task.GetFailedNames();
    for (const QString& strPath : FindTooLong(strHtml, references))
        names.append(EditorTexts::c_strTooLongPath.arg(strPath));
    if (!names.isEmpty())
        m_people.Warn(EditorTexts::c_strNotCopied.arg(ListOf(names)));
    return bWrittenBack ? ESaveResult::Saved : ESaveResult::NotSaved;
}

ESaveResult CPageSaver::MayWrite(bool bAsk, bool bCanCancel) {
    if (!bAsk)
        return ESaveResult::Saved;
    const BoxAnswer answer =
        m_people.Ask(EditorTexts::c_strAskSave, EditorTexts::c_strTip,
                     bCanCancel ? BoxButtons::YesNoCancel : BoxButtons::YesNo, BoxIcon::Question);
    if (answer == BoxAnswer::Yes)
        return ESaveResult::Saved;
    m_bSettled = answer == BoxAnswer::No;
    return answer == BoxAnswer::No ? ESaveResult::NotSaved : ESaveResult::Cancelled;
}

bool CPageSaver::Write(const QString& strText) {
    try {
        if (m_write(strText))
            return true;
        m_people.Error(EditorTexts::c_strSaveFailed);
    } catch (const Torvane::CRunException& exception) {
        m_people.Error(exception.GetMessage());
    }
    return IsOnDisk(strText);
}

/// Whether the file holds the text, but for a line end behind it, which reading drops.
bool CPageSaver::IsOnDisk(const QString& strText) const {
    const QString strOnDisk = ReadTextFile(m_strPagePath);
    return strOnDisk == strText || (strText.endsWith(u'\n') && strOnDisk == QStringView(strText).chopped(1));
}

bool CPageSaver::WriteBack(const QString& strHtml, const QString& strText) {
    // A text that stands there already stays, and with it the caret and the steps to undo.
    if (strText != strHtml && !m_page.SetCurrentHtml(strText)) {
        m_people.Error(EditorTexts::c_strWriteBackFailed);
        return false;
    }
    RememberAsLoaded();
    return true;
}

bool CPageSaver::MayLeave(bool bCanCancel) {
    switch (SavePage(false, true, bCanCancel)) {
    case ESaveResult::Cancelled:
        return false;
    case ESaveResult::NotWritten:
        // The only copy of the work is the one on the screen. Whoever may stay stays.
        return !bCanCancel;
    case ESaveResult::NotSaved:
    case ESaveResult::Saved:
        break;
    }
    return true;
}

bool CPageSaver::ClearGarbage() {
    QString strHtml;
    if (!GetLiveText(strHtml))
        return false;
    // Who leaves without saving goes back to the page on the disk, and who takes a step back often does.
    const QString strNamed = strHtml + u'\n' + ReadTextFile(m_strPagePath);
    const QStringList garbage = FindGarbage(strNamed, m_folders.strResFolder);
    for (const QString& strName : garbage) {
        try {
            Torvane::File::DeleteOneFile(m_folders.strResFolder + strName, false);
        } catch (const Torvane::CRunException&) {
            // A file that something else holds stays; it costs room and nothing more.
            continue;
        }
    }
    return true;
}
