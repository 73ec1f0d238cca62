#include "companions/compiler/SitePlan.h"

#include "companions/compiler/FrameParts.h"
#include "companions/compiler/Texts.h"
#include "companions/compiler/Workers.h"
#include "course/BookDatabase.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "foundation/Text.h"
#include "foundation/Urls.h"
#include "video/Recording.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

ENodeView ViewOfFile(const QString& strName) {
    static const QHash<QString, ENodeView> views = {
        {u".htm"_s, ENodeView::Embedded},   {u".html"_s, ENodeView::Embedded},
        {u".xhtml"_s, ENodeView::Embedded}, {u".txt"_s, ENodeView::Embedded},
        {u".gif"_s, ENodeView::Picture},    {u".jpg"_s, ENodeView::Picture},
        {u".jpeg"_s, ENodeView::Picture},   {u".png"_s, ENodeView::Picture},
        {u".bmp"_s, ENodeView::Picture},    {u".svg"_s, ENodeView::Picture},
        {u".webp"_s, ENodeView::Picture},   {u".mp4"_s, ENodeView::Player},
        {u".webm"_s, ENodeView::Player},    {u".ogv"_s, ENodeView::Player},
        {u".mp3"_s, ENodeView::Player},     {u".ogg"_s, ENodeView::Player},
        {u".wav"_s, ENodeView::Player},
    };
    return views.value(LowerAscii(Torvane::File::Extension(strName)), ENodeView::Download);
}

/// "N" and a number.
bool IsNodeFolder(const QString& strName) {
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    return strName.size() > 1 && (strName[0] == u'N' || strName[0] == u'n') &&
           std::all_of(strName.begin() + 1, strName.end(), isDigit);
}

bool ShowsFile(const StoreRow& row) {
    return row.Type == NodeType::c_nEditorPage || row.Type == NodeType::c_nExternalFile ||
           row.Type == NodeType::c_nSite || row.Type == NodeType::c_nCourseware;
}

bool OpensByItself(ENodeView view) {
    return view == ENodeView::Embedded || view == ENodeView::Picture || view == ENodeView::Player ||
           view == ENodeView::Address;
}

/// An address as typed, with what an address may not hold escaped and completed where its author left
/// "http://" out; empty for one that can't be used.
QString UsableAddress(const QString& strTyped) {
    const QString strAddress = EscapedAddress(strTyped.trimmed());
    if (IsOutsideAddress(strAddress))
        return strAddress;
    static const QRegularExpression host(u"^[a-z0-9-]+(\\.[a-z0-9-]+)+(:[0-9]+)?([/?#].*)?$"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    return host.match(strAddress).hasMatch() ? u"http://"_s + strAddress : QString();
}

} // namespace

CSitePlan::CSitePlan(const CSiteModel& model, const CSourceTree& tree)
    : m_model(model), m_tree(tree), m_references(tree, model.Paths().GetNodeResourceFolder(false)) {
    CheckFolder();
    m_plans.resize(model.Nodes().size());
    m_nodeOfSource.reserve(m_plans.size());
    m_framed.reserve(m_plans.size());
    LookUpFiles();
    QStringList published;
    for (const QString& strFolder : m_tree.TopFolders()) {
        if (!IsNodeFolder(strFolder) && LowerAscii(strFolder) != FrameParts::c_strFolder)
            published.append(strFolder);
    }
    m_references.Publish(published + m_folders);
    for (int i = 0; i < m_plans.size(); ++i)
        PlanNode(i);
    // A link's target may stand anywhere in the tree.
    for (int i = 0; i < m_plans.size(); ++i) {
        if (m_model.Nodes()[i].Row.Type == NodeType::c_nInSiteLink)
            PlanInSiteLink(i);
    }
    for (int i = 0; i < m_plans.size(); ++i) {
        if (!m_plans[i].PagePath.isEmpty())
            m_references.MapFolder(m_folders[i], m_plans[i].PagePath);
    }
    NotePassedOver();
}

/// Of each kind in one line: imported sites bring such files by the dozen.
void CSitePlan::NotePassedOver() {
    using EPassed = CSourceTree::EPassed;
    constexpr qsizetype c_nNamed = 3;
    for (const auto& [eWhy, strNote] : {std::pair{EPassed::Hidden, CompilerText::c_strNoteHidden},
                                        std::pair{EPassed::Link, CompilerText::c_strNoteLinks},
                                        std::pair{EPassed::Unreadable, CompilerText::c_strNoteUnreadable}}) {
        QStringList names;
        for (const CSourceTree::Passed& passed : m_tree.PassedOver()) {
            if (passed.Why == eWhy && (IsPublished(passed.Name) || !passed.Name.contains(u'/')))
                names.append(passed.Name);
        }
        const QString strNamed = names.mid(0, c_nNamed).join(u"”、“"_s);
        if (!names.isEmpty())
            m_notes.append(strNote.arg(names.size()).arg(strNamed));
    }
}

/// Finds on the disk what the rows name, many nodes at a time: it is most of a plan's work.
/// A course whose content lies on a disk that was just taken away is not one without content.
void CSitePlan::CheckFolder() const {
    const auto hasContent = [](const SiteNode& node) {
        return ShowsFile(node.Row) || node.Row.Type == NodeType::c_nVideo;
    };
    if (!m_tree.IsThere() && std::ranges::any_of(m_model.Nodes(), hasContent))
        throw Torvane::CRunException(CompilerText::c_strNoResources.arg(m_tree.NativeFolder()));
}

void CSitePlan::LookUpFiles() {
    constexpr int c_nNodesInPiece = 256;
    const int nNodes = int(m_plans.size());
    m_folders.resize(nNodes);
    QString* const pFolders = m_folders.data();
    NodePlan* const pPlans = m_plans.data();
    ForEachPiece((nNodes + c_nNodesInPiece - 1) / c_nNodesInPiece, [&](int nPiece) {
        for (int i = nPiece * c_nNodesInPiece; i < qMin((nPiece + 1) * c_nNodesInPiece, nNodes); ++i) {
            const StoreRow& row = m_model.Nodes()[i].Row;
            pFolders[i] = FolderFor(row.Id);
            if (ShowsFile(row))
                pPlans[i].Source = m_references.FindStored(row.Path);
        }
    });
}

QString CSitePlan::FolderFor(qint32 nId) const {
    const QString strName = u'N' + QString::number(nId);
    const QString strReal = m_tree.FindFolder(strName);
    return strReal.isEmpty() ? strName : strReal;
}

void CSitePlan::PlanNode(int nNode) {
    const SiteNode& node = m_model.Nodes()[nNode];
    NodePlan& plan = m_plans[nNode];
    const qint32 nOpen = node.Row.OpenType;
    plan.OpenType = nOpen >= 1 && nOpen <= 3 ? nOpen : 0;
    switch (node.Row.Type) {
    case NodeType::c_nEditorPage:
        return PlanPage(nNode, plan);
    case NodeType::c_nExternalFile:
    case NodeType::c_nSite:
    case NodeType::c_nCourseware:
        return PlanFile(nNode, plan);
    case NodeType::c_nExternalLink:
        return PlanAddress(nNode, plan);
    case NodeType::c_nVideo:
        return PlanVideo(nNode, plan);
    case NodeType::c_nInSiteLink:
        return;
    default:
        plan.OpenType = 0;
        plan.View = node.Children.isEmpty() ? ENodeView::Empty : ENodeView::List;
        TakeOwnPage(nNode, plan);
    }
}

void CSitePlan::TakeOwnPage(int nNode, NodePlan& plan) {
    const QString& strFolder = m_folders[nNode];
    QString strPage = strFolder + u"/index.html"_s;
    for (int n = 1; !m_tree.FindFile(strPage).isEmpty(); ++n)
        strPage = strFolder + u"/node"_s + QString::number(n) + u".html"_s;
    plan.PagePath = strPage;
    plan.Target = strPage;
}

void CSitePlan::MarkMissing(int nNode, NodePlan& plan) {
    const StoreRow& row = m_model.Nodes()[nNode].Row;
    plan.View = ENodeView::Missing;
    const QString strFile = QString(row.Path).replace(u'\\', u'/');
    const bool bUnreadable = std::ranges::any_of(m_tree.PassedOver(), [&](const CSourceTree::Passed& passed) {
        return passed.Why == CSourceTree::EPassed::Unreadable &&
               (passed.Name == m_folders[nNode] || EqualsIgnoringCase(passed.Name, strFile));
    });
    m_notes.append((bUnreadable ? CompilerText::c_strNoteClosedContent : CompilerText::c_strNoteNoContent)
                       .arg(row.Title, row.Path));
    TakeOwnPage(nNode, plan);
}

void CSitePlan::PlanPage(int nNode, NodePlan& plan) {
    if (plan.Source.isEmpty())
        return MarkMissing(nNode, plan);
    plan.View = ENodeView::Page;
    m_nodeOfSource.insert(plan.Source, nNode);
    // The page keeps its place, where its own pictures and the links of other pages find it. A store that
    // names another node's page gets a page in the node's own folder.
    if (plan.Source.startsWith(QString(m_folders[nNode] + u'/'))) {
        plan.PagePath = m_tree.OutputName(plan.Source);
        plan.Target = plan.PagePath;
        m_framed.insert(plan.Source);
    } else {
        TakeOwnPage(nNode, plan);
    }
}

void CSitePlan::TakeFile(int nNode, NodePlan& plan) {
    plan.View = ViewOfFile(plan.Source);
    if (plan.OpenType != 0 && OpensByItself(plan.View))
        plan.Target = m_tree.OutputName(plan.Source);
    else
        TakeOwnPage(nNode, plan);
}

void CSitePlan::PlanFile(int nNode, NodePlan& plan) {
    // A lecture of one file was looked for as a folder.
    if (plan.Source.isEmpty())
        plan.Source = m_references.FindStored(m_model.Nodes()[nNode].Row.Path);
    if (plan.Source.isEmpty())
        return MarkMissing(nNode, plan);
    if (!m_nodeOfSource.contains(plan.Source))
        m_nodeOfSource.insert(plan.Source, nNode);
    TakeFile(nNode, plan);
}

void CSitePlan::PlanAddress(int nNode, NodePlan& plan) {
    const StoreRow& row = m_model.Nodes()[nNode].Row;
    const QString strAddress = UsableAddress(row.Path);
    if (strAddress.isEmpty()) {
        plan.View = ENodeView::Missing;
        m_notes.append(CompilerText::c_strNoteBadAddress.arg(row.Title, row.Path));
        return TakeOwnPage(nNode, plan);
    }
    plan.View = ENodeView::Address;
    plan.Source = strAddress;
    if (plan.OpenType == 0)
        return TakeOwnPage(nNode, plan);
    plan.Target = strAddress;
    plan.TargetIsAddress = true;
}

void CSitePlan::PlanVideo(int nNode, NodePlan& plan) {
    const QString strPath = QString(m_model.Nodes()[nNode].Row.Path).replace(u'\\', u'/');
    plan.Source = m_tree.FindFolder(strPath);
    if (plan.Source.isEmpty())
        return PlanFile(nNode, plan);
    if (m_tree.FilesBelow(plan.Source).isEmpty())
        return MarkMissing(nNode, plan);
    plan.View = ENodeView::Video;
    TakeOwnPage(nNode, plan);
}

void CSitePlan::PlanInSiteLink(int nNode) {
    NodePlan& plan = m_plans[nNode];
    const QString strPath = m_model.Nodes()[nNode].Row.Path;
    if (strPath.contains("://"_L1) && !LowerAscii(strPath).startsWith("file:"_L1))
        return PlanAddress(nNode, plan);
    const auto [strFile, strFragment] = Torvane::File::SplitLink(
        strPath, [this](const QString& strName) { return !m_references.FindStored(strName).isEmpty(); });
    plan.Source = m_references.FindStored(strFile);
    if (plan.Source.isEmpty())
        return MarkMissing(nNode, plan);
    const CFragments::Result fragment = m_references.Fragments().Spelled(plan.Source, strFragment);
    if (fragment.IsDead)
        m_notes.append(CompilerText::c_strNoteNoPlace.arg(m_model.Nodes()[nNode].Row.Title, strPath));
    plan.Fragment = fragment.Text;
    const int nTarget = m_nodeOfSource.value(plan.Source, -1);
    if (nTarget >= 0 && (m_plans[nTarget].View == ENodeView::Page || plan.Fragment.isEmpty())) {
        plan.View = m_plans[nTarget].View;
        plan.Target = m_plans[nTarget].Target;
        return;
    }
    TakeFile(nNode, plan);
}

QStringList CSitePlan::FilesToCopy() const {
    // What a recording that was broken off has left can be as large as a lecture.
    const auto isUnfinished = [this](const QString& strFile) {
        const qsizetype nName = strFile.lastIndexOf(u'/') + 1;
        return IsUnfinishedFilm(strFile.mid(nName)) &&
               !m_tree.FindFile(strFile.left(nName) + u"Template.prj"_s).isEmpty();
    };
    QStringList files;
    for (const QString& strFolder : m_references.Published()) {
        for (const QString& strFile : m_tree.FilesBelow(strFolder)) {
            if (!m_framed.contains(strFile) && !isUnfinished(strFile))
                files.append(strFile);
        }
    }
    QSet<QString> shown;
    for (const NodePlan& plan : m_plans) {
        if (plan.Source.isEmpty() || plan.View == ENodeView::Address || plan.View == ENodeView::Page ||
            IsPublished(plan.Source))
            continue;
        for (const QString& strFile :
             plan.View == ENodeView::Video ? m_tree.FilesBelow(plan.Source) : QStringList{plan.Source})
            shown.insert(strFile);
    }
    return files + shown.values();
}
