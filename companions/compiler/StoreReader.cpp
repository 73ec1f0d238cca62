#include "companions/compiler/StoreReader.h"

#include "companions/compiler/SourceFile.h"
#include "companions/compiler/Texts.h"
#include "course/BookDatabase.h"
#include "course/TitleCipher.h"
#include "foundation/Exceptions.h"
#include "platform/base/NativePath.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <sqlite3.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int c_nBusyMilliseconds = 1000;

/// More than the program lets anybody write; a store may hold whatever it was given. In characters, of a
/// title as the store keeps it.
constexpr int c_nMaxStoredTitle = 4096;
constexpr int c_nMaxTitle = 200;
constexpr int c_nMaxPath = 4096;
constexpr int c_nMaxText = 20'000;

QByteArrayView BytesOf(const SQLite::Column& column) {
    // In this order: the length is that of the text.
    const char* pText = column.getText();
    return {pText, column.getBytes()};
}

QString TextOf(const SQLite::Column& column, int nMax = c_nMaxText) {
    // No character takes more than four bytes.
    const QByteArrayView bytes = BytesOf(column);
    return QString::fromUtf8(bytes.first(qMin(bytes.size(), qsizetype(nMax) * 4))).left(nMax);
}

QByteArrayView StoredTitleOf(const SQLite::Column& column) {
    const QByteArrayView bytes = BytesOf(column);
    return bytes.first(qMin(bytes.size(), qsizetype(c_nMaxStoredTitle)));
}

/// What a person reads in one line. A title that can't be deciphered is none.
QString TitleOf(qint32 nId, QString strPlain) {
    // One that turns the direction of writing would turn what stands behind the title, too.
    strPlain.removeIf([](QChar c) {
        const bool bTurns = (c >= u'\u202a' && c <= u'\u202e') || (c >= u'\u2066' && c <= u'\u2069');
        return bTurns || c.category() == QChar::Other_Control || c == QChar::ReplacementCharacter;
    });
    if (strPlain.trimmed().isEmpty() && nId > c_nRootNodeId)
        return CompilerText::c_strNoTitle.arg(nId);
    strPlain.truncate(c_nMaxTitle);
    if (!strPlain.isEmpty() && strPlain.back().isHighSurrogate())
        strPlain.chop(1);
    return strPlain;
}

/// A path that was cut would lead elsewhere: a long one leads nowhere.
QString PathOf(const QString& strStored) {
    constexpr qsizetype c_nShown = 80;
    return strStored.size() <= c_nMaxPath ? strStored : u'…' + strStored.left(c_nShown) + u'…';
}

QList<StoreRow> ReadRows(SQLite::Database& database, const CTitleCipher& titles) {
    struct Placed {
        qint64 Index;
        StoreRow Row;
    };
    std::vector<Placed> found;
    SQLite::Statement query(
        database, "SELECT Id, ParentId, Title, Type, Path, OpenType, FileName, Comment, [Index] FROM Book");
    while (query.executeStep()) {
        const SQLite::Column place = query.getColumn(8);
        Placed& placed =
            found.emplace_back(place.isNull() ? std::numeric_limits<qint64>::min() : place.getInt64());
        StoreRow& row = placed.Row;
        row.Id = query.getColumn(0).getInt();
        row.ParentId = query.getColumn(1).getInt();
        row.Title = TitleOf(row.Id, titles.Plain(row.Id, StoredTitleOf(query.getColumn(2))));
        row.Type = query.getColumn(3).isNull() ? NodeType::c_nEmpty : query.getColumn(3).getInt();
        row.Path = PathOf(TextOf(query.getColumn(4), c_nMaxPath + 1));
        row.OpenType = query.getColumn(5).getInt();
        row.FileName = TextOf(query.getColumn(6));
        row.Comment = TextOf(query.getColumn(7));
    }
    // Here and not by the store, which would copy every row for it.
    std::ranges::stable_sort(found, {},
                             [](const Placed& placed) { return std::pair(placed.Index, placed.Row.Id); });
    QList<StoreRow> rows;
    rows.reserve(qsizetype(found.size()));
    for (Placed& placed : found)
        rows.append(std::move(placed.Row));
    return rows;
}

} // namespace

QList<StoreRow> ReadStore(const QString& strPath, qint32 nCourseId) {
    const QString strNative = Platform::ToNative(strPath);
    CheckReadable(strNative, CompilerText::c_strNoDatabase);
    try {
        SQLite::Database database(strNative.toStdString(), SQLite::OPEN_READONLY | SQLite::OPEN_NOMUTEX,
                                  c_nBusyMilliseconds);
        return ReadRows(database, CTitleCipher(nCourseId));
    } catch (const SQLite::Exception& failure) {
        const int nCode = failure.getErrorCode();
        const QString& strMessage = nCode == SQLITE_BUSY || nCode == SQLITE_LOCKED
                                        ? CompilerText::c_strLockedDatabase
                                        : CompilerText::c_strBadDatabase;
        throw Torvane::CRunException(strMessage.arg(QString::fromUtf8(failure.what())));
    }
}
