#include "editor/PageSave.h"

#include "editor/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"

#include <new>

using namespace Torvane::Dialog::MFC;
using namespace ResourceText;

namespace {

constexpr qsizetype c_nMaxNamesShown = 15;

/// As a person writes it: a path in native form, a URL as it is.
QString ShownSource(const ResourceCopy& copy) {
    return copy.bRemote ? copy.strSource : Platform::ToNativeExact(copy.strOpenPath);
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
    // The source box outlives a surface that has lost the page: its text is then saved with the references as
    // they stand, which beats losing it.
    if (m_page.IsInSource() && !SurfaceHoldsPage())
        return true;
    if (!m_page.GetAllImageSrc(references.Images))
        strFailure = EditorTexts::c_strNoImages;
    else if (!m_page.GetAllEmbededSrc(references.Embeds))
        strFailure = EditorTexts::c_strNoEmbeds;
    else if (!m_page.GetAllAnchorHref(references.Anchors))
        strFailure = EditorTexts::c_strNoLinks;
    if (!strFailure.isEmpty())
        return false;
    if (!m_page.GetURL(references.strDocumentUrl))
        references.strDocumentUrl.clear();
    return true;
}

void CPageSaver::RememberAsLoaded() {
    m_asLoaded.reset();
    QString strHtml, strFailure;
    References references;
    QList<ResourceCopy> copies;
    if (GetLiveText(strHtml) && GetReferences(references, strFailure))
        m_asLoaded = ProcessResources(strHtml, references, m_folders, copies);
}

bool CPageSaver::HasChanged(const QString& strText) const {
    return strText != ReadTextFile(m_strPagePath) && (!m_asLoaded || strText != *m_asLoaded);
}

ESaveResult CPageSaver::SavePage(bool bWriteBack, bool bAsk, bool bCanCancel) {
    QString strHtml;
    try {
        if (!GetLiveText(strHtml)) {
            m_people.Error(EditorTexts::c_strNoContent);
            return ESaveResult::NotSaved;
        }
    } catch (const std::bad_alloc&) {
        m_people.Error(EditorTexts::c_strTooLong);
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
    QList<Replacement> replacements = PlanReplacements(references, m_folders, copies);
    QString strText = ApplyReplacements(strHtml, replacements);
    if (!HasChanged(strText))
        return ESaveResult::Saved;

    if (bAsk) {
        const BoxAnswer answer =
            m_people.Ask(EditorTexts::c_strAskSave, EditorTexts::c_strTip,
                         bCanCancel ? BoxButtons::YesNoCancel : BoxButtons::YesNo, BoxIcon::Question);
        if (answer != BoxAnswer::Yes)
            return answer == BoxAnswer::No ? ESaveResult::NotSaved : ESaveResult::Cancelled;
    }

    QList<qsizetype> failed;
    const QStringList notCopied = MakeCopies(copies, failed);
    if (!failed.isEmpty()) {
        replacements.removeIf([&](const Replacement& r) { return failed.contains(r.nCopy); });
        strText = ApplyReplacements(strHtml, replacements);
    }
    if (!Write(strText))
        return ESaveResult::NotWritten;
    m_asLoaded.reset();
    // A text that stands there already stays, and with it the caret and the steps to undo.
    const bool bWrittenBack = !bWriteBack || strText == strHtml || m_page.SetCurrentHtml(strText);
    if (!bWrittenBack)
        m_people.Error(EditorTexts::c_strWriteBackFailed);
    else if (bWriteBack)
        RememberAsLoaded();
    if (!notCopied.isEmpty())
        m_people.Warn(EditorTexts::c_strNotCopied.arg(notCopied.join(u'\n')));
    return bWrittenBack ? ESaveResult::Saved : ESaveResult::NotSaved;
}

QStringList CPageSaver::MakeCopies(const QList<ResourceCopy>& copies, QList<qsizetype>& failed) {
    const std::unique_ptr<CShowStatusDlg> pStatus = m_people.OpenStatus();
    pStatus->ShowStatus(EditorTexts::c_strSaving);
    QStringList notCopied;
    for (qsizetype n = 0; n < copies.size(); ++n) {
        if (!copies.at(n).bCopy)
            continue;
        m_people.KeepPainting();
        if (CopyResource(copies.at(n)))
            continue;
        failed.append(n);
        const QString strShown = ShownSource(copies.at(n));
        if (!notCopied.contains(strShown))
            notCopied.append(strShown);
    }
    if (notCopied.size() > c_nMaxNamesShown) {
        notCopied.erase(notCopied.begin() + c_nMaxNamesShown, notCopied.end());
        notCopied.append(QStringLiteral("……"));
    }
    return notCopied;
}

bool CPageSaver::CopyResource(const ResourceCopy& copy) {
    // Like the local copy, a fetch never replaces what already lies there.
    if (!Torvane::File::TryCreateFolderPath(m_folders.strResFolder) ||
        Torvane::File::GetPathKind(copy.strDest) != Torvane::File::EPathKind::Nothing)
        return false;
    if (copy.bRemote)
        return m_fetch && m_fetch(copy.strSource, copy.strDest);
    try {
        Torvane::File::CopyOneFile(copy.strOpenPath, copy.strDest, false);
    } catch (const Torvane::CRunException&) {
        return false;
    }
    return true;
}

bool CPageSaver::Write(const QString& strText) {
    try {
        if (m_write(strText))
            return true;
        m_people.Error(EditorTexts::c_strSaveFailed);
    } catch (const Torvane::CRunException& exception) {
        m_people.Error(exception.GetMessage());
    }
    return false;
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
    const QStringList garbage = FindGarbage(strHtml, m_folders.strResFolder);
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
