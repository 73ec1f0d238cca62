#include "content/BookNode.h"

#include "content/NodeInfo.h"
#include "content/Texts.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/TextFile.h"
#include "platform/base/FileOpening.h"
#include "platform/base/FolderWatcher.h"
#include "platform/base/NativePath.h"

#include <QScopeGuard>
#include <QSet>

namespace {

const QString c_strPageFile = QStringLiteral("Content.htm");

/// So many rows go in one transaction: few enough that giving up is honoured soon, and enough that waiting
/// for the disk weighs little.
constexpr int c_nDeletedAtOnce = 32;

/// Lets everything through, and asks before each entry.
class CAskingFilter : public Torvane::File::IWalkFilter {
public:
    explicit CAskingFilter(std::function<bool()> ask) : m_ask(std::move(ask)) {}
    bool Cancelled() override {
        m_ask();
        return false;
    }
    bool AcceptFile(const QString&) override { return true; }
    bool AcceptFolder(const QString&) override { return true; }

private:
    std::function<bool()> m_ask;
};

qint32 IdOf(qint32 nId) {
    return nId;
}
qint32 IdOf(const NodeHeader& node) {
    return node.Id;
}

/// A node and all below it, depth first, parents before their children. No recursion, since nothing limits
/// how deep a tree is; no node twice, since a damaged store may lead in a circle. The store is asked for the
/// grandchildren of each node with children, and never for those of a leaf.
template <typename Item, typename Grandchildren>
QList<Item> WalkBelow(const Item& top, const QList<Item>& children, Grandchildren grandchildren) {
    QList<Item> found;
    QSet<qint32> seen{IdOf(top)};
    QHash<qint32, QList<Item>> families{{IdOf(top), children}};
    QList<Item> waiting{top};
    while (!waiting.isEmpty()) {
        found.append(waiting.takeLast());
        const qint32 nId = IdOf(found.constLast());
        const QList<Item> below = families.take(nId);
        if (!below.isEmpty())
            families.insert(grandchildren(nId));
        for (auto it = below.crbegin(); it != below.crend(); ++it) {
            if (!seen.contains(IdOf(*it))) {
                seen.insert(IdOf(*it));
                waiting.append(*it);
            }
        }
    }
    return found;
}

void RemoveFolder(const QString& strFolder, Torvane::File::IWalkFilter& filter) {
    try {
        Torvane::File::DeleteFolder(strFolder, true, &filter);
    } catch (const Torvane::File::CFileException&) {
        // It stays behind as litter: no row leads to it, and its number never comes again.
    }
}

} // namespace

CBookNode::CBookNode(CCourse& course, const NodeHeader& header)
    : m_course(course), m_nId(header.Id), m_strTitle(header.Title), m_nType(header.Type) {}

std::unique_ptr<CBookNode> CBookNode::Root(CCourse& course) {
    NodeHeader header;
    header.Id = c_nRootNodeId;
    CBookNode root(course, header);
    return std::make_unique<CBookNode>(course, root.Store().GetNode(c_nRootNodeId));
}

CBookDatabase& CBookNode::Store() const {
    CBookDatabase* pDatabase = m_course.GetDatabase();
    if (pDatabase == nullptr)
        throw Torvane::CRunException(ContentText::c_strNoStore);
    return *pDatabase;
}

QString CBookNode::GetFolder() const {
    return m_course.GetPaths().GetNodeFolder(m_nId);
}

QString CBookNode::GetContentPath() const {
    const QString strPath = Store().GetPath(m_nId);
    if (m_nType == NodeType::c_nEmpty || strPath.contains(QLatin1String("://")))
        return strPath;
    return m_course.GetPaths().GetNodeResourceFolder(true) + strPath;
}

QString CBookNode::GetStoredPath() const {
    return Store().GetPath(m_nId);
}

qint32 CBookNode::GetOpenType() const {
    return Store().GetOpenType(m_nId);
}

QList<NodeHeader> CBookNode::GetChildren() const {
    QList<NodeHeader> children;
    Store().GetChildren(m_nId, children);
    return children;
}

QList<NodeHeader> CBookNode::GetDescendants() const {
    QList<NodeHeader> found = WalkBelow(NodeHeader{m_nId, m_strTitle, m_nType}, GetChildren(),
                                        [this](qint32 nId) { return Store().GetGrandchildren(nId); });
    found.removeFirst();
    return found;
}

bool CBookNode::ChildExists(const QString& strTitle) const {
    return Store().HasChild(m_nId, strTitle);
}

NodeHeader CBookNode::FindChild(const QString& strTitle) const {
    return Store().FindChild(m_nId, strTitle);
}

std::unique_ptr<CBookNode> CBookNode::AddChild(const QString& strTitle) {
    CBookDatabase::CTransaction transaction(Store());
    const NodeHeader header{Store().AddNode(m_nId, strTitle), strTitle, NodeType::c_nEmpty};
    auto pChild = std::make_unique<CBookNode>(m_course, header);
    if (!Torvane::File::TryMakeFolder(Torvane::File::WithoutBackslash(pChild->GetFolder()))) {
        pChild->EnsureFolder();
        // Of a row that was undone, whose number comes again: the files are no node's.
        Torvane::File::TryClearFolder(pChild->GetFolder());
    }
    try {
        transaction.Commit();
    } catch (...) {
        Torvane::File::TryDeleteFolder(Torvane::File::WithoutBackslash(pChild->GetFolder()));
        throw;
    }
    return pChild;
}

bool CBookNode::SetTitle(const QString& strTitle) {
    if (!Store().SetTitle(m_nId, strTitle))
        return false;
    m_strTitle = strTitle;
    return true;
}

Deletion CBookNode::Delete(const DeleteProgress& mayGoOn) {
    Deletion result;
    if (m_nId <= c_nRootNodeId) {
        result.bFailed = true;
        return result;
    }
    try {
        // From the back: children before their parents, and last siblings first, so that closing the gap
        // touches few rows.
        QList<qint32> left = WalkBelow(m_nId, Store().GetChildIds(m_nId),
                                       [this](qint32 nId) { return Store().GetGrandchildIds(nId); });
        const int nTotal = static_cast<int>(left.size());
        bool bGoOn = true;
        while (bGoOn && !left.isEmpty()) {
            QList<qint32> batch;
            int nDone = static_cast<int>(result.Gone.size());
            const auto ask = [&] { return bGoOn = (!mayGoOn || mayGoOn(nDone, nTotal)) && bGoOn; };
            for (; !left.isEmpty() && batch.size() < c_nDeletedAtOnce && ask(); ++nDone)
                batch.append(left.takeLast());
            // The rows first: a crash in between leaves litter, and no node without its folder.
            DeleteRows(batch);
            result.Gone.append(batch);
            CAskingFilter filter(ask);
            for (const qint32 nId : batch) {
                ask();
                RemoveFolder(m_course.GetPaths().GetNodeFolder(nId), filter);
            }
        }
    } catch (const Torvane::COM::CCOMException&) {
        result.bFailed = true;
    }
    return result;
}

void CBookNode::DeleteRows(const QList<qint32>& ids) const {
    CBookDatabase::CTransaction transaction(Store());
    for (const qint32 nId : ids)
        Store().DeleteNode(nId);
    transaction.Commit();
}

bool CBookNode::MoveUp() {
    return Store().MoveUp(m_nId);
}

bool CBookNode::MoveDown() {
    return Store().MoveDown(m_nId);
}

bool CBookNode::MoveBelow(qint32 nNewParentId) {
    return Store().MoveTo(m_nId, nNewParentId);
}

bool CBookNode::SetOpenType(qint32 nOpenType) {
    return Store().SetOpenType(m_nId, nOpenType);
}

bool CBookNode::InitFromTemplatePage(const QString& strTemplate, const QString& strPage) {
    if (!Recipes::HasPage(strTemplate, strPage))
        return false;
    Build(Recipes::EditorPage(strTemplate, strPage, 0));
    return true;
}

void CBookNode::CreateEditorPage(qint32 nOpenType) {
    Build(Recipes::EditorPage(m_course.GetTemplateName(), QString(), nOpenType));
}

void CBookNode::Build(const ContentRecipe& recipe) {
    CContentStage stage(*this);
    const QString strBelow = recipe.Files(stage.GetFolder(), nullptr);
    TakeContent(stage, recipe.Row, strBelow, Torvane::File::GetFolderSize(stage.GetFolder()));
}

void CBookNode::TakeContent(CContentStage& stage, NodeContent row, const QString& strBelow, double dSize) {
    Store().GetNode(m_nId); // throws for a node that is gone
    EnsureFolder();
    if (!strBelow.isEmpty())
        row.Path = PathBelow(m_nId, strBelow);
    CBookDatabase::CTransaction transaction(Store());
    Store().SetContent(m_nId, row, dSize);
    stage.Exchange();
    // However it ends, the watched folder has been moved.
    const auto watchAgain = qScopeGuard([this] {
        if (m_pWatcher != nullptr)
            Watch();
    });
    try {
        transaction.Commit();
    } catch (...) {
        stage.Exchange();
        throw;
    }
    stage.LetOldGo();
    m_nType = row.Type;
}

QString CBookNode::PathBelow(qint32 nId, const QString& strBelow) {
    return QStringLiteral("N%1\\").arg(nId) + strBelow;
}

bool CBookNode::ClearContent() {
    Store().GetNode(m_nId);
    EnsureFolder();
    Torvane::File::ClearFolder(GetFolder(), true);
    Store().SetContent(m_nId, NodeContent());
    m_nType = NodeType::c_nEmpty;
    return true;
}

bool CBookNode::SaveContent(const QString& strHtml) {
    EnsureFolder();
    if (!WriteTextFile(GetFolder() + c_strPageFile, strHtml))
        throw Torvane::CRunException(ContentText::c_strPageNotSaved);
    // A course that closes because its store is gone still takes the page.
    if (Store().IsOpen())
        UpdateSize();
    return true;
}

void CBookNode::UpdateSize() {
    Store().SetSize(m_nId, Torvane::File::GetFolderSize(GetFolder()));
}

bool CBookNode::OpenExternalFile() {
    if (m_pWatcher == nullptr || !m_pWatcher->IsWatching())
        Watch();
    const QString strPath = GetContentPath();
    return Torvane::File::IsFile(strPath) && Platform::OpenWithVerb(strPath);
}

/// The node's copies and the tree may go before the watcher does, but never the course.
void CBookNode::Watch() {
    m_pWatcher = std::make_shared<Platform::CFolderWatcher>(GetFolder(), [&course = m_course, nId = m_nId] {
        try {
            CBookNode(course, {nId, {}, NodeType::c_nEmpty}).UpdateSize();
            return true;
        } catch (const Torvane::CRunException&) {
            // The course is closing, which ends this, or lent to a companion, which gives it back.
            return false;
        }
    });
}

void CBookNode::ExportTo(const QString& strFolder, Torvane::File::IWalkFilter* pFilter,
                         QStringList* pPassedOver) const {
    // The copy would look for it among its many neighbours in other letter cases too.
    Torvane::File::TryMakeFolder(strFolder);
    Torvane::File::ForceCopyFolder(GetFolder(), strFolder, true, pFilter, pPassedOver);
}

void CBookNode::ImportFiles(const QString& strFolder, Torvane::File::IWalkFilter* pFilter,
                            QStringList* pPassedOver) const {
    Torvane::File::ForceCopyFolder(strFolder, GetFolder(), true, pFilter, pPassedOver);
}

bool CBookNode::ImportContent(qint32 nType, const QString& strPath, qint32 nOpenType) const {
    NodeContent content;
    content.Type = nType;
    content.Path = ImportedPath(nType, strPath, m_nId);
    content.OpenType = nOpenType;
    return Store().SetContent(m_nId, content);
}

void CBookNode::EnsureFolder() const {
    // A course that was moved away while it is open must not rise again, page by page, where it once stood.
    if (!Torvane::File::IsFolder(m_course.GetPaths().GetCourseFolder(false)))
        throw Torvane::CRunException(ContentText::c_strFolderNotUsable.arg(
            Platform::ToNativeExact(m_course.GetPaths().GetCourseFolder(false))));
    if (!Torvane::File::IsFolder(GetFolder()))
        Torvane::File::CreateFolderPath(Torvane::File::WithoutBackslash(GetFolder()));
    // A file that stands in the folder's place stops the step here, before anything is cleared.
    if (!Torvane::File::IsFolder(GetFolder()))
        throw Torvane::CRunException(
            ContentText::c_strFolderNotUsable.arg(Platform::ToNativeExact(GetFolder())));
}

namespace {

class CNodeMaker : public IInitialNodeMaker {
public:
    explicit CNodeMaker(CCourse& course) : m_course(course) {}

    qint32 AddChild(qint32 nParentId, const QString& strTitle) override {
        return NodeOf(nParentId).AddChild(strTitle)->GetId();
    }
    bool InitFromTemplatePage(qint32 nId, const QString& strTemplate, const QString& strPage) override {
        return NodeOf(nId).InitFromTemplatePage(strTemplate, strPage);
    }

private:
    /// The steps need no title and no type, so the store isn't asked for them.
    CBookNode NodeOf(qint32 nId) const {
        NodeHeader header;
        header.Id = nId;
        return CBookNode(m_course, header);
    }

    CCourse& m_course;
};

} // namespace

std::unique_ptr<IInitialNodeMaker> CNodeMakerFactory::MakeFor(CCourse& course) {
    return std::make_unique<CNodeMaker>(course);
}
