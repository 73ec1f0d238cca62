#include "course/StoreConnection.h"

#include "course/ComError.h"
#include "foundation/Exceptions.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <QByteArray>

#include <charconv>
#include <cmath>
#include <limits>

namespace {

/// A second program may hold the file for a moment only: a reader that is just letting go.
constexpr int c_nBusyMilliseconds = 2000;

/// Every column that the store ever names.
constexpr char c_szAllColumns[] =
    "SELECT Id, ParentId, [Index], Title, Type, Path, OpenType, FileName, Comment, [Size], TimeLastModified "
    "FROM Book WHERE 1 = 0";

/// Whether Id alone is the key by which the engine itself finds a row.
constexpr char c_szUniqueIds[] =
    "SELECT COUNT(*) = 1 AND MAX(lower(name) = 'id' AND upper(type) = 'INTEGER') "
    "FROM pragma_table_info('Book') WHERE pk > 0";

qint32 ToInt32(double dValue) {
    const double dRounded = std::nearbyint(dValue);
    if (!(dRounded >= std::numeric_limits<qint32>::min() && dRounded <= std::numeric_limits<qint32>::max()))
        ComError::Throw(ComError::c_nOverflow);
    return static_cast<qint32>(dRounded);
}

qint32 ToInt32(QByteArrayView text) {
    double dValue = 0;
    const QByteArrayView trimmed = text.trimmed();
    const auto [pEnd, error] = std::from_chars(trimmed.begin(), trimmed.end(), dValue);
    if (error != std::errc() || pEnd != trimmed.end())
        ComError::Throw(ComError::c_nMismatch);
    return ToInt32(dValue);
}

} // namespace

qint32 CStoreQuery::Int(int nColumn) const {
    const SQLite::Column column = m_statement.getColumn(nColumn);
    if (column.isInteger())
        return ToInt32(static_cast<double>(column.getInt64()));
    if (column.isFloat())
        return ToInt32(column.getDouble());
    if (column.isText())
        return ToInt32(Bytes(nColumn));
    ComError::Throw(ComError::c_nMismatch);
}

qint32 CStoreQuery::IntOr(int nColumn, qint32 nOtherwise) const {
    try {
        return Int(nColumn);
    } catch (const Torvane::COM::CCOMException&) {
        return nOtherwise;
    }
}

QString CStoreQuery::Text(int nColumn) const {
    if (m_statement.isColumnNull(nColumn))
        ComError::Throw(ComError::c_nMismatch);
    return QString::fromUtf8(Bytes(nColumn));
}

QVariant CStoreQuery::Value(int nColumn) const {
    const SQLite::Column column = m_statement.getColumn(nColumn);
    if (column.isNull())
        return {};
    if (column.isInteger())
        return QVariant(static_cast<qlonglong>(column.getInt64()));
    if (column.isFloat())
        return QVariant(column.getDouble());
    return QVariant(QString::fromUtf8(Bytes(nColumn)));
}

QByteArrayView CStoreQuery::Bytes(int nColumn) const {
    const SQLite::Column column = m_statement.getColumn(nColumn);
    const char* pText = column.getText("");
    return QByteArrayView(pText, column.getBytes());
}

int CStoreQuery::DeclaredWidth(int nColumn) const {
    QByteArrayView declared;
    try {
        declared = QByteArrayView(m_statement.getColumnDeclaredType(nColumn));
    } catch (const SQLite::Exception&) {
        return -1;
    }
    const auto nOpen = declared.indexOf('(');
    int nWidth = -1;
    if (nOpen >= 0)
        std::from_chars(declared.begin() + nOpen + 1, declared.end(), nWidth);
    return nWidth;
}

CBookDatabase::Connection::Connection(const QString& strNativePath)
    // One thread makes all calls, so none has to lock the engine.
    : m_database(strNativePath.toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX,
                 c_nBusyMilliseconds) {
    // A course comes from anyone's disk: what its database brings along besides the table is never run.
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
    sqlite3_db_config(m_database.getHandle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
    m_database.exec("PRAGMA cell_size_check = ON");
    // Before anything is written: a file that is not ours stays as it is.
    SQLite::Statement(m_database, c_szAllColumns).executeStep();
    m_bUniqueIds = m_database.execAndGet(c_szUniqueIds).getInt() != 0;
    // A file system without shared memory answers with the old mode, which serves as well.
    m_database.execAndGet("PRAGMA journal_mode = WAL");
    m_database.exec("PRAGMA synchronous = FULL");
    // A stranger's course may lack the index, without which opening it takes time by the square of its nodes.
    m_database.tryExec("CREATE INDEX IF NOT EXISTS BookOrder ON Book (ParentId, [Index])");
}

CBookDatabase::Connection::~Connection() = default;

SQLite::Statement& CBookDatabase::Connection::Prepared(const char* pszWording) {
    auto found = m_statements.find(pszWording);
    if (found == m_statements.end())
        found = m_statements.try_emplace(pszWording, m_database, pszWording).first;
    return found->second;
}

void CBookDatabase::Connection::Bind(SQLite::Statement& statement, int nPlace, const QString& strValue) {
    statement.bind(nPlace, strValue.toStdString());
}

void CBookDatabase::Connection::Bind(SQLite::Statement& statement, int nPlace, const QByteArray& ascii) {
    statement.bind(nPlace, std::string(ascii.constData(), static_cast<std::size_t>(ascii.size())));
}

CBookDatabase::Connection::State CBookDatabase::Connection::GetState() {
    CStoreQuery query = Query("PRAGMA data_version");
    query.Step();
    return {sqlite3_total_changes64(m_database.getHandle()), query.Int(0)};
}

/// A full disk or a failing one makes the engine undo the whole transaction by itself. The steps that follow
/// must not land one by one then.
bool CBookDatabase::Connection::IsLost() const {
    return m_nDepth > 0 && sqlite3_get_autocommit(m_database.getHandle()) != 0;
}

void CBookDatabase::Connection::Begin() {
    if (IsLost())
        throw SQLite::Exception("the transaction is lost", SQLITE_ABORT);
    if (m_nDepth == 0)
        Run("BEGIN IMMEDIATE");
    else
        Run("SAVEPOINT Step");
    ++m_nDepth;
}

void CBookDatabase::Connection::Commit() {
    if (IsLost())
        throw SQLite::Exception("the transaction is lost", SQLITE_ABORT);
    if (m_nDepth == 1)
        Run("COMMIT");
    else
        Run("RELEASE Step");
    --m_nDepth;
}

void CBookDatabase::Connection::Undo() noexcept {
    if (m_nDepth == 0)
        return;
    // It may show what is undone, and the count of changes never goes back.
    LongFamily = {};
    if (!IsLost()) {
        if (m_nDepth == 1)
            m_database.tryExec("ROLLBACK");
        else
            m_database.tryExec("ROLLBACK TO Step; RELEASE Step");
    }
    --m_nDepth;
}

void CBookDatabase::Connection::FoldLog() {
    m_statements.clear();
    const std::string mode = m_database.execAndGet("PRAGMA journal_mode = DELETE").getString();
    if (mode != "delete")
        throw SQLite::Exception("the log is in use", SQLITE_BUSY);
}
