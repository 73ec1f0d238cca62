#include "course/BookDatabase.h"

#include "course/ComError.h"
#include "course/StoreConnection.h"
#include "course/TitleCipher.h"
#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"

#include <SQLiteCpp/Exception.h>

#include <QDateTime>
#include <QSet>

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// What a node's one column is read with. The wording is fixed, so that a column's name never comes from
/// outside.
struct FieldStatement {
    QLatin1StringView strColumn;
    const char* pszWording;
};
constexpr std::array c_fieldStatements{
    FieldStatement{"Id"_L1, "SELECT Id FROM Book WHERE Id = ?"},
    FieldStatement{"ParentId"_L1, "SELECT ParentId FROM Book WHERE Id = ?"},
    FieldStatement{"Index"_L1, "SELECT [Index] FROM Book WHERE Id = ?"},
    FieldStatement{"[Index]"_L1, "SELECT [Index] FROM Book WHERE Id = ?"},
    FieldStatement{"Title"_L1, "SELECT Title FROM Book WHERE Id = ?"},
    FieldStatement{"Type"_L1, "SELECT Type FROM Book WHERE Id = ?"},
    FieldStatement{"Path"_L1, "SELECT Path FROM Book WHERE Id = ?"},
    FieldStatement{"OpenType"_L1, "SELECT OpenType FROM Book WHERE Id = ?"},
    FieldStatement{"FileName"_L1, "SELECT FileName FROM Book WHERE Id = ?"},
    FieldStatement{"Comment"_L1, "SELECT Comment FROM Book WHERE Id = ?"},
    FieldStatement{"Size"_L1, "SELECT [Size] FROM Book WHERE Id = ?"},
    FieldStatement{"[Size]"_L1, "SELECT [Size] FROM Book WHERE Id = ?"},
    FieldStatement{"TimeLastModified"_L1, "SELECT TimeLastModified FROM Book WHERE Id = ?"},
};

const char* FieldWording(const QString& strColumn) {
    for (const auto& field : c_fieldStatements) {
        if (strColumn == field.strColumn)
            return field.pszWording;
    }
    ComError::Throw(ComError::c_nNoSuchColumn);
}

/// From here on looking for each child's children costs more than passing over the course's parents.
constexpr qint32 c_nManyChildren = 2000;

/// Stands for a parent or a place that can't be read.
constexpr qint32 c_nNoPlace = std::numeric_limits<qint32>::min();

void StepToRow(CStoreQuery& query) {
    if (!query.Step())
        ComError::Throw(ComError::c_nNoRow);
}

/// Says whose child a row is. The three rows that every course has stand above the tree and are no one's
/// children, whatever a damaged row says; nor is a row its own child, nor one without a number that names it,
/// and a number that stands in two rows names the first.
class CChildren {
public:
    explicit CChildren(bool bUniqueIds) : m_bUniqueIds(bUniqueIds) {}
    bool Has(qint32 nId, qint32 nParentId) {
        if (nId <= c_nRootNodeId || nId == nParentId)
            return false;
        if (m_bUniqueIds)
            return true;
        const qsizetype nMet = m_met.size();
        m_met.insert(nId);
        return m_met.size() > nMet;
    }

private:
    bool m_bUniqueIds;
    QSet<qint32> m_met;
};

/// Reckoned once a second, since thousands of rows may ask for it.
QString LocalTime() {
    static qint64 nSecond = -1;
    static QString strTime;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (now.toSecsSinceEpoch() != nSecond) {
        nSecond = now.toSecsSinceEpoch();
        strTime = now.toLocalTime().toString(u"yyyy-MM-dd HH:mm:ss"_s);
    }
    return strTime;
}

} // namespace

CBookDatabase::CBookDatabase(const QString& strPath, qint32 nCourseId)
    : m_strPath(strPath), m_pTitles(std::make_unique<CTitleCipher>(nCourseId)) {}

CBookDatabase::~CBookDatabase() {
    Close();
}

/// Runs a step on the open connection and takes the engine's failures to the store's exception.
template <typename Step>
auto CBookDatabase::Guarded(Step step) {
    if (!m_pConnection)
        ComError::Throw(ComError::c_nNotOpen);
    try {
        return step(*m_pConnection);
    } catch (const SQLite::Exception& failure) {
        ComError::Throw(ComError::CodeOfSqlite(failure.getErrorCode()));
    }
}

/// Guarded, and all or nothing.
template <typename Step>
bool CBookDatabase::InOneTransaction(Step step) {
    CTransaction transaction(*this);
    const bool bResult = Guarded(step);
    transaction.Commit();
    return bResult;
}

CBookDatabase::CTransaction::CTransaction(CBookDatabase& database) : m_database(database) {
    m_database.Guarded([](Connection& connection) { connection.Begin(); });
}

CBookDatabase::CTransaction::~CTransaction() {
    if (!m_bDone && m_database.m_pConnection)
        m_database.m_pConnection->Undo();
}

void CBookDatabase::CTransaction::Commit() {
    m_database.Guarded([](Connection& connection) { connection.Commit(); });
    m_bDone = true;
}

bool CBookDatabase::Open() {
    if (m_pConnection)
        return true;
    try {
        m_pConnection = std::make_unique<Connection>(Platform::ToNative(m_strPath));
    } catch (const SQLite::Exception& failure) {
        ComError::Throw(ComError::CodeOfSqlite(failure.getErrorCode()));
    }
    return true;
}

void CBookDatabase::Close() {
    if (!m_pConnection)
        return;
    try {
        m_pConnection->FoldLog();
    } catch (const SQLite::Exception&) {
        // What the log holds is safe in it, and the next opening folds it in.
    }
    m_pConnection.reset();
}

void CBookDatabase::PauseForReaders() {
    Guarded([](Connection& connection) { connection.FoldLog(); });
    m_pConnection.reset();
}

void CBookDatabase::ResumeWriting() {
    Open();
}

bool CBookDatabase::IsOpen() const {
    return m_pConnection != nullptr;
}

qint32 CBookDatabase::AddNode(qint32 nParentId, const QString& strTitle) {
    qint32 nId = -1;
    const QByteArray title = m_pTitles->Stored(strTitle);
    InOneTransaction([&](Connection& connection) {
        const qint32 nIndex = GetChildrenCount(nParentId) + 1;
        connection.Query("SELECT * FROM Book WHERE 1 = 0").Step();
        CStoreQuery query =
            connection.Query("INSERT INTO Book (Title, ParentId, [Index]) VALUES (?, ?, ?) RETURNING Id",
                             title, nParentId, nIndex);
        StepToRow(query);
        // Throws, and takes the row back, where a stranger's table gives no number.
        nId = query.Int(0);
        return true;
    });
    return nId;
}

qint32 CBookDatabase::GetNextId() {
    // Undone again, so that only the number is learnt, whatever table gives it.
    const CTransaction transaction(*this);
    return AddNode(c_nRootNodeId, QString());
}

void CBookDatabase::InsertNode(const NewNode& node) {
    const QByteArray title = m_pTitles->Stored(node.Title);
    const NodeContent& content = node.Content;
    Guarded([&](Connection& connection) {
        if (content.Type == NodeType::c_nEmpty)
            connection.Run("INSERT INTO Book (Id, Title, ParentId, [Index]) VALUES (?, ?, ?, ?)", node.Id,
                           title, node.ParentId, node.Place);
        else
            connection.Run("INSERT INTO Book (Id, Title, ParentId, [Index], Type, Path, OpenType, FileName, "
                           "Comment, [Size], TimeLastModified) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)",
                           node.Id, title, node.ParentId, node.Place, content.Type, content.Path,
                           content.OpenType, content.FileName, content.Comment, node.Size, LocalTime());
    });
}

NodeHeader CBookDatabase::GetNode(qint32 nId) {
    return Guarded([&](Connection& connection) {
        CStoreQuery query = connection.Query("SELECT Title, Type FROM Book WHERE Id = ?", nId);
        StepToRow(query);
        return HeaderOf(nId, query, 0);
    });
}

/// The title and the type stand in two columns side by side. What can't be read leaves the node its place in
/// the tree, empty.
NodeHeader CBookDatabase::HeaderOf(qint32 nId, const CStoreQuery& query, int nTitleColumn) const {
    return {nId, m_pTitles->Plain(nId, query.Bytes(nTitleColumn)),
            query.IntOr(nTitleColumn + 1, NodeType::c_nEmpty)};
}

bool CBookDatabase::GetChildren(qint32 nParentId, QList<NodeHeader>& list) {
    return Guarded([&](Connection& connection) {
        CStoreQuery query = connection.Query(
            "SELECT Id, Title, Type FROM Book WHERE ParentId = ? ORDER BY [Index] ASC", nParentId);
        CChildren children(connection.HasUniqueIds());
        while (query.Step()) {
            if (const qint32 nId = query.IntOr(0, -1); children.Has(nId, nParentId))
                list.append(HeaderOf(nId, query, 1));
        }
        return true;
    });
}

QList<qint32> CBookDatabase::GetChildIds(qint32 nParentId) {
    return Guarded([&](Connection& connection) {
        const Connection::State state = connection.GetState();
        if (const auto& last = connection.LongFamily; last.nParentId == nParentId && last.ReadIn == state)
            return last.Ids;
        CStoreQuery query =
            connection.Query("SELECT Id FROM Book WHERE ParentId = ? ORDER BY [Index] ASC", nParentId);
        CChildren children(connection.HasUniqueIds());
        QList<qint32> ids;
        while (query.Step()) {
            if (const qint32 nId = query.IntOr(0, -1); children.Has(nId, nParentId))
                ids.append(nId);
        }
        if (ids.size() > c_nManyChildren)
            connection.LongFamily = {nParentId, state, ids};
        return ids;
    });
}

/// Gathers rows that begin with the parent's and the row's own Id, and come by their parents.
template <typename Item, typename Reader>
QHash<qint32, QList<Item>> CBookDatabase::Families(CStoreQuery query, qint32 nAboveId, bool bUniqueIds,
                                                   Reader reader) {
    CChildren children(bUniqueIds);
    QHash<qint32, QList<Item>> families;
    QList<Item>* pFamily = nullptr;
    qint32 nFamilyId = -1;
    while (query.Step()) {
        const qint32 nParent = query.IntOr(0, -1), nId = query.IntOr(1, -1);
        if (nParent <= c_nRootNodeId || nParent == nAboveId || nId == nAboveId || !children.Has(nId, nParent))
            continue;
        if (pFamily == nullptr || nParent != nFamilyId)
            pFamily = &families[nFamilyId = nParent];
        pFamily->append(reader(nId, query));
    }
    return families;
}

// Both in the order of the index on parent and place: nothing is sorted, and only the rows asked for are
// read.

QHash<qint32, QList<NodeHeader>> CBookDatabase::GetGrandchildren(qint32 nParentId) {
    return Guarded([&](Connection& connection) {
        return Families<NodeHeader>(
            connection.Query("SELECT ParentId, Id, Title, Type FROM Book WHERE ParentId IN "
                             "(SELECT Id FROM Book WHERE ParentId = ?) ORDER BY ParentId, [Index]",
                             nParentId),
            nParentId, connection.HasUniqueIds(),
            [this](qint32 nId, const CStoreQuery& row) { return HeaderOf(nId, row, 2); });
    });
}

QHash<qint32, QList<qint32>> CBookDatabase::GetGrandchildIds(qint32 nParentId) {
    const bool bMany = Guarded([&](Connection& connection) {
        return connection
            .Query("SELECT 1 FROM Book WHERE ParentId = ? LIMIT 1 OFFSET ?", nParentId, c_nManyChildren)
            .Step();
    });
    if (bMany)
        return GetFamiliesAmong(nParentId);
    return Guarded([&](Connection& connection) {
        return Families<qint32>(connection.Query("SELECT ParentId, Id FROM Book WHERE ParentId IN "
                                                 "(SELECT Id FROM Book WHERE ParentId = ?) "
                                                 "ORDER BY ParentId, [Index]",
                                                 nParentId),
                                nParentId, connection.HasUniqueIds(),
                                [](qint32 nId, const CStoreQuery&) { return nId; });
    });
}

/// The same for very many children, of which few have any: it steps through the index from one parent of the
/// course to the next, instead of looking for each child's.
QHash<qint32, QList<qint32>> CBookDatabase::GetFamiliesAmong(qint32 nParentId) {
    QList<qint32> inner;
    Guarded([&](Connection& connection) {
        CStoreQuery query = connection.Query(
            "WITH RECURSIVE Parents(Id) AS (SELECT MIN(ParentId) FROM Book UNION ALL "
            "SELECT (SELECT MIN(ParentId) FROM Book WHERE ParentId > Parents.Id) FROM Parents "
            "WHERE Parents.Id IS NOT NULL) "
            "SELECT Book.Id FROM Parents JOIN Book ON Book.Id = Parents.Id WHERE Book.ParentId = ?",
            nParentId);
        while (query.Step())
            inner.append(query.IntOr(0, -1));
    });
    QHash<qint32, QList<qint32>> families;
    for (const qint32 nId : inner) {
        if (nId > c_nRootNodeId && nId != nParentId)
            families.insert(nId, GetChildIds(nId));
    }
    return families;
}

NodeHeader CBookDatabase::FindChild(qint32 nParentId, const QString& strTitle) {
    return Guarded([&](Connection& connection) {
        CStoreQuery query =
            connection.Query("SELECT Id, Title, Type FROM Book WHERE ParentId = ? AND Title = ?", nParentId,
                             m_pTitles->Searched(strTitle));
        NodeHeader child;
        child.Title = strTitle;
        if (query.Step()) {
            child.Id = query.IntOr(0, -1);
            child.Type = query.IntOr(2, NodeType::c_nEmpty);
        }
        return child;
    });
}

bool CBookDatabase::HasChild(qint32 nParentId, const QString& strTitle) {
    return Guarded([&](Connection& connection) {
        return connection
            .Query("SELECT Id FROM Book WHERE ParentId = ? AND Title = ?", nParentId,
                   m_pTitles->Searched(strTitle))
            .Step();
    });
}

qint32 CBookDatabase::GetChildrenCount(qint32 nParentId) {
    return Guarded([&](Connection& connection) {
        CStoreQuery query =
            connection.Query("SELECT COUNT(*) AS ChildrenCount FROM Book WHERE ParentId = ?", nParentId);
        StepToRow(query);
        return query.Int(0);
    });
}

qint32 CBookDatabase::GetNodeCount() {
    return Guarded([](Connection& connection) {
        CStoreQuery query = connection.Query("SELECT COUNT(*) AS NodeCount FROM Book");
        StepToRow(query);
        return query.Int(0);
    });
}

double CBookDatabase::GetTotalSize() {
    return Guarded([](Connection& connection) {
        CStoreQuery query = connection.Query("SELECT SUM([Size]) As SumSize FROM Book");
        const bool bAny = query.Step() && query.Value(0).isValid();
        // Through 32 bits, which the server's figures are made for.
        return bAny ? static_cast<double>(query.Int(0)) : 0.0;
    });
}

/// Reads one column of one node, which must be there.
template <typename Reader>
auto CBookDatabase::ReadField(qint32 nId, const QString& strColumn, Reader reader) {
    return Guarded([&](Connection& connection) {
        CStoreQuery query = connection.Query(FieldWording(strColumn), nId);
        StepToRow(query);
        return (query.*reader)(0);
    });
}

QVariant CBookDatabase::GetField(qint32 nId, const QString& strColumn) {
    return ReadField(nId, strColumn, &CStoreQuery::Value);
}

QString CBookDatabase::GetText(qint32 nId, const QString& strColumn) {
    return ReadField(nId, strColumn, &CStoreQuery::Text);
}

qint32 CBookDatabase::GetInt(qint32 nId, const QString& strColumn) {
    return ReadField(nId, strColumn, &CStoreQuery::Int);
}

QString CBookDatabase::GetPath(qint32 nId) {
    return GetText(nId, u"Path"_s);
}
QString CBookDatabase::GetFileName(qint32 nId) {
    return GetText(nId, u"FileName"_s);
}
QString CBookDatabase::GetComment(qint32 nId) {
    return GetText(nId, u"Comment"_s);
}
qint32 CBookDatabase::GetOpenType(qint32 nId) {
    return GetInt(nId, u"OpenType"_s);
}

bool CBookDatabase::SetContent(qint32 nId, const NodeContent& content) {
    return InOneTransaction([&](Connection& connection) {
        if (connection.Query("SELECT Type, Path, OpenType, FileName, Comment FROM Book WHERE Id =  ?", nId)
                .Step()) {
            connection.Run(
                "UPDATE Book SET Type = ?, Path = ?, OpenType = ?, FileName = ?, Comment = ? WHERE Id = ?",
                content.Type, content.Path, content.OpenType, content.FileName, content.Comment, nId);
            TouchModified(nId);
        }
        return true;
    });
}

bool CBookDatabase::SetContent(qint32 nId, const NodeContent& content, double dBytes) {
    return Guarded([&](Connection& connection) {
        connection.Run("UPDATE Book SET Type = ?, Path = ?, OpenType = ?, FileName = ?, Comment = ?, "
                       "[Size] = ?, TimeLastModified = ? WHERE Id = ?",
                       content.Type, content.Path, content.OpenType, content.FileName, content.Comment,
                       dBytes, LocalTime(), nId);
        return true;
    });
}

bool CBookDatabase::SetTitle(qint32 nId, const QString& strTitle) {
    const QByteArray title = m_pTitles->Stored(strTitle);
    return InOneTransaction([&](Connection& connection) {
        int nWidth = -1;
        {
            CStoreQuery query = connection.Query("SELECT Title FROM Book WHERE Id = ?", nId);
            if (!query.Step())
                return true;
            nWidth = query.DeclaredWidth(0);
        }
        if (nWidth >= 0 && nWidth < title.size())
            return false;
        connection.Run("UPDATE Book SET Title = ? WHERE Id = ?", title, nId);
        return TouchModified(nId);
    });
}

bool CBookDatabase::SetSize(qint32 nId, double dBytes) {
    return InOneTransaction([&](Connection& connection) {
        if (connection.Query("SELECT [Size] FROM Book WHERE Id = ?", nId).Step()) {
            connection.Run("UPDATE Book SET [Size] = ? WHERE Id = ?", dBytes, nId);
            TouchModified(nId);
        }
        return true;
    });
}

bool CBookDatabase::SetOpenType(qint32 nId, qint32 nOpenType) {
    return InOneTransaction([&](Connection& connection) {
        if (connection.Query("SELECT OpenType FROM Book WHERE Id =  ?", nId).Step()) {
            connection.Run("UPDATE Book SET OpenType = ? WHERE Id = ?", nOpenType, nId);
            TouchModified(nId);
        }
        return true;
    });
}

bool CBookDatabase::TouchModified(qint32 nId) {
    return InOneTransaction([&](Connection& connection) {
        if (connection.Query("SELECT TimeLastModified FROM Book WHERE Id = ?", nId).Step())
            connection.Run("UPDATE Book SET TimeLastModified = ? WHERE Id = ?", LocalTime(), nId);
        return true;
    });
}

bool CBookDatabase::SetSeedTitles(const QString& strSchool, const QString& strCourse,
                                  const QString& strTeacher) {
    return InOneTransaction([&](Connection& connection) {
        connection.Run("UPDATE Book SET Title = ? WHERE Id = 1", strSchool);
        connection.Run("UPDATE Book SET Title = ? WHERE Id = 2", strCourse);
        connection.Run("UPDATE Book SET Title = ? WHERE Id = 3", strTeacher);
        return true;
    });
}

CBookDatabase::Place CBookDatabase::GetPlace(qint32 nId) {
    const qint32 nParentId = GetInt(nId, u"ParentId"_s);
    return {nParentId, GetInt(nId, u"Index"_s)};
}

/// Closes the gap that a node leaves among its siblings. One whose place can't be read leaves none, so that
/// it can be deleted and moved to a sound place like any other; siblings without a sound place stay as they
/// are.
void CBookDatabase::CloseGap(qint32 nId) {
    Guarded([&](Connection& connection) {
        Place place{};
        {
            CStoreQuery query = connection.Query("SELECT ParentId, [Index] FROM Book WHERE Id = ?", nId);
            StepToRow(query);
            place = {query.IntOr(0, c_nNoPlace), query.IntOr(1, c_nNoPlace)};
        }
        if (place.nIndex == c_nNoPlace || place.nParentId == c_nNoPlace)
            return;
        connection.Run("UPDATE Book Set [Index] = [Index] - 1 WHERE ParentId = ? AND [Index] > ? AND "
                       "[Index] <= 2147483647",
                       place.nParentId, place.nIndex);
    });
}

bool CBookDatabase::DeleteNode(qint32 nId) {
    if (nId <= c_nRootNodeId)
        return false;
    return InOneTransaction([&](Connection& connection) {
        CloseGap(nId);
        connection.Run("DELETE FROM Book WHERE Id = ?", nId);
        return true;
    });
}

bool CBookDatabase::MoveUp(qint32 nId) {
    return InOneTransaction([&](Connection& connection) {
        const auto [nParentId, nIndex] = GetPlace(nId);
        if (nIndex <= 1)
            return true;
        connection.Run("UPDATE Book SET [Index] = [Index] + 1 WHERE ParentId = ? AND [Index] = ?", nParentId,
                       nIndex - 1);
        connection.Run("UPDATE Book SET [Index] = [Index] - 1 WHERE Id = ?", nId);
        return true;
    });
}

bool CBookDatabase::MoveDown(qint32 nId) {
    return InOneTransaction([&](Connection& connection) {
        const auto [nParentId, nIndex] = GetPlace(nId);
        if (nIndex >= GetChildrenCount(nParentId))
            return true;
        connection.Run("UPDATE Book SET [Index] = [Index] - 1 WHERE ParentId = ? AND [Index] = ?", nParentId,
                       nIndex + 1);
        connection.Run("UPDATE Book SET [Index] = [Index] + 1 WHERE Id = ?", nId);
        return true;
    });
}

/// Whether a branch of the node may hang below the new parent: that must be there, and neither be the node
/// nor lie below it. A damaged tree may lead in a circle.
bool CBookDatabase::MayHangBelow(qint32 nId, qint32 nNewParentId) {
    return Guarded([&](Connection& connection) {
        QSet<qint32> met;
        for (qint32 nAncestor = nNewParentId; !met.contains(nAncestor);) {
            if (nAncestor == nId)
                return false;
            CStoreQuery query = connection.Query(FieldWording(u"ParentId"_s), nAncestor);
            if (!query.Step())
                return !met.isEmpty();
            met.insert(nAncestor);
            nAncestor = query.IntOr(0, nAncestor);
        }
        return true;
    });
}

bool CBookDatabase::MoveTo(qint32 nId, qint32 nNewParentId) {
    if (nId <= c_nRootNodeId)
        return false;
    return InOneTransaction([&](Connection& connection) {
        if (!MayHangBelow(nId, nNewParentId))
            return false;
        CloseGap(nId);
        connection.Run("UPDATE Book SET [Index] = [Index] + 1 WHERE ParentId = ? AND [Index] < 2147483647",
                       nNewParentId);
        connection.Run("UPDATE Book SET [Index] = 1, ParentId = ? WHERE Id = ?", nNewParentId, nId);
        return true;
    });
}
