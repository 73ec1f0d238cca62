#include "companions/compiler/CompileInput.h"

#include "companions/compiler/Sums.h"
#include "companions/compiler/Workers.h"
#include "platform/base/NativePath.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

namespace {

/// How coarse the times of files are, in nanoseconds: two seconds on the coarsest volumes.
constexpr qint64 c_nClockStep = 2'000'000'000;

} // namespace

CCompileInput::CCompileInput(const CompileRequest& request)
    : m_nBegin(QDateTime::currentMSecsSinceEpoch() * 1'000'000) {
    const QString strResources =
        Platform::ToNative(CCoursePaths(request.ProjectPath).GetNodeResourceFolder(false));
    const QString strListings =
        request.CacheFolder.isEmpty()
            ? QString()
            : request.CacheFolder + u'/' + QString::number(CSum().Add(strResources).Value(), 16);
    m_listing = std::async(std::launch::async,
                           [=] { return std::make_unique<CSourceTree>(strResources, strListings); });
    m_pModel = std::make_unique<CSiteModel>(request.ProjectPath);
}

void CCompileInput::Plan(ESiteForm form) {
    m_pTree = m_listing.get();
    m_pPlan = std::make_unique<CSitePlan>(*m_pModel, *m_pTree);
    SumUp(form);
}

void CCompileInput::SumUp(ESiteForm form) {
    constexpr int c_nNodesInPiece = 256;
    const int nNodes = int(m_pModel->Nodes().size());
    std::vector<quint64> nodeSums(static_cast<std::size_t>(nNodes));
    m_fileSums.resize(nodeSums.size());
    ForEachPiece((nNodes + c_nNodesInPiece - 1) / c_nNodesInPiece, [&](int nPiece) {
        for (int i = nPiece * c_nNodesInPiece; i < qMin((nPiece + 1) * c_nNodesInPiece, nNodes); ++i) {
            nodeSums[std::size_t(i)] = SumOfNode(i);
            m_fileSums[std::size_t(i)] = SumOfFiles(FilesOf(i));
        }
    });
    const QFileInfo program(QCoreApplication::applicationFilePath());
    CSum sum;
    sum.Add(quint64(program.size())).Add(quint64(program.lastModified().toMSecsSinceEpoch()));
    sum.Add(quint64(form)).Add(m_pTree->NamesSum());
    sum.Add(m_pModel->School()).Add(m_pModel->Course()).Add(m_pModel->Teacher());
    for (const quint64 nSum : nodeSums)
        sum.Add(nSum);
    m_nStructure = sum.Value();
}

quint64 CCompileInput::SumOfNode(int nNode) const {
    const SiteNode& node = m_pModel->Nodes()[nNode];
    const NodePlan& plan = m_pPlan->Of(nNode);
    CSum sum;
    sum.Add(quint64(quint32(node.Row.Id))).Add(quint64(quint32(node.Parent)));
    sum.Add(quint64(quint32(node.Row.Type))).Add(quint64(quint32(node.Row.OpenType)));
    for (const QString* pText : {&node.Row.Title, &node.Row.Path, &node.Row.FileName, &node.Row.Comment,
                                 &plan.PagePath, &plan.Target, &plan.Fragment})
        sum.Add(*pText);
    return sum.Value();
}

QStringList CCompileInput::FilesOf(int nNode) const {
    const NodePlan& plan = m_pPlan->Of(nNode);
    if (plan.Source.isEmpty())
        return {};
    return plan.View == ENodeView::Video ? m_pTree->FilesBelow(plan.Source) : QStringList{plan.Source};
}

quint64 CCompileInput::SumOfFiles(const QStringList& files) const {
    CSum sum;
    for (const QString& strFile : files) {
        const CSourceTree::State state = m_pTree->StateOf(strFile);
        sum.Add(quint64(state.nSize)).Add(quint64(state.nModified)).Add(quint64(state.nChanged));
        // What is written in the same moment in which it is read would look the same afterwards.
        if (state.nChanged > m_nBegin - c_nClockStep)
            sum.Add(quint64(m_nBegin));
    }
    return sum.Value();
}

quint64 CCompileInput::Sum(const Sources& sources, const QStringList& more) const {
    CSum sum;
    sum.Add(m_nStructure).Add(SumOfFiles(sources.Files));
    for (int i = sources.FirstNode; i < sources.EndNode; ++i)
        sum.Add(m_fileSums[std::size_t(i)]);
    return sum.Add(SumOfFiles(more)).Value();
}

quint64 CCompileInput::Sum() const {
    return Sum(Sources());
}
