#include "companions/compiler/StoreReader.h"

#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"
#include "course/TitleCipher.h"
#include "foundation/Exceptions.h"
#include "foundation/Paths.h"
#include "platform/base/NativePath.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nBusyMilliseconds = 1000;

QString TextOf(const SQLite::Column& column) {
    return QString::fromUtf8(column.getText(), column.getBytes());
}

QList<StoreRow> ReadRows(SQLite::Database& database, const CTitleCipher& titles) {
    QList<StoreRow> rows;
    SQLite::Statement query(database, "SELECT Id, ParentId, Title, Type, Path, OpenType, FileName, Comment "
                                      "FROM Book ORDER BY [Index] ASC, Id ASC");
    while (query.executeStep()) {
        StoreRow row;
        row.Id = query.getColumn(0).getInt();
        row.ParentId = query.getColumn(1).getInt();
        row.Title = titles.Plain(row.Id, TextOf(query.getColumn(2)).toUtf8());
        row.Type = query.getColumn(3).isNull() ? NodeType::c_nEmpty : query.getColumn(3).getInt();
        row.Path = TextOf(query.getColumn(4));
        row.OpenType = query.getColumn(5).getInt();
        row.FileName = TextOf(query.getColumn(6));
        row.Comment = TextOf(query.getColumn(7));
        rows.append(row);
    }
    return rows;
}

} // namespace

QList<StoreRow> ReadStore(const QString& strPath, qint32 nCourseId) {
    const QString strNative = Platform::ToNative(strPath);
    if (!Torvane::File::IsFile(strPath))
        throw Torvane::CRunException(CompilerText::c_strNoDatabase.arg(strNative));
    try {
        SQLite::Database database(strNative.toStdString(), SQLite::OPEN_READONLY, c_nBusyMilliseconds);
        return ReadRows(database, CTitleCipher(nCourseId));
    } catch (const SQLite::Exception& failure) {
        const int nCode = failure.getErrorCode();
        const QString& strMessage = nCode == SQLITE_BUSY || nCode == SQLITE_LOCKED
                                        ? CompilerText::c_strLockedDatabase
                                        : CompilerText::c_strBadDatabase;
        throw Torvane::CRunException(strMessage.arg(QString::fromUtf8(failure.what())));
    }
}
