#include "content/NewCourse.h"

#include "content/Texts.h"
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
    struct Place {
        NodeRow row;
        int nDepth;
    };
    QList<NodeRow> rows;
    QList<bool> seen(list.size(), false);
    QList<Place> ahead;
    if (!list.isEmpty())
        ahead.append({{0, -1}, 0});
    while (!ahead.isEmpty()) {
        const auto [row, nDepth] = ahead.takeLast();
        if (row.nLine >= list.size() || seen.at(row.nLine) || nDepth > c_nMaxDepth)
            return std::nullopt;
        seen[row.nLine] = true;
        rows.append(row);
        const InitialNode& node = list.at(row.nLine);
        // What lies below a line comes before what stands beside it.
        if (node.NextSibling > 0)
            ahead.append({{node.NextSibling, row.nParentLine}, nDepth});
        if (node.FirstChild > 0)
            ahead.append({{node.FirstChild, row.nLine}, nDepth + 1});
    }
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
