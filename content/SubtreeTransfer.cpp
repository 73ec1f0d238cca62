#include "content/SubtreeTransfer.h"

#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/TextFile.h"

#include <QSet>

#include <algorithm>
#include <exception>

using Torvane::CRunException;

namespace {

/// So many nodes go in one transaction: waiting for the disk weighs little then.
constexpr qsizetype c_nImportedAtOnce = 64;
/// The index of more nodes than any import takes.
constexpr qint64 c_nMaxIndex = qint64{64} * 1024 * 1024;

/// An export that comes to no end must not look whole by the index of an older one, which goes with the first
/// file that is copied over it; until then the older one is whole.
class COldIndex : public Torvane::File::IWalkFilter {
public:
    explicit COldIndex(const QString& strIndex) : m_strIndex(strIndex) {}

    Torvane::File::IWalkFilter* Around(Torvane::File::IWalkFilter* pFilter) {
        m_pFilter = pFilter;
        return this;
    }
    bool Cancelled() override { return m_pFilter->Cancelled(); }
    bool AcceptFile(const QString& strPath) override {
        if (!m_bGone && Torvane::File::IsFile(m_strIndex))
            Torvane::File::DeleteOneFile(m_strIndex, true);
        m_bGone = true;
        return m_pFilter->AcceptFile(strPath);
    }
    bool AcceptFolder(const QString& strPath) override { return m_pFilter->AcceptFolder(strPath); }

private:
    QString m_strIndex;
    bool m_bGone = false;
    Torvane::File::IWalkFilter* m_pFilter = nullptr;
};

} // namespace

CSubtreeTransfer::CSubtreeTransfer(Torvane::Dialog::MFC::IPeople& people, CBookNode& node,
                                   const QString& strFolder, EMode eMode)
    : CStatusTask(people, ContentText::c_strTransferTitle), m_node(node), m_strFolder(strFolder),
      m_eMode(eMode), m_bRootTarget(node.GetId() == c_nRootNodeId) {}

void CSubtreeTransfer::Work() {
    if (m_eMode == EMode::Export)
        Export();
    else
        Import();
}

QString CSubtreeTransfer::FolderOf(const NodeInfoRecord& record) const {
    return Torvane::File::AddBackslash(m_strFolder) + QString::number(record.Number);
}

// Export.

void CSubtreeTransfer::Export() {
    SetStatus(ContentText::c_strExportReading);
    const QList<NodeInfoRecord> records = ReadRecords();
    const QString strIndex = Torvane::File::AddBackslash(m_strFolder) + c_strNodeInfoFile;
    ExportFiles(records, strIndex);
    try {
        ReplaceFile(strIndex, WriteNodeInfo(records));
    } catch (const Torvane::File::CFileException&) {
        throw CRunException(ContentText::c_strIndexNotWritten);
    }
    TellPassedOver();
}

/// Parents before their children, by a stack of its own: nothing limits how deep a tree is. A damaged store
/// may lead in a circle, so each node comes once.
QList<NodeInfoRecord> CSubtreeTransfer::ReadRecords() {
    struct Waiting {
        NodeHeader node;
        qsizetype nParent;
    };
    QList<NodeInfoRecord> records;
    std::vector<qsizetype> lastChildren;
    QSet<qint32> seen{m_node.GetId()};
    std::vector<Waiting> waiting{{{m_node.GetId(), m_node.GetTitle(), m_node.GetType()}, -1}};
    try {
        while (!waiting.empty()) {
            ThrowIfCancelled();
            const Waiting next = std::move(waiting.back());
            waiting.pop_back();
            const CBookNode node(m_node.GetCourse(), next.node);
            const auto nNumber = static_cast<qint32>(records.size());
            if (next.nParent >= 0) {
                qsizetype& nLast = lastChildren[static_cast<std::size_t>(next.nParent)];
                (nLast < 0 ? records[next.nParent].FirstChild : records[nLast].NextSibling) = nNumber;
                nLast = nNumber;
            }
            records.append({nNumber, node.GetId(), node.GetTitle(), node.GetType(), node.GetStoredPath(),
                            node.GetOpenType()});
            lastChildren.push_back(-1);
            const QList<NodeHeader> children = node.GetChildren();
            for (auto it = children.crbegin(); it != children.crend(); ++it) {
                if (!seen.contains(it->Id)) {
                    seen.insert(it->Id);
                    waiting.push_back({*it, nNumber});
                }
            }
        }
    } catch (const Torvane::COM::CCOMException&) {
        throw CRunException(ContentText::c_strStoreNotRead);
    }
    return records;
}

void CSubtreeTransfer::ExportFiles(const QList<NodeInfoRecord>& records, const QString& strIndex) {
    SetPieces(records.size());
    COldIndex oldIndex(strIndex);
    try {
        DoFiles(
            records.size(),
            [&](qsizetype nPiece, Torvane::File::IWalkFilter* pFilter) {
                const NodeInfoRecord& record = records[nPiece];
                CBookNode(m_node.GetCourse(), {record.SourceId, record.Title, record.Type})
                    .ExportTo(FolderOf(record), oldIndex.Around(pFilter), &m_passedOver);
            },
            [&](qsizetype nPiece) { return ContentText::c_strExporting.arg(records[nPiece].Title); });
    } catch (const Torvane::File::CFileException&) {
        throw CRunException(ContentText::c_strFilesNotExported);
    }
}

// Import.

void CSubtreeTransfer::Import() {
    SetStatus(ContentText::c_strImportChecking);
    if (!Torvane::File::IsFolder(m_strFolder))
        throw CRunException(ContentText::c_strNoImportFolder);
    if (!Torvane::File::IsFile(Torvane::File::AddBackslash(m_strFolder) + c_strNodeInfoFile))
        throw CRunException(ContentText::c_strNoIndex);
    SetStatus(ContentText::c_strImportReading);
    const QList<NodeInfoRecord> records = ReadIndex();
    // What can be refused is refused before anything is changed.
    const QList<NodeInfoStep> steps = PlanImport(records);
    for (const NodeInfoStep& step : steps)
        ImportedPath(records[step.nRecord].Type, records[step.nRecord].Path, m_node.GetId());
    m_bBegun = !steps.isEmpty();
    SetPieces(steps.size());
    std::vector<Imported> nodes;
    nodes.reserve(static_cast<std::size_t>(steps.size()));
    while (GetDone() < steps.size())
        ImportSome(records, steps, nodes);
    TellPassedOver();
}

void CSubtreeTransfer::TellPassedOver() {
    Ask([&](Torvane::Dialog::MFC::IPeople& people) {
        TellLeftOut(people, ContentText::c_strNotAllCopied, m_passedOver);
    });
}

QList<NodeInfoRecord> CSubtreeTransfer::ReadIndex() {
    QByteArray bytes;
    try {
        bytes = ReadFileBytes(Torvane::File::AddBackslash(m_strFolder) + c_strNodeInfoFile, c_nMaxIndex + 1);
    } catch (const Torvane::File::CFileException&) {
        throw CRunException(ContentText::c_strIndexNotRead);
    }
    if (bytes.size() > c_nMaxIndex)
        throw CRunException(ContentText::c_strNodeInfoDamaged);
    return ParseNodeInfo(bytes);
}

/// One transaction: the nodes, then their files, then what their rows say of these. A node whose files have
/// not come whole goes again, where the import made it; what came before stays.
void CSubtreeTransfer::ImportSome(const QList<NodeInfoRecord>& records, const QList<NodeInfoStep>& steps,
                                  std::vector<Imported>& nodes) {
    const qsizetype nFirst = GetDone();
    const qsizetype nEnd = std::min(steps.size(), nFirst + c_nImportedAtOnce);
    const auto recordOf = [&](qsizetype nStep) -> const NodeInfoRecord& {
        return records[steps[nStep].nRecord];
    };
    CBookDatabase::CTransaction transaction(*m_node.GetCourse().GetDatabase());
    std::exception_ptr failure;
    try {
        for (qsizetype nStep = nFirst; nStep < nEnd; ++nStep) {
            ThrowIfCancelled();
            nodes.push_back(PlaceFor(steps[nStep], recordOf(nStep), nodes));
        }
        DoFiles(
            nEnd,
            [&](qsizetype nStep, Torvane::File::IWalkFilter* pFilter) {
                if (const CBookNode* pNode = nodes[static_cast<std::size_t>(nStep)].pNode)
                    pNode->ImportFiles(FolderOf(recordOf(nStep)), pFilter, &m_passedOver);
            },
            [&](qsizetype nStep) { return ContentText::c_strImporting.arg(recordOf(nStep).Title); });
    } catch (const Torvane::File::CFileException&) {
        failure = std::make_exception_ptr(CRunException(ContentText::c_strNotImported));
    } catch (...) {
        failure = std::current_exception();
    }
    for (qsizetype nStep = nFirst; nStep < GetDone(); ++nStep) {
        const NodeInfoRecord& record = recordOf(nStep);
        const CBookNode* pNode = nodes[static_cast<std::size_t>(nStep)].pNode;
        if (pNode != nullptr && !pNode->ImportContent(record.Type, record.Path, record.OpenType))
            throw CRunException(ContentText::c_strNotImported);
    }
    for (; std::ssize(nodes) > GetDone(); nodes.pop_back()) {
        if (nodes.back().pMade)
            nodes.back().pMade->Delete();
    }
    if (GetDone() == steps.size())
        Tidy([this] { Torvane::File::FlushVolumeOf(m_node.GetFolder()); });
    transaction.Commit();
    for (qsizetype nStep = nFirst; nStep < GetDone(); ++nStep) {
        if (CBookNode* pNode = nodes[static_cast<std::size_t>(nStep)].pNode)
            pNode->TakeType(recordOf(nStep).Type);
    }
    if (failure)
        std::rethrow_exception(failure);
}

CSubtreeTransfer::Imported CSubtreeTransfer::PlaceFor(const NodeInfoStep& step, const NodeInfoRecord& record,
                                                      const std::vector<Imported>& nodes) {
    Imported imported;
    if (step.nParent < 0) {
        imported.pNode = &m_node;
    } else if (CBookNode* pParent = nodes[static_cast<std::size_t>(step.nParent)].pNode) {
        if (!m_bRootTarget)
            imported.pMade = pParent->AddChild(record.Title);
        else if (const NodeHeader child = pParent->FindChild(record.Title); child.Id > 0)
            imported.pFound = std::make_unique<CBookNode>(pParent->GetCourse(), child);
        imported.pNode = m_bRootTarget ? imported.pFound.get() : imported.pMade.get();
    }
    if (imported.pNode != nullptr && !imported.pMade)
        imported.pNode->EnsureFolder();
    return imported;
}
