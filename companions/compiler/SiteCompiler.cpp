#include "companions/compiler/SiteCompiler.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/NodeView.h"
#include "companions/compiler/OutputFolder.h"
#include "companions/compiler/PageFrame.h"
#include "companions/compiler/PageReader.h"
#include "companions/compiler/SearchIndex.h"
#include "companions/compiler/SiteModel.h"
#include "companions/compiler/SitePlan.h"
#include "companions/compiler/SourceTree.h"
#include "companions/compiler/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "platform/base/NativePath.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString c_strDefaultFolder = u"课程网站"_s;
const QString c_strStartPage = u"index.html"_s;

/// Whether a file's references are corrected on its way.
std::optional<ESourceText> TextKind(const QString& strName) {
    if (Torvane::File::IsHtmlFile(strName))
        return ESourceText::Page;
    if (LowerAscii(strName).endsWith(".css"_L1))
        return ESourceText::StyleSheet;
    return std::nullopt;
}

/// One run of the compiler, from the course to its site.
class CCompileRun {
public:
    explicit CCompileRun(const CompileRequest& request)
        : m_model(request.ProjectPath),
          m_tree(Platform::ToNative(m_model.Paths().GetNodeResourceFolder(false))), m_plan(m_model, m_tree),
          m_frame(m_plan), m_view(m_plan, m_frame) {}

    CompileReport Run();

private:
    QString ChooseFolder();
    QStringList FrameFiles() const;
    void WritePages(COutputFolder& output);
    /// Answers the node's text for the search.
    QString WriteNode(COutputFolder& output, int nNode);
    FramedContent EditorPage(COutputFolder& output, int nNode);
    void CopyFiles(COutputFolder& output, const QStringList& files);

    CSiteModel m_model;
    CSourceTree m_tree;
    CSitePlan m_plan;
    CPageFrame m_frame;
    CNodeView m_view;
    CompileReport m_report;
};

QString CCompileRun::ChooseFolder() {
    const QString strCourse = Platform::ToNative(m_model.Paths().GetCourseFolder(false));
    const QString strDefault = strCourse + u'/' + c_strDefaultFolder;
    if (m_model.LastDir().isEmpty())
        return strDefault;
    const QString strLast = Platform::ToNative(Platform::FromNative(m_model.LastDir()));
    // A course that was carried to another machine still names a folder of the old one.
    if (!QFileInfo(strLast).isAbsolute() ||
        (!QFileInfo::exists(strLast) && !QFileInfo(QFileInfo(strLast).path()).isDir())) {
        m_report.Notes.append(CompilerText::c_strLastDirGone.arg(strLast));
        return strDefault;
    }
    return strLast;
}

QStringList CCompileRun::FrameFiles() const {
    QStringList parts = {FrameParts::c_strParts, FrameParts::c_strScript, FrameParts::c_strSearchScript};
    if (!m_frame.HasSkin())
        parts.append(FrameParts::c_strPlainSkin);
    return parts;
}

CompileReport CCompileRun::Run() {
    COutputFolder output(ChooseFolder(), Platform::ToNative(m_model.Paths().GetCourseFolder(false)),
                         Platform::ToNative(m_model.Paths().GetDataFolder(false)));
    const QStringList files = m_plan.FilesToCopy();
    QStringList names = FrameFiles();
    names += {c_strStartPage, QString::fromLatin1(CNavigation::c_szSiteMap), FrameParts::c_strSearchPage,
              SearchIndex::IndexName()};
    for (int i = 0; i < SearchIndex::PartCount(m_plan); ++i)
        names.append(SearchIndex::PartName(i));
    for (const QString& strFile : files)
        names.append(m_tree.OutputName(strFile));
    for (int i = 0; i < m_model.Nodes().size(); ++i) {
        if (!m_plan.Of(i).PagePath.isEmpty())
            names.append(m_plan.Of(i).PagePath);
    }
    output.Announce(names);
    for (const QString& strPart : FrameFiles())
        output.Write(strPart, FrameParts::Content(strPart));
    CopyFiles(output, files);
    WritePages(output);
    output.Finish();

    m_report.OutputFolder = output.Path();
    m_report.Files = int(output.FileCount()) - m_report.Pages;
    m_report.Notes += m_plan.Notes();
    if (m_model.UnreachableCount() > 0)
        m_report.Notes.append(CompilerText::c_strNoteUnreachable.arg(m_model.UnreachableCount()));
    m_report.Notes += output.Notes();
    return m_report;
}

void CCompileRun::CopyFiles(COutputFolder& output, const QStringList& files) {
    for (const QString& strFile : files) {
        const QString strSource = m_tree.NativePath(strFile);
        const QString strName = m_tree.OutputName(strFile);
        const std::optional<ESourceText> kind = TextKind(strFile);
        const std::optional<QByteArray> bytes = kind ? ReadSourceText(strSource) : std::nullopt;
        if (!bytes) {
            if (kind)
                m_report.Notes.append(CompilerText::c_strNoteLargeText.arg(strFile));
            output.Copy(strSource, strName);
            continue;
        }
        const CReferences::Place place = {FolderOf(strFile), FolderOf(strName), strFile};
        output.Write(strName, CorrectedText(*kind, *bytes, m_plan.References(), place));
    }
}

void CCompileRun::WritePages(COutputFolder& output) {
    output.Write(c_strStartPage, m_frame.StartPage({QString(), QString(), m_view.StartMain()}));
    output.Write(QString::fromLatin1(CNavigation::c_szSiteMap), m_frame.SiteMapPage());
    output.Write(FrameParts::c_strSearchPage, m_frame.SearchPage());
    m_report.Pages += 3;
    QStringList texts;
    QList<QByteArray> filters;
    for (int i = 0; i < m_model.Nodes().size(); ++i) {
        texts.append(WriteNode(output, i));
        if (texts.size() < SearchIndex::c_nNodesInPart && i + 1 < m_model.Nodes().size())
            continue;
        const int nPart = i / SearchIndex::c_nNodesInPart;
        const QByteArray part = SearchIndex::Part(m_plan, nPart, texts);
        output.Write(SearchIndex::PartName(nPart), part);
        filters.append(SearchIndex::FilterOf(part));
        texts.clear();
    }
    output.Write(SearchIndex::IndexName(), SearchIndex::Index(m_plan, filters));
}

QString CCompileRun::WriteNode(COutputFolder& output, int nNode) {
    const NodePlan& plan = m_plan.Of(nNode);
    if (plan.PagePath.isEmpty())
        return SearchIndex::NodeText(m_plan, nNode);
    const bool bPage = plan.View == ENodeView::Page;
    FramedContent content;
    if (bPage)
        content = EditorPage(output, nNode);
    else
        content.Main = m_view.Main(nNode);
    content.Title = m_model.Nodes()[nNode].Row.Title;
    output.Write(plan.PagePath, m_frame.NodePage(nNode, content));
    ++m_report.Pages;
    const qsizetype nBody = bPage ? content.Main.indexOf("<div class=\"page\">"_L1) : -1;
    return SearchIndex::NodeText(m_plan, nNode, nBody < 0 ? QString() : content.Main.mid(nBody));
}

FramedContent CCompileRun::EditorPage(COutputFolder& output, int nNode) {
    const NodePlan& plan = m_plan.Of(nNode);
    const QString strTitle = m_model.Nodes()[nNode].Row.Title;
    const QString strSource = m_tree.NativePath(plan.Source);
    const std::optional<QByteArray> bytes = ReadSourceText(strSource);
    const CReferences::Place place = {FolderOf(plan.Source), FolderOf(plan.PagePath), plan.Source};
    const std::optional<ReadyPage> page = bytes ? ReadPage(*bytes, m_plan.References(), place) : std::nullopt;
    if (!page) {
        QString strRaw = QFileInfo(plan.PagePath).fileName();
        do
            strRaw.prepend(u"raw-"_s);
        while (!m_tree.FindFile(FolderOf(plan.PagePath) + u'/' + strRaw).isEmpty());
        strRaw.prepend(FolderOf(plan.PagePath) + u'/');
        m_report.Notes.append(CompilerText::c_strNoteRawPage.arg(strTitle));
        output.Announce({strRaw});
        if (bytes)
            output.Write(strRaw, CorrectedText(ESourceText::Page, *bytes, m_plan.References(), place));
        else
            output.Copy(strSource, strRaw);
        return {QString(), QString(), m_view.RawPageMain(nNode, strRaw)};
    }
    for (const QString& strDead : page->DeadReferences)
        m_report.Notes.append(CompilerText::c_strNoteDeadLink.arg(strTitle, strDead));
    return {QString(), page->Content.Head, m_view.PageMain(nNode, page->Content.Body)};
}

} // namespace

CompileRequest ReadArgument(const QString& strArgument) {
    CompileRequest request;
    QString strPath = strArgument;
    const qsizetype nBar = strArgument.lastIndexOf(u'|');
    // A bar before the last separator is part of a folder's name.
    if (nBar > qMax(strArgument.lastIndexOf(u'/'), strArgument.lastIndexOf(u'\\'))) {
        const QString strForm = strArgument.mid(nBar + 1);
        if (strForm == "H"_L1)
            request.Form = ESiteForm::Html;
        else if (strForm == "S"_L1)
            request.Form = ESiteForm::Classroom;
        else
            throw Torvane::CRunException(CompilerText::c_strUnknownForm.arg(strForm));
        strPath = strArgument.left(nBar);
    }
    if (strPath.isEmpty())
        throw Torvane::CRunException(CompilerText::c_strUsage);
    const bool bDrive = strPath.size() > 1 && strPath[1] == u':';
    request.ProjectPath = Platform::FromNative(bDrive ? strPath : QFileInfo(strPath).absoluteFilePath());
    return request;
}

CompileReport CompileSite(const CompileRequest& request) {
    return CCompileRun(request).Run();
}
