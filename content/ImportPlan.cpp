#include "content/ImportPlan.h"

#include "content/Texts.h"
#include "foundation/CodePage.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/NativePath.h"

#include <QSet>

#include <algorithm>
#include <vector>

using namespace Torvane::File;
using namespace Qt::StringLiterals;

namespace {

const QString c_strFilesExtension = u".files"_s;

/// One folder of the way down, and how far it has been taken.
struct Level {
    QList<FolderEntry> entries;
    /// With a trailing backslash.
    QString strFolder;
    qsizetype nParent;
    qsizetype nNext = 0;
    /// The names of its files and of its folders, in lower case.
    QSet<QString> files, folders;
};

class CPlanner {
public:
    CPlanner(const CImportFilter& taken, IWalkFilter* pFilter) : m_taken(taken), m_pFilter(pFilter) {}

    ImportPlan Run(const QString& strFolder) {
        if (!Open(strFolder, -1))
            throw Torvane::CRunException(ContentText::c_strFolderNotRead.arg(Platform::ToShown(strFolder)));
        while (!m_levels.empty() && !(m_pFilter && m_pFilter->Cancelled()))
            Step();
        return std::move(m_plan);
    }

private:
    /// Of its own stack: the next entry of the deepest folder.
    void Step() {
        Level& level = m_levels.back();
        if (level.nNext == level.entries.size()) {
            m_levels.pop_back();
            return;
        }
        const FolderEntry& entry = level.entries[level.nNext++];
        if (entry.bFolder ? IsOfPage(level, entry) : !m_taken.Takes(entry.strName))
            return;
        const QString strPath = level.strFolder + entry.strName;
        if (entry.bNoText)
            return m_plan.LeaveOut(strPath, ContentText::c_strNameNoText);
        if (IsPathTooLong(strPath))
            return m_plan.LeaveOut(strPath, ContentText::c_strPathTooLong);
        const bool bPage = !entry.bFolder && IsHtmlFile(entry.strName);
        m_plan.Entries.append({strPath, FileTitle(entry.strName), entry.bFolder, level.nParent, entry.nSize,
                               bPage && level.folders.contains(FilesFolderOf(entry.strName))});
        // A folder that can't be read becomes a node all the same.
        if (entry.bFolder && !Open(strPath, m_plan.Entries.size() - 1))
            m_plan.LeaveOut(strPath, ContentText::c_strNotRead);
    }

    bool Open(const QString& strFolder, qsizetype nParent) {
        Level level{{}, AddBackslash(strFolder), nParent, 0, {}, {}};
        QStringList hidden;
        if (!ListFolder(strFolder, level.entries, m_pFilter, &hidden))
            return false;
        hidden.sort();
        for (const QString& strName : hidden) {
            if (m_taken.Takes(strName))
                m_plan.LeaveOut(level.strFolder + strName, ContentText::c_strHidden);
        }
        for (const FolderEntry& entry : level.entries)
            (entry.bFolder ? level.folders : level.files).insert(LowerAscii(entry.strName));
        std::ranges::sort(level.entries, [](const FolderEntry& a, const FolderEntry& b) {
            return a.nBorn != b.nBorn ? a.nBorn < b.nBorn : a.strName < b.strName;
        });
        m_levels.push_back(std::move(level));
        return true;
    }

    static QString FilesFolderOf(const QString& strPage) {
        return LowerAscii(FileTitle(strPage)) + c_strFilesExtension;
    }

    /// Its page's copy brings it along.
    static bool IsOfPage(const Level& level, const FolderEntry& folder) {
        const QString strTitle = LowerAscii(FileTitle(folder.strName));
        return folder.strName.endsWith(c_strFilesExtension) &&
               (level.files.contains(strTitle + u".htm") || level.files.contains(strTitle + u".html"));
    }

    const CImportFilter& m_taken;
    IWalkFilter* m_pFilter;
    ImportPlan m_plan;
    std::vector<Level> m_levels;
};

} // namespace

CImportFilter::CImportFilter(const QString& strPatterns) {
    QStringList pieces;
    SplitText(LowerAscii(strPatterns), pieces, u';');
    for (const QString& strPiece : pieces) {
        if (strPiece == u"*.*") {
            m_bAll = true;
            return;
        }
        m_extensions.append(strPiece.startsWith(u"*."_s) ? strPiece.sliced(1) : strPiece);
    }
}

bool CImportFilter::Takes(const QString& strName) const {
    return m_bAll || m_extensions.contains(LowerAscii(Extension(strName)));
}

void ImportPlan::LeaveOut(const QString& strPath, const QString& strReason) {
    LeftOut.append(Platform::ToNativeExact(strPath) + u'：' + QString(strReason).remove(u'\n'));
}

ImportPlan PlanDirectoryImport(const QString& strFolder, const CImportFilter& taken, IWalkFilter* pFilter) {
    return CPlanner(taken, pFilter).Run(strFolder);
}

QString ShortenPath(const QString& strPath, qsizetype nBytes, QChar cSeparator) {
    const qsizetype nLength = CodePage::ByteLength(strPath);
    if (nLength < nBytes)
        return strPath;
    qsizetype nHead = 0;
    while (nHead < strPath.size() && strPath[nHead] == cSeparator)
        ++nHead;
    nHead = strPath.indexOf(cSeparator, nHead);
    if (nHead < 0)
        return {};
    const QString strHead = strPath.left(nHead);
    const qsizetype nRoom = nBytes - CodePage::ByteLength(strHead) - 4;
    if (nRoom <= 0)
        return {};
    const qsizetype nStart = CodePage::Cut(strPath, nLength - nRoom).size();
    const qsizetype nNext = strPath.indexOf(cSeparator, nStart);
    return strHead + cSeparator + u"..."_s + CodePage::Cut(strPath.mid(nNext < 0 ? nStart : nNext), nRoom);
}
