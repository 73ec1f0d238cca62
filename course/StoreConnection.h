#pragma once

#include "course/BookDatabase.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QByteArrayView>
#include <QString>

#include <string>
#include <string_view>
#include <unordered_map>

/// One use of a prepared statement: reset when it goes, so that no reading is left open behind it.
class CStoreQuery {
public:
    explicit CStoreQuery(SQLite::Statement& statement) : m_statement(statement) {}
    ~CStoreQuery() { m_statement.tryReset(); }
    CStoreQuery(const CStoreQuery&) = delete;
    CStoreQuery& operator=(const CStoreQuery&) = delete;

    /// True while there is a row.
    bool Step() { return m_statement.executeStep(); }
    /// For a statement that gives no rows.
    void Run() { m_statement.exec(); }

    /// A column of the present row, converted as the database converts; throws CCOMException when that is
    /// impossible.
    qint32 Int(int nColumn) const;
    /// The same, but for what can't be converted.
    qint32 IntOr(int nColumn, qint32 nOtherwise) const;
    QString Text(int nColumn) const;
    QVariant Value(int nColumn) const;
    /// The bytes of a text, valid until the next step; empty for NULL.
    QByteArrayView Bytes(int nColumn) const;
    /// The number in the brackets of the column's declared type; -1 when it declares none.
    int DeclaredWidth(int nColumn) const;

private:
    SQLite::Statement& m_statement;
};

/// The open file of a CBookDatabase: the engine's settings, prepared statements and nested transactions.
/// Throws SQLite::Exception; whoever calls takes that to CCOMException.
struct CBookDatabase::Connection {
    /// strNativePath: a file that exists and holds the table.
    explicit Connection(const QString& strNativePath);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The statement, prepared once for each wording, with its values bound in order. pszWording must be a
    /// constant.
    template <typename... Values>
    CStoreQuery Query(const char* pszWording, const Values&... values) {
        SQLite::Statement& statement = Prepared(pszWording);
        [[maybe_unused]] int nPlace = 0;
        (Bind(statement, ++nPlace, values), ...);
        return CStoreQuery(statement);
    }
    template <typename... Values>
    void Run(const char* pszWording, const Values&... values) {
        Query(pszWording, values...).Run();
    }

    /// False where a stranger's table lets a number stand in several rows.
    bool HasUniqueIds() const { return m_bUniqueIds; }

    /// Another after each change to the store, by whomever.
    struct State {
        qint64 nOwnChanges = -1;
        qint64 nOthersChanges = -1;
        bool operator==(const State&) const = default;
    };
    State GetState();
    /// The long list of children that was read last, and in which state: whoever shows a node asks for it
    /// right behind the tree.
    struct {
        qint32 nParentId = -1;
        State ReadIn;
        QList<qint32> Ids;
    } LongFamily;

    /// Only the outermost writes to the disk; an inner one that is undone takes back its own steps alone.
    void Begin();
    void Commit();
    void Undo() noexcept;

    /// Back to a single file without a log beside it.
    void FoldLog();

private:
    SQLite::Statement& Prepared(const char* pszWording);
    static void Bind(SQLite::Statement& statement, int nPlace, qint32 nValue) {
        statement.bind(nPlace, nValue);
    }
    static void Bind(SQLite::Statement& statement, int nPlace, double dValue) {
        statement.bind(nPlace, dValue);
    }
    static void Bind(SQLite::Statement& statement, int nPlace, const QString& strValue);
    static void Bind(SQLite::Statement& statement, int nPlace, const QByteArray& ascii);
    bool IsLost() const;

    SQLite::Database m_database;
    std::unordered_map<std::string_view, SQLite::Statement> m_statements;
    int m_nDepth = 0;
    bool m_bUniqueIds = false;
};
