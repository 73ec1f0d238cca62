#include "content/BookNode.h"

#include "content/Texts.h"
#include "course/TemplateStore.h"
#include "foundation/Exceptions.h"
#include "foundation/Files.h"
#include "foundation/Paths.h"
#include "foundation/SysInfo.h"
#include "foundation/TextFile.h"
#include "platform/base/NativePath.h"

#include <QSet>

#include <optional>

namespace {

const QString c_strPageFile = QStringLiteral("Content.htm");

/// A text file's bytes as they come out of reading it line by line and writing it again: the last line end
/// goes, every line ends with CR LF. The code page never uses these bytes inside a character, so no text is
/// decoded for it, and none can suffer.
QByteArray LinesOf(QByteArray bytes) {
    bytes.replace("\r\n", "\n");
    if (bytes.endsWith('\n'))
        bytes.chop(1);
    bytes.replace("\n", "\r\n");
    return bytes;
}

/// The page of the template, or its general page; nothing when it has neither.
std::optional<QByteArray> ReadTemplatePage(const QString& strTemplate, const QString& strPage) {
    const CTemplateStore store(CSysInfo::Instance().GetTemplatesFolder(false));
    QString strPath = strPage.isEmpty() ? QString() : store.GetPagePath(strTemplate, strPage);
    if (!Torvane::File::IsFile(strPath))
        strPath = store.GetDefaultPagePath(strTemplate);
    if (!Torvane::File::IsFile(strPath))
        return std::nullopt;
    return LinesOf(ReadFileBytes(strPath));
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

qint32 CBookNode::GetOpenType() const {
    return Store().GetOpenType(m_nId);
}

QList<NodeHeader> CBookNode::GetChildren() const {
    QList<NodeHeader> children;
    Store().GetChildren(m_nId, children);
    return children;
}

QList<NodeHeader> CBookNode::GetDescendants() const {
    // No recursion, since nothing limits how deep a tree is; no node twice, and no seed row, since a damaged
    // store may lead in a circle.
    QList<NodeHeader> found;
    QSet<qint32> seen{m_nId};
    QList<NodeHeader> waiting{NodeHeader{m_nId, m_strTitle, m_nType}};
    while (!waiting.isEmpty()) {
        const NodeHeader node = waiting.takeLast();
        if (node.Id != m_nId)
            found.append(node);
        QList<NodeHeader> children;
        Store().GetChildren(node.Id, children);
        for (auto it = children.crbegin(); it != children.crend(); ++it) {
            if (it->Id > c_nRootNodeId && !seen.contains(it->Id)) {
                seen.insert(it->Id);
                waiting.append(*it);
            }
        }
    }
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
    const bool bStood = Torvane::File::IsFolder(pChild->GetFolder());
    pChild->EnsureFolder();
    try {
        transaction.Commit();
    } catch (...) {
        if (!bStood)
            Torvane::File::TryDeleteFolder(pChild->GetFolder());
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

bool CBookNode::Delete() {
    QList<NodeHeader> nodes{NodeHeader{m_nId, m_strTitle, m_nType}};
    nodes.append(GetDescendants());
    {
        // From the back: children before their parents, and last siblings first, so that closing the gap
        // touches no rows.
        CBookDatabase::CTransaction transaction(Store());
        for (auto it = nodes.crbegin(); it != nodes.crend(); ++it) {
            if (!Store().DeleteNode(it->Id))
                return false;
        }
        transaction.Commit();
    }
    for (auto it = nodes.crbegin(); it != nodes.crend(); ++it)
        Torvane::File::TryDeleteFolder(m_course.GetPaths().GetNodeFolder(it->Id));
    return true;
}

bool CBookNode::MoveUp() {
    return Store().MoveUp(m_nId);
}

bool CBookNode::MoveDown() {
    return Store().MoveDown(m_nId);
}

bool CBookNode::InitFromTemplatePage(const QString& strTemplate, const QString& strPage) {
    const std::optional<QByteArray> page = ReadTemplatePage(strTemplate, strPage);
    if (!page)
        return false;
    BuildEditorPage(&*page, 0);
    return true;
}

void CBookNode::CreateEditorPage(qint32 nOpenType) {
    const std::optional<QByteArray> page = ReadTemplatePage(m_course.GetTemplateName(), QString());
    BuildEditorPage(page ? &*page : nullptr, nOpenType);
}

void CBookNode::BuildEditorPage(const QByteArray* pPage, qint32 nOpenType) {
    Store().GetNode(m_nId); // throws for a node that is gone, as long as its files still stand
    EnsureFolder();
    Torvane::File::ClearFolder(GetFolder(), true);
    Torvane::File::CreateFolderPath(GetFolder() + QStringLiteral("res"));
    if (pPage != nullptr)
        ReplaceFile(GetFolder() + c_strPageFile, *pPage);
    m_nType = NodeType::c_nEditorPage;

    NodeContent content;
    content.Type = m_nType;
    content.Path = QStringLiteral("N%1\\").arg(m_nId) + c_strPageFile;
    content.OpenType = nOpenType;
    CBookDatabase::CTransaction transaction(Store());
    Store().SetContent(m_nId, content);
    UpdateSize();
    transaction.Commit();
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
    UpdateSize();
    return true;
}

void CBookNode::UpdateSize() {
    Store().SetSize(m_nId, Torvane::File::GetFolderSize(GetFolder()));
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
