#include "content/DirectoryImport.h"

#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "office/OfficeFiles.h"
#include "platform/base/NativePath.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <exception>

using namespace Qt::StringLiterals;
using namespace Torvane::File;
using Torvane::CRunException;
using Torvane::Dialog::MFC::BoxButtons;
using Torvane::Dialog::MFC::BoxIcon;
using Torvane::Dialog::MFC::IPeople;

namespace {

/// So many rows go in one transaction: waiting for the disk weighs little then.
constexpr qsizetype c_nRowsAtOnce = 128;
/// The windows wait no longer for rows.
constexpr std::chrono::milliseconds c_rowsPause(10);
/// What the status says of a path.
constexpr qsizetype c_nShownBytes = 50;

/// The course was closed behind a box.
struct CourseGone {};

} // namespace

CDirectoryImport::CDirectoryImport(IPeople& people, CBookNode& node, const CNodeFileParams& params,
                                   CNodeContentBuilder::IsThere isThere)
    : CStatusTask(people, ContentText::c_strTransferTitle), m_node(node), m_params(params),
      m_isThere(std::move(isThere)) {}

void CDirectoryImport::Work() {
    try {
        Plan();
        if (m_plan.Entries.isEmpty() && m_plan.LeftOut.isEmpty())
            return;
        Decide();
        MakeNodes();
    } catch (const CourseGone&) {
        return;
    } catch (const Torvane::COM::CCOMException&) {
        throw;
    } catch (const CRunException&) {
        if (!IsCancelled())
            throw;
    }
    Ask([&](IPeople& people) { TellLeftOut(people, ContentText::c_strNotAllImported, m_plan.LeftOut); });
}

void CDirectoryImport::Plan() {
    DoFiles(
        1,
        [this](qsizetype, IWalkFilter* pFilter) {
            const CImportFilter taken(m_params.ImportFilter);
            m_plan = PlanDirectoryImport(m_params.ImportFolder, taken, pFilter);
        },
        [](qsizetype) { return ContentText::c_strImportReading; });
    m_made.resize(static_cast<std::size_t>(m_plan.Entries.size() + 1));
    SetPieces(m_plan.Entries.size());
}

/// A box after which the course must still be there.
template <typename Box>
auto CDirectoryImport::AskThere(Box box) {
    const auto answer = Ask(box);
    if (!m_isThere())
        throw CourseGone();
    return answer;
}

// Which entries become nodes.

/// All boxes come before the first file is touched: nobody has to wait for the next one.
void CDirectoryImport::Decide() {
    At(-1).nId = m_node.GetId();
    At(-1).nChildren = Store().GetChildrenCount(m_node.GetId());
    for (const NodeHeader& child : m_node.GetChildren())
        TakeTitle(m_node.GetId(), child.Title);
    qint32 nNextId = Store().GetNextId();
    bool bNoConverter = false;
    for (qsizetype nEntry = 0; nEntry < m_plan.Entries.size(); ++nEntry) {
        ThrowIfCancelled();
        const ImportEntry& entry = m_plan.Entries[nEntry];
        if (!HasPlace(entry))
            continue;
        At(nEntry).nId = nNextId++;
        At(nEntry).bAsWebPage = !entry.bFolder && BecomesWebPage(entry.strPath);
        bNoConverter |=
            At(nEntry).bAsWebPage && !Torvane::Office::IsConverterInstalled(BareName(entry.strPath));
    }
    if (bNoConverter)
        throw CRunException(ContentText::c_strFileNotConverted + u'\n' + ContentText::c_strNoConverter);
}

/// False when the title is taken. The store finds no title with a single quote, so that such may come twice.
bool CDirectoryImport::TakeTitle(qint32 nParentId, const QString& strTitle) {
    const std::pair title(nParentId, strTitle);
    if (m_titles.contains(title))
        return false;
    if (!strTitle.contains(u'\''))
        m_titles.insert(title);
    return true;
}

bool CDirectoryImport::HasPlace(const ImportEntry& entry) {
    const qint32 nParentId = At(entry.nParent).nId;
    return nParentId >= 0 && (TakeTitle(nParentId, entry.strTitle) || AskThere([&](IPeople& people) {
                                  people.Ask(ContentText::c_strImportTitleTaken.arg(entry.strTitle),
                                             ContentText::c_strTip, BoxButtons::Ok, BoxIcon::Warning);
                                  return false;
                              }));
}

bool CDirectoryImport::BecomesWebPage(const QString& strPath) {
    const std::optional<bool> settled = IsSavedAsWebPage(strPath);
    return settled ? *settled : AskThere([&](IPeople& people) { return AskSaveAsWebPage(strPath, people); });
}

// The nodes: folders and files beside, and the rows that follow them.

void CDirectoryImport::MakeNodes() {
    std::exception_ptr failure;
    const auto noteFailure = [&] {
        if (!failure)
            failure = std::current_exception();
    };
    try {
        DoFiles(
            m_plan.Entries.size(),
            [this](qsizetype nEntry, IWalkFilter* pFilter) { MakeFiles(nEntry, pFilter); },
            [this](qsizetype nEntry) { return StatusOf(nEntry); }, [this] { AddRows(); });
    } catch (...) {
        noteFailure();
    }
    try {
        // Once for all: until here the sources can be imported again, and waiting for each batch costs more.
        if (!failure)
            Tidy([this] { FlushVolumeOf(m_node.GetFolder()); });
        // However it ended, what is done stays.
        while (m_nRows < GetDone())
            AddRows();
        Commit();
    } catch (...) {
        noteFailure();
        m_transaction.reset();
    }
    Tidy([this] { RemoveFoldersWithoutRows(); });
    if (failure)
        std::rethrow_exception(failure);
}

/// Runs beside the store and the windows.
void CDirectoryImport::MakeFiles(qsizetype nEntry, IWalkFilter* pFilter) {
    const ImportEntry& entry = m_plan.Entries[nEntry];
    Made& made = At(nEntry);
    if (made.nId < 0)
        return;
    const QString strFolder = FolderOf(made.nId);
    MakeNodeFolder(made.nId);
    if (entry.bFolder)
        return;
    try {
        const Recipes::ExternalFile file{entry.strPath, made.bAsWebPage,
                                         entry.bFilesFolder ? Recipes::FilesFolderOf(entry.strPath)
                                                            : QString()};
        made.strBelow = Recipes::CopyExternalFile(file, strFolder, pFilter, &made.passedOver);
        const bool bOneFile = !entry.bFilesFolder && !made.bAsWebPage;
        made.dSize = bOneFile ? static_cast<double>(entry.nSize) : GetFolderSize(strFolder);
    } catch (const CDiskFullException&) {
        throw;
    } catch (const CNoConverterException&) {
        throw;
    } catch (const CRunException& e) {
        made.strFailure = e.GetMessage();
        TryDeleteFolder(WithoutBackslash(strFolder));
    }
}

void CDirectoryImport::MakeNodeFolder(qint32 nId) const {
    const QString strFolder = FolderOf(nId);
    if (TryMakeFolder(WithoutBackslash(strFolder)))
        return;
    // A crash may have left it behind: it is no node's, and the copies must not meet what is in it.
    CBookNode(m_node.GetCourse(), {nId, {}, NodeType::c_nEmpty}).EnsureFolder();
    ClearFolder(strFolder, true);
}

/// Of the entries that are done; not so many at once that the windows stand still.
void CDirectoryImport::AddRows() {
    const QDeadlineTimer end(c_rowsPause);
    while (m_nRows < GetDone() && !end.hasExpired()) {
        if (!m_transaction)
            m_transaction.emplace(Store());
        AddRow(m_nRows);
        if (++m_nRows - m_nCommitted >= c_nRowsAtOnce)
            Commit();
    }
}

void CDirectoryImport::AddRow(qsizetype nEntry) {
    const ImportEntry& entry = m_plan.Entries[nEntry];
    const Made& made = At(nEntry);
    if (!made.strFailure.isEmpty())
        m_plan.LeaveOut(entry.strPath, made.strFailure);
    for (const QString& strPath : made.passedOver)
        m_plan.LeftOut.append(strPath + u'：' + ContentText::c_strNotCopied);
    if (made.nId < 0 || !made.strFailure.isEmpty())
        return;
    Made& parent = At(entry.nParent);
    NewNode node{made.nId, parent.nId, parent.nChildren + 1, entry.strTitle, {}, made.dSize};
    if (!entry.bFolder) {
        node.Content.Type = NodeType::c_nExternalFile;
        node.Content.Path = CBookNode::PathBelow(made.nId, made.strBelow);
        node.Content.OpenType = m_params.OpenType;
        node.Content.FileName = BareName(entry.strPath);
    }
    Store().InsertNode(node);
    ++parent.nChildren;
}

void CDirectoryImport::Commit() {
    if (m_transaction)
        m_transaction->Commit();
    m_transaction.reset();
    m_nCommitted = m_nRows;
}

/// The last one may be half a node.
void CDirectoryImport::RemoveFoldersWithoutRows() {
    const qsizetype nBegun = std::min(GetDone() + 1, m_plan.Entries.size());
    for (qsizetype nEntry = m_nCommitted; nEntry < nBegun; ++nEntry) {
        if (const qint32 nId = At(nEntry).nId; nId >= 0)
            TryDeleteFolder(WithoutBackslash(FolderOf(nId)));
    }
}

// What is said of it.

QString CDirectoryImport::StatusOf(qsizetype nEntry) const {
    const QString strPath = Platform::ToNativeExact(m_plan.Entries[nEntry].strPath);
    return ContentText::c_strImportingPath.arg(ShortenPath(strPath, c_nShownBytes, u'/'));
}
