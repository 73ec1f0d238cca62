#include "content/NewCourse.h"

#include "content/Texts.h"
#include "course/LinkedTree.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"

namespace {

using Torvane::File::EPathKind;

constexpr int c_nMaxDepth = 64;

QString CourseFolderBelow(const QString& strFolder, const QString& strName) {
    return Torvane::File::AddBackslash(strFolder) + strName + u'\\' + ContentText::c_strCourseSubFolder;
}

/// A separator too many is no part of a path, and nobody should find it in the list of recent courses.
QString Tidied(const QString& strFolder) {
    QString strTidy = strFolder;
    for (qsizetype n = strTidy.size() - 1; n > 1; --n) {
        if (strTidy.at(n) == u'\\' && strTidy.at(n - 1) == u'\\')
            strTidy.remove(n, 1);
    }
    return strTidy;
}

bool MakeFolder(const QString& strFolder) {
    if (!Torvane::File::IsAbsolute(strFolder))
        return false;
    try {
        Torvane::File::CreateFolderPath(strFolder);
    } catch (const Torvane::CRunException&) {
        return false;
    }
    return Torvane::File::IsFolder(strFolder);
}

} // namespace

void CCourseFolderStep::Enter(const QString& strCourse) {
    if (strCourse == m_strSeen)
        return;
    m_strSeen = strCourse;
    strName = strCourse;
    strFolder = CourseFolderBelow(CSysInfo::Instance().GetProjectsFolder(false), strCourse);
}

void CCourseFolderStep::TakePicked(const QString& strPicked) {
    strFolder = CourseFolderBelow(strPicked, strName);
}

CCourseFolderStep::Fault CCourseFolderStep::Next() {
    strFolder = Tidied(strFolder);
    if (strName.isEmpty())
        return {ContentText::c_strNoCourseName, true};
    if (strFolder.isEmpty())
        return {ContentText::c_strNoCourseFolder};
    // Such a name would lead the project file into a folder that nobody makes, when half the course stands.
    if (strName.contains(u'\\') || strName.contains(u'/'))
        return {ContentText::c_strSeparatorInName, true};
    const QString strBare = Torvane::File::WithoutBackslash(strFolder);
    const EPathKind kind = Torvane::File::GetPathKind(strBare);
    if (kind == EPathKind::Folder && !Torvane::File::IsFolderEmpty(strBare))
        return {ContentText::c_strFolderNotEmpty};
    if (!MakeFolder(strBare))
        return {ContentText::c_strFolderNotMade};
    return {};
}

QStringList PreviewRows(const CTemplateStore& store, const QString& strTemplate) {
    QStringList rows{ContentText::c_strOverallPreview};
    if (!strTemplate.isEmpty())
        store.ListPages(strTemplate, rows);
    return rows;
}

QString PreviewPath(const CTemplateStore& store, const QString& strTemplate, int nRow,
                    const QString& strRow) {
    if (strTemplate.isEmpty())
        return {};
    return nRow == 0 ? store.GetPreviewPath(strTemplate) : store.GetPagePreviewPath(strTemplate, strRow);
}

std::optional<QList<NodeRow>> NodeRows(const QList<InitialNode>& list) {
    // Line 0 is the first, and nobody's child or sibling.
    const auto place = [](qint32 nLine) { return nLine > 0 ? nLine : -1; };
    QList<TreeLinks> lines;
    for (const InitialNode& node : list)
        lines.append({place(node.FirstChild), place(node.NextSibling)});
    QList<NodeRow> rows;
    QList<int> depths(list.size(), -1);
    const auto visit = [&](qint32 nLine, qint32 nParent, std::optional<qint32>& below) {
        const int nDepth = nParent < 0 ? 0 : depths[nParent] + 1;
        if (depths[nLine] >= 0 || nDepth > c_nMaxDepth)
            return false;
        depths[nLine] = nDepth;
        rows.append({nLine, nParent});
        below = nLine;
        return true;
    };
    if (!WalkLinkedTree(lines, list.isEmpty() ? -1 : 0, -1, visit))
        return std::nullopt;
    return rows;
}

QString SummaryText(const CreateRecord& record, const QString& strShownFolder) {
    using namespace ContentText;
    const QStringList lines{c_strSummaryCourse + record.Info.Name,
                            c_strSummaryTeacher + record.Info.TeacherName,
                            c_strSummaryProject + record.FileTitle, c_strSummaryFolder + strShownFolder,
                            c_strSummaryTemplate + record.TemplateName};
    return lines.join(QLatin1String("\r\n"));
}

void CompleteRecord(CreateRecord& record) {
    // A list that breaks off is handed over as far as it goes: creation says what is wrong with it.
    record.InitialNodes.clear();
    LoadInitialNodes(record.TemplateName, record.InitialNodes);
    record.Folder = Torvane::File::AddBackslash(record.Folder);
}
